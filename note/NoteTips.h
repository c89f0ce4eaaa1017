// Tooltips that say what a press on each of a note's pictures does.
#pragma once

#include "support/WinText.h"

struct fpost;

class NoteTips {
public:
    /// Creates them when the mouse first comes over a picture, as fifty notes at log-on need none.
    void want(const fpost& note);
    /// Answers a notification that asks for a text.
    static void fill(const fpost& note, NMHDR& header);

private:
    HWND window_ = nullptr;  ///< owned by the note's window
};
