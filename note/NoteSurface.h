// What is painted of a note: its window, its frame and its parts, in the colour shown and as its state
// demands.
#pragma once

#include "note/NotePainter.h"
#include "storage/NoteRecord.h"

struct fpost;

class NoteSurface {
public:
    explicit NoteSurface(const fpost& note) : note_(note) {}

    /// The colour shown.
    Rgb color() const { return shown_; }
    void color(Rgb color);
    /// What the note looks like at this moment.
    NotePainter painter() const;
    /// Has everything painted again.
    void repaint() const;
    /// The lines say whether the note has the keyboard.
    void showActive(bool on);

    void paint() const;
    void paintFrame() const;
    void paintPart(HWND part) const;
    /// Sets the colours of an editor that is about to be drawn; returns the brush for its ground.
    HBRUSH editorColors(HDC dc) const;

private:
    const fpost& note_;
    Rgb shown_ = kDesignColor;
    bool active_ = false;  ///< has the keyboard
};
