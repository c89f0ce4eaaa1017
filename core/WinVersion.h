// Which Windows this is, as far as clicks on the tray icon depend on it.
#pragma once

#include <cstdint>

/// A version as Windows reports it.
struct WinVersion {
    std::uint32_t platform = 0;  ///< 1: Windows 95 to Me, 2: NT and everything after
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    bool server = false;
};

/// A system in the table: `family` is its major version, `edition` counts the releases.
struct WinClass {
    int family = 0;
    int edition = 0;
    const char* name = "";
};

/// The entry for a version. A version that is not in the table counts as the newest.
const WinClass& classified(const WinVersion& version);

/// From Windows Vista on the icon reacts to a single click, before that to a double click.
constexpr bool actsOnClick(const WinClass& system) {
    return system.family >= 6 && system.edition >= 12;
}
constexpr bool actsOnDoubleClick(const WinClass& system) {
    return system.family < 6 && system.edition < 12;
}
