#include "storage/bas_ExistFile.h"

#include "support/WinText.h"

IoStatus ExistFile(const Text& path) {
    const DWORD attributes = GetFileAttributesW(wide(path));
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const DWORD error = GetLastError();
        const bool nothing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return nothing ? IoStatus::Absent : IoStatus::Failed;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 ? IoStatus::Done : IoStatus::Absent;
}
