#include "core/Columns.h"

#include <algorithm>

namespace {

constexpr int kCascadeStep = 24;  // pixels from one new note to the next

}  // namespace

PxCorner cascadePlace(int number, int width, int height, const PxRect& work,
                      std::span<const PxCorner> taken) {
    const int steps = std::max(1, std::min(work.width() - width, work.height() - height) / kCascadeStep);
    const auto place = [&](int step) {
        const int offset = step % steps * kCascadeStep;
        return PxCorner{work.left + offset, work.top + offset};
    };
    const int first = number - 1;
    int step = first;
    while (step < first + steps && std::find(taken.begin(), taken.end(), place(step)) != taken.end())
        ++step;
    return place(step);
}

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
