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

void appendLine(const Text& path, const Text& line) {
    const HANDLE handle = CreateFileW(wide(path), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return;
    const UniqueHandle file(handle);
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
    // A failure to report a failure ends here: the caller has its own to deal with.
    return;
}

bool FolderExists(const Text& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}
