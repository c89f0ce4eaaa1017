#include "core/ProgramFolder.h"

#include "core/StartPlace.h"
#include "support/Handles.h"
#include "support/WinText.h"

namespace {

/// Gets a text of any length: `ask` fills a buffer and says how long the text is, or how much room it needs.
template <class Ask>
Text asked(const Ask& ask) {
    Text text(MAX_PATH, u'\0');
    for (;;) {
        const DWORD length = ask(wideBuffer(text), static_cast<DWORD>(text.size()));
        const bool fits = length < text.size();
        text.resize(length);
        if (fits) return text;
    }
}

Text variable(const wchar_t* name) {
    return asked([name](LPWSTR text, DWORD room) { return GetEnvironmentVariableW(name, text, room); });
}

}  // namespace

Text finalPath(const Text& folder) {
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE opened =
        CreateFileW(wide(folder), 0, kShare, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (opened == INVALID_HANDLE_VALUE) return folder;
    const UniqueHandle owner(opened);
    const Text path = asked([opened](LPWSTR text, DWORD room) {
        return GetFinalPathNameByHandleW(opened, text, room, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
    });
    return path.empty() ? folder : path;
}

bool isTemporaryFolder(const Text& folder) {
    // Without these two, Windows uses the user's profile or its own folder for temporary files.
    if (variable(L"TMP").empty() && variable(L"TEMP").empty()) return false;
    const Text temporary = asked([](LPWSTR text, DWORD room) { return GetTempPathW(room, text); });
    const Text profile = variable(L"USERPROFILE");
    return liesInTemporary(finalPath(folder), finalPath(temporary),
                           profile.empty() ? profile : finalPath(profile));
}
