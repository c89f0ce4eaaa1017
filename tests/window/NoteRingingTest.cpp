// A note's alarm on a live desktop, in both stores: counting down, ringing, what ends it, and changes of the
// clock.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "resources/resource.h"
#include "tests/window/AlarmDesk.h"
#include "tests/window/MenuDesk.h"
#include "tests/window/Script.h"

namespace {

INSTANTIATE_TEST_SUITE_P(Stores, Alarm, testing::Bool(),
                         [](const auto& store) { return store.param ? "Registry" : "Files"; });

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

TEST_P(Alarm, ARightClickShowsWhenItIsDueAndTheNextOneCountsAgain) {
    const auto desk = run({once(u"a")});
    const fpost& note = desk->note(1);
    press(note.pic_time, WM_RBUTTONDOWN);
    EXPECT_EQ(strip(note), "15/06/2026 12:00  h.");
    desk->clock = {later(-5), 0};
    tick(*desk);
    EXPECT_EQ(strip(note), "15/06/2026 12:00  h.");
    press(note.pic_time, WM_RBUTTONDOWN);
    tick(*desk);
    EXPECT_EQ(strip(note), "0:00:05");
}

TEST_P(Alarm, ALeftClickOnTheStripOfAnArmedNoteChangesNothing) {
    const auto desk = run({once(u"a")});
    press(desk->note(1).pic_time);
    EXPECT_EQ(desk->note(1).alarm.rule.due, kDue);
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
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

/// Whether the program's own timer makes a strip show this text.
bool comesTo(const fpost& note, const std::string& text) {
    const ULONGLONG end = GetTickCount64() + 20000;
    while (strip(note) != text && GetTickCount64() < end && pumpFor(5)) {
    }
    return strip(note) == text;
}

TEST(AlarmTimer, EveryNoteCountsDownByItselfAlsoAfterOthersHaveEnded) {
    TestNotes desk(true, {once(u"a"), once(u"b"), plainNote(u"c")});
    desk.clock = {later(-9), 0};
    EXPECT_TRUE(comesTo(desk.note(1), "0:00:09"));
    EXPECT_TRUE(comesTo(desk.note(2), "0:00:09"));
    desk.note(1).alarm.clear();
    desk.clock = {later(-8), 0};
    EXPECT_TRUE(comesTo(desk.note(2), "0:00:08"));
    desk.note(2).alarm.clear();
    desk.note(3).alarm.rule = ruleFromRecord(once(u"c"));
    desk.note(3).ArmAfterLoad();
    desk.clock = {later(-7), 0};
    EXPECT_TRUE(comesTo(desk.note(3), "0:00:07"));
}

TEST_P(Alarm, ARightClickWhileItRingsOnlyChangesWhatTheStripShows) {
    const auto desk = ringing({once(u"a")});
    fpost& note = desk->note(1);
    EXPECT_EQ(strip(note), "0:00:00");
    press(note.pic_time, WM_RBUTTONDOWN);
    EXPECT_EQ(strip(note), "15/06/2026 12:00  h.");
    EXPECT_TRUE(note.Alarming());
    EXPECT_NE(note.alarm.pTimerProc, 0U);
    EXPECT_EQ(desk->silences, 0);
    note.alarm.flashTick();
    EXPECT_EQ(note.tBackColor(), note.Backcol());
    press(note.pic_time, WM_RBUTTONDOWN);
    EXPECT_EQ(strip(note), "0:00:00");
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
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

// --- A note that rings is in sight ------------------------------------------------------------------------

bool onTop(const fpost& note) {
    return (GetWindowLongPtrW(note.hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

/// Whether one window lies above another.
bool isAbove(HWND upper, HWND lower) {
    for (HWND at = GetWindow(lower, GW_HWNDPREV); at != nullptr; at = GetWindow(at, GW_HWNDPREV)) {
        if (at == upper) return true;
    }
    return false;
}

TEST_P(Alarm, ItIsAboveAllOtherNotesAsLongAsItRings) {
    const auto desk = run({every(u"a", u"eachday"), with(every(u"b", u"eachday"), &NoteRecord::topmost),
                           with(plainNote(u"c"), &NoteRecord::topmost)});
    desk->note(3).show(false);
    EXPECT_FALSE(onTop(desk->note(1)));
    desk->clock = {kDue, 0};
    tick(*desk);
    for (int n = 1; n <= 2; ++n) {
        EXPECT_TRUE(onTop(desk->note(n))) << n;
        EXPECT_TRUE(isAbove(desk->note(n).hwnd, desk->note(3).hwnd)) << n;
        press(desk->note(n).pic_time);
    }
    EXPECT_FALSE(onTop(desk->note(1)));
    EXPECT_TRUE(onTop(desk->note(2)));
    EXPECT_FALSE(desk->stored(1).topmost);
    EXPECT_TRUE(desk->stored(2).topmost);
}

TEST_P(Alarm, AlwaysOnTopMayBeChosenMeanwhile) {
    const auto desk = ringing({every(u"a", u"eachday")});
    fpost& note = desk->note(1);
    EXPECT_FALSE(note.commands.input(note.alarm.rule).topmost) << "what the user chose";
    note.commands.mnuTopmost();
    press(note.pic_time);
    EXPECT_TRUE(onTop(note));
    desk->clock = {later(kSecondsPerDay), 0};
    tick(*desk);
    note.commands.mnuTopmost();
    EXPECT_TRUE(onTop(note)) << "it rings";
    press(note.pic_time);
    EXPECT_FALSE(onTop(note));
}

TEST_P(Alarm, WhileADialogIsOpenItLiesBelowAndAPressSilencesIt) {
    const auto desk = run({with(with(every(u"a", u"eachday"), &NoteRecord::closed), &NoteRecord::topmost),
                           once(u"b"), plainNote(u"c")});
    Script script(desk->desk->dialog);
    const auto shown = [&] {
        const HWND box = desk->desk->dialog.hwnd;
        return box != nullptr && IsWindowVisible(box) != FALSE;
    };
    script.when(shown, [&] {
        const HWND box = desk->desk->dialog.hwnd;
        const auto pressed = [&](int n, int hit, UINT message) {
            const HWND window = desk->note(n).hwnd;
            SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), MAKELPARAM(hit, message));
        };
        pressed(2, HTERROR, WM_LBUTTONDOWN);  // nothing rings yet
        desk->clock = {kDue, 0};
        tick(*desk);
        for (int n = 1; n <= 2; ++n) {
            EXPECT_TRUE(isAbove(box, desk->note(n).hwnd)) << n;
            EXPECT_FALSE(IsWindowEnabled(desk->note(n).hwnd)) << n;
            pressed(n, HTERROR, WM_MOUSEMOVE);
            pressed(n, HTERROR, WM_RBUTTONDOWN);
            pressed(n, HTCLIENT, WM_LBUTTONDOWN);
            EXPECT_TRUE(desk->note(n).Alarming()) << n;
        }
        pressed(2, HTERROR, WM_LBUTTONDOWN);
        pressed(1, HTERROR, WM_LBUTTONDOWN);
        EXPECT_FALSE(desk->note(1).Alarming());
        EXPECT_EQ(desk->desk->titles(), (std::vector<Text>{u"a", u"c"}));
        EXPECT_TRUE(desk->desk->dialog.open());
        PostMessageW(box, WM_CLOSE, 0, 0);
    });
    desk->desk->dialog.about();
    EXPECT_TRUE(IsWindowEnabled(desk->note(1).hwnd));
}

TEST_P(Alarm, WhileItsTextIsEditedTheStripComesUpToBePressed) {
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

// --- Windows refuses a timer ------------------------------------------------------------------------------

TEST_P(Alarm, WithoutATimerOfItsOwnTheDeskTicksAllTheSame) {
    const auto desk = run({plainNote(u"a")}, keeping());
    int refused = 0;
    desk->desk->startTimer = [&](HWND, UINT_PTR, UINT) {
        ++refused;
        return false;
    };
    fpost& note = desk->note(1);
    note.alarm.rule = ruleFromRecord(once(u"a"));
    note.ArmAfterLoad();
    desk->clock = {later(-7), 0};
    const ULONGLONG end = GetTickCount64() + 20000;
    while (strip(note) != "0:00:07" && GetTickCount64() < end && pumpFor(5)) {
    }
    EXPECT_EQ(strip(note), "0:00:07");
    desk->clock = {kDue, 0};
    while (!note.Alarming() && GetTickCount64() < end && pumpFor(5)) {
    }
    EXPECT_TRUE(note.Alarming());
    EXPECT_GE(refused, 2) << "it asks again and again";
    EXPECT_LT(refused, 40) << "once per tick";
    note.SoundStop();
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

TEST_P(Alarm, AnIconizedNoteThatStaysSmallIsStoppedOnItsTitle) {
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

// --- What else may happen while it rings ------------------------------------------------------------------

TEST_P(Alarm, ClosingSilencesItAndItComesBackTheNextTime) {
    const auto desk = ringing({every(u"a", u"eachday"), once(u"b")});
    desk->note(1).CloseForm();
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_FALSE(desk->note(1).visible());
    EXPECT_TRUE(desk->stored(1).closed);
    desk->note(2).CloseForm();
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 1) << "its alarm is over";
    desk->clock = {later(kSecondsPerDay), 1};
    tick(*desk);
    EXPECT_TRUE(desk->note(1).Alarming());
    EXPECT_TRUE(desk->note(1).visible());
}

TEST_P(Alarm, IconizingSilencesIt) {
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

TEST_P(Alarm, DeletingANoteThatRingsDeletesOneNote) {
    const auto desk = ringing({every(u"a", u"eachday"), once(u"b"), once(u"c")});
    desk->note(2).DeleteForm(true);
    desk->note(1).DeleteForm(true);
    EXPECT_EQ(desk->silences, 2);
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"c"}));
    EXPECT_EQ(desk->stored(1).Titolo, u"c");
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
    EXPECT_TRUE(desk->note(1).Alarming());
}

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

// --- The clock --------------------------------------------------------------------------------------------

TEST_P(Alarm, ACorrectedClockIsFollowedAtTheNextTick) {
    const auto desk = run({every(u"a", u"eachday"), weekly(u"b", 1), repeating(u"c", 1, u"dd")});
    desk->setClock(later(365 * kSecondsPerDay + 1));
    desk->desk->Tick();
    EXPECT_EQ(desk->sounds, 0) << "Windows may be about to say that the clock was set";
    desk->desk->Tick();
    EXPECT_EQ(desk->sounds, 3) << "it did not: the machine was asleep";
    for (int n = 1; n <= 3; ++n)
        press(desk->note(n).pic_time);
    EXPECT_EQ(desk->stored(3).alarmdate, u"16/06/2027");
    desk->setClock(later(-3600));
    desk->desk->Tick();
    for (int n = 1; n <= 3; ++n) {
        EXPECT_EQ(desk->note(n).alarm.rule.due, kDue) << n;
        EXPECT_EQ(strip(desk->note(n)), "1:00:00") << n;
    }
    EXPECT_EQ(desk->stored(2).alarmdate, u"15/06/2026");
    EXPECT_EQ(desk->stored(3).alarmdate, u"15/06/2026");
}

TEST_P(Alarm, WhatAClockSetFarForwardSkippedDoesNotRing) {
    const auto desk = run({every(u"a", u"eachday"), weekly(u"b", 1), once(u"c")});
    for (const bool tickFirst : {false, true}) {
        desk->setClock({desk->clock.at.seconds + 8 * kSecondsPerDay + 4 * 3600});
        if (tickFirst) desk->desk->Tick();
        SendMessageW(desk->desk->tray.hwnd, WM_TIMECHANGE, 0, 0);
        desk->desk->Tick();
        EXPECT_FALSE(desk->note(1).Alarming() || desk->note(2).Alarming()) << tickFirst;
        EXPECT_LT(desk->clock.at, *desk->note(2).alarm.rule.due) << tickFirst;
        EXPECT_TRUE(desk->note(3).Alarming()) << "it would have rung only once";
    }
}

TEST_P(Alarm, AClockSetALittleForwardRingsWhatItSkipped) {
    const auto desk = run({once(u"a"), weekly(u"b", 1), repeating(u"c", 1, u"hh")});
    desk->clock = {later(2 * 3600 + 60), 0};
    tick(*desk);
    EXPECT_EQ(desk->sounds, 3);
    for (int n = 3; n >= 1; --n)
        press(desk->note(n).pic_time);
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"b", u"c"}));
    EXPECT_EQ(desk->note(1).alarm.rule.due, later(7 * kSecondsPerDay));
    EXPECT_EQ(desk->note(2).alarm.rule.due, later(3 * 3600));
    desk->clock = {kDue, 0};  // and back again: what has rung stays quiet
    tick(*desk);
    EXPECT_EQ(desk->sounds, 3);
}

}  // namespace
