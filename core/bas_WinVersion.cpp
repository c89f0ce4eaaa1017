#include "core/bas_WinVersion.h"

#include <bit>

#include "support/WinText.h"

const WinClass& QueryWinVersion() {
    // Unlike GetVersionEx, this function tells the truth whatever the manifest says.
    using RtlGetVersion = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    const HMODULE library = GetModuleHandleW(L"ntdll.dll");
    const FARPROC address = library == nullptr ? nullptr : GetProcAddress(library, "RtlGetVersion");
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof(info);
    if (address == nullptr || std::bit_cast<RtlGetVersion>(address)(&info) != 0) return classified({});
    return classified({info.dwPlatformId, info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber,
                       info.wProductType != VER_NT_WORKSTATION});
}
