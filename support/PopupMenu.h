// Shows a menu at the mouse. What is chosen comes back as a message of its own, because a command that opens
// a box or deletes the menu's window must not run inside the menu's loop.
#pragma once

#include "support/Menu.h"
#include "support/WinText.h"

/// Returns when the menu is gone. What the user chose is posted to `window`, together with what the menu
/// `said`. The window may be gone by then.
void trackMenu(HWND window, const Menu& menu, LPARAM said);

/// Posts posted::kChosen for entry `id`, with what its menu `said`.
void postChosen(HWND window, unsigned id, LPARAM said);
