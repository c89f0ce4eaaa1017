// Easy alignment: where a dragged note goes when its edges come near the screen's edges or another note's.
#pragma once

#include <span>

#include "note/NoteLayout.h"

/// How near, in pixels, two edges must be to snap together.
inline constexpr int kSnapTolerance = 2;

/// The monitor that a dragged note is on.
struct SnapScreen {
    int left = 0;  ///< the monitor's own corner, task bar included; 0, 0 on the primary one
    int top = 0;
    PxRect work;  ///< its area without the task bar
};

/// Snaps `moving` to the screen's edges, then to the first of `notes` (visible ones, in their order, without
/// the dragged one) that has a facing edge within the tolerance. All in pixels. True when a note was snapped
/// to or a screen edge changed the rectangle.
///
/// Snapping to notes never changes the size. Snapping to a left or top edge of the screen does if the work
/// area begins further in: the rectangle becomes smaller, so the caller has to offer the full size each time.
bool snap(PxRect& moving, const SnapScreen& screen, std::span<const PxRect> notes);
