// Iconizing and restoring a note: its height, the captions, and an alarm that rings.
#include "tests/window/AlarmDesk.h"

namespace {

class Iconizing : public Alarm {};
INSTANTIATE_TEST_SUITE_P(Stores, Iconizing, testing::Bool(), storeName);

TEST_P(Iconizing, RestoringGivesTheStoredHeightBack) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.toggleIconized();
    EXPECT_EQ(heightOf(note.hwnd), desk->desk->look.px(kIconizedHeight));
    EXPECT_TRUE(desk->stored(1).iconized);
    EXPECT_EQ(desk->stored(1).height, 2250);
    NoteRecord taller = desk->stored(1);
    taller.height = 3000;
    EXPECT_TRUE(desk->desk->store.set(1, taller, {NoteField::Height}));
    note.toggleIconized();
    EXPECT_EQ(heightOf(note.hwnd), desk->desk->look.px(Twips{3000})) << "as the store holds it now";
    EXPECT_FALSE(desk->stored(1).iconized);
    EXPECT_TRUE(IsWindowVisible(note.nota));
}

TEST_P(Iconizing, RestoringWithoutAStoredHeightTakesTheRememberedOne) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.toggleIconized();
    NoteRecord none = desk->stored(1);
    none.height = 0;
    EXPECT_TRUE(desk->desk->store.set(1, none, {NoteField::Height}));
    note.toggleIconized();
    EXPECT_EQ(heightOf(note.hwnd), desk->desk->look.px(Twips{2250}));
}

TEST_P(Iconizing, IconizingTheLastNoteChangesEveryCaption) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000, 6000)});
    desk->note(1).toggleIconized();
    EXPECT_FALSE(desk->desk->AllIconized());
    desk->note(2).toggleIconized();
    EXPECT_TRUE(desk->desk->AllIconized());
    EXPECT_TRUE(desk->note(1).commands.input(desk->note(1).alarm.rule).allIconized);
    desk->note(1).toggleIconized();
    EXPECT_FALSE(desk->desk->AllIconized());
}

TEST_P(Iconizing, AnIconizedNoteThatStaysSmallIsStoppedOnItsTitle) {
    GlobalSettings settings;
    settings.RestoreWhenPlay = false;
    const auto desk = ringing({with(every(u"a", u"eachday"), &NoteRecord::iconized)}, settings);
    const fpost& note = desk->note(1);
    EXPECT_TRUE(note.Iconized());
    EXPECT_FALSE(stripShown(note)) << "it would lie outside the window";
    EXPECT_EQ(note.tBackColor(), kWhite);
    press(note.lbl);
    EXPECT_FALSE(note.Alarming());
    EXPECT_TRUE(note.Iconized());
    EXPECT_EQ(note.alarm.rule.due, later(kSecondsPerDay));
    EXPECT_FALSE(stripShown(note));
    EXPECT_TRUE(desk->stored(1).iconized);
}

TEST_P(Iconizing, IconizingSilencesIt) {
    const auto desk = ringing({every(u"a", u"eachday"), once(u"b"), once(u"c")});
    desk->note(1).toggleIconized();
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_TRUE(desk->stored(1).iconized);
    EXPECT_EQ(desk->stored(1).height, 2250);
    desk->note(2).toggleIconized();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"a", u"c"}));
    desk->desk->ToggleIconizeAll();
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"a"}));
    EXPECT_TRUE(desk->stored(1).iconized);
}

}  // namespace
