// What the program asks and says about its stores.
#pragma once

#include <vector>

#include "support/Text.h"

/// Local files are left over although the registry was chosen; lines are joined by carriage returns.
Text deleteLocalFilesPrompt();
/// Asked before a switch of the store.
Text useLocalFilesPrompt();
Text useRegistryPrompt();
/// The settings or the files cannot be read.
Text cannotReadPrompt();
/// Damaged files were copied as they were; `names` are the names of the copies in the program's folder.
Text damagedFilesPrompt(const std::vector<Text>& names);
