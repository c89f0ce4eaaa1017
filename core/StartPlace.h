// Where the program may be started from: not from inside a zip, since that folder soon disappears with
// everything in it.
#pragma once

#include "support/Text.h"

/// Whether `folder` is the user's folder for temporary files, or below it. All three are full paths in the
/// same spelling, or empty when unknown. A temporary folder that is a whole drive or contains the user's
/// `profile` does not count, because installed programs are there, too.
bool liesInTemporary(TextView folder, TextView temporary, TextView profile);

/// What a user who starts the program from there is told.
Text startedFromZipPrompt();
