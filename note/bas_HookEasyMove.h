// The window procedures that snap a note while it is dragged.
#pragma once

#include <functional>
#include <vector>

#include "note/Monitors.h"
#include "note/Snap.h"
#include "support/WinText.h"

/// Replaces a window's procedure for one drag and restores it at the end of the scope, or when the window is
/// destroyed during the drag. To be used on the stack around the system's move loop.
class MoveHook {
public:
    enum class Kind {
        EasyMove,     ///< snaps
        AlignedMove,  ///< snaps if `easyAlign` is set, as the desk keeps its notes in columns
    };
    struct Desk {
        bool easyAlign = false;
        int leastWidth = 0;  ///< pixels; snapping never leaves the note smaller
        int leastHeight = 0;
        /// Rectangles of the other visible notes, in the order of their numbers; asked at every step.
        std::function<std::vector<PxRect>()> others;
    };

    MoveHook(HWND window, Kind kind, Desk desk);
    ~MoveHook();
    MoveHook(const MoveHook&) = delete;
    MoveHook& operator=(const MoveHook&) = delete;

private:
    static LRESULT CALLBACK EasyMoveProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept;
    static LRESULT CALLBACK AlignedMoveProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept;
    static MoveHook* hookOf(HWND window);
    static LRESULT passOn(HWND window, UINT message, WPARAM wp, LPARAM lp);
    LRESULT onMoving(WPARAM wp, RECT& proposed) const;
    /// The monitor under a rectangle.
    SnapScreen screenAt(const RECT& rect) const;
    void putBack();

    static inline MoveHook* innermost_ = nullptr;  ///< of the innermost of the running drags
    MoveHook* outer_ = nullptr;
    HWND window_;
    Desk desk_;
    WNDPROC before_ = nullptr;
    PxRect workArea_;  ///< of the primary monitor, as it was when the drag began
    /// All monitors: asking Windows for them at every step would take longer than everything else.
    std::vector<Monitor> monitors_;
    int width_ = 0;  ///< pixels, at the start of the drag
    int height_ = 0;
};
