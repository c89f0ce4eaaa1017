// Whether the program lies among temporary files, however its folder is reached.
#include "core/ProgramFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/storage/win/TestFolder.h"
#include "tests/window/TestDrive.h"

namespace {

TEST(ProgramFolder, IsRecognisedAsTemporaryHoweverItIsReached) {
    const TestFolder folder(u"Kardel from inside a zip");
    EXPECT_TRUE(isTemporaryFolder(folder.path));
    EXPECT_TRUE(isTemporaryFolder(lowered(folder.path)));
    const Drive drive(folder.path.substr(0, folder.path.size() - 1));
    EXPECT_TRUE(underWine() || isTemporaryFolder(u"Q:\\"));
    Text system(MAX_PATH, u'\0');
    system.resize(GetSystemDirectoryW(wideBuffer(system), MAX_PATH));
    EXPECT_FALSE(isTemporaryFolder(system));
    EXPECT_FALSE(isTemporaryFolder(u"C:\\no such folder\\"));
}

/// An environment that does not say where temporary files belong.
struct NoTemporary {
    std::vector<std::pair<const wchar_t*, std::wstring>> before;
    NoTemporary() {
        for (const wchar_t* name : {L"TMP", L"TEMP"}) {
            std::wstring text(MAX_PATH, L'\0');
            text.resize(GetEnvironmentVariableW(name, text.data(), MAX_PATH));
            before.emplace_back(name, text);
            SetEnvironmentVariableW(name, nullptr);
        }
    }
    ~NoTemporary() {
        for (const auto& [name, text] : before)
            SetEnvironmentVariableW(name, text.c_str());
    }
    NoTemporary(const NoTemporary&) = delete;
    NoTemporary& operator=(const NoTemporary&) = delete;
};

TEST(ProgramFolder, IsNotTemporaryWhereNoFolderForThatIsNamed) {
    const TestFolder folder(u"KardelSomewhere");
    const NoTemporary nobody;
    EXPECT_FALSE(isTemporaryFolder(folder.path));
}

}  // namespace
