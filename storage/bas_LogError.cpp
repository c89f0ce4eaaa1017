#include "storage/bas_LogError.h"

#include <algorithm>

#include "support/Clock.h"
#include "support/Handles.h"
#include "support/Number.h"

LogPlace logPlace;

namespace {

constexpr TextView kExtension = u".log";

/// The program's file name without folder and extension, in capitals whatever the locale.
Text programName(const Text& path) {
    Text name = path.substr(path.find_last_of(u'\\') + 1);
    name.resize(std::min(name.size(), name.rfind(u'.')));
    const int length = static_cast<int>(name.size());
    if (length > 0) {
        LCMapStringW(LOCALE_INVARIANT, LCMAP_UPPERCASE, wide(name), length, wideBuffer(name), length);
    }
    return name;
}

Text withBackslash(Text folder) {
    if (!folder.empty() && folder.back() != u'\\') folder += u'\\';
    return folder;
}

constexpr LONGLONG kLongest = 1 << 20;  // bytes; a failure that repeats must not fill the disk

UniqueHandle openLog(const Text& path, DWORD access, DWORD disposition) {
    const HANDLE handle = CreateFileW(wide(path), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return UniqueHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

/// A log that has become too long loses its older half.
void shorten(const Text& path) {
    const UniqueHandle file = openLog(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
    LARGE_INTEGER size{};
    if (file == nullptr || GetFileSizeEx(file.get(), &size) == FALSE || size.QuadPart < kLongest) return;
    LARGE_INTEGER half{};
    half.QuadPart = size.QuadPart - kLongest / 2;
    std::string tail(static_cast<std::size_t>(kLongest / 2), '\0');
    DWORD got = 0;
    if (SetFilePointerEx(file.get(), half, nullptr, FILE_BEGIN) == FALSE ||
        ReadFile(file.get(), tail.data(), static_cast<DWORD>(tail.size()), &got, nullptr) == FALSE) {
        return;
    }
    tail.resize(got);
    tail.erase(0, std::min(tail.find('\n'), tail.size() - 1) + 1);
    DWORD written = 0;
    if (SetFilePointerEx(file.get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) == FALSE ||
        WriteFile(file.get(), tail.data(), static_cast<DWORD>(tail.size()), &written, nullptr) == FALSE) {
        return;
    }
    SetEndOfFile(file.get());
}

void appendLine(const Text& path, const Text& line) {
    shorten(path);
    const UniqueHandle file = openLog(path, FILE_APPEND_DATA, OPEN_ALWAYS);
    if (file == nullptr) return;
    const CodePage page = systemCodePage();
    bool lost = false;
    const std::string bytes = page.encode(page.id, line + u"\r\n", lost);
    DWORD written = 0;
    WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

Text logLine(const LogPlace& place, Now now, TextView procedure, TextView message, std::int64_t errorNumber,
             TextView detail) {
    Text line = place.tag + u"\t" + dateText(dateOf(now.at)) + u" " + timeText(timeOf(now.at)) + u"\t";
    if (!detail.empty()) line += Text(detail) + u"; ";
    line += u"(" + Text(procedure) + u")\t[ " + Text(message);
    if (errorNumber != 0) line += u"; Err=" + decimal(errorNumber);
    return line + u" ]";
}

void WriteLog(TextView procedure, TextView message, std::int64_t errorNumber, TextView detail) try {
    const Text program = programPath();
    Text folder = logPlace.folder;
    if (folder.empty()) folder = program.substr(0, program.find_last_of(u'\\') + 1);
    folder = withBackslash(std::move(folder));
    Text name = logPlace.name;
    if (name.empty()) name = programName(program) + Text(kExtension);
    if (!FolderExists(folder)) CreateDirectoryW(wide(folder), nullptr);
    appendLine(folder + name, logLine(logPlace, localNow(), procedure, message, errorNumber, detail));
} catch (...) {
    // A failure to report a failure ends here, as the caller has its own to deal with.
    return;
}

bool FolderExists(const Text& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
