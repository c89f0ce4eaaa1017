// Data files of older releases, brought up to the present record in place, and damaged ones made readable.
#pragma once

#include <vector>

#include "storage/DataFiles.h"

enum class Upgraded {
    NotNeeded,  ///< the files are of the present layout, or there are none
    Done,
    Failed,  ///< the files cannot be read or written; they are as they were and must be left alone
};

/// Rewrites KARDEL.DAT when the header says that an older release wrote it, through a temporary file that is
/// put in place in one step; finishes an upgrade that was interrupted. Where the header is missing or
/// damaged, the length tells the layout. A length that fits none is that of a damaged file: its whole records
/// in the present layout stay. What is damaged is copied as it was found before anything is written; `copies`
/// receives the names of copies that were made. MEMO is never touched. Nothing is created where there are no
/// files.
[[nodiscard]] Upgraded UpgradeDataFiles(const DataFiles& data, std::vector<Text>& copies);
