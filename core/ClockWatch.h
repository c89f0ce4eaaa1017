// Detects that the clock was set rather than ran on, by comparing it with a count of milliseconds that nobody
// can set.
#pragma once

#include <cstdint>

#include "support/DateTime.h"

class ClockWatch {
public:
    /// Seconds by which the clock was set since the last call, back when negative; 0 when it only ran on,
    /// even if the machine was asleep, and at the first call. `uptime` is in ms.
    std::int64_t jump(Now now, std::uint64_t uptime);

private:
    bool begun_ = false;
    std::int64_t offset_ = 0;  ///< ms from the uptime to the clock
};
