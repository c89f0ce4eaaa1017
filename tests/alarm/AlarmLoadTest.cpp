// An alarm as the note's record stores it, and what a start makes of it.
#include "alarm/AlarmRule.h"

#include <gtest/gtest.h>

#include "tests/alarm/AlarmCases.h"

namespace {

TEST(StoredForm, OfAPatternIsAStarAWordAndItsDay) {
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
        const AlarmRule rule = dateRule(c.date, u"09:00:00", now);
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

TEST(StoredForm, OfAFullDateHasNoPattern) {
    NoteRecord record;
    storeRule(record, dateRule(u"15/**/****", u"09:00:00", at(u"01/12/2026 08:00:00")));
    storeRule(record, dateRule(u"16/12/2026", u"09:00:00", at(u"01/12/2026 08:00:00")));
    EXPECT_EQ(record.alarmdate, u"16/12/2026");
    EXPECT_EQ(record.interval, u"");
    EXPECT_EQ(record.alarmday, u"");
    EXPECT_EQ(record.alarmdaymonth, u"");
}

TEST(StoredForm, OmitsTheDayOfAnotherPattern) {
    AlarmRule rule = dateRule(u"**/**/****", u"09:00:00", at(u"01/12/2026 08:00:00"));
    rule.alarmday = u"15";
    rule.alarmdaymonth = u"15/04";
    NoteRecord record;
    storeRule(record, rule);
    EXPECT_EQ(record.alarmday, u"");
    EXPECT_EQ(record.alarmdaymonth, u"");
}

TEST(StoredForm, ReadsTheFirstTwoDigitsOfADayOrMonth) {
    const Now now = at(u"01/12/2026 08:00:00");
    struct Row {
        const char16_t* day;
        const char16_t* dayMonth;
        const char* due;
    };
    for (const Row& row : {Row{u"155", u"", "15/12/2026 09:00:00"}, Row{u" 7", u"", "07/12/2026 09:00:00"},
                           Row{u"", u"155/044", "15/04/2027 09:00:00"}}) {
        NoteRecord record;
        record.interval = row.day[0] != 0 ? u"eachmonth" : u"eachyear";
        record.alarmdate = u"*";
        record.alarmtime = u"09:00:00";
        record.alarmday = row.day;
        record.alarmdaymonth = row.dayMonth;
        AlarmRule rule = ruleFromRecord(record);
        armAfterLoad(rule, now);
        EXPECT_EQ(shown(rule.due), row.due);
    }
}

TEST(StoredForm, NamesAPatternByExactlyItsWord) {
    for (const TextView word : {u" eachyear", u"eachyear ", u"Eachday", u"eachmonths", u"each", u""}) {
        NoteRecord record;
        record.interval = word;
        EXPECT_FALSE(ruleFromRecord(record).DateNotSet()) << Text(word).size();
    }
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
    for (const std::int16_t number : {std::int16_t{1}, std::int16_t{5}}) {
        NoteRecord record;
        record.alarmdate = u"20/11/2026";
        record.alarmtime = u"09:00:00";
        record.alarmrepeatnumber = number;
        record.alarmrepeatevery = u"xx";
        AlarmRule rule = ruleFromRecord(record);
        armAfterLoad(rule, at(u"21/11/2026 10:00:00"));
        EXPECT_TRUE(isOneOff(rule));
        EXPECT_EQ(rule.RepeatNumber, 0);
        EXPECT_EQ(shown(rule.due), "20/11/2026 09:00:00");
    }
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

TEST(Load, DatesInAnotherFormWaitForNothing) {
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

}  // namespace
