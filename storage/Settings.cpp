#include "storage/Settings.h"

Text settingOr(const Settings& settings, TextView section, TextView key, TextView fallback) {
    SettingResult stored = settings.get(section, key);
    return stored.status == IoStatus::Done ? std::move(stored.text) : Text(fallback);
}

bool saveSetting(const Settings& settings, TextView section, TextView key, const Text& text) {
    const KeyText value{Text(key), text};
    return settings.set(section, std::span(&value, 1));
}

bool dropSetting(const Settings& settings, TextView section, TextView key) {
    const SettingResult stored = settings.get(section, key);
    if (stored.status == IoStatus::Failed) return false;
    return stored.text.empty() || settings.removeValue(section, key);
}
