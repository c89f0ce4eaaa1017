// What a screen reader hears of a note and of its parts, which are drawn by the note itself.
#pragma once

#include "support/WinText.h"

struct fpost;

/// The answer to WM_GETOBJECT, sent to the note or to one of its parts.
LRESULT answerSpoken(const fpost& note, HWND window, WPARAM wp, LPARAM lp);
