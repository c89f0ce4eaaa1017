// Easy alignment during one move: the rules of Snap with the monitors and the other notes of this desk.
#pragma once

#include <functional>
#include <vector>

#include "note/Monitors.h"
#include "note/Snap.h"

struct SnapRules {
    bool easyAlign = false;
    int leastWidth = 0;  ///< pixels; snapping never leaves the note smaller
    int leastHeight = 0;
    /// Rectangles of the other visible notes, in the order of their numbers; asked at every step.
    std::function<std::vector<PxRect>()> others;
};

class Snapping {
public:
    /// `start` is the note's window in pixels when the move begins. There must be a monitor.
    Snapping(const PxRect& start, SnapRules rules, std::vector<Monitor> monitors);

    /// Where the note goes when it would be moved to `proposed`.
    PxRect moved(const PxRect& proposed) const;
    /// The monitors have changed during the move.
    void setMonitors(std::vector<Monitor> monitors) { monitors_ = std::move(monitors); }

private:
    /// The monitor under a rectangle.
    SnapScreen screenAt(const PxRect& rect) const;

    SnapRules rules_;
    /// Kept, because asking Windows for them at every step would take longer than everything else.
    std::vector<Monitor> monitors_;
    PxRect workArea_;  ///< of the primary monitor, as it was when the move began
    int width_;        ///< pixels, when the move began
    int height_;
};
