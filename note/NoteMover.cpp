#include "note/NoteMover.h"

#include <utility>

namespace {

constexpr std::uint64_t kUpheaval = 2000;  // ms after a change of monitors in which Windows moves windows

bool sameCorner(const PxRect& a, const PxRect& b) {
    return a.left == b.left && a.top == b.top;
}

}  // namespace

// --- With the mouse ---------------------------------------------------------------------------------------

void NoteMover::begin() {
    if (running_++ == 0) before_ = note_.window();
}

void NoteMover::end() {
    if (running_ == 0 || --running_ > 0) return;
    if (!sameCorner(note_.window(), before_)) note_.storePlace();
    if (std::exchange(deskChanged_, false)) note_.goHome();
}

void NoteMover::endDrag() {
    running_ = 1;
    end();
}

// --- With the keyboard ------------------------------------------------------------------------------------

void NoteMover::step(const SnapRules& rules, const KeyStep& by) {
    const PxRect from = note_.window();
    PxRect to = from.shifted(by.columns * by.length, by.rows * by.length);
    if (rules.easyAlign) {
        // Pixel by pixel, so that no edge is stepped over; edges that hold the note now let it go.
        const Snapping snapping(from, rules, {by.monitors.begin(), by.monitors.end()});
        bool caught = false;
        for (int way = kSnapTolerance + 1; way <= by.length && !caught; ++way) {
            const PxRect wanted = from.shifted(by.columns * way, by.rows * way);
            to = snapping.moved(wanted);
            caught = !sameCorner(to, wanted);
        }
    }
    if (!isInSight(by.monitors, {to.left, to.top, to.left + from.width(), to.top + by.strip})) return;
    if (sameCorner(to, from)) return;
    ++running_;
    note_.moveWindow(to.left, to.top);
    --running_;
    note_.takePlace();
    byKeys_ = true;
}

void NoteMover::endKeys() {
    // Stored once, however long the key was held.
    if (std::exchange(byKeys_, false)) note_.storePlace();
}

// --- By others --------------------------------------------------------------------------------------------

void NoteMover::onMoved() {
    if (running_ > 0) return;
    stray_ = !sameCorner(note_.window(), note_.place());
    note_.awaitRest(stray_);
}

void NoteMover::settle(std::uint64_t tick) {
    note_.awaitRest(false);
    if (!std::exchange(stray_, false) || !note_.isOnScreen()) return;
    if (sameCorner(note_.window(), note_.place())) return;
    // When a monitor goes, Windows itself moves what was on it. The note keeps its own place until the
    // monitor is back.
    const bool upheaval = changedAt_ && tick - *changedAt_ < kUpheaval;
    if (upheaval && !note_.isAtHome()) {
        note_.goHome();
    } else {
        note_.storePlace();
    }
}

void NoteMover::onDeskChanged(std::uint64_t tick) {
    changedAt_ = tick;
    if (running_ > 0) {
        deskChanged_ = true;
        return;
    }
    settle(tick);
    note_.goHome();
}
