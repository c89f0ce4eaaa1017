#include "support/DateTime.h"

#include <gtest/gtest.h>

namespace {

TEST(DayNumber, CountsFromTheZeroOfDayCounts) {
    EXPECT_EQ(dayNumber({1899, 12, 30}), 0);
    EXPECT_EQ(dayNumber({1900, 1, 1}), 2);
    EXPECT_EQ(dayNumber({1970, 1, 1}), 25569);
    EXPECT_EQ(dayNumber({2000, 2, 29}), 36585);
}

TEST(DayNumber, CarriesDaysAndMonthsThatDoNotExist) {
    EXPECT_EQ(dayNumber({2025, 2, 31}), dayNumber({2025, 3, 3}));
    EXPECT_EQ(dayNumber({2024, 2, 31}), dayNumber({2024, 3, 2}));
    EXPECT_EQ(dayNumber({2025, 13, 15}), dayNumber({2026, 1, 15}));
    EXPECT_EQ(dayNumber({2025, 2, 29}), dayNumber({2025, 3, 1}));
    EXPECT_EQ(dayNumber({2025, 0, 15}), dayNumber({2024, 12, 15}));
    EXPECT_EQ(dayNumber({2025, 25, 1}), dayNumber({2027, 1, 1}));
}

TEST(DateOfDay, IsTheInverseOverFourCenturies) {
    Date expected{1900, 1, 1};
    for (std::int64_t day = dayNumber(expected); day < dayNumber({2310, 1, 1}); ++day) {
        const Date date = dateOfDay(day);
        ASSERT_EQ(date, expected) << day;
        ASSERT_EQ(dayNumber(date), day);
        // The next day by the calendar's own rules.
        const bool leap = (date.year % 4 == 0 && date.year % 100 != 0) || date.year % 400 == 0;
        constexpr int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        const int length = date.month == 2 && leap ? 29 : kLengths[date.month - 1];
        expected.day = date.day == length ? 1 : date.day + 1;
        if (expected.day == 1) expected.month = date.month % 12 + 1;
        if (expected.day == 1 && expected.month == 1) ++expected.year;
    }
}

TEST(Weekday, CountsFromMonday) {
    EXPECT_EQ(weekdayOf({2026, 11, 16}), 1);
    EXPECT_EQ(weekdayOf({2026, 11, 21}), 6);
    EXPECT_EQ(weekdayOf({2026, 11, 22}), 7);
    EXPECT_EQ(weekdayOf({1899, 12, 30}), 6);
    EXPECT_EQ(weekdayOf({1899, 12, 24}), 7);
}

TEST(Instants, GoToDateAndTimeAndBack) {
    const Instant instant = instantOf({2026, 11, 21}, {23, 59, 59});
    EXPECT_EQ(dateOf(instant), (Date{2026, 11, 21}));
    EXPECT_EQ(timeOf(instant), (TimeOfDay{23, 59, 59}));
    EXPECT_EQ(dateOf({instant.seconds + 1}), (Date{2026, 11, 22}));
    EXPECT_EQ(timeOf({-1}), (TimeOfDay{23, 59, 59}));
    EXPECT_EQ(dateOf({-1}), (Date{1899, 12, 29}));
}

TEST(NowComparison, KnowsMilliseconds) {
    const Instant due{1000};
    EXPECT_FALSE(isAfter({due, 0}, due));
    EXPECT_FALSE(isBefore({due, 0}, due));
    EXPECT_TRUE(isAfter({due, 1}, due));
    EXPECT_TRUE(isBefore({{999}, 999}, due));
}

TEST(DateText, PadsAndKeepsImpossibleDates) {
    EXPECT_EQ(dateText({2026, 1, 5}), u"05/01/2026");
    EXPECT_EQ(dateText({2025, 2, 31}), u"31/02/2025");
    EXPECT_EQ(dateText({2025, 13, 15}), u"15/13/2025");
    EXPECT_EQ(dateText({0, 1, 1}), u"01/01/0000");
    EXPECT_EQ(dateText({25, 1, 1}), u"01/01/0025");
    EXPECT_EQ(dateText({999, 1, 1}), u"01/01/0999");
    EXPECT_EQ(dateText({12345, 1, 1}), u"01/01/12345");
}

TEST(TimeText, Pads) {
    EXPECT_EQ(timeText({7, 5, 9}), u"07:05:09");
    EXPECT_EQ(timeText({23, 59, 59}), u"23:59:59");
}

TEST(ParseDate, ReadsByPosition) {
    EXPECT_EQ(parseDate(u"05/01/2026"), (Date{2026, 1, 5}));
    EXPECT_EQ(parseDate(u"**/**/****"), (Date{0, 0, 0}));
    EXPECT_EQ(parseDate(u"5/"), (Date{5, 0, 5}));
    EXPECT_EQ(parseDate(u""), (Date{0, 0, 0}));
    EXPECT_EQ(parseDate(u"2026"), (Date{2026, 6, 20}));
    EXPECT_EQ(parseDate(u"123456789"), (Date{6789, 45, 12})) << "whatever stands between them";
}

TEST(ParseTime, ReadsByPosition) {
    EXPECT_EQ(parseTime(u"07:05:09"), (TimeOfDay{7, 5, 9}));
    EXPECT_EQ(parseTime(u"07"), (TimeOfDay{7, 0, 0}));
    EXPECT_EQ(parseTime(u""), (TimeOfDay{}));
}

TEST(IsDateText, TakesDaysThatCarryOverButNoRubbish) {
    for (const TextView good : {u"05/01/2026", u"31/02/2025", u"15/13/2025", u"99/99/9999"}) {
        EXPECT_TRUE(isDateText(good)) << std::string(good.begin(), good.end());
    }
    for (const TextView bad : {u"", u"*", u"00/01/2026", u"01/00/2026", u"**/**/****", u"1/1/2026",
                               u"05/01/26", u"05-01-2026", u"05/01/2026 ", u"ab/cd/efgh"}) {
        EXPECT_FALSE(isDateText(bad)) << std::string(bad.begin(), bad.end());
    }
}

TEST(IsTimeText, TakesTimesOfDay) {
    for (const TextView good : {u"00:00:00", u"23:59:59"})
        EXPECT_TRUE(isTimeText(good));
    for (const TextView bad :
         {u"", u"24:00:00", u"12:60:00", u"12:00:60", u"1:00:00", u"12:00", u"aa:bb:cc"}) {
        EXPECT_FALSE(isTimeText(bad)) << std::string(bad.begin(), bad.end());
    }
}

TEST(ParseTime, TakesTwoDigitsOfEach) {
    EXPECT_EQ(parseTime(u"12:34:567").seconds, 56);
    EXPECT_EQ(parseTime(u"123:45:6").hours, 12);
    EXPECT_EQ(parseTime(u"12345678"), (TimeOfDay{12, 45, 78}));
}

}  // namespace
