#include "note/NoteLayout.h"

#include <algorithm>
#include <cmath>

namespace {

PxRect rectAt(int left, int top, int width, int height) {
    return {left, top, left + std::max(width, 0), top + std::max(height, 0)};
}

/// A stored size in twips, clamped to what the screen's coordinates can take.
Twips shownSize(std::int32_t stored, float byDefault, Twips least) {
    constexpr float kMost = 400000;  // twips; over 26 000 pixels at 96 dpi, below the 16-bit window limit
    const float wanted = stored > 0 ? static_cast<float>(stored) : byDefault;
    const float held = std::clamp(wanted, static_cast<float>(least.n), kMost);
    return Twips{static_cast<std::int32_t>(std::lround(held))};
}

}  // namespace

NoteRects layoutNote(int width, int height, bool iconized, int dpi, int titleHeight) {
    const auto px = [dpi](Twips t) { return toPx(t, dpi).n; };
    const int strip = px(design::kStripHeight);
    const int picWidth = px(design::kPicWidth);
    const int margin = px(design::kMargin);
    const int gripWidth = px(design::kGripWidth);
    const int gripHeight = px(design::kGripHeight);
    const int timeHeight = px(design::kTimeHeight);
    const int notaTop = px(design::kNotaTop);
    const int titleLeft = px(design::kLeadWidth);

    NoteRects rects;
    rects.lbl = rectAt(0, 0, width, strip);
    rects.lbl2 = rectAt(0, 0, px(design::kButtonsWidth), strip);
    rects.pic = rectAt(width - picWidth, 0, picWidth, strip);
    rects.nota = rectAt(margin, notaTop, width - 2 * margin, height - notaTop - margin);
    rects.txtNota = rects.nota;
    const int titleRoom = width - titleLeft - picWidth - px(design::kTitleGap);
    rects.txtTitle = rectAt(titleLeft, (strip - titleHeight) / 2, titleRoom, titleHeight);
    rects.pic2 = iconized ? rectAt(width - picWidth - gripWidth, 0, gripWidth, std::min(gripHeight, strip))
                          : rectAt(width - gripWidth, height - gripHeight, gripWidth, gripHeight);
    const int timeLeft = margin - px(design::kTimeText);  // its text is aligned with that of the body
    rects.pic_time = rectAt(timeLeft, height - timeHeight, width - gripWidth - timeLeft, timeHeight);
    return rects;
}

Twips shownWidth(std::int32_t stored, float defaultWidth) {
    return shownSize(stored, defaultWidth, design::kMinWidth);
}

Twips shownHeight(std::int32_t stored, float defaultHeight) {
    return shownSize(stored, defaultHeight, design::kMinHeight);
}

PxRect movedInto(PxRect window, const PxRect& work, int strip) {
    const int width = window.width();
    const int height = window.height();
    // Right and bottom first, so that a note larger than the work area keeps its title strip in sight.
    const int left = std::max(std::min(window.left, work.right - width), work.left);
    const int top = std::max(std::min(window.top, work.bottom - std::max(strip, height)), work.top);
    return {left, top, left + width, top + height};
}
