// The clock is set while alarms wait or ring: they follow it, none is lost, and none rings twice.
#include <gtest/gtest.h>

#include <random>

#include "tests/alarm/AlarmCases.h"
#include "tests/alarm/FakeNote.h"

namespace {

/// An alarm and the clock that it goes by.
struct Life {
    FakeNote note;
    Now clock;

    Life(const AlarmRule& rule, TextView start) : clock(at(start, 0)) { note.set(rule, clock); }

    /// Lets time pass until then, with a few ticks on the way and one exactly at the end; ringing is stopped
    /// after three seconds. Returns the instants at which it began to ring.
    std::vector<std::string> runUntil(TextView end) {
        std::vector<std::string> rung;
        const Now last = at(end, 0);
        while (isBefore(clock, last.at)) {
            // Straight to the next instant that it waits for, since ticks before it change nothing.
            const std::optional<Instant> due = note.alarm.rule.due;
            clock = due && isBefore(clock, *due) && *due < last.at ? Now{*due, 0} : last;
            note.tick(clock);
            if (!note.alarm.Alarming) continue;
            rung.push_back(shown(clock.at));
            clock.at.seconds += 3;
            note.stop(clock);
        }
        return rung;
    }
    void set(TextView moment) {
        const Now next = at(moment, 0);
        note.now = next;
        note.alarm.clockSet(next, next.at.seconds - clock.at.seconds);
        clock = next;
        note.tick(clock);
    }
    std::string due() const { return shown(note.alarm.rule.due); }
};

using Rung = std::vector<std::string>;

Now moment(TextView text) {
    return at(text, 0);
}

struct Kind {
    const char* name;
    AlarmRule rule;
    std::string next;  ///< after 15/06/2026 12:30, a Monday
};

/// All are due at 12:00:10 in the middle of June 2026.
std::vector<Kind> recurring() {
    const Now then = moment(u"15/06/2026 08:00:00");
    EditorRule several;
    several.AlarmTime = u"12:00:10";
    several.AlarmWeekday = kSeveralWeekdays;
    several.FlagWeekday = {true, false, false, true, false, false, false};
    return {{"each day", dateRule(u"**/**/****", u"12:00:10", then), "16/06/2026 12:00:10"},
            {"each month", dateRule(u"15/**/****", u"12:00:10", then), "15/07/2026 12:00:10"},
            {"each year", dateRule(u"15/06/****", u"12:00:10", then), "15/06/2027 12:00:10"},
            {"Mondays", weekdayRule(1, u"12:00:10", then), "22/06/2026 12:00:10"},
            {"Mondays and Thursdays", ruleFromEditor(several, then), "18/06/2026 12:00:10"},
            {"repeat", repeatRule(u"15/06/2026", u"12:00:10", 1, u"dd", then), "16/06/2026 12:00:10"}};
}

// --- Set back ---------------------------------------------------------------------------------------------

TEST(AlarmClock, AYearAheadWhileItRingsAndCorrectedAfterwards) {
    for (const Kind& kind : recurring()) {
        Life life(kind.rule, u"15/06/2026 11:00:00");
        life.set(u"15/06/2027 12:00:11");  // as after a sleep: no step is reported
        life.note.tick(life.clock);
        if (!life.note.alarm.Alarming) {
            life.runUntil(u"22/06/2027 13:00:00");
        } else {
            life.note.stop(life.clock);
        }
        life.set(u"15/06/2026 12:30:00");
        EXPECT_EQ(life.due(), kind.next) << kind.name;
        EXPECT_EQ(life.runUntil(u"16/06/2027 12:00:00").front(), kind.next) << kind.name;
        EXPECT_EQ(life.note.kept.due, life.note.alarm.rule.due) << kind.name;
    }
}

TEST(AlarmClock, CorrectedWhileItRings) {
    for (const Kind& kind : recurring()) {
        Life life(kind.rule, u"15/06/2026 11:00:00");
        life.note.tick(moment(u"15/06/2027 12:00:11"));  // no step was reported: it rings
        ASSERT_TRUE(life.note.alarm.Alarming) << kind.name;
        life.clock = moment(u"15/06/2027 12:00:11");
        life.set(u"15/06/2026 12:30:00");
        EXPECT_TRUE(life.note.alarm.Alarming) << kind.name;
        life.note.stop(life.clock);
        EXPECT_EQ(life.due(), kind.next) << kind.name;
    }
}

TEST(AlarmClock, WhatRangLateByAWrongClockRingsOnTimeByTheRightOne) {
    for (const Kind& kind : recurring()) {
        Life life(kind.rule, u"15/06/2026 11:00:00");
        life.clock = moment(u"15/06/2027 12:00:11");
        life.note.tick(life.clock);
        ASSERT_TRUE(life.note.alarm.Alarming) << kind.name;
        life.note.stop(life.clock);
        life.set(u"15/06/2026 11:30:00");
        EXPECT_EQ(life.runUntil(u"15/06/2026 13:00:00"), Rung{"15/06/2026 12:00:10"}) << kind.name;
        EXPECT_EQ(life.due(), kind.next) << kind.name;
    }
}

TEST(AlarmClock, AfterASmallStepBackNothingRingsTwice) {
    for (const Kind& kind : recurring()) {
        for (const TextView back : {u"15/06/2026 11:59:00", u"15/06/2026 12:00:00", u"15/06/2026 11:00:12",
                                    u"14/06/2026 12:31:00"}) {
            Life life(kind.rule, u"15/06/2026 11:00:00");
            EXPECT_EQ(life.runUntil(u"15/06/2026 12:30:00"), Rung{"15/06/2026 12:00:10"}) << kind.name;
            life.set(back);
            const Rung rung = life.runUntil(u"15/06/2026 13:00:00");
            EXPECT_EQ(std::count(rung.begin(), rung.end(), "15/06/2026 12:00:10"), 0) << kind.name;
            EXPECT_EQ(life.due(), kind.next) << kind.name;
        }
    }
}

TEST(AlarmClock, WhatRangUpToADayAheadDoesNotRingAgain) {
    const AlarmRule daily = dateRule(u"**/**/****", u"12:00:10", moment(u"15/06/2026 08:00:00"));
    for (const auto& [back, next] : {std::pair{u"14/06/2026 12:00:20", "16/06/2026 12:00:10"},
                                     std::pair{u"14/06/2026 12:00:19", "15/06/2026 12:00:10"}}) {
        Life life(daily, u"15/06/2026 11:00:00");
        life.clock = moment(u"15/06/2026 12:00:20");
        life.note.tick(life.clock);
        ASSERT_TRUE(life.note.alarm.Alarming) << "ten seconds late";
        life.note.stop(life.clock);
        life.set(back);
        EXPECT_EQ(life.due(), next);
    }
}

TEST(AlarmClock, WhatRangTheDayBeforeDoesNotRingAgain) {
    Life life(dateRule(u"**/**/****", u"12:00:10", moment(u"15/06/2026 08:00:00")), u"15/06/2026 11:00:00");
    EXPECT_EQ(life.runUntil(u"16/06/2026 12:30:00").size(), 2U);
    life.set(u"15/06/2026 12:00:00");
    EXPECT_EQ(life.due(), "16/06/2026 12:00:10") << "the one of the 15th has rung";
}

TEST(AlarmClock, ADayThatComesAgainAfterALargeStepBackRingsLikeAnyOther) {
    Life life(dateRule(u"**/**/****", u"12:00:10", moment(u"15/06/2026 08:00:00")), u"15/06/2026 08:00:00");
    EXPECT_EQ(life.runUntil(u"17/06/2026 13:00:00").size(), 3U);
    life.set(u"15/05/2026 09:00:00");
    EXPECT_EQ(life.runUntil(u"18/06/2026 09:00:00").size(), 34U);
}

TEST(AlarmClock, ARepeatThatMovedOnInTheFutureGoesBackByWholePeriods) {
    struct Case {
        std::int16_t number;
        TextView unit;
        std::string back;
    };
    for (const Case& c : {Case{90, u"mm", "16/06/2026 13:30:10"}, Case{7, u"hh", "16/06/2026 16:00:10"},
                          Case{1, u"dd", "17/06/2026 12:00:10"}, Case{1, u"MM", "15/07/2026 12:00:10"},
                          Case{25, u"MM", "15/07/2028 12:00:10"}}) {
        Life life(repeatRule(u"15/06/2026", u"12:00:10", c.number, c.unit, moment(u"15/06/2026 08:00:00")),
                  u"15/06/2026 08:00:00");
        EXPECT_EQ(life.runUntil(u"15/06/2026 12:00:20").size(), 1U);
        life.note.tick(moment(u"15/08/2030 08:00:00"));  // the clock leapt, and no step was reported
        if (life.note.alarm.Alarming) life.note.stop(moment(u"15/08/2030 08:00:00"));
        life.clock = moment(u"15/08/2030 08:00:00");
        life.set(u"16/06/2026 12:10:00");
        EXPECT_EQ(life.due(), c.back);
        EXPECT_EQ(life.note.kept.due, life.note.alarm.rule.due);
    }
}

TEST(AlarmClock, ARepeatNeverGoesBackBeforeWhereItStood) {
    Life life(repeatRule(u"15/06/2026", u"12:00:10", 1, u"hh", moment(u"15/06/2026 08:00:00")),
              u"15/06/2026 08:00:00");
    life.runUntil(u"15/06/2026 18:00:00");
    life.set(u"01/01/2026 08:00:00");
    EXPECT_EQ(life.due(), "15/06/2026 12:00:10");
}

TEST(AlarmClock, AnAlarmThatTheUserLetBeginFarAheadStays) {
    const Now then = moment(u"15/06/2026 08:00:00");
    for (const AlarmRule& rule : {repeatRule(u"15/06/2030", u"12:00:10", 1, u"hh", then),
                                  dateRule(u"15/06/2030", u"12:00:10", then)}) {
        Life life(rule, u"15/06/2026 08:00:00");
        const std::size_t stores = life.note.stored.size();
        for (const TextView moment : {u"15/06/2025 08:00:00", u"15/06/2027 08:00:00", u"14/06/2026 08:00:00"})
            life.set(moment);
        EXPECT_EQ(life.due(), "15/06/2030 12:00:10");
        EXPECT_EQ(life.note.stored.size(), stores);
    }
}

TEST(AlarmClock, ARepeatThatMovedTooFarAtAStartGoesBackToo) {
    FakeNote note;
    AlarmRule rule = repeatRule(u"15/06/2026", u"12:00:10", 1, u"dd", moment(u"15/06/2026 08:00:00"));
    note.load(rule, moment(u"20/09/2029 08:00:00"));
    ASSERT_EQ(shown(note.alarm.rule.due), "20/09/2029 12:00:10");
    note.alarm.clockSet(moment(u"16/06/2026 08:00:00"), -100000000);
    EXPECT_EQ(shown(note.alarm.rule.due), "16/06/2026 12:00:10");
    EXPECT_EQ(note.stored.back(), AlarmFields::DateAndTime);
}

TEST(AlarmClock, ANewAlarmKnowsNothingOfTheOld) {
    Life life(repeatRule(u"15/06/2026", u"12:00:10", 1, u"hh", moment(u"15/06/2026 08:00:00")),
              u"15/06/2026 08:00:00");
    life.runUntil(u"15/06/2026 15:00:00");
    life.note.set(repeatRule(u"16/06/2026", u"14:00:10", 1, u"hh", life.clock), life.clock);
    life.set(u"15/06/2026 13:30:00");
    EXPECT_EQ(life.due(), "16/06/2026 14:00:10");
    life.note.set(dateRule(u"**/**/****", u"14:00:40", life.clock), life.clock);
    life.set(u"15/06/2026 13:00:00");
    EXPECT_EQ(life.runUntil(u"15/06/2026 15:00:00"), Rung{"15/06/2026 14:00:40"})
        << "the same minute as the old";
}

// --- Set forward ------------------------------------------------------------------------------------------

TEST(AlarmClock, NothingRingsOnTheWrongDayWhenAClockThatWasBehindIsCorrected) {
    for (const Kind& kind : recurring()) {
        AlarmRule stored = kind.rule;
        FakeNote note;
        const Now wrong = moment(u"01/01/2020 00:00:00");
        const Now right = moment(u"15/06/2026 15:30:00");
        note.load(stored, wrong);
        note.alarm.clockSet(right, right.at.seconds - wrong.at.seconds);
        note.tick(right);
        EXPECT_FALSE(note.alarm.Alarming) << kind.name;
        EXPECT_EQ(shown(note.alarm.rule.due), kind.next) << kind.name;
    }
}

TEST(AlarmClock, WhatASmallStepForwardSkippedStillRings) {
    for (const Kind& kind : recurring()) {
        Life life(kind.rule, u"15/06/2026 12:00:00");
        life.set(u"15/06/2026 13:00:00");
        EXPECT_TRUE(life.note.alarm.Alarming) << kind.name;
        life.note.stop(life.clock);
        EXPECT_EQ(life.due(), kind.next) << kind.name;
    }
}

TEST(AlarmClock, ASmallStepIsOneThatReachesLessThanThreeHoursBeyondTheAlarm) {
    for (const Kind& kind : recurring()) {
        Life within(kind.rule, u"15/06/2026 12:00:00");
        within.set(u"15/06/2026 15:00:09");
        EXPECT_TRUE(within.note.alarm.Alarming) << kind.name;
        Life beyond(kind.rule, u"15/06/2026 12:00:00");
        beyond.set(u"15/06/2026 15:00:10");
        EXPECT_FALSE(beyond.note.alarm.Alarming) << kind.name;
        EXPECT_EQ(beyond.due(), kind.next) << kind.name;
    }
}

TEST(AlarmClock, SetToTheVeryInstantItRings) {
    for (const Kind& kind : recurring()) {
        Life life(kind.rule, u"15/06/2026 12:00:00");
        life.set(u"15/06/2026 12:00:10");
        EXPECT_TRUE(life.note.alarm.Alarming) << kind.name;
    }
}

TEST(AlarmClock, WhatWasMissedBeforeTheStepStillRings) {
    // Asleep from nine in the evening; on waking the clock was set by an hour.
    Life life(dateRule(u"**/**/****", u"03:00:00", moment(u"15/06/2026 08:00:00")), u"15/06/2026 21:00:00");
    life.clock = moment(u"16/06/2026 07:00:00");
    life.set(u"16/06/2026 12:00:00");
    EXPECT_TRUE(life.note.alarm.Alarming);
}

TEST(AlarmClock, ASingleAlarmThatWasSkippedRings) {
    Life life(dateRule(u"15/06/2026", u"12:00:10", moment(u"15/06/2026 08:00:00")), u"15/06/2026 08:00:00");
    life.set(u"15/06/2027 08:00:00");
    EXPECT_TRUE(life.note.alarm.Alarming);
}

// --- Summer time ------------------------------------------------------------------------------------------

TEST(AlarmClock, SummerTimeNeitherLosesNorDoublesAnAlarm) {
    for (const TextView time :
         {u"01:30:00", u"02:00:00", u"02:30:00", u"02:59:59", u"03:00:00", u"03:30:00"}) {
        const std::string clock(time.begin(), time.end());
        Life spring(dateRule(u"**/**/****", time, moment(u"28/03/2026 12:00:00")), u"28/03/2026 12:00:00");
        Rung rung = spring.runUntil(u"29/03/2026 02:00:00");
        spring.set(u"29/03/2026 03:00:00");
        if (spring.note.alarm.Alarming) {
            rung.push_back("29/03/2026 " + clock);
            spring.note.stop(spring.clock);
        }
        for (const std::string& more : spring.runUntil(u"30/03/2026 12:00:00"))
            rung.push_back(more);
        EXPECT_EQ(rung, (Rung{"29/03/2026 " + clock, "30/03/2026 " + clock}));

        Life autumn(dateRule(u"**/**/****", time, moment(u"24/10/2026 12:00:00")), u"24/10/2026 12:00:00");
        rung = autumn.runUntil(u"25/10/2026 03:00:00");
        autumn.set(u"25/10/2026 02:00:00");
        for (const std::string& more : autumn.runUntil(u"26/10/2026 12:00:00"))
            rung.push_back(more);
        EXPECT_EQ(rung, (Rung{"25/10/2026 " + clock, "26/10/2026 " + clock}));
    }
}

TEST(AlarmClock, ARepeatGoesOnInItsStepThroughTheHourThatComesTwice) {
    Life life(repeatRule(u"25/10/2026", u"00:00:00", 20, u"mm", moment(u"24/10/2026 12:00:00")),
              u"24/10/2026 12:00:00");
    EXPECT_EQ(life.runUntil(u"25/10/2026 02:50:00").size(), 9U);
    life.set(u"25/10/2026 01:50:00");
    EXPECT_EQ(life.runUntil(u"25/10/2026 03:30:00"), (Rung{"25/10/2026 03:00:00", "25/10/2026 03:20:00"}))
        << "twenty past and forty past have rung already";
}

TEST(AlarmClock, MonthEndsAndLeapDaysAreComputedFromTheRule) {
    Life month(dateRule(u"31/**/****", u"09:00:00", moment(u"30/01/2026 08:00:00")), u"30/01/2026 08:00:00");
    EXPECT_EQ(month.runUntil(u"05/03/2026 08:00:00").size(), 2U);
    month.set(u"06/02/2026 08:00:00");
    EXPECT_EQ(month.due(), "03/03/2026 09:00:00");
    month.set(u"06/03/2028 08:00:00");
    EXPECT_EQ(month.due(), "31/03/2028 09:00:00");
    Life year(dateRule(u"29/02/****", u"09:00:00", moment(u"28/02/2028 08:00:00")), u"28/02/2028 08:00:00");
    year.set(u"28/02/2027 08:00:00");
    EXPECT_EQ(year.due(), "01/03/2027 09:00:00");
    year.set(u"28/02/2028 08:00:00");
    EXPECT_EQ(year.due(), "29/02/2028 09:00:00");
}

// --- At any moment ----------------------------------------------------------------------------------------

TEST(AlarmClock, WhateverTheClockDoesAlarmsFollowItAndNoMinuteRingsTwice) {
    std::mt19937 random(20260615);
    const auto below = [&](std::int64_t n) { return static_cast<std::int64_t>(random()) % n; };
    for (int round = 0; round < 400; ++round) {
        const std::vector<Kind> kinds = recurring();
        const Kind& kind =
            kinds[static_cast<std::size_t>(below(static_cast<std::int64_t>(kinds.size()) - 1))];
        Life life(kind.rule, u"15/06/2026 08:00:00");
        std::int64_t last = 0;    // the instant it last rang for, in seconds
        std::int64_t lastAt = 0;  // and when
        for (int step = 0; step < 30; ++step) {
            const std::int64_t by = (below(3) == 0 ? kSecondsPerDay * 400 : 3600) * (below(2) * 2 - 1);
            const Now next{{life.clock.at.seconds + below(std::abs(by)) * (by < 0 ? -1 : 1)}, 0};
            life.note.alarm.clockSet(next, next.at.seconds - life.clock.at.seconds);
            life.clock = next;
            const bool ahead = lastAt > next.at.seconds + 2 * kSecondsPerDay;
            if (lastAt > next.at.seconds + kSecondsPerDay) last = 0;
            AlarmRule fresh = kind.rule;
            arm(fresh, next);
            ASSERT_TRUE(life.note.alarm.rule.due) << kind.name;
            if (ahead || lastAt < next.at.seconds) {
                ASSERT_LE(*life.note.alarm.rule.due, *fresh.due)
                    << kind.name << ": like a rule made at this moment, or missed just now";
            }
            const Now until{{next.at.seconds + below(3 * kSecondsPerDay)}, 0};
            while (isBefore(life.clock, until.at)) {
                const Instant due = *life.note.alarm.rule.due;
                life.clock = due < until.at ? Now{std::max(due, life.clock.at), 0} : until;
                life.note.tick(life.clock);
                if (!life.note.alarm.Alarming) continue;
                ASSERT_GT(due.seconds / 60, last / 60) << kind.name;
                last = due.seconds;
                lastAt = life.clock.at.seconds;
                life.clock.at.seconds += 1;
                life.note.stop(life.clock);
            }
        }
    }
}

}  // namespace
