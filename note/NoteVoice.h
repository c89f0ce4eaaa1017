// What a screen reader learns about a note and its parts, which the note draws itself.
#pragma once

#include "support/WinText.h"

struct fpost;

/// The answer to WM_GETOBJECT, sent to the note or to one of its parts.
LRESULT answerSpoken(const fpost& note, HWND window, WPARAM wp, LPARAM lp);
