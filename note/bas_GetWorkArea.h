// The desktop without the task bar, in pixels.
#pragma once

#include <vector>

#include "note/NoteLayout.h"
#include "support/WinText.h"

/// Work area of the primary monitor, as the system reports it now.
PxRect GetWorkArea();

/// Work area of the monitor that a rectangle lies on, or of the nearest.
PxRect workAreaAt(const PxRect& rect);

/// Whether a rectangle touches a monitor, be it under the task bar.
bool isOnScreen(const PxRect& rect);

inline PxRect pxRect(const RECT& r) {
    return {static_cast<int>(r.left), static_cast<int>(r.top), static_cast<int>(r.right),
            static_cast<int>(r.bottom)};
}
