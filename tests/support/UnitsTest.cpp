#include "support/Units.h"

#include <gtest/gtest.h>

namespace {

TEST(Units, PixelsSurviveTheConversionToTwipsAndBack) {
    for (const int dpi : {96, 120, 144, 168, 192}) {
        for (int n = -5000; n <= 5000; ++n) {
            ASSERT_EQ(toPx(toTwips(Px{n}, dpi), dpi), Px{n}) << dpi;
        }
    }
}

TEST(Units, RoundsHalfAwayFromZero) {
    EXPECT_EQ(toPx(Twips{22}, 96), Px{1});
    EXPECT_EQ(toPx(Twips{23}, 96), Px{2});
    EXPECT_EQ(toPx(Twips{-23}, 96), Px{-2});
    EXPECT_EQ(toPx(Twips{-22}, 96), Px{-1});
}

TEST(Units, HugeValuesStayWithin32Bits) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(toTwips(Px{kMost}, 96), Twips{kMost});
    EXPECT_EQ(toTwips(Px{-kMost}, 96).n, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(toPx(Twips{kMost}, 96).n, 143165576);
}

}  // namespace
