// Which monitor a rectangle is on. Everything is in pixels of the desktop, whose origin is the primary
// monitor's corner.
#pragma once

#include <span>

#include "note/NoteLayout.h"

struct Monitor {
    PxRect area;  ///< task bar included
    PxRect work;  ///< without it
    bool primary = false;
};

/// The monitor that most of a rectangle is on, or the nearest when it is on none. There must be at least one.
const Monitor& monitorAt(std::span<const Monitor> monitors, const PxRect& rect);

/// Whether some of a rectangle is visible on a monitor. What is under the task bar is not.
bool isInSight(std::span<const Monitor> monitors, const PxRect& rect);
