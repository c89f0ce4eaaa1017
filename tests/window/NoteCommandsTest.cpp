// What the menu of a note says and does, and what the keyboard does besides: editing the title, switching the
// strip, stopping an alarm.
#include "alarm/AlarmText.h"
#include "resources/resource.h"
#include "support/PopupMenu.h"
#include "tests/window/AlarmDesk.h"
#include "tests/window/CollectionDesk.h"

namespace {

class Keyboard : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, Keyboard, testing::Bool(), storeName);

// --- In an open editor ------------------------------------------------------------------------------------

TEST_P(Keyboard, InTheEditorTheArrowsBelongToTheText) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    hold(note.editing.txtNota(), VK_LEFT, 2);
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_EQ(note.place.Left(), 1500);
}

TEST_P(Keyboard, DeleteKeyBelongsToTheOpenEditor) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    EXPECT_FALSE(note.commands.onKeyDown(VK_DELETE));
    note.EditCaption();
    EXPECT_FALSE(note.commands.onKeyDown(VK_DELETE));
    EXPECT_EQ(desk->desk->Count(), 1);
}

TEST_P(Keyboard, EditKeyInTheOpenEditorKeepsWhatWasTyped) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"typed");
    EXPECT_TRUE(note.commands.onKeyDown(VK_F2));
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_EQ(windowText(note.editing.txtNota()), u"typed");
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

// --- The menu ---------------------------------------------------------------------------------------------

class NoteMenus : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, NoteMenus, testing::Bool(), storeName);

TEST_P(NoteMenus, OpeningTheMenuLeavesTheAlarmCounting) {
    const auto desk = run({every(u"daily", u"eachday")});
    fpost& note = desk->note(1);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmValid);
    EXPECT_EQ(note.alarm.rule.due, kDue);
    lockStores(*desk);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmValid)
        << "memory serves while the store is locked";
}

TEST_P(NoteMenus, TheMenuSaysWhatIsStoredOfTheAlarm) {
    const auto desk = run({once(u"a")});
    fpost& note = desk->note(1);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmOneOff);
    NoteRecord changed = every(u"a", u"eachday");  // by another program
    EXPECT_TRUE(desk->desk->store.set(1, changed, everyField()));
    EXPECT_FALSE(note.commands.input(note.commands.storedAlarm()).alarmOneOff);
    lockStores(*desk);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmOneOff) << "nothing else is known";
}

TEST_P(NoteMenus, HiddenCommandsDoNothing) {
    const auto desk = run({plainNote(u"a")});
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_DONTDELETE, 0);
    EXPECT_FALSE(desk->desk->settings.DontDeleteWhenPlay);
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_TOPMOST, 0);
    EXPECT_TRUE(desk->stored(1).topmost);
}

TEST_P(NoteMenus, EveryCommandKeepsTheOpenEditFirst) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000, 6000)});
    fpost& note = desk->note(1);
    int round = 0;
    constexpr WPARAM kCommands[] = {IDM_TOPMOST, IDM_ICONIZE, IDM_ICONIZE,
                                    IDM_RESIZE,  IDM_HIDEALL, IDM_CLOSE};
    for (const WPARAM id : kCommands) {
        const Text typed = u"typed " + decimal(++round);
        if (note.record.iconized) {
            note.EditCaption();
            setWindowText(note.editing.txtTitle(), typed);
        } else {
            note.EditForm();
            setWindowText(note.editing.txtNota(), typed);
        }
        const bool title = note.editing.titleBeingEdited();
        SendMessageW(note.hwnd, WM_COMMAND, id, 0);
        EXPECT_EQ(title ? desk->stored(1).Titolo : desk->stored(1).Nota, typed) << id;
        EXPECT_FALSE(note.editing.bodyBeingEdited() || note.editing.titleBeingEdited()) << id;
        if (!note.visible()) note.show(true);
    }
}

TEST_P(NoteMenus, ACommandOfANotesMenuDoesWhatTheMenuSaid) {
    GlobalSettings settings;
    settings.RestoreWhenPlay = true;
    std::vector<NoteRecord> notes = manyNotes(3);
    for (NoteRecord& note : notes)
        note.iconized = true;
    notes[0].alarmdate = u"15/06/2026";
    notes[0].alarmtime = u"12:00:10";
    const auto desk = run(notes, settings);
    const NoteMenuInput own = desk->note(1).commands.input(desk->note(1).alarm.rule);
    const NoteMenuInput others = desk->note(2).commands.input(desk->note(2).alarm.rule);
    ASSERT_TRUE(own.iconized && others.allIconized);
    // While the menu is open, the note rings and is restored for that.
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
    desk->note(1).tmr_Timer();
    ASSERT_FALSE(desk->note(1).Iconized());
    postChosen(desk->note(1).hwnd, IDM_ICONIZE, said(own));  // "Restore"
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 3) << "if it were iconized again, it would be silenced and deleted";
    EXPECT_FALSE(desk->note(1).Iconized());
    EXPECT_TRUE(desk->note(1).Alarming());
    postChosen(desk->note(2).hwnd, IDM_ICONIZEALL, said(others));  // "Restore All"
    pumpPending();
    for (int n = 1; n <= 3; ++n)
        EXPECT_FALSE(desk->note(n).Iconized()) << n;
    postChosen(desk->note(2).hwnd, IDM_ICONIZE, said(desk->note(2).commands.input(desk->note(2).alarm.rule)));
    pumpPending();
    EXPECT_TRUE(desk->note(2).Iconized());
}

}  // namespace
