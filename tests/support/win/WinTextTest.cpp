#include "support/WinText.h"

#include <gtest/gtest.h>

namespace {

/// The program's own conversion, for a code page of the test's choice.
CodePage pageOf(unsigned id) {
    CodePage page = systemCodePage();
    page.id = id;
    return page;
}

TEST(SystemCodePage, ReportsLettersThatItCannotKeepInsteadOfGuessing) {
    const CodePage western = pageOf(1252);
    bool lost = false;
    EXPECT_EQ(western.encode(1252, u"caf\u00e9 \u20ac", lost), "caf\xE9 \x80");
    EXPECT_FALSE(lost);
    // Best fit would turn it into a plain "a" and report nothing.
    EXPECT_EQ(western.encode(1252, u"\u03b1", lost), "?");
    EXPECT_TRUE(lost);
}

TEST(SystemCodePage, ReadsDoubleByteText) {
    const CodePage kana = pageOf(932);
    EXPECT_EQ(kana.decode(932, "\x82\xA0!"), u"\u3042!");
}

TEST(SystemCodePage, StillReadsOlderFilesOnASystemSetToUtf8) {
    const CodePage utf8 = pageOf(CP_UTF8);
    EXPECT_EQ(utf8.decode(CP_UTF8, "caf\xC3\xA9"), u"caf\u00e9");
    EXPECT_EQ(utf8.decode(CP_UTF8, "caf\xE9"), u"caf\u00e9");
}

TEST(WeekdayName, HasSevenDifferentOnes) {
    for (int day = 1; day < 7; ++day) {
        EXPECT_FALSE(weekdayName(day).empty());
        EXPECT_NE(weekdayName(day), weekdayName(day - 1));
    }
}

TEST(ProgramPath, NamesTheRunningFile) {
    const Text path = programPath();
    EXPECT_NE(path.find(u":\\"), Text::npos);
    EXPECT_TRUE(path.ends_with(u".exe"));
}

}  // namespace
