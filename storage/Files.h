// The data folder as the stores see it: whole operations on named files, each opened and closed within the
// call. Windows fills the struct in (`folderFiles`), tests with a folder in memory; and because every change
// goes through here, a test can count changes, let one fail or end the program at one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "support/Text.h"

enum class IoStatus { Done, Absent, Failed };

struct ReadResult {
    IoStatus status = IoStatus::Failed;
    std::string bytes;  ///< shorter than asked for at the end of the file
};

struct LengthResult {
    IoStatus status = IoStatus::Failed;
    std::uint64_t bytes = 0;
};

/// Whether what a call wrote stands on the disk when it returns, whatever happens to the power then.
enum class Flush : bool { No, Yes };

struct Files {
    /// Up to `size` bytes from `offset`. Absent: there is no such file. Failed: it is locked, or the medium
    /// is damaged.
    std::function<ReadResult(TextView name, std::uint64_t offset, std::size_t size)> read;
    /// Absent only when there certainly is no such file.
    std::function<LengthResult(TextView name)> length;
    /// Writes at `offset`; creates the file when it is missing, fills a gap with zero bytes.
    std::function<bool(TextView name, std::uint64_t offset, std::string_view bytes)> write;
    /// Puts what was written to a file on the disk, ahead of whatever is written later.
    std::function<bool(TextView name)> flush;
    /// Puts a file of exactly these bytes in place in one step: at every instant either the old or the new
    /// content stands under the name.
    std::function<bool(TextView name, std::string_view bytes, Flush flush)> replace;
    /// Moves `from` over `to` in one step.
    std::function<bool(TextView from, TextView to)> rename;
    std::function<bool(TextView name, std::uint64_t length)> cut;
    /// True when the file is gone afterwards.
    std::function<bool(TextView name)> remove;
    /// How long (ms) the calls from here on may wait, all together, for files that other programs hold.
    std::function<void(unsigned ms)> mayWait = [](unsigned) {};
};

/// The file through which `replace` puts a new content in place; one is left over when the program was ended
/// in the middle.
inline Text temporaryName(TextView name) {
    return Text(name) + u".tmp";
}

/// The files of a folder on disk. `folder` ends in "\".
Files folderFiles(const Text& folder);
