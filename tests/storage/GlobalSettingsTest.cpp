#include "storage/GlobalSettings.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/storage/MemorySettings.h"

namespace {

TEST(GlobalSettings, AreWrittenAsWordsAndWholeNumbers) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    settings.DefaultWidth = 3000.4F;
    const std::vector<KeyText> expected{{u"count", u"7"},
                                        {u"defaultwidth", u"3000"},
                                        {u"defaultheight", u"1890"},
                                        {u"AlignAll", u"False"},
                                        {u"EasyAlign", u"True"},
                                        {u"RestoreWhenPlay", u"False"},
                                        {u"DontDeleteWhenPlay", u"False"},
                                        {u"UseRegistry", u"True"}};
    EXPECT_EQ(settingValues(settings, 7, true), expected);
}

TEST(GlobalSettings, ADefaultSizeOfZeroOrNoneIsTheBuiltInOne) {
    EXPECT_EQ(defaultSize(u"", kDefaultWidth), 2910.0F);
    EXPECT_EQ(defaultSize(u"0", kDefaultWidth), 2910.0F);
    EXPECT_EQ(defaultSize(u"wide", kDefaultHeight), 1890.0F);
    EXPECT_EQ(defaultSize(u"1234.5", kDefaultHeight), 1234.5F);
    EXPECT_EQ(defaultSize(u"-5", kDefaultHeight), -5.0F);
}

TEST(GlobalSettings, ADefaultSizeBeyondAllNumbersStaysFinite) {
    const float huge = defaultSize(u"1e300", kDefaultWidth);
    EXPECT_TRUE(std::isfinite(huge));
    EXPECT_GT(huge, 1e38F);
    EXPECT_EQ(wholeTwips(huge), 2147483647);
    EXPECT_EQ(wholeTwips(-huge), -2147483647);
    EXPECT_EQ(defaultSize(u"1e-300", kDefaultWidth), kDefaultWidth);
}

TEST(Settings, AMissingValueAndOneThatCannotBeReadAreTheFallback) {
    MemorySettings memory;
    memory.put(u"setting", u"Count", u"4");
    memory.put(u"setting", u"empty", u"");
    EXPECT_EQ(settingOr(memory.settings(), u"setting", u"count", u"9"), u"4");
    EXPECT_EQ(settingOr(memory.settings(), u"setting", u"empty", u"9"), u"");
    EXPECT_EQ(settingOr(memory.settings(), u"setting", u"none", u"9"), u"9");
    EXPECT_EQ(settingOr(memory.settings(), u"nowhere", u"count", u"9"), u"9");
    memory.locked.insert(u"setting");
    EXPECT_EQ(settingOr(memory.settings(), u"setting", u"count", u"9"), u"9");
}

TEST(Settings, OneValueIsSavedAndAFailureTold) {
    MemorySettings memory;
    EXPECT_TRUE(saveSetting(memory.settings(), u"setting", u"count", u"4"));
    EXPECT_EQ(memory.text(u"setting", u"count"), u"4");
    memory.changes->allFail = true;
    EXPECT_FALSE(saveSetting(memory.settings(), u"setting", u"count", u"5"));
    EXPECT_EQ(memory.text(u"setting", u"count"), u"4");
}

}  // namespace
