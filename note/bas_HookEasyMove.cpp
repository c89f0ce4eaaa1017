#include "note/bas_HookEasyMove.h"

#include <algorithm>
#include <utility>

#include "note/bas_GetWorkArea.h"
#include "support/Window.h"

namespace {

bool isWithin(const RECT& rect, const PxRect& area) {
    return rect.left >= area.left && rect.top >= area.top && rect.right <= area.right &&
           rect.bottom <= area.bottom;
}

}  // namespace

MoveHook::MoveHook(HWND window, Kind kind, Desk desk)
    : window_(window), desk_(std::move(desk)), workArea_(GetWorkArea()), monitors_(readMonitors()) {
    RECT rect{};
    GetWindowRect(window, &rect);
    width_ = pxRect(rect).width();
    height_ = pxRect(rect).height();
    before_ = replaceProcedure(window, kind == Kind::EasyMove ? EasyMoveProc : AlignedMoveProc);
    outer_ = std::exchange(innermost_, this);
}

MoveHook::~MoveHook() {
    innermost_ = outer_;
    putBack();
}

void MoveHook::putBack() {
    if (before_ == nullptr) return;
    replaceProcedure(window_, std::exchange(before_, nullptr));
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
    if (message == WM_DISPLAYCHANGE || message == WM_SETTINGCHANGE) hook->monitors_ = readMonitors();
    if (message == WM_NCDESTROY) hook->putBack();  // the window is destroyed before the drag has ended
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

SnapScreen MoveHook::screenAt(const RECT& rect) const {
    const auto under = std::find_if(monitors_.begin(), monitors_.end(),
                                    [&rect](const Monitor& monitor) { return isWithin(rect, monitor.area); });
    const PxRect place = pxRect(rect);
    const Monitor& monitor = under != monitors_.end() ? *under : monitorAt(monitors_, place);
    if (monitor.primary) return {0, 0, workArea_};
    return {monitor.area.left, monitor.area.top, monitor.work};
}

LRESULT MoveHook::onMoving(WPARAM wp, RECT& proposed) const {
    // Snapping to a work area that does not begin at the screen's corner makes the note smaller. The size
    // from the beginning of the drag is used each time, so that this never adds up.
    PxRect moving = pxRect(proposed);
    moving.right = moving.left + width_;
    moving.bottom = moving.top + height_;
    std::vector<PxRect> notes;
    try {
        notes = desk_.others();
    } catch (...) {
        notes.clear();  // out of memory for the list: the screen's edges still snap
    }
    snap(moving, screenAt(proposed), notes);
    moving.right = std::max(moving.right, moving.left + std::min(width_, desk_.leastWidth));
    moving.bottom = std::max(moving.bottom, moving.top + std::min(height_, desk_.leastHeight));
    if (moving == pxRect(proposed))
        return DefWindowProcW(window_, WM_MOVING, wp, reinterpret_cast<LPARAM>(&proposed));
    proposed = RECT{moving.left, moving.top, moving.right, moving.bottom};
    return TRUE;
}
