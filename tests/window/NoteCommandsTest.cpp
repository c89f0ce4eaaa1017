// What the keyboard does on a note besides the entries of its menu: moving it, editing its title, switching
// its strip, stopping its alarm, going to other notes; and how a note shows that it has the keyboard.
#include "alarm/AlarmText.h"
#include "note/bas_GetWorkArea.h"
#include "tests/window/TestNotes.h"

namespace {

class Keyboard : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, Keyboard, testing::Bool(), storeName);

constexpr int kStep = 120;  // twips

/// Sends a key that goes down `times` times, like one that is held, and then up.
void hold(HWND window, WPARAM key, int times, std::initializer_list<int> with = {VK_CONTROL}) {
    const HeldKeys held(with);
    for (int i = 0; i < times; ++i)
        SendMessageW(window, WM_KEYDOWN, key, 0);
    SendMessageW(window, WM_KEYUP, key, 0);
}

// --- Moving -----------------------------------------------------------------------------------------------

TEST_P(Keyboard, CtrlAndTheArrowsMoveTheNote) {
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

TEST_P(Keyboard, AMoveIsStoredOnceWhenItEnds) {
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

TEST_P(Keyboard, WithEasyAlignmentAMoveStopsAtEdgesAndCanGoOn) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    NoteRecord left = plainNote(u"left", 3000, 3000);
    NoteRecord right = plainNote(u"right", 3000 + 3000 + 330, 3000);
    const auto desk = run({left, right}, settings);
    ASSERT_EQ(screenDpi(), 96);
    fpost& note = desk->note(2);
    hold(note.hwnd, VK_LEFT, 2);
    EXPECT_EQ(note.place.Left(), 6330 - 2 * kStep);
    hold(note.hwnd, VK_LEFT, 1);
    EXPECT_EQ(note.place.Left(), 6000) << "the other note's edge lies within the step";
    hold(note.hwnd, VK_LEFT, 1);
    EXPECT_EQ(note.place.Left(), 6000 - kStep);
}

TEST_P(Keyboard, AtTheScreensEdgeAMoveEndsFlush) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    const auto desk = run({plainNote(u"a", 150, 150)}, settings);
    fpost& note = desk->note(1);
    hold(note.hwnd, VK_LEFT, 5);
    hold(note.hwnd, VK_UP, 5);
    const PxRect work = GetWorkArea();
    EXPECT_EQ(rectOf(note.hwnd).left, work.left);
    EXPECT_EQ(rectOf(note.hwnd).top, work.top);
    hold(note.hwnd, VK_RIGHT, 1);
    EXPECT_EQ(note.place.Left(), desk->desk->look.twips(work.left) + kStep);
    EXPECT_EQ(rectOf(note.hwnd).right - rectOf(note.hwnd).left, desk->desk->look.px(Twips{3000}));
}

TEST_P(Keyboard, ANoteCannotBeMovedOutOfReach) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (const WPARAM key : {WPARAM{VK_UP}, WPARAM{VK_LEFT}}) {
        hold(note.hwnd, key, 300);
        const RECT rect = rectOf(note.hwnd);
        const int strip = desk->desk->look.px(design::kStripHeight);
        EXPECT_TRUE(
            isInSight(readMonitors(), {static_cast<int>(rect.left), static_cast<int>(rect.top),
                                       static_cast<int>(rect.right), static_cast<int>(rect.top) + strip}))
            << key;
    }
    EXPECT_EQ(desk->stored(1).x, note.place.Left());
}

TEST_P(Keyboard, AnIconizedNoteMovesAndStaysSmall) {
    NoteRecord record = plainNote(u"a");
    record.iconized = true;
    const auto desk = run({record});
    fpost& note = desk->note(1);
    hold(note.hwnd, VK_DOWN, 2);
    EXPECT_EQ(desk->stored(1).y, 1500 + 2 * kStep);
    EXPECT_TRUE(note.Iconized());
    EXPECT_EQ(desk->stored(1).height, 2250);
}

TEST_P(Keyboard, InTheEditorTheArrowsBelongToTheText) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    hold(note.editing.txtNota(), VK_LEFT, 2);
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_EQ(note.place.Left(), 1500);
}

// --- Title, strip, ringing --------------------------------------------------------------------------------

TEST_P(Keyboard, ShiftF2EditsTheTitleOfANormalNote) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    hold(note.hwnd, VK_F2, 1, {VK_SHIFT});
    ASSERT_TRUE(note.editing.titleBeingEdited());
    EXPECT_TRUE(IsWindowVisible(note.editing.txtTitle()));
    SetWindowTextW(note.editing.txtTitle(), L"b");
    typeKey(note.editing.txtTitle(), VK_RETURN, VK_RETURN);
    EXPECT_EQ(desk->stored(1).Titolo, u"b");
    hold(note.hwnd, VK_F2, 1, {});
    EXPECT_TRUE(note.editing.bodyBeingEdited()) << "F2 alone edits the text";
}

TEST_P(Keyboard, ShiftF4ShowsWhenItRingsAndTheTimeLeftAgain) {
    const auto desk = run({armed(u"a")});
    fpost& note = desk->note(1);
    ASSERT_EQ(windowText(note.pic_time), u"0:00:05");
    hold(note.hwnd, VK_F4, 1, {VK_SHIFT});
    EXPECT_EQ(windowText(note.pic_time), dueText(note.alarm.rule));
    hold(note.hwnd, VK_F4, 1, {VK_SHIFT});
    EXPECT_EQ(windowText(note.pic_time), u"0:00:05");
    EXPECT_TRUE(note.alarm.isCounting());
}

TEST_P(Keyboard, EscStopsANoteThatRings) {
    GlobalSettings settings;
    settings.DontDeleteWhenPlay = true;
    const auto desk = run({armed(u"a")}, settings);
    fpost& note = desk->note(1);
    typeKey(note.hwnd, VK_ESCAPE);
    EXPECT_TRUE(note.alarm.isCounting()) << "before it rings the key does nothing";
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 5});
    desk->desk->Tick();
    ASSERT_TRUE(note.Alarming());
    for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_SPACE}}) {
        typeKey(note.hwnd, key);
        EXPECT_TRUE(note.Alarming()) << key;
    }
    typeKey(note.hwnd, VK_ESCAPE);
    EXPECT_FALSE(note.Alarming());
    EXPECT_EQ(desk->desk->Count(), 1);
}

TEST_P(Keyboard, AKeyThatWasMeantForTheEditDeletesNoNote) {
    constexpr LPARAM kHeld = LPARAM{KF_REPEAT} << 16;
    for (const bool title : {false, true}) {
        const auto desk = run({armed(u"a")});
        fpost& note = desk->note(1);
        if (title) {
            note.EditCaption();
        } else {
            note.EditForm();
        }
        const HWND editor = title ? note.editing.txtTitle() : note.editing.txtNota();
        SetWindowTextW(editor, L"kept");
        desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 5});
        desk->desk->Tick();
        ASSERT_TRUE(note.Alarming());
        typeKey(editor, VK_RETURN, VK_RETURN);
        ASSERT_FALSE(note.editing.bodyBeingEdited() || note.editing.titleBeingEdited());
        typeKey(note.hwnd, VK_ESCAPE);
        desk->clock.ms = 999;
        typeKey(note.hwnd, VK_ESCAPE);
        EXPECT_TRUE(note.Alarming()) << "one key too many";
        desk->clock = {desk->clock.at, 0};
        desk->clock.at.seconds += 1;
        SendMessageW(note.hwnd, WM_KEYDOWN, VK_ESCAPE, kHeld);
        EXPECT_TRUE(note.Alarming()) << "still held down";
        ASSERT_EQ(desk->desk->Count(), 1);
        EXPECT_EQ(title ? desk->stored(1).Titolo : desk->stored(1).Nota, u"kept");
        typeKey(note.hwnd, VK_ESCAPE);
        pumpPending();
        EXPECT_EQ(desk->desk->Count(), 0) << "a key press of its own";
    }
}

TEST_P(Keyboard, ANoteWhoseAlarmRingsOnceGoesWithTheKeyThatStopsIt) {
    const auto desk = run({armed(u"a"), plainNote(u"b")});
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 5});
    desk->desk->Tick();
    typeKey(desk->note(1).hwnd, VK_ESCAPE);
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 1);
    EXPECT_EQ(desk->note(1).Titolo(), u"b");
}

TEST_P(Keyboard, EscLeavesTheResizeModeToo) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.place.resizer.setMode(true);
    typeKey(note.hwnd, VK_RIGHT);
    typeKey(note.hwnd, VK_ESCAPE);
    EXPECT_FALSE(note.place.resizer.isOn());
    EXPECT_EQ(desk->stored(1).width, 3030) << "the new size stays";
}

TEST_P(Keyboard, TheResizeModeHasTheKeyboardToItself) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.place.resizer.setMode(true);
    typeKey(note.hwnd, VK_F2);
    EXPECT_FALSE(note.editing.bodyBeingEdited());
    EXPECT_TRUE(note.place.resizer.isOn());
    typeKey(note.hwnd, VK_RETURN);
    typeKey(note.hwnd, VK_F2);
    EXPECT_TRUE(note.editing.bodyBeingEdited());
}

// --- From note to note ------------------------------------------------------------------------------------

TEST_P(Keyboard, CtrlTabAndF6GoRoundTheVisibleNotes) {
    NoteRecord closed = plainNote(u"closed");
    closed.closed = true;
    const auto desk = run({plainNote(u"a"), closed, plainNote(u"c"), plainNote(u"d")});
    desk->note(1).show(true);
    struct Press {
        WPARAM key;
        std::initializer_list<int> with;
        int arrives;
    };
    int at = 1;
    const Press presses[] = {{VK_TAB, {VK_CONTROL}, 3},
                             {VK_F6, {}, 4},
                             {VK_TAB, {VK_CONTROL}, 1},
                             {VK_TAB, {VK_CONTROL, VK_SHIFT}, 4},
                             {VK_F6, {VK_SHIFT}, 3}};
    for (const Press& press : presses) {
        hold(desk->note(at).hwnd, press.key, 1, press.with);
        at = press.arrives;
        EXPECT_EQ(GetForegroundWindow(), desk->note(at).hwnd) << at;
        EXPECT_EQ(GetFocus(), desk->note(at).hwnd) << at;
    }
    EXPECT_FALSE(desk->note(2).visible());
}

TEST_P(Keyboard, GoingToAnotherNoteKeepsWhatWasTyped) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b")});
    desk->note(1).show(true);
    desk->note(1).EditForm();
    SetWindowTextW(desk->note(1).editing.txtNota(), L"typed");
    hold(desk->note(1).editing.txtNota(), VK_TAB, 1);
    EXPECT_FALSE(desk->note(1).editing.bodyBeingEdited());
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
    EXPECT_EQ(GetFocus(), desk->note(2).hwnd);
}

TEST_P(Keyboard, TheOnlyNoteStaysWhereItIs) {
    const auto desk = run({plainNote(u"a")});
    desk->note(1).show(true);
    hold(desk->note(1).hwnd, VK_F6, 1, {});
    EXPECT_EQ(GetFocus(), desk->note(1).hwnd);
}

/// Colour of a note's frame, in the middle of its left edge.
COLORREF frameOf(const fpost& note) {
    const HDC dc = GetWindowDC(note.hwnd);
    const RECT rect = rectOf(note.hwnd);
    const COLORREF color = GetPixel(dc, 0, static_cast<int>(rect.bottom - rect.top) / 2);
    ReleaseDC(note.hwnd, dc);
    return color;
}

TEST_P(Keyboard, TheNoteThatHasItShowsIt) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000)});
    for (const int at : {1, 2, 1}) {
        desk->note(at).show(true);
        EXPECT_EQ(frameOf(desk->note(at)), inkOn(kDesignColor)) << at;
        EXPECT_EQ(frameOf(desk->note(3 - at)), frameColor(kDesignColor)) << at;
    }
}

}  // namespace
