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

    /// The clock is watched from now on.
    void begin();
    /// Ticks come as long as a note counts down or waits to be read, and only then.
    void countingChanged();
    /// A tick of every note that counts down, and from time to time one more try to read what could not be
    /// read at the start.
    void tick();
    /// Windows says that the clock was set: the alarms follow it.
    void clockSet();

private:
    /// Half-second ticks to the tray window, one way or another.
    void startTicks();
    /// Lets the alarms follow a clock that was set by `jump` seconds.
    void followClock(Now now, std::int64_t jump);
    /// A note that another program held at the start takes the place of its blank stand-in.
    void readAgain();

    static constexpr int kMostUnreadTicks = 1024;  ///< under nine minutes

    basPost& desk_;
    bool ticking_ = false;
    bool ownTimer_ = false;  ///< the ticks come by a timer of the window
    ClockWatch clock_;
    std::int64_t untold_ = 0;  ///< seconds that the clock leapt forward, unless Windows says why
    int unreadTicks_ = 0;      ///< since the last try to read what could not be read
    int unreadWait_ = 2;       ///< ticks from one try to the next
};
