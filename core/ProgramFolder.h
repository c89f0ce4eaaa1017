// The program's folder, as Windows itself knows it.
#pragma once

#include "support/Text.h"

/// The one name of a folder, however it was reached: by short names, in capitals, through another drive
/// letter. `folder` itself when it cannot be opened.
Text finalPath(const Text& folder);

/// Whether the folder is below the user's folder for temporary files.
bool isTemporaryFolder(const Text& folder);
