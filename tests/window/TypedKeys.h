// The characters that the keys of an editor type.
#pragma once

#include "support/WinText.h"

inline constexpr WPARAM kReturn = 13;
inline constexpr WPARAM kLineFeed = 10;  // what Ctrl+Enter types
inline constexpr WPARAM kEscape = 27;
