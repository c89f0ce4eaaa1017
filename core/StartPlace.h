// From where a program may start: not from inside a zip, whose folder is gone with everything in it a moment
// later.
#pragma once

#include "support/Text.h"

/// Whether `folder` is the user's folder for temporary files, or lies below it. All three are full paths,
/// spelled one way; an empty one says nothing. A temporary folder that is a whole drive or holds the user's
/// `profile` is none: programs that stay are there, too.
bool liesInTemporary(TextView folder, TextView temporary, TextView profile);

/// What is told to the user who starts the program from there.
Text startedFromZipPrompt();
