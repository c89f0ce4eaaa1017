// Asks Windows for its version.
#pragma once

#include "core/WinVersion.h"

/// The system that the program runs on. Always an answer: a Windows that does not tell counts as the newest.
const WinClass& QueryWinVersion();
