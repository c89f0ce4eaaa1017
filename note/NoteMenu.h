// The note's context menu as data: one row a command, its state computed from the note at the moment of use,
// so that what is greyed or hidden can neither be chosen nor sent.
#pragma once

#include <vector>

#include "support/Text.h"

/// What the menu depends on.
struct NoteMenuInput {
    bool iconized = false;
    bool topmost = false;
    bool resizeMode = false;
    bool bodyBeingEdited = false;
    bool titleBeingEdited = false;
    bool alarmValid = false;   ///< the alarm's date and time are valid
    bool alarmPast = false;    ///< its moment is over
    bool alarmOneOff = false;  ///< neither weekday, repeat nor pattern
    bool restoreWhenPlay = false;
    bool dontDeleteWhenPlay = false;
    bool allHidden = false;
    bool allIconized = false;
};

struct NoteMenuItem {
    unsigned id = 0;  ///< 0: a separator
    Text caption;
    bool visible = true;
    bool enabled = true;
    bool checked = false;
};

/// All items in their order, separators included, in their present state.
std::vector<NoteMenuItem> noteMenu(const NoteMenuInput& input);

/// The visible ones, without leading, trailing or doubled separators.
std::vector<NoteMenuItem> visibleItems(const std::vector<NoteMenuItem>& items);

/// Whether a command may run now.
bool commandAllowed(const std::vector<NoteMenuItem>& items, unsigned id);
