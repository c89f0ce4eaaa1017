#include "support/BufferedPaint.h"

#include <gtest/gtest.h>

#include <array>

namespace {

/// Whether there is a picture of this size, down to its last dot.
bool takes(Canvas& canvas, LONG width, LONG height) {
    constexpr COLORREF kInk = RGB(10, 20, 30);
    const WindowDc screen(nullptr);
    const HDC dc = canvas.begin(screen, width, height);
    SetPixelV(dc, width - 1, height - 1, kInk);
    const bool there = GetPixel(dc, width - 1, height - 1) == kInk;
    canvas.done();
    return there;
}

TEST(OffScreenPicture, IsAsLargeAsEachDrawingNeeds) {
    constexpr std::array<SIZE, 8> kSizes{
        {{1, 1}, {200, 20}, {20, 200}, {1500, 1100}, {300, 200}, {4000, 10}, {10, 3000}, {200, 200}}};
    Canvas fresh;
    for (const SIZE& size : kSizes)
        EXPECT_TRUE(takes(fresh, size.cx, size.cy)) << size.cx << " x " << size.cy;
    Canvas largeFirst;
    EXPECT_TRUE(takes(largeFirst, 1500, 1100));
    EXPECT_TRUE(takes(largeFirst, 1500, 1100));
    EXPECT_TRUE(takes(largeFirst, 20, 20));
}

}  // namespace
