#include "support/SystemLibrary.h"

HMODULE systemLibrary(const Text& name) {
    Text path(MAX_PATH, u'\0');
    const UINT length = GetSystemDirectoryW(wideBuffer(path), static_cast<UINT>(path.size()));
    if (length == 0 || length >= path.size()) return nullptr;
    path.resize(length);
    path += u'\\' + name;
    // The whole path, and not a search flag: Windows 7 as it was delivered knows none. What the library
    // itself needs is looked for in its own folder first.
    return LoadLibraryExW(wide(path), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}
