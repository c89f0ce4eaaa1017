#include "core/DeskState.h"

#include <gtest/gtest.h>

namespace {

/// A desk of `notes`, by default all of them shown, none iconized.
DeskCount count(int notes, int shown, int iconized = 0) {
    return {notes, shown, iconized};
}

DeskState loaded(const DeskCount& now) {
    DeskState state;
    state.onLoaded(now);
    return state;
}

TEST(DeskState, IsLoadingUntilTheNotesAreThereAndAgainAtTheEnd) {
    DeskState state;
    EXPECT_TRUE(state.loading());
    EXPECT_FALSE(state.mayRealign());
    state.onLoaded(count(2, 2));
    EXPECT_FALSE(state.loading());
    EXPECT_TRUE(state.mayRealign());
    state.onTeardown();
    EXPECT_TRUE(state.loading());
    EXPECT_FALSE(state.mayRealign());
}

TEST(DeskState, SeesAtTheStartWhatTheNotesAre) {
    struct Case {
        const char* name;
        DeskCount now;
        bool hidden;
        bool iconized;
    };
    const Case cases[] = {
        {"none", count(0, 0), false, false},
        {"one shown", count(1, 1), false, false},
        {"one closed", count(1, 0), true, false},
        {"one iconized", count(1, 1, 1), false, true},
        {"one of two shown", count(2, 1), false, false},
        {"one of two iconized", count(2, 2, 1), false, false},
        {"two closed, iconized", count(2, 0, 2), true, true},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(loaded(c.now).allHidden(), c.hidden) << c.name;
        EXPECT_EQ(loaded(c.now).allIconized(), c.iconized) << c.name;
    }
}

TEST(DeskState, ANewNoteEndsBoth) {
    DeskState state = loaded(count(2, 0, 2));
    state.onNewNote();
    EXPECT_FALSE(state.allHidden());
    EXPECT_FALSE(state.allIconized());
}

TEST(DeskState, AHiddenDeskOfWhichOneNoteIsOpenedIsHiddenAgainWithoutIt) {
    for (const bool removed : {false, true}) {
        DeskState state = loaded(count(3, 3));
        state.onAllHidden(true, count(3, 0));
        ASSERT_TRUE(state.allHidden());
        state.onNoteShown();
        EXPECT_FALSE(state.allHidden());
        if (removed) {
            state.onNoteRemoved(count(2, 0));
        } else {
            state.onNoteChanged(count(3, 0));
        }
        EXPECT_TRUE(state.allHidden()) << "no note is visible: only Show All makes sense";
    }
}

TEST(DeskState, TheLastVisibleNoteDecides) {
    DeskState state = loaded(count(3, 3));
    state.onNoteChanged(count(3, 1));
    EXPECT_FALSE(state.allHidden());
    state.onNoteChanged(count(3, 0));
    EXPECT_TRUE(state.allHidden());
    state.onNoteChanged(count(3, 1));
    EXPECT_TRUE(state.allHidden()) << "a note that appears reports that itself";
}

TEST(DeskState, IconizingASingleNoteIsNotIconizingAll) {
    DeskState state = loaded(count(1, 1));
    state.onNoteChanged(count(1, 1, 1));
    EXPECT_FALSE(state.allIconized());
    state.onNoteChanged(count(2, 2, 1));
    EXPECT_FALSE(state.allIconized());
    state.onNoteChanged(count(2, 2, 2));
    EXPECT_TRUE(state.allIconized());
    state.onNoteChanged(count(2, 2, 1));
    EXPECT_FALSE(state.allIconized());
}

TEST(DeskState, ACommandOnAllNotesReachesASingleOneAndNotNone) {
    for (const int notes : {1, 2}) {
        DeskState state = loaded(count(notes, notes));
        state.onAllHidden(true, count(notes, 0));
        EXPECT_TRUE(state.allHidden()) << notes;
        state.onAllHidden(false, count(notes, notes));
        EXPECT_FALSE(state.allHidden()) << notes;
        state.onAllIconized(true, count(notes, notes, notes));
        EXPECT_TRUE(state.allIconized()) << notes;
    }
    DeskState empty = loaded(count(0, 0));
    empty.onAllHidden(true, count(0, 0));
    empty.onAllIconized(true, count(0, 0));
    EXPECT_FALSE(empty.allHidden() || empty.allIconized());
}

TEST(DeskState, RemovingTheOddOneMakesTheRestAlike) {
    DeskState state = loaded(count(3, 1, 2));
    state.onNoteRemoved(count(2, 0, 2));
    EXPECT_TRUE(state.allHidden());
    EXPECT_TRUE(state.allIconized());
    state.onNoteRemoved(count(0, 0, 0));
    EXPECT_FALSE(state.allHidden()) << "without notes, none is hidden";
    EXPECT_FALSE(state.allIconized());
}

TEST(DeskState, ACommandOnAllNotesIsJudgedAtItsEnd) {
    DeskState state = loaded(count(3, 3, 1));
    EXPECT_TRUE(state.beginBulk());
    EXPECT_FALSE(state.beginBulk()) << "one inside the other";
    state.onNoteChanged(count(3, 0, 3));
    EXPECT_FALSE(state.allHidden());
    EXPECT_FALSE(state.allIconized());
    EXPECT_FALSE(state.mayRealign());
    state.endBulk();
    EXPECT_TRUE(state.inBulk());
    state.endBulk();
    EXPECT_FALSE(state.inBulk());
    EXPECT_TRUE(state.mayRealign());
    state.onAllHidden(true, count(2, 0));
    EXPECT_TRUE(state.allHidden());
    EXPECT_FALSE(state.allIconized());
    state.onAllIconized(true, count(2, 0, 2));
    EXPECT_TRUE(state.allIconized());
    state.onAllHidden(false, count(2, 2));
    EXPECT_FALSE(state.allHidden());
    EXPECT_TRUE(state.allIconized());
    state.onAllIconized(false, count(2, 2));
    EXPECT_FALSE(state.allIconized());
}

TEST(DeskState, WithoutNotesNoneIsHidden) {
    DeskState state = loaded(count(1, 1));
    state.onAllHidden(true, count(0, 0));  // the last one rang and went with its alarm
    state.onAllIconized(true, count(0, 0));
    EXPECT_FALSE(state.allHidden());
    EXPECT_FALSE(state.allIconized());
}

TEST(DeskState, EndsWithExit) {
    DeskState state = loaded(count(1, 1));
    EXPECT_FALSE(state.ending());
    state.onExit();
    EXPECT_TRUE(state.ending());
}

}  // namespace
