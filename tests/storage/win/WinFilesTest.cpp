// The data folder on a real disk: files held, denied, cut short or on a long path.
#include <gtest/gtest.h>

#include "storage/Files.h"
#include "tests/storage/win/TestFolder.h"

namespace {

using namespace std::string_literals;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Releases a file after a moment, on a thread of its own.
DWORD WINAPI releaseSoon(void* holder) {
    Sleep(200);
    static_cast<UniqueHandle*>(holder)->reset();
    return 0;
}

struct WinFiles : testing::Test {
    TestFolder folder;
    Files files = folderFiles(folder.path);
};

TEST_F(WinFiles, AMissingFileIsAbsent) {
    EXPECT_EQ(files.read(u"F", 0, 10).status, IoStatus::Absent);
    EXPECT_EQ(files.length(u"F").status, IoStatus::Absent);
    EXPECT_FALSE(files.cut(u"F", 0));
    EXPECT_TRUE(files.remove(u"F"));
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(WinFiles, AFileInAMissingFolderIsAbsentAndCannotBeWritten) {
    const Files nowhere = folderFiles(folder.path + u"none\\");
    EXPECT_EQ(nowhere.read(u"F", 0, 10).status, IoStatus::Absent);
    EXPECT_FALSE(nowhere.write(u"F", 0, "x"));
    EXPECT_FALSE(nowhere.replace(u"F", "x", Flush::Yes));
}

TEST_F(WinFiles, WritingCreatesTheFileAndFillsGapsWithZeros) {
    EXPECT_TRUE(files.write(u"F", 3, "abc"));
    EXPECT_EQ(folder.content(u"F"), "\0\0\0abc"s);
    EXPECT_TRUE(files.write(u"F", 1, "z"));
    EXPECT_EQ(folder.content(u"F"), "\0z\0abc"s);
    EXPECT_EQ(files.length(u"F").bytes, 6U);
}

TEST_F(WinFiles, ReadingEndsWithTheFile) {
    files.write(u"F", 0, "abcdef");
    EXPECT_EQ(files.read(u"F", 2, 3).bytes, "cde");
    EXPECT_EQ(files.read(u"F", 4, 10).bytes, "ef");
    const ReadResult beyond = files.read(u"F", 100, 10);
    EXPECT_EQ(beyond.status, IoStatus::Done);
    EXPECT_EQ(beyond.bytes, "");
}

TEST_F(WinFiles, AWholeFileIsPutInPlaceAndNothingElseIsLeft) {
    EXPECT_TRUE(files.replace(u"F", "first, longer", Flush::Yes));
    EXPECT_TRUE(files.replace(u"F", "second", Flush::Yes));
    EXPECT_EQ(folder.content(u"F"), "second");
    EXPECT_EQ(folder.names(), std::vector<Text>{u"F"});
    EXPECT_TRUE(files.replace(u"F", "", Flush::Yes));
    EXPECT_EQ(files.length(u"F").status, IoStatus::Done);
    EXPECT_EQ(files.length(u"F").bytes, 0U);
}

TEST_F(WinFiles, FilesAreCutMovedAndRemoved) {
    files.write(u"F", 0, "abcdef");
    EXPECT_TRUE(files.cut(u"F", 2));
    EXPECT_EQ(folder.content(u"F"), "ab");
    files.write(u"G", 0, "old");
    EXPECT_TRUE(files.rename(u"F", u"G"));
    EXPECT_EQ(folder.content(u"G"), "ab");
    EXPECT_EQ(folder.content(u"F"), "(none)");
    EXPECT_TRUE(files.remove(u"G"));
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(WinFiles, AnotherReaderIsNoObstacle) {
    files.write(u"F", 0, "abc");
    const UniqueHandle reader = folder.hold(u"F", GENERIC_READ, kShareAll);
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(files.read(u"F", 0, 3).bytes, "abc");
    EXPECT_TRUE(files.write(u"F", 0, "x"));
}

TEST_F(WinFiles, AFileHeldForGoodFailsAfterAboutASecond) {
    files.write(u"F", 0, "abc");
    const UniqueHandle holder = folder.hold(u"F", GENERIC_READ, 0);
    ASSERT_NE(holder, nullptr);
    const ULONGLONG begin = GetTickCount64();
    EXPECT_EQ(files.read(u"F", 0, 3).status, IoStatus::Failed);
    const ULONGLONG lasted = GetTickCount64() - begin;
    EXPECT_GE(lasted, 800U);
    EXPECT_LE(lasted, 10000U);
}

TEST_F(WinFiles, AllCallsOfACommandShareItsPatience) {
    files.write(u"F", 0, "abc");
    files.write(u"G", 0, "abc");
    const UniqueHandle first = folder.hold(u"F", GENERIC_READ, 0);
    const UniqueHandle second = folder.hold(u"G", GENERIC_READ, 0);
    ASSERT_TRUE(first != nullptr && second != nullptr);
    const auto lasted = [this](int calls) {
        const ULONGLONG begin = GetTickCount64();
        for (int i = 0; i < calls; ++i) {
            EXPECT_FALSE(files.write(i % 2 == 0 ? u"F" : u"G", 0, "x"));
            EXPECT_FALSE(files.replace(u"F", "x", Flush::Yes));
            EXPECT_EQ(files.read(u"G", 0, 1).status, IoStatus::Failed);
        }
        return GetTickCount64() - begin;
    };
    files.mayWait(600);
    EXPECT_GE(lasted(1), 500U);
    // Each of these would wait as long by itself: half a minute.
    EXPECT_LE(lasted(20), 10000U);
}

TEST_F(WinFiles, NothingIsWrittenOverAFileHeldForGood) {
    files.write(u"F", 0, "abc");
    UniqueHandle holder = folder.hold(u"F", GENERIC_READ, FILE_SHARE_READ);
    ASSERT_NE(holder, nullptr);
    EXPECT_FALSE(files.write(u"F", 0, "x"));
    EXPECT_FALSE(files.replace(u"F", "xyz", Flush::Yes));
    EXPECT_FALSE(files.remove(u"F"));
    holder.reset();
    EXPECT_EQ(folder.content(u"F"), "abc");
    EXPECT_EQ(folder.names(), std::vector<Text>{u"F"});
}

TEST_F(WinFiles, AFileHeldForAMomentIsWaitedFor) {
    files.write(u"F", 0, "abc");
    UniqueHandle holder = folder.hold(u"F", GENERIC_READ, 0);
    ASSERT_NE(holder, nullptr);
    const UniqueHandle release(CreateThread(nullptr, 0, releaseSoon, &holder, 0, nullptr));
    ASSERT_NE(release, nullptr);
    EXPECT_TRUE(files.replace(u"F", "new", Flush::Yes));
    EXPECT_EQ(files.read(u"F", 0, 3).bytes, "new");
    WaitForSingleObject(release.get(), INFINITE);
}

TEST_F(WinFiles, AFolderOfThatNameIsNoFile) {
    CreateDirectoryW(wide(folder.path + u"MEMO"), nullptr);
    EXPECT_NE(files.read(u"MEMO", 0, 1).status, IoStatus::Done);
    EXPECT_FALSE(files.write(u"MEMO", 0, "x"));
    RemoveDirectoryW(wide(folder.path + u"MEMO"));
}

TEST_F(WinFiles, PathsBeyondTheUsualLengthWork) {
    const Text deep = folder.path + Text(200, u'd') + u"\\";
    const Text deeper = deep + Text(200, u'e') + u"\\";
    const Text prefix = u"\\\\?\\";
    ASSERT_TRUE(CreateDirectoryW(wide(prefix + deep), nullptr) != FALSE);
    ASSERT_TRUE(CreateDirectoryW(wide(prefix + deeper), nullptr) != FALSE);
    const Files distant = folderFiles(deeper);
    EXPECT_TRUE(distant.write(u"F", 0, "abc"));
    EXPECT_TRUE(distant.replace(u"F", "xyz", Flush::Yes));
    EXPECT_EQ(distant.read(u"F", 0, 3).bytes, "xyz");
    EXPECT_TRUE(distant.remove(u"F"));
    RemoveDirectoryW(wide(prefix + deeper));
    RemoveDirectoryW(wide(prefix + deep));
}

TEST(WinFilesNames, AFolderNameInAnotherScriptWorks) {
    const TestFolder folder(u"Kardel \u00e8\u0416\u3042");
    const Files files = folderFiles(folder.path);
    EXPECT_TRUE(files.write(u"F", 0, "abc"));
    EXPECT_EQ(files.read(u"F", 0, 3).bytes, "abc");
}

}  // namespace
