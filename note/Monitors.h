// Which monitor a rectangle lies on. All in pixels of the desktop, whose origin is the primary monitor's
// corner.
#pragma once

#include <span>

#include "note/NoteLayout.h"

struct Monitor {
    PxRect area;  ///< task bar included
    PxRect work;  ///< without it
    bool primary = false;
};

/// The monitor that most of a rectangle lies on; the nearest when it lies on none. There is at least one.
const Monitor& monitorAt(std::span<const Monitor> monitors, const PxRect& rect);

/// Whether some of a rectangle can be seen on a monitor. What lies under the task bar cannot.
bool isInSight(std::span<const Monitor> monitors, const PxRect& rect);
