#include "note/Monitors.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace {

// A wide one with a task bar at its bottom and, to its left and lower, a second one with a bar of its own.
constexpr Monitor kPrimary{{0, 0, 1920, 1080}, {0, 0, 1920, 1040}, true};
constexpr Monitor kLeft{{-1280, 100, 0, 1124}, {-1280, 100, 0, 1084}, false};
constexpr std::array kBoth{kPrimary, kLeft};

PxRect workAt(const PxRect& rect) {
    return monitorAt(kBoth, rect).work;
}

TEST(Monitors, ANoteLiesOnTheMonitorThatHoldsMostOfIt) {
    EXPECT_EQ(workAt({100, 100, 300, 250}), kPrimary.work);
    EXPECT_EQ(workAt({-300, 200, -100, 350}), kLeft.work);
    EXPECT_EQ(workAt({-60, 200, 140, 350}), kPrimary.work) << "more of it lies right of the border";
    EXPECT_EQ(workAt({-140, 200, 60, 350}), kLeft.work);
}

TEST(Monitors, ANoteOnNoneBelongsToTheNearest) {
    EXPECT_EQ(workAt({5000, 500, 5200, 600}), kPrimary.work);
    EXPECT_EQ(workAt({-9000, 0, -8800, 90}), kLeft.work);
    EXPECT_EQ(workAt({-700, 0, -500, 90}), kLeft.work) << "10 pixels above it, 500 beside the other";
    EXPECT_EQ(workAt({-100, -90, -5, -10}), kPrimary.work) << "5 and 10 pixels away, 110 from the other";
    constexpr int kFar = std::numeric_limits<int>::max();
    EXPECT_EQ(workAt({kFar - 100, kFar - 100, kFar, kFar}), kPrimary.work);
    EXPECT_EQ(workAt({-kFar, 0, -kFar + 100, 100}), kLeft.work);
}

TEST(Monitors, ANoteFarAboveOneMonitorDoesNotBelongToOneThatIsFartherAway) {
    EXPECT_EQ(workAt({-700, -200, -500, -110}), kLeft.work) << "210 pixels above it, 512 from the other";
    EXPECT_EQ(workAt({2000, -200, 2200, -110}), kPrimary.work);
    EXPECT_EQ(workAt({-1600, -200, -1400, -110}), kLeft.work);
}

TEST(Monitors, OfTwoThatAreEquallyNearTheFirstIsTaken) {
    const PxRect between{-110, 10, -10, 90};  // ten pixels above one, ten pixels left of the other
    EXPECT_TRUE(monitorAt(kBoth, between).primary);
    EXPECT_FALSE(monitorAt(std::array{kLeft, kPrimary}, between).primary);
    const PxRect half{-100, 200, 100, 300};
    EXPECT_TRUE(monitorAt(kBoth, half).primary);
    EXPECT_FALSE(monitorAt(std::array{kLeft, kPrimary}, half).primary);
}

TEST(Monitors, ANoteWithoutExtentIsAPoint) {
    EXPECT_EQ(workAt({10, 10, 10, 10}), kPrimary.work);
    EXPECT_EQ(workAt({-10, 200, -10, 200}), kLeft.work);
}

TEST(Monitors, ANoteIsInSightWhenAPixelOfItShows) {
    EXPECT_TRUE(isInSight(kBoth, {1919, 1039, 2100, 1200}));
    EXPECT_FALSE(isInSight(kBoth, {100, 1040, 300, 1060})) << "under the task bar";
    EXPECT_FALSE(isInSight(kBoth, {-500, 1084, -300, 1104})) << "under the other one";
    EXPECT_FALSE(isInSight(kBoth, {1920, 500, 2100, 600}));
    EXPECT_TRUE(isInSight(kBoth, {-1400, 200, -1279, 300}));
    EXPECT_FALSE(isInSight(kBoth, {-1400, 200, -1280, 300}));
    EXPECT_FALSE(isInSight(kBoth, {-700, 0, -500, 100})) << "there is no monitor above the lower one";
}

}  // namespace
