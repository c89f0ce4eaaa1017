#include "alarm/AlarmEditor.h"

#include <gtest/gtest.h>

#include "tests/alarm/AlarmCases.h"
#include "tests/support/Plain.h"

namespace {

/// The editor's controls without a window: they show what they are told to and remember it.
struct FakeControls : EditorFace {
    AlarmEditor rules{*this};
    Now clock = at(u"15/06/2026 10:20:30");
    EditorControls shown;
    bool units = false;  ///< what the day list offers
    bool week = false;   ///< the frame of the weekdays is there
    int refusals = 0;    ///< how often the user was told that a full date is needed
    std::optional<EditorResult> answer;

    explicit FakeControls(const AlarmRule& rule = {}) {
        shown = controlsOf(rule, clock);
        units = inUnitMode(shown);
        week = !units && shown.cboDay == kSeveralWeekdays;
        rules.begin(shown);
    }

    void repeat(int index) {
        shown.cboRepeat = index;
        rules.onRepeat();
    }
    void day(int index) {
        shown.cboDay = index;
        rules.onDay();
    }
    void scroll(EditorBar bar, BarMove move, int position = 0) { rules.onScroll(bar, move, position); }
    std::string time() const { return plain(shown.time); }
    std::string date() const { return plain(datePart(shown.data)); }
    /// Presses Start and returns the rule that the note gets.
    AlarmRule start() {
        rules.onStart();
        EXPECT_TRUE(answer && answer->AlarmStart && !answer->AlarmStop);
        return ruleFromEditor(answer->alarm, clock);
    }

    Now now() const override { return clock; }
    EditorControls controls() const override {
        EditorControls read = shown;
        read.repeatKept = 0;  // no control holds it
        return read;
    }
    void choose(EditorList list, int index) override {
        (list == EditorList::Repeat ? shown.cboRepeat : shown.cboDay) = index;
    }
    void showClock(const EditorClock& at) override {
        shown.data = at.date;
        shown.time = timeText(at.time);
    }
    void showTime(const Text& text) override { shown.time = text; }
    void showDate(const Text& text) override { shown.data = text; }
    void offerDays(bool offered, int chosen) override {
        units = offered;
        shown.cboDay = chosen;
    }
    void showWeek(bool there) override { week = there; }
    void needFullDate() override { ++refusals; }
    void finish(const EditorResult& result) override { answer = result; }
};

AlarmRule ruleOn(TextView date, TextView time) {
    return dateRule(date, time, at(u"15/06/2026 10:20:30"));
}

// --- Bars -------------------------------------------------------------------------------------------------

TEST(EditorBars, HoursTurnOverIntoTheNextDayAndBack) {
    FakeControls editor(ruleOn(u"31/12/2026", u"23:15:00"));
    editor.scroll(EditorBar::Hours, BarMove::LineRight);
    EXPECT_EQ(editor.time(), "00:15:00");
    EXPECT_EQ(editor.date(), "01/01/2027");
    editor.scroll(EditorBar::Hours, BarMove::LineLeft);
    EXPECT_EQ(editor.time(), "23:15:00");
    EXPECT_EQ(editor.date(), "31/12/2026");
}

TEST(EditorBars, SecondsCarryIntoMinutesAndHours) {
    FakeControls editor(ruleOn(u"30/06/2026", u"09:59:59"));
    editor.scroll(EditorBar::Seconds, BarMove::LineRight);
    EXPECT_EQ(editor.time(), "10:00:00");
    editor.scroll(EditorBar::Minutes, BarMove::LineLeft);
    EXPECT_EQ(editor.time(), "09:59:00");
}

TEST(EditorBars, EachMoveGoesWhereItsNameSays) {
    struct Row {
        EditorBar bar;
        BarMove move;
        const char* date;
        const char* time;
    };
    const Row rows[] = {
        {EditorBar::Hours, BarMove::PageLeft, "15/08/2026", "09:20:30"},
        {EditorBar::Hours, BarMove::PageRight, "15/08/2026", "11:20:30"},
        {EditorBar::Hours, BarMove::Left, "15/08/2026", "00:20:30"},
        {EditorBar::Hours, BarMove::Right, "15/08/2026", "23:20:30"},
        {EditorBar::Minutes, BarMove::Left, "15/08/2026", "10:00:30"},
        {EditorBar::Minutes, BarMove::Right, "15/08/2026", "10:59:30"},
        {EditorBar::Seconds, BarMove::Left, "15/08/2026", "10:20:00"},
        {EditorBar::Seconds, BarMove::Right, "15/08/2026", "10:20:59"},
        {EditorBar::Date, BarMove::LineLeft, "14/08/2026", "10:20:30"},
        {EditorBar::Date, BarMove::LineRight, "16/08/2026", "10:20:30"},
        {EditorBar::Date, BarMove::PageLeft, "16/07/2026", "10:20:30"},
        {EditorBar::Date, BarMove::PageRight, "14/09/2026", "10:20:30"},
        {EditorBar::Date, BarMove::Left, "15/06/2026", "10:20:30"},
        {EditorBar::Date, BarMove::Right, "15/06/2027", "10:20:30"},
    };
    for (const Row& row : rows) {
        FakeControls editor(ruleOn(u"15/08/2026", u"10:20:30"));
        editor.scroll(row.bar, row.move);
        EXPECT_EQ(editor.date(), row.date) << static_cast<int>(row.bar) << static_cast<int>(row.move);
        EXPECT_EQ(editor.time(), row.time) << static_cast<int>(row.bar) << static_cast<int>(row.move);
    }
}

TEST(EditorBars, TheDateGoesBackToYesterdayAndNoFurther) {
    FakeControls editor;
    editor.scroll(EditorBar::Date, BarMove::LineLeft);
    EXPECT_EQ(editor.date(), "14/06/2026");
    editor.scroll(EditorBar::Date, BarMove::LineLeft);
    editor.scroll(EditorBar::Date, BarMove::PageLeft);
    EXPECT_EQ(editor.date(), "14/06/2026");
}

TEST(EditorBars, ADateBeyondTheBarStaysUntilItIsScrolled) {
    FakeControls editor(ruleOn(u"24/12/2030", u"08:00:00"));
    editor.scroll(EditorBar::Date, BarMove::LineRight);
    EXPECT_EQ(editor.date(), "24/12/2030");
    editor.scroll(EditorBar::Date, BarMove::LineLeft);
    EXPECT_EQ(editor.date(), "14/06/2027");
}

TEST(EditorBars, APatternHasNoNextDayButATime) {
    FakeControls editor(ruleOn(u"05/**/****", u"08:00:00"));
    for (const BarMove move : {BarMove::LineRight, BarMove::PageLeft, BarMove::Right})
        editor.scroll(EditorBar::Date, move);
    EXPECT_EQ(editor.date(), "05/**/****");
    editor.scroll(EditorBar::Hours, BarMove::LineRight);
    EXPECT_EQ(editor.time(), "09:00:00");
    EXPECT_EQ(editor.date(), "05/**/****");
}

TEST(EditorBars, ADraggedThumbStaysAtTheEndOfTheClock) {
    FakeControls editor;
    editor.scroll(EditorBar::Hours, BarMove::ThumbTrack, -1);
    EXPECT_EQ(editor.time(), "00:20:30");
    editor.scroll(EditorBar::Hours, BarMove::ThumbTrack, 24);
    editor.scroll(EditorBar::Hours, BarMove::ThumbPosition, 24);
    EXPECT_EQ(editor.time(), "23:20:30");
    EXPECT_EQ(editor.date(), "15/06/2026");
    editor.scroll(EditorBar::Hours, BarMove::EndScroll);
    editor.scroll(EditorBar::Hours, BarMove::LineRight);
    EXPECT_EQ(editor.time(), "00:20:30") << "a step turns over again";
    EXPECT_EQ(editor.date(), "16/06/2026");
}

TEST(EditorBars, AToolThatPutsABarAtItsEndTurnsTheClockOver) {
    FakeControls editor;
    editor.scroll(EditorBar::Hours, BarMove::ThumbPosition, 24);
    EXPECT_EQ(editor.time(), "00:20:30");
    EXPECT_EQ(editor.date(), "16/06/2026");
    editor.scroll(EditorBar::Seconds, BarMove::ThumbPosition, 9000);
    EXPECT_EQ(editor.time(), "00:21:00");
    editor.scroll(EditorBar::Date, BarMove::ThumbPosition, 10);
    EXPECT_EQ(editor.date(), "25/06/2026");
}

TEST(EditorBars, AnEmptyTimeBeginsWithNowOrMidnight) {
    FakeControls editor;
    editor.shown.time = u"";
    editor.scroll(EditorBar::Minutes, BarMove::LineRight);
    EXPECT_EQ(editor.time(), "10:21:30");
    editor.shown.time = u"";
    editor.day(1);
    editor.shown.time = u"";
    editor.day(0);
    EXPECT_EQ(editor.time(), "") << "no weekday, no time";
    editor.day(1);
    EXPECT_EQ(editor.time(), "00:00:00");
    editor.shown.time = u"";
    editor.day(3);
    EXPECT_EQ(editor.time(), "00:00:00");
    const AlarmRule rule = editor.start();
    EXPECT_EQ(rule.AlarmWeekday, 3);
    EXPECT_EQ(rule.AlarmTime, u"00:00:00");
}

TEST(EditorBars, TheWheelTurnsByWholeNotches) {
    FakeControls editor;
    editor.rules.onWheel(EditorBar::Minutes, 80);
    EXPECT_EQ(editor.time(), "10:20:30");
    editor.rules.onWheel(EditorBar::Minutes, 80);
    EXPECT_EQ(editor.time(), "10:21:30");
    editor.rules.onWheel(EditorBar::Minutes, -40 - 240);
    EXPECT_EQ(editor.time(), "10:19:30");
    editor.rules.onWheel(EditorBar::Hours, 3 * 120);
    EXPECT_EQ(editor.time(), "13:19:30");
    editor.rules.onWheel({}, -3 * 120);
    EXPECT_EQ(editor.time(), "13:19:30") << "beside the bars there is nothing to turn";
}

// --- Lists ------------------------------------------------------------------------------------------------

TEST(EditorLists, AWeekdayOrARepeatOnAPatternIsRefusedAndUndone) {
    for (const TextView date : {TextView(u"**/**/****"), TextView(u"05/**/****"), TextView(u"05/03/****")}) {
        FakeControls editor(ruleOn(date, u"12:00:00"));
        for (const int day : {1, 7, int{kSeveralWeekdays}}) {
            editor.day(day);
            EXPECT_EQ(editor.shown.cboDay, 0);
            EXPECT_FALSE(editor.week);
        }
        EXPECT_EQ(editor.refusals, 3);
        for (const int number : {1, 5}) {
            editor.repeat(number);
            EXPECT_EQ(editor.shown.cboRepeat, 0);
            EXPECT_FALSE(editor.units);
        }
        EXPECT_EQ(editor.refusals, 5);
        EXPECT_TRUE(holdsWildcards(editor.shown.data));
    }
}

TEST(EditorLists, ARepeatBesideAPatternMayBeTakenBack) {
    AlarmRule rule = ruleOn(u"05/**/****", u"12:00:00");
    rule.RepeatNumber = 2;  // as an older release may have stored it
    rule.RepeatEvery = kDays;
    FakeControls editor(rule);
    ASSERT_EQ(editor.shown.cboRepeat, 2);
    editor.repeat(0);
    EXPECT_EQ(editor.refusals, 0);
    EXPECT_EQ(editor.shown.cboRepeat, 0);
    EXPECT_EQ(editor.start().alarmday, u"05");
}

TEST(EditorLists, AWildcardBesideAWeekdayIsRefused) {
    FakeControls editor(weekdayRule(2, u"12:00:00", at(u"15/06/2026 10:20:30")));
    for (const DatePart part : {DatePart::Day, DatePart::Month, DatePart::Year}) {
        editor.rules.onDatePart(part);
        EXPECT_EQ(editor.date(), "16/06/2026");
    }
    EXPECT_EQ(editor.refusals, 3);
    EXPECT_EQ(editor.start().AlarmWeekday, 2);
    EXPECT_FALSE(editor.answer->DateNotSet);
}

TEST(EditorLists, ARepeatNumberOffersUnitsAndReplacesTheWeekday) {
    FakeControls editor(weekdayRule(2, u"12:00:00", at(u"15/06/2026 10:20:30")));
    EXPECT_EQ(editor.shown.cboDay, 2);
    editor.repeat(31);
    EXPECT_TRUE(editor.units);
    EXPECT_EQ(editor.shown.cboDay, 1) << "minutes at first";
    editor.day(4);
    const AlarmRule rule = editor.start();
    EXPECT_EQ(rule.RepeatNumber, 35);
    EXPECT_EQ(rule.RepeatEvery, u"MM");
    EXPECT_EQ(rule.AlarmWeekday, 0);
    EXPECT_EQ(rule.AlarmDate, u"16/06/2026");
}

TEST(EditorLists, TheEmptyRepeatEntryBringsTheWeekdaysBack) {
    FakeControls editor(repeatRule(u"16/06/2026", u"12:00:00", 35, u"dd", at(u"15/06/2026 10:20:30")));
    EXPECT_EQ(editor.shown.cboRepeat, 31);
    EXPECT_EQ(editor.shown.cboDay, 3);
    editor.repeat(0);
    EXPECT_FALSE(editor.units);
    EXPECT_EQ(editor.shown.cboDay, 0);
    const AlarmRule rule = editor.start();
    EXPECT_EQ(rule.RepeatNumber, 0);
    EXPECT_EQ(rule.RepeatEvery, u"");
}

TEST(EditorLists, ARepeatThatTheListLacksIsKeptUntilAnotherIsChosen) {
    const AlarmRule every90 = repeatRule(u"16/06/2026", u"12:00:00", 90, u"mm", at(u"15/06/2026 10:20:30"));
    FakeControls kept(every90);
    EXPECT_EQ(kept.shown.cboRepeat, -1);
    kept.rules.onRepeat();  // the list was opened, and nothing chosen
    kept.day(2);
    EXPECT_EQ(kept.start().RepeatNumber, 90);
    EXPECT_EQ(kept.answer->alarm.RepeatEvery, u"hh");

    FakeControls changed(every90);
    changed.repeat(7);
    EXPECT_EQ(changed.start().RepeatNumber, 7);
    EXPECT_EQ(changed.answer->alarm.RepeatEvery, u"mm");
}

TEST(EditorLists, SeveralWeekdaysHaveAFrameOfTheirOwn) {
    AlarmRule weekly = ruleOn(u"15/06/2026", u"12:00:00");
    weekly.AlarmWeekday = kSeveralWeekdays;
    weekly.FlagWeekday = {true, false, false, false, false, false, true};
    weekly.Mute = true;
    FakeControls editor(weekly);
    EXPECT_TRUE(editor.week);
    editor.day(3);
    EXPECT_FALSE(editor.week);
    editor.day(kSeveralWeekdays);
    EXPECT_TRUE(editor.week);
    editor.repeat(2);
    EXPECT_FALSE(editor.week);
    editor.repeat(0);
    editor.day(kSeveralWeekdays);
    editor.shown.chkWeek[1] = true;
    const AlarmRule rule = editor.start();
    EXPECT_EQ(rule.AlarmWeekday, kSeveralWeekdays);
    EXPECT_EQ(rule.FlagWeekday, (std::array<bool, kWeekdays>{true, true, false, false, false, false, true}));
    EXPECT_TRUE(rule.Mute);
}

TEST(EditorLists, TicksOfDaysThatAreNotShownAreForgotten) {
    AlarmRule tuesday = weekdayRule(2, u"12:00:00", at(u"15/06/2026 10:20:30"));
    tuesday.FlagWeekday[5] = true;
    FakeControls editor(tuesday);
    EXPECT_EQ(editor.shown.chkWeek, (std::array<bool, kWeekdays>{}));
}

// --- The date ---------------------------------------------------------------------------------------------

TEST(EditorDate, TheYearClickedTwiceIsAFullDateOfThisYear) {
    FakeControls editor(ruleOn(u"24/12/2030", u"08:00:00"));
    editor.rules.onDatePart(DatePart::Year);
    EXPECT_EQ(plain(editor.shown.data), "24/12/**** 08:00:00");
    {
        NoteRecord stored;
        storeRule(stored, editor.start());
        EXPECT_EQ(stored.alarmdate, u"*");
        EXPECT_EQ(stored.interval, u"eachyear");
        EXPECT_EQ(stored.alarmdaymonth, u"24/12");
        EXPECT_TRUE(editor.answer->DateNotSet);
    }
    editor.rules.onDatePart(DatePart::Year);
    NoteRecord stored;
    storeRule(stored, editor.start());
    EXPECT_EQ(stored.alarmdate, u"24/12/2026");
    EXPECT_EQ(stored.interval, u"");
    EXPECT_EQ(stored.alarmdaymonth, u"");
    EXPECT_FALSE(editor.answer->DateNotSet);
}

TEST(EditorDate, EachPatternIsReturnedAsItWasShown) {
    AlarmRule daily = ruleOn(u"**/**/****", u"12:00:00");
    AlarmRule monthly = ruleOn(u"07/**/****", u"12:00:00");
    monthly.alarmday = u"7";
    AlarmRule yearly = ruleOn(u"29/02/****", u"12:00:00");
    const std::pair<AlarmRule, const char*> rows[] = {
        {daily, "**/**/****"}, {monthly, "07/**/****"}, {yearly, "29/02/****"}};
    for (const auto& [rule, text] : rows) {
        FakeControls editor(rule);
        EXPECT_EQ(editor.date(), text);
        const AlarmRule same = editor.start();
        EXPECT_TRUE(editor.answer->DateNotSet);
        EXPECT_EQ(plain(editor.answer->alarm.AlarmDate), text);
        EXPECT_EQ(same.eachday, rule.eachday);
        EXPECT_EQ(same.eachmonth, rule.eachmonth);
        EXPECT_EQ(same.eachyear, rule.eachyear);
        EXPECT_EQ(same.AlarmTime, u"12:00:00");
    }
}

// --- Buttons ----------------------------------------------------------------------------------------------

TEST(EditorButtons, StopAnswersNothingElse) {
    FakeControls editor(ruleOn(u"16/06/2026", u"12:00:00"));
    editor.rules.onStop();
    ASSERT_TRUE(editor.answer);
    EXPECT_TRUE(editor.answer->AlarmStop);
    EXPECT_FALSE(editor.answer->AlarmStart);
}

TEST(EditorButtons, StartIsRefusedWhileAWildcardStandsBesideAWeekday) {
    FakeControls editor(ruleOn(u"16/06/2026", u"12:00:00"));
    editor.shown.cboDay = 3;  // chosen, but its message is still on its way
    editor.shown.data = u"16/**/****";
    editor.rules.onStart();
    EXPECT_EQ(editor.refusals, 1);
    EXPECT_FALSE(editor.answer);
}

TEST(EditorButtons, StartOnAnUntouchedEditorRingsAtOnce) {
    FakeControls editor;
    const AlarmRule rule = editor.start();
    EXPECT_EQ(shown(rule.due), "15/06/2026 10:20:30");
}

}  // namespace
