// What becomes of an alarm once it has rung, and when it is cleared.
#include "alarm/AlarmRule.h"

#include <gtest/gtest.h>

#include "tests/alarm/AlarmCases.h"

namespace {

TEST(Rearm, OneShotIsOverAndLeavesNothing) {
    AlarmRule rule = dateRule(u"21/11/2026", u"09:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 09:00:03")), Rearmed::OneShotOver);
    EXPECT_EQ(rule, AlarmRule());
}

TEST(Rearm, EachMonthOnThe31stAfterJanuary) {
    AlarmRule rule = dateRule(u"31/**/****", u"09:00:00", at(u"30/01/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"31/01/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"31/02/2026");
    EXPECT_EQ(shown(rule.due), "03/03/2026 09:00:00");
    EXPECT_EQ(rule.alarmday, u"31");

    AlarmRule leap = dateRule(u"31/**/****", u"09:00:00", at(u"30/01/2028 08:00:00"));
    EXPECT_EQ(rearm(leap, at(u"31/01/2028 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(leap.AlarmDate, u"31/02/2028");
    EXPECT_EQ(shown(leap.due), "02/03/2028 09:00:00");
}

TEST(Rearm, EachMonthGoesOnFromTheDayOnWhichItRang) {
    AlarmRule rule = dateRule(u"31/**/****", u"09:00:00", at(u"05/02/2026 08:00:00"));
    ASSERT_EQ(shown(rule.due), "03/03/2026 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"03/03/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "03/04/2026 09:00:00");
    EXPECT_EQ(rule.alarmday, u"31");
    // A restart finds the 31st again.
    EXPECT_FALSE(armAfterLoad(rule, at(u"04/03/2026 08:00:00")));
    EXPECT_EQ(shown(rule.due), "31/03/2026 09:00:00");
}

TEST(Rearm, EachMonthInDecemberIsJanuary) {
    AlarmRule rule = dateRule(u"15/**/****", u"09:00:00", at(u"15/12/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"15/12/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"15/13/2026");
    EXPECT_EQ(shown(rule.due), "15/01/2027 09:00:00");
}

TEST(Rearm, EachYearOnALeapDayIsTheFirstOfMarchInACommonYear) {
    AlarmRule rule = dateRule(u"29/02/****", u"09:00:00", at(u"28/02/2028 08:00:00"));
    ASSERT_EQ(shown(rule.due), "29/02/2028 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"29/02/2028 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(rule.AlarmDate, u"29/02/2029");
    EXPECT_EQ(shown(rule.due), "01/03/2029 09:00:00");
    EXPECT_EQ(rule.alarmdaymonth, u"29/02");
}

TEST(Rearm, EachDayCountsFromToday) {
    AlarmRule rule = dateRule(u"**/**/****", u"09:00:00", at(u"16/11/2026 08:00:00"));
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 13:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "22/11/2026 09:00:00");
    // Also when today's time is still to come.
    AlarmRule early = dateRule(u"**/**/****", u"09:00:00", at(u"16/11/2026 08:00:00"));
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
    EditorRule editor;
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

TEST(Rearm, WeekdayTakesPrecedenceOverRepeatAndPattern) {
    AlarmRule rule = dateRule(u"**/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    rule.AlarmWeekday = 1;
    rule.RepeatNumber = 5;
    rule.RepeatEvery = kMinutes;
    EXPECT_EQ(rearm(rule, at(u"21/11/2026 09:00:03")), Rearmed::Armed);
    EXPECT_EQ(shown(rule.due), "23/11/2026 09:00:00");
    EXPECT_EQ(rule.AlarmTime, u"09:00:00");
}

TEST(Rearm, RepeatTakesPrecedenceOverPattern) {
    AlarmRule rule = dateRule(u"**/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
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

TEST(Rearm, PatternMissedForSeveralPeriodsGoesOn) {
    AlarmRule monthly = dateRule(u"15/**/****", u"09:00:00", at(u"15/01/2026 08:00:00"));
    EXPECT_EQ(rearm(monthly, at(u"10/05/2026 12:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(monthly.due), "15/05/2026 09:00:00");
    AlarmRule yearly = dateRule(u"15/02/****", u"09:00:00", at(u"15/01/2026 08:00:00"));
    EXPECT_EQ(rearm(yearly, at(u"10/05/2029 12:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(yearly.due), "15/02/2030 09:00:00");
}

TEST(Rearm, NowEqualToTheNextInstantIsNotAhead) {
    AlarmRule monthly = dateRule(u"15/**/****", u"09:00:00", at(u"15/01/2026 08:00:00"));
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
    // The night in which 03:00 becomes 02:00: silenced at the second 02:10.
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

    // Silenced before the midnight after which it rang.
    AlarmRule daily = dateRule(u"**/**/****", u"00:05:00", at(u"20/11/2026 08:00:00"));
    ASSERT_EQ(shown(daily.due), "21/11/2026 00:05:00");
    EXPECT_EQ(rearm(daily, at(u"20/11/2026 23:40:00")), Rearmed::Armed);
    EXPECT_EQ(shown(daily.due), "22/11/2026 00:05:00");

    // A clock that was a year ahead is corrected: days that are still to come are not lost.
    AlarmRule ahead = weekdayRule(1, u"09:00:00", at(u"16/11/2027 08:00:00"));
    EXPECT_EQ(rearm(ahead, at(u"21/11/2026 08:00:00")), Rearmed::Armed);
    EXPECT_EQ(shown(ahead.due), "23/11/2026 09:00:00");
}

TEST(Rearm, LastPeriodBeforeTheYear10000) {
    AlarmRule rule = dateRule(u"15/12/****", u"09:00:00", at(u"01/12/9999 08:00:00"));
    ASSERT_EQ(shown(rule.due), "15/12/9999 09:00:00");
    EXPECT_EQ(rearm(rule, at(u"15/12/9999 09:00:03")), Rearmed::NotAhead);
    EXPECT_EQ(shown(rule.due), "none");
    EXPECT_EQ(rule.AlarmDate, u"15/12/9999");
}

TEST(Clear, LeavesNoTraceInTheRecord) {
    EditorRule editor;
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

}  // namespace
