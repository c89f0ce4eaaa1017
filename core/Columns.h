// Where notes are put: automatic position, in columns from the place of the first one on, and new notes in a
// cascade.
#pragma once

#include <cstdint>
#include <span>
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

/// A corner of a note on the screen, in pixels.
struct PxCorner {
    int x = 0;
    int y = 0;
    bool operator==(const PxCorner&) const = default;
};

/// Where new note `number`, of `width` x `height` pixels, begins: cascading in the work area, on the first
/// step on which no note lies yet. When all are taken it is the step of its number.
PxCorner cascadePlace(int number, int width, int height, const PxRect& work, std::span<const PxCorner> taken);

/// Lays `notes` out in their order and answers one place a note. The first note stays, hidden or not: the
/// columns begin at its left edge and all have its top. `workArea` is in pixels, `twipsPerPixel` the vertical
/// scale.
///
/// A note joins the column while the one before it ends within the work area's height, so the last of a
/// column may reach below the work area. Nothing limits the columns at the right.
std::vector<ColumnPlace> automaticPosition(const std::vector<ColumnNote>& notes, const PxRect& workArea,
                                           double twipsPerPixel);
