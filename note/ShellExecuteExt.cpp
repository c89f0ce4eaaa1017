#include "note/ShellExecuteExt.h"

#include "note/MsgBoxRules.h"
#include "support/WinText.h"

// After windows.h, which this header needs.
#include <shellapi.h>

Text ShellExecuteExt(const Text& ToExec) {
    const HINSTANCE result = ShellExecuteW(nullptr, nullptr, wide(ToExec), nullptr, L"C:\\", SW_SHOWNORMAL);
    return shellMessage(reinterpret_cast<std::intptr_t>(result));
}
