// Resizes a note as long as a mouse button is held on an arrow of its grip, and by the arrow keys of the
// resize mode.
#pragma once

#include "note/ResizeRules.h"

enum class Along : unsigned char { Width, Height };

/// The note that a resizer resizes, with the mouse that holds its grip.
class ResizedNote {
public:
    virtual ~ResizedNote() = default;
    /// Where the note is on the screen.
    virtual ResizeAxis axis(Along along) = 0;
    /// Shows the note in another size. Nothing is stored.
    virtual void resize(Along along, Twips size) = 0;
    /// Stores the size that it has now.
    virtual void storeSize() = 0;
    /// Whether it is shrunk to its title, whose height is fixed.
    virtual bool isIconized() const = 0;
    /// Whether the note cannot be changed; the user is told so.
    virtual bool refusesResizing() = 0;
    /// `cursor` is a resource number, 0 the arrow.
    virtual void showResizeCursor(int cursor) = 0;
    /// The resize mode has begun or ended.
    virtual void resizeModeChanged() = 0;

    enum class Hold : unsigned char {
        GoesOn,
        Over,       ///< the button is up, or something else has the mouse or the note
        Destroyed,  ///< and so is the resizer
    };
    /// Makes sure that the release of the button is heard, since the grip moves away from under the pointer.
    virtual void holdGrip() = 0;
    /// Waits for the next step while messages are processed.
    virtual Hold waitOnGrip(bool rightButton) = 0;
    /// Ends what holdGrip() began. Harmless when something else has ended it.
    virtual void releaseGrip() = 0;
};

class NoteResizer {
public:
    explicit NoteResizer(ResizedNote& note) : note_(note) {}
    NoteResizer(const NoteResizer&) = delete;
    NoteResizer& operator=(const NoteResizer&) = delete;

    /// The resize mode: the arrow keys resize, or the grip is held.
    bool isOn() const { return on_; }
    void setMode(bool on);
    /// Resource number of the mode's cursor, 0 outside the mode.
    int cursor() const { return cursor_; }

    struct Press {
        Twips x, y;  ///< in the grip
        bool rightButton = false;
        bool shift = false;
    };
    /// Resizes until the hold is over, then stores the size. Does nothing beside the grip's arrows, or while
    /// a hold is already running. The note may be gone when this returns.
    void press(const Press& press);
    /// A button went up; if it is the one that holds the grip, the hold ends.
    void release(bool rightButton);
    /// A key in the resize mode. True when it was one of the mode's.
    bool key(unsigned key, bool control);

    /// Changes the size by `Delta` twips as far as it may go. Nothing is stored.
    void ResizeWidth(float Delta);
    void ResizeHeight(float Delta);

private:
    void begin(int cursor);
    /// Whether the size has changed.
    bool change(Along along, Twips by);

    ResizedNote& note_;
    bool on_ = false;
    bool holding_ = false;
    bool heldByRight_ = false;
    int cursor_ = 0;
};
