// What a running copy claims: one copy per session, and one per store across all sessions.
#include "core/SingleInstance.h"

#include <gtest/gtest.h>
#include <winternl.h>

#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "tests/storage/win/TestFolder.h"
#include "tests/support/Plain.h"
#include "tests/window/TestDrive.h"

namespace {

struct Entry {  // what NtQueryDirectoryObject returns
    UNICODE_STRING name, type;
};

using OpenDirectory = NTSTATUS(NTAPI*)(HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*);
using QueryDirectory = NTSTATUS(NTAPI*)(HANDLE, void*, ULONG, BOOLEAN, BOOLEAN, ULONG*, ULONG*);

template <class Function>
Function systemFunction(const char* name) {
    return std::bit_cast<Function>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name));
}

/// Names of the program's objects that are visible to every session of the machine.
std::vector<std::wstring> namesForEverybody() {
    constexpr ULONG kQuery = 1;
    constexpr std::size_t kRoom = 4096;
    wchar_t path[] = L"\\BaseNamedObjects";
    UNICODE_STRING folder{sizeof(path) - sizeof(wchar_t), sizeof(path), path};
    OBJECT_ATTRIBUTES which{};
    which.Length = sizeof(which);
    which.ObjectName = &folder;
    HANDLE opened = nullptr;
    EXPECT_EQ(systemFunction<OpenDirectory>("NtOpenDirectoryObject")(&opened, kQuery, &which), 0);
    const UniqueHandle directory(opened);
    const auto query = systemFunction<QueryDirectory>("NtQueryDirectoryObject");
    std::vector<std::wstring> names;
    std::vector<std::uint64_t> buffer(kRoom);
    ULONG context = 0;
    while (query(opened, buffer.data(), kRoom, TRUE, FALSE, &context, nullptr) == 0) {
        const auto* entry = reinterpret_cast<const Entry*>(buffer.data());
        const std::wstring name(entry->name.Buffer, entry->name.Length / sizeof(wchar_t));
        if (name.starts_with(L"Kardel.")) names.push_back(name);
    }
    return names;
}

TEST(SingleInstance, ASessionHasOneCopyUntilItEnds) {
    SingleInstance second;
    {
        SingleInstance first;
        EXPECT_TRUE(claimSession(first));
        EXPECT_FALSE(claimSession(second));
    }
    EXPECT_TRUE(claimSession(second));
    EXPECT_TRUE(namesForEverybody().empty()) << "another user's session has a copy of its own";
}

TEST(SingleInstance, AFolderIsTakenOnceHoweverItIsSpelt) {
    SingleInstance first;
    SingleInstance second;
    EXPECT_TRUE(claimStore(first, false, u"C:\\Notes \u00c4\u6f22\\"));
    EXPECT_FALSE(claimStore(second, false, u"c:\\NOTES \u00e4\u6f22\\"));
    EXPECT_TRUE(claimStore(second, false, u"C:\\Other notes\\"));
    const std::vector<std::wstring> names = namesForEverybody();
    EXPECT_EQ(names.size(), 2U) << "all sessions must see that the folder is in use";
    EXPECT_TRUE(std::all_of(names.begin(), names.end(),
                            [](const std::wstring& name) { return name.starts_with(L"Kardel.Folder."); }));
}

TEST(SingleInstance, AFolderIsTakenOnceHoweverItIsReached) {
    const TestFolder folder(u"Kardel notes of one folder");
    SingleInstance first;
    ASSERT_TRUE(claimStore(first, false, folder.path));
    Text shorter(MAX_PATH, u'\0');
    shorter.resize(GetShortPathNameW(wide(folder.path), wideBuffer(shorter), MAX_PATH));
    ASSERT_NE(shorter, folder.path);
    const Text whole = folder.path.substr(0, folder.path.size() - 1);
    const Drive drive(whole);
    std::vector<Text> ways = {whole, lowered(folder.path), shorter, folder.path + u".\\"};
    if (!underWine()) ways.emplace_back(u"Q:\\");
    for (const Text& way : ways) {
        SingleInstance second;
        EXPECT_FALSE(claimStore(second, false, way)) << plain(way);
    }
}

/// A mutex as another user makes it, which nobody else may open.
UniqueHandle foreignMutex(const std::wstring& name) {
    ACL nobody{};
    SECURITY_DESCRIPTOR descriptor{};
    InitializeAcl(&nobody, sizeof(nobody), ACL_REVISION);
    InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&descriptor, TRUE, &nobody, FALSE);
    SECURITY_ATTRIBUTES security{sizeof(security), &descriptor, FALSE};
    return UniqueHandle(CreateMutexW(&security, FALSE, name.c_str()));
}

TEST(SingleInstance, ACopyThatMayNotBeAskedCountsAsRunning) {
    const UniqueHandle session = foreignMutex(L"Local\\Kardel.Running");
    ASSERT_NE(session, nullptr);
    ASSERT_EQ(CreateMutexW(nullptr, FALSE, L"Local\\Kardel.Running"), nullptr);
    ASSERT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
    SingleInstance copy;
    EXPECT_FALSE(claimSession(copy));

    const TestFolder folder(u"KardelForeign");
    std::wstring name;
    {
        SingleInstance mine;
        ASSERT_TRUE(claimStore(mine, false, folder.path));
        name = L"Global\\" + namesForEverybody().at(0);
    }
    const UniqueHandle theirs = foreignMutex(name);
    ASSERT_NE(theirs, nullptr);
    EXPECT_FALSE(claimStore(copy, false, folder.path));
}

TEST(SingleInstance, AUsersRegistryIsTakenOnceWhateverTheFolder) {
    SingleInstance first;
    SingleInstance second;
    EXPECT_TRUE(claimStore(first, true, u"C:\\one\\"));
    EXPECT_FALSE(claimStore(second, true, u"C:\\two\\"));
    EXPECT_TRUE(claimStore(second, false, u"C:\\one\\")) << "the folder holds other notes";
    first = {};
    EXPECT_TRUE(claimStore(second, true, u"C:\\two\\"));
}

}  // namespace
