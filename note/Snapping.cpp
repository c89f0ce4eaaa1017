#include "note/Snapping.h"

#include <algorithm>
#include <utility>

Snapping::Snapping(const PxRect& start, SnapRules rules, std::vector<Monitor> monitors)
    : rules_(std::move(rules)),
      monitors_(std::move(monitors)),
      width_(start.width()),
      height_(start.height()) {
    const auto primary = std::find_if(monitors_.begin(), monitors_.end(),
                                      [](const Monitor& monitor) { return monitor.primary; });
    workArea_ = (primary != monitors_.end() ? *primary : monitors_.front()).work;
}

SnapScreen Snapping::screenAt(const PxRect& rect) const {
    const Monitor& monitor = monitorAt(monitors_, rect);
    if (monitor.primary) return {0, 0, workArea_};
    return {monitor.area.left, monitor.area.top, monitor.work};
}

PxRect Snapping::moved(const PxRect& proposed) const {
    // Snapping to a work area that does not begin at the screen's corner makes the note smaller. The size
    // from the beginning of the move is used each time, so that this never adds up.
    PxRect moving{proposed.left, proposed.top, proposed.left + width_, proposed.top + height_};
    std::vector<PxRect> notes;
    try {
        notes = rules_.others();
    } catch (...) {
        notes.clear();  // out of memory for the list: the screen's edges still snap
    }
    snap(moving, screenAt(proposed), notes);
    moving.right = std::max(moving.right, moving.left + std::min(width_, rules_.leastWidth));
    moving.bottom = std::max(moving.bottom, moving.top + std::min(height_, rules_.leastHeight));
    return moving;
}
