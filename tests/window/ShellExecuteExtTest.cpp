// Opening files and links: what the call answers, and what the shell finds in the thread that makes it.
#include "note/ShellExecuteExt.h"

#include <gtest/gtest.h>

#include "support/Handles.h"
#include "support/WinText.h"
// Needs windows.h before it.
#include <objbase.h>

namespace {

TEST(ShellExecuteExt, SaysWhyAFileDoesNotOpen) {
    EXPECT_EQ(ShellExecuteExt(u"C:\\no such file.txt"), u"File not found.");
    Text folder(MAX_PATH, u'\0');
    folder.resize(GetTempPathW(MAX_PATH, wideBuffer(folder)));
    const Text file = folder + u"document.kardelunknown";
    const HANDLE made = CreateFileW(wide(file), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(made, INVALID_HANDLE_VALUE);
    CloseHandle(made);
    EXPECT_EQ(ShellExecuteExt(file), u"Missing association file type.");
    DeleteFileW(wide(file));
}

struct ComSeen {
    HRESULT during = E_FAIL;
    HRESULT afterwards = E_FAIL;
};
ComSeen* comSeen = nullptr;
HINSTANCE WINAPI lookForCom(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) {
    comSeen->during = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoUninitialize();
    return reinterpret_cast<HINSTANCE>(INT_PTR{33});
}
DWORD WINAPI openWithoutCom(void*) {
    EXPECT_EQ(ShellExecuteExt(u"https://example.com/", lookForCom), u"");
    comSeen->afterwards = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CoUninitialize();
    return 0;
}

TEST(ShellExecuteExt, ComIsThereForTheShellAndGoesWithIt) {
    ComSeen seen;
    comSeen = &seen;
    const UniqueHandle thread(
        CreateThread(nullptr, 0, openWithoutCom, nullptr, 0, nullptr));  // has none so far
    ASSERT_EQ(WaitForSingleObject(thread.get(), 20000), WAIT_OBJECT_0);
    EXPECT_EQ(seen.during, S_FALSE) << "there already";
    EXPECT_EQ(seen.afterwards, S_OK) << "not there any more";
}

}  // namespace
