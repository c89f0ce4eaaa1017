#include "support/Number.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

struct NumberCase {
    TextView text;
    double number;
};

TEST(LeadingNumber, ReadsWhatTheTextBeginsWith) {
    constexpr NumberCase kCases[] = {
        {u"", 0},
        {u"0", 0},
        {u"12", 12},
        {u" \t12", 12},
        {u"-7", -7},
        {u"+7", 7},
        {u"12abc", 12},
        {u"abc12", 0},
        {u"1.5", 1.5},
        {u".5", 0.5},
        {u"-.5x", -0.5},
        {u"1,5", 1},
        {u"1e3", 1000},
        {u"1E+2", 100},
        {u"25e-1", 2.5},
        {u"1e", 1},
        {u"1ex", 1},
        {u"-", 0},
        {u".", 0},
        {u"5.", 5},
        {u"- 5", 0},
        {u"\u0663", 0},
        {u"8454143", 8454143},
        {u"1.2.3", 1.2},
        {u"0x10", 0},
    };
    for (const NumberCase& c : kCases) {
        EXPECT_EQ(leadingNumber(c.text), c.number) << std::string(c.text.begin(), c.text.end());
    }
}

TEST(LeadingNumber, SaturatesInsteadOfFailing) {
    EXPECT_EQ(leadingNumber(u"1e999"), std::numeric_limits<double>::max());
    EXPECT_EQ(leadingNumber(u"-1e999"), -std::numeric_limits<double>::max());
    EXPECT_EQ(leadingNumber(u"1e-999"), 0);
    EXPECT_NEAR(leadingNumber(u"17e307"), 1.7e308, 1e294) << "just below what a number can be";
    EXPECT_EQ(leadingNumber(Text(5000, u'9')), std::numeric_limits<double>::max());
}

TEST(LeadingNumber, KeepsTheMagnitudeOfNumbersWithMoreDigitsThanADouble) {
    EXPECT_NEAR(leadingNumber(u"1234567890123456789012345"), 1.2345678901234568e24, 1e10);
    EXPECT_NEAR(leadingNumber(u"-100000000000000000000000000000000"), -1e32, 1e18);
    EXPECT_NEAR(leadingNumber(u"0.1234567890123456789012345"), 0.12345678901234568, 1e-15);
    EXPECT_NEAR(leadingNumber(u"12345678901234567890.12345e-10"), 1234567890.1234567, 1e-5);
}

TEST(LeadingInt, IsClampedToTheFieldsWidth) {
    EXPECT_EQ(leadingInt16(u"40000"), 32767);
    EXPECT_EQ(leadingInt16(u"-40000"), -32768);
    EXPECT_EQ(leadingInt32(u"99999999999"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(leadingInt32(u"-99999999999"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(leadingInt32(u"1e999"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(leadingInt32(u"2910.6"), 2911);
    EXPECT_EQ(leadingInt32(u"abc"), 0);
}

TEST(Decimal, WritesPlainNumbers) {
    EXPECT_EQ(decimal(0), u"0");
    EXPECT_EQ(decimal(-2147483643), u"-2147483643");
    EXPECT_EQ(decimal(std::numeric_limits<std::int64_t>::min()), u"-9223372036854775808");
    EXPECT_EQ(twoDigits(7), u"07");
    EXPECT_EQ(twoDigits(123), u"123");
}

TEST(ParseBool, ReadsEveryStoredForm) {
    for (const TextView yes : {u"on", u"True", u"VERO", u"yes", u"SI", u"s\u00EC", u"S\u00CC", u"1", u"-1",
                               u"2", u" 1", u"0.5", u"1e3", u"7 dwarfs"}) {
        EXPECT_TRUE(ParseBool(yes)) << std::string(yes.begin(), yes.end());
    }
    for (const TextView no : {u"off", u"False", u"FALSO", u"no", u"No", u"", u"0", u"abc", u"0.0", u"-0",
                              u"truex", u" true", u"s\u00ED"}) {
        EXPECT_FALSE(ParseBool(no)) << std::string(no.begin(), no.end());
    }
}

TEST(BoolText, IsReadBackByParseBool) {
    EXPECT_EQ(boolText(true), u"True");
    EXPECT_EQ(boolText(false), u"False");
    EXPECT_TRUE(ParseBool(boolText(true)));
    EXPECT_FALSE(ParseBool(boolText(false)));
}

}  // namespace
