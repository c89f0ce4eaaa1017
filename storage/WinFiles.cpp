#include <algorithm>
#include <limits>
#include <memory>
#include <optional>

#include "storage/Files.h"
#include "storage/bas_ExistFile.h"
#include "support/Handles.h"

namespace {

constexpr int kTries = 20;
constexpr DWORD kPause = 50;  // ms between two tries: about a second in all
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kMostAtOnce = 1U << 20;

bool isAbsent(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// Backup programs and virus scanners hold a file for moments.
bool isPassing(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

/// Runs `step`, which answers an error code, until it succeeds, fails for good or has failed `most` times.
template <class Step, class Again>
DWORD retried(Step step, Again again, int most = kTries) {
    for (int tries = 1;; ++tries) {
        const DWORD error = step();
        if (error == ERROR_SUCCESS || tries >= most || !again(error)) return error;
        Sleep(kPause);
    }
}

/// Whoever reads fifty notes of a file that somebody holds waits for it once, not fifty times.
class Patience {
public:
    int tries() const { return gaveUp_ && GetTickCount64() - *gaveUp_ < kSpan ? 1 : kTries; }
    void saw(DWORD error) {
        if (isPassing(error)) {
            gaveUp_ = GetTickCount64();
        } else {
            gaveUp_.reset();
        }
    }

private:
    static constexpr ULONGLONG kSpan = 5000;  // ms
    std::optional<ULONGLONG> gaveUp_;
};

/// While another program has the file open, putting a new one in its place or removing it is denied.
bool isPassingOrDenied(DWORD error) {
    return isPassing(error) || error == ERROR_ACCESS_DENIED;
}

/// The full path, in the form without a limit of length where it needs it.
Text pathOf(const Text& folder, TextView name) {
    Text path = folder + Text(name);
    if (path.size() < MAX_PATH || path.starts_with(u"\\\\?\\")) return path;
    std::replace(path.begin(), path.end(), u'/', u'\\');
    if (path.starts_with(u"\\\\")) return u"\\\\?\\UNC\\" + path.substr(2);
    return u"\\\\?\\" + path;
}

DWORD open(const Text& path, DWORD access, DWORD disposition, UniqueHandle& file) {
    const HANDLE handle =
        CreateFileW(wide(path), access, kShareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return GetLastError();
    file.reset(handle);
    return ERROR_SUCCESS;
}

DWORD seek(const UniqueHandle& file, std::uint64_t offset) {
    LARGE_INTEGER to{};
    to.QuadPart = static_cast<LONGLONG>(offset);
    return SetFilePointerEx(file.get(), to, nullptr, FILE_BEGIN) != FALSE ? ERROR_SUCCESS : GetLastError();
}

DWORD readAll(const UniqueHandle& file, std::size_t size, std::string& bytes) {
    bytes.clear();
    while (bytes.size() < size) {
        const std::size_t before = bytes.size();
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(size - before, kMostAtOnce));
        bytes.resize(before + wanted);
        DWORD got = 0;
        const BOOL done = ReadFile(file.get(), bytes.data() + before, wanted, &got, nullptr);
        const DWORD error = done != FALSE ? DWORD{ERROR_SUCCESS} : GetLastError();
        bytes.resize(before + got);
        if (error != ERROR_SUCCESS) return error;
        if (got == 0) break;
    }
    return ERROR_SUCCESS;
}

DWORD writeAll(const UniqueHandle& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), kMostAtOnce));
        DWORD written = 0;
        if (WriteFile(file.get(), bytes.data(), wanted, &written, nullptr) == FALSE) return GetLastError();
        if (written == 0) return ERROR_DISK_FULL;
        bytes.remove_prefix(written);
    }
    return ERROR_SUCCESS;
}

IoStatus statusOf(DWORD error) {
    if (error == ERROR_SUCCESS) return IoStatus::Done;
    return isAbsent(error) ? IoStatus::Absent : IoStatus::Failed;
}

ReadResult readFile(const Text& path, std::uint64_t offset, std::size_t size, Patience& patience) {
    ReadResult result;
    const DWORD error = retried(
        [&] {
            UniqueHandle file;
            DWORD code = open(path, GENERIC_READ, OPEN_EXISTING, file);
            if (code == ERROR_SUCCESS) code = seek(file, offset);
            return code == ERROR_SUCCESS ? readAll(file, size, result.bytes) : code;
        },
        isPassing, patience.tries());
    patience.saw(error);
    result.status = statusOf(error);
    if (result.status != IoStatus::Done) result.bytes.clear();
    return result;
}

LengthResult lengthOfFile(const Text& path) {
    LengthResult result;
    if (!ExistFile(path)) return {IoStatus::Absent, 0};  // a folder of that name is no file either
    LARGE_INTEGER size{};
    const DWORD error = retried(
        [&]() -> DWORD {
            UniqueHandle file;
            const DWORD code = open(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, file);
            if (code != ERROR_SUCCESS) return code;
            return GetFileSizeEx(file.get(), &size) != FALSE ? ERROR_SUCCESS : GetLastError();
        },
        isPassing);
    result.status = statusOf(error);
    result.bytes = static_cast<std::uint64_t>(size.QuadPart);
    return result;
}

bool writeFile(const Text& path, std::uint64_t offset, std::string_view bytes) {
    const DWORD error = retried(
        [&] {
            UniqueHandle file;
            DWORD code = open(path, GENERIC_WRITE, OPEN_ALWAYS, file);
            if (code == ERROR_SUCCESS) code = seek(file, offset);
            return code == ERROR_SUCCESS ? writeAll(file, bytes) : code;
        },
        isPassing);
    return error == ERROR_SUCCESS;
}

bool moveFile(const Text& from, const Text& to) {
    constexpr DWORD kFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    const DWORD error = retried(
        [&]() -> DWORD {
            return MoveFileExW(wide(from), wide(to), kFlags) != FALSE ? ERROR_SUCCESS : GetLastError();
        },
        isPassingOrDenied);
    return error == ERROR_SUCCESS;
}

bool removeFile(const Text& path) {
    const DWORD error =
        retried([&]() -> DWORD { return DeleteFileW(wide(path)) != FALSE ? ERROR_SUCCESS : GetLastError(); },
                isPassingOrDenied);
    return error == ERROR_SUCCESS || isAbsent(error);
}

bool replaceFile(const Text& path, const Text& temporary, std::string_view bytes) {
    const DWORD error = retried(
        [&]() -> DWORD {
            UniqueHandle file;
            DWORD code = open(temporary, GENERIC_WRITE, CREATE_ALWAYS, file);
            if (code == ERROR_SUCCESS) code = writeAll(file, bytes);
            if (code != ERROR_SUCCESS) return code;
            // On the disk before the name changes: a power cut must not leave an empty file under it.
            return FlushFileBuffers(file.get()) != FALSE ? ERROR_SUCCESS : GetLastError();
        },
        isPassing);
    const bool done = error == ERROR_SUCCESS && moveFile(temporary, path);
    if (!done) DeleteFileW(wide(temporary));
    return done;
}

bool cutFile(const Text& path, std::uint64_t length) {
    const DWORD error = retried(
        [&]() -> DWORD {
            UniqueHandle file;
            DWORD code = open(path, GENERIC_WRITE, OPEN_EXISTING, file);
            if (code == ERROR_SUCCESS) code = seek(file, length);
            if (code != ERROR_SUCCESS) return code;
            return SetEndOfFile(file.get()) != FALSE ? ERROR_SUCCESS : GetLastError();
        },
        isPassing);
    return error == ERROR_SUCCESS;
}

}  // namespace

Files folderFiles(const Text& folder) {
    Files files;
    files.read = [folder, patience = std::make_shared<Patience>()](TextView name, std::uint64_t offset,
                                                                   std::size_t size) {
        return readFile(pathOf(folder, name), offset, size, *patience);
    };
    files.length = [folder](TextView name) { return lengthOfFile(pathOf(folder, name)); };
    files.write = [folder](TextView name, std::uint64_t offset, std::string_view bytes) {
        return writeFile(pathOf(folder, name), offset, bytes);
    };
    files.replace = [folder](TextView name, std::string_view bytes) {
        return replaceFile(pathOf(folder, name), pathOf(folder, Text(name) + u".tmp"), bytes);
    };
    files.rename = [folder](TextView from, TextView to) {
        return moveFile(pathOf(folder, from), pathOf(folder, to));
    };
    files.cut = [folder](TextView name, std::uint64_t length) {
        return cutFile(pathOf(folder, name), length);
    };
    files.remove = [folder](TextView name) { return removeFile(pathOf(folder, name)); };
    return files;
}
