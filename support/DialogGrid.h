// The grid on which a dialog is laid out: the font of the system's own dialogs, and distances in quarters and
// eighths of its letters, so that one layout is right at every scaling and font size.
#pragma once

#include "support/Handles.h"

/// A size in pixels.
struct PxSize {
    int width = 0;
    int height = 0;
};

struct DialogGrid {
    UniqueFont font;
    int baseX = 0;  ///< average width of a letter, pixels
    int baseY = 0;  ///< height of a line, pixels

    /// Pixels of `n` dialog units: a quarter of a letter across, an eighth of a line down.
    int x(int n) const { return MulDiv(n, baseX, 4); }
    int y(int n) const { return MulDiv(n, baseY, 8); }

    /// Size of a text in the dialog's font, on lines of at most `width` pixels; long words are broken up.
    /// Without a width the text is one line.
    PxSize textSize(TextView text, int width = 0) const;

    /// A child control in the dialog's font, at 0, 0 until the layout places it. `name` is a window class, of
    /// the system or of the program. Null when Windows refuses.
    HWND add(HWND form, const wchar_t* name, const Text& text, DWORD style, int id) const;
};

/// The grid for the current scaling and settings.
DialogGrid loadDialogGrid();

/// Moves a control without redrawing what has not changed.
void placeControl(HWND control, int left, int top, int width, int height);
