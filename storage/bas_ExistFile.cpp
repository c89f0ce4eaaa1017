#include "storage/bas_ExistFile.h"

#include "support/WinText.h"

bool ExistFile(const Text& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}
