#include "note/bas_HookEasyMove.h"

#include <algorithm>
#include <utility>

#include "note/bas_GetWorkArea.h"

namespace {

bool isWithin(const RECT& rect, const PxRect& area) {
    return rect.left >= area.left && rect.top >= area.top && rect.right <= area.right &&
           rect.bottom <= area.bottom;
}

}  // namespace

MoveHook::MoveHook(HWND window, Kind kind, Desk desk)
    : window_(window), desk_(std::move(desk)), workArea_(GetWorkArea()) {
    RECT rect{};
    GetWindowRect(window, &rect);
    width_ = pxRect(rect).width();
    height_ = pxRect(rect).height();
    readMonitors();
    const WNDPROC procedure = kind == Kind::EasyMove ? EasyMoveProc : AlignedMoveProc;
    before_ = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
    outer_ = std::exchange(innermost_, this);
}

MoveHook::~MoveHook() {
    innermost_ = outer_;
    putBack();
}

void MoveHook::putBack() {
    if (before_ == nullptr) return;
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before_));
    before_ = nullptr;
}

MoveHook* MoveHook::hookOf(HWND window) {
    MoveHook* hook = innermost_;
    while (hook != nullptr && (hook->window_ != window || hook->before_ == nullptr))
        hook = hook->outer_;
    return hook;
}

LRESULT MoveHook::passOn(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    MoveHook* const hook = hookOf(window);
    if (hook == nullptr) return DefWindowProcW(window, message, wp, lp);
    const WNDPROC before = hook->before_;
    if (message == WM_DISPLAYCHANGE || message == WM_SETTINGCHANGE) hook->readMonitors();
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

void MoveHook::readMonitors() {
    monitors_.clear();
    EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK MoveHook::addMonitor(HMONITOR monitor, HDC, LPRECT, LPARAM param) noexcept {
    auto& hook = *reinterpret_cast<MoveHook*>(param);
    MONITORINFO info{};
    info.cbSize = sizeof(info);
    if (GetMonitorInfoW(monitor, &info) == FALSE) return TRUE;
    const PxRect area = pxRect(info.rcMonitor);
    const bool primary = (info.dwFlags & MONITORINFOF_PRIMARY) != 0;
    const SnapScreen other{area.left, area.top, pxRect(info.rcWork)};
    try {
        hook.monitors_.push_back({monitor, area, primary ? SnapScreen{0, 0, hook.workArea_} : other});
    } catch (...) {
        hook.monitors_.clear();  // no memory for the list: the primary monitor's edges still hold
        return FALSE;
    }
    return TRUE;
}

SnapScreen MoveHook::screenAt(const RECT& rect) const {
    if (monitors_.size() == 1) return monitors_.front().screen;
    for (const Monitor& monitor : monitors_) {
        if (isWithin(rect, monitor.area)) return monitor.screen;
    }
    const HMONITOR nearest = MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST);
    for (const Monitor& monitor : monitors_) {
        if (monitor.handle == nearest) return monitor.screen;
    }
    return {0, 0, workArea_};
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
    snap(moving, screenAt(proposed), notes);
    moving.right = std::max(moving.right, moving.left + std::min(width_, desk_.leastWidth));
    moving.bottom = std::max(moving.bottom, moving.top + std::min(height_, desk_.leastHeight));
    if (moving == pxRect(proposed))
        return DefWindowProcW(window_, WM_MOVING, wp, reinterpret_cast<LPARAM>(&proposed));
    proposed = RECT{moving.left, moving.top, moving.right, moving.bottom};
    return TRUE;
}
