// How far a note can be made wider, narrower, taller and shorter.
#pragma once

#include "support/Units.h"

/// A note's extent along one axis, in twips of the screen.
struct ResizeAxis {
    Twips start;    ///< its left or top edge
    Twips size;     ///< its width or height
    Twips workEnd;  ///< right or bottom edge of the work area that it is on
    Twips least;    ///< the smallest size allowed
};

/// The size after a change by `delta`. Shrinking below the least size is refused as a whole. Growing stops
/// flush with the work area; a note that reaches beyond it keeps its size.
Twips resized(const ResizeAxis& axis, Twips delta);
