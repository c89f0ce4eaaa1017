// Whether a file is there.
#pragma once

#include "storage/Files.h"

/// Done for a file, Absent for a folder or nothing, Failed when Windows cannot say.
IoStatus ExistFile(const Text& path);
