// The per-user settings store of the application: sections of named texts. Windows keeps it in the registry
// (`userSettings`), tests keep it in memory; every change goes through here.
#pragma once

#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "storage/Files.h"
#include "support/Text.h"

using KeyText = std::pair<Text, Text>;  ///< key and its text

struct SettingResult {
    IoStatus status = IoStatus::Failed;
    Text text;  ///< empty unless Done
};

struct SectionResult {
    IoStatus status = IoStatus::Failed;  ///< Absent: no such section
    std::vector<KeyText> values;
    std::vector<Text> unreadable;  ///< keys of values of another type, or that could not be read
};

struct SectionNames {
    IoStatus status = IoStatus::Failed;  ///< Failed: there may be more than those in `names`
    std::vector<Text> names;
};

struct Settings {
    /// Reads a text or a number (as its decimal text). Failed: it could not be read, or is of another type.
    std::function<SettingResult(TextView section, TextView key)> get;
    /// Reads every value of a section in one go.
    std::function<SectionResult(TextView section)> readSection;
    /// Writes the values in order; false when one could not be written.
    std::function<bool(TextView section, std::span<const KeyText> values)> set;
    std::function<bool(TextView section, TextView key)> removeValue;
    std::function<bool(TextView section)> removeSection;
    /// Names of all sections of the application.
    std::function<SectionNames()> sections;
};

/// A value of a section that has been read. Keys are compared without case.
SettingResult valueOf(const SectionResult& section, TextView key);

/// Writes one value.
[[nodiscard]] bool saveSetting(const Settings& settings, TextView section, TextView key, const Text& text);

/// Removes a value, unless there is none.
[[nodiscard]] bool dropSetting(const Settings& settings, TextView section, TextView key);

/// The settings of the user who runs the program, application "Kardel".
Settings userSettings();
