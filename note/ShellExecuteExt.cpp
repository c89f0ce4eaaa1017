#include "note/ShellExecuteExt.h"

#include "note/MsgBoxRules.h"
#include "support/SystemLibrary.h"

// After windows.h, which these need.
#include <objbase.h>

namespace {

/// Initialises COM as long as this exists, since the shell opens much through extensions, which need COM.
class Com {
public:
    Com() : library_(systemLibrary(u"ole32.dll")) {
        const auto initialize = systemFunction<decltype(&CoInitializeEx)>(library_, "CoInitializeEx");
        constexpr DWORD kHow = COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE;
        ready_ = initialize != nullptr && SUCCEEDED(initialize(nullptr, kHow));
    }
    ~Com() {
        const auto end = systemFunction<decltype(&CoUninitialize)>(library_, "CoUninitialize");
        if (ready_ && end != nullptr) end();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;

private:
    HMODULE library_;
    bool ready_ = false;
};

}  // namespace

Text ShellExecuteExt(const Text& ToExec, ShellFunction shell) {
    const Com com;
    const HINSTANCE result = shell(nullptr, nullptr, wide(ToExec), nullptr, L"C:\\", SW_SHOWNORMAL);
    return shellMessage(reinterpret_cast<std::intptr_t>(result));
}
