// Automatic position: the notes in columns, from the place of the first one on.
#pragma once

#include <cstdint>
#include <vector>

#include "note/NoteLayout.h"

/// A note as it stands on screen, in twips. One that was minimised counts with its restored rectangle.
struct ColumnNote {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool visible = true;
};

/// What becomes of a note: its new place in twips, which may be the one it has.
struct ColumnPlace {
    bool moved = false;  ///< false: the first note and hidden ones stay where they are
    std::int32_t left = 0;
    std::int32_t top = 0;
};

/// Lays `notes` out in their order and answers one place a note. The first note stays, hidden or not: the
/// columns begin at its left edge and all have its top. `workArea` is in pixels, `twipsPerPixel` the vertical
/// scale.
///
/// A note joins the column while the one before it ends within the work area's height, so the last of a
/// column may reach below the work area. Nothing limits the columns at the right.
std::vector<ColumnPlace> automaticPosition(const std::vector<ColumnNote>& notes, const PxRect& workArea,
                                           double twipsPerPixel);
