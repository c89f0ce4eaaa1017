#include "alarm/bas_Sorting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

namespace {

std::vector<std::int64_t> sorted(std::vector<std::int64_t> values) {
    Sort(values);
    return values;
}

TEST(Sorting, SortsInPlace) {
    constexpr std::int64_t low = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t high = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(sorted({}), std::vector<std::int64_t>());
    EXPECT_EQ(sorted({5}), std::vector<std::int64_t>({5}));
    EXPECT_EQ(sorted({2, 1}), std::vector<std::int64_t>({1, 2}));
    EXPECT_EQ(sorted({0, 9, 0, -4, 9, 0, 3}), std::vector<std::int64_t>({-4, 0, 0, 0, 3, 9, 9}));
    EXPECT_EQ(sorted({high, 0, low}), std::vector<std::int64_t>({low, 0, high}));
}

TEST(Sorting, AgreesWithTheLibraryOnRandomArrays) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::vector<std::int64_t> values(random() % 40);
        for (std::int64_t& value : values)
            value = static_cast<std::int64_t>(random() % 12) - 6;
        std::vector<std::int64_t> expected = values;
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(sorted(values), expected);
    }
}

TEST(Sorting, SortsLongSortedReversedAndEqualArraysQuickly) {
    std::vector<std::int64_t> values(200000);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<std::int64_t>(i);
    EXPECT_TRUE(std::ranges::is_sorted(sorted(values)));
    std::ranges::reverse(values);
    EXPECT_TRUE(std::ranges::is_sorted(sorted(values)));
    EXPECT_TRUE(std::ranges::is_sorted(sorted(std::vector<std::int64_t>(200000, 7))));
}

}  // namespace
