// A folder for one test, removed with its files afterwards.
#pragma once

#include <vector>

#include "support/Handles.h"
#include "support/Number.h"

struct TestFolder {
    Text path;  ///< ends in a backslash

    explicit TestFolder(const Text& name = u"KardelTest") {
        Text temporary(MAX_PATH + 1, u'\0');
        temporary.resize(GetTempPathW(MAX_PATH + 1, wideBuffer(temporary)));
        path = temporary + name + u"-" + decimal(GetCurrentProcessId()) + u"\\";
        CreateDirectoryW(wide(path), nullptr);
    }
    ~TestFolder() {
        for (const Text& name : names())
            DeleteFileW(wide(path + name));
        RemoveDirectoryW(wide(path));
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    /// Names of the files in it.
    std::vector<Text> names() const {
        std::vector<Text> found;
        WIN32_FIND_DATAW entry{};
        const HANDLE search = FindFirstFileW(wide(path + u"*"), &entry);
        if (search == INVALID_HANDLE_VALUE) return found;
        do {
            if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
                found.emplace_back(fromWide(entry.cFileName));
        } while (FindNextFileW(search, &entry) != FALSE);
        FindClose(search);
        return found;
    }

    /// The bytes of a file, or "(none)".
    std::string content(const Text& name) const {
        const HANDLE handle = CreateFileW(wide(path + name), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, OPEN_EXISTING, 0, nullptr);
        if (handle == INVALID_HANDLE_VALUE) return "(none)";
        const UniqueHandle file(handle);
        std::string bytes(1U << 20, '\0');
        DWORD read = 0;
        ReadFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
        bytes.resize(read);
        return bytes;
    }

    /// Holds the file open like another program that shares only what `share` says.
    UniqueHandle hold(const Text& name, DWORD access, DWORD share) const {
        const HANDLE handle = CreateFileW(wide(path + name), access, share, nullptr, OPEN_ALWAYS, 0, nullptr);
        return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
    }
};
