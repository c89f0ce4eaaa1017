// Changes of several values of a section of the settings store at once.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "storage/Settings.h"

struct ValueChange {
    Text key;
    std::optional<Text> text;  ///< none: the value goes

    friend bool operator==(const ValueChange&, const ValueChange&) = default;
};

/// Makes the changes in their order. While several are made the section also holds their list, in the value
/// "pending": a program that ends on the way leaves a section that still reads as changed, and the next
/// change of it finishes them. False when one was refused.
[[nodiscard]] bool changeSection(const Settings& settings, TextView section,
                                 std::vector<ValueChange> changes);

/// Reads a section as it is when what an earlier run left pending is done, and does it. A list that is
/// damaged counts for nothing.
SectionResult readChangedSection(const Settings& settings, TextView section);

/// Whether a key is that of the list.
bool isPendingKey(TextView key);

/// The list as it is stored, and read back; none when it is damaged.
Text pendingText(std::span<const ValueChange> changes);
std::optional<std::vector<ValueChange>> parsePending(TextView text);
