#include "support/SystemLibrary.h"

HMODULE systemLibrary(const Text& name) {
    Text path(MAX_PATH, u'\0');
    const UINT length = GetSystemDirectoryW(wideBuffer(path), static_cast<UINT>(path.size()));
    if (length == 0 || length >= path.size()) return nullptr;
    path.resize(length);
    path += u'\\' + name;
    // The full path rather than a search flag, which Windows 7 without updates does not know. Libraries that
    // this one needs are then looked for in its own folder first.
    return LoadLibraryExW(wide(path), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}
