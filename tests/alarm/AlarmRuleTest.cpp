#include "alarm/AlarmRule.h"

#include <gtest/gtest.h>

#include "tests/alarm/AlarmCases.h"

namespace {

// --- What the editor's date becomes -----------------------------------------------------------------------

TEST(EditorDate, AllWildcardsAreEveryDay) {
    for (const TextView date : {u"", u"**/**/****", u" **/**/****", u"**/**/**** "}) {
        const AlarmRule rule = editorRule(date, u"09:00:00", at(u"21/11/2026 08:00:00"));
        EXPECT_TRUE(rule.eachday);
        EXPECT_FALSE(rule.eachmonth || rule.eachyear);
        EXPECT_TRUE(rule.DateNotSet());
        EXPECT_EQ(rule.AlarmDate, u"21/11/2026");
        EXPECT_EQ(shown(rule.due), "21/11/2026 09:00:00");
    }
}

TEST(EditorDate, DayAloneIsEveryMonth) {
    const AlarmRule rule = editorRule(u"25/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_TRUE(rule.eachmonth);
    EXPECT_FALSE(rule.eachday || rule.eachyear);
    EXPECT_EQ(rule.alarmday, u"25");
    EXPECT_EQ(rule.alarmdaymonth, u"");
    EXPECT_EQ(shown(rule.due), "25/11/2026 09:00:00");
}

TEST(EditorDate, DayAndMonthAreEveryYear) {
    const AlarmRule rule = editorRule(u"24/12/****", u"18:30:00", at(u"21/11/2026 08:00:00"));
    EXPECT_TRUE(rule.eachyear);
    EXPECT_FALSE(rule.eachday || rule.eachmonth);
    EXPECT_EQ(rule.alarmday, u"");
    EXPECT_EQ(rule.alarmdaymonth, u"24/12");
    EXPECT_EQ(shown(rule.due), "24/12/2026 18:30:00");
}

TEST(EditorDate, FullDateRingsOnce) {
    const AlarmRule rule = editorRule(u"24/12/2026", u"18:30:00", at(u"21/11/2026 08:00:00"));
    EXPECT_FALSE(rule.DateNotSet());
    EXPECT_TRUE(isOneOff(rule));
    EXPECT_EQ(rule.AlarmDate, u"24/12/2026");
    EXPECT_EQ(shown(rule.due), "24/12/2026 18:30:00");
}

TEST(EditorDate, FullDateThatHasPassedStaysAndIsDueAtOnce) {
    const AlarmRule rule = editorRule(u"20/11/2026", u"18:30:00", at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"20/11/2026");
    EXPECT_EQ(shown(rule.due), "20/11/2026 18:30:00");
    EXPECT_FALSE(isAhead(rule, at(u"21/11/2026 08:00:00")));
}

TEST(EditorDate, PassedPatternMovesOnByOnePeriod) {
    const Now now = at(u"21/11/2026 09:00:00");
    EXPECT_EQ(shown(editorRule(u"**/**/****", u"08:59:59", now).due), "22/11/2026 08:59:59");
    EXPECT_EQ(shown(editorRule(u"20/**/****", u"10:00:00", now).due), "20/12/2026 10:00:00");
    EXPECT_EQ(shown(editorRule(u"20/11/****", u"10:00:00", now).due), "20/11/2027 10:00:00");
}

TEST(EditorDate, MonthThirteenIsWrittenAsItIsAndIsJanuary) {
    const AlarmRule rule = editorRule(u"05/**/****", u"10:00:00", at(u"21/12/2026 09:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"05/13/2026");
    EXPECT_EQ(shown(rule.due), "05/01/2027 10:00:00");
}

TEST(EditorDate, MissingDayCarriesOver) {
    EXPECT_EQ(shown(editorRule(u"31/**/****", u"10:00:00", at(u"05/02/2026 09:00:00")).due),
              "03/03/2026 10:00:00");
    EXPECT_EQ(shown(editorRule(u"31/**/****", u"10:00:00", at(u"05/02/2028 09:00:00")).due),
              "02/03/2028 10:00:00");
    EXPECT_EQ(shown(editorRule(u"30/02/2026", u"10:00:00", at(u"05/02/2026 09:00:00")).due),
              "02/03/2026 10:00:00");
}

TEST(EditorDate, NowEqualToTheInstantDoesNotMoveAPatternOn) {
    const Now now = at(u"21/11/2026 09:00:00", 0);
    EXPECT_EQ(shown(editorRule(u"**/**/****", u"09:00:00", now).due), "21/11/2026 09:00:00");
    EXPECT_EQ(shown(editorRule(u"21/**/****", u"09:00:00", now).due), "21/11/2026 09:00:00");
    EXPECT_EQ(shown(editorRule(u"21/11/****", u"09:00:00", now).due), "21/11/2026 09:00:00");
    EXPECT_EQ(shown(editorRule(u"21/11/****", u"09:00:00", at(u"21/11/2026 09:00:00", 1)).due),
              "21/11/2027 09:00:00");
}

TEST(EditorDate, NonsenseHasNothingToWaitFor) {
    const Now now = at(u"21/11/2026 09:00:00");
    for (const TextView date : {u"xx/yy/zzzz", u"00/12/2026", u"24/00/2026", u"2026-12-24", u"24/12/26", u"*",
                                u"**/12/****", u"xx/**/****", u"00/**/****", u"24/xx/****"}) {
        const AlarmRule rule = editorRule(date, u"10:00:00", now);
        EXPECT_EQ(shown(rule.due), "none") << testing::PrintToString(Text(date));
    }
    EXPECT_EQ(shown(editorRule(u"24/12/2026", u"", now).due), "none");
    EXPECT_EQ(shown(editorRule(u"24/12/2026", u"24:00:00", now).due), "none");
}

TEST(EditorWeekday, FindsItsOwnDateAndIsNoPattern) {
    for (const TextView date : {u"", u"**/**/****", u"01/01/2020"}) {
        EditorAlarm editor;
        editor.AlarmDate = date;
        editor.AlarmTime = u"09:00:00";
        editor.AlarmWeekday = 1;
        const AlarmRule rule = ruleFromEditor(editor, at(u"21/11/2026 08:00:00"));  // a Saturday
        EXPECT_FALSE(rule.DateNotSet());
        EXPECT_FALSE(isOneOff(rule));
        EXPECT_EQ(rule.AlarmDate, u"23/11/2026");
        EXPECT_EQ(shown(rule.due), "23/11/2026 09:00:00");
    }
}

TEST(EditorWeekday, SeveralDaysWithoutOneTickedAreNone) {
    EditorAlarm editor;
    editor.AlarmDate = u"24/12/2026";
    editor.AlarmTime = u"09:00:00";
    editor.AlarmWeekday = kSeveralWeekdays;
    const AlarmRule rule = ruleFromEditor(editor, at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rule.AlarmWeekday, 0);
    EXPECT_EQ(shown(rule.due), "24/12/2026 09:00:00");
}

TEST(EditorRepeat, FirstRingsAtTheDateGiven) {
    const AlarmRule rule = repeatRule(u"22/11/2026", u"09:00:00", 2, kHours, at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(shown(rule.due), "22/11/2026 09:00:00");
    EXPECT_FALSE(isOneOff(rule));
}

TEST(EditorRepeat, DoesNotRingTheMomentItIsSetForThePast) {
    const AlarmRule rule = repeatRule(u"21/11/2026", u"09:00:00", 2, kHours, at(u"21/11/2026 14:00:00"));
    EXPECT_EQ(shown(rule.due), "21/11/2026 15:00:00");
    EXPECT_EQ(rule.AlarmTime, u"15:00:00");
}

TEST(EditorRepeat, UnknownUnitIsNoRepeat) {
    for (const TextView unit : {u"", u"Mm", u"yy", u"mm "}) {
        const AlarmRule rule = repeatRule(u"21/11/2026", u"09:00:00", 2, unit, at(u"21/11/2026 14:00:00"));
        EXPECT_TRUE(isOneOff(rule));
        EXPECT_EQ(shown(rule.due), "21/11/2026 09:00:00");
    }
}

// --- Weekdays ---------------------------------------------------------------------------------------------

TEST(NextWeekday, TodayWhileTheTimeIsAheadElseInSevenDays) {
    const Now saturday = at(u"21/11/2026 09:00:00");
    EXPECT_EQ(NextWeekdayDate(6, u"09:00:01", saturday), u"21/11/2026");
    EXPECT_EQ(NextWeekdayDate(6, u"09:00:00", saturday), u"28/11/2026");
    EXPECT_EQ(NextWeekdayDate(6, u"09:00:00", at(u"21/11/2026 09:00:00", 0)), u"28/11/2026");
    EXPECT_EQ(NextWeekdayDate(6, u"08:00:00", saturday), u"28/11/2026");
}

TEST(NextWeekday, EveryOtherDayWithinTheWeek) {
    const Now saturday = at(u"21/11/2026 09:00:00");
    EXPECT_EQ(NextWeekdayDate(7, u"00:00:00", saturday), u"22/11/2026");
    EXPECT_EQ(NextWeekdayDate(1, u"00:00:00", saturday), u"23/11/2026");
    EXPECT_EQ(NextWeekdayDate(5, u"23:00:00", saturday), u"27/11/2026");
    EXPECT_EQ(NextWeekdayDate(5, u"23:00:00", at(u"31/12/2026 10:00:00")), u"01/01/2027");
}

TEST(NextWeekday, NoSuchDayIsNone) {
    for (const int weekday : {-3, 0, 8, 9, 32767}) {
        EXPECT_FALSE(NextWeekdayDate(weekday, u"09:00:00", at(u"21/11/2026 09:00:00"))) << weekday;
    }
}

TEST(FlaggedWeekday, IsTheOneThatComesFirst) {
    const std::array<bool, 7> mondayAndThursday{true, false, false, true};
    EXPECT_EQ(PickFlaggedWeekday(mondayAndThursday, u"09:00:00", at(u"17/11/2026 10:00:00")), 4);  // Tuesday
    EXPECT_EQ(PickFlaggedWeekday(mondayAndThursday, u"09:00:00", at(u"21/11/2026 10:00:00")), 1);  // Saturday
    EXPECT_EQ(PickFlaggedWeekday(mondayAndThursday, u"09:00:00", at(u"16/11/2026 08:00:00")),
              1);  // Monday, ahead
    EXPECT_EQ(PickFlaggedWeekday(mondayAndThursday, u"09:00:00", at(u"16/11/2026 10:00:00")),
              4);  // Monday, passed
    EXPECT_EQ(PickFlaggedWeekday(mondayAndThursday, u"09:00:00", at(u"22/11/2026 10:00:00")), 1);  // Sunday
}

TEST(FlaggedWeekday, OneFlagOnTodayAfterItsTimeIsTodayInAWeek) {
    const std::array<bool, 7> saturday{false, false, false, false, false, true};
    const Now now = at(u"21/11/2026 10:00:00");
    EXPECT_EQ(PickFlaggedWeekday(saturday, u"09:00:00", now), 6);
    EditorAlarm editor;
    editor.AlarmTime = u"09:00:00";
    editor.AlarmWeekday = kSeveralWeekdays;
    editor.FlagWeekday = saturday;
    EXPECT_EQ(shown(ruleFromEditor(editor, now).due), "28/11/2026 09:00:00");
}

TEST(FlaggedWeekday, NoFlagIsNone) {
    EXPECT_EQ(PickFlaggedWeekday({}, u"09:00:00", at(u"21/11/2026 10:00:00")), 0);
}

// --- Repeat steps -----------------------------------------------------------------------------------------

AlarmRule advanced(TextView date, TextView time, std::int16_t number, TextView unit, Now now) {
    AlarmRule rule;
    rule.AlarmDate = date;
    rule.AlarmTime = time;
    rule.RepeatNumber = number;
    rule.RepeatEvery = unit;
    EXPECT_TRUE(AdvanceRepeat(rule, now));
    return rule;
}

TEST(Repeat, EveryTwoHoursMissedForFiveKeepsItsPhase) {
    const AlarmRule rule = advanced(u"21/11/2026", u"09:00:00", 2, kHours, at(u"21/11/2026 14:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"21/11/2026");
    EXPECT_EQ(rule.AlarmTime, u"15:00:00");
}

TEST(Repeat, NinetyMinutesMissedOvernight) {
    const AlarmRule rule = advanced(u"20/11/2026", u"22:15:00", 90, kMinutes, at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"21/11/2026");
    EXPECT_EQ(rule.AlarmTime, u"08:45:00");
}

TEST(Repeat, DaysKeepTheTime) {
    const AlarmRule rule = advanced(u"27/02/2028", u"07:30:15", 2, kDays, at(u"28/02/2028 08:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"29/02/2028");
    EXPECT_EQ(rule.AlarmTime, u"07:30:15");
}

TEST(Repeat, TwentyFiveMonthsFromNovemberAreDecemberTwoYearsOn) {
    const AlarmRule rule = advanced(u"15/11/2026", u"09:00:00", 25, kMonths, at(u"15/11/2026 09:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"15/12/2028");
}

TEST(Repeat, TwelveMonthsFromDecemberStayInDecember) {
    EXPECT_EQ(advanced(u"15/12/2026", u"09:00:00", 12, kMonths, at(u"16/12/2026 00:00:00")).AlarmDate,
              u"15/12/2027");
    EXPECT_EQ(advanced(u"15/12/2026", u"09:00:00", 24, kMonths, at(u"16/12/2026 00:00:00")).AlarmDate,
              u"15/12/2028");
}

TEST(Repeat, MonthWithoutTheDayIsWrittenAsItIsAndGoesOnFromWhereItFell) {
    EXPECT_EQ(advanced(u"31/01/2026", u"09:00:00", 1, kMonths, at(u"01/02/2026 09:00:00")).AlarmDate,
              u"31/02/2026");
    // 31 February was 3 March; from there it is the 3rd of April.
    EXPECT_EQ(advanced(u"31/01/2026", u"09:00:00", 1, kMonths, at(u"03/03/2026 10:00:00")).AlarmDate,
              u"03/04/2026");
}

TEST(Repeat, DaysThatEveryVisitedMonthHasNeverDrift) {
    EXPECT_EQ(advanced(u"31/01/1926", u"09:00:00", 12, kMonths, at(u"21/11/2026 10:00:00")).AlarmDate,
              u"31/01/2027");
    EXPECT_EQ(advanced(u"30/04/1926", u"09:00:00", 6, kMonths, at(u"21/11/2026 10:00:00")).AlarmDate,
              u"30/04/2027");
    // 2100 has no 29 February.
    EXPECT_EQ(advanced(u"29/02/2024", u"09:00:00", 48, kMonths, at(u"01/01/2099 00:00:00")).AlarmDate,
              u"29/02/2100");
    EXPECT_EQ(advanced(u"29/02/2024", u"09:00:00", 48, kMonths, at(u"01/01/2102 00:00:00")).AlarmDate,
              u"01/03/2104");
}

TEST(Repeat, NowEqualToTheInstantStays) {
    for (const TextView unit : {kMinutes, kHours, kDays, kMonths}) {
        const AlarmRule same = advanced(u"21/11/2026", u"09:00:00", 1, unit, at(u"21/11/2026 09:00:00", 0));
        EXPECT_EQ(same.AlarmDate + same.AlarmTime, u"21/11/202609:00:00");
        const AlarmRule moved = advanced(u"21/11/2026", u"09:00:00", 1, unit, at(u"21/11/2026 09:00:00", 1));
        EXPECT_NE(moved.AlarmDate + moved.AlarmTime, u"21/11/202609:00:00");
    }
}

TEST(Repeat, MissedForThousandsOfYears) {
    const Now now = at(u"21/11/9000 10:00:30");
    EXPECT_EQ(advanced(u"01/01/0100", u"00:00:00", 1, kMinutes, now).AlarmTime, u"10:01:00");
    EXPECT_EQ(advanced(u"01/01/0100", u"00:00:15", 1, kHours, now).AlarmTime, u"11:00:15");
    EXPECT_EQ(advanced(u"01/01/0100", u"10:00:15", 1, kDays, now).AlarmDate, u"22/11/9000");
    EXPECT_EQ(advanced(u"21/01/0100", u"10:00:15", 1, kMonths, now).AlarmDate, u"21/12/9000");
}

TEST(Repeat, BeyondTheYear9999HasNothingToWaitFor) {
    AlarmRule rule = repeatRule(u"15/01/2026", u"09:00:00", 32767, kMonths, at(u"14/01/2026 09:00:00"));
    rule.AlarmDate = u"15/01/9000";
    const Text before = rule.AlarmDate;
    EXPECT_FALSE(AdvanceRepeat(rule, at(u"16/01/9000 09:00:00")));
    EXPECT_EQ(rule.AlarmDate, before);
    EXPECT_EQ(rearm(rule, at(u"16/01/9000 09:00:00")), Rearmed::NotAhead);
    EXPECT_EQ(shown(rule.due), "none");
    EXPECT_EQ(rule.AlarmDate, before);
}

TEST(Repeat, LastStepBeforeTheYear10000) {
    for (const TextView unit : {kMinutes, kHours, kDays, kMonths}) {
        AlarmRule rule = repeatRule(u"31/12/9999", u"23:59:00", 1, unit, at(u"31/12/9999 12:00:00"));
        EXPECT_EQ(shown(rule.due), "31/12/9999 23:59:00");
        EXPECT_EQ(rearm(rule, at(u"31/12/9999 23:59:00")), Rearmed::NotAhead);
        EXPECT_EQ(rule.AlarmDate + rule.AlarmTime, u"31/12/999923:59:00");
    }
}

TEST(Repeat, NeedsADateATimeAndAStep) {
    const Now now = at(u"21/11/2026 10:00:00");
    for (const TextView date : {u"", u"*", u"**/**/****", u"00/00/0000", u"1/1/2026", u"31/12/20260"}) {
        AlarmRule rule = repeatRule(u"01/01/2026", u"09:00:00", 1, kMinutes, now);
        rule.AlarmDate = date;
        EXPECT_FALSE(AdvanceRepeat(rule, now));
        EXPECT_EQ(rule.AlarmDate, date);
    }
    AlarmRule rule = repeatRule(u"01/01/2026", u"09:00:00", 1, kMinutes, now);
    rule.RepeatEvery = u"yy";
    EXPECT_FALSE(AdvanceRepeat(rule, now));
}

// --- After ringing ----------------------------------------------------------------------------------------

TEST(Rearm, OneShotIsOverAndLeavesNothing) {
    AlarmRule rule = editorRule(u"21/11/2026", u"09:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 09:00:03")), Rearmed::OneShotOver);
    EXPECT_EQ(rule, AlarmRule());
}

TEST(Rearm, EachMonthOnThe31stAfterJanuary) {
    AlarmRule rule = editorRule(u"31/**/****", u"09:00:00", at(u"30/01/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"31/01/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"31/02/2026");
    EXPECT_EQ(shown(rule.due), "03/03/2026 09:00:00");
    EXPECT_EQ(rule.alarmday, u"31");

    AlarmRule leap = editorRule(u"31/**/****", u"09:00:00", at(u"30/01/2028 08:00:00"));
    EXPECT_EQ(rearm(leap, at(u"31/01/2028 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(leap.AlarmDate, u"31/02/2028");
    EXPECT_EQ(shown(leap.due), "02/03/2028 09:00:00");
}

TEST(Rearm, EachMonthGoesOnFromTheDayItRang) {
    AlarmRule rule = editorRule(u"31/**/****", u"09:00:00", at(u"05/02/2026 08:00:00"));
    ASSERT_EQ(shown(rule.due), "03/03/2026 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"03/03/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "03/04/2026 09:00:00");
    EXPECT_EQ(rule.alarmday, u"31");
    // A restart finds the 31st again.
    EXPECT_FALSE(armAfterLoad(rule, at(u"04/03/2026 08:00:00")));
    EXPECT_EQ(shown(rule.due), "31/03/2026 09:00:00");
}

TEST(Rearm, EachMonthInDecemberIsJanuary) {
    AlarmRule rule = editorRule(u"15/**/****", u"09:00:00", at(u"15/12/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"15/12/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"15/13/2026");
    EXPECT_EQ(shown(rule.due), "15/01/2027 09:00:00");
}

TEST(Rearm, EachYearOnLeapDayIsTheFirstOfMarchInACommonYear) {
    AlarmRule rule = editorRule(u"29/02/****", u"09:00:00", at(u"28/02/2028 08:00:00"));
    ASSERT_EQ(shown(rule.due), "29/02/2028 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"29/02/2028 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"29/02/2029");
    EXPECT_EQ(shown(rule.due), "01/03/2029 09:00:00");
    EXPECT_EQ(rule.alarmdaymonth, u"29/02");
}

TEST(Rearm, EachDayCountsFromToday) {
    AlarmRule rule = editorRule(u"**/**/****", u"09:00:00", at(u"16/11/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 13:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "22/11/2026 09:00:00");
    // Also when today's time is still to come.
    AlarmRule early = editorRule(u"**/**/****", u"09:00:00", at(u"16/11/2026 08:00:00"));
    EXPECT_EQ(rearm(early, at(u"21/11/2026 08:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(early.due), "22/11/2026 09:00:00");
}

TEST(Rearm, WeekdayComesBackInAWeek) {
    AlarmRule rule = weekdayRule(6, u"09:00:00", at(u"21/11/2026 08:00:00"));
    ASSERT_EQ(shown(rule.due), "21/11/2026 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"28/11/2026");
    EXPECT_EQ(shown(rule.due), "28/11/2026 09:00:00");
}

TEST(Rearm, SeveralWeekdaysRingInTurn) {
    EditorAlarm editor;
    editor.AlarmTime = u"09:00:00";
    editor.AlarmWeekday = kSeveralWeekdays;
    editor.FlagWeekday = {true, false, true, false, true, false, false};
    AlarmRule rule = ruleFromEditor(editor, at(u"16/11/2026 08:00:00"));
    for (const char* due :
         {"16/11/2026 09:00:00", "18/11/2026 09:00:00", "20/11/2026 09:00:00", "23/11/2026 09:00:00"}) {
        EXPECT_EQ(shown(rule.due), due);
        EXPECT_EQ(rearm(rule, {*rule.due, 400}), Rearmed::Armed);
    }
}

TEST(Rearm, WeekdayCountsBeforeRepeatAndPattern) {
    AlarmRule rule = editorRule(u"**/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    rule.AlarmWeekday = 1;
    rule.RepeatNumber = 5;
    rule.RepeatEvery = kMinutes;
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "23/11/2026 09:00:00");
    EXPECT_EQ(rule.AlarmTime, u"09:00:00");
}

TEST(Rearm, RepeatCountsBeforePattern) {
    AlarmRule rule = editorRule(u"**/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    rule.RepeatNumber = 5;
    rule.RepeatEvery = kMinutes;
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "21/11/2026 09:05:00");
}

TEST(Rearm, RepeatIsStoredWithItsNewTime) {
    AlarmRule rule = repeatRule(u"21/11/2026", u"23:30:00", 45, kMinutes, at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 23:30:05")), Rearmed::Armed);
    NoteRecord record;
    storeRule(record, rule);
    EXPECT_EQ(record.alarmdate, u"22/11/2026");
    EXPECT_EQ(record.alarmtime, u"00:15:00");
}

TEST(Rearm, PatternSleptThroughForPeriodsIsNotDead) {
    AlarmRule monthly = editorRule(u"15/**/****", u"09:00:00", at(u"15/01/2026 08:00:00"));
    EXPECT_EQ(rearm(monthly, at(u"10/05/2026 12:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(monthly.due), "15/05/2026 09:00:00");
    AlarmRule yearly = editorRule(u"15/02/****", u"09:00:00", at(u"15/01/2026 08:00:00"));
    EXPECT_EQ(rearm(yearly, at(u"10/05/2029 12:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(yearly.due), "15/02/2030 09:00:00");
}

TEST(Rearm, NowEqualToTheNextInstantIsNotAhead) {
    AlarmRule monthly = editorRule(u"15/**/****", u"09:00:00", at(u"15/01/2026 08:00:00"));
    EXPECT_EQ(rearm(monthly, at(u"15/02/2026 09:00:00", 0)), Rearmed::NotAhead);
    EXPECT_EQ(shown(monthly.due), "none");
    EXPECT_TRUE(monthly.eachmonth);
    AlarmRule repeat = repeatRule(u"21/11/2026", u"09:00:00", 5, kMinutes, at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rearm(repeat, at(u"21/11/2026 09:05:00", 0)), Rearmed::NotAhead);
    EXPECT_EQ(repeat.AlarmTime, u"09:05:00");
    // The next start goes on with it.
    EXPECT_TRUE(armAfterLoad(repeat, at(u"21/11/2026 09:05:02")));
    EXPECT_EQ(shown(repeat.due), "21/11/2026 09:10:00");
}

TEST(Rearm, WhatHasRungDoesNotRingAgainWhenTheClockIsSetBack) {
    // The night in which 03:00 becomes 02:00: silenced at 02:10 of the second time round.
    const Now before = at(u"24/10/2026 20:00:00");
    const Now silenced = at(u"25/10/2026 02:10:00");
    AlarmRule weekly = weekdayRule(7, u"02:30:00", before);
    AlarmRule repeat = repeatRule(u"25/10/2026", u"02:30:00", 1, kDays, before);
    AlarmRule hourly = repeatRule(u"25/10/2026", u"02:30:00", 1, kHours, before);
    for (AlarmRule* rule : {&weekly, &repeat, &hourly}) {
        ASSERT_EQ(shown(rule->due), "25/10/2026 02:30:00");
        EXPECT_EQ(rearm(*rule, silenced), Rearmed::Armed);
    }
    EXPECT_EQ(shown(weekly.due), "01/11/2026 02:30:00");
    EXPECT_EQ(shown(repeat.due), "26/10/2026 02:30:00");
    EXPECT_EQ(shown(hourly.due), "25/10/2026 03:30:00");

    // Silenced before the midnight at which it rang.
    AlarmRule daily = editorRule(u"**/**/****", u"00:05:00", at(u"20/11/2026 08:00:00"));
    ASSERT_EQ(shown(daily.due), "21/11/2026 00:05:00");
    EXPECT_EQ(rearm(daily, at(u"20/11/2026 23:40:00")), Rearmed::Armed);
    EXPECT_EQ(shown(daily.due), "22/11/2026 00:05:00");

    // A clock that ran a year ahead was put right: days that are still to come are not lost.
    AlarmRule ahead = weekdayRule(1, u"09:00:00", at(u"16/11/2027 08:00:00"));
    EXPECT_EQ(rearm(ahead, at(u"21/11/2026 08:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(ahead.due), "23/11/2026 09:00:00");
}

TEST(Rearm, LastPeriodBeforeTheYear10000) {
    AlarmRule rule = editorRule(u"15/12/****", u"09:00:00", at(u"01/12/9999 08:00:00"));
    ASSERT_EQ(shown(rule.due), "15/12/9999 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"15/12/9999 09:00:03")), Rearmed::NotAhead);
    EXPECT_EQ(shown(rule.due), "none");
    EXPECT_EQ(rule.AlarmDate, u"15/12/9999");
}

TEST(Clear, LeavesNoTraceInTheRecord) {
    EditorAlarm editor;
    editor.AlarmDate = u"15/**/****";
    editor.AlarmTime = u"09:00:00";
    editor.Mute = true;
    AlarmRule rule = ruleFromEditor(editor, at(u"01/12/2026 08:00:00"));
    NoteRecord record;
    record.Titolo = u"stays";
    storeRule(record, rule);
    clearAlarm(rule);
    storeRule(record, rule);
    NoteRecord expected;
    expected.Titolo = u"stays";
    EXPECT_EQ(record, expected);
    EXPECT_FALSE(armAfterLoad(rule, at(u"01/12/2026 08:00:00")));
    EXPECT_EQ(shown(rule.due), "none");
}

// --- Stored form and loading ------------------------------------------------------------------------------

TEST(StoredForm, PatternsAreAStarAWordAndTheirOwnDay) {
    const Now now = at(u"01/12/2026 08:00:00");
    struct Case {
        const char* name;
        TextView date, interval, day, dayMonth;
    };
    constexpr Case kCases[] = {{"EachDay", u"**/**/****", u"eachday", u"", u""},
                               {"EachMonth", u"15/**/****", u"eachmonth", u"15", u""},
                               {"EachYear", u"15/04/****", u"eachyear", u"", u"15/04"}};
    for (const Case& c : kCases) {
        NoteRecord record;
        record.alarmday = u"7";
        record.alarmdaymonth = u"7/7";
        const AlarmRule rule = editorRule(c.date, u"09:00:00", now);
        storeRule(record, rule);
        EXPECT_EQ(record.alarmdate, u"*") << c.name;
        EXPECT_EQ(record.interval, c.interval) << c.name;
        EXPECT_EQ(record.alarmday, c.day) << c.name;
        EXPECT_EQ(record.alarmdaymonth, c.dayMonth) << c.name;
        AlarmRule back = ruleFromRecord(record);
        EXPECT_FALSE(armAfterLoad(back, now)) << c.name << ": a star stays a star";
        EXPECT_EQ(back, rule) << c.name;
    }
}

TEST(StoredForm, FullDateEmptiesThePattern) {
    NoteRecord record;
    storeRule(record, editorRule(u"15/**/****", u"09:00:00", at(u"01/12/2026 08:00:00")));
    storeRule(record, editorRule(u"16/12/2026", u"09:00:00", at(u"01/12/2026 08:00:00")));
    EXPECT_EQ(record.alarmdate, u"16/12/2026");
    EXPECT_EQ(record.interval, u"");
    EXPECT_EQ(record.alarmday, u"");
    EXPECT_EQ(record.alarmdaymonth, u"");
}

TEST(StoredForm, DayOfAnotherPatternIsNotStored) {
    AlarmRule rule = editorRule(u"**/**/****", u"09:00:00", at(u"01/12/2026 08:00:00"));
    rule.alarmday = u"15";
    rule.alarmdaymonth = u"15/04";
    NoteRecord record;
    storeRule(record, rule);
    EXPECT_EQ(record.alarmday, u"");
    EXPECT_EQ(record.alarmdaymonth, u"");
}

TEST(StoredForm, RegistryComparesTheWordAndTheFilesSearchForIt) {
    NoteRecord record;
    record.interval = u" eachyear";
    EXPECT_FALSE(ruleFromRecord(record).DateNotSet());
    EXPECT_TRUE(ruleFromRecord(record, IntervalReading::Contained).eachyear);
    record.interval = u"Eachday";
    EXPECT_FALSE(ruleFromRecord(record, IntervalReading::Contained).DateNotSet());
}

TEST(Load, MovesAPassedRepeatOnAndSaysSo) {
    NoteRecord record;
    record.alarmdate = u"20/11/2026";
    record.alarmtime = u"22:15:00";
    record.alarmrepeatnumber = 90;
    record.alarmrepeatevery = kMinutes;
    AlarmRule rule = ruleFromRecord(record);
    EXPECT_TRUE(armAfterLoad(rule, at(u"21/11/2026 08:00:00")));
    EXPECT_EQ(shown(rule.due), "21/11/2026 08:45:00");
    EXPECT_FALSE(armAfterLoad(rule, at(u"21/11/2026 08:00:00")));
}

TEST(Load, MissedOneShotIsDueAtOnce) {
    NoteRecord record;
    record.alarmdate = u"20/11/2026";
    record.alarmtime = u"22:15:00";
    AlarmRule rule = ruleFromRecord(record);
    EXPECT_FALSE(armAfterLoad(rule, at(u"21/11/2026 08:00:00")));
    EXPECT_EQ(shown(rule.due), "20/11/2026 22:15:00");
}

TEST(Load, EveryPatternFindsItsDate) {
    NoteRecord record;
    record.alarmdate = u"*";
    record.alarmtime = u"09:00:00";
    record.interval = u"eachday";
    const Now now = at(u"21/11/2026 10:00:00");
    AlarmRule rule = ruleFromRecord(record);
    EXPECT_FALSE(armAfterLoad(rule, now));
    EXPECT_EQ(shown(rule.due), "22/11/2026 09:00:00");
    record.interval = u"eachmonth";
    record.alarmday = u"5";
    rule = ruleFromRecord(record);
    armAfterLoad(rule, now);
    EXPECT_EQ(shown(rule.due), "05/12/2026 09:00:00");
    record.interval = u"eachyear";
    record.alarmdaymonth = u"5/3";
    rule = ruleFromRecord(record);
    armAfterLoad(rule, now);
    EXPECT_EQ(shown(rule.due), "05/03/2027 09:00:00");
}

TEST(Load, WeekdayStoredWithAStarComesBackToLife) {
    NoteRecord record;
    record.alarmdate = u"*";
    record.alarmtime = u"09:00:00";
    record.alarmweekday = 1;
    AlarmRule rule = ruleFromRecord(record);
    EXPECT_TRUE(armAfterLoad(rule, at(u"21/11/2026 10:00:00")));
    EXPECT_EQ(shown(rule.due), "23/11/2026 09:00:00");
}

TEST(Load, WeekdaysWithoutAFlagWaitForNothingAndStay) {
    NoteRecord record;
    record.alarmdate = u"*";
    record.alarmtime = u"09:00:00";
    record.alarmweekday = kSeveralWeekdays;
    AlarmRule rule = ruleFromRecord(record);
    EXPECT_FALSE(armAfterLoad(rule, at(u"21/11/2026 10:00:00")));
    EXPECT_EQ(shown(rule.due), "none");
    NoteRecord after = record;
    storeRule(after, rule);
    EXPECT_EQ(after, record);
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 10:00:00")), Rearmed::NotAhead);
}

TEST(Load, ImpossibleWeekdayIsNone) {
    for (const std::int16_t weekday : {std::int16_t{-3}, std::int16_t{9}, std::int16_t{32767}}) {
        NoteRecord record;
        record.alarmdate = u"24/12/2026";
        record.alarmtime = u"09:00:00";
        record.alarmweekday = weekday;
        AlarmRule rule = ruleFromRecord(record);
        armAfterLoad(rule, at(u"21/11/2026 10:00:00"));
        EXPECT_EQ(rule.AlarmWeekday, 0);
        EXPECT_EQ(shown(rule.due), "24/12/2026 09:00:00");
    }
}

TEST(Load, UnknownUnitIsNoRepeat) {
    NoteRecord record;
    record.alarmdate = u"20/11/2026";
    record.alarmtime = u"09:00:00";
    record.alarmrepeatnumber = 5;
    record.alarmrepeatevery = u"xx";
    AlarmRule rule = ruleFromRecord(record);
    armAfterLoad(rule, at(u"21/11/2026 10:00:00"));
    EXPECT_TRUE(isOneOff(rule));
    EXPECT_EQ(shown(rule.due), "20/11/2026 09:00:00");
}

TEST(Load, PatternWithoutATimeIsNoAlarm) {
    for (const TextView time : {u"", u"9:00", u"25:00:00", u"noon"}) {
        NoteRecord record;
        record.alarmdate = u"*";
        record.interval = u"eachday";
        record.alarmtime = time;
        AlarmRule rule = ruleFromRecord(record);
        EXPECT_FALSE(armAfterLoad(rule, at(u"21/11/2026 10:00:00")));
        EXPECT_FALSE(hasAlarm(rule));
        EXPECT_EQ(shown(rule.due), "none");
    }
}

TEST(Load, WeekdayWithoutATimeKeepsItsDate) {
    NoteRecord record;
    record.alarmdate = u"02/03/2020";
    record.alarmweekday = 1;
    AlarmRule rule = ruleFromRecord(record);
    EXPECT_FALSE(armAfterLoad(rule, at(u"21/11/2026 10:00:00")));
    EXPECT_EQ(rule.AlarmDate, u"02/03/2020");
    EXPECT_EQ(shown(rule.due), "none");
}

TEST(Load, ForeignDatesWaitForNothing) {
    for (const TextView date :
         {u"", u"*", u"12/24/26", u"00/12/2026", u"24/00/2026", u"99/99/9999", u"aa/bb/cccc"}) {
        NoteRecord record;
        record.alarmdate = date;
        record.alarmtime = u"09:00:00";
        for (const std::int16_t repeat : {std::int16_t{0}, std::int16_t{1}}) {
            record.alarmrepeatnumber = repeat;
            record.alarmrepeatevery = kMinutes;
            AlarmRule rule = ruleFromRecord(record);
            EXPECT_FALSE(armAfterLoad(rule, at(u"21/11/2026 10:00:00")));
            EXPECT_EQ(shown(rule.due), "none");
        }
    }
}

TEST(DayCount, IsTheInstantInDays) {
    AlarmRule rule = editorRule(u"21/11/2026", u"18:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_DOUBLE_EQ(DAlarmTime(rule), 46347.75);
    clearAlarm(rule);
    EXPECT_EQ(DAlarmTime(rule), 0);
}

}  // namespace
