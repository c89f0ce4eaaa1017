// Where a note's window is and how large it is: according to the record, to the screen, and to whatever moves
// and resizes it.
#pragma once

#include <span>
#include <vector>

#include "note/NoteMover.h"
#include "note/NoteResizer.h"
#include "support/WinText.h"

struct fpost;

class NotePlace final : private MovedNote, private ResizedNote {
public:
    explicit NotePlace(fpost& note) : note_(note) {}

    /// The window in pixels, and in twips, as it is on screen.
    PxRect window() const override;
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    /// Where it is on screen or, hidden, where it will be.
    PxRect area() const;
    /// Where the note's record and state put the window. A note that would be on no monitor is put where it
    /// can be reached.
    PxRect place() const override;
    /// Puts the window there. Nothing is stored, and no other note moves.
    void goHome() override;
    /// Moves the window, and the logical place with it. Nothing is stored.
    void moveTo(Twips left, Twips top);
    /// Makes the window as large as the note, after one dimension in the record has changed.
    void fitWindow(Along changed);
    /// The window's place, size or place in the stack has changed, whoever changed it.
    void onPosition(const WINDOWPOS& changed);
    /// The window is just being moved to place(), so the other notes stay where they are.
    bool isPlacing() const { return placing_; }

    /// Lets the mouse move the note until the button is up. The note may be gone when this returns.
    void drag();
    /// Moves the note by one step of the keyboard. It snaps as in a drag; the place is stored when the key is
    /// released.
    void moveStep(int columns, int rows);

    /// Puts the note where it belongs in the stack of windows: on top or, when it was, no more.
    void applyTopmost() const;

    NoteMover mover{*this};
    NoteResizer resizer{*this};

private:
    bool isOnScreen() const override;
    void moveWindow(int left, int top) override;
    void awaitRest(bool awaited) override;
    bool isAtHome() const override;
    void takePlace() override;
    void storePlace() override;

    ResizeAxis axis(Along along) override;
    void resize(Along along, Twips size) override;
    void storeSize() override;
    bool isIconized() const override;
    bool refusesResizing() override;
    void showResizeCursor(int cursor) override;
    void resizeModeChanged() override;
    void holdGrip() override;
    Hold waitOnGrip(bool rightButton) override;
    void releaseGrip() override;

    SnapRules snapRules() const;
    PxRect placeOn(std::span<const Monitor> monitors) const;
    void fit(Along changed, std::span<const Monitor> monitors);
    /// Puts open dialogs back above a note that has come to the top.
    void keepBelowDialogs() const;

    fpost& note_;
    bool placing_ = false;
    std::vector<Monitor> monitors_;  ///< at this step of a resizing, which asks for them only once
};
