#include "note/bas_HookEasyMove.h"

#include <algorithm>
#include <utility>

#include "note/Snap.h"
#include "note/bas_GetWorkArea.h"

namespace {

/// Window property under which the procedures find their hook.
constexpr const char16_t* kHookProperty = u"KardelMoveHook";

MoveHook* hookOf(HWND window) {
    return static_cast<MoveHook*>(GetPropW(window, wide(kHookProperty)));
}

/// The monitor under a rectangle. The primary one keeps the work area that was read when the drag began.
SnapScreen screenAt(const RECT& rect, const PxRect& primaryWork) {
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    const HMONITOR monitor = MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST);
    if (GetMonitorInfoW(monitor, &info) == FALSE || (info.dwFlags & MONITORINFOF_PRIMARY) != 0) {
        return {0, 0, primaryWork};
    }
    return {static_cast<int>(info.rcMonitor.left), static_cast<int>(info.rcMonitor.top), pxRect(info.rcWork)};
}

}  // namespace

MoveHook::MoveHook(HWND window, Kind kind, Desk desk)
    : window_(window), desk_(std::move(desk)), workArea_(GetWorkArea()) {
    RECT rect{};
    GetWindowRect(window, &rect);
    width_ = pxRect(rect).width();
    height_ = pxRect(rect).height();
    if (SetPropW(window, wide(kHookProperty), this) == FALSE) return;  // an unhooked drag is a drag still
    const WNDPROC procedure = kind == Kind::EasyMove ? EasyMoveProc : AlignedMoveProc;
    before_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

MoveHook::~MoveHook() {
    putBack();
}

void MoveHook::putBack() {
    if (before_ == nullptr) return;
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
    RemovePropW(window_, wide(kHookProperty));
    before_ = nullptr;
}

LRESULT MoveHook::passOn(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    MoveHook* const hook = hookOf(window);
    if (hook == nullptr) return DefWindowProcW(window, message, wp, lp);
    const WNDPROC before = hook->before_;
    if (message == WM_NCDESTROY) hook->putBack();  // the window goes before the drag has ended
    return CallWindowProcW(before, window, message, wp, lp);
}

LRESULT CALLBACK MoveHook::EasyMoveProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    const MoveHook* const hook = hookOf(window);
    if (message != WM_MOVING || hook == nullptr) return passOn(window, message, wp, lp);
    return hook->onMoving(wp, *reinterpret_cast<RECT*>(lp));
}

LRESULT CALLBACK MoveHook::AlignedMoveProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    const MoveHook* const hook = hookOf(window);
    if (message != WM_MOVING || hook == nullptr) return passOn(window, message, wp, lp);
    if (!hook->desk_.easyAlign) return DefWindowProcW(window, message, wp, lp);
    return hook->onMoving(wp, *reinterpret_cast<RECT*>(lp));
}

LRESULT MoveHook::onMoving(WPARAM wp, RECT& proposed) const {
    // Snapping to a work area that does not begin at the screen's corner makes the note smaller. The size of
    // the drag's beginning is put in each time, so that this never adds up.
    PxRect moving = pxRect(proposed);
    moving.right = moving.left + width_;
    moving.bottom = moving.top + height_;
    std::vector<PxRect> notes;
    try {
        notes = desk_.others();
    } catch (...) {
        notes.clear();  // no memory for the list: the screen's edges still hold
    }
    snap(moving, screenAt(proposed, workArea_), notes);
    moving.right = std::max(moving.right, moving.left + std::min(width_, desk_.leastWidth));
    moving.bottom = std::max(moving.bottom, moving.top + std::min(height_, desk_.leastHeight));
    if (moving == pxRect(proposed))
        return DefWindowProcW(window_, WM_MOVING, wp, reinterpret_cast<LPARAM>(&proposed));
    proposed = RECT{moving.left, moving.top, moving.right, moving.bottom};
    return TRUE;
}
