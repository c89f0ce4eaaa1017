#include "support/WinText.h"

#include <limits>

namespace {

int lengthOf(std::size_t size) {
    constexpr auto limit = static_cast<std::size_t>(std::numeric_limits<int>::max());
    return static_cast<int>(size < limit ? size : limit);
}

/// Windows refuses the "no best fit" flag and the lossy report for these code pages.
bool isUnicodePage(unsigned id) {
    return id == CP_UTF8 || id == CP_UTF7 || id == 54936;
}

std::string encodeAnsi(unsigned id, TextView text, bool& lost) {
    if (text.empty()) return {};
    const bool plain = isUnicodePage(id);
    const DWORD flags = plain ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL usedDefault = FALSE;
    BOOL* const report = plain ? nullptr : &usedDefault;
    const int from = lengthOf(text.size());
    const int room = WideCharToMultiByte(id, flags, wideData(text), from, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(room), '\0');
    const int written =
        WideCharToMultiByte(id, flags, wideData(text), from, bytes.data(), room, nullptr, report);
    bytes.resize(static_cast<std::size_t>(written));
    lost = lost || usedDefault != FALSE || written == 0;
    return bytes;
}

Text decodeWith(unsigned id, DWORD flags, std::string_view bytes) {
    const int from = lengthOf(bytes.size());
    const int room = MultiByteToWideChar(id, flags, bytes.data(), from, nullptr, 0);
    Text text(static_cast<std::size_t>(room), u'\0');
    const int written = MultiByteToWideChar(id, flags, bytes.data(), from, wideBuffer(text), room);
    text.resize(static_cast<std::size_t>(written));
    return text;
}

/// The ANSI code page that the user's locale had before the system was set to UTF-8.
unsigned olderCodePage() {
    DWORD id = 0;
    constexpr int room = sizeof(id) / sizeof(WCHAR);
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                   reinterpret_cast<LPWSTR>(&id), room);
    return id == 0 || id == CP_UTF8 ? 1252 : id;
}

Text decodeAnsi(unsigned id, std::string_view bytes) {
    if (bytes.empty()) return {};
    if (id != CP_UTF8) return decodeWith(id, 0, bytes);
    Text text = decodeWith(CP_UTF8, MB_ERR_INVALID_CHARS, bytes);
    return text.empty() ? decodeWith(olderCodePage(), 0, bytes) : text;
}

}  // namespace

Text windowText(HWND window) {
    Text text(static_cast<std::size_t>(GetWindowTextLengthW(window)), u'\0');
    const int room = lengthOf(text.size()) + 1;  // in characters, with the closing zero
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, wideBuffer(text), room)));
    return text;
}

void setWindowText(HWND window, const Text& text) {
    if (windowText(window) != text) SetWindowTextW(window, wide(text));
}

CodePage systemCodePage() {
    return {GetACP(), encodeAnsi, decodeAnsi};
}

Text weekdayName(int mondayFirstIndex) {
    const auto kind = LOCALE_SABBREVDAYNAME1 + static_cast<LCTYPE>(mondayFirstIndex);
    const int room = GetLocaleInfoW(LOCALE_USER_DEFAULT, kind, nullptr, 0);
    if (room <= 0) return {};
    Text name(static_cast<std::size_t>(room), u'\0');
    GetLocaleInfoW(LOCALE_USER_DEFAULT, kind, wideBuffer(name), room);
    name.resize(name.find(u'\0'));
    return name;
}

Text programPath() {
    Text path(MAX_PATH, u'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(nullptr, wideBuffer(path), room);
        if (length < room) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}
