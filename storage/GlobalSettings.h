// The process-wide settings of section "setting", and the one table of them that is used for reading, writing
// back, storing and retrying.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "storage/Settings.h"

inline constexpr float kDefaultWidth = 2910;   ///< twips
inline constexpr float kDefaultHeight = 1890;  ///< twips

/// The section of the settings store that holds them.
inline constexpr TextView kSettingSection = u"setting";
/// Values of the section that are not the user's settings: the number of notes in the registry, and whether
/// the local files hold what the registry held.
inline constexpr TextView kCountKey = u"count";
inline constexpr TextView kImportedKey = u"ImportDAT";
/// Lists the marks of drafts that were dropped but could not be removed from their store. A start ignores
/// them.
inline constexpr TextView kDroppedKey = u"dropped";

struct GlobalSettings {
    bool AlignAll = false;            ///< "Automatic position" is on
    bool EasyAlign = false;           ///< "Easy alignment" is on
    bool RestoreWhenPlay = false;     ///< a ringing note is restored from its iconized state
    bool DontDeleteWhenPlay = false;  ///< a note is kept when its one-shot alarm has elapsed
    bool UseRegistry = false;         ///< the user's choice of store, which takes effect at the next start
    float DefaultWidth = kDefaultWidth;
    float DefaultHeight = kDefaultHeight;
};

/// The order of the rows, which is also that in which a whole section is written.
enum class Setting : unsigned char {
    DefaultWidth,
    DefaultHeight,
    AlignAll,
    EasyAlign,
    RestoreWhenPlay,
    DontDeleteWhenPlay,
    UseRegistry,
};

struct SettingRow {
    Setting setting;
    const char16_t* key;
    Text (*write)(const GlobalSettings&);            ///< the stored text form
    void (*read)(GlobalSettings&, TextView stored);  ///< empty text: the default
    bool (*isMissing)(TextView stored);              ///< the default has to be written in its place
};

/// All rows, indexed by Setting.
std::span<const SettingRow> settingRows();
const SettingRow& rowOf(Setting setting);

/// Fills the settings from the section. False, and `settings` untouched, when one of them is there but cannot
/// be read.
[[nodiscard]] bool readSettings(const SectionResult& section, GlobalSettings& settings);

/// Writes the defaults of those that are missing. A default that is refused is also missing at the next
/// start.
void writeMissingSettings(const Settings& store, const SectionResult& section,
                          const GlobalSettings& settings);

/// The texts of all settings.
std::vector<KeyText> settingValues(const GlobalSettings& settings);

/// A default size rounded to whole twips.
std::int32_t wholeTwips(float size);
