// The half-second ticks of the desk: they drive the alarms, follow a clock that was set, and try again to
// read what another program held at the start.
#pragma once

#include <cstdint>

#include "core/ClockWatch.h"

struct basPost;

class DeskTicks {
public:
    explicit DeskTicks(basPost& desk) : desk_(desk) {}
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
    /// Half-second ticks to the tray window, by a timer or in another way.
    void startTicks();
    /// Lets the alarms follow a clock that was set by `jump` seconds.
    void followClock(Now now, std::int64_t jump);
    /// Replaces the blank stand-ins of notes that another program held at the start, if they can be read now,
    /// and takes over drafts that it held.
    void readAgain();

    basPost& desk_;
    bool ticking_ = false;
    bool ownTimer_ = false;  ///< the ticks come by a timer of the window
    ClockWatch clock_;
    std::int64_t untold_ = 0;  ///< seconds that the clock leapt forward without a message about it so far
    int unreadTicks_ = 0;      ///< since the last try to read what could not be read
    int unreadWait_ = 2;       ///< ticks from one try to the next
};
