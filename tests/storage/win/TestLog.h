// The error log in a folder of its own for one test.
#pragma once

#include "storage/bas_LogError.h"
#include "tests/storage/win/TestFolder.h"

struct TestLog {
    TestFolder folder{u"KardelTestLog"};
    LogPlace before = logPlace;

    TestLog() { logPlace = {folder.path, u"TEST.log", {}}; }
    ~TestLog() { logPlace = before; }
    TestLog(const TestLog&) = delete;
    TestLog& operator=(const TestLog&) = delete;

    std::string text() const { return folder.content(u"TEST.log"); }

    int lines() const {
        const std::string whole = text();
        int count = 0;
        for (std::size_t at = whole.find("\r\n"); at != std::string::npos; at = whole.find("\r\n", at + 1))
            ++count;
        return count;
    }
    bool has(std::string_view part) const { return text().find(part) != std::string::npos; }
};
