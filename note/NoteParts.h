// Makes the parts of a note, and puts them where the size of its window leaves them.
#pragma once

#include "note/NoteLayout.h"

struct fpost;

/// Window class of the parts.
inline constexpr const char16_t* kPartClass = u"KardelPart";

class NoteParts {
public:
    explicit NoteParts(fpost& note) : note_(note) {}

    /// Creates them in the note's window as it is. False when Windows refuses.
    [[nodiscard]] bool create();
    /// Where they stand in the window as it is.
    NoteRects rects() const;
    /// Moves them to where they stand in a window of another size. False when it has the same as before.
    bool fit();
    /// Shows the title that the note's record has.
    void showTitle() const;

private:
    /// The note's client area in pixels, which begins at 0, 0.
    PxRect client() const;
    NoteRects rectsIn(const PxRect& client) const;

    fpost& note_;
    PxRect laid_;  ///< client area that the parts are laid out for
};
