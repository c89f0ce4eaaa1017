#include "storage/GlobalSettings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "support/Number.h"

namespace {

template <bool GlobalSettings::*Member>
constexpr SettingRow flag(Setting setting, const char16_t* key) {
    return {setting, key, [](const GlobalSettings& settings) { return boolText(settings.*Member); },
            [](GlobalSettings& settings, TextView stored) { settings.*Member = ParseBool(stored); },
            [](TextView stored) { return stored.empty(); }};
}

/// A size of 0 means the built-in one.
template <float GlobalSettings::*Member>
constexpr SettingRow size(Setting setting, const char16_t* key) {
    return {setting, key,
            [](const GlobalSettings& settings) { return decimal(wholeTwips(settings.*Member)); },
            [](GlobalSettings& settings, TextView stored) {
                constexpr double kLimit = std::numeric_limits<float>::max();
                const auto number = static_cast<float>(std::clamp(leadingNumber(stored), -kLimit, kLimit));
                settings.*Member = number == 0 ? GlobalSettings().*Member : number;
            },
            [](TextView stored) { return leadingNumber(stored) == 0; }};
}

using All = GlobalSettings;

constexpr std::array<SettingRow, 7> kRows{{
    size<&All::DefaultWidth>(Setting::DefaultWidth, u"defaultwidth"),
    size<&All::DefaultHeight>(Setting::DefaultHeight, u"defaultheight"),
    flag<&All::AlignAll>(Setting::AlignAll, u"AlignAll"),
    flag<&All::EasyAlign>(Setting::EasyAlign, u"EasyAlign"),
    flag<&All::RestoreWhenPlay>(Setting::RestoreWhenPlay, u"RestoreWhenPlay"),
    flag<&All::DontDeleteWhenPlay>(Setting::DontDeleteWhenPlay, u"DontDeleteWhenPlay"),
    flag<&All::UseRegistry>(Setting::UseRegistry, u"UseRegistry"),
}};

constexpr bool rowsAreIndexedBySetting() {
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        if (static_cast<std::size_t>(kRows[i].setting) != i) return false;
    }
    return true;
}
static_assert(rowsAreIndexedBySetting());

}  // namespace

std::span<const SettingRow> settingRows() {
    return kRows;
}

const SettingRow& rowOf(Setting setting) {
    return kRows[static_cast<std::size_t>(setting)];
}

bool readSettings(const SectionResult& section, GlobalSettings& settings) {
    GlobalSettings read;
    for (const SettingRow& row : kRows) {
        const SettingResult stored = valueOf(section, row.key);
        if (stored.status == IoStatus::Failed) return false;
        row.read(read, stored.text);
    }
    settings = read;
    return true;
}

void writeMissingSettings(const Settings& store, const SectionResult& section,
                          const GlobalSettings& settings) {
    for (const SettingRow& row : kRows) {
        if (row.isMissing(valueOf(section, row.key).text))
            static_cast<void>(saveSetting(store, kSettingSection, row.key, row.write(settings)));
    }
}

std::vector<KeyText> settingValues(const GlobalSettings& settings) {
    std::vector<KeyText> values;
    values.reserve(kRows.size() + 1);
    for (const SettingRow& row : kRows)
        values.emplace_back(row.key, row.write(settings));
    return values;
}

std::int32_t wholeTwips(float size) {
    constexpr double kLimit = std::numeric_limits<std::int32_t>::max();
    const double rounded = std::nearbyint(static_cast<double>(size));
    return static_cast<std::int32_t>(std::clamp(rounded, -kLimit, kLimit));
}
