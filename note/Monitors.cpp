#include "note/Monitors.h"

#include <algorithm>
#include <cstdint>

namespace {

/// The length that two ranges share; negative: how far they are apart.
std::int64_t shared(int from, int to, int otherFrom, int otherTo) {
    return std::int64_t{std::min(to, otherTo)} - std::max(from, otherFrom);
}

std::int64_t commonArea(const PxRect& a, const PxRect& b) {
    const std::int64_t across = shared(a.left, a.right, b.left, b.right);
    const std::int64_t down = shared(a.top, a.bottom, b.top, b.bottom);
    return std::max<std::int64_t>(across, 0) * std::max<std::int64_t>(down, 0);
}

double distance(const PxRect& a, const PxRect& b) {
    const auto across =
        static_cast<double>(std::max<std::int64_t>(-shared(a.left, a.right, b.left, b.right), 0));
    const auto down =
        static_cast<double>(std::max<std::int64_t>(-shared(a.top, a.bottom, b.top, b.bottom), 0));
    return across * across + down * down;
}

}  // namespace

const Monitor& monitorAt(std::span<const Monitor> monitors, const PxRect& rect) {
    const auto isNearer = [&rect](const Monitor& a, const Monitor& b) {
        const std::int64_t onA = commonArea(a.area, rect);
        const std::int64_t onB = commonArea(b.area, rect);
        return onA != onB ? onA > onB : distance(a.area, rect) < distance(b.area, rect);
    };
    return *std::min_element(monitors.begin(), monitors.end(), isNearer);
}

bool isInSight(std::span<const Monitor> monitors, const PxRect& rect) {
    return std::any_of(monitors.begin(), monitors.end(),
                       [&rect](const Monitor& monitor) { return commonArea(monitor.work, rect) > 0; });
}
