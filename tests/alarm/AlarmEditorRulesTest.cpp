#include "alarm/AlarmEditorRules.h"

#include <gtest/gtest.h>

#include "support/Number.h"
#include "tests/alarm/AlarmCases.h"
#include "tests/support/Plain.h"

namespace {

// --- Opening ----------------------------------------------------------------------------------------------

TEST(EditorOpens, OnTodayAndNowWithoutAnAlarm) {
    const Now now = at(u"21/11/2026 08:05:09");
    EXPECT_EQ(editorDate(AlarmRule(), now), u"21/11/2026");
    EXPECT_EQ(editorTime(AlarmRule(), now), u"08:05:09");
}

TEST(EditorOpens, OnTodayWhereAPatternHasNoTime) {
    AlarmRule rule;
    rule.eachday = true;
    EXPECT_EQ(editorDate(rule, at(u"21/11/2026 08:05:09")), u"21/11/2026");
}

TEST(EditorOpens, OnTheRule) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(editorDate(dateRule(u"**/**/****", u"09:00:00", now), now), u" **/**/****");
    EXPECT_EQ(editorDate(dateRule(u"05/**/****", u"09:00:00", now), now), u"05/**/****");
    EXPECT_EQ(editorDate(dateRule(u"05/03/****", u"09:00:00", now), now), u"05/03/****");
    EXPECT_EQ(editorDate(dateRule(u"01/01/****", u"09:00:00", now), now), u"01/01/****");
    EXPECT_EQ(editorDate(dateRule(u"05/03/2027", u"09:00:00", now), now), u"05/03/2027");
    EXPECT_EQ(editorTime(dateRule(u"05/03/2027", u"09:00:00", now), now), u"09:00:00");
}

TEST(EditorOpens, OnTheDayThatAPatternRings) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(editorDate(dateRule(u"01/**/****", u"09:00:00", now), now), u"01/**/****");
    AlarmRule monthly = dateRule(u"05/**/****", u"09:00:00", now);
    monthly.alarmday = u"123";  // as another program may have stored it
    arm(monthly, now);
    EXPECT_EQ(shown(monthly.due), "12/12/2026 09:00:00");
    EXPECT_EQ(editorDate(monthly, now), u"12/**/****");
}

TEST(EditorOpens, OnTheLastDayOfAll) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(editorDate(dateRule(u"31/12/9999", u"09:00:00", now), now), u"31/12/9999");
}

TEST(EditorOpens, OnItsWeekdayWhateverPatternStandsBesideIt) {
    const Now now = at(u"21/11/2026 08:00:00");  // a Saturday
    constexpr const char16_t* kNext[] = {u"23/11/2026", u"24/11/2026", u"25/11/2026", u"26/11/2026",
                                         u"27/11/2026", u"21/11/2026", u"22/11/2026"};
    for (std::int16_t day = 1; day <= kWeekdays; ++day) {
        for (bool AlarmRule::*const pattern :
             {&AlarmRule::eachday, &AlarmRule::eachmonth, &AlarmRule::eachyear}) {
            AlarmRule rule = weekdayRule(day, u"09:00:00", now);
            rule.*pattern = true;
            rule.alarmday = u"05";
            rule.alarmdaymonth = u"05/03";
            EXPECT_EQ(editorDate(rule, now), kNext[day - 1]);
            // And Start accepts it as it is.
            EditorControls shown;
            shown.data = editorDate(rule, now);
            shown.cboDay = rule.AlarmWeekday;
            EXPECT_FALSE(needsFullDate(shown));
        }
    }
}

TEST(EditorOpens, PadsAStoredDay) {
    AlarmRule rule = dateRule(u"05/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    rule.alarmday = u"5";
    EXPECT_EQ(editorDate(rule, at(u"21/11/2026 08:00:00")), u"05/**/****");
}

TEST(EditorOpens, OnTodayForATextThatIsNoDate) {
    AlarmRule rule = dateRule(u"05/03/2027", u"09:00:00", at(u"21/11/2026 08:00:00"));
    rule.AlarmDate = u"*";
    EXPECT_EQ(editorDate(rule, at(u"21/11/2026 08:00:00")), u"21/11/2026");
}

TEST(EditorOpens, OnTodayForADateOrPatternThatNeverComes) {
    const Now now = at(u"21/11/2026 08:00:00");
    AlarmRule once = dateRule(u"05/03/2027", u"09:00:00", now);
    once.AlarmDate = u"99/99/9999";
    EXPECT_EQ(editorDate(once, now), u"21/11/2026") << "beyond the last year";
    for (const char16_t* day : {u"", u"0", u"zz"}) {
        AlarmRule monthly = dateRule(u"05/**/****", u"09:00:00", now);
        monthly.alarmday = day;
        EXPECT_EQ(editorDate(monthly, now), u"21/11/2026") << plain(day);
    }
    for (const char16_t* dayMonth : {u"", u"/", u"5", u"05/", u"/03", u"00/03", u"zz/zz"}) {
        AlarmRule yearly = dateRule(u"05/03/****", u"09:00:00", now);
        yearly.alarmdaymonth = dayMonth;
        EXPECT_EQ(editorDate(yearly, now), u"21/11/2026") << plain(dayMonth);
    }
}

TEST(EditorOpens, PadsAStoredDayAndMonth) {
    AlarmRule rule = dateRule(u"05/03/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    rule.alarmdaymonth = u"5/3";
    EXPECT_EQ(editorDate(rule, at(u"21/11/2026 08:00:00")), u"05/03/****");
}

TEST(EditorOpens, KeepsADayThatItsMonthLacks) {
    const Now now = at(u"05/02/2026 08:00:00");
    EXPECT_EQ(editorDate(dateRule(u"31/02/2026", u"09:00:00", now), now), u"31/02/2026");
}

TEST(EditorOpens, OffersRestartWhileTheAlarmIsAhead) {
    const AlarmRule rule = dateRule(u"21/11/2026", u"09:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_TRUE(isAhead(rule, at(u"21/11/2026 08:59:59", 999)));
    EXPECT_FALSE(isAhead(rule, at(u"21/11/2026 09:00:00", 0)));
    EXPECT_FALSE(isAhead(AlarmRule(), at(u"21/11/2026 08:00:00")));
}

// --- The date label ---------------------------------------------------------------------------------------

TEST(DateLabel, DateStandsBeforeTheTime) {
    EXPECT_EQ(datePart(u" **/**/****"), u"**/**/****");
    EXPECT_EQ(datePart(u"05/03/2027 09:00:00"), u"05/03/2027");
    EXPECT_EQ(datePart(u"  "), u"");
    EXPECT_EQ(dateAndTime(u"05/**/****", {9, 5, 0}), u"05/**/**** 09:05:00");
}

TEST(DateLabel, PartsLieWhereTheyAreDrawn) {
    using enum DatePart;
    struct Case {
        int x;
        std::optional<DatePart> part;
    };
    constexpr Case kCases[] = {{104, {}},    {105, Day},   {315, Day}, {316, {}}, {389, {}},
                               {390, Month}, {630, Month}, {631, {}},  {659, {}}, {660, Year},
                               {1100, Year}, {1101, {}},   {-5, {}}};
    for (const Case& c : kCases)
        EXPECT_EQ(datePartAt({c.x}), c.part) << c.x;
}

TEST(DateLabel, ClickTogglesAPart) {
    using enum DatePart;
    const Now now = at(u"21/11/2026 08:00:00");
    struct Case {
        const char* name;
        TextView from;
        DatePart part;
        TextView to;
    };
    constexpr Case kCases[] = {{"YearOff", u"05/03/2027", Year, u"05/03/****"},
                               {"YearOn", u"05/03/****", Year, u"05/03/2026"},
                               {"MonthOff", u"05/03/2027", Month, u"05/**/****"},
                               {"MonthOffWithoutYear", u"05/03/****", Month, u"05/**/****"},
                               {"MonthOn", u"05/**/****", Month, u"05/11/2026"},
                               {"YearOnWithoutMonth", u"05/**/****", Year, u"05/11/2026"},
                               {"DayOff", u"05/03/2027", Day, u"**/**/****"},
                               {"DayOffWithoutMonth", u"05/**/****", Day, u"**/**/****"},
                               {"DayOn", u" **/**/****", Day, u"21/11/2026"},
                               {"MonthOnFromEveryDay", u" **/**/****", Month, u"21/11/2026"},
                               {"YearOnFromEveryDay", u" **/**/****", Year, u"21/11/2026"},
                               {"BeforeATime", u"05/03/2027 09:00:00", Year, u"05/03/****"},
                               {"Unreadable", u"?", Month, u"21/11/2026"}};
    for (const Case& c : kCases)
        EXPECT_EQ(toggled(c.from, c.part, now), c.to) << c.name;
}

TEST(DateLabel, EveryDigitIsOne) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(toggled(u"09/19/2029", DatePart::Year, now), u"09/19/****");
    EXPECT_EQ(toggled(u"09/19/2029", DatePart::Month, now), u"09/**/****");
    EXPECT_EQ(toggled(u"09/19/2029", DatePart::Day, now), u"**/**/****");
}

TEST(DateLabel, YearTwiceIsAFullDateOfThisYear) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(toggled(toggled(u"05/03/2031", DatePart::Year, now), DatePart::Year, now), u"05/03/2026");
    EXPECT_EQ(toggled(u"05/03/*031", DatePart::Year, now), u"05/03/2026") << "all of the year counts";
}

// --- Scroll bars ------------------------------------------------------------------------------------------

TEST(TimeBars, TurnOverAndCarry) {
    using enum ClockPart;
    struct Case {
        const char* name;
        TextView date;
        TimeOfDay time;
        ClockPart part;
        int position;
        TextView newDate;
        TimeOfDay newTime;
    };
    constexpr Case kCases[] = {
        {"Hour", u"21/11/2026", {9, 5, 7}, Hours, 10, u"21/11/2026", {10, 5, 7}},
        {"HourUpFrom23", u"21/11/2026", {23, 5, 7}, Hours, 24, u"22/11/2026", {0, 5, 7}},
        {"HourDownFrom0", u"21/11/2026", {0, 5, 7}, Hours, -1, u"20/11/2026", {23, 5, 7}},
        {"HourUpAtYearsEnd", u"31/12/2026", {23, 0, 0}, Hours, 24, u"01/01/2027", {0, 0, 0}},
        {"HourDownOnTheFirst", u"01/03/2028", {0, 0, 0}, Hours, -1, u"29/02/2028", {23, 0, 0}},
        {"HourUpEveryMonth", u"31/**/****", {23, 0, 0}, Hours, 24, u"31/**/****", {0, 0, 0}},
        {"HourDownEveryDay", u"**/**/****", {0, 0, 0}, Hours, -1, u"**/**/****", {23, 0, 0}},
        {"Minute", u"21/11/2026", {9, 5, 7}, Minutes, 59, u"21/11/2026", {9, 59, 7}},
        {"MinuteUpFrom59", u"21/11/2026", {9, 59, 7}, Minutes, 60, u"21/11/2026", {10, 0, 7}},
        {"MinuteDownFrom0", u"21/11/2026", {9, 0, 7}, Minutes, -1, u"21/11/2026", {8, 59, 7}},
        {"MinuteUpAtMidnight", u"21/11/2026", {23, 59, 7}, Minutes, 60, u"22/11/2026", {0, 0, 7}},
        {"SecondUpFrom59", u"21/11/2026", {9, 5, 59}, Seconds, 60, u"21/11/2026", {9, 6, 0}},
        {"SecondDownFrom0", u"21/11/2026", {9, 0, 0}, Seconds, -1, u"21/11/2026", {8, 59, 59}},
        {"SecondUpAtMidnight", u"21/11/2026", {23, 59, 59}, Seconds, 60, u"22/11/2026", {0, 0, 0}},
        {"SecondDownAtMidnight", u"21/11/2026", {0, 0, 0}, Seconds, -1, u"20/11/2026", {23, 59, 59}},
        {"Unreadable", u"xx/11/2026", {23, 0, 0}, Hours, 24, u"xx/11/2026", {0, 0, 0}},
        {"LastDayThereIs", u"31/12/9999", {23, 0, 0}, Hours, 24, u"31/12/9999", {0, 0, 0}},
        {"FirstDayThereIs", u"01/01/0001", {0, 0, 0}, Hours, -1, u"01/01/0001", {23, 0, 0}}};
    for (const Case& c : kCases) {
        const EditorClock result = scrolled({Text(c.date), c.time}, c.part, c.position);
        EXPECT_EQ(result, (EditorClock{Text(c.newDate), c.newTime})) << c.name;
    }
}

TEST(DateBar, StepsByDaysFromToday) {
    const Now now = at(u"21/11/2026 23:59:59");
    EXPECT_EQ(dateAtPosition(0, now), u"21/11/2026");
    EXPECT_EQ(dateAtPosition(1, now), u"22/11/2026");
    EXPECT_EQ(dateAtPosition(-1, now), u"20/11/2026");
    EXPECT_EQ(dateAtPosition(365, now), u"21/11/2027");
    for (int position = kDateBar.low; position <= kDateBar.high; ++position) {
        EXPECT_EQ(positionOfDate(dateAtPosition(position, now), now), position);
    }
}

TEST(DateBar, StopsAtItsEndForDatesBeyondIt) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(positionOfDate(u"01/01/2020", now), -1);
    EXPECT_EQ(positionOfDate(u"01/01/2030", now), 365);
}

// --- Lists ------------------------------------------------------------------------------------------------

TEST(RepeatList, Has37Entries) {
    ASSERT_EQ(repeatEntries().size(), 37U);
    for (int index = 1; index <= 30; ++index)
        EXPECT_EQ(repeatEntryText(index), decimal(index));
    for (int index = 31; index <= 36; ++index)
        EXPECT_EQ(repeatEntryText(index), decimal((index - 24) * 5));
    EXPECT_EQ(repeatEntryText(0), u"");
    EXPECT_EQ(repeatEntryText(37), u"");
    EXPECT_EQ(repeatEntryText(-1), u"");
}

TEST(RepeatList, SelectsByNumberNotByPlace) {
    EXPECT_EQ(repeatIndex(35), 31);
    EXPECT_EQ(repeatIndex(90), -1);
    EXPECT_EQ(repeatIndex(31), -1);
    EXPECT_EQ(repeatIndex(0), 0);
    EXPECT_EQ(repeatIndex(-4), 0);
    for (int index = 0; index < 37; ++index)
        EXPECT_EQ(repeatIndex(leadingInt16(repeatEntryText(index))), index);
}

TEST(UnitList, MatchesTheStoredCodes) {
    EXPECT_EQ(unitCode(1), u"mm");
    EXPECT_EQ(unitCode(2), u"hh");
    EXPECT_EQ(unitCode(3), u"dd");
    EXPECT_EQ(unitCode(4), u"MM");
    for (const int index : {-1, 0, 5})
        EXPECT_EQ(unitCode(index), u"");
    for (int index = 0; index < 5; ++index)
        EXPECT_EQ(unitIndex(unitCode(index)), index);
    EXPECT_EQ(unitIndex(u"Mm"), 0);
}

// --- Start ------------------------------------------------------------------------------------------------

EditorControls choice(TextView data) {
    EditorControls result;
    result.data = data;
    result.time = u"09:00:00";
    return result;
}

TEST(Start, HandsOverTheRuleThatTheEditorOpenedOn) {
    const Now now = at(u"21/11/2026 08:00:00");
    std::vector<AlarmRule> rules{
        dateRule(u"05/03/2027", u"09:00:00", now), dateRule(u"**/**/****", u"09:00:00", now),
        dateRule(u"09/**/****", u"09:00:00", now), dateRule(u"19/09/****", u"09:00:00", now)};
    for (const std::int16_t number : std::initializer_list<std::int16_t>{1, 2, 30, 31, 35, 60, 90, 32767}) {
        for (const TextView unit : {kMinutes, kHours, kDays, kMonths})
            rules.push_back(repeatRule(u"05/03/2027", u"09:00:00", number, unit, now));
    }
    for (std::int16_t day = 1; day <= kWeekdays; ++day)
        rules.push_back(weekdayRule(day, u"09:00:00", now));
    EditorRule several;
    several.AlarmTime = u"09:00:00";
    several.AlarmWeekday = kSeveralWeekdays;
    several.FlagWeekday = {false, true, false, false, true, false, true};
    rules.push_back(ruleFromEditor(several, now));
    for (const AlarmRule& rule : rules) {
        const AlarmRule same = ruleFromEditor(ruleOfControls(controlsOf(rule, now)), now);
        NoteRecord before, after;
        storeRule(before, rule);
        storeRule(after, same);
        EXPECT_TRUE(before == after) << rule.RepeatNumber << plain(rule.RepeatEvery) << rule.AlarmWeekday
                                     << plain(rule.AlarmDate);
        EXPECT_EQ(shown(same.due), shown(rule.due));
    }
}

TEST(Start, AnUnknownUnitIsNoRepeat) {
    AlarmRule rule = dateRule(u"05/03/2027", u"09:00:00", at(u"21/11/2026 08:00:00"));
    for (const auto& [number, unit] : {std::pair{5, TextView(u"ss")}, std::pair{0, TextView(kDays)}}) {
        rule.RepeatNumber = static_cast<std::int16_t>(number);
        rule.RepeatEvery = unit;
        const EditorControls shown = controlsOf(rule, at(u"21/11/2026 08:00:00"));
        EXPECT_EQ(shown.cboRepeat, 0);
        EXPECT_EQ(shown.repeatKept, 0);
        EXPECT_EQ(shown.cboDay, 0) << "the list offers weekdays then";
    }
}

TEST(Start, HandsOverTheDatePartOnly) {
    EXPECT_EQ(ruleOfControls(choice(u" **/**/****")).AlarmDate, u"**/**/****");
    EXPECT_EQ(ruleOfControls(choice(u"05/**/**** 09:00:00")).AlarmDate, u"05/**/****");
    EXPECT_EQ(ruleOfControls(choice(u"05/03/2027")).AlarmTime, u"09:00:00");
}

TEST(Start, RepeatTakesTheEntrysNumberAndNoWeekday) {
    EditorControls repeat = choice(u"05/03/2027");
    repeat.cboRepeat = 31;
    repeat.cboDay = 4;
    const EditorRule alarm = ruleOfControls(repeat);
    EXPECT_EQ(alarm.RepeatNumber, 35);
    EXPECT_EQ(alarm.RepeatEvery, u"MM");
    EXPECT_EQ(alarm.AlarmWeekday, 0);
    EXPECT_EQ(alarm.AlarmDate, u"05/03/2027");
}

TEST(Start, KeepsARepeatThatTheListLacks) {
    EditorControls repeat = choice(u"05/03/2027");
    repeat.cboRepeat = repeatIndex(90);
    repeat.repeatKept = 90;
    repeat.cboDay = 1;
    EXPECT_EQ(ruleOfControls(repeat).RepeatNumber, 90);
    EXPECT_EQ(ruleOfControls(repeat).RepeatEvery, u"mm");
}

TEST(Start, RepeatWithoutAUnitIsNone) {
    EditorControls repeat = choice(u"05/03/2027");
    repeat.cboRepeat = 5;
    const EditorRule alarm = ruleOfControls(repeat);
    EXPECT_EQ(alarm.RepeatNumber, 0);
    EXPECT_EQ(alarm.RepeatEvery, u"");
    EXPECT_EQ(alarm.AlarmDate, u"05/03/2027");
}

TEST(Start, WeekdayTakesNoRepeatAndNoDate) {
    EditorControls weekday = choice(u"05/03/2027");
    weekday.cboDay = 7;
    weekday.chkWeek = {true};
    weekday.repeatKept = 90;
    const EditorRule alarm = ruleOfControls(weekday);
    EXPECT_EQ(alarm.AlarmWeekday, 7);
    EXPECT_EQ(alarm.FlagWeekday, (std::array<bool, 7>{}));
    EXPECT_EQ(alarm.RepeatNumber, 0);
    EXPECT_EQ(alarm.RepeatEvery, u"");
    EXPECT_EQ(alarm.AlarmDate, u"");
    EXPECT_EQ(alarm.AlarmTime, u"09:00:00");
}

TEST(Start, SeveralDaysTakeTheTicks) {
    EditorControls week = choice(u"05/03/2027");
    week.cboDay = kSeveralWeekdays;
    week.chkWeek = {true, false, true};
    EXPECT_EQ(ruleOfControls(week).AlarmWeekday, kSeveralWeekdays);
    EXPECT_EQ(ruleOfControls(week).FlagWeekday, week.chkWeek);
    week.chkWeek = {};
    EXPECT_EQ(ruleOfControls(week).AlarmWeekday, 0);
    EXPECT_EQ(ruleOfControls(week).AlarmDate, u"05/03/2027");
}

TEST(Start, HandsOverMute) {
    EditorControls mute = choice(u"05/03/2027");
    EXPECT_FALSE(ruleOfControls(mute).Mute);
    mute.chkMute = true;
    EXPECT_TRUE(ruleOfControls(mute).Mute);
}

TEST(FullDate, IsNeededForAWeekdayOrARepeat) {
    for (const TextView wild : {u" **/**/****", u"05/**/****", u"05/03/**** 09:00:00"}) {
        EditorControls shown = choice(wild);
        EXPECT_FALSE(needsFullDate(shown));
        for (int day = 1; day <= kSeveralWeekdays; ++day) {
            shown.cboDay = day;
            EXPECT_TRUE(needsFullDate(shown)) << day;
        }
        shown.cboDay = 1;
        for (const int repeat : {-1, 1, 36}) {
            shown.cboRepeat = repeat;
            EXPECT_TRUE(needsFullDate(shown)) << repeat;
        }
    }
    EditorControls full = choice(u"05/03/2027");
    full.cboDay = 3;
    EXPECT_FALSE(needsFullDate(full));
}

TEST(EditorScrolls, BackToTheFirstDayOfAllAndNotBeyond) {
    const EditorClock second{u"02/01/0001", {0, 0, 0}};
    EXPECT_EQ(scrolled(second, ClockPart::Hours, -1), (EditorClock{u"01/01/0001", {23, 0, 0}}));
    const EditorClock first{u"01/01/0001", {0, 0, 0}};
    EXPECT_EQ(scrolled(first, ClockPart::Hours, -1).date, u"01/01/0001");
}

}  // namespace
