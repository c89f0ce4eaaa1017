#include "note/bas_HookEasyMove.h"

#include <utility>

#include "note/bas_GetWorkArea.h"
#include "support/Window.h"

MoveHook::MoveHook(HWND window, Kind kind, SnapRules rules)
    : window_(window),
      easyAlign_(rules.easyAlign),
      snapping_(windowRect(window), std::move(rules), readMonitors()) {
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
    if (message == WM_DISPLAYCHANGE || message == WM_SETTINGCHANGE)
        hook->snapping_.setMonitors(readMonitors());
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
    if (!hook->easyAlign_) return DefWindowProcW(window, message, wp, lp);
    return hook->onMoving(wp, *reinterpret_cast<RECT*>(lp));
}

LRESULT MoveHook::onMoving(WPARAM wp, RECT& proposed) const {
    const PxRect moved = snapping_.moved(pxRect(proposed));
    if (moved == pxRect(proposed))
        return DefWindowProcW(window_, WM_MOVING, wp, reinterpret_cast<LPARAM>(&proposed));
    proposed = RECT{moved.left, moved.top, moved.right, moved.bottom};
    return TRUE;
}
