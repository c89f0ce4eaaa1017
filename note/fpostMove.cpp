// Dragging and iconizing.
#include "note/fpost.h"
#include "support/Accessible.h"

// --- Moving -----------------------------------------------------------------------------------------------

void fpost::DragWindow() {
    if (Alarming()) {
        SoundStop();
        return;
    }
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone() || record.readOnly) return;
    place.resizer.setMode(false);
    // The button may have been released while the edit was being stored: then the system's move loop would
    // hold the note until the next click.
    if (GetKeyState(VK_LBUTTON) >= 0) return;

    place.drag();
}

// --- Iconizing --------------------------------------------------------------------------------------------

void fpost::toggleIconized() {
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone() || refusesChange()) return;
    record.iconized = !record.iconized;
    IconizeForm();
    if (beingDeleted) return;  // it rang, and stopping the alarm has deleted it
    kept.save({NoteField::Iconized});
    host->notesChanged();
    host->realign();
}

void fpost::IconizeForm() {
    if (Alarming() && SoundStop()) return;
    showIconized();
}

void fpost::showIconized() {
    // What the store holds now counts, even if another program has changed it; without a usable value the
    // note keeps the height that it remembers.
    const std::int32_t height = record.height;
    if (!record.iconized && (!kept.refreshed({NoteField::Height}) || record.height <= 0))
        record.height = height;
    place.goHome();
    tellNameChanged(hwnd);
    if (record.iconized) return;
    if (visible()) host->realign();
    ringing.showStrip();
}
