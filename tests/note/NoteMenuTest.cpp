#include "note/NoteMenu.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "resources/resource.h"

namespace {

NoteMenuItem find(const std::vector<NoteMenuItem>& items, unsigned id) {
    const auto found =
        std::find_if(items.begin(), items.end(), [id](const NoteMenuItem& i) { return i.id == id; });
    return found == items.end() ? NoteMenuItem{} : *found;
}

TEST(NoteMenu, HasItsCaptionsInOrder) {
    const std::vector<NoteMenuItem> items = noteMenu({});
    std::vector<Text> captions;
    int separators = 0;
    for (const NoteMenuItem& item : items) {
        if (item.id == 0) {
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
    const std::vector<NoteMenuItem> items = noteMenu(input);
    EXPECT_EQ(find(items, IDM_EDIT).caption, u"&Edit title\tF2");
    EXPECT_EQ(find(items, IDM_ICONIZE).caption, u"Restore");
    EXPECT_FALSE(find(items, IDM_RESIZE).enabled);
    EXPECT_TRUE(find(noteMenu({}), IDM_RESIZE).enabled);
}

TEST(NoteMenu, FollowsTheWholeDesk) {
    NoteMenuInput input;
    input.allHidden = true;
    input.allIconized = true;
    const std::vector<NoteMenuItem> items = noteMenu(input);
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
        const std::vector<NoteMenuItem> items = noteMenu(input);
        EXPECT_EQ(find(items, IDM_DONTDELETE).visible, c.keepVisible) << c.name;
        EXPECT_EQ(find(items, IDM_REWHENPLAY).visible, c.restoreVisible) << c.name;
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

TEST(VisibleItems, NeverHaveTwoSeparatorsInARowOrOneAtAnEnd) {
    for (const bool alarm : {false, true}) {
        for (const bool iconized : {false, true}) {
            NoteMenuInput input;
            input.alarmValid = alarm;
            input.alarmOneOff = alarm;
            input.iconized = iconized;
            const std::vector<NoteMenuItem> items = visibleItems(noteMenu(input));
            ASSERT_FALSE(items.empty());
            EXPECT_NE(items.front().id, 0U);
            EXPECT_NE(items.back().id, 0U);
            for (std::size_t i = 1; i < items.size(); ++i) {
                EXPECT_FALSE(items[i].id == 0 && items[i - 1].id == 0);
                EXPECT_TRUE(items[i].visible);
            }
        }
    }
    const std::vector<NoteMenuItem> onlyHidden = {{0, {}}, {7, u"x", false}, {0, {}}};
    EXPECT_TRUE(visibleItems(onlyHidden).empty());
}

TEST(CommandAllowed, RefusesWhatIsHiddenOrGreyed) {
    NoteMenuInput input;
    EXPECT_TRUE(commandAllowed(noteMenu(input), IDM_RESIZE));
    EXPECT_FALSE(commandAllowed(noteMenu(input), IDM_DONTDELETE));
    EXPECT_FALSE(commandAllowed(noteMenu(input), 0));
    EXPECT_FALSE(commandAllowed(noteMenu(input), 999));
    input.iconized = true;
    EXPECT_FALSE(commandAllowed(noteMenu(input), IDM_RESIZE));
}

}  // namespace
