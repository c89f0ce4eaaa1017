// The native edit control of a note: how it is made, and what is read around it.
#pragma once

#include "note/NoteLayout.h"
#include "support/WinText.h"

/// The hidden control for the body of a note, of several lines, or for its title. It limits no text: the
/// store's limits alone count. Null when Windows refuses.
HWND createEditor(HWND note, bool body, const Text& text, const PxRect& at, HFONT font);

/// The clipboard's text, empty without one and while another program has the clipboard.
Text clipboardText(HWND owner);

/// Height of a line in pixels, at least 1.
int lineHeight(HWND editor);

/// A text with a line break wherever an edit control of this place and font breaks it.
Text wrappedText(HWND note, const Text& text, const PxRect& place, HFONT font);
