// The desktop without the task bar, in pixels.
#pragma once

#include <vector>

#include "note/Monitors.h"
#include "support/WinText.h"

/// Work area of the primary monitor, as the system reports it now.
PxRect GetWorkArea();

/// All current monitors, at least one. Asking the system takes a while, so a command that places all notes
/// asks once.
std::vector<Monitor> readMonitors();

/// Work area of the monitor that a rectangle is on, or of the nearest.
PxRect workAreaAt(const PxRect& rect);

inline PxRect pxRect(const RECT& r) {
    return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right),
            static_cast<int>(r.bottom)};
}

/// A window in pixels of the screen.
inline PxRect windowRect(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return pxRect(rect);
}
