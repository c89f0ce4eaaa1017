#include "support/Window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

std::int64_t microseconds() {
    LARGE_INTEGER now{};
    LARGE_INTEGER perSecond{};
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&perSecond);
    return now.QuadPart * 1000000 / perSecond.QuadPart;
}

TEST(PumpFor, IsAccurateToAMillisecond) {
    std::vector<std::int64_t> taken;
    for (int round = 0; round < 40; ++round) {
        const std::int64_t start = microseconds();
        EXPECT_TRUE(pumpFor(7));
        taken.push_back(microseconds() - start);
    }
    // A busy machine may delay some of them, but not all; none may be too short.
    const auto [least, most] = std::minmax_element(taken.begin(), taken.end());
    EXPECT_GE(*least, 7000);
    EXPECT_LT(*least, 8000);
    EXPECT_GE(*most, 7000);
}

TEST(PumpFor, ProcessesMessagesMeanwhile) {
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
    EXPECT_TRUE(pumpFor(0));
    MSG message{};
    EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE));
}

TEST(PumpFor, EndsWithTheProgram) {
    PostQuitMessage(3);
    const std::int64_t start = microseconds();
    EXPECT_FALSE(pumpFor(60000));
    EXPECT_LT(microseconds() - start, 30000000);
    MSG message{};
    ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) << "the outer loop sees it too";
    EXPECT_EQ(message.wParam, 3U);
}

}  // namespace
