#include "note/NoteHome.h"

#include <algorithm>

PxRect shownPlace(const NoteRecord& record, Twips width, Twips height, int dpi,
                  std::span<const Monitor> monitors) {
    const int left = toPx(Twips{record.x}, dpi).n;
    const int top = toPx(Twips{record.y}, dpi).n;
    const int strip = toPx(kIconizedHeight, dpi).n;
    // Whatever size is stored, a note is at most as large as the desktop that it is on.
    const PxRect work = monitorAt(monitors, {left, top, left + strip, top + strip}).work;
    const int high = std::min(toPx(height, dpi).n, work.height());
    PxRect rect{left, top, left + std::min(toPx(width, dpi).n, work.width()),
                top + (record.iconized ? strip : high)};
    const PxRect title{rect.left, rect.top, rect.right, rect.top + strip};
    // A note that has never had a size has never had a place, either: it appears where it can be used.
    const bool fresh = record.width <= 0 && record.height <= 0;
    if (fresh || !isInSight(monitors, title)) rect = movedInto(rect, monitorAt(monitors, rect).work, strip);
    return rect;
}

bool isAtHome(const NoteRecord& record, Twips width, int dpi, std::span<const Monitor> monitors) {
    const int left = toPx(Twips{record.x}, dpi).n;
    const int top = toPx(Twips{record.y}, dpi).n;
    return isInSight(monitors, {left, top, left + toPx(width, dpi).n, top + toPx(kIconizedHeight, dpi).n});
}
