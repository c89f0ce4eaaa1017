// UTF-16 text in the form in which a failing test prints it.
#pragma once

#include <string>

#include "support/Text.h"

/// For text of ASCII letters.
inline std::string plain(const Text& text) {
    return std::string(text.begin(), text.end());
}
