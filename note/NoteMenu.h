// The context menu of a note: one row per command, with its state computed from the note at the moment of
// use.
#pragma once

#include <cstdint>

#include "support/Menu.h"

/// What the menu depends on.
struct NoteMenuInput {
    bool iconized = false;
    bool topmost = false;
    bool resizeMode = false;
    bool alarmValid = false;   ///< the alarm's date and time are valid
    bool alarmPast = false;    ///< its instant has passed
    bool alarmOneOff = false;  ///< neither weekday, repeat nor pattern
    bool restoreWhenPlay = false;
    bool dontDeleteWhenPlay = false;
    bool allHidden = false;
    bool allIconized = false;
};

/// What the commands do.
class NoteMenuFace {
public:
    virtual ~NoteMenuFace() = default;
    virtual void mnuNew() = 0;
    virtual void mnuEdit() = 0;
    virtual void mnuColor() = 0;
    virtual void mnuAlarm() = 0;
    virtual void mnuRewhenplay() = 0;
    virtual void mnuClose() = 0;
    virtual void mnuDelete() = 0;
    virtual void mnuDontDelete() = 0;
    virtual void mnuTopmost() = 0;
    virtual void mnuResize() = 0;
    /// Iconizes the note, or restores it when false.
    virtual void mnuIconize(bool iconized) = 0;
    virtual void mnuHideAll(bool hidden) = 0;
    virtual void mnuIconizeAll(bool iconized) = 0;
    virtual void mnuExit() = 0;
};

/// All rows in order, in their present state. `note` must exist as long as they are used.
Menu noteMenu(const NoteMenuInput& input, NoteMenuFace& note);

/// What the menu says about things that may change while it is open, as a number that fits in a message; and
/// back, the input of a menu that says so.
std::intptr_t said(const NoteMenuInput& input);
NoteMenuInput asSaid(const NoteMenuInput& now, std::intptr_t said);
