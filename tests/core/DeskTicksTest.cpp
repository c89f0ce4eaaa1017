// The ticks of the desk, with a clock and a timer of the test's own.
#include "core/DeskTicks.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/alarm/AlarmCases.h"

namespace {

struct FakeDesk : TickedDesk {
    DeskTicks ticks{*this};
    Now clock = at(u"15/06/2026 12:00:00");
    std::uint64_t up = 5000;
    bool counting = false;
    bool unread = false;
    bool box = false;  ///< a dialog is open
    bool timersFail = false;
    bool timer = false;
    int timers = 0;    ///< asked for so far
    int promised = 0;  ///< ticks that come without a timer
    int ticked = 0;    ///< how often the notes were
    int tries = 0;     ///< how often what could not be read was tried
    std::vector<std::int64_t> jumps;

    FakeDesk() { ticks.begin(); }
    /// Half a second passes, in which the clock may be set by so many seconds. Only what was started ticks.
    void pass(std::int64_t set = 0) { sleep(1, set); }
    /// The machine sleeps for so many half seconds.
    void sleep(int halves, std::int64_t set = 0) {
        up += static_cast<std::uint64_t>(halves) * 500;
        const std::int64_t ms = clock.ms + std::int64_t{halves} * 500;
        clock = {{clock.at.seconds + ms / 1000 + set}, static_cast<int>(ms % 1000)};
        if (!timer && promised == 0) return;
        if (!timer) --promised;
        ticks.tick();
    }
    /// Windows tells of a clock that was set.
    void tell() { ticks.clockSet(); }
    void count(bool wanted) {
        counting = wanted;
        ticks.countingChanged();
    }

    Now now() const override { return clock; }
    std::uint64_t uptime() const override { return up; }
    bool isCounting() const override { return counting; }
    bool isUnread() const override { return unread; }
    bool mayRead() const override { return !box; }
    bool startTimer() override {
        ++timers;
        timer = !timersFail;
        return timer;
    }
    void stopTimer() override {
        timer = false;
        promised = 0;
    }
    void tickLater() override { ++promised; }
    void tickNotes() override { ++ticked; }
    void followClock(Now now, std::int64_t jump) override {
        EXPECT_EQ(now.at, clock.at);
        jumps.push_back(jump);
    }
    void readAgain() override { ++tries; }
};

using Jumps = std::vector<std::int64_t>;

// --- The timer --------------------------------------------------------------------------------------------

TEST(DeskTicks, ThereIsOneTimerAsLongAsAnyNoteCounts) {
    FakeDesk desk;
    desk.count(false);
    EXPECT_EQ(desk.timers, 0) << "an idle desk wakes nobody";
    desk.count(true);
    desk.count(true);
    EXPECT_EQ(desk.timers, 1);
    desk.pass();
    desk.pass();
    EXPECT_EQ(desk.ticked, 2);
    desk.count(false);
    desk.pass();
    EXPECT_EQ(desk.ticked, 2);
    desk.count(true);
    desk.pass();
    EXPECT_EQ(desk.ticked, 3);
}

TEST(DeskTicks, ComeWithoutATimerWhenWindowsRefusesOne) {
    FakeDesk desk;
    desk.timersFail = true;
    desk.count(true);
    for (int i = 0; i < 20; ++i)
        desk.pass();
    EXPECT_EQ(desk.ticked, 20);
    EXPECT_EQ(desk.promised, 1) << "one at a time";
    EXPECT_EQ(desk.timers, 21) << "and a timer is asked for at each of them";
    desk.timersFail = false;
    desk.pass();
    EXPECT_TRUE(desk.timer);
    desk.promised = 0;
    desk.pass();
    EXPECT_EQ(desk.timers, 22) << "until there is one";
    EXPECT_EQ(desk.promised, 0);
    EXPECT_EQ(desk.ticked, 22);
}

// --- The clock --------------------------------------------------------------------------------------------

TEST(DeskClock, AClockSetBackIsFollowedAtTheNextTick) {
    FakeDesk desk;
    desk.count(true);
    desk.pass();
    desk.pass(-3600);
    EXPECT_EQ(desk.jumps, Jumps{-3600});
    EXPECT_EQ(desk.ticked, 2) << "the notes count on";
    desk.tell();
    EXPECT_EQ(desk.jumps, Jumps{-3600}) << "the message about it comes too late";
}

TEST(DeskClock, AfterALeapForwardTheNotesWaitOneTickForTheMessage) {
    FakeDesk desk;
    desk.count(true);
    desk.pass(8 * 86400);
    EXPECT_EQ(desk.ticked, 0) << "Windows may be about to say that the clock was set";
    desk.tell();
    desk.tell();
    EXPECT_EQ(desk.jumps, Jumps{8 * 86400});
    desk.pass();
    EXPECT_EQ(desk.ticked, 1);
    desk.tell();
    EXPECT_EQ(desk.jumps.size(), 1U) << "once";
}

TEST(DeskClock, WithoutAMessageTheMachineWasAsleepAndNothingIsFollowed) {
    FakeDesk desk;
    desk.count(true);
    desk.pass(7200);
    desk.pass();
    EXPECT_EQ(desk.ticked, 1) << "what was missed rings";
    EXPECT_EQ(desk.jumps, Jumps());
    desk.tell();  // of something else
    EXPECT_EQ(desk.jumps, Jumps());
}

TEST(DeskClock, AMessageBeforeTheTickIsFollowedAtOnce) {
    FakeDesk desk;
    desk.count(true);
    desk.clock.at.seconds += 600;
    desk.tell();
    EXPECT_EQ(desk.jumps, Jumps{600});
    desk.pass();
    EXPECT_EQ(desk.ticked, 1) << "the leap is known";
}

TEST(DeskClock, TwoLeapsForwardBeforeTheMessageCountTogetherWithIt) {
    FakeDesk desk;
    desk.count(true);
    desk.pass(600);
    desk.clock.at.seconds += 60;
    desk.tell();
    EXPECT_EQ(desk.jumps, Jumps{660});
}

TEST(DeskClock, ASleepInWhichBothClocksRunOnIsNoLeap) {
    FakeDesk desk;
    desk.count(true);
    desk.sleep(2 * 86400);
    EXPECT_EQ(desk.ticked, 1);
    EXPECT_EQ(desk.jumps, Jumps());
}

// --- What could not be read -------------------------------------------------------------------------------

TEST(DeskReading, IsTriedEverMoreRarely) {
    FakeDesk desk;
    desk.unread = true;
    desk.ticks.countingChanged();
    std::vector<int> triedAt;
    for (int tick = 1; tick <= 6000; ++tick) {
        const int before = desk.tries;
        desk.pass();
        if (desk.tries > before) triedAt.push_back(tick);
    }
    EXPECT_EQ(triedAt, (std::vector<int>{2, 6, 14, 30, 62, 126, 254, 510, 1022, 2046, 3070, 4094, 5118}));
}

TEST(DeskReading, WaitsForAnOpenDialogAndStartsNoCountMeanwhile) {
    FakeDesk desk;
    desk.unread = true;
    desk.box = true;
    desk.ticks.countingChanged();
    for (int i = 0; i < 50; ++i)
        desk.pass();
    EXPECT_EQ(desk.tries, 0);
    desk.box = false;
    desk.pass();
    EXPECT_EQ(desk.tries, 0);
    desk.pass();
    EXPECT_EQ(desk.tries, 1);
}

TEST(DeskReading, KeepsTheTicksGoingUntilAllIsRead) {
    FakeDesk desk;
    desk.unread = true;
    desk.count(false);
    EXPECT_TRUE(desk.timer);
    desk.unread = false;
    desk.ticks.countingChanged();
    EXPECT_FALSE(desk.timer);
    desk.count(true);
    for (int i = 0; i < 50; ++i)
        desk.pass();
    EXPECT_EQ(desk.tries, 0) << "there is nothing to read";
}

}  // namespace
