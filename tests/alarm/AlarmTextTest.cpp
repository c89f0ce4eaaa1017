#include "alarm/AlarmText.h"

#include <gtest/gtest.h>

#include "tests/alarm/AlarmCases.h"

namespace {

TEST(Countdown, ShowsWhatIsLeft) {
    struct Case {
        const char* name;
        std::int64_t left;
        TextView text;
    };
    constexpr Case kCases[] = {{"FiveHours", 5 * 3600 + 7 * 60 + 9, u"5:07:09"},
                               {"TwoDays", 2 * 86400 + 5 * 3600 + 7 * 60 + 9, u"2 d   5:07:09"},
                               {"OneSecond", 1, u"0:00:01"},
                               {"LastSecondOfADay", 86399, u"23:59:59"},
                               {"ExactlyADay", 86400, u"1 d   0:00:00"},
                               {"TenHours", 36000, u"10:00:00"},
                               {"ThousandsOfYears", 2912174LL * 86400, u"2912174 d   0:00:00"},
                               {"Overdue", -5, u"0:00:00"}};
    const Now now = at(u"21/11/2026 08:00:00", 900);
    for (const Case& c : kCases)
        EXPECT_EQ(countdownText({now.at.seconds + c.left}, now), c.text) << c.name;
}

TEST(DueText, IsDateHoursAndMinutes) {
    const Now now = at(u"21/11/2026 08:00:00");
    EXPECT_EQ(dueText(dateRule(u"05/12/2026", u"09:30:59", now)), u"05/12/2026 09:30  h.");
}

TEST(DueText, ShowsTheRealDay) {
    const Now now = at(u"05/02/2026 08:00:00");
    EXPECT_EQ(dueText(dateRule(u"31/**/****", u"09:30:00", now)), u"03/03/2026 09:30  h.");
}

TEST(DueText, IsEmptyWithoutAnAlarm) {
    EXPECT_EQ(dueText(AlarmRule()), u"");
}

}  // namespace
