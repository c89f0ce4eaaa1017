#include "core/Columns.h"

std::vector<ColumnPlace> automaticPosition(const std::vector<ColumnNote>& notes, const PxRect& workArea,
                                           double twipsPerPixel) {
    std::vector<ColumnPlace> places(notes.size());
    if (notes.empty()) return places;

    const double usableHeight = workArea.height() * twipsPerPixel;
    const std::int32_t rowTop = notes[0].top;
    std::int32_t colLeft = notes[0].left;
    std::int32_t colWidth = notes[0].width;
    std::int32_t previousTop = rowTop;
    std::int32_t previousHeight = notes[0].height;

    for (std::size_t i = 1; i < notes.size(); ++i) {
        if (!notes[i].visible) continue;
        const std::int32_t below = previousTop + previousHeight;
        if (below + twipsPerPixel >= usableHeight) {
            places[i] = {true, colLeft + colWidth, rowTop};
            colLeft = places[i].left;
            colWidth = notes[i].width;
        } else {
            places[i] = {true, colLeft, below};
        }
        previousTop = places[i].top;
        previousHeight = notes[i].height;
    }
    return places;
}
