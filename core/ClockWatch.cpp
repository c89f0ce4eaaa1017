#include "core/ClockWatch.h"

#include <cstdlib>
#include <utility>

namespace {

// The two counts do not run at exactly the same rate, and the time service corrects the clock by less than
// this.
constexpr std::int64_t kSmallestJump = 2000;

}  // namespace

std::int64_t ClockWatch::jump(Now now, std::uint64_t uptime) {
    const std::int64_t offset = now.at.seconds * 1000 + now.ms - static_cast<std::int64_t>(uptime);
    const std::int64_t moved = offset - std::exchange(offset_, offset);
    const bool first = !std::exchange(begun_, true);
    return first || std::abs(moved) < kSmallestJump ? 0 : moved / 1000;
}
