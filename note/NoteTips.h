// Tooltips of a note's pictures: what a press on them does.
#pragma once

#include "support/WinText.h"

struct fpost;

class NoteTips {
public:
    /// Makes them when the mouse first comes over a picture: fifty notes at log-on need none.
    void want(const fpost& note);
    /// Answers a notice that asks for a text.
    static void fill(const fpost& note, NMHDR& header);

private:
    HWND window_ = nullptr;  ///< owned by the note's window
};
