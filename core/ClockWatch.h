// Tells a clock that was set from one that only ran on, by a count of milliseconds that nobody sets.
#pragma once

#include <cstdint>

#include "support/DateTime.h"

class ClockWatch {
public:
    /// Seconds by which the clock was set since the last call, back when negative; 0 when it only ran on,
    /// also while the machine slept, and at the first call. `uptime` in ms.
    std::int64_t jump(Now now, std::uint64_t uptime);

private:
    bool begun_ = false;
    std::int64_t offset_ = 0;  ///< ms from the uptime to the clock
};
