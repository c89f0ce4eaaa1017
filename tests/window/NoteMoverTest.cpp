// What moves a note besides the user's own drag, and what becomes of it when the desk changes.
#include "note/bas_GetWorkArea.h"
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

/// Where Windows drags outlines, it moves the window itself only at the end. It does not say whether that
/// comes before or after the message about the end.
TEST_P(MovedNotes, ANoteDraggedAsAnOutlineIsStoredWithItsSnappedPlace) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    const auto desk = run({plainNote(u"a")}, settings);
    const fpost& note = desk->note(1);
    const RECT start = rectOf(note.hwnd);
    const int width = static_cast<int>(start.right - start.left);
    int top = 300;
    for (const bool movedFirst : {true, false}) {
        const int beyond = GetWorkArea().right - width - 1;
        RECT outline{beyond, ++top, beyond + width, top + 150};
        {
            MoveHook::Desk rules;
            rules.easyAlign = true;
            rules.others = [] { return std::vector<PxRect>{}; };
            const MoveHook hook(note.hwnd, MoveHook::Kind::EasyMove, rules);
            SendMessageW(note.hwnd, WM_ENTERSIZEMOVE, 0, 0);
            SendMessageW(note.hwnd, WM_MOVING, 0, reinterpret_cast<LPARAM>(&outline));
            if (movedFirst) moveByOthers(note, outline.left, outline.top);
            SendMessageW(note.hwnd, WM_EXITSIZEMOVE, 0, 0);
            if (!movedFirst) moveByOthers(note, outline.left, outline.top);
        }
        const int right = GetWorkArea().right - width;
        EXPECT_TRUE(waitFor([&] { return isAt(storedCorner(*desk), right, top); })) << movedFirst;
    }
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

TEST_P(MovedNotes, APenHeldOnTheGripIsNoRightClick) {
    const auto desk = run({plainNote(u"a")});
    constexpr UINT kQueryGestures = 0x02CC;
    constexpr LRESULT kNoPressAndHold = 1;
    const fpost& note = desk->note(1);
    EXPECT_EQ(SendMessageW(note.pic2, kQueryGestures, 0, 0), kNoPressAndHold);
    for (const HWND part : {note.lbl, note.lbl2, note.pic, note.nota})
        EXPECT_EQ(SendMessageW(part, kQueryGestures, 0, 0), 0) << GetDlgCtrlID(part);
}

}  // namespace
