// The half-second ticks of the desk: they drive the alarms, follow a clock that was set, and try again to
// read what another program held at the start.
#pragma once

#include <cstdint>

#include "core/ClockWatch.h"

/// The desk as its ticks see it.
class TickedDesk {
public:
    virtual ~TickedDesk() = default;
    virtual Now now() const = 0;
    /// ms; cannot be set, and runs on while the machine sleeps.
    virtual std::uint64_t uptime() const = 0;
    /// Whether a note counts down or rings.
    virtual bool isCounting() const = 0;
    /// Whether a note or a draft waits to be read.
    virtual bool isUnread() const = 0;
    /// Whether it may be read now: not below an open dialog.
    virtual bool mayRead() const = 0;
    /// Half-second ticks by a timer. False when Windows refuses one, which alarms must not depend on.
    [[nodiscard]] virtual bool startTimer() = 0;
    virtual void stopTimer() = 0;
    /// One tick after half a second, without a timer.
    virtual void tickLater() = 0;
    /// A tick for every note. The failure of one must not affect the others.
    virtual void tickNotes() = 0;
    /// Lets the alarms of all notes follow a clock that was set by `jump` seconds.
    virtual void followClock(Now now, std::int64_t jump) = 0;
    /// Tries to read what waits.
    virtual void readAgain() = 0;
};

class DeskTicks {
public:
    explicit DeskTicks(TickedDesk& desk) : desk_(desk) {}
    DeskTicks(const DeskTicks&) = delete;
    DeskTicks& operator=(const DeskTicks&) = delete;

    /// Begins to watch the clock.
    void begin();
    /// Starts or stops the ticks: they come as long as a note counts down, or a note or a draft
    /// waits to be read.
    void countingChanged();
    /// Gives every note that counts down a tick, and from time to time tries again to read what could not be
    /// read at the start.
    void tick();
    /// Windows says that the clock was set: the alarms follow it.
    void clockSet();

private:
    void startTicks();
    void followClock(Now now, std::int64_t jump);
    void readAgain();

    TickedDesk& desk_;
    bool ticking_ = false;
    bool ownTimer_ = false;  ///< the ticks come by a timer of the window
    ClockWatch clock_;
    std::int64_t untold_ = 0;  ///< seconds that the clock leapt forward without a message about it so far
    int unreadTicks_ = 0;      ///< since the last try to read what could not be read
    int unreadWait_ = 2;       ///< ticks from one try to the next
};
