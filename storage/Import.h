// The registry's notes, copied once into new local files.
#pragma once

#include "storage/FileStore.h"
#include "storage/RegistryStore.h"

enum class Imported {
    Nothing,  ///< the registry holds no notes, or only the one that is in the files
    Done,
    Refused,  ///< the files are as they were
};

/// Copies the registry's notes (at most 50) into the local files, after a first note that is not empty. Done
/// only when everything has been read back from the files. Refused, and nothing changed, when a note cannot
/// be read, a text is too long for the files or has letters that they cannot hold, the files cannot be
/// written, or the note that is there leaves no room for all of them.
[[nodiscard]] Imported importRegistryNotes(FileStore& files, const RegistryStore& registry,
                                           int registryCount);

/// Whether the local files hold a note that is not empty, or one that cannot be read now.
bool mayHoldNote(const DataFiles& data);
