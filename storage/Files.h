// The data folder as the stores see it: whole operations on named files, each opened and closed within the
// call. `folderFiles` fills the struct in for Windows, and tests fill it in with a folder in memory. Because
// every change goes through here, a test can count changes, let one fail or end the program at one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "support/Text.h"

enum class IoStatus { Done, Absent, Failed };

struct ReadResult {
    IoStatus status = IoStatus::Failed;
    std::string bytes;  ///< shorter than requested at the end of the file
};

struct LengthResult {
    IoStatus status = IoStatus::Failed;
    std::uint64_t bytes = 0;
};

/// Whether what a call wrote is on the disk when it returns, even if the power fails then.
enum class Flush : bool { No, Yes };

struct Files {
    /// Reads up to `size` bytes from `offset`. Absent: there is no such file. Failed: it is locked, or the
    /// medium is damaged.
    std::function<ReadResult(TextView name, std::uint64_t offset, std::size_t size)> read;
    /// Absent only when there certainly is no such file.
    std::function<LengthResult(TextView name)> length;
    /// Writes at `offset`; creates a missing file, and fills a gap with zero bytes.
    std::function<bool(TextView name, std::uint64_t offset, std::string_view bytes)> write;
    /// Flushes what was written to a file to the disk, before anything is written later.
    std::function<bool(TextView name)> flush;
    /// Replaces a file by exactly these bytes in one step: at every instant the name stands for either the
    /// old or the new content.
    std::function<bool(TextView name, std::string_view bytes, Flush flush)> replace;
    /// Moves `from` over `to` in one step.
    std::function<bool(TextView from, TextView to)> rename;
    std::function<bool(TextView name, std::uint64_t length)> cut;
    /// True when the file is gone afterwards.
    std::function<bool(TextView name)> remove;
    /// How long (ms) all further calls together may wait for files that other programs hold.
    std::function<void(unsigned ms)> mayWait = [](unsigned) {};
};

/// The temporary file of `replace`; one is left over when the program was killed in the middle of it.
inline Text temporaryName(TextView name) {
    return Text(name) + u".tmp";
}

/// The files of a folder on disk. `folder` ends in "\".
Files folderFiles(const Text& folder);
