#include "Inside.h"

#include <bit>

#include "Commands.h"

namespace {
constexpr ULONGLONG kAnswerWait = 3000;  // ms
}

Inside::Inside(const HookQuestion& question)
    : library(LoadLibraryW(L"kardel_probe_hook.dll")), message(RegisterWindowMessageW(question.message)) {
    if (library == nullptr) throw Failure{L"kardel_probe_hook.dll is not beside the probe"};
    hookProc = std::bit_cast<HOOKPROC (*)()>(GetProcAddress(library, question.procedure))();
    share =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, question.bytes, question.share);
    done = static_cast<LONG*>(MapViewOfFile(share, FILE_MAP_ALL_ACCESS, 0, 0, question.bytes));
}

Inside::~Inside() {
    UnmapViewOfFile(done);
    CloseHandle(share);
    FreeLibrary(library);
}

const void* Inside::ask(HWND window) {
    *done = 0;
    HHOOK hook =
        SetWindowsHookExW(WH_GETMESSAGE, hookProc, library, GetWindowThreadProcessId(window, nullptr));
    PostMessageW(window, message, 0, 0);
    const ULONGLONG end = GetTickCount64() + kAnswerWait;
    while (InterlockedCompareExchange(done, 0, 0) == 0 && IsWindow(window) && GetTickCount64() < end)
        Sleep(5);
    const bool answered = InterlockedCompareExchange(done, 0, 0) != 0;
    if (hook != nullptr) UnhookWindowsHookEx(hook);
    return answered ? done : nullptr;
}
