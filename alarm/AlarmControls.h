// The alarm editor's own kinds of controls: bars that say what they set, lists that show a text of their own,
// and labels with an access key.
#pragma once

#include <span>

#include "support/WinText.h"

/// A list that shows a text of its own while one of its entries is chosen: the empty one, or none.
struct CueList {
    WNDPROC before = nullptr;
    Text cue;
    int at = 0;  ///< index of the entry; CB_ERR for "none"
};

/// Gives a drop-down list a cue, which must exist as long as the list.
void makeCueList(HWND list, CueList& cue);

/// Replaces the entries of a list and chooses one, by its index from 0.
void fillList(HWND list, std::span<const TextView> entries, int chosen);

/// Lets a button underline the letter after the mark "&" of its caption, which reaches it with Alt, and hides
/// the mark from everything that reads the caption.
void hideMark(HWND button);

/// Makes one of the editor's scroll bars say the date or the time that it sets.
void makeSpokenBar(HWND bar);

/// Draws an entry of a list, or the field of a closed one.
void drawEntry(const DRAWITEMSTRUCT& drawn);
/// Draws a label with its first letter underlined, which reaches its field with Alt.
void drawLabel(const DRAWITEMSTRUCT& drawn);
/// Draws the frame around the weekdays.
void drawFrame(const DRAWITEMSTRUCT& drawn);
