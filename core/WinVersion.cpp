#include "core/WinVersion.h"

#include <algorithm>
#include <iterator>

namespace {

/// A version of Windows, which the row describes from this build on; a server's row, on servers only.
struct Row {
    WinVersion first;
    WinClass system;
};

// Newest first: the first row that fits a version applies.
// clang-format off
constexpr Row kSystems[] = {
    {{2, 10, 0, 22000, false}, {10, 17, "Windows 11"}},
    {{2, 10, 0, 0, false}, {10, 16, "Windows 10"}},
    {{2, 6, 3, 0, false}, {6, 15, "Windows 8.1"}},
    {{2, 6, 2, 0, false}, {6, 14, "Windows 8"}},
    {{2, 6, 1, 0, false}, {6, 13, "Windows 7"}},
    {{2, 6, 0, 0, false}, {6, 12, "Windows Vista"}},
    {{2, 5, 2, 0, true}, {5, 11, "Windows Server 2003"}},
    {{2, 5, 2, 0, false}, {5, 10, "Windows XP x64"}},
    {{2, 5, 1, 0, false}, {5, 9, "Windows XP"}},
    {{2, 5, 0, 0, false}, {5, 8, "Windows 2000"}},
    {{2, 4, 0, 0, false}, {4, 7, "Windows NT 4.0"}},
    {{2, 3, 51, 0, false}, {3, 6, "Windows NT 3.51"}},
    {{1, 4, 90, 0, false}, {4, 5, "Windows Me"}},
    {{1, 4, 10, 2222, false}, {4, 4, "Windows 98 SE"}},
    {{1, 4, 10, 0, false}, {4, 3, "Windows 98"}},
    {{1, 4, 0, 1000, false}, {4, 2, "Windows 95 OSR2"}},
    {{1, 4, 0, 0, false}, {4, 1, "Windows 95"}},
};
// clang-format on

bool fits(const Row& row, const WinVersion& version) {
    const WinVersion& first = row.first;
    return first.platform == version.platform && first.major == version.major &&
           first.minor == version.minor && first.build <= version.build && (version.server || !first.server);
}

}  // namespace

const WinClass& classified(const WinVersion& version) {
    const auto* const found = std::find_if(std::begin(kSystems), std::end(kSystems),
                                           [&version](const Row& row) { return fits(row, version); });
    return found == std::end(kSystems) ? kSystems[0].system : found->system;
}
