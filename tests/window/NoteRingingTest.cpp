// A note's alarm on a live desktop, in both stores: counting down, ringing, what ends it, and the strip.
#include <gtest/gtest.h>

#include <string>

#include "tests/window/AlarmDesk.h"
#include "tests/window/MenuDesk.h"

namespace {

INSTANTIATE_TEST_SUITE_P(Stores, Alarm, testing::Bool(), storeName);

// --- Countdown --------------------------------------------------------------------------------------------

TEST_P(Alarm, TheStripIsPaintedOnlyWhenItsTextChanges) {
    const auto desk = run({once(u"a")});
    const fpost& note = desk->note(1);
    UpdateWindow(note.pic_time);
    desk->clock.ms = 500;
    tick(*desk);
    EXPECT_EQ(GetUpdateRect(note.pic_time, nullptr, FALSE), FALSE);
    desk->clock = {later(-9), 0};
    tick(*desk);
    EXPECT_NE(GetUpdateRect(note.pic_time, nullptr, FALSE), FALSE);
}

// --- Ringing ----------------------------------------------------------------------------------------------

TEST(AlarmTimer, FlashesByItselfAndTheSoundComesAgainAfterThreeSeconds) {
    TestNotes desk(true, {once(u"a")});
    fpost& note = desk.note(1);
    desk.clock = {kDue, 0};
    const ULONGLONG start = GetTickCount64();
    note.tmr_Timer();
    ASSERT_EQ(desk.sounds, 1);
    int changes = 0;
    for (Rgb last = note.tBackColor(); desk.sounds < 2 && GetTickCount64() < start + 30000;) {
        if (!pumpFor(5)) break;
        if (note.tBackColor() != last) ++changes;
        last = note.tBackColor();
    }
    EXPECT_EQ(desk.sounds, 2);
    EXPECT_GE(GetTickCount64() - start, 2900U);
    EXPECT_GE(changes, kTicksBetweenSounds / 2);
    note.alarm.silence();
}

TEST_P(Alarm, TheWhiteOfTheFlashIsNeverStored) {
    const auto desk = run({every(u"a", u"eachday"), plainNote(u"b")});
    desk->clock = {kDue, 0};
    tick(*desk);
    EXPECT_EQ(desk->note(1).tBackColor(), kWhite);
    EXPECT_TRUE(desk->desk->store.set(1, desk->note(1).record, everyField()));
    desk->note(2).DeleteForm(true);
    EXPECT_EQ(desk->stored(1).backcolor, kDesignColor);
    desk->note(1).Backcol(0x00FFFF);  // another colour while it rings
    desk->note(1).alarm.flashTick();
    desk->note(1).alarm.flashTick();
    press(desk->note(1).pic_time);
    EXPECT_EQ(desk->note(1).tBackColor(), 0x00FFFFU);
}

// --- The click that ends it -------------------------------------------------------------------------------

TEST_P(Alarm, AnAlarmThatRingsOnceTakesItsNoteAlongWithoutAQuestion) {
    const auto desk = ringing({once(u"a")});
    ASSERT_TRUE(desk->desk->NewNote());
    const HWND window = desk->note(1).hwnd;
    press(desk->note(1).pic_time);
    EXPECT_FALSE(desk->desk->dialog.open());
    EXPECT_EQ(desk->silences, 1);
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"- 2 -"}));
    EXPECT_EQ(desk->stored(1).Titolo, u"- 2 -");
    pumpPending();
    EXPECT_FALSE(IsWindow(window));
}

TEST_P(Alarm, TheLastNoteGoesToo) {
    const auto desk = ringing({once(u"a")});
    press(desk->note(1).pic_time);
    pumpPending();
    EXPECT_EQ(desk->desk->Count(), 0);
    EXPECT_FALSE(desk->desk->dialog.open());
}

TEST_P(Alarm, ANoteToBeKeptStaysAndDoesNotRingAtTheNextStart) {
    const auto desk = ringing({once(u"a")}, keeping());
    fpost& note = desk->note(1);
    press(note.pic_time);
    EXPECT_FALSE(note.Alarming());
    EXPECT_FALSE(stripShown(note));
    EXPECT_EQ(note.tBackColor(), note.Backcol());
    ASSERT_EQ(desk->desk->Count(), 1);
    const NoteRecord stored = desk->stored(1);
    EXPECT_EQ(stored.alarmdate, u"");
    EXPECT_EQ(stored.alarmtime, u"");
    EXPECT_EQ(stored.Nota, u"body of a");
    desk->killAndRestart();
    tick(*desk);
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_EQ(desk->sounds, 1);
}

TEST_P(Alarm, ANoteThatCouldNotBeReadIsSilencedAndStays) {
    const auto desk = ringing({once(u"a")});
    desk->note(1).record.readOnly = true;
    EXPECT_FALSE(desk->note(1).SoundStop()) << "the note must stay";
    EXPECT_FALSE(desk->note(1).Alarming());
    ASSERT_EQ(desk->desk->Count(), 1);
}

TEST_P(Alarm, WeekdaysAndPatternsAreStoredAsTheyGoOn) {
    NoteRecord several = weekly(u"d", kSeveralWeekdays);
    several.weekdays = {true, false, true, false, false, false, false};
    const auto desk =
        ringing({weekly(u"a", 1), every(u"b", u"eachmonth"), every(u"c", u"eachyear"), several});
    for (int n = 1; n <= 4; ++n)
        press(desk->note(n).pic_time);
    EXPECT_EQ(desk->note(1).alarm.rule.due, instantOf({2026, 6, 22}, {12, 0, 10}));
    EXPECT_EQ(desk->stored(1).alarmdate, u"22/06/2026");
    EXPECT_EQ(desk->stored(1).alarmweekday, 1);
    EXPECT_EQ(desk->note(2).alarm.rule.due, instantOf({2026, 7, 15}, {12, 0, 10}));
    EXPECT_EQ(desk->stored(2).alarmdate, u"*");
    EXPECT_EQ(desk->stored(2).alarmday, u"15");
    EXPECT_EQ(desk->note(3).alarm.rule.due, instantOf({2027, 6, 15}, {12, 0, 10}));
    EXPECT_EQ(desk->stored(3).alarmdaymonth, u"15/06");
    EXPECT_EQ(desk->note(4).alarm.rule.due, instantOf({2026, 6, 17}, {12, 0, 10}));
    std::vector<std::optional<Instant>> due;
    for (int n = 1; n <= 4; ++n)
        due.push_back(desk->note(n).alarm.rule.due);
    desk->killAndRestart();
    for (int n = 1; n <= 4; ++n) {
        EXPECT_EQ(desk->note(n).alarm.rule.due, due[static_cast<std::size_t>(n - 1)]) << n;
        EXPECT_TRUE(stripShown(desk->note(n))) << n;
    }
}

TEST_P(Alarm, AStoreThatRefusesDoesNotStopItFromGoingOn) {
    const auto desk = ringing({every(u"a", u"eachday"), repeating(u"b", 1, u"hh")});
    {
        const FullDisk full(*desk);
        for (int n = 1; n <= 2; ++n)
            press(desk->note(n).pic_time);
    }
    for (int n = 1; n <= 2; ++n) {
        EXPECT_FALSE(desk->note(n).Alarming()) << n;
        EXPECT_TRUE(stripShown(desk->note(n))) << n;
    }
    EXPECT_EQ(desk->note(1).alarm.rule.due, later(kSecondsPerDay));
    EXPECT_EQ(desk->note(2).alarm.rule.due, later(3600));
    desk->note(2).commands.mnuTopmost();  // the next save brings it in
    EXPECT_EQ(desk->stored(2).alarmtime, u"13:00:10");
}

TEST_P(Alarm, AsksTheStoreWhetherItRecurs) {
    const auto desk = ringing({once(u"a"), every(u"b", u"eachday")});
    NoteRecord daily = desk->stored(1);
    daily.alarmdate = u"*";
    daily.interval = u"eachday";
    EXPECT_TRUE(desk->desk->store.set(1, daily, everyField()));
    press(desk->note(1).pic_time);
    ASSERT_EQ(desk->desk->Count(), 2) << "another program has made it a daily one";
    EXPECT_EQ(desk->note(1).alarm.rule.due, later(kSecondsPerDay));

    desk->folder.locked.insert(Text(kNoteFile));
    desk->registry.locked.insert(u"kardel-2");
    press(desk->note(2).pic_time);
    ASSERT_EQ(desk->desk->Count(), 2) << "a store that cannot be read must not end an alarm";
    EXPECT_EQ(desk->note(2).alarm.rule.due, later(kSecondsPerDay));
}

// --- Several at once --------------------------------------------------------------------------------------

TEST_P(Alarm, SeveralRingAtOnceAndEachIsStoppedOnItsOwn) {
    const auto desk = ringing({once(u"a"), every(u"b", u"eachday"), once(u"c")});
    EXPECT_EQ(desk->sounds, 3);
    press(desk->note(1).pic_time);
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"b", u"c"}));
    for (int n = 1; n <= 2; ++n)
        EXPECT_TRUE(desk->note(n).Alarming()) << n;
    // The one sound of the program ended with it: the others begin it again at their next turn.
    for (int i = 0; i < kTicksBetweenSounds; ++i)
        desk->note(2).alarm.flashTick();
    EXPECT_EQ(desk->sounds, 4);
    press(desk->note(1).pic_time);
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_TRUE(desk->note(2).Alarming());
    press(desk->note(2).pic_time);
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 1);
    EXPECT_EQ(desk->stored(1).Titolo, u"b");
}

TEST_P(Alarm, FiftyMissedAlarmsAllRingAndAllGo) {
    std::vector<NoteRecord> notes;
    for (int i = 0; i < kMaxNotes; ++i)
        notes.push_back(once(u"n"));
    const auto desk = ringing(notes);
    EXPECT_EQ(desk->sounds, kMaxNotes);
    while (desk->desk->Count() > 0)
        press(desk->note(1).pic_time);
    pumpPending();
    EXPECT_EQ(desk->silences, kMaxNotes);
}

// --- Notes that are not on screen -------------------------------------------------------------------------

TEST_P(Alarm, AHiddenNoteComesBackWithoutTakingTheKeyboard) {
    const auto desk = run({once(u"a"), plainNote(u"b")});
    desk->desk->ToggleHideAll();
    const HWND other = CreateWindowExW(0, L"EDIT", L"other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                                       nullptr, nullptr, nullptr);
    SetForegroundWindow(other);
    SetFocus(other);
    const HWND active = GetActiveWindow();
    desk->clock = {kDue, 0};
    tick(*desk);
    EXPECT_TRUE(desk->note(1).visible());
    EXPECT_TRUE(stripShown(desk->note(1)));
    EXPECT_FALSE(desk->note(2).visible());
    EXPECT_EQ(GetActiveWindow(), active);
    EXPECT_EQ(GetFocus(), other);
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Hide All");
    DestroyWindow(other);
}

TEST_P(Alarm, AClosedNoteIsReopenedForGood) {
    const auto desk =
        run({with(once(u"a"), &NoteRecord::closed), with(plainNote(u"b"), &NoteRecord::closed)});
    ASSERT_TRUE(desk->desk->AllHidden());
    desk->clock = {kDue, 0};
    tick(*desk);
    EXPECT_TRUE(desk->note(1).visible());
    EXPECT_FALSE(desk->note(1).Closed());
    EXPECT_FALSE(desk->stored(1).closed);
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_FALSE(desk->note(2).visible());
    EXPECT_TRUE(desk->stored(2).closed);
}

TEST_P(Alarm, AnIconizedNoteIsRestoredIfWantedAndGoesOnRinging) {
    GlobalSettings settings;
    settings.RestoreWhenPlay = true;
    const auto desk = run(
        {with(once(u"a"), &NoteRecord::iconized), with(plainNote(u"b"), &NoteRecord::iconized)}, settings);
    ASSERT_TRUE(desk->desk->AllIconized());
    desk->clock = {kDue, 0};
    tick(*desk);
    fpost& note = desk->note(1);
    EXPECT_TRUE(note.Alarming());
    EXPECT_EQ(desk->silences, 0);
    ASSERT_EQ(desk->desk->Count(), 2) << "restoring it must not count as the click that ends it";
    EXPECT_EQ(note.place.Height(), 2250);
    EXPECT_TRUE(stripShown(note));
    EXPECT_FALSE(desk->stored(1).iconized);
    EXPECT_EQ(desk->stored(1).height, 2250);
    EXPECT_FALSE(desk->desk->AllIconized());
    EXPECT_EQ(trayCaption(*desk, tray::kIconizeAll), u"Iconize All");
}

// --- What else may happen while it rings ------------------------------------------------------------------

TEST_P(Alarm, ExitSilencesItAndLeavesTheAlarmStored) {
    const auto desk = ringing({once(u"a"), every(u"b", u"eachday")});
    desk->desk->Teardown();
    EXPECT_EQ(desk->silences, 2);
    EXPECT_EQ(desk->stored(1).alarmdate, u"15/06/2026");
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
    EXPECT_EQ(desk->stored(2).interval, u"eachday");
}

TEST_P(Alarm, ANoteBeingEditedRingsAndIsStoppedOnceTheTextIsKept) {
    const auto desk = run({every(u"a", u"eachday")});
    fpost& note = desk->note(1);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"half a thought");
    desk->clock = {kDue, 0};
    tick(*desk);
    EXPECT_TRUE(note.Alarming());
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    press(note.lbl);
    EXPECT_FALSE(note.Alarming());
    EXPECT_EQ(desk->stored(1).Nota, u"half a thought");
    EXPECT_TRUE(stripShown(note));
}

// --- The strip --------------------------------------------------------------------------------------------

class TimeStrip : public Alarm {};
INSTANTIATE_TEST_SUITE_P(Stores, TimeStrip, testing::Bool(), storeName);

TEST_P(TimeStrip, WhileItsTextIsEditedTheStripComesUpToBePressed) {
    const auto desk = run({every(u"a", u"eachday")});
    fpost& note = desk->note(1);
    const auto pressable = [&] {
        POINT middle{4, 4};
        MapWindowPoints(note.pic_time, note.hwnd, &middle, 1);
        return stripShown(note) && RealChildWindowFromPoint(note.hwnd, middle) == note.pic_time;
    };
    note.EditForm();
    EXPECT_FALSE(stripShown(note)) << "it would cover the last line";
    desk->clock = {kDue, 0};
    tick(*desk);
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_TRUE(pressable());
    note.SoundStop();
    EXPECT_FALSE(stripShown(note));
    note.CancelNote();
    desk->clock = {later(kSecondsPerDay), 0};
    tick(*desk);
    note.EditForm();
    EXPECT_TRUE(pressable()) << "it rang already when the edit began";
    SetWindowTextW(note.editing.txtNota(), L"kept");
    press(note.pic_time);
    EXPECT_FALSE(note.Alarming());
    EXPECT_EQ(desk->stored(1).Nota, u"kept");
}

TEST_P(TimeStrip, TheTimeStripMakesRoomForTheEditorAndComesBack) {
    const auto desk = run({every(u"a", u"eachday")});
    fpost& note = desk->note(1);
    EXPECT_TRUE(IsWindowVisible(note.pic_time));
    for (const WPARAM key : {kReturn, kEscape}) {
        note.EditForm();
        EXPECT_FALSE(IsWindowVisible(note.pic_time)) << "it would cover the last line";
        typeKey(note.editing.txtNota(), key, key);
        EXPECT_TRUE(IsWindowVisible(note.pic_time));
        EXPECT_EQ(windowText(note.pic_time), u"0:00:10") << "a pattern goes on counting to its next date";
    }
}

}  // namespace
