// Every message that a window of the program posts to itself. Each has a number of its own, whichever window
// it is for, so that one that goes astray means nothing there.
#pragma once

#include "support/WinText.h"

namespace posted {
/// To a note: its window goes.
inline constexpr UINT kUnload = WM_APP + 1;
/// To a note: what the system minimised comes back.
inline constexpr UINT kRestore = WM_APP + 2;
/// To the window of a menu: entry wp was chosen, lp is what the menu said (support/PopupMenu).
inline constexpr UINT kChosen = WM_APP + 3;
/// To the tray: a save failed inside a handler that had to end first.
inline constexpr UINT kSaveFailed = WM_APP + 4;
/// To the tray: a second start found this copy, and its icon in place.
inline constexpr UINT kRunning = WM_APP + 5;
}  // namespace posted
