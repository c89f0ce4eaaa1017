// How a note looks: every picture and text of it, drawn from plain values. Windows draws the texts itself, so
// that every script is shaped and ordered and takes its letters from whichever font has them.
#pragma once

#include "note/NoteColor.h"
#include "note/NoteLook.h"
#include "support/Text.h"

/// What a note looks like at this moment. Each function draws one part whole, ground included; `area` is the
/// part's client rectangle, in pixels. The pictures stand in the hot areas that take the clicks.
struct NotePainter {
    const NoteLook& look;
    Rgb back = kWhite;      ///< the colour shown
    bool iconized = false;  ///< shrunk to its title strip
    bool active = false;    ///< has the keyboard: its lines say so

    /// The line around the note; `window` begins at 0, 0.
    void frame(HDC dc, RECT window) const;
    /// The part `area` of what lies below the parts; `client` is the note's whole client area.
    void sheet(HDC dc, const RECT& area, const RECT& client) const;
    RECT lineUnderTitle(const RECT& client) const;
    /// The text stands exactly where the title's editor has it; one that is too wide ends in dots.
    void title(HDC dc, const RECT& area, TextView text) const;
    /// Room for the title in a note whose client area is that wide, and what a title needs; pixels.
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
