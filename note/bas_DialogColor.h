// The system's colour dialog.
#pragma once

#include <optional>

#include "note/NoteColor.h"
#include "support/WinText.h"

/// Stands for "no title given": the dialog is then called "Color".
inline constexpr const char* kNoDialogTitle = "#A#O";

/// Whether a window is a dialog of the system; the colour dialog is the only one that the program shows.
bool isSystemDialog(HWND window);

/// Lets the user choose a colour, beginning with `color`, in a dialog owned by `owner` and above all notes.
/// Colours that the user has mixed are offered again until the program ends. Empty when cancelled. The owner
/// may be gone when this returns.
std::optional<Rgb> ChooseColorDialog(HWND owner, Rgb color, const char* title = kNoDialogTitle);
