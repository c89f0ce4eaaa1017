#include "note/Snap.h"

#include <algorithm>

namespace {

bool isNear(int edge, int other) {
    return edge >= other - kSnapTolerance && edge <= other + kSnapTolerance;
}

/// Both in coordinates of the monitor, whose corner is 0, 0. Left and top are compared with the monitor's
/// edge but go to the work area's; each rule sees the result of the rules before it.
void snapToScreen(PxRect& r, const PxRect& work) {
    if (r.left < kSnapTolerance) {
        r.right = r.width();
        r.left = work.left;
    }
    if (r.top < kSnapTolerance) {
        r.bottom = r.height();
        r.top = work.top;
    }
    if (r.right > work.right - kSnapTolerance) r = r.shifted(work.right - r.right, 0);
    if (r.bottom > work.bottom - kSnapTolerance) r = r.shifted(0, work.bottom - r.bottom);
}

bool snapToNote(PxRect& r, const PxRect& note) {
    const bool beside = r.top <= note.bottom + kSnapTolerance && r.bottom >= note.top - kSnapTolerance;
    const bool stacked = r.left <= note.right + kSnapTolerance && r.right >= note.left - kSnapTolerance;
    if (beside && isNear(r.left, note.right)) {
        r = r.shifted(note.right - r.left, 0);
    } else if (beside && isNear(r.right, note.left)) {
        r = r.shifted(note.left - r.right, 0);
    } else if (stacked && isNear(r.top, note.bottom)) {
        r = r.shifted(0, note.bottom - r.top);
    } else if (stacked && isNear(r.bottom, note.top)) {
        r = r.shifted(0, note.top - r.bottom);
    } else {
        return false;
    }
    return true;
}

}  // namespace

bool snap(PxRect& moving, const SnapScreen& screen, std::span<const PxRect> notes) {
    const PxRect before = moving;
    PxRect local = moving.shifted(-screen.left, -screen.top);
    snapToScreen(local, screen.work.shifted(-screen.left, -screen.top));
    moving = local.shifted(screen.left, screen.top);
    if (std::any_of(notes.begin(), notes.end(), [&](const PxRect& n) { return snapToNote(moving, n); }))
        return true;
    return moving != before;
}
