// Reads the system's clock, which nothing else does.
#pragma once

#include "support/DateTime.h"

/// Local wall-clock time now, to the millisecond.
Now localNow();
