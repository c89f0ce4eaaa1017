#include "storage/bas_LogError.h"

#include <gtest/gtest.h>

#include "storage/bas_ExistFile.h"
#include "tests/storage/win/TestLog.h"

namespace {

Now noon() {
    return {instantOf({2026, 2, 3}, {12, 4, 5}), 678};
}

TEST(LogLine, HoldsItsItemsInOrder) {
    EXPECT_EQ(logLine({}, noon(), u"Proc", u"It failed.", 5, {}),
              u"\t03/02/2026 12:04:05\t(Proc)\t[ It failed.; Err=5 ]");
}

TEST(LogLine, WithoutAnErrorNumberHasNone) {
    EXPECT_EQ(logLine({}, noon(), u"Proc", u"It failed.", 0, {}),
              u"\t03/02/2026 12:04:05\t(Proc)\t[ It failed. ]");
}

TEST(LogLine, BeginsWithTheTagAndShowsTheDetail) {
    LogPlace place;
    place.tag = u"tag";
    EXPECT_EQ(logLine(place, noon(), u"Proc", u"It failed.", -2147467259, u"detail"),
              u"tag\t03/02/2026 12:04:05\tdetail; (Proc)\t[ It failed.; Err=-2147467259 ]");
}

TEST(LogFile, GrowsByOneLinePerCall) {
    const TestLog log;
    WriteLog(u"First", u"one", 0);
    WriteLog(u"Second", u"caf\u00e9", 7, u"detail");
    EXPECT_EQ(log.lines(), 2);
    EXPECT_TRUE(log.has("\t(First)\t[ one ]\r\n"));
    EXPECT_TRUE(log.has("\tdetail; (Second)\t[ caf"));
    EXPECT_TRUE(log.has("; Err=7 ]\r\n"));
    EXPECT_EQ(log.text().front(), '\t');
}

TEST(LogFile, OfAnEndlessFailureStaysShortAndKeepsItsLatestLines) {
    const TestLog log;
    const Text message(20000, u'x');
    for (int i = 1; i <= 120; ++i)
        WriteLog(u"Loop", message, i);
    const std::string text = log.text();
    EXPECT_LE(text.size(), (std::size_t{1} << 20) + 30000);
    EXPECT_GE(text.size(), std::size_t{1} << 19);
    EXPECT_EQ(text.front(), '\t') << "begins with a whole line";
    EXPECT_TRUE(text.ends_with("; Err=120 ]\r\n"));
    EXPECT_TRUE(log.has("; Err=119 ]"));
    EXPECT_FALSE(log.has("; Err=1 ]"));
}

TEST(LogFile, CreatesAMissingFolderOfOneLevel) {
    const TestLog log;
    const Text folder = log.folder.path + u"new";
    logPlace.folder = folder;  // without the backslash at its end
    EXPECT_FALSE(FolderExists(folder));
    WriteLog(u"Proc", u"message", 0);
    EXPECT_TRUE(FolderExists(folder));
    EXPECT_EQ(ExistFile(folder + u"\\TEST.log"), IoStatus::Done);
    DeleteFileW(wide(folder + u"\\TEST.log"));
    RemoveDirectoryW(wide(folder));
}

TEST(LogFile, SilentlyLosesALineThatCannotBeWritten) {
    const TestLog log;
    logPlace.folder = log.folder.path + u"two\\levels";
    WriteLog(u"Proc", u"message", 0);
    EXPECT_FALSE(FolderExists(logPlace.folder));
    EXPECT_TRUE(log.folder.names().empty());
}

TEST(LogFile, IsNamedAfterTheProgramInCapitalsByDefault) {
    const TestLog log;
    logPlace.name.clear();
    WriteLog(u"Proc", u"message", 0);
    ASSERT_EQ(log.folder.names().size(), 1U);
    Text expected = programPath();
    expected = expected.substr(expected.find_last_of(u'\\') + 1);
    expected.resize(expected.rfind(u'.'));
    for (char16_t& c : expected) {
        if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 0x20);
    }
    EXPECT_EQ(log.folder.names()[0], expected + u".log");
}

TEST(Folders, AreDistinguishedFromFiles) {
    const TestFolder folder;
    folder.hold(u"file", GENERIC_WRITE, 0);
    EXPECT_TRUE(FolderExists(folder.path));
    EXPECT_TRUE(FolderExists(folder.path.substr(0, folder.path.size() - 1)));
    EXPECT_FALSE(FolderExists(folder.path + u"file"));
    EXPECT_FALSE(FolderExists(folder.path + u"none"));
    EXPECT_FALSE(FolderExists(u""));
    EXPECT_EQ(ExistFile(folder.path + u"file"), IoStatus::Done);
    EXPECT_EQ(ExistFile(folder.path + u"none"), IoStatus::Absent);
    EXPECT_EQ(ExistFile(folder.path + u"no\\such\\folder"), IoStatus::Absent);
    EXPECT_EQ(ExistFile(folder.path + u"no:name*"), IoStatus::Failed);
    EXPECT_EQ(ExistFile(folder.path), IoStatus::Absent);
}

}  // namespace
