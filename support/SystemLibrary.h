// Windows' own libraries that are needed late or not at all. They are loaded from the system's folder and
// nowhere else, so that a file of the same name beside the program never takes their place.
#pragma once

#include <bit>

#include "support/WinText.h"

/// Loads a library by its name ("winmm.dll") for the rest of the program's life. Null when Windows does not
/// have it.
HMODULE systemLibrary(const Text& name);

/// A function of a library; null when the library is null or has no such function.
template <class Function>
Function systemFunction(HMODULE library, const char* name) {
    return library == nullptr ? nullptr : std::bit_cast<Function>(GetProcAddress(library, name));
}
