#include "alarm/AlarmRule.h"

#include <gtest/gtest.h>

#include <ctime>

#include "tests/alarm/AlarmCases.h"

namespace {

// --- What the editor's date becomes -----------------------------------------------------------------------

TEST(EditorDate, AllWildcardsAreEveryDay) {
    for (const TextView date : {u"", u"**/**/****", u" **/**/****", u"**/**/**** "}) {
        const AlarmRule rule = dateRule(date, u"09:00:00", at(u"21/11/2026 08:00:00"));
        EXPECT_TRUE(rule.eachday);
        EXPECT_FALSE(rule.eachmonth || rule.eachyear);
        EXPECT_TRUE(rule.DateNotSet());
        EXPECT_EQ(rule.AlarmDate, u"21/11/2026");
        EXPECT_EQ(shown(rule.due), "21/11/2026 09:00:00");
    }
}

TEST(EditorDate, DayAloneIsEveryMonth) {
    const AlarmRule rule = dateRule(u"25/**/****", u"09:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_TRUE(rule.eachmonth);
    EXPECT_FALSE(rule.eachday || rule.eachyear);
    EXPECT_EQ(rule.alarmday, u"25");
    EXPECT_EQ(rule.alarmdaymonth, u"");
    EXPECT_EQ(shown(rule.due), "25/11/2026 09:00:00");
}

TEST(EditorDate, DayAndMonthAreEveryYear) {
    const AlarmRule rule = dateRule(u"24/12/****", u"18:30:00", at(u"21/11/2026 08:00:00"));
    EXPECT_TRUE(rule.eachyear);
    EXPECT_FALSE(rule.eachday || rule.eachmonth);
    EXPECT_EQ(rule.alarmday, u"");
    EXPECT_EQ(rule.alarmdaymonth, u"24/12");
    EXPECT_EQ(shown(rule.due), "24/12/2026 18:30:00");
}

TEST(EditorDate, FullDateRingsOnce) {
    const AlarmRule rule = dateRule(u"24/12/2026", u"18:30:00", at(u"21/11/2026 08:00:00"));
    EXPECT_FALSE(rule.DateNotSet());
    EXPECT_TRUE(isOneOff(rule));
    EXPECT_EQ(rule.AlarmDate, u"24/12/2026");
    EXPECT_EQ(shown(rule.due), "24/12/2026 18:30:00");
}

TEST(EditorDate, FullDateThatHasPassedStaysAndIsDueAtOnce) {
    const AlarmRule rule = dateRule(u"20/11/2026", u"18:30:00", at(u"21/11/2026 08:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"20/11/2026");
    EXPECT_EQ(shown(rule.due), "20/11/2026 18:30:00");
    EXPECT_FALSE(isAhead(rule, at(u"21/11/2026 08:00:00")));
}

TEST(EditorDate, PassedPatternMovesOnByOnePeriod) {
    const Now now = at(u"21/11/2026 09:00:00");
    EXPECT_EQ(shown(dateRule(u"**/**/****", u"08:59:59", now).due), "22/11/2026 08:59:59");
    EXPECT_EQ(shown(dateRule(u"20/**/****", u"10:00:00", now).due), "20/12/2026 10:00:00");
    EXPECT_EQ(shown(dateRule(u"20/11/****", u"10:00:00", now).due), "20/11/2027 10:00:00");
}

TEST(EditorDate, MonthThirteenIsWrittenAsItIsAndIsJanuary) {
    const AlarmRule rule = dateRule(u"05/**/****", u"10:00:00", at(u"21/12/2026 09:00:00"));
    EXPECT_EQ(rule.AlarmDate, u"05/13/2026");
    EXPECT_EQ(shown(rule.due), "05/01/2027 10:00:00");
}

TEST(EditorDate, MissingDayCarriesOver) {
    EXPECT_EQ(shown(dateRule(u"31/**/****", u"10:00:00", at(u"05/02/2026 09:00:00")).due),
              "03/03/2026 10:00:00");
    EXPECT_EQ(shown(dateRule(u"31/**/****", u"10:00:00", at(u"05/02/2028 09:00:00")).due),
              "02/03/2028 10:00:00");
    EXPECT_EQ(shown(dateRule(u"30/02/2026", u"10:00:00", at(u"05/02/2026 09:00:00")).due),
              "02/03/2026 10:00:00");
}

TEST(EditorDate, NowEqualToTheInstantDoesNotMoveAPatternOn) {
    const Now now = at(u"21/11/2026 09:00:00", 0);
    EXPECT_EQ(shown(dateRule(u"**/**/****", u"09:00:00", now).due), "21/11/2026 09:00:00");
    EXPECT_EQ(shown(dateRule(u"21/**/****", u"09:00:00", now).due), "21/11/2026 09:00:00");
    EXPECT_EQ(shown(dateRule(u"21/11/****", u"09:00:00", now).due), "21/11/2026 09:00:00");
    EXPECT_EQ(shown(dateRule(u"21/11/****", u"09:00:00", at(u"21/11/2026 09:00:00", 1)).due),
              "21/11/2027 09:00:00");
}

TEST(EditorDate, NonsenseHasNothingToWaitFor) {
    const Now now = at(u"21/11/2026 09:00:00");
    for (const TextView date : {u"xx/yy/zzzz", u"00/12/2026", u"24/00/2026", u"2026-12-24", u"24/12/26", u"*",
                                u"**/12/****", u"xx/**/****", u"00/**/****", u"24/xx/****"}) {
        const AlarmRule rule = dateRule(date, u"10:00:00", now);
        EXPECT_EQ(shown(rule.due), "none") << testing::PrintToString(Text(date));
        if (rule.DateNotSet()) {
            EXPECT_EQ(rule.AlarmDate, u"") << testing::PrintToString(Text(date));
        }
    }
    EXPECT_EQ(shown(dateRule(u"24/12/2026", u"", now).due), "none");
    EXPECT_EQ(shown(dateRule(u"24/12/2026", u"24:00:00", now).due), "none");
}

TEST(EditorWeekday, FindsItsOwnDateAndIsNoPattern) {
    for (const TextView date : {u"", u"**/**/****", u"01/01/2020"}) {
        EditorRule editor;
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

TEST(EditorWeekday, SeveralDaysWithoutATickAreNone) {
    EditorRule editor;
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

TEST(NextWeekday, IsTodayWhileTheTimeIsAheadAndOtherwiseInSevenDays) {
    const Now saturday = at(u"21/11/2026 09:00:00");
    EXPECT_EQ(NextWeekdayDate(6, u"09:00:01", saturday), u"21/11/2026");
    EXPECT_EQ(NextWeekdayDate(6, u"09:00:00", saturday), u"28/11/2026");
    EXPECT_EQ(NextWeekdayDate(6, u"09:00:00", at(u"21/11/2026 09:00:00", 0)), u"28/11/2026");
    EXPECT_EQ(NextWeekdayDate(6, u"08:00:00", saturday), u"28/11/2026");
}

TEST(NextWeekday, IsWithinTheWeekForEveryOtherDay) {
    const Now saturday = at(u"21/11/2026 09:00:00");
    EXPECT_EQ(NextWeekdayDate(7, u"00:00:00", saturday), u"22/11/2026");
    EXPECT_EQ(NextWeekdayDate(1, u"00:00:00", saturday), u"23/11/2026");
    EXPECT_EQ(NextWeekdayDate(5, u"23:00:00", saturday), u"27/11/2026");
    EXPECT_EQ(NextWeekdayDate(5, u"23:00:00", at(u"31/12/2026 10:00:00")), u"01/01/2027");
}

TEST(NextWeekday, IsInTheLastYearOfAllAsInAnyOther) {
    const Now thursday = at(u"30/12/9999 09:00:00");
    EXPECT_EQ(NextWeekdayDate(5, u"08:00:00", thursday), u"31/12/9999");
    EXPECT_FALSE(NextWeekdayDate(6, u"08:00:00", thursday)) << "the first day of the year 10000";
}

TEST(NextWeekday, IsNoneForANumberThatIsNoDay) {
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
    EditorRule editor;
    editor.AlarmTime = u"09:00:00";
    editor.AlarmWeekday = kSeveralWeekdays;
    editor.FlagWeekday = saturday;
    EXPECT_EQ(shown(ruleFromEditor(editor, now).due), "28/11/2026 09:00:00");
}

TEST(FlaggedWeekday, IsNoneWithoutAFlag) {
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

TEST(Repeat, AMonthWithoutTheDayIsWrittenAsItIsAndGoesOnFromTheRealDate) {
    EXPECT_EQ(advanced(u"31/01/2026", u"09:00:00", 1, kMonths, at(u"01/02/2026 09:00:00")).AlarmDate,
              u"31/02/2026");
    // 31 February was 3 March; the next one is therefore 3 April.
    EXPECT_EQ(advanced(u"31/01/2026", u"09:00:00", 1, kMonths, at(u"03/03/2026 10:00:00")).AlarmDate,
              u"03/04/2026");
}

TEST(Repeat, ADayThatEveryMonthOnTheWayHasNeverDrifts) {
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

TEST(DayCount, IsTheInstantInDays) {
    AlarmRule rule = dateRule(u"21/11/2026", u"18:00:00", at(u"21/11/2026 08:00:00"));
    EXPECT_DOUBLE_EQ(DAlarmTime(rule), 46347.75);
    clearAlarm(rule);
    EXPECT_EQ(DAlarmTime(rule), 0);
}

TEST(Repeat, TakesEquallyLittleTimeHoweverLongItWasMissed) {
    struct Case {
        TextView date;
        std::int16_t months;
        std::string next;
    };
    for (const Case& c :
         {Case{u"28/02/0001", 1, "28/12/9998 09:00:00"}, Case{u"29/01/0001", 2, "29/01/9999 09:00:00"},
          Case{u"30/04/0001", 12, "30/04/9999 09:00:00"}, Case{u"30/01/0001", 3, "30/01/9999 09:00:00"},
          Case{u"31/01/0001", 6, "31/01/9999 09:00:00"}, Case{u"31/12/0001", 12, "31/12/9998 09:00:00"}}) {
        const std::clock_t begun = std::clock();
        for (int round = 0; round < 2000; ++round) {
            AlarmRule rule;
            rule.AlarmDate = c.date;
            rule.AlarmTime = u"09:00:00";
            rule.RepeatNumber = c.months;
            rule.RepeatEvery = kMonths;
            ASSERT_TRUE(AdvanceRepeat(rule, at(u"15/12/9998 08:00:00")));
            arm(rule, at(u"15/12/9998 08:00:00"));
            ASSERT_EQ(shown(rule.due), c.next);
        }
        EXPECT_LT(std::clock() - begun, CLOCKS_PER_SEC) << c.next;
    }
}

}  // namespace
