// The native edit control of a note: making it, and reading the clipboard and line breaks for it.
#pragma once

#include "note/NoteLayout.h"
#include "support/WinText.h"

/// The hidden control for the body of a note, of several lines, or for its title. It sets no limit of its
/// own, as only the store's counts. Null when Windows refuses.
HWND createEditor(HWND note, bool body, const Text& text, const PxRect& at, HFONT font);

/// The clipboard's text; empty without one, or while another program has the clipboard open.
Text clipboardText(HWND owner);

/// Height of a line in pixels, at least 1.
int lineHeight(HWND editor);

/// A text with a line break wherever an edit control of this place and font breaks it.
Text wrappedText(HWND note, const Text& text, const PxRect& place, HFONT font);
