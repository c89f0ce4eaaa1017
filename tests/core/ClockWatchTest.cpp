// A clock that was set is distinguished from one that ran on.
#include "core/ClockWatch.h"

#include <gtest/gtest.h>

namespace {

constexpr std::int64_t kStart = 46188LL * kSecondsPerDay;  // some day in 2026

Now clockAt(std::int64_t seconds, int ms = 0) {
    return {{kStart + seconds}, ms};
}

TEST(ClockWatch, ReportsNothingAtFirst) {
    ClockWatch watch;
    EXPECT_EQ(watch.jump(clockAt(0), 5000), 0);
}

TEST(ClockWatch, AClockThatRanOnWasNotSet) {
    ClockWatch watch;
    watch.jump(clockAt(0), 5000);
    EXPECT_EQ(watch.jump(clockAt(0, 500), 5500), 0);
    EXPECT_EQ(watch.jump(clockAt(8 * 3600), 5000 + 8 * 3600 * 1000), 0) << "the machine slept";
    EXPECT_EQ(watch.jump(clockAt(8 * 3600 + 1, 999), 5000 + 8 * 3600 * 1000), 0) << "a small correction";
}

TEST(ClockWatch, ReportsOnceByHowMuchTheClockWasSet) {
    ClockWatch watch;
    watch.jump(clockAt(0), 5000);
    EXPECT_EQ(watch.jump(clockAt(-3600), 5000), -3600);
    EXPECT_EQ(watch.jump(clockAt(-3600, 500), 5500), 0);
    EXPECT_EQ(watch.jump(clockAt(86400 * 365, 500), 6500), 86400 * 365 + 3599);
    EXPECT_EQ(watch.jump(clockAt(86400 * 365 + 2, 500), 6500), 2);
    EXPECT_EQ(watch.jump(clockAt(86400 * 365, 500), 6500), -2);
}

}  // namespace
