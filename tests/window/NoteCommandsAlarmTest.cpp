// The alarm editor of a note on a live desktop, in both stores: what it shows of the note's alarm and what it
// makes of it.
#include <gtest/gtest.h>

#include <string>

#include "resources/resource.h"
#include "tests/window/AlarmDesk.h"
#include "tests/window/Script.h"

namespace {

class AlarmEditor : public Alarm {
protected:
    /// Opens the editor of note 1 and lets the script answer it.
    static void edit(TestNotes& desk) { desk.note(1).commands.run(IDM_ALARM); }
    static Script::Condition opened(TestNotes& desk) {
        return [&desk] {
            const HWND form = desk.desk->dialog.hwnd;
            return form != nullptr && IsWindowVisible(form) != FALSE && windowText(form) == u"Set alarm";
        };
    }
    static HWND item(const TestNotes& desk, int id) { return GetDlgItem(desk.desk->dialog.hwnd, id); }
    static std::string text(const TestNotes& desk, int id) { return plain(windowText(item(desk, id))); }
    static void click(const TestNotes& desk, int id) { PostMessageW(item(desk, id), BM_CLICK, 0, 0); }
    static void scroll(const TestNotes& desk, int bar, WORD code) {
        SendMessageW(desk.desk->dialog.hwnd, WM_HSCROLL, code, reinterpret_cast<LPARAM>(item(desk, bar)));
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, AlarmEditor, testing::Bool(), storeName);

TEST_P(AlarmEditor, OnANoteWithoutAnAlarmShowsTodayAndNow) {
    const auto desk = run({plainNote(u"a")});
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] {
        EXPECT_EQ(text(*desk, ID_DATA), "15/06/2026");
        EXPECT_EQ(text(*desk, ID_LBLTIME), "12:00:00");
        desk->clock = {later(-5), 0};
        click(*desk, ID_BTNOK);
    });
    edit(*desk);
    // Noon has passed by now: the only time that it rings is at once.
    EXPECT_EQ(desk->stored(1).alarmdate, u"15/06/2026");
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:00");
    tick(*desk);
    EXPECT_TRUE(desk->note(1).Alarming());
}

TEST_P(AlarmEditor, ShowsTheCountdownOfItsNoteOnly) {
    const auto desk = run({once(u"a"), repeating(u"b", 1, u"hh")});
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] {
        EXPECT_EQ(text(*desk, ID_BTNOK), "Restart");
        desk->clock = {later(-7), 0};
        desk->note(1).tmr_Timer();
        desk->clock = {later(-5), 0};
        desk->note(2).tmr_Timer();
        EXPECT_EQ(text(*desk, ID_LBLCOUNTDOWN), "0:00:07");
        PostMessageW(desk->desk->dialog.hwnd, WM_CLOSE, 0, 0);
    });
    edit(*desk);
}

TEST_P(AlarmEditor, StartOnANoteThatRingsSilencesItAndArmsTheNewAlarm) {
    const auto desk = ringing({once(u"a")});
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] {
        EXPECT_EQ(text(*desk, ID_BTNOK), "Start");
        scroll(*desk, ID_HORE, SB_LINERIGHT);
        click(*desk, ID_BTNOK);
    });
    edit(*desk);
    fpost& note = desk->note(1);
    EXPECT_FALSE(note.Alarming());
    EXPECT_EQ(note.alarm.pTimerProc, 0U);
    EXPECT_EQ(desk->silences, 1);
    EXPECT_EQ(note.tBackColor(), note.Backcol());
    EXPECT_EQ(strip(note), "0:59:59");
    EXPECT_EQ(desk->stored(1).alarmtime, u"13:00:10");
    tick(*desk);
    EXPECT_EQ(desk->sounds, 1);
}

TEST_P(AlarmEditor, StopOnANoteThatRingsSilencesItAndKeepsTheNote) {
    NoteRecord daily = with(every(u"a", u"eachday"), &NoteRecord::mute);
    const auto desk = ringing({daily});
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] { click(*desk, ID_BTNCANCEL); });
    edit(*desk);
    ASSERT_EQ(desk->desk->Count(), 1);
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_FALSE(stripShown(desk->note(1)));
    const NoteRecord stored = desk->stored(1);
    for (const Text& text : {stored.alarmdate, stored.alarmtime, stored.alarmrepeatevery, stored.interval,
                             stored.alarmday, stored.alarmdaymonth}) {
        EXPECT_EQ(text, u"");
    }
    EXPECT_EQ(stored.alarmweekday, 0);
    EXPECT_EQ(stored.alarmrepeatnumber, 0);
    EXPECT_FALSE(stored.mute);
    EXPECT_EQ(stored.Nota, u"body of a");
    desk->killAndRestart();
    EXPECT_FALSE(desk->note(1).alarm.rule.due);
}

TEST_P(AlarmEditor, LeftWithoutStartOrStopTheNoteGoesOnRinging) {
    const auto desk = ringing({once(u"a")});
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] { PostMessageW(desk->desk->dialog.hwnd, WM_CLOSE, 0, 0); });
    edit(*desk);
    EXPECT_TRUE(desk->note(1).Alarming());
    EXPECT_EQ(desk->silences, 0);
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
}

TEST_P(AlarmEditor, ANoteThatRingsWhileItsEditorIsOpenIsThereWhenItCloses) {
    const auto desk = run({once(u"a")});
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] {
        desk->clock = {kDue, 0};
        tick(*desk);
        EXPECT_TRUE(desk->note(1).Alarming());
        EXPECT_EQ(text(*desk, ID_LBLCOUNTDOWN), "0:00:00");
        scroll(*desk, ID_HMIN, SB_LINERIGHT);
        click(*desk, ID_BTNOK);
    });
    edit(*desk);
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_EQ(desk->note(1).alarm.rule.due, later(60));
}

TEST_P(AlarmEditor, ANoteThatGoesWhileItsEditorIsOpenTakesNothingFromItsNeighbour) {
    const auto desk = ringing({once(u"a"), once(u"b")}, {});
    NoteRecord neighbour;
    Script script(desk->desk->dialog);
    script.when(opened(*desk), [&] {
        EXPECT_TRUE(desk->note(1).SoundStop()) << "which Hide All of the tray does, too";
        neighbour = desk->stored(1);
        scroll(*desk, ID_HORE, SB_LINERIGHT);
        click(*desk, ID_BTNOK);
    });
    edit(*desk);
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"b"}));
    EXPECT_TRUE(desk->note(1).Alarming());
    EXPECT_EQ(desk->stored(1), neighbour);
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
    EXPECT_TRUE(IsWindowEnabled(desk->note(1).hwnd));
}

TEST_P(AlarmEditor, EveryKindOfAlarmIsStoredAsTheUserChoseIt) {
    const auto desk = run({plainNote(u"a")});
    struct Row {
        int list, index;
        TextView date;
        std::int16_t weekday, repeat;
        TextView unit;
    };
    for (const Row& row :
         {Row{ID_CBODAY, 3, u"17/06/2026", 3, 0, u""}, Row{ID_CBOREPEAT, 5, u"", 0, 5, u"mm"}}) {
        desk->note(1).alarm.clear();
        Script script(desk->desk->dialog);
        script.when(opened(*desk), [&] {
            scroll(*desk, ID_HMIN, SB_LINERIGHT);
            SendMessageW(item(*desk, row.list), CB_SETCURSEL, static_cast<WPARAM>(row.index), 0);
            SendMessageW(desk->desk->dialog.hwnd, WM_COMMAND, MAKEWPARAM(row.list, CBN_SELCHANGE),
                         reinterpret_cast<LPARAM>(item(*desk, row.list)));
            SendMessageW(item(*desk, ID_CHKMUTE), BM_CLICK, 0, 0);
            click(*desk, ID_BTNOK);
        });
        edit(*desk);
        const NoteRecord stored = desk->stored(1);
        EXPECT_EQ(stored.alarmdate, row.weekday > 0 ? Text(row.date) : Text(u"15/06/2026"));
        EXPECT_EQ(stored.alarmtime, u"12:01:00");
        EXPECT_EQ(stored.alarmweekday, row.weekday);
        EXPECT_EQ(stored.alarmrepeatnumber, row.repeat);
        EXPECT_EQ(stored.alarmrepeatevery, row.unit);
        EXPECT_EQ(stored.interval, u"");
        EXPECT_TRUE(stored.mute);
    }
}

}  // namespace
