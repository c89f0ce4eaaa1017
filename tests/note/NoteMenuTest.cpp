#include "note/NoteMenu.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "resources/resource.h"
#include "tests/note/FakeNoteMenu.h"

namespace {

/// The menu for looks: what its entries would do is of no interest.
Menu noteMenu(const NoteMenuInput& input) {
    static FakeNoteMenu note;
    return ::noteMenu(input, note);
}

MenuRow find(const Menu& items, unsigned id) {
    const auto found =
        std::find_if(items.begin(), items.end(), [id](const MenuRow& i) { return i.id == id; });
    return found == items.end() ? MenuRow{} : *found;
}

TEST(NoteMenu, HasItsCaptionsInOrder) {
    const Menu items = noteMenu({});
    std::vector<Text> captions;
    int separators = 0;
    for (const MenuRow& item : items) {
        if (item.separator) {
            ++separators;
            continue;
        }
        captions.push_back(item.caption);
    }
    const std::vector<Text> expected = {
        u"&New Kardel\tCTRL+N",  u"&Edit\tF2", u"Back color",    u"Set alarm\tF4",
        u"Restore when elapsed", u"Close",     u"&Delete\tCANC", u"Don't delete when elapsed",
        u"Always on Top",        u"&Resize",   u"Iconize",       u"Hide All",
        u"Iconize All",          u"Exit"};
    EXPECT_EQ(captions, expected);
    EXPECT_EQ(separators, 6);
}

TEST(NoteMenu, ChangesForAnIconizedNote) {
    NoteMenuInput input;
    input.iconized = true;
    const Menu items = noteMenu(input);
    EXPECT_EQ(find(items, IDM_EDIT).caption, u"&Edit title\tF2");
    EXPECT_EQ(find(items, IDM_ICONIZE).caption, u"Restore");
    EXPECT_FALSE(find(items, IDM_RESIZE).enabled);
    EXPECT_TRUE(find(noteMenu({}), IDM_RESIZE).enabled);
}

TEST(NoteMenu, FollowsTheWholeDesk) {
    NoteMenuInput input;
    input.allHidden = true;
    input.allIconized = true;
    const Menu items = noteMenu(input);
    EXPECT_EQ(find(items, IDM_HIDEALL).caption, u"Show All");
    EXPECT_EQ(find(items, IDM_ICONIZEALL).caption, u"Restore All");
}

TEST(NoteMenu, ChecksTopmostAndResize) {
    NoteMenuInput input;
    EXPECT_FALSE(find(noteMenu(input), IDM_TOPMOST).checked);
    EXPECT_FALSE(find(noteMenu(input), IDM_RESIZE).checked);
    input.topmost = true;
    input.resizeMode = true;
    EXPECT_TRUE(find(noteMenu(input), IDM_TOPMOST).checked);
    EXPECT_TRUE(find(noteMenu(input), IDM_RESIZE).checked);
}

struct AlarmCase {
    const char* name;
    bool valid, past, oneOff, iconized;
    bool keepVisible, restoreVisible;
};

TEST(NoteMenu, ShowsAlarmItemsOnlyWhereTheyMeanSomething) {
    constexpr AlarmCase kCases[] = {
        {"no alarm", false, false, true, false, false, false},
        {"no alarm, iconized", false, false, true, true, false, false},
        {"one-off ahead", true, false, true, false, true, false},
        {"one-off ahead, iconized", true, false, true, true, true, true},
        {"one-off past", true, true, true, false, false, false},
        {"one-off past, iconized", true, true, true, true, false, true},
        {"repeating ahead", true, false, false, false, false, false},
        {"repeating ahead, iconized", true, false, false, true, false, true},
    };
    for (const AlarmCase& c : kCases) {
        NoteMenuInput input;
        input.alarmValid = c.valid;
        input.alarmPast = c.past;
        input.alarmOneOff = c.oneOff;
        input.iconized = c.iconized;
        const Menu items = noteMenu(input);
        EXPECT_EQ(find(items, IDM_DONTDELETE).shown, c.keepVisible) << c.name;
        EXPECT_EQ(find(items, IDM_REWHENPLAY).shown, c.restoreVisible) << c.name;
    }
}

TEST(NoteMenu, ChecksTheAlarmItemsFromTheSettings) {
    NoteMenuInput input;
    input.alarmValid = true;
    input.alarmOneOff = true;
    input.iconized = true;
    EXPECT_FALSE(find(noteMenu(input), IDM_DONTDELETE).checked);
    input.dontDeleteWhenPlay = true;
    input.restoreWhenPlay = true;
    EXPECT_TRUE(find(noteMenu(input), IDM_DONTDELETE).checked);
    EXPECT_TRUE(find(noteMenu(input), IDM_REWHENPLAY).checked);
}

TEST(NoteMenu, NeverShowsTwoSeparatorsInARowOrOneAtAnEnd) {
    for (const bool alarm : {false, true}) {
        for (const bool iconized : {false, true}) {
            NoteMenuInput input;
            input.alarmValid = alarm;
            input.alarmOneOff = alarm;
            input.iconized = iconized;
            const Menu rows = shownRows(noteMenu(input));
            ASSERT_FALSE(rows.empty());
            EXPECT_FALSE(rows.front().separator || rows.back().separator);
            for (std::size_t i = 1; i < rows.size(); ++i) {
                EXPECT_FALSE(rows[i].separator && rows[i - 1].separator);
                EXPECT_TRUE(rows[i].shown);
            }
        }
    }
}

TEST(NoteMenu, RefusesWhatIsHiddenOrGreyed) {
    NoteMenuInput input;
    EXPECT_TRUE(isAllowed(noteMenu(input), IDM_RESIZE));
    EXPECT_FALSE(isAllowed(noteMenu(input), IDM_DONTDELETE));
    EXPECT_FALSE(isAllowed(noteMenu(input), 0));
    EXPECT_FALSE(isAllowed(noteMenu(input), 999));
    input.iconized = true;
    EXPECT_FALSE(isAllowed(noteMenu(input), IDM_RESIZE));
}

TEST(NoteMenu, EveryEntryDoesWhatItSays) {
    NoteMenuInput input;
    input.alarmValid = true;
    input.alarmOneOff = true;
    struct Case {
        unsigned id;
        const char* call;
        const char* turned;  ///< of an iconized note on a desk that is hidden and iconized
    };
    constexpr Case kCases[] = {
        {IDM_NEW, "new", "new"},
        {IDM_EDIT, "edit", "edit"},
        {IDM_COLOR, "color", "color"},
        {IDM_ALARM, "alarm", "alarm"},
        {IDM_REWHENPLAY, nullptr, "restore when elapsed"},
        {IDM_CLOSE, "close", "close"},
        {IDM_DELETE, "delete", "delete"},
        {IDM_DONTDELETE, "don't delete", "don't delete"},
        {IDM_TOPMOST, "topmost", "topmost"},
        {IDM_RESIZE, "resize", nullptr},
        {IDM_ICONIZE, "iconize", "restore"},
        {IDM_HIDEALL, "hide all", "show all"},
        {IDM_ICONIZEALL, "iconize all", "restore all"},
        {IDM_EXIT, "exit", "exit"},
    };
    NoteMenuInput turned = input;
    turned.iconized = turned.allHidden = turned.allIconized = true;
    for (const Case& c : kCases) {
        for (const bool other : {false, true}) {
            FakeNoteMenu note;
            const Menu menu = ::noteMenu(other ? turned : input, note);
            answer(menu, menu, c.id);
            const char* const expected = other ? c.turned : c.call;
            EXPECT_EQ(note.calls,
                      expected == nullptr ? std::vector<std::string>{} : std::vector<std::string>{expected})
                << c.id << other;
        }
    }
}

TEST(NoteMenu, WhatItSaidGoesThroughAMessage) {
    for (int bits = 0; bits < 8; ++bits) {
        NoteMenuInput input;
        input.iconized = (bits & 1) != 0;
        input.allHidden = (bits & 2) != 0;
        input.allIconized = (bits & 4) != 0;
        NoteMenuInput now;
        now.topmost = true;
        now.iconized = !input.iconized;
        now.allHidden = !input.allHidden;
        now.allIconized = !input.allIconized;
        const NoteMenuInput read = asSaid(now, said(input));
        EXPECT_EQ(read.iconized, input.iconized) << bits;
        EXPECT_EQ(read.allHidden, input.allHidden) << bits;
        EXPECT_EQ(read.allIconized, input.allIconized) << bits;
        EXPECT_TRUE(read.topmost) << "everything else is as it is now";
    }
}

TEST(NoteMenu, AnEntryThatTurnedWhileItWasReadDoesWhatItSaid) {
    FakeNoteMenu note;
    NoteMenuInput read;
    read.allHidden = true;  // "Show All"
    answer(::noteMenu({}, note), ::noteMenu(read, note), IDM_HIDEALL);
    EXPECT_EQ(note.calls, std::vector<std::string>{"show all"});
}

}  // namespace
