#include "storage/Settings.h"

#include <algorithm>

SettingResult valueOf(const SectionResult& section, TextView key) {
    if (section.status != IoStatus::Done) return {section.status, {}};
    const auto isIt = [key](const Text& other) { return isSameName(other, key); };
    if (std::any_of(section.unreadable.begin(), section.unreadable.end(), isIt)) return {};
    const auto found = std::find_if(section.values.begin(), section.values.end(),
                                    [&](const KeyText& value) { return isIt(value.first); });
    if (found == section.values.end()) return {IoStatus::Absent, {}};
    return {IoStatus::Done, found->second};
}

bool saveSetting(const Settings& settings, TextView section, TextView key, const Text& text) {
    const KeyText value{Text(key), text};
    return settings.set(section, std::span(&value, 1));
}

bool dropSetting(const Settings& settings, TextView section, TextView key) {
    return settings.get(section, key).status == IoStatus::Absent || settings.removeValue(section, key);
}
