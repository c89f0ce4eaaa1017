// A drive letter for a folder of the tests.
#pragma once

#include <gtest/gtest.h>

#include "support/WinText.h"

/// Wine knows a folder that has a drive letter only by that letter.
inline bool underWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

/// Gives a folder a drive letter as long as this exists.
struct Drive {
    const Text& folder;
    explicit Drive(const Text& over) : folder(over) {
        EXPECT_NE(DefineDosDeviceW(0, L"Q:", wide(folder)), FALSE);
    }
    ~Drive() { DefineDosDeviceW(DDD_REMOVE_DEFINITION | DDD_EXACT_MATCH_ON_REMOVE, L"Q:", wide(folder)); }
    Drive(const Drive&) = delete;
    Drive& operator=(const Drive&) = delete;
};
