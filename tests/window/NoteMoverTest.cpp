// What moves a note besides the user's own drag: other programs, the system and the keyboard; and what
// becomes of it when the desk changes.
#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"
#include "tests/window/TestNotes.h"

namespace {

class MovedNotes : public InBothStores {
protected:
    /// Moves the window as another program, or Windows itself, would.
    static void moveByOthers(const fpost& note, LONG left, LONG top) {
        SetWindowPos(note.hwnd, nullptr, static_cast<int>(left), static_cast<int>(top), 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    static POINT corner(const fpost& note) {
        const RECT rect = rectOf(note.hwnd);
        return {rect.left, rect.top};
    }
    static POINT storedCorner(TestNotes& desk) {
        const NoteRecord stored = desk.stored(1);
        return {desk.desk->look.px(Twips{stored.x}), desk.desk->look.px(Twips{stored.y})};
    }
    static bool isAt(const POINT& at, int left, int top) { return at.x == left && at.y == top; }
    /// Processes messages until the condition holds, for some seconds at most.
    template <class Condition>
    static bool waitFor(Condition condition) {
        for (int tries = 0; tries < 500 && !condition(); ++tries)
            pumpFor(10);
        return condition();
    }
    static constexpr UINT kDeskMessages[] = {WM_SETTINGCHANGE, WM_DISPLAYCHANGE};
};
INSTANTIATE_TEST_SUITE_P(Stores, MovedNotes, testing::Bool(), storeName);

TEST_P(MovedNotes, AMoveByTheSystemsMenuIsStoredWhenItEnds) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    SendMessageW(note.hwnd, WM_ENTERSIZEMOVE, 0, 0);
    moveByOthers(note, 333, 222);
    EXPECT_EQ(desk->stored(1).x, 1500) << "the move is not over";
    moveByOthers(note, 345, 234);
    SendMessageW(note.hwnd, WM_EXITSIZEMOVE, 0, 0);
    EXPECT_TRUE(isAt(storedCorner(*desk), 345, 234));
    for (const UINT message : kDeskMessages)
        SendMessageW(note.hwnd, message, 0, 0);
    EXPECT_TRUE(isAt(corner(note), 345, 234));
}

TEST_P(MovedNotes, AMoveByAnotherProgramIsStoredOnceItHasComeToRest) {
    const auto desk = run({plainNote(u"a")});
    const fpost& note = desk->note(1);
    const int before = changesOf(*desk);
    for (int step = 1; step <= 20; ++step)
        moveByOthers(note, 300 + step, 200 + step);
    EXPECT_EQ(changesOf(*desk), before);
    EXPECT_TRUE(waitFor([&] { return isAt(storedCorner(*desk), 320, 220); }));
    SendMessageW(note.hwnd, WM_SETTINGCHANGE, 0, 0);
    EXPECT_TRUE(isAt(corner(note), 320, 220));
}

TEST_P(MovedNotes, AMoveByAnotherProgramDoesNotWaitForAChangeOfTheDeskOrForTheEnd) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    int left = 300;
    for (const UINT message : kDeskMessages) {
        moveByOthers(note, ++left, 200);
        SendMessageW(note.hwnd, message, 0, 0);
        EXPECT_TRUE(isAt(corner(note), left, 200));
        EXPECT_TRUE(isAt(storedCorner(*desk), left, 200));
    }
    moveByOthers(note, 400, 100);
    desk->desk->CommitEdits();
    EXPECT_TRUE(isAt(storedCorner(*desk), 400, 100));
    EXPECT_FALSE(KillTimer(note.hwnd, IDT_MOVED)) << "nothing is left to wait for";
}

TEST_P(MovedNotes, AChangeOfTheDeskWaitsForTheEndOfAMove) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (const UINT message : kDeskMessages) {
        SendMessageW(note.hwnd, WM_ENTERSIZEMOVE, 0, 0);
        moveByOthers(note, 500, 400);
        SendMessageW(note.hwnd, message, 0, 0);
        EXPECT_TRUE(isAt(corner(note), 500, 400)) << "the user is still holding the note";
        moveByOthers(note, 90000, 400);
        SendMessageW(note.hwnd, WM_EXITSIZEMOVE, 0, 0);
        EXPECT_GT(desk->stored(1).x, 90000) << "where it was put";
        EXPECT_EQ(rectOf(note.hwnd).right, GetWorkArea().right)
            << "and then it is shown where it can be reached";
        moveByOthers(note, 500, 400);
        desk->desk->CommitEdits();
    }
}

TEST_P(MovedNotes, ARescueStoresNothing) {
    NoteRecord away = plainNote(u"away");
    away.x = 90000;
    const auto desk = run({away, plainNote(u"b")});
    const int before = changesOf(*desk);
    for (const UINT message : kDeskMessages) {
        SendMessageW(desk->note(1).hwnd, message, 0, 0);
        pumpFor(1);
    }
    EXPECT_EQ(rectOf(desk->note(1).hwnd).right, GetWorkArea().right);
    EXPECT_EQ(changesOf(*desk), before);
    EXPECT_EQ(desk->note(1).record.x, 90000);
}

TEST_P(MovedNotes, ANoteShownSmallerWhereItCanBeReachedMovesAndStoresNoOther) {
    GlobalSettings settings;
    settings.AlignAll = true;
    const auto desk = run({plainNote(u"a"), plainNote(u"b"), plainNote(u"c")}, settings);
    const POINT place = corner(desk->note(2));
    const int before = changesOf(*desk);
    desk->note(1).record.height = 300000;  // as from a desk that was larger
    for (const UINT message : kDeskMessages)
        SendMessageW(desk->note(1).hwnd, message, 0, 0);
    const RECT rect = rectOf(desk->note(1).hwnd);
    EXPECT_EQ(rect.bottom - rect.top, GetWorkArea().height());
    EXPECT_TRUE(isAt(corner(desk->note(2)), place.x, place.y));
    EXPECT_EQ(changesOf(*desk), before);
}

TEST_P(MovedNotes, WhatWindowsMovesWhenAMonitorGoesKeepsItsStoredPlace) {
    NoteRecord away = plainNote(u"away");
    away.x = 90000;
    const auto desk = run({away});
    fpost& note = desk->note(1);
    const POINT shown = corner(note);
    const int before = changesOf(*desk);
    moveByOthers(note, 20, 30);
    SendMessageW(note.hwnd, WM_DISPLAYCHANGE, 0, 0);  // Windows may say so before or after
    EXPECT_TRUE(isAt(corner(note), shown.x, shown.y));
    moveByOthers(note, 40, 50);
    EXPECT_TRUE(waitFor([&] { return isAt(corner(note), shown.x, shown.y); }));
    EXPECT_EQ(changesOf(*desk), before);
    EXPECT_EQ(note.record.x, 90000);
}

// --- By keyboard ------------------------------------------------------------------------------------------

constexpr int kStep = 120;  // twips

TEST_P(MovedNotes, CtrlAndTheArrowsMoveTheNote) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    struct Way {
        WPARAM key;
        int x, y;
    };
    int x = 1500;
    int y = 1500;
    for (const Way way : {Way{VK_RIGHT, 1, 0}, Way{VK_DOWN, 0, 1}, Way{VK_LEFT, -1, 0}, Way{VK_UP, 0, -1}}) {
        hold(note.hwnd, way.key, 3);
        x += 3 * way.x * kStep;
        y += 3 * way.y * kStep;
        EXPECT_EQ(std::pair(note.place.Left(), note.place.Top()), std::pair(x, y)) << way.key;
        EXPECT_EQ(desk->stored(1).x, x) << way.key;
        EXPECT_EQ(desk->stored(1).y, y) << way.key;
    }
    EXPECT_EQ(desk->stored(1).width, 3000);
    EXPECT_EQ(desk->stored(1).height, 2250);
}

TEST_P(MovedNotes, AMoveIsStoredOnceWhenItEnds) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    const int before = changesOf(*desk);
    {
        const HeldKeys held({VK_CONTROL});
        for (int i = 0; i < 20; ++i)
            SendMessageW(note.hwnd, WM_KEYDOWN, VK_RIGHT, 0);
    }
    EXPECT_EQ(changesOf(*desk), before);
    SendMessageW(note.hwnd, WM_KEYUP, VK_CONTROL, 0);
    EXPECT_EQ(desk->stored(1).x, 1500 + 20 * kStep);
    const int once = changesOf(*desk);
    SendMessageW(note.hwnd, WM_KEYUP, VK_RIGHT, 0);
    EXPECT_EQ(changesOf(*desk), once);

    hold(note.hwnd, VK_DOWN, 0);
    EXPECT_EQ(changesOf(*desk), once) << "the key itself stores nothing";
    {
        const HeldKeys held({VK_CONTROL});
        SendMessageW(note.hwnd, WM_KEYDOWN, VK_DOWN, 0);
    }
    SendMessageW(note.hwnd, WM_KILLFOCUS, 0, 0);
    EXPECT_EQ(desk->stored(1).y, 1500 + kStep) << "even if the end of the move was missed";
}

TEST_P(MovedNotes, WithEasyAlignmentAMoveStopsAtTheEdgeOfAnotherNote) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    const auto desk = run({plainNote(u"left", 3000, 3000), plainNote(u"right", 6330, 3000)}, settings);
    ASSERT_EQ(screenDpi(), 96);
    fpost& note = desk->note(2);
    hold(note.hwnd, VK_LEFT, 2);
    EXPECT_EQ(note.place.Left(), 6330 - 2 * kStep);
    hold(note.hwnd, VK_LEFT, 1);
    EXPECT_EQ(note.place.Left(), 6000) << "the other note's edge lies within the step";
    hold(note.hwnd, VK_LEFT, 1);
    EXPECT_EQ(note.place.Left(), 6000 - kStep);
    EXPECT_EQ(desk->stored(2).x, 6000 - kStep);
}

TEST_P(MovedNotes, AnIconizedNoteMovesAndStaysSmall) {
    NoteRecord record = plainNote(u"a");
    record.iconized = true;
    const auto desk = run({record});
    fpost& note = desk->note(1);
    hold(note.hwnd, VK_DOWN, 2);
    EXPECT_EQ(desk->stored(1).y, 1500 + 2 * kStep);
    EXPECT_TRUE(note.Iconized());
    EXPECT_EQ(desk->stored(1).height, 2250);
}

}  // namespace
