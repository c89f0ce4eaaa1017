// The process-wide settings of section "setting".
#pragma once

#include <cstdint>
#include <vector>

#include "storage/Settings.h"

inline constexpr float kDefaultWidth = 2910;   ///< twips
inline constexpr float kDefaultHeight = 1890;  ///< twips

/// The section of the settings store that holds them, and in it the number of notes in the registry.
inline constexpr TextView kSettingSection = u"setting";
inline constexpr TextView kCountKey = u"count";

struct GlobalSettings {
    bool AlignAll = false;            ///< "Automatic position" is on
    bool EasyAlign = false;           ///< "Easy alignment" is on
    bool RestoreWhenPlay = false;     ///< a ringing note is restored from its iconized state
    bool DontDeleteWhenPlay = false;  ///< a note is kept when its one-shot alarm has elapsed
    bool UseRegistry = false;         ///< the user's choice of store; takes effect at a start
    float DefaultWidth = kDefaultWidth;
    float DefaultHeight = kDefaultHeight;
};

/// The values that a rewritten section "setting" holds, "count" first. `useRegistry` is what is stored as
/// "UseRegistry", `count` the number of notes.
std::vector<KeyText> settingValues(const GlobalSettings& settings, int count, bool useRegistry);

/// The number of notes as the registry holds it: any number, 0 without one.
int storedCount(const Settings& settings);

/// A default size as stored, or the built-in one when the text is missing or 0.
float defaultSize(TextView stored, float builtIn);

/// A default size rounded to whole twips.
std::int32_t wholeTwips(float size);
