#include "core/TrayMenu.h"

#include <gtest/gtest.h>

#include "resources/resource.h"
#include "tests/core/FakeTray.h"

namespace {

TrayMenuState someNotes() {
    TrayMenuState state;
    state.notes = 3;
    return state;
}

/// The menus for looks: what their entries would do is of no interest.
FakeTray nobody;
Menu trayMenu(const TrayMenuState& state) {
    return ::trayMenu(state, nobody);
}
Menu openMenu(const std::vector<Text>& titles, const TrayMenuState& state) {
    return ::openMenu(titles, state, nobody);
}

bool trayCommandAllowed(const TrayMenuState& state, int index) {
    return isAllowed(trayMenu(state), IDM_DYN + static_cast<unsigned>(index));
}

MenuRow item(const TrayMenuState& state, int index) {
    return trayMenu(state).at(static_cast<std::size_t>(index));
}

/// Places of the commands that may run.
std::vector<int> allowed(const TrayMenuState& state) {
    std::vector<int> indexes;
    for (int i = -2; i < kTrayItems + 100; ++i) {
        if (trayCommandAllowed(state, i)) indexes.push_back(i);
    }
    return indexes;
}

TEST(TrayMenu, HasItsFourteenEntriesInOrder) {
    const std::vector<Text> expected = {u"New Kardel",
                                        u"-",
                                        u"Hide All",
                                        u"Iconize All",
                                        u"-",
                                        u"Automatic position",
                                        u"Easy alignment",
                                        u"-",
                                        u"Use local files",
                                        u"-",
                                        u"Quick Help\tF1",
                                        u"About...",
                                        u"-",
                                        u"Exit"};
    const Menu items = trayMenu(someNotes());
    ASSERT_EQ(items.size(), expected.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(items[i].caption, expected[i]) << i;
        EXPECT_EQ(items[i].id, 400 + i);
        EXPECT_EQ(items[i].separator, expected[i] == u"-") << i;
    }
}

TEST(TrayMenu, NeverShowsQuickHelp) {
    EXPECT_FALSE(item(someNotes(), 10).shown);
    EXPECT_FALSE(item(someNotes(), 10).enabled);
}

TEST(TrayMenu, ShowsHideAllBoldAndNothingElse) {
    for (const MenuRow& entry : trayMenu(someNotes())) {
        EXPECT_EQ(entry.isDefault, entry.id == IDM_DYN + 2) << entry.id;
    }
}

TEST(TrayMenu, RunsTheCommandsOfALiveDeskAndNoSeparator) {
    EXPECT_EQ(allowed(someNotes()), (std::vector<int>{0, 2, 3, 5, 6, 8, 11, 13}));
}

TEST(TrayMenu, CaptionsFollowTheDesk) {
    TrayMenuState state = someNotes();
    state.allHidden = true;
    EXPECT_EQ(item(state, 2).caption, u"Show All");
    EXPECT_EQ(item(state, 3).caption, u"Iconize All");
    state.allHidden = false;
    state.allIconized = true;
    EXPECT_EQ(item(state, 2).caption, u"Hide All");
    EXPECT_EQ(item(state, 3).caption, u"Restore All");
}

TEST(TrayMenu, WithoutNotesThereIsNothingToHideIconizeOrPlace) {
    EXPECT_EQ(allowed(TrayMenuState{}), (std::vector<int>{0, 6, 8, 11, 13}));
    TrayMenuState first;
    first.notes = 1;  // the first new note enables the three again
    EXPECT_EQ(allowed(first), (std::vector<int>{0, 2, 3, 5, 6, 8, 11, 13}));
}

TEST(TrayMenu, AutomaticPositionAndEasyAlignmentExcludeEachOther) {
    TrayMenuState state = someNotes();
    state.alignAll = true;
    EXPECT_TRUE(item(state, 5).checked && item(state, 5).enabled);
    EXPECT_TRUE(!item(state, 6).checked && !item(state, 6).enabled);
    state.alignAll = false;
    state.easyAlign = true;
    EXPECT_TRUE(!item(state, 5).checked && !item(state, 5).enabled);
    EXPECT_TRUE(item(state, 6).checked && item(state, 6).enabled);
}

TEST(TrayMenu, WithBothStoredOnBothAreCheckedAndGrey) {
    TrayMenuState state = someNotes();
    state.alignAll = true;
    state.easyAlign = true;
    for (const int index : {5, 6}) {
        EXPECT_TRUE(item(state, index).checked) << index;
        EXPECT_FALSE(trayCommandAllowed(state, index)) << index;
    }
}

TEST(TrayMenu, ChecksUseLocalFiles) {
    TrayMenuState state = someNotes();
    EXPECT_FALSE(item(state, 8).checked);
    state.localFiles = true;
    EXPECT_TRUE(item(state, 8).checked);
}

TEST(TrayMenu, OnlyHideAllAndExitRunWhileAQuestionIsOpen) {
    TrayMenuState state = someNotes();
    state.dialogOpen = true;
    EXPECT_EQ(allowed(state), (std::vector<int>{2, 13}));
    EXPECT_FALSE(isAllowed(openMenu({u"Milk"}, state), IDM_DYN2));
}

TEST(TrayMenu, EveryEntryDoesWhatItSays) {
    TrayMenuState turned = someNotes();
    turned.allHidden = turned.allIconized = true;
    const auto calls = [](const TrayMenuState& state) {
        FakeTray desk;
        const Menu menu = ::trayMenu(state, desk);
        for (unsigned i = 0; i < kTrayItems; ++i)
            answer(menu, menu, IDM_DYN + i);
        return desk.calls;
    };
    using Calls = std::vector<std::string>;
    EXPECT_EQ(calls(someNotes()), (Calls{"new", "hide all", "iconize all", "align all", "easy align",
                                         "switch store", "about", "exit"}));
    EXPECT_EQ(calls(turned), (Calls{"new", "show all", "restore all", "align all", "easy align",
                                    "switch store", "about", "exit"}));
}

TEST(TrayMenu, WhatItSaidGoesThroughAMessage) {
    for (int bits = 0; bits < 4; ++bits) {
        TrayMenuState state = someNotes();
        state.allHidden = (bits & 1) != 0;
        state.allIconized = (bits & 2) != 0;
        TrayMenuState now;
        now.notes = 7;
        now.allHidden = !state.allHidden;
        now.allIconized = !state.allIconized;
        const TrayMenuState read = asSaid(now, said(state));
        EXPECT_EQ(read.allHidden, state.allHidden) << bits;
        EXPECT_EQ(read.allIconized, state.allIconized) << bits;
        EXPECT_EQ(read.notes, 7) << "everything else is as it is now";
    }
}

// --- Open -------------------------------------------------------------------------------------------------

TEST(OpenMenu, ListsEveryNoteByTitle) {
    TrayMenuState state;
    state.notes = 2;
    const Menu items = openMenu({u"Milk", u""}, state);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].caption, u"Milk");
    EXPECT_EQ(items[0].id, 500U);
    EXPECT_TRUE(items[0].enabled);
    EXPECT_EQ(items[1].caption, u"- 2 -");
    EXPECT_EQ(items[1].id, 501U);
}

TEST(OpenMenu, ATitleOfOneHyphenIsAnEntryAndNotASeparator) {
    TrayMenuState state;
    state.notes = 1;
    const MenuRow entry = openMenu({u"-"}, state).at(0);
    EXPECT_EQ(entry.caption, u"-");
    EXPECT_FALSE(entry.separator);
}

TEST(OpenMenu, SaysNoneWithoutNotes) {
    const Menu items = openMenu({}, TrayMenuState{});
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0].caption, u"(none)");
    EXPECT_FALSE(items[0].enabled);
    EXPECT_FALSE(isAllowed(items, IDM_DYN2));
}

TEST(OpenMenu, OpensOnlyNotesThatExist) {
    FakeTray desk;
    const Menu menu = ::openMenu({u"a", u"b", u"c"}, someNotes(), desk);
    for (const unsigned id : {IDM_DYN2 + 0U, IDM_DYN2 + 2U, IDM_DYN2 + 3U, IDM_DYN2 - 1U})
        answer(menu, menu, id);
    EXPECT_EQ(desk.calls, (std::vector<std::string>{"open 0", "open 2"}));
    EXPECT_FALSE(::openMenu({u"a", u"b", u"c", u"gone"}, someNotes(), desk).back().enabled);
}

struct Caption {
    const char* name;
    Text title;
    Text shown;
};

TEST(OpenMenu, ShowsAnyTitleOnOneLine) {
    const Caption cases[] = {
        {"Plain", u"Shopping", u"Shopping"},
        {"Accented", u"Caff\u00e8", u"Caff\u00e8"},
        {"Ampersand", u"Salt & pepper", u"Salt && pepper"},
        {"Only ampersands", u"&&", u"&&&&"},
        {"Tab", u"a\tb", u"a b"},
        {"Line break", u"a\r\nb", u"a  b"},
        {"Bell, which would align right", u"a\ab", u"a b"},
        {"Hyphen, no separator of its own", u"- 7", u"- 7"},
        {"Empty", u"", u"- 7 -"},
        {"Blanks only", u"   ", u"- 7 -"},
        {"Tab only", u"\t", u"- 7 -"},
        {"Just fits", Text(80, u'x'), Text(80, u'x')},
        {"Too long", Text(5000, u'x'), Text(79, u'x') + u'\u2026'},
        {"Too long, with ampersands whole", Text(100, u'&'), Text(158, u'&') + u'\u2026'},
        {"Cut in front of a pair", Text(78, u'x') + u"\U0001F600\U0001F600", Text(78, u'x') + u'\u2026'},
    };
    for (const Caption& c : cases)
        EXPECT_EQ(openCaption(c.title, 7), c.shown) << c.name;
}

}  // namespace
