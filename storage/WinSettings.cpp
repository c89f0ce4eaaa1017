#include <algorithm>
#include <optional>

#include "storage/Settings.h"
#include "storage/bas_LogError.h"
#include "storage/bas_RegistryKey.h"
#include "support/Handles.h"

namespace {

constexpr TextView kAllApplications = u"Software\\VB and VBA Program Settings";
constexpr TextView kApplication = u"Kardel";
// Without a name, removing the application's key would remove every other program's settings.
static_assert(!kApplication.empty());

Text applicationPath() {
    return Text(kAllApplications) + u"\\" + Text(kApplication);
}

/// An empty name would mean the application's own key, and one with a backslash some other key.
bool isSection(TextView section) {
    return !section.empty() && section.find(u'\\') == TextView::npos;
}

Text sectionPath(TextView section) {
    return applicationPath() + u"\\" + Text(section);
}

bool isAbsent(LSTATUS code) {
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND;
}

IoStatus statusOf(LSTATUS code) {
    if (code == ERROR_SUCCESS) return IoStatus::Done;
    return isAbsent(code) ? IoStatus::Absent : IoStatus::Failed;
}

/// Logs every failure but plain absence.
void report(TextView procedure, TextView doing, TextView name, LSTATUS code) {
    if (statusOf(code) != IoStatus::Failed) return;
    WriteLog(procedure, Text(doing) + u" ''" + Text(name) + u"'' failure.", code);
}

LSTATUS open(const Text& path, REGSAM access, UniqueKey& key) {
    HKEY opened = nullptr;
    const LSTATUS code = RegOpenKeyExW(HKEY_CURRENT_USER, wide(path), 0, access, &opened);
    if (code == ERROR_SUCCESS) key.reset(opened);
    return code;
}

SettingResult getSetting(TextView section, TextView key) {
    SettingResult result;
    if (!isSection(section)) return result;
    UniqueKey opened;
    LSTATUS code = open(sectionPath(section), KEY_QUERY_VALUE, opened);
    if (code == ERROR_SUCCESS) {
        RegTextResult query = queryText(opened.get(), Text(key));
        code = query.code;
        if (code == ERROR_SUCCESS && !query.text) code = ERROR_UNSUPPORTED_TYPE;
        if (code == ERROR_SUCCESS) result.text = std::move(*query.text);
    }
    report(u"GetSetting", u"Trying to read the setting", key, code);
    result.status = statusOf(code);
    return result;
}

/// One value of an open key: its name, and its data if that is a text or a number. The room for name and data
/// (characters and bytes) grows as needed.
LSTATUS enumValue(HKEY key, DWORD index, Text& name, std::optional<Text>& value) {
    Text data(1024, u'\0');
    name.assign(256, u'\0');
    for (;;) {
        auto nameLength = static_cast<DWORD>(name.size());
        auto bytes = static_cast<DWORD>(data.size() * sizeof(char16_t));
        DWORD type = REG_NONE;
        const LSTATUS code = RegEnumValueW(key, index, wideBuffer(name), &nameLength, nullptr, &type,
                                           reinterpret_cast<BYTE*>(data.data()), &bytes);
        if (code == ERROR_MORE_DATA) {
            name.resize(name.size() * 2);
            data.resize(std::max<std::size_t>(data.size() * 2, bytes / sizeof(char16_t) + 1));
            continue;
        }
        if (code != ERROR_SUCCESS) return code;
        name.resize(nameLength);
        value = regText(type, std::move(data), bytes);
        return code;
    }
}

SectionResult readSection(TextView section) {
    SectionResult result;
    if (!isSection(section)) return result;
    UniqueKey opened;
    LSTATUS code = open(sectionPath(section), KEY_QUERY_VALUE, opened);
    for (DWORD index = 0; code == ERROR_SUCCESS; ++index) {
        Text name;
        std::optional<Text> text;
        code = enumValue(opened.get(), index, name, text);
        if (code != ERROR_SUCCESS) break;
        if (text) {
            result.values.emplace_back(std::move(name), std::move(*text));
        } else {
            result.unreadable.push_back(std::move(name));
        }
    }
    if (code == ERROR_NO_MORE_ITEMS) code = ERROR_SUCCESS;
    report(u"GetSetting", u"Trying to read the section", section, code);
    result.status = statusOf(code);
    if (result.status != IoStatus::Done) return {result.status, {}, {}};
    return result;
}

bool saveSettings(TextView section, std::span<const KeyText> values) {
    if (!isSection(section)) return false;
    HKEY created = nullptr;
    const LSTATUS code = RegCreateKeyExW(HKEY_CURRENT_USER, wide(sectionPath(section)), 0, nullptr,
                                         REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &created, nullptr);
    if (code != ERROR_SUCCESS) {
        report(u"SaveSetting", u"Trying to create the section", section, code);
        return false;
    }
    const UniqueKey key(created);
    bool done = true;
    for (const auto& [name, text] : values) {
        const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(char16_t));
        const LSTATUS set = RegSetValueExW(key.get(), wide(name), 0, REG_SZ,
                                           reinterpret_cast<const BYTE*>(text.c_str()), bytes);
        if (set == ERROR_SUCCESS) continue;
        report(u"SaveSetting", u"Trying to save the setting", name, set);
        done = false;
    }
    return done;
}

bool removeValue(TextView section, TextView key) {
    if (!isSection(section)) return false;
    UniqueKey opened;
    LSTATUS code = open(sectionPath(section), KEY_SET_VALUE, opened);
    if (code == ERROR_SUCCESS) code = RegDeleteValueW(opened.get(), wide(Text(key)));
    report(u"DeleteSetting", u"Trying to delete the setting", key, code);
    return code == ERROR_SUCCESS || isAbsent(code);
}

bool removeTree(const Text& parent, TextView name) {
    constexpr REGSAM kAccess = DELETE | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE;
    UniqueKey opened;
    LSTATUS code = open(parent, kAccess, opened);
    if (code == ERROR_SUCCESS) code = RegDeleteTreeW(opened.get(), wide(Text(name)));
    report(u"DeleteSetting", u"Trying to delete the section", name, code);
    return code == ERROR_SUCCESS || isAbsent(code);
}

}  // namespace

Settings userSettings() {
    Settings settings;
    settings.get = getSetting;
    settings.readSection = readSection;
    settings.set = saveSettings;
    settings.removeValue = removeValue;
    settings.removeSection = [](TextView section) {
        return isSection(section) && removeTree(applicationPath(), section);
    };
    settings.sections = [] {
        RegKeyNames found = EnumRegKeys(HKEY_CURRENT_USER, applicationPath());
        return SectionNames{statusOf(found.code), std::move(found.names)};
    };
    return settings;
}
