// A note's alarm during a run: counting down, ringing, and what ends it.
#include "alarm/Ringing.h"

#include <gtest/gtest.h>

#include "alarm/AlarmText.h"
#include "tests/alarm/AlarmCases.h"
#include "tests/alarm/FakeNote.h"

namespace {

const Now kNoon = at(u"15/06/2026 12:00:00", 0);  // a Monday
const Now kDueNow = at(u"15/06/2026 12:00:10", 0);

Now after(Now moment, std::int64_t seconds, int ms = 0) {
    return {{moment.at.seconds + seconds}, ms};
}

AlarmRule once() {
    return dateRule(u"15/06/2026", u"12:00:10", kNoon);
}

AlarmRule daily() {
    return dateRule(u"**/**/****", u"12:00:10", kNoon);
}

/// Makes it ring in the very second at which it is due.
void ring(FakeNote& note, const AlarmRule& rule) {
    note.set(rule, kNoon);
    note.tick(kDueNow);
    ASSERT_TRUE(note.alarm.Alarming);
}

// --- Countdown --------------------------------------------------------------------------------------------

TEST(Ringing, CountsDownInTheStripUntilItIsDue) {
    FakeNote note;
    note.set(once(), kNoon);
    EXPECT_EQ(note.strip, "0:00:10");
    EXPECT_TRUE(note.alarm.isCounting() && note.alarm.wantsTicks());
    note.tick(after(kNoon, 9, 999));
    EXPECT_EQ(note.strip, "0:00:01");
    EXPECT_FALSE(note.alarm.Alarming);
    note.tick(kDueNow);  // exactly due is due
    EXPECT_TRUE(note.alarm.Alarming);
    EXPECT_FALSE(note.alarm.isCounting());
    EXPECT_EQ(note.strip, "0:00:00");
    EXPECT_EQ(note.appeared, 1);
}

TEST(Ringing, ShowsWhenItIsDueInsteadAndCountsOnInAnOpenEditor) {
    FakeNote note;
    note.set(once(), kNoon);
    note.alarm.ShowCountdown = false;
    note.alarm.updateCountdown();
    EXPECT_EQ(note.strip, "15/06/2026 12:00  h.");
    note.tick(after(kNoon, 5));
    EXPECT_EQ(note.strip, "15/06/2026 12:00  h.");
    EXPECT_EQ(note.lastCountdown, "0:00:05");
    note.alarm.ShowCountdown = true;
    note.tick(after(kNoon, 6));
    EXPECT_EQ(note.strip, "0:00:04");
}

TEST(Ringing, ATextThatIsNoDateOrTimeNeverRings) {
    AlarmRule noDate = once(), noTime = once(), zeroDate = once();
    noDate.AlarmDate = u"aa/bb/cccc";
    noTime.AlarmTime = u"noon";
    zeroDate.AlarmDate = u"00/00/0000";
    for (const AlarmRule& rule : {noDate, noTime, zeroDate, AlarmRule()}) {
        FakeNote note;
        note.load(rule, kNoon);
        EXPECT_FALSE(note.alarm.wantsTicks() || note.alarm.wantsStrip()) << plain(rule.AlarmDate);
        note.alarm.tick(after(kNoon, 100000));  // a tick that was on its way
        EXPECT_FALSE(note.alarm.Alarming) << plain(rule.AlarmDate);
        EXPECT_EQ(note.sounds, 0);
    }
}

TEST(Ringing, WantsTicksFromTheFirstSecondToTheLast) {
    FakeNote note;
    note.keepsOneShots = true;
    note.set(once(), kNoon);
    EXPECT_EQ(note.tickChanges, 1);
    note.tick(kDueNow);
    EXPECT_TRUE(note.alarm.wantsTicks());
    EXPECT_EQ(note.tickChanges, 1);
    note.stop(kDueNow);
    EXPECT_FALSE(note.alarm.wantsTicks());
    EXPECT_EQ(note.tickChanges, 2);
}

TEST(Ringing, StoresAtAStartOnlyWhatMovedOn) {
    FakeNote waits;
    waits.load(daily(), kNoon);
    EXPECT_TRUE(waits.stored.empty());
    FakeNote moved;
    moved.load(repeatRule(u"14/06/2026", u"12:00:10", 1, u"hh", at(u"14/06/2026 11:00:00")), kNoon);
    EXPECT_EQ(moved.stored, std::vector{AlarmFields::DateAndTime});
    EXPECT_EQ(shown(moved.kept.due), "15/06/2026 12:00:10");
    EXPECT_EQ(moved.strip, "0:00:10");
}

// --- Ringing ----------------------------------------------------------------------------------------------

TEST(Ringing, SoundsAtOnceAndAgainEveryThreeSeconds) {
    FakeNote note;
    ring(note, once());
    EXPECT_EQ(note.sounds, 1);
    for (int sound = 2; sound <= 4; ++sound) {
        note.flash(5);
        EXPECT_EQ(note.sounds, sound - 1);
        EXPECT_EQ(note.alarm.Tickcount, 5);
        note.flash(1);
        EXPECT_EQ(note.sounds, sound);
        EXPECT_EQ(note.alarm.Tickcount, 0);
    }
}

TEST(Ringing, FlashesInSilenceWhenMuted) {
    AlarmRule muted = once();
    muted.Mute = true;
    FakeNote note;
    ring(note, muted);
    EXPECT_TRUE(note.white);
    for (int i = 0; i < 12; ++i) {
        note.flash(1);
        EXPECT_EQ(note.white, i % 2 != 0) << i;
    }
    EXPECT_EQ(note.sounds, 0);
    EXPECT_EQ(note.alarm.Tickcount, 0);
}

TEST(Ringing, RingsOnceForOneInstant) {
    FakeNote note;
    ring(note, once());
    note.flash(2);
    for (int i = 0; i < 10; ++i)
        note.tick(after(kDueNow, i));
    EXPECT_EQ(note.sounds, 1);
    EXPECT_EQ(note.timers, 1);
    EXPECT_EQ(note.appeared, 1);
    EXPECT_EQ(note.alarm.Tickcount, 2) << "the flash timer alone counts";
}

TEST(Ringing, FlashesAndSoundsOnTheCountdownsTicksWithoutATimerOfItsOwn) {
    FakeNote note;
    note.timersFail = true;
    ring(note, once());
    EXPECT_EQ(note.sounds, 1);
    EXPECT_TRUE(note.white);
    EXPECT_TRUE(note.alarm.wantsTicks());
    for (int i = 1; i <= 6; ++i) {
        note.tick(after(kDueNow, i / 2));
        EXPECT_EQ(note.white, i % 2 == 0) << i;
    }
    EXPECT_EQ(note.sounds, 2);
    note.timersFail = false;  // there is one again
    note.tick(after(kDueNow, 4));
    EXPECT_EQ(note.timers, 1);
    const int colours = note.colours;
    note.tick(after(kDueNow, 4, 500));
    EXPECT_EQ(note.colours, colours) << "two timers would flash twice as fast";
    note.keepsOneShots = true;
    note.stop(after(kDueNow, 5));
    EXPECT_EQ(note.timers, 0);
}

TEST(Ringing, StaysSilentOnceSilencedWithoutATimer) {
    FakeNote note;
    note.timersFail = true;
    ring(note, daily());
    note.alarm.silence();
    note.timersFail = false;
    const int colours = note.colours;
    note.tick(after(kDueNow, 1));
    EXPECT_EQ(note.colours, colours);
    EXPECT_EQ(note.timers, 0);
    EXPECT_FALSE(note.sounding);
}

TEST(Ringing, ALateTickOfItsTimerChangesNothing) {
    FakeNote note;
    ring(note, daily());
    note.stop(after(kDueNow, 3));
    const int colours = note.colours;
    note.flash(20);  // Windows had sent them before the timer ended
    EXPECT_EQ(note.colours, colours);
    EXPECT_FALSE(note.sounding);
}

// --- What ends it -----------------------------------------------------------------------------------------

TEST(Ringing, TakesItsNoteAlongWhenItIsStopped) {
    FakeNote note;
    ring(note, once());
    const std::size_t stores = note.stored.size();
    EXPECT_TRUE(note.stop(after(kDueNow, 3)));
    EXPECT_TRUE(note.removed);
    EXPECT_FALSE(note.alarm.Alarming);
    EXPECT_FALSE(note.sounding || note.white);
    EXPECT_EQ(note.timers, 0);
    EXPECT_EQ(note.stored.size(), stores) << "the store holds the note as it was or not at all";
}

TEST(Ringing, ANoteToBeKeptLosesItsAlarm) {
    FakeNote note;
    note.keepsOneShots = true;
    ring(note, once());
    EXPECT_FALSE(note.stop(after(kDueNow, 3)));
    EXPECT_EQ(note.alarm.rule, AlarmRule());
    EXPECT_EQ(note.stored.back(), AlarmFields::Cleared);
    EXPECT_EQ(note.strip, "");
    EXPECT_FALSE(note.alarm.wantsTicks());
    EXPECT_EQ(note.silences, 1) << "the sound is stopped once";
}

TEST(Ringing, ADailyAlarmMissedForDaysRingsOnceAndThenTomorrow) {
    FakeNote note;
    note.set(daily(), kNoon);
    note.tick(at(u"20/06/2026 13:00:10", 0));  // five days asleep
    EXPECT_EQ(note.sounds, 1);
    EXPECT_FALSE(note.stop(note.now));
    note.tick(note.now);
    EXPECT_FALSE(note.alarm.Alarming);
    EXPECT_EQ(shown(note.alarm.rule.due), "21/06/2026 12:00:10");
    EXPECT_EQ(note.strip, "23:00:00");
    EXPECT_EQ(note.stored.back(), AlarmFields::Everything);
    EXPECT_EQ(note.kept.due, note.alarm.rule.due);
}

TEST(Ringing, RingsOnceAfterASleepOverSeveralInstantsAndKeepsThePhase) {
    struct Case {
        std::int16_t number;
        TextView unit;
        std::string next;
    };
    for (const Case& c : {Case{90, u"mm", "15/06/2026 21:00:10"}, Case{2, u"hh", "15/06/2026 22:00:10"},
                          Case{1, u"dd", "16/06/2026 12:00:10"}, Case{1, u"MM", "15/07/2026 12:00:10"}}) {
        FakeNote note;
        note.set(repeatRule(u"15/06/2026", u"12:00:10", c.number, c.unit, kNoon), kNoon);
        note.tick(at(u"15/06/2026 20:01:10"));
        EXPECT_EQ(note.sounds, 1);
        note.stop(note.now);
        note.tick(note.now);
        EXPECT_EQ(note.sounds, 1) << c.next;
        EXPECT_EQ(shown(note.alarm.rule.due), c.next);
        EXPECT_EQ(shown(note.kept.due), c.next);
    }
}

TEST(Ringing, WaitsForNothingWhenStoppedExactlyAtTheNextInstant) {
    FakeNote note;
    ring(note, dateRule(u"15/**/****", u"12:00:10", kNoon));
    note.stop(at(u"15/07/2026 12:00:10", 0));
    EXPECT_EQ(note.strip, "");
    EXPECT_FALSE(note.alarm.wantsTicks());
    EXPECT_TRUE(note.kept.eachmonth) << "the next start goes on with it";
}

TEST(Ringing, AsksTheStoreWhetherItRecurs) {
    const AlarmRule everyDay = daily();
    FakeNote single;
    single.inStore = &everyDay;
    ring(single, once());
    EXPECT_FALSE(single.stop(after(kDueNow, 1))) << "another program has made it a daily one";
    EXPECT_EQ(shown(single.alarm.rule.due), "16/06/2026 12:00:10");
    const AlarmRule oneDay = once();
    FakeNote recurring;
    recurring.inStore = &oneDay;
    ring(recurring, everyDay);
    EXPECT_TRUE(recurring.stop(after(kDueNow, 1)));
}

TEST(Ringing, EndsWhenANewAlarmIsSet) {
    FakeNote note;
    ring(note, once());
    note.set(dateRule(u"15/06/2026", u"13:00:10", kDueNow), kDueNow);
    EXPECT_FALSE(note.alarm.Alarming || note.sounding || note.white);
    EXPECT_EQ(note.timers, 0);
    EXPECT_EQ(note.strip, "1:00:00");
    EXPECT_TRUE(note.alarm.isCounting());
    EXPECT_EQ(note.stored.back(), AlarmFields::Everything);
    note.tick(kDueNow);
    EXPECT_EQ(note.sounds, 1);
}

TEST(Ringing, IsSilentOnceClearedAndStoresThat) {
    FakeNote note;
    ring(note, daily());
    note.alarm.clear();
    EXPECT_FALSE(note.alarm.Alarming || note.sounding);
    EXPECT_EQ(note.kept, AlarmRule());
    EXPECT_EQ(note.stored.back(), AlarmFields::Cleared);
    EXPECT_EQ(note.strip, "");
}

TEST(Ringing, ArmsNothingWhenItIsOnlySilenced) {
    FakeNote note;
    ring(note, daily());
    const std::size_t stores = note.stored.size();
    note.alarm.silence();
    note.alarm.silence();
    EXPECT_EQ(note.silences, 1);
    EXPECT_EQ(note.stored.size(), stores);
    EXPECT_FALSE(note.alarm.wantsTicks());
    EXPECT_EQ(shown(note.alarm.rule.due), "15/06/2026 12:00:10");
}

TEST(Ringing, KeepsItsNoteAboveAllOthersAsLongAsItRings) {
    FakeNote note;
    note.set(daily(), kNoon);
    EXPECT_EQ(note.raised, 0);
    note.tick(kDueNow);
    EXPECT_EQ(note.raised, 1);
    note.alarm.silence();
    note.alarm.silence();
    EXPECT_EQ(note.raised, 0);
}

TEST(Ringing, ScreenReadersHearOfEveryChange) {
    FakeNote note;
    note.set(daily(), kNoon);
    EXPECT_EQ(note.spoken, 1) << "armed";
    note.tick(kDueNow);
    EXPECT_EQ(note.spoken, 2) << "rings";
    note.alarm.silence();
    EXPECT_EQ(note.spoken, 3) << "silent";
    note.alarm.updateCountdown();
    EXPECT_EQ(note.spoken, 4) << "armed again";
    note.alarm.updateCountdown();
    EXPECT_EQ(note.spoken, 4);
}

TEST(Ringing, AClockSetALittleForwardRingsWhatItSkipped) {
    const AlarmRule hourly = repeatRule(u"15/06/2026", u"12:00:10", 1, u"hh", kNoon);
    const std::pair<AlarmRule, const char*> rows[] = {
        {weekdayRule(1, u"12:00:10", kNoon), "22/06/2026 12:00:10"}, {hourly, "15/06/2026 15:00:10"}};
    for (const auto& [rule, next] : rows) {
        FakeNote note;
        note.set(rule, kNoon);
        note.tick(after(kDueNow, 2 * 3600 + 60));
        EXPECT_EQ(note.sounds, 1);
        note.stop(note.now);
        EXPECT_EQ(shown(note.alarm.rule.due), next);
        note.tick(kDueNow);  // and back again: what has rung stays quiet
        EXPECT_EQ(note.sounds, 1);
    }
}

TEST(Ringing, AClockSetBackNeitherLosesNorDoublesAnAlarm) {
    for (const AlarmRule& rule : {weekdayRule(1, u"12:00:10", kNoon), daily(),
                                  repeatRule(u"15/06/2026", u"12:00:10", 1, u"dd", kNoon)}) {
        FakeNote note;
        note.set(rule, kNoon);
        note.tick(after(kDueNow, -3600));
        EXPECT_EQ(note.strip, "1:00:00");
        note.tick(kDueNow);
        EXPECT_EQ(note.sounds, 1);
        note.tick(after(kDueNow, -1800));  // set back while it rings
        EXPECT_TRUE(note.alarm.Alarming);
        note.stop(note.now);
        note.tick(after(kDueNow, 1));  // the same time of day again
        EXPECT_EQ(note.sounds, 1);
        EXPECT_EQ(shown(note.alarm.rule.due),
                  rule.AlarmWeekday != 0 ? "22/06/2026 12:00:10" : "16/06/2026 12:00:10");
    }
}

}  // namespace
