#include "core/WinVersion.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    WinVersion version;
    int family;
    int edition;
    bool singleClick;
};

constexpr Case kCases[] = {
    {"Windows 95", {1, 4, 0, 950, false}, 4, 1, false},
    {"Windows 95", {1, 4, 0, 999, false}, 4, 1, false},
    {"Windows 95 OSR2", {1, 4, 0, 1000, false}, 4, 2, false},
    {"Windows 95 OSR2", {1, 4, 0, 1111, false}, 4, 2, false},
    {"Windows 98", {1, 4, 10, 1998, false}, 4, 3, false},
    {"Windows 98", {1, 4, 10, 2221, false}, 4, 3, false},
    {"Windows 98 SE", {1, 4, 10, 2222, false}, 4, 4, false},
    {"Windows Me", {1, 4, 90, 3000, false}, 4, 5, false},
    {"Windows NT 3.51", {2, 3, 51, 1057, false}, 3, 6, false},
    {"Windows NT 4.0", {2, 4, 0, 1381, false}, 4, 7, false},
    {"Windows 2000", {2, 5, 0, 2195, false}, 5, 8, false},
    {"Windows XP", {2, 5, 1, 2600, false}, 5, 9, false},
    {"Windows XP x64", {2, 5, 2, 3790, false}, 5, 10, false},
    {"Windows Server 2003", {2, 5, 2, 3790, true}, 5, 11, false},
    {"Windows Vista", {2, 6, 0, 6002, false}, 6, 12, true},
    {"Windows 7", {2, 6, 1, 7601, false}, 6, 13, true},
    {"Windows 8", {2, 6, 2, 9200, false}, 6, 14, true},
    {"Windows 8.1", {2, 6, 3, 9600, false}, 6, 15, true},
    {"Windows 10", {2, 10, 0, 19045, false}, 10, 16, true},
    {"Windows 10", {2, 10, 0, 21999, false}, 10, 16, true},
    {"Windows 11", {2, 10, 0, 22000, false}, 10, 17, true},
};

TEST(WinVersion, KnowsEveryWindows) {
    for (const Case& c : kCases) {
        const WinClass& found = classified(c.version);
        EXPECT_STREQ(found.name, c.name);
        EXPECT_EQ(found.family, c.family) << c.name;
        EXPECT_EQ(found.edition, c.edition) << c.name;
    }
}

TEST(WinVersion, KnowsTheFirstBuildsOfEveryWindows) {
    for (const Case& c : kCases) {
        WinVersion first = c.version;
        first.build = 0;
        EXPECT_EQ(classified(first).family, c.family) << c.name;
        EXPECT_LE(classified(first).edition, c.edition) << c.name;
    }
    EXPECT_STREQ(classified({2, 5, 2, 0, true}).name, "Windows Server 2003");
}

TEST(WinVersion, EveryWindowsActsOnExactlyOneKindOfClick) {
    for (const Case& c : kCases) {
        EXPECT_EQ(actsOnClick(classified(c.version)), c.singleClick) << c.name;
        EXPECT_EQ(actsOnDoubleClick(classified(c.version)), !c.singleClick) << c.name;
    }
}

TEST(WinVersion, AServerActsLikeTheClientOfItsTime) {
    EXPECT_STREQ(classified({2, 6, 1, 7601, true}).name, "Windows 7");
    EXPECT_STREQ(classified({2, 10, 0, 17763, true}).name, "Windows 10");
}

TEST(WinVersion, AnUnknownVersionCountsAsTheNewest) {
    const WinVersion unknown[] = {
        {}, {2, 10, 1, 30000, false}, {2, 12, 0, 40000, false}, {3, 1, 0, 0, false}, {2, 6, 4, 9841, false}};
    for (const WinVersion& version : unknown) {
        EXPECT_STREQ(classified(version).name, "Windows 11");
        EXPECT_TRUE(actsOnClick(classified(version)));
    }
}

}  // namespace
