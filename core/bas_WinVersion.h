// Asks Windows for its version.
#pragma once

#include "core/WinVersion.h"

/// The system that the program runs on. If Windows does not say, it counts as the newest.
const WinClass& QueryWinVersion();
