// How a note looks: draws its pictures and texts from plain values. Windows itself lays out the texts, so
// that every script is shaped and ordered, and missing letters come from other fonts.
#pragma once

#include "note/NoteColor.h"
#include "note/NoteLook.h"
#include "support/Text.h"

/// A note's looks at one moment. Each function draws a whole part, including its background; `area` is the
/// part's client rectangle in pixels. The pictures are in the hot areas that take the clicks.
struct NotePainter {
    const NoteLook& look;
    Rgb back = kWhite;      ///< the colour shown
    bool iconized = false;  ///< shrunk to its title strip
    bool active = false;    ///< has the keyboard: its lines say so

    /// The line around the note; `window` begins at 0, 0.
    void frame(HDC dc, RECT window) const;
    /// The rectangle `area` of what is behind the parts; `client` is the note's whole client area.
    void sheet(HDC dc, const RECT& area, const RECT& client) const;
    RECT lineUnderTitle(const RECT& client) const;
    /// The text is exactly where the title's editor has it; if it is too wide it ends in dots.
    void title(HDC dc, const RECT& area, TextView text) const;
    /// The room for the title in a note whose client area has that width, and the room that a title needs, in
    /// pixels.
    int titleRoom(int clientWidth) const;
    int titleWidth(TextView text) const;
    /// The text, with CR LF as line breaks.
    void body(HDC dc, const RECT& area, TextView text) const;
    void buttons(HDC dc, const RECT& area) const;  ///< iconize and close
    void bin(HDC dc, const RECT& area) const;      ///< delete
    void grip(HDC dc, const RECT& area) const;
    /// The time strip.
    void strip(HDC dc, const RECT& area, TextView text) const;

private:
    void prepareText(HDC dc) const;
};
