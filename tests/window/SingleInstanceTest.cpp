// What a running copy holds, and where: one copy a session, one on a store whoever's session it is.
#include "core/SingleInstance.h"

#include <gtest/gtest.h>
#include <winternl.h>

#include <algorithm>
#include <bit>
#include <vector>

namespace {

struct Entry {  // as NtQueryDirectoryObject answers it
    UNICODE_STRING name, type;
};

using OpenDirectory = NTSTATUS(NTAPI*)(HANDLE*, ACCESS_MASK, OBJECT_ATTRIBUTES*);
using QueryDirectory = NTSTATUS(NTAPI*)(HANDLE, void*, ULONG, BOOLEAN, BOOLEAN, ULONG*, ULONG*);

template <class Function>
Function systemFunction(const char* name) {
    return std::bit_cast<Function>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name));
}

/// Names of the program's objects that every session of the machine sees.
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
    EXPECT_EQ(names.size(), 2U) << "all sessions see who works on a folder";
    EXPECT_TRUE(std::all_of(names.begin(), names.end(),
                            [](const std::wstring& name) { return name.starts_with(L"Kardel.Folder."); }));
}

TEST(SingleInstance, AUsersRegistryIsTakenOnceWhateverTheFolder) {
    SingleInstance first;
    SingleInstance second;
    EXPECT_TRUE(claimStore(first, true, u"C:\\one\\"));
    EXPECT_FALSE(claimStore(second, true, u"C:\\two\\"));
    EXPECT_TRUE(claimStore(second, false, u"C:\\one\\")) << "the folder's notes are others";
    first = {};
    EXPECT_TRUE(claimStore(second, true, u"C:\\two\\"));
}

}  // namespace
