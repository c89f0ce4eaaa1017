// The only reader of the system's time.
#pragma once

#include "support/DateTime.h"

/// Local wall-clock time now, to the millisecond.
Now localNow();
