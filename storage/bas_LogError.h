// The error log: one line per failure, appended to a text file beside the program.
#pragma once

#include <cstdint>

#include "support/DateTime.h"
#include "support/Text.h"

/// Where the log goes. Empty fields stand for the program's folder, its file name in capitals with ".log",
/// and no tag.
struct LogPlace {
    Text folder;
    Text name;
    Text tag;
};
extern LogPlace logPlace;

/// One line of the log, without the line end.
Text logLine(const LogPlace& place, Now now, TextView procedure, TextView message, std::int64_t errorNumber,
             TextView detail);

/// Appends a line; a log of a megabyte loses its older half first. Creates the folder (one level) if it is
/// missing. Never fails: a line that cannot be written is lost.
void WriteLog(TextView procedure, TextView message, std::int64_t errorNumber, TextView detail = {});

/// Whether there is a folder of that path, with or without a backslash at its end.
bool FolderExists(const Text& path);
