#include "storage/GlobalSettings.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/storage/MemorySettings.h"

namespace {

TEST(GlobalSettings, AreWrittenAsWordsAndWholeNumbers) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    settings.DefaultWidth = 3000.4F;
    settings.UseRegistry = true;
    const std::vector<KeyText> expected{{u"defaultwidth", u"3000"},     {u"defaultheight", u"1890"},
                                        {u"AlignAll", u"False"},        {u"EasyAlign", u"True"},
                                        {u"RestoreWhenPlay", u"False"}, {u"DontDeleteWhenPlay", u"False"},
                                        {u"UseRegistry", u"True"}};
    EXPECT_EQ(settingValues(settings), expected);
}

/// The default size that results from a stored text.
float widthOf(TextView stored) {
    MemorySettings memory;
    memory.put(u"setting", u"DefaultWidth", Text(stored));
    GlobalSettings settings;
    EXPECT_TRUE(readSettings(memory.settings().readSection(u"setting"), settings));
    return settings.DefaultWidth;
}

TEST(GlobalSettings, ADefaultSizeOfZeroOrAMissingOneIsTheBuiltInOne) {
    EXPECT_EQ(widthOf(u""), 2910.0F);
    EXPECT_EQ(widthOf(u"0"), 2910.0F);
    EXPECT_EQ(widthOf(u"wide"), 2910.0F);
    EXPECT_EQ(widthOf(u"1234.5"), 1234.5F);
    EXPECT_EQ(widthOf(u"-5"), -5.0F);
}

TEST(GlobalSettings, ADefaultSizeBeyondAllNumbersStaysFinite) {
    const float huge = widthOf(u"1e300");
    EXPECT_TRUE(std::isfinite(huge));
    EXPECT_GT(huge, 1e38F);
    EXPECT_EQ(wholeTwips(huge), 2147483647);
    EXPECT_EQ(wholeTwips(-huge), -2147483647);
    EXPECT_EQ(widthOf(u"1e-300"), kDefaultWidth);
}

TEST(GlobalSettings, OneThatCannotBeReadIsNotReplacedByItsDefault) {
    for (const SettingRow& row : settingRows()) {
        MemorySettings memory;
        memory.put(u"setting", u"AlignAll", u"True");
        memory.put(u"setting", row.key, u"1");
        memory.unreadable.insert({u"setting", row.key});
        GlobalSettings settings;
        settings.DefaultHeight = 4711;
        EXPECT_FALSE(readSettings(memory.settings().readSection(u"setting"), settings));
        EXPECT_EQ(settings.DefaultHeight, 4711.0F) << "nothing may be taken over";
    }
}

TEST(Settings, AMissingValueDiffersFromOneThatCannotBeRead) {
    MemorySettings memory;
    memory.put(u"setting", u"Count", u"4");
    memory.put(u"setting", u"empty", u"");
    memory.put(u"setting", u"bytes", u"");
    memory.unreadable.insert({u"setting", u"bytes"});
    const SectionResult section = memory.settings().readSection(u"setting");
    EXPECT_EQ(valueOf(section, u"count").text, u"4");
    EXPECT_EQ(valueOf(section, u"empty").status, IoStatus::Done);
    EXPECT_EQ(valueOf(section, u"none").status, IoStatus::Absent);
    EXPECT_EQ(valueOf(section, u"BYTES").status, IoStatus::Failed);
    EXPECT_EQ(valueOf(memory.settings().readSection(u"nowhere"), u"count").status, IoStatus::Absent);
    memory.locked.insert(u"setting");
    EXPECT_EQ(valueOf(memory.settings().readSection(u"setting"), u"count").status, IoStatus::Failed);
}

TEST(Settings, OneValueIsSavedAndAFailureReported) {
    MemorySettings memory;
    EXPECT_TRUE(saveSetting(memory.settings(), u"setting", u"count", u"4"));
    EXPECT_EQ(memory.text(u"setting", u"count"), u"4");
    memory.changes->allFail = true;
    EXPECT_FALSE(saveSetting(memory.settings(), u"setting", u"count", u"5"));
    EXPECT_EQ(memory.text(u"setting", u"count"), u"4");
}

}  // namespace
