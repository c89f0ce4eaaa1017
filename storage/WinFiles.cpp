#include <algorithm>
#include <limits>
#include <memory>

#include "storage/Files.h"
#include "storage/bas_ExistFile.h"
#include "support/Handles.h"

namespace {

constexpr DWORD kPause = 50;  // ms between two tries
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kMostAtOnce = 1U << 20;

bool isAbsent(DWORD error) {
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// Backup programs and virus scanners keep files open for short moments.
bool isHeld(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

/// While another program has a file open, replacing or removing it is denied.
bool isHeldOrDenied(DWORD error) {
    return isHeld(error) || error == ERROR_ACCESS_DENIED;
}

/// The time that is left for waiting, shared by all files and calls, so that storing fifty notes in a locked
/// file means waiting once and not fifty times.
class Patience {
public:
    void allow(unsigned ms) { left_ = ms; }

    /// Runs `step`, which returns an error code, until it succeeds, fails for good, or the time is over.
    template <class Step, class Again>
    DWORD retried(Step step, Again again) {
        for (;;) {
            const DWORD error = step();
            if (error == ERROR_SUCCESS || left_ < kPause || !again(error)) return error;
            Sleep(kPause);
            left_ -= kPause;
        }
    }

private:
    DWORD left_ = 1000;  // ms
};

/// The full path, if necessary in the form without a length limit.
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

/// One file of the folder, with the waiting time that all files share.
struct NamedFile {
    Text path;
    Patience& patience;

    /// Whether it is worth trying again. A file that is just being deleted denies everything, even reading
    /// its attributes; one that the user may not write does not.
    bool passes(DWORD error) const {
        if (error == ERROR_ACCESS_DENIED) return ExistFile(path) == IoStatus::Failed;
        return isHeld(error);
    }
    template <class Step>
    DWORD retried(Step step) const {
        return patience.retried(step, [this](DWORD error) { return passes(error); });
    }
};

ReadResult readFile(const NamedFile& named, std::uint64_t offset, std::size_t size) {
    ReadResult result;
    result.status = statusOf(named.retried([&] {
        UniqueHandle file;
        DWORD code = open(named.path, GENERIC_READ, OPEN_EXISTING, file);
        if (code == ERROR_SUCCESS) code = seek(file, offset);
        return code == ERROR_SUCCESS ? readAll(file, size, result.bytes) : code;
    }));
    if (result.status != IoStatus::Done) result.bytes.clear();
    return result;
}

LengthResult lengthOfFile(const NamedFile& named) {
    LARGE_INTEGER size{};
    const DWORD error = named.retried([&]() -> DWORD {
        const IoStatus there = ExistFile(named.path);  // a folder of that name is not a file, either
        if (there != IoStatus::Done) return there == IoStatus::Absent ? ERROR_FILE_NOT_FOUND : GetLastError();
        UniqueHandle file;
        const DWORD code = open(named.path, FILE_READ_ATTRIBUTES, OPEN_EXISTING, file);
        if (code != ERROR_SUCCESS) return code;
        return GetFileSizeEx(file.get(), &size) != FALSE ? ERROR_SUCCESS : GetLastError();
    });
    return {statusOf(error), static_cast<std::uint64_t>(size.QuadPart)};
}

bool writeFile(const NamedFile& named, std::uint64_t offset, std::string_view bytes) {
    const DWORD error = named.retried([&] {
        UniqueHandle file;
        DWORD code = open(named.path, GENERIC_WRITE, OPEN_ALWAYS, file);
        if (code == ERROR_SUCCESS) code = seek(file, offset);
        return code == ERROR_SUCCESS ? writeAll(file, bytes) : code;
    });
    return error == ERROR_SUCCESS;
}

bool flushFile(const NamedFile& named) {
    const DWORD error = named.retried([&]() -> DWORD {
        UniqueHandle file;
        const DWORD code = open(named.path, GENERIC_WRITE, OPEN_EXISTING, file);
        if (code != ERROR_SUCCESS) return code;
        return FlushFileBuffers(file.get()) != FALSE ? ERROR_SUCCESS : GetLastError();
    });
    return error == ERROR_SUCCESS;
}

bool moveFile(const Text& from, const Text& to, Flush flush, Patience& patience) {
    const DWORD flags =
        MOVEFILE_REPLACE_EXISTING | (flush == Flush::Yes ? DWORD{MOVEFILE_WRITE_THROUGH} : DWORD{0});
    const DWORD error = patience.retried(
        [&]() -> DWORD {
            return MoveFileExW(wide(from), wide(to), flags) != FALSE ? ERROR_SUCCESS : GetLastError();
        },
        isHeldOrDenied);
    return error == ERROR_SUCCESS;
}

bool removeFile(const NamedFile& named) {
    const DWORD error = named.patience.retried(
        [&]() -> DWORD { return DeleteFileW(wide(named.path)) != FALSE ? ERROR_SUCCESS : GetLastError(); },
        isHeldOrDenied);
    return error == ERROR_SUCCESS || isAbsent(error);
}

bool replaceFile(const NamedFile& named, const Text& temporary, std::string_view bytes, Flush flush) {
    const NamedFile fresh{temporary, named.patience};
    const DWORD error = fresh.retried([&]() -> DWORD {
        UniqueHandle file;
        DWORD code = open(temporary, GENERIC_WRITE, CREATE_ALWAYS, file);
        if (code == ERROR_SUCCESS) code = writeAll(file, bytes);
        if (code != ERROR_SUCCESS || flush == Flush::No) return code;
        // It must be on the disk before the name changes, so that a power cut leaves no empty file under that
        // name.
        return FlushFileBuffers(file.get()) != FALSE ? ERROR_SUCCESS : GetLastError();
    });
    const bool done = error == ERROR_SUCCESS && moveFile(temporary, named.path, flush, named.patience);
    if (!done) DeleteFileW(wide(temporary));
    return done;
}

bool cutFile(const NamedFile& named, std::uint64_t length) {
    const DWORD error = named.retried([&]() -> DWORD {
        UniqueHandle file;
        DWORD code = open(named.path, GENERIC_WRITE, OPEN_EXISTING, file);
        if (code == ERROR_SUCCESS) code = seek(file, length);
        if (code != ERROR_SUCCESS) return code;
        return SetEndOfFile(file.get()) != FALSE ? ERROR_SUCCESS : GetLastError();
    });
    return error == ERROR_SUCCESS;
}

}  // namespace

Files folderFiles(const Text& folder) {
    const auto patience = std::make_shared<Patience>();
    const auto named = [folder, patience](TextView name) {
        return NamedFile{pathOf(folder, name), *patience};
    };
    Files files;
    files.read = [named](TextView name, std::uint64_t offset, std::size_t size) {
        return readFile(named(name), offset, size);
    };
    files.length = [named](TextView name) { return lengthOfFile(named(name)); };
    files.write = [named](TextView name, std::uint64_t offset, std::string_view bytes) {
        return writeFile(named(name), offset, bytes);
    };
    files.flush = [named](TextView name) { return flushFile(named(name)); };
    files.replace = [named, folder](TextView name, std::string_view bytes, Flush flush) {
        return replaceFile(named(name), pathOf(folder, temporaryName(name)), bytes, flush);
    };
    files.rename = [folder, patience](TextView from, TextView to) {
        return moveFile(pathOf(folder, from), pathOf(folder, to), Flush::Yes, *patience);
    };
    files.cut = [named](TextView name, std::uint64_t length) { return cutFile(named(name), length); };
    files.remove = [named](TextView name) { return removeFile(named(name)); };
    files.mayWait = [patience](unsigned ms) { patience->allow(ms); };
    return files;
}
