// A menu as rows: what each row says, whether it can be chosen, and what it does. What is greyed or hidden
// can neither be chosen nor sent.
#pragma once

#include <functional>
#include <vector>

#include "support/Text.h"

struct MenuRow;
using Menu = std::vector<MenuRow>;

struct MenuRow {
    unsigned id = 0;                    ///< command id; a separator's does nothing
    Text caption = {};                  ///< with "&" before its mnemonic and a tab before its key
    std::function<void()> action = {};  ///< what choosing it does
    bool shown = true;
    bool enabled = true;
    bool checked = false;
    bool isDefault = false;  ///< drawn bold
    bool separator = false;  ///< its caption is "-"; a note may have that title, too
    Menu items = {};         ///< of a submenu
};

MenuRow separatorRow(unsigned id = 0);

/// The rows that are shown: no hidden ones, and no separator at an end or after another one.
Menu shownRows(const Menu& menu);

/// Whether a command can be chosen now, from the menu or one of its submenus.
bool isAllowed(const Menu& menu, unsigned id);

/// Runs a command if the menu `now` allows it. It does what it said in the menu that was `read`, because a
/// ringing note may have changed its meaning since. The menus may be gone when this returns.
void answer(const Menu& now, const Menu& read, unsigned id);
