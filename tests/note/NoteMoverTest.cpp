// Moves of a note without a window: what is stored, and when.
#include "note/NoteMover.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using Corner = std::pair<int, int>;

constexpr PxRect kWork{0, 0, 1280, 984};
const std::vector<Monitor> kMonitors{{{0, 0, 1280, 1024}, kWork, true}};
constexpr std::uint64_t kNow = 50000;  // ms
constexpr PxRect kStart{100, 200, 300, 350};

/// A note of 200 x 150 pixels.
struct FakeNote : MovedNote {
    NoteMover mover{*this};
    PxRect shown = kStart;
    PxRect home = kStart;            ///< as the record has it
    bool reachable = true;           ///< whether there is a monitor at home
    PxRect rescued{0, 0, 200, 150};  ///< where it is shown when there is none
    bool onScreen = true;
    bool awaited = false;  ///< the note is waiting for its window to come to rest
    std::vector<Corner> stored;

    /// The window moves, whoever moves it; the note hears of it.
    void put(int left, int top) {
        shown = shown.shifted(left - shown.left, top - shown.top);
        mover.onMoved();
    }
    /// Its rest is over, if the note waits for it.
    void rest(std::uint64_t tick = kNow) {
        if (awaited) mover.settle(tick);
    }
    Corner corner() const { return {shown.left, shown.top}; }

    PxRect window() const override { return shown; }
    bool isOnScreen() const override { return onScreen; }
    void moveWindow(int left, int top) override { put(left, top); }
    void awaitRest(bool wanted) override { awaited = wanted; }
    PxRect place() const override { return reachable ? home : rescued; }
    bool isAtHome() const override { return reachable; }
    void goHome() override { shown = place(); }
    void takePlace() override { home = shown; }
    void storePlace() override {
        takePlace();
        stored.push_back(corner());
    }
};

using Corners = std::vector<Corner>;

// --- With the mouse ---------------------------------------------------------------------------------------

TEST(MouseMove, IsStoredOnceWhenItEnds) {
    FakeNote note;
    note.mover.begin();
    for (int step = 1; step <= 20; ++step)
        note.put(100 + step, 200 + step);
    EXPECT_EQ(note.stored, Corners());
    EXPECT_FALSE(note.awaited) << "the user may hold it still for any time";
    note.mover.end();
    EXPECT_EQ(note.stored, (Corners{{120, 220}}));
}

TEST(MouseMove, ThatComesBackOrNeverBeganStoresNothing) {
    FakeNote note;
    note.mover.end();
    note.mover.begin();
    note.put(400, 200);
    note.put(100, 200);
    note.mover.end();
    EXPECT_EQ(note.stored, Corners());
}

TEST(MouseMove, InOneDirectionIsAMove) {
    for (const Corner& to : {Corner{101, 200}, Corner{100, 199}}) {
        FakeNote note;
        note.mover.begin();
        note.put(to.first, to.second);
        note.mover.end();
        EXPECT_EQ(note.stored, Corners{to});
    }
}

TEST(MouseMove, EndsWithTheDragWhateverTheSystemReported) {
    // Windows reports begin and end of its own loop inside the drag: both, one of them or neither.
    for (const int begins : {0, 1, 2}) {
        for (const int ends : {0, 1}) {
            FakeNote note;
            note.mover.begin();
            for (int i = 0; i < begins; ++i)
                note.mover.begin();
            note.put(400, 300);
            for (int i = 0; i < ends && i < begins; ++i)
                note.mover.end();
            EXPECT_EQ(note.stored, Corners()) << begins << ends;
            note.mover.endDrag();
            EXPECT_EQ(note.stored, (Corners{{400, 300}})) << begins << ends;
            note.put(500, 300);
            EXPECT_TRUE(note.awaited) << "nothing of the drag is left over";
        }
    }
}

/// Where Windows drags outlines, it moves the window itself only at the end. It does not say whether that
/// comes before or after the message about the end.
TEST(MouseMove, OfAnOutlineIsStoredWhereTheWindowGoes) {
    for (const bool movedFirst : {true, false}) {
        FakeNote note;
        note.mover.begin();
        if (movedFirst) note.put(640, 480);
        note.mover.end();
        if (!movedFirst) note.put(640, 480);
        note.rest();
        EXPECT_EQ(note.stored, (Corners{{640, 480}})) << movedFirst;
    }
}

// --- By others --------------------------------------------------------------------------------------------

TEST(StrayMove, IsStoredOnceTheWindowHasComeToRest) {
    FakeNote note;
    for (int step = 1; step <= 20; ++step)
        note.put(300 + step, 200);
    EXPECT_EQ(note.stored, Corners());
    EXPECT_TRUE(note.awaited);
    note.rest();
    EXPECT_EQ(note.stored, (Corners{{320, 200}}));
    EXPECT_FALSE(note.awaited);
    note.mover.settle(kNow);
    EXPECT_EQ(note.stored.size(), 1U) << "once";
}

TEST(StrayMove, ThatComesBackIsForgotten) {
    FakeNote note;
    note.put(300, 200);
    note.put(100, 200);
    EXPECT_FALSE(note.awaited);
    note.mover.settle(kNow);
    EXPECT_EQ(note.stored, Corners());
}

TEST(StrayMove, OfAWindowThatIsHiddenMeanwhileIsNoMove) {
    FakeNote note;
    note.put(300, 200);
    note.onScreen = false;
    note.rest();
    EXPECT_EQ(note.stored, Corners());
    EXPECT_EQ(note.home, kStart);
}

TEST(StrayMove, DoesNotWaitForAChangeOfTheDesk) {
    FakeNote note;
    note.put(333, 222);
    note.mover.onDeskChanged(kNow);
    EXPECT_EQ(note.stored, (Corners{{333, 222}}));
    EXPECT_EQ(note.corner(), (Corner{333, 222}));
}

// --- Changes of the desk ----------------------------------------------------------------------------------

TEST(DeskChange, WaitsForTheEndOfAMove) {
    FakeNote note;
    note.mover.begin();
    note.put(500, 400);
    note.mover.onDeskChanged(kNow);
    EXPECT_EQ(note.corner(), (Corner{500, 400})) << "the user is still holding the note";
    note.reachable = false;
    note.mover.end();
    EXPECT_EQ(note.stored, (Corners{{500, 400}})) << "where it was put";
    EXPECT_EQ(note.shown, note.rescued) << "and then it is shown where it can be reached";
    note.mover.begin();
    note.put(60, 60);
    note.mover.end();
    EXPECT_EQ(note.corner(), (Corner{60, 60})) << "a later move has no change to make up for";
}

TEST(DeskChange, OfANoteThatIsShownElsewhereStoresNothing) {
    FakeNote note;
    note.reachable = false;
    note.mover.onDeskChanged(kNow);
    EXPECT_EQ(note.shown, note.rescued);
    note.reachable = true;
    note.mover.onDeskChanged(kNow);
    EXPECT_EQ(note.shown, kStart) << "its monitor is back";
    EXPECT_EQ(note.stored, Corners());
}

TEST(DeskChange, WhatWindowsMovesWhenAMonitorGoesKeepsItsStoredPlace) {
    FakeNote note;
    note.reachable = false;
    note.put(20, 30);  // Windows may move it before it says so, or after
    note.mover.onDeskChanged(kNow);
    EXPECT_EQ(note.shown, note.rescued);
    note.put(40, 50);
    note.rest(kNow + 1999);
    EXPECT_EQ(note.shown, note.rescued);
    EXPECT_EQ(note.stored, Corners());
    EXPECT_EQ(note.home, kStart);
    // Long after, it is somebody else who moves it.
    note.put(40, 50);
    note.rest(kNow + 2000);
    EXPECT_EQ(note.stored, (Corners{{40, 50}}));
}

TEST(DeskChange, AMoveRightAfterItCountsWhereTheNoteCanBeReached) {
    FakeNote note;
    note.mover.onDeskChanged(kNow);
    note.put(40, 50);
    note.rest(kNow + 300);
    EXPECT_EQ(note.stored, (Corners{{40, 50}}));
}

// --- With the keyboard ------------------------------------------------------------------------------------

struct Keys {
    FakeNote& note;
    SnapRules rules{};
    void press(int columns, int rows, int times = 1) {
        for (int i = 0; i < times; ++i)
            note.mover.step(rules, {columns, rows, 8, 18, kMonitors});
    }
};

SnapRules easy(std::vector<PxRect> others = {}) {
    return {true, 75, 47, [others] { return others; }};
}

TEST(KeyMove, GoesStepByStepAndIsStoredOnceWhenTheKeyIsUp) {
    FakeNote note;
    Keys keys{note};
    keys.press(1, 0, 3);
    keys.press(0, 1, 2);
    keys.press(-1, 0);
    keys.press(0, -1);
    EXPECT_EQ(note.corner(), (Corner{116, 208}));
    EXPECT_EQ(note.home, note.shown) << "a change of the desk meanwhile does not throw it back";
    EXPECT_EQ(note.stored, Corners());
    EXPECT_FALSE(note.awaited) << "its own move is no stray one";
    note.mover.endKeys();
    note.mover.endKeys();
    EXPECT_EQ(note.stored, (Corners{{116, 208}}));
}

TEST(KeyMove, StopsAtTheEdgeOfAnotherNoteAndCanGoOn) {
    FakeNote note;
    // Its right edge is 22 pixels left of the note: more than two steps, less than three.
    Keys keys{note, easy({{10, 180, 78, 300}})};
    keys.press(-1, 0, 2);
    EXPECT_EQ(note.shown.left, 84);
    keys.press(-1, 0);
    EXPECT_EQ(note.shown.left, 78) << "the other note's edge lies within the step";
    keys.press(-1, 0);
    EXPECT_EQ(note.shown.left, 70);
    EXPECT_EQ(note.shown.width(), 200);
}

TEST(KeyMove, GoesFlushToAnEdgeThatIsNearerThanAStep) {
    for (int distance = 1; distance <= 8; ++distance) {
        FakeNote note;
        Keys keys{note, easy({{0, 180, 100 - distance, 300}})};
        keys.press(-1, 0);
        EXPECT_EQ(note.shown.left, 100 - distance);
        keys.press(-1, 0);
        EXPECT_EQ(note.shown.left, 92 - distance);
    }
}

TEST(KeyMove, AtTheScreensEdgesEndsFlush) {
    for (const Corner& way : {Corner{-1, 0}, Corner{1, 0}, Corner{0, -1}, Corner{0, 1}}) {
        FakeNote note;
        Keys keys{note, easy()};
        keys.press(way.first, way.second, 300);
        const auto along = [&] { return way.first != 0 ? note.shown.left : note.shown.top; };
        const int flush = way.first > 0 ? kWork.right - 200 : way.second > 0 ? kWork.bottom - 150 : 0;
        EXPECT_EQ(along(), flush);
        keys.press(-way.first, -way.second);
        EXPECT_EQ(along(), flush - 8 * (way.first + way.second)) << "and comes off again";
        EXPECT_EQ(note.shown.width(), 200);
    }
}

TEST(KeyMove, NeverLosesTheTitleFromSight) {
    for (const Corner& way : {Corner{-1, 0}, Corner{1, 0}, Corner{0, -1}, Corner{0, 1}}) {
        FakeNote note;
        Keys keys{note};
        keys.press(way.first, way.second, 300);
        const PxRect& at = note.shown;
        EXPECT_TRUE(isInSight(kMonitors, {at.left, at.top, at.right, at.top + 18}))
            << at.left << " " << at.top;
        EXPECT_FALSE(at.left >= 0 && at.top >= 0 && at.right <= 1280 && at.bottom <= 984)
            << "as far as it can: " << at.left << " " << at.top;
    }
}

TEST(KeyMove, ThatLeadsNowhereStoresNothing) {
    FakeNote note;
    note.shown = note.home = {0, 0, 200, 150};
    Keys keys{note, easy()};
    keys.press(-1, 0, 3);
    note.mover.endKeys();
    EXPECT_EQ(note.corner(), (Corner{0, 0}));
    EXPECT_EQ(note.stored, Corners());
}

}  // namespace
