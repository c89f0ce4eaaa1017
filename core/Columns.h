// Where notes are put: by automatic position in columns, beginning at the first note's place, and new notes
// in a cascade.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "note/NoteLayout.h"

/// A note as it is on screen, in twips; for a minimised one the restored rectangle.
struct ColumnNote {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool visible = true;
};

/// A note's new place in twips, which may be the one it already has.
struct ColumnPlace {
    bool moved = false;  ///< false: the first note and hidden ones stay where they are
    std::int32_t left = 0;
    std::int32_t top = 0;
};

/// A corner of a note on the screen, in pixels.
struct PxCorner {
    int x = 0;
    int y = 0;
    bool operator==(const PxCorner&) const = default;
};

/// The corner of new note `number`, of `width` x `height` pixels: in a cascade in the work area, on the first
/// step where there is no note yet. When all steps are taken, it is the one for its number.
PxCorner cascadePlace(int number, int width, int height, const PxRect& work, std::span<const PxCorner> taken);

/// Lays `notes` out in order and returns one place per note. The first note stays, hidden or not: the columns
/// begin at its left edge, and all have its top. `workArea` is in pixels, `twipsPerPixel` the vertical scale.
///
/// A note joins a column if the one before it ends within the work area's height, so the last note of a
/// column may reach below the work area. Columns may go on beyond the right edge.
std::vector<ColumnPlace> automaticPosition(const std::vector<ColumnNote>& notes, const PxRect& workArea,
                                           double twipsPerPixel);
