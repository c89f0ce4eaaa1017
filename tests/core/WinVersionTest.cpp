#include "core/WinVersion.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    WinVersion version;
    bool singleClick;
};

constexpr Case kCases[] = {
    {"Windows 95", {1, 4, 0, 950, false}, false},
    {"Windows 95 OSR2", {1, 4, 0, 1111, false}, false},
    {"Windows 98", {1, 4, 10, 1998, false}, false},
    {"Windows 98 SE", {1, 4, 10, 2222, false}, false},
    {"Windows Me", {1, 4, 90, 3000, false}, false},
    {"Windows NT 3.51", {2, 3, 51, 1057, false}, false},
    {"Windows NT 4.0", {2, 4, 0, 1381, false}, false},
    {"Windows 2000", {2, 5, 0, 2195, false}, false},
    {"Windows XP", {2, 5, 1, 2600, false}, false},
    {"Windows XP x64", {2, 5, 2, 3790, false}, false},
    {"Windows Server 2003", {2, 5, 2, 3790, true}, false},
    {"Windows Vista", {2, 6, 0, 6002, false}, true},
    {"Windows 7", {2, 6, 1, 7601, false}, true},
    {"Windows 8", {2, 6, 2, 9200, false}, true},
    {"Windows 8.1", {2, 6, 3, 9600, false}, true},
    {"Windows 10", {2, 10, 0, 19045, false}, true},
    {"Windows 11", {2, 10, 0, 22000, false}, true},
};

TEST(WinVersion, KnowsEveryWindows) {
    for (const Case& c : kCases)
        EXPECT_STREQ(classified(c.version).name, c.name);
}

TEST(WinVersion, EveryWindowsActsOnExactlyOneKindOfClick) {
    for (const Case& c : kCases) {
        EXPECT_EQ(actsOnClick(classified(c.version)), c.singleClick) << c.name;
        EXPECT_EQ(actsOnDoubleClick(classified(c.version)), !c.singleClick) << c.name;
    }
}

TEST(WinVersion, AServerActsAsTheClientOfItsTime) {
    EXPECT_STREQ(classified({2, 6, 1, 7601, true}).name, "Windows 7");
    EXPECT_STREQ(classified({2, 10, 0, 17763, true}).name, "Windows 10");
}

TEST(WinVersion, WhatIsUnknownCountsAsNewest) {
    const WinVersion unknown[] = {
        {}, {2, 10, 1, 30000, false}, {2, 12, 0, 40000, false}, {3, 1, 0, 0, false}, {2, 6, 4, 9841, false}};
    for (const WinVersion& version : unknown) {
        EXPECT_STREQ(classified(version).name, "Windows 11");
        EXPECT_TRUE(actsOnClick(classified(version)));
    }
}

}  // namespace
