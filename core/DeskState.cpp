#include "core/DeskState.h"

namespace {

bool nothingInSight(const DeskCount& now) {
    return now.notes > 0 && now.shown == 0;
}

bool everyNoteIconized(const DeskCount& now) {
    return now.notes > 0 && now.iconized == now.notes;
}

}  // namespace

void DeskState::onLoaded(const DeskCount& now) {
    hidden_ = nothingInSight(now);
    iconized_ = everyNoteIconized(now);
    loading_ = false;
}

void DeskState::onNewNote() {
    hidden_ = false;
    iconized_ = false;
}

void DeskState::onNoteShown() {
    hidden_ = false;
}

void DeskState::onNoteChanged(const DeskCount& now) {
    if (inBulk()) return;
    if (nothingInSight(now)) hidden_ = true;
    // Iconizing a single note does not count as iconizing all.
    if (now.notes > 1) iconized_ = everyNoteIconized(now);
}

void DeskState::onNoteRemoved(const DeskCount& now) {
    hidden_ = nothingInSight(now);
    iconized_ = everyNoteIconized(now);
}

void DeskState::onAllHidden(bool hidden, const DeskCount& now) {
    hidden_ = hidden && now.notes > 0;
}

void DeskState::onAllIconized(bool iconized, const DeskCount& now) {
    iconized_ = iconized && now.notes > 0;
}
