// What the menus of a desk say, as the user would see them.
#pragma once

#include "resources/resource.h"
#include "tests/core/FakeTray.h"
#include "tests/note/FakeNoteMenu.h"
#include "tests/window/TestNotes.h"

/// Places of the commands in the tray's menu.
namespace tray {
inline constexpr int kHideAll = 2;
inline constexpr int kIconizeAll = 3;
inline constexpr int kAlignAll = 5;
inline constexpr int kEasyAlign = 6;
}  // namespace tray

/// The tray's menu, only to be looked at.
inline Menu shownTray(const TestNotes& desk) {
    static FakeTray nobody;
    return trayMenu(desk.desk->trayState(), nobody);
}

inline bool trayAllows(const TestNotes& desk, int index) {
    return isAllowed(shownTray(desk), IDM_DYN + static_cast<unsigned>(index));
}

inline Text trayCaption(const TestNotes& desk, int index) {
    return shownTray(desk)[static_cast<std::size_t>(index)].caption;
}

/// The tray's list of the notes.
inline Menu shownNotes(const TestNotes& desk) {
    static FakeTray nobody;
    return openMenu(desk.desk->titles(), desk.desk->trayState(), nobody);
}

inline Text trayEntry(const TestNotes& desk, int slot) {
    return shownNotes(desk)[static_cast<std::size_t>(slot)].caption;
}

inline bool trayOpens(const TestNotes& desk, int slot) {
    return isAllowed(shownNotes(desk), IDM_DYN2 + static_cast<unsigned>(slot));
}

/// A caption in a note's own menu.
inline Text noteCaption(fpost& note, unsigned id) {
    static FakeNoteMenu nobody;
    for (const MenuRow& item : noteMenu(note.commands.input(note.alarm.rule), nobody)) {
        if (item.id == id) return item.caption;
    }
    return {};
}
