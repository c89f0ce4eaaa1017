#include "core/SingleInstance.h"

#include <cstdint>
#include <vector>

#include "core/ProgramFolder.h"
#include "resources/resource.h"
#include "support/Number.h"

namespace {

constexpr UINT kAnswerWithin = 5000;  // ms

/// Takes a mutex. False when another copy holds it already.
bool claim(UniqueHandle& mutex, const Text& name) {
    const HANDLE handle = CreateMutexW(nullptr, FALSE, wide(name));
    const DWORD error = GetLastError();
    mutex.reset(handle);
    if (handle == nullptr) return error != ERROR_ACCESS_DENIED;  // without any mutexes it is better to start
    if (error == ERROR_ALREADY_EXISTS) mutex.reset();
    return error != ERROR_ALREADY_EXISTS;
}

/// A short name for a text of any length and any letters (64-bit FNV-1a).
Text fingerprint(TextView text) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char16_t c : text) {
        hash = (hash ^ c) * 1099511628211U;
    }
    return decimal(static_cast<std::int64_t>(hash >> 1));
}

/// The bytes of the user's security identifier as text; empty when Windows cannot say.
Text userIdentity() {
    HANDLE token = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) return {};
    const UniqueHandle owner(token);
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<std::uint64_t> buffer(size / sizeof(std::uint64_t) + 1);  // aligned for the structure
    if (GetTokenInformation(token, TokenUser, buffer.data(), size, &size) == FALSE) return {};
    const PSID sid = reinterpret_cast<const TOKEN_USER*>(buffer.data())->User.Sid;
    const auto* bytes = static_cast<const unsigned char*>(sid);
    return Text(bytes, bytes + GetLengthSid(sid));
}

}  // namespace

bool claimSession(SingleInstance& instance) {
    return claim(instance.session, u"Local\\Kardel.Running");
}

bool claimStore(SingleInstance& instance, bool useRegistry, const Text& folder) {
    const Text whose = useRegistry ? u"User." + fingerprint(userIdentity())
                                   : u"Folder." + fingerprint(lowered(finalPath(folder)));
    return claim(useRegistry ? instance.registry : instance.folder, u"Global\\Kardel." + whose);
}

void releaseStore(SingleInstance& instance, bool useRegistry) {
    (useRegistry ? instance.registry : instance.folder).reset();
}

bool wakeRunningCopy() {
    const HWND running = FindWindowW(L"ThunderRT6FormDC", L"kardel:trayicon");
    if (running == nullptr) return false;
    DWORD process = 0;
    GetWindowThreadProcessId(running, &process);
    AllowSetForegroundWindow(process);  // so that its message box may come to the front
    DWORD_PTR answer = 0;
    SendMessageTimeoutW(running, WM_SECONDSTART, 0, 0, SMTO_ABORTIFHUNG, kAnswerWithin, &answer);
    return true;
}
