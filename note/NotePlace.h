// Where the window of a note stands and how large it is: what the record says, what the screen allows, and
// who moves and resizes it.
#pragma once

#include "note/NoteMover.h"
#include "note/NoteResizer.h"

struct fpost;

class NotePlace final : public MovedNote, public ResizedNote {
public:
    explicit NotePlace(fpost& note) : note_(note) {}

    /// The window in pixels, and in twips, as it is on screen.
    PxRect window() const;
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    /// Where it is on screen or, hidden, where it will be.
    PxRect area() const;
    /// Where the record and the state of the note put the window. A note that would be on no monitor stands
    /// where it can be reached.
    PxRect place() const override;
    /// Puts the window there. Nothing is stored, and no other note moves.
    void goHome() override;
    /// Moves the window, and the logical place with it. Nothing is stored.
    void moveTo(Twips left, Twips top);
    /// Makes the window as large as the note is, after the record was changed along one side.
    void fitWindow(Along changed);
    void onPosition(const WINDOWPOS& changed);
    /// The window is on its way to place(): the others stay where they are.
    bool isPlacing() const { return placing_; }

    /// Lets the mouse move the note until the button is up. The note may be gone when this returns.
    void drag();
    /// Moves the note by a step of the keyboard. It snaps as in a drag; the place is stored with the key's
    /// release.
    void moveStep(int columns, int rows);

    /// Puts the note where it belongs in the stack of windows: on top or, when it was, no more.
    void applyTopmost() const;

    bool isAtHome() const override;
    void takePlace() override;
    void storePlace() override;

    ResizeAxis axis(Along along) const override;
    void resize(Along along, Twips size) override;
    void storeSize() override;
    bool isIconized() const override;
    bool refusesResizing() override;
    void showResizeCursor(int cursor) override;
    void resizeModeChanged() override;
    void holdGrip() override;
    Hold waitOnGrip(bool rightButton) override;
    void releaseGrip() override;

    NoteMover mover{*this};
    NoteResizer resizer{*this};

private:
    NoteMover::Rules moveRules() const;
    void setCursor(int cursor);
    /// Puts the dialogs that are open back above a note that came to the top of the stack.
    void keepBelowDialogs() const;

    fpost& note_;
    bool placing_ = false;
};
