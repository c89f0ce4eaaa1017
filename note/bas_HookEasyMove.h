// The window procedures that snap a note while it is dragged.
#pragma once

#include "note/Snapping.h"
#include "support/WinText.h"

/// Replaces a window's procedure for one drag and restores it at the end of the scope, or when the window is
/// destroyed during the drag. To be used on the stack around the system's move loop.
class MoveHook {
public:
    enum class Kind {
        EasyMove,     ///< snaps
        AlignedMove,  ///< snaps if `easyAlign` is set, as the desk keeps its notes in columns
    };

    MoveHook(HWND window, Kind kind, SnapRules rules);
    ~MoveHook();
    MoveHook(const MoveHook&) = delete;
    MoveHook& operator=(const MoveHook&) = delete;

private:
    static LRESULT CALLBACK EasyMoveProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept;
    static LRESULT CALLBACK AlignedMoveProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept;
    static MoveHook* hookOf(HWND window);
    static LRESULT passOn(HWND window, UINT message, WPARAM wp, LPARAM lp);
    LRESULT onMoving(WPARAM wp, RECT& proposed) const;
    void putBack();

    static inline MoveHook* innermost_ = nullptr;  ///< of the innermost of the running drags
    MoveHook* outer_ = nullptr;
    HWND window_;
    bool easyAlign_;
    Snapping snapping_;
    WNDPROC before_ = nullptr;
};
