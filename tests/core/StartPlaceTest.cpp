#include "core/StartPlace.h"

#include <gtest/gtest.h>

namespace {

constexpr TextView kTemp = u"C:\\Users\\anna\\AppData\\Local\\Temp\\";
constexpr TextView kProfile = u"C:\\Users\\anna";

bool inTemp(TextView folder, TextView temporary = kTemp, TextView profile = kProfile) {
    return liesInTemporary(folder, temporary, profile);
}

TEST(StartPlace, InsideAZipIsBelowTheTemporaryFolder) {
    EXPECT_TRUE(inTemp(u"C:\\Users\\anna\\AppData\\Local\\Temp\\Temp1_kardel.zip\\"));
    EXPECT_TRUE(inTemp(u"c:\\users\\ANNA\\appdata\\local\\TEMP\\7zO4A\\"));
    EXPECT_TRUE(inTemp(u"\\\\?\\C:\\Temp\\x\\", u"\\\\?\\C:\\Temp"));
    EXPECT_TRUE(inTemp(kTemp)) << "so is the folder itself";
    EXPECT_TRUE(inTemp(u"D:\\T\\a\\", u"D:\\T\\\\"));
}

TEST(StartPlace, EverywhereElseTheProgramMayStay) {
    EXPECT_FALSE(inTemp(u"C:\\Users\\anna\\AppData\\Local\\Programs\\Kardel\\"));
    EXPECT_FALSE(inTemp(u"C:\\Users\\anna\\AppData\\Local\\Temporary notes\\"));
    EXPECT_FALSE(inTemp(u"C:\\Users\\anna\\AppData\\Local\\"));
    EXPECT_FALSE(inTemp(u"D:\\Users\\anna\\AppData\\Local\\Temp\\x\\"));
}

TEST(StartPlace, ATemporaryFolderThatHoldsEverythingDoesNotCount) {
    EXPECT_FALSE(inTemp(u"C:\\Tools\\", u"C:\\"));
    EXPECT_FALSE(inTemp(u"\\\\?\\C:\\Tools\\", u"\\\\?\\C:\\"));
    EXPECT_FALSE(inTemp(u"C:\\Users\\anna\\Kardel\\", u"C:\\Users\\anna"));
    EXPECT_FALSE(inTemp(u"C:\\Users\\anna\\Kardel\\", u"C:\\Users"));
    EXPECT_FALSE(inTemp(u"C:\\Tools\\", u""));
    EXPECT_FALSE(inTemp(u"", kTemp));
    EXPECT_TRUE(inTemp(u"C:\\Temp\\x", u"C:\\Temp", u""))
        << "a user without a profile has temporary files, too";
}

TEST(StartPlace, TheUserIsToldWhatToDo) {
    EXPECT_NE(startedFromZipPrompt().find(u"Extract the zip"), Text::npos);
}

}  // namespace
