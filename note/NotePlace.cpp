#include "note/NotePlace.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "note/NoteHome.h"
#include "note/bas_DialogColor.h"
#include "note/bas_GetWorkArea.h"
#include "note/bas_HookEasyMove.h"
#include "note/fmsg.h"
#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Accessible.h"

namespace {

constexpr float kGripPause = 0.01F;  // seconds from one step of the grip to the next
constexpr UINT kRest = 300;          // ms without a move after which a window has come to rest
constexpr Twips kMoveStep{120};      // per arrow key; more than what snaps, so that notes come off

/// Waits while messages are processed. False when the program has to end.
bool Pause(float Seconds) {
    constexpr float kMsPerSecond = 1000;
    return pumpFor(static_cast<DWORD>(std::lround(Seconds * kMsPerSecond)));
}

/// Runs the system's own loop until the button is up. The place of the press is passed on, so that the note
/// stays under the pointer. The note may be gone when this returns.
void letSystemMove(HWND window) {
    ReleaseCapture();
    SendMessageW(window, WM_NCLBUTTONDOWN, HTCAPTION, static_cast<LPARAM>(GetMessagePos()));
}

/// Whether a mouse button is down at this moment, wherever the pointer is and whichever window got the
/// message.
bool isHeld(bool rightButton) {
    const bool swapped = GetSystemMetrics(SM_SWAPBUTTON) != 0;
    return GetAsyncKeyState(rightButton != swapped ? VK_RBUTTON : VK_LBUTTON) < 0;
}

}  // namespace

// --- Where it is ------------------------------------------------------------------------------------------

PxRect NotePlace::window() const {
    return windowRect(note_.hwnd);
}

int NotePlace::Left() const {
    return note_.host->look->twips(window().left);
}

int NotePlace::Top() const {
    return note_.host->look->twips(window().top);
}

int NotePlace::Width() const {
    return note_.host->look->twips(window().width());
}

int NotePlace::Height() const {
    return note_.host->look->twips(window().height());
}

PxRect NotePlace::area() const {
    // A Wine desktop may forget the place of a hidden window, so what the note remembers counts.
    return note_.visible() ? window() : place();
}

// --- Where it belongs -------------------------------------------------------------------------------------

PxRect NotePlace::place() const {
    return placeOn(note_.host->monitors());
}

PxRect NotePlace::placeOn(std::span<const Monitor> monitors) const {
    return shownPlace(note_.record, Twips{note_.pWidth()}, Twips{note_.pHeight()}, note_.host->look->dpi,
                      monitors);
}

void NotePlace::goHome() {
    const PxRect rect = place();
    if (rect == window()) return;
    const bool outer = std::exchange(placing_, true);
    SetWindowPos(note_.hwnd, nullptr, rect.left, rect.top, rect.width(), rect.height(),
                 SWP_NOZORDER | SWP_NOACTIVATE);
    placing_ = outer;
}

void NotePlace::moveTo(Twips left, Twips top) {
    note_.record.x = left.n;
    note_.record.y = top.n;
    goHome();
}

bool NotePlace::isAtHome() const {
    return ::isAtHome(note_.record, Twips{note_.pWidth()}, note_.host->look->dpi, note_.host->monitors());
}

// --- Moving -----------------------------------------------------------------------------------------------

void NotePlace::drag() {
    note_.mouse.showCursor(IDC_MOVING);
    const NoteWatch watch(note_);
    mover.begin();
    const SnapRules rules = snapRules();
    const bool alignAll = note_.host->settings->AlignAll;
    std::optional<MoveHook> hook;
    if (alignAll || rules.easyAlign) {
        hook.emplace(note_.hwnd, alignAll ? MoveHook::Kind::AlignedMove : MoveHook::Kind::EasyMove, rules);
    }
    letSystemMove(note_.hwnd);
    hook.reset();
    if (watch.destroyed()) return;
    note_.mouse.showCursor(0);
    mover.endDrag();
}

SnapRules NotePlace::snapRules() const {
    const NoteLook& look = *note_.host->look;
    SnapRules rules;
    rules.easyAlign = note_.host->settings->EasyAlign;
    rules.leastWidth = look.px(design::kMinWidth);
    rules.leastHeight = look.px(note_.record.iconized ? kIconizedHeight : design::kMinHeight);
    rules.others = [this] { return note_.host->otherNotes(note_); };
    return rules;
}

void NotePlace::moveStep(int columns, int rows) {
    if (note_.refusesChange()) return;
    const NoteLook& look = *note_.host->look;
    mover.step(snapRules(),
               {columns, rows, look.px(kMoveStep), look.px(design::kStripHeight), note_.host->monitors()});
}

void NotePlace::onPosition(const WINDOWPOS& changed) {
    if ((changed.flags & SWP_NOZORDER) == 0) keepBelowDialogs();
    const bool moved = (changed.flags & SWP_NOMOVE) == 0;
    if (moved && !placing_ && isOnScreen()) mover.onMoved();
}

bool NotePlace::isOnScreen() const {
    return note_.visible() && IsIconic(note_.hwnd) == FALSE;
}

void NotePlace::moveWindow(int left, int top) {
    SetWindowPos(note_.hwnd, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void NotePlace::awaitRest(bool awaited) {
    if (awaited) {
        SetTimer(note_.hwnd, IDT_MOVED, kRest, nullptr);
    } else {
        KillTimer(note_.hwnd, IDT_MOVED);
    }
}

void NotePlace::takePlace() {
    note_.record.x = Left();
    note_.record.y = Top();
}

void NotePlace::storePlace() {
    if (note_.beingDeleted) return;
    takePlace();
    static_cast<void>(note_.host->store->storeCount(note_.host->count()));
    note_.kept.save({NoteField::X, NoteField::Y});
}

// --- Resizing ---------------------------------------------------------------------------------------------

void NotePlace::fitWindow(Along changed) {
    fit(changed, note_.host->monitors());
}

void NotePlace::fit(Along changed, std::span<const Monitor> monitors) {
    const NoteLook& look = *note_.host->look;
    // The other dimension comes from the note and not from the window, since a window manager may be late
    // with an earlier size, which the next steps would keep.
    const PxRect wanted = placeOn(monitors);
    const bool across = changed == Along::Width;
    const int width = across ? look.px(Twips{note_.pWidth()}) : wanted.width();
    const int height = across ? wanted.height() : look.px(Twips{note_.pHeight()});
    SetWindowPos(note_.hwnd, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

ResizeAxis NotePlace::axis(Along along) {
    // What is on screen is resized, since a stored size larger than the desktop is shown smaller than it is.
    const NoteLook& look = *note_.host->look;
    const PxRect rect = window();
    monitors_ = note_.host->monitors();
    const PxRect work = monitorAt(monitors_, rect).work;
    const bool across = along == Along::Width;
    const int stored = across ? note_.pWidth() : note_.pHeight();
    const int shown = across ? rect.width() : rect.height();
    ResizeAxis axis;
    axis.start = Twips{look.twips(across ? rect.left : rect.top)};
    axis.size = Twips{look.px(Twips{stored}) == shown ? stored : look.twips(shown)};
    axis.workEnd = Twips{look.twips(across ? work.right : work.bottom)};
    axis.least = across ? design::kMinWidth : design::kMinHeight;
    return axis;
}

void NotePlace::resize(Along along, Twips size) {
    (along == Along::Width ? note_.record.width : note_.record.height) = size.n;
    fit(along, monitors_);
}

void NotePlace::storeSize() {
    if (!note_.beingDeleted) note_.kept.save({NoteField::Width, NoteField::Height});
}

bool NotePlace::isIconized() const {
    return note_.record.iconized;
}

bool NotePlace::refusesResizing() {
    return note_.refusesChange();
}

void NotePlace::showResizeCursor(int cursor) {
    note_.mouse.showCursor(cursor);
}

void NotePlace::resizeModeChanged() {
    tellNameChanged(note_.hwnd);
}

void NotePlace::holdGrip() {
    // The grip moves away from under the pointer. With the capture, the release of the button still arrives
    // and leaves the resize mode. Another window that takes the capture, such as a dialog, also ends the
    // hold, and so does a release that only the hardware reports.
    SetCapture(note_.pic2);
}

ResizedNote::Hold NotePlace::waitOnGrip(bool rightButton) {
    const NoteWatch watch(note_);
    const bool goesOn = Pause(kGripPause);
    if (watch.destroyed()) return Hold::Destroyed;  // deleted, or the program ends
    const bool held = note_.visible() && GetCapture() == note_.pic2 && isHeld(rightButton);
    return goesOn && held && !note_.beingDeleted ? Hold::GoesOn : Hold::Over;
}

void NotePlace::releaseGrip() {
    if (GetCapture() == note_.pic2) ReleaseCapture();
}

// --- In the stack of windows ------------------------------------------------------------------------------

void NotePlace::applyTopmost() const {
    // A note that neither is nor should be on top keeps its place among the others. A ringing note is above
    // the others until it is silenced.
    const bool wanted = note_.record.topmost || note_.Alarming();
    if (!wanted && !isTopmost(note_.hwnd)) return;
    // The keyboard stays where the user has it.
    SetWindowPos(note_.hwnd, wanted ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void NotePlace::keepBelowDialogs() const {
    if (!isTopmost(note_.hwnd)) return;  // every dialog is topmost
    struct Search {
        HWND message;
        std::vector<HWND> dialogs;  // from the front to the back

        static BOOL CALLBACK add(HWND window, LPARAM param) noexcept {
            auto& found = *reinterpret_cast<Search*>(param);
            const bool isDialog = window == found.message || isSystemDialog(window);
            if (isDialog && IsWindowVisible(window) != FALSE) found.dialogs.push_back(window);
            return TRUE;
        }
    } search{note_.host->dialog->hwnd, {}};
    EnumThreadWindows(GetCurrentThreadId(), Search::add, reinterpret_cast<LPARAM>(&search));
    for (auto dialog = search.dialogs.rbegin(); dialog != search.dialogs.rend(); ++dialog) {
        SetWindowPos(*dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    }
}
