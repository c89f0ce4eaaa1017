// Changes several values of a section of the settings store as one change.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "storage/Settings.h"

struct ValueChange {
    Text key;
    std::optional<Text> text;  ///< none: the value is removed

    friend bool operator==(const ValueChange&, const ValueChange&) = default;
};

/// Makes the changes in order. While there are several to make, the section also holds a list of them in the
/// value "pending", so that a program that is killed on the way leaves a section that reads as changed, and
/// the next change finishes them. False when one was refused.
[[nodiscard]] bool changeSection(const Settings& settings, TextView section,
                                 std::vector<ValueChange> changes);

/// Finishes the changes that an earlier run left pending, and reads the section as it then is. A damaged list
/// is ignored.
SectionResult readChangedSection(const Settings& settings, TextView section);

/// Whether a key is the list's.
bool isPendingKey(TextView key);

/// The list in its stored form, and back; none when it is damaged.
Text pendingText(std::span<const ValueChange> changes);
std::optional<std::vector<ValueChange>> parsePending(TextView text);
