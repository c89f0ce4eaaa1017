// Whether a file is there.
#pragma once

#include "support/Text.h"

/// True for a file, false for a folder or nothing.
bool ExistFile(const Text& path);
