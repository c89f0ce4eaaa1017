// What a press on each part of a note does, and the shape of the pointer over it.
#pragma once

#include <optional>

#include "support/Units.h"
#include "support/WinText.h"

struct fpost;

class NoteMouse {
public:
    explicit NoteMouse(fpost& note) : note_(note) {}

    /// A button went down or up on a part, at a place in the part's own pixels. The note may be gone when
    /// this returns.
    void onButton(HWND part, UINT message, int xPx, int yPx);
    /// Shows the pointer that belongs over a part of the note.
    void setPartCursor(HWND part);
    /// Shows the pointer with this resource number, 0 the arrow.
    void showCursor(int cursor);
    /// A press on a note that is disabled because a dialog is waiting for its answer; it ends the ringing.
    std::optional<LRESULT> onDisabledPress(LPARAM hit) const;

    int currentCursor = 0;  ///< resource number of the one shown

private:
    struct Press {
        UINT message = 0;
        Twips x, y;
        bool leftDown = false;  ///< including the second press of a double click
        bool rightDown = false;
        bool doubled = false;
    };
    void pressSheet(HWND part, const Press& press);
    void pressButtons(HWND part, const Press& press) const;
    void pressGrip(const Press& press) const;
    void pressStrip(const Press& press) const;
    int cursorOver(HWND part) const;

    fpost& note_;
    bool swallowDoubleClick_ = false;
};
