// Moving, resizing, iconizing and the place in the stack of windows.
#include <cmath>
#include <utility>

#include "note/ResizeRules.h"
#include "note/bas_DialogColor.h"
#include "note/bas_GetWorkArea.h"
#include "note/fmsg.h"
#include "note/fpost.h"
#include "resources/resource.h"

namespace {

constexpr float kGripStep = 15;      // twips a round of the press-and-hold loop
constexpr float kGripPause = 0.01F;  // seconds between two rounds
constexpr float kKeyStep = 30;       // twips an arrow key
constexpr float kWideKeyStep = 180;  // with Ctrl
constexpr Twips kMoveStep{120};      // an arrow key that moves; larger than what snaps, to get free again

/// Waits while the windows answer their events. False when the program is to end.
bool Pause(float Seconds) {
    constexpr float kMsPerSecond = 1000;
    return pumpFor(static_cast<DWORD>(std::lround(Seconds * kMsPerSecond)));
}

bool isTopmost(HWND window) {
    return (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

/// Whether a mouse button is down at this moment, wherever the pointer is and whoever got the message.
bool isHeld(bool rightButton) {
    const bool swapped = GetSystemMetrics(SM_SWAPBUTTON) != 0;
    return GetAsyncKeyState(rightButton != swapped ? VK_RBUTTON : VK_LBUTTON) < 0;
}

}  // namespace

// --- Moving -----------------------------------------------------------------------------------------------

void fpost::DragWindow() {
    if (Alarming()) {
        SoundStop();
        return;
    }
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone() || record.readOnly) return;
    setResizeMode(false);
    // A message about an edit that could not be stored may have outlasted the press: the system's move loop
    // would then hold the note until the next click.
    if (GetKeyState(VK_LBUTTON) >= 0) return;

    currentCursor = IDC_MOVING;
    SetCursor(host->look->cursor(currentCursor));
    const HWND window = hwnd;
    mover.begin(window);
    NoteMover::drag(window, moveRules());
    if (watch.destroyed()) return;
    currentCursor = 0;
    SetCursor(host->look->cursor(currentCursor));
    mover.endDrag(window);
}

NoteMover::Rules fpost::moveRules() const {
    NoteMover::Rules rules;
    rules.alignAll = host->settings->AlignAll;
    rules.snap.easyAlign = host->settings->EasyAlign;
    rules.snap.leastWidth = host->look->px(design::kMinWidth);
    rules.snap.leastHeight = host->look->px(record.iconized ? kIconizedHeight : design::kMinHeight);
    rules.snap.others = [this] { return host->otherNotes(*this); };
    return rules;
}

void fpost::moveStep(int columns, int rows) {
    if (refusesChange()) return;
    const NoteLook& look = *host->look;
    mover.step(hwnd, moveRules(),
               {columns, rows, look.px(kMoveStep), look.px(design::kStripHeight), host->monitors()});
}

bool fpost::isAtHome() const {
    const NoteLook& look = *host->look;
    const int left = look.px(Twips{record.x});
    const int top = look.px(Twips{record.y});
    const PxRect title{left, top, left + look.px(Twips{pWidth()}), top + look.px(kIconizedHeight)};
    return isInSight(host->monitors(), title);
}

void fpost::takePlace() {
    record.x = Left();
    record.y = Top();
}

void fpost::storePlace() {
    if (beingDeleted) return;
    takePlace();
    host->store->storeCount(host->count());
    store({NoteField::X, NoteField::Y});
}

// --- Resizing ---------------------------------------------------------------------------------------------

void fpost::ResizeWidth(float Delta) {
    // What is on screen is resized: a stored size larger than the desktop is shown smaller than it is.
    const NoteLook& look = *host->look;
    const PxRect rect = windowRect();
    const int size = look.px(Twips{pWidth()}) == rect.width() ? pWidth() : look.twips(rect.width());
    const ResizeAxis axis{Twips{look.twips(rect.left)}, Twips{size},
                          Twips{look.twips(workAreaAt(rect).right)}, design::kMinWidth};
    const Twips wanted = resized(axis, Twips{static_cast<std::int32_t>(std::lround(Delta))});
    if (wanted != axis.size) pWidth(wanted.n);
}

void fpost::ResizeHeight(float Delta) {
    if (record.iconized) return;
    const NoteLook& look = *host->look;
    const PxRect rect = windowRect();
    const int size = look.px(Twips{pHeight()}) == rect.height() ? pHeight() : look.twips(rect.height());
    const ResizeAxis axis{Twips{look.twips(rect.top)}, Twips{size},
                          Twips{look.twips(workAreaAt(rect).bottom)}, design::kMinHeight};
    const Twips wanted = resized(axis, Twips{static_cast<std::int32_t>(std::lround(Delta))});
    if (wanted != axis.size) pHeight(wanted.n);
}

void fpost::setResizeMode(bool on) {
    if (resizeMode == on || (on && refusesChange())) return;
    resizeMode = on;
    showResizeCursor(on ? IDC_RESIZE_WIDTH : 0);
    tellNameChanged(hwnd);
}

void fpost::showResizeCursor(int cursor) {
    resizeCursor = cursor;
    currentCursor = cursor;
    SetCursor(host->look->cursor(cursor));
}

void fpost::gripPress(int x, int y, bool rightButton) {
    if (gripRelease != 0) return;
    const bool width = design::kWidthArrow.contains(Twips{x}, Twips{y});
    const bool height = !width && design::kHeightArrow.contains(Twips{x}, Twips{y}) && !record.iconized;
    if ((!width && !height) || refusesChange()) return;

    const NoteWatch watch(*this);
    const HWND grip = pic2;
    const std::int32_t widthBefore = record.width;
    const std::int32_t heightBefore = record.height;
    const float step = rightButton || GetKeyState(VK_SHIFT) < 0 ? -kGripStep : kGripStep;
    gripRelease = rightButton ? WM_RBUTTONUP : WM_LBUTTONUP;
    setResizeMode(true);
    showResizeCursor(width ? IDC_RESIZE_WIDTH : IDC_RESIZE_HEIGHT);
    // The grip moves away from under the pointer: with the capture its release arrives all the same, and
    // leaves the resize mode. Another window that takes the capture, a dialog for one, ends the loop too, and
    // so does a release that only the hardware tells of.
    SetCapture(grip);
    for (bool goOn = true; goOn;) {
        if (width) {
            ResizeWidth(step);
        } else {
            ResizeHeight(step);
        }
        goOn = Pause(kGripPause);
        if (watch.destroyed()) return;  // deleted, or the program ends
        goOn =
            goOn && !beingDeleted && resizeMode && visible() && GetCapture() == grip && isHeld(rightButton);
    }
    gripRelease = 0;
    if (GetCapture() == grip) ReleaseCapture();
    setResizeMode(false);
    if (beingDeleted || (record.width == widthBefore && record.height == heightBefore)) return;
    store({NoteField::Width, NoteField::Height});
}

bool fpost::resizeKey(WPARAM key) {
    const std::int32_t widthBefore = record.width;
    const std::int32_t heightBefore = record.height;
    const float step = GetKeyState(VK_CONTROL) < 0 ? kWideKeyStep : kKeyStep;
    switch (key) {
        case VK_LEFT:
        case VK_RIGHT:
            showResizeCursor(IDC_RESIZE_WIDTH);
            ResizeWidth(key == VK_LEFT ? -step : step);
            break;
        case VK_UP:
        case VK_DOWN:
            if (record.iconized) return true;
            showResizeCursor(IDC_RESIZE_HEIGHT);
            ResizeHeight(key == VK_UP ? -step : step);
            break;
        case VK_RETURN:
        case VK_ESCAPE:
            setResizeMode(false);
            return true;
        default:
            return false;
    }
    if (record.width != widthBefore || record.height != heightBefore) {
        store({NoteField::Width, NoteField::Height});
    }
    return true;
}

// --- Iconizing --------------------------------------------------------------------------------------------

void fpost::toggleIconized() {
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone() || refusesChange()) return;
    record.iconized = !record.iconized;
    IconizeForm();
    if (beingDeleted) return;  // it rang, and its time being over took it away
    store({NoteField::Iconized});
    host->notesChanged();
    host->realign();
}

void fpost::IconizeForm() {
    if (Alarming() && SoundStop()) return;
    showIconized();
}

void fpost::showIconized() {
    // What the store holds now counts, also when another program put it there; without a usable figure the
    // note keeps the height that it remembers.
    const std::int32_t height = record.height;
    if (!record.iconized && (!refresh({NoteField::Height}) || record.height <= 0)) record.height = height;
    goHome();
    tellNameChanged(hwnd);
    if (record.iconized) return;
    if (visible()) host->realign();
    ShowAlarmStrip();
}

// --- Always on top ----------------------------------------------------------------------------------------

void fpost::toggleTopmost() {
    if (refusesChange()) return;
    record.topmost = !record.topmost;
    applyTopmost();
    tellNameChanged(hwnd);
    store({NoteField::Topmost});
}

void fpost::applyTopmost() const {
    // A note that is not on top and is not to be stays where it is among the others.
    // One that rings is above the others until it is silent.
    const bool wanted = record.topmost || Alarming();
    if (!wanted && !isTopmost(hwnd)) return;
    // The keyboard stays where the user has it.
    SetWindowPos(hwnd, wanted ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void fpost::keepBelowDialogs() const {
    if (!isTopmost(hwnd)) return;  // every dialog is
    struct Search {
        HWND message;
        std::vector<HWND> dialogs;  // from the front to the back

        static BOOL CALLBACK add(HWND window, LPARAM param) noexcept {
            auto& found = *reinterpret_cast<Search*>(param);
            const bool isDialog = window == found.message || isSystemDialog(window);
            if (isDialog && IsWindowVisible(window) != FALSE) found.dialogs.push_back(window);
            return TRUE;
        }
    } search{host->dialog->hwnd, {}};
    EnumThreadWindows(GetCurrentThreadId(), Search::add, reinterpret_cast<LPARAM>(&search));
    for (auto dialog = search.dialogs.rbegin(); dialog != search.dialogs.rend(); ++dialog) {
        SetWindowPos(*dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    }
}
