// Data files of older releases, brought up to the present record in place.
#pragma once

#include "storage/DataFiles.h"

enum class Upgraded {
    NotNeeded,  ///< the files are of the present layout, or there are none
    Done,
    Failed,  ///< the files cannot be read, written or told; they are as they were and must be left alone
};

/// Rewrites KARDEL.DAT when the header says that an older release wrote it, through a temporary file that is
/// put in place in one step; finishes an upgrade that was interrupted. Where there is no header, the length
/// tells the layout; beside one that cannot be read, nothing is rewritten. MEMO is never touched. Nothing is
/// created where there are no files.
Upgraded UpgradeDataFiles(const DataFiles& data);
