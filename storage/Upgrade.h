// Brings data files of older releases up to the present record, in place, and makes damaged ones readable.
#pragma once

#include <vector>

#include "storage/DataFiles.h"

enum class Upgraded {
    NotNeeded,  ///< the files have the present layout, or there are none
    Done,
    Unreadable,  ///< the files cannot be read now; they are as they were, and a later try may succeed
    Failed,      ///< the files cannot be written; they are as they were and must be left alone
};

/// Rewrites KARDEL.DAT when the header says that an older release wrote it, through a temporary file that
/// replaces it in one step, or finishes an upgrade that was interrupted. If the header is missing or damaged,
/// the file's length decides which layout it has. A length that fits neither the present layout nor that of
/// the header means that the file is damaged: its whole records in the present layout stay, or with the
/// header of an older release all of its records. Damaged files are copied as they were found before anything
/// is written; `copies` receives the names of the copies. MEMO is never touched, and nothing is created where
/// there are no files.
[[nodiscard]] Upgraded UpgradeDataFiles(const DataFiles& data, std::vector<Text>& copies);

/// The names of the files that an upgrade may write besides those of the data files.
std::vector<Text> upgradeFiles(const Files& files);
