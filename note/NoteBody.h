// The text of a note as its label shows it. The editor that opens over the label breaks it into lines, once;
// the label draws them where the editor does, so that nothing moves when it opens.
#pragma once

#include <vector>

#include "note/NoteLook.h"
#include "support/Text.h"

/// A line of the text, without its line break: UTF-16 units from its beginning.
struct BodyLine {
    int start = 0;
    int length = 0;
};

struct NoteBody {
    /// Draws `text` on `dc`, whose origin is that of `editor`, in the ink that is selected there: as much of
    /// it as `editor` shows at its size. The editor is hidden, has the body's font, and is left empty.
    void draw(HDC dc, HWND editor, const Text& text, const NoteLook& look);
    /// The text is another one: its lines are broken anew at the next drawing.
    void forget() { broken_ = false; }

private:
    /// At most `room` lines of the `letters` UTF-16 units that `editor` holds.
    void breakLines(HWND editor, std::size_t letters, LONG room);

    std::vector<BodyLine> lines_;  ///< those that fit into `height_`; none when the editor has to draw
    std::vector<INT> advances_;  ///< pixels from each letter of a line to its next, as the editor spaces them
    LONG width_ = 0;             ///< pixels of the editor's text area that they were broken for
    LONG height_ = 0;
    bool broken_ = false;
    bool simple_ = true;  ///< the letters are such as the editor and the system draw alike
};
