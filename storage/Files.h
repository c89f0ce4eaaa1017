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

struct Files {
    /// Up to `size` bytes from `offset`. Absent: there is no such file. Failed (locked, damaged medium) is
    /// answered after retries of about a second in all, and at once within five seconds of such an answer.
    std::function<ReadResult(TextView name, std::uint64_t offset, std::size_t size)> read;
    std::function<LengthResult(TextView name)> length;
    /// Writes at `offset`; creates the file when it is missing, fills a gap with zero bytes.
    std::function<bool(TextView name, std::uint64_t offset, std::string_view bytes)> write;
    /// Puts a file of exactly these bytes in place in one step: at every instant either the old or the new
    /// content stands under the name.
    std::function<bool(TextView name, std::string_view bytes)> replace;
    /// Moves `from` over `to` in one step.
    std::function<bool(TextView from, TextView to)> rename;
    std::function<bool(TextView name, std::uint64_t length)> cut;
    /// True when the file is gone afterwards.
    std::function<bool(TextView name)> remove;
};

/// The files of a folder on disk. `folder` ends in "\".
Files folderFiles(const Text& folder);
