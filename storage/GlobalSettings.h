// The process-wide settings of section "setting", and the one table of them that reading, writing back,
// storing and retrying walk.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "storage/Settings.h"

inline constexpr float kDefaultWidth = 2910;   ///< twips
inline constexpr float kDefaultHeight = 1890;  ///< twips

/// The section of the settings store that holds them.
inline constexpr TextView kSettingSection = u"setting";
/// Values of the section that are no settings of the user: the number of notes in the registry, and whether
/// the local files hold what the registry held.
inline constexpr TextView kCountKey = u"count";
inline constexpr TextView kImportedKey = u"ImportDAT";

struct GlobalSettings {
    bool AlignAll = false;            ///< "Automatic position" is on
    bool EasyAlign = false;           ///< "Easy alignment" is on
    bool RestoreWhenPlay = false;     ///< a ringing note is restored from its iconized state
    bool DontDeleteWhenPlay = false;  ///< a note is kept when its one-shot alarm has elapsed
    bool UseRegistry = false;  ///< the user's choice of store, as it is stored; takes effect at a start
    float DefaultWidth = kDefaultWidth;
    float DefaultHeight = kDefaultHeight;
};

/// Order of the rows, which is that of a section that is written anew.
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
    bool (*isMissing)(TextView stored);              ///< the default is to be written in its place
};

/// All rows, indexed by Setting.
std::span<const SettingRow> settingRows();
const SettingRow& rowOf(Setting setting);

/// Fills the settings from the section. False, with `settings` as they were, when one of them is there and
/// cannot be read.
[[nodiscard]] bool readSettings(const SectionResult& section, GlobalSettings& settings);

/// Writes the defaults of those that are missing. What is refused is missing at the next start, too.
void writeMissingSettings(const Settings& store, const SectionResult& section,
                          const GlobalSettings& settings);

/// The texts of all settings.
std::vector<KeyText> settingValues(const GlobalSettings& settings);

/// A default size rounded to whole twips.
std::int32_t wholeTwips(float size);
