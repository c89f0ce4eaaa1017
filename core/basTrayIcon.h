// The program's icon in the notification area.
#pragma once

#include "support/WinText.h"

/// Adds the icon; its mouse messages go to the window `tray` as WM_TRAYICON. False when it is there already
/// or the shell is not ready.
[[nodiscard]] bool TrayIconAdd(HWND tray);

/// For the start: also true when the icon is there already. The shell may report a time-out although it has
/// added the icon, and then every further attempt to add it would fail.
[[nodiscard]] bool TrayIconEnsure(HWND tray);

/// Removes the icon. False when there was none.
bool TrayIconDelete(HWND tray);
