#include "note/ResizeRules.h"

#include <gtest/gtest.h>

#include "note/NoteLayout.h"

namespace {

constexpr Twips kWorkEnd{19200};  // 1280 pixels at 96 dpi

struct Case {
    const char* name;
    int start;
    int size;
    int delta;
    int expected;
};

TEST(Resized, WidthStaysWithinItsLimits) {
    constexpr Case kCases[] = {
        {"Grows", 1500, 2910, 15, 2925},
        {"Shrinks", 1500, 2910, -15, 2895},
        {"ShrinksToExactlyTheLeast", 1500, 1145, -15, 1130},
        {"RefusesToGoBelowTheLeast", 1500, 1144, -15, 1144},
        {"RefusesAWideStepAsAWhole", 1500, 1300, -180, 1300},
        {"StopsFlushWithTheWorkArea", 16200, 2910, 180, 3000},
        {"ReachesTheWorkAreaExactly", 16200, 2985, 15, 3000},
        {"StaysAtTheEdge", 16200, 3000, 15, 3000},
        {"BeyondTheEdgeKeepsItsSize", 18000, 2910, 30, 2910},
        {"WhollyBeyondTheEdgeKeepsItsSize", 25000, 2910, 30, 2910},
        {"BeyondTheEdgeCanShrink", 18000, 2910, -30, 2880},
        {"LeftOfTheScreen", -2000, 2910, 30, 2940},
        {"TooSmallAlreadyCanGrow", 1500, 1000, 30, 1030},
        {"TooSmallAlreadyCannotShrink", 1500, 1000, -30, 1000},
    };
    for (const Case& c : kCases) {
        const ResizeAxis axis{Twips{c.start}, Twips{c.size}, kWorkEnd, design::kMinWidth};
        EXPECT_EQ(resized(axis, Twips{c.delta}).n, c.expected) << c.name;
    }
}

TEST(Resized, HeightHasItsOwnMinimum) {
    const ResizeAxis axis{Twips{0}, Twips{720}, kWorkEnd, design::kMinHeight};
    EXPECT_EQ(resized(axis, Twips{-15}).n, 705);
    const ResizeAxis least{Twips{0}, Twips{705}, kWorkEnd, design::kMinHeight};
    EXPECT_EQ(resized(least, Twips{-15}).n, 705);
}

TEST(Resized, HoldingTheGripEndsAtTheLimitsAndNowhereElse) {
    ResizeAxis axis{Twips{15000}, Twips{2910}, kWorkEnd, design::kMinWidth};
    for (int round = 0; round < 1000; ++round)
        axis.size = resized(axis, Twips{15});
    EXPECT_EQ((axis.start + axis.size).n, kWorkEnd.n);
    for (int round = 0; round < 1000; ++round)
        axis.size = resized(axis, Twips{-15});
    EXPECT_EQ(axis.size.n, 1140);  // 204 steps down from 4200; another one would make it 1125
}

TEST(Resized, SmallStepsAddUpWhereAStepIsNotAWholePixel) {
    // At 120 dpi a pixel is 12 twips: eight steps of 15 are ten pixels, none of them lost.
    constexpr int kDpi = 120;
    ResizeAxis axis{Twips{0}, Twips{2400}, kWorkEnd, design::kMinWidth};
    const Px before = toPx(axis.size, kDpi);
    for (int step = 0; step < 8; ++step)
        axis.size = resized(axis, Twips{15});
    EXPECT_EQ((toPx(axis.size, kDpi) - before).n, 10);
}

}  // namespace
