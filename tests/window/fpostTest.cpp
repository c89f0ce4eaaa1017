// A note's window, what it stores when the store refuses or cannot be read, and what becomes of its alarm at
// a start.
#include <gtest/gtest.h>

#include <functional>

#include "support/Messages.h"
#include "tests/window/AlarmDesk.h"

namespace {

class NoteWindow : public InBothStores {
protected:
    /// A start that could not read its note.
    static std::unique_ptr<TestNotes> runUnreadable() {
        auto desk = run({plainNote(u"a")});
        lockStores(*desk);
        desk->killAndRestart();
        return desk;
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, NoteWindow, testing::Bool(), storeName);

// --- Re-alignment -----------------------------------------------------------------------------------------

TEST_P(NoteWindow, ResizingRealignsForANormalNoteButNotForAnIconizedOne) {
    GlobalSettings settings;
    settings.AlignAll = true;
    const auto desk = run({plainNote(u"1"), plainNote(u"2", 6000, 6000)}, settings);
    EXPECT_EQ(desk->note(2).place.Top(), desk->note(1).place.Top() + desk->note(1).place.Height());
    desk->note(1).pHeight(3000);
    EXPECT_EQ(desk->note(2).place.Top(), desk->note(1).place.Top() + desk->note(1).place.Height());
    EXPECT_EQ(desk->stored(2).y, desk->note(2).place.Top());

    desk->note(1).toggleIconized();
    desk->note(2).place.moveTo(Twips{9000}, Twips{9000});
    desk->note(1).pWidth(2400);
    EXPECT_EQ(desk->note(2).place.Left(), 9000);
}

// --- Failures ---------------------------------------------------------------------------------------------

/// Whether the collection has posted the message about a failed save.
bool tookFailureReport(HWND tray) {
    MSG message{};
    return PeekMessageW(&message, tray, posted::kSaveFailed, posted::kSaveFailed, PM_REMOVE) != FALSE;
}

TEST_P(NoteWindow, FailedSaveKeepsTheTextAndTheNextSaveTriesAgain) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"typed while the disk was full");
    note.SaveNote();
    EXPECT_TRUE(tookFailureReport(desk->desk->tray.hwnd));
    EXPECT_EQ(windowText(note.nota), u"typed while the disk was full");
    EXPECT_EQ(desk->stored(1).Nota, u"body of a");

    fullDisk.reset();
    note.EditForm();
    note.SaveNote();
    EXPECT_EQ(desk->stored(1).Nota, u"typed while the disk was full");
}

TEST_P(NoteWindow, ExitTriesOnceMoreWhatTheStoreRefused) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"typed while the disk was full");
    note.SaveNote();
    note.commands.mnuTopmost();
    fullDisk.reset();
    desk->desk->CommitEdits();
    EXPECT_EQ(desk->stored(1).Nota, u"typed while the disk was full");
    EXPECT_TRUE(desk->stored(1).topmost);
}

TEST_P(NoteWindow, NoteWhoseCreationFailedIsCountedOnceASaveWorks) {
    const auto desk = run({plainNote(u"a")});
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    ASSERT_TRUE(desk->desk->NewNote());
    fullDisk.reset();
    desk->note(2).commands.mnuTopmost();
    EXPECT_EQ(desk->stored(2).Titolo, u"- 2 -");
    DataHeader header;
    if (GetParam()) {
        EXPECT_EQ(desk->registry.text(u"setting", u"count"), u"2");
    } else {
        ASSERT_TRUE(decodeHeader(desk->folder.content[Text(kHeaderFile)], header));
        EXPECT_EQ(header.count, 2);
    }
}

TEST_P(NoteWindow, NoteThatCouldNotBeReadIsNeverWrittenBack) {
    const auto desk = runUnreadable();
    EXPECT_TRUE(desk->note(1).record.readOnly);
    desk->folder.locked.clear();
    desk->registry.locked.clear();
    desk->note(1).place.moveTo(Twips{4500}, Twips{4500});
    desk->note(1).kept.save({NoteField::X, NoteField::Y, NoteField::Titolo, NoteField::Nota});
    EXPECT_EQ(desk->stored(1).x, 1500);
    EXPECT_EQ(desk->stored(1).Titolo, u"a");
    EXPECT_EQ(desk->stored(1).Nota, u"body of a");
}

TEST_P(NoteWindow, NoteThatCouldNotBeReadTakesNoAlarmColourOrMoveAndSaysSo) {
    const auto desk = runUnreadable();
    int asked = 0;
    desk->desk->host.ask = [&asked](const Text&, long, const Text&) { return ++asked, IDOK; };
    fpost& note = desk->note(1);
    const NoteRecord before = note.record;
    const RECT at = rectOf(note.hwnd);
    const std::vector<std::function<void()>> changes{
        [&] { note.commands.mnuAlarm(); }, [&] { note.commands.mnuColor(); },
        [&] { note.commands.mnuTopmost(); }, [&] { note.toggleIconized(); },
        [&] { note.place.moveStep(1, 0); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        EXPECT_EQ(asked, static_cast<int>(i) + 1);
        EXPECT_FALSE(desk->desk->dialog.open());
    }
    EXPECT_EQ(note.record, before);
    const RECT now = rectOf(note.hwnd);
    EXPECT_TRUE(EqualRect(&now, &at) != FALSE);
    EXPECT_FALSE(note.alarm.isCounting());
}

// --- Among the other windows ----------------------------------------------------------------------------

TEST_P(NoteWindow, HasNoOwnerAndNoTaskBarButton) {
    const auto desk = run({plainNote(u"a")});
    const HWND note = desk->note(1).hwnd;
    EXPECT_EQ(GetWindow(note, GW_OWNER), nullptr) << "otherwise a click would bring all notes to the front";
    EXPECT_NE(GetWindowLongPtrW(note, GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
}

// --- An alarm at a start ----------------------------------------------------------------------------------

class AlarmAtAStart : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, AlarmAtAStart, testing::Bool(), storeName);

TEST_P(AlarmAtAStart, MissedDailyAlarmMovesOnSilentlyAndStaysDaily) {
    NoteRecord daily = plainNote(u"daily");
    daily.alarmdate = u"*";
    daily.alarmtime = u"09:00:00";
    daily.interval = u"eachday";
    const auto desk = run({daily});
    const fpost& note = desk->note(1);
    EXPECT_FALSE(note.Alarming());
    ASSERT_TRUE(note.alarm.rule.due.has_value());
    EXPECT_EQ(*note.alarm.rule.due, instantOf({2026, 6, 16}, {9, 0, 0}));
    EXPECT_EQ(desk->stored(1).alarmdate, u"*");
    EXPECT_EQ(desk->stored(1).interval, u"eachday");
}

TEST_P(AlarmAtAStart, MissedRepeatIsMovedOnAndWrittenBack) {
    NoteRecord repeat = plainNote(u"repeat");
    repeat.alarmdate = u"14/06/2026";
    repeat.alarmtime = u"09:00:00";
    repeat.alarmrepeatnumber = 2;
    repeat.alarmrepeatevery = u"hh";
    const auto desk = run({repeat});
    EXPECT_EQ(desk->stored(1).alarmdate, u"15/06/2026");
    EXPECT_EQ(desk->stored(1).alarmtime, u"13:00:00");
    EXPECT_EQ(windowText(desk->note(1).pic_time), u"1:00:00");
    EXPECT_TRUE(IsWindowVisible(desk->note(1).pic_time));
}

TEST_P(AlarmAtAStart, WeekdayRuleWithoutADayHasNothingToWaitFor) {
    NoteRecord weekly = plainNote(u"weekly");
    weekly.alarmdate = u"15/06/2026";
    weekly.alarmtime = u"09:00:00";
    weekly.alarmweekday = 8;
    const auto desk = run({weekly});
    EXPECT_FALSE(desk->note(1).alarm.rule.due.has_value());
    EXPECT_FALSE(IsWindowVisible(desk->note(1).pic_time));
    EXPECT_EQ(desk->stored(1).alarmweekday, 8);
}

}  // namespace
