// The desktop without the task bar, in pixels.
#pragma once

#include <vector>

#include "note/Monitors.h"
#include "support/WinText.h"

/// Work area of the primary monitor, as the system reports it now.
PxRect GetWorkArea();

/// All monitors as they are now, at least one. Asking takes the system a while: a command that places all
/// notes asks once.
std::vector<Monitor> readMonitors();

/// Work area of the monitor that a rectangle lies on, or of the nearest.
PxRect workAreaAt(const PxRect& rect);

inline PxRect pxRect(const RECT& r) {
    return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right),
            static_cast<int>(r.bottom)};
}
