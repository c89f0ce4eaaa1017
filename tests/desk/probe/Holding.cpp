// Holds files and mutexes, as other programs may.
#include <windows.h>

#include "Commands.h"

namespace {

std::vector<HANDLE> held;

void hold(HANDLE handle, Json& out) {
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        throw Failure{L"error " + std::to_wstring(GetLastError())};
    }
    held.push_back(handle);
    out.truth(true);
}

}  // namespace

void holdFile(const Words& words, Json& out) {
    hold(CreateFileW(word(words, 0).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr), out);
}

void holdMutex(const Words& words, Json& out) {
    hold(CreateMutexW(nullptr, FALSE, word(words, 0).c_str()), out);
}

void release(const Words&, Json& out) {
    for (HANDLE handle : held)
        CloseHandle(handle);
    held.clear();
    out.truth(true);
}
