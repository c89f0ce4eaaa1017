// Every message that the program's windows post to themselves. Each has its own number, whichever window it
// is for, so that one that goes astray means nothing to another window.
#pragma once

#include "support/WinText.h"

namespace posted {
/// To a note: destroy the window.
inline constexpr UINT kUnload = WM_APP + 1;
/// To a note: restore what the system has minimised.
inline constexpr UINT kRestore = WM_APP + 2;
/// To the window of a menu: entry wp was chosen, lp is what the menu said (support/PopupMenu).
inline constexpr UINT kChosen = WM_APP + 3;
/// To the tray: a save has failed inside a handler that had to end first.
inline constexpr UINT kSaveFailed = WM_APP + 4;
/// To the tray: a second start has found this copy, with its icon in place.
inline constexpr UINT kRunning = WM_APP + 5;
}  // namespace posted
