#include "note/NoteMover.h"

#include <utility>

#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"

namespace {

constexpr UINT kRest = 300;                // ms without a move after which a window has come to rest
constexpr std::uint64_t kUpheaval = 2000;  // ms after a change of monitors in which Windows moves windows

bool sameCorner(const PxRect& a, const PxRect& b) {
    return a.left == b.left && a.top == b.top;
}

}  // namespace

// --- With the mouse ---------------------------------------------------------------------------------------

void NoteMover::drag(HWND window, const Rules& rules) {
    ReleaseCapture();
    const auto move = [window] {
        // Returns when the button is up. The place of the press is passed on, so that the note stays under
        // the pointer.
        SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, static_cast<LPARAM>(GetMessagePos()));
    };
    if (!rules.alignAll && !rules.snap.easyAlign) {
        move();
        return;
    }
    const MoveHook hook(window, rules.alignAll ? MoveHook::Kind::AlignedMove : MoveHook::Kind::EasyMove,
                        rules.snap);
    move();
}

void NoteMover::begin(HWND window) {
    if (running_++ == 0) before_ = windowRect(window);
}

void NoteMover::end(HWND window) {
    if (running_ == 0 || --running_ > 0) return;
    if (!sameCorner(windowRect(window), before_)) note_.storePlace();
    if (std::exchange(deskChanged_, false)) note_.goHome();
}

void NoteMover::endDrag(HWND window) {
    running_ = 1;
    end(window);
}

// --- With the keyboard ------------------------------------------------------------------------------------

void NoteMover::step(HWND window, const Rules& rules, const KeyStep& by) {
    const PxRect from = windowRect(window);
    PxRect to = from.shifted(by.columns * by.length, by.rows * by.length);
    if (rules.snap.easyAlign) {
        // Pixel by pixel, so that no edge is stepped over; edges that hold the note now let it go.
        const MoveHook hook(window, MoveHook::Kind::EasyMove, rules.snap);
        bool caught = false;
        for (int way = kSnapTolerance + 1; way <= by.length && !caught; ++way) {
            const PxRect wanted = from.shifted(by.columns * way, by.rows * way);
            RECT moving{wanted.left, wanted.top, wanted.right, wanted.bottom};
            SendMessageW(window, WM_MOVING, 0, reinterpret_cast<LPARAM>(&moving));
            to = pxRect(moving);
            caught = !sameCorner(to, wanted);
        }
    }
    if (!isInSight(by.monitors, {to.left, to.top, to.left + from.width(), to.top + by.strip})) return;
    if (sameCorner(to, from)) return;
    ++running_;
    SetWindowPos(window, nullptr, to.left, to.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    --running_;
    note_.takePlace();
    byKeys_ = true;
}

void NoteMover::endKeys() {
    // Stored once, however long the key was held.
    if (std::exchange(byKeys_, false)) note_.storePlace();
}

// --- By others --------------------------------------------------------------------------------------------

void NoteMover::onMoved(HWND window) {
    if (running_ > 0) return;
    stray_ = !sameCorner(windowRect(window), note_.place());
    if (stray_) {
        SetTimer(window, IDT_MOVED, kRest, nullptr);
    } else {
        KillTimer(window, IDT_MOVED);
    }
}

void NoteMover::settle(HWND window) {
    KillTimer(window, IDT_MOVED);
    if (!std::exchange(stray_, false) || IsWindowVisible(window) == FALSE || IsIconic(window) != FALSE)
        return;
    if (sameCorner(windowRect(window), note_.place())) return;
    // When a monitor goes, Windows itself moves what was on it. The note keeps its own place until the
    // monitor is back.
    const bool upheaval = changedAt_ && GetTickCount64() - *changedAt_ < kUpheaval;
    if (upheaval && !note_.isAtHome()) {
        note_.goHome();
    } else {
        note_.storePlace();
    }
}

void NoteMover::onDeskChanged(HWND window, std::uint64_t tick) {
    changedAt_ = tick;
    if (running_ > 0) {
        deskChanged_ = true;
        return;
    }
    settle(window);
    note_.goHome();
}
