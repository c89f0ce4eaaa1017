// Shows a menu at the mouse. What is chosen comes back as a message of its own: a command that opens a box,
// or deletes the window that the menu belongs to, must not run inside the menu's loop.
#pragma once

#include "support/Menu.h"
#include "support/WinText.h"

/// Returns when the menu has gone. What the user chose is posted to `window`, with what the menu `said`. The
/// window may be gone by then.
void trackMenu(HWND window, const Menu& menu, LPARAM said);

/// Posts posted::kChosen: entry `id` of a menu that `said` so and so.
void postChosen(HWND window, unsigned id, LPARAM said);
