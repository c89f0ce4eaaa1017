// Direct registry access apart from the settings store: single values of any type, and lists of sub-keys.
// Keys are opened with no more rights than necessary and closed within the call.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "support/WinText.h"

/// What a registry value holds: nothing, text, bytes, a number or a list of texts.
using RegData = std::variant<std::monostate, Text, std::string, std::uint32_t, std::vector<Text>>;

/// Writes one value. `valueType` is the registry's type code: 0 (no data), 1 and 2 (text), 3 (bytes), 4
/// (number), 7 (list of texts); any other, or data that does not fit the code, is refused. Creates a missing
/// key. Returns 0 when written, otherwise the low 16 bits of the error; each failure is logged.
std::int16_t SaveRegValue(HKEY root, const Text& keyPath, const Text& valueName, DWORD valueType,
                          const RegData& value);

/// The text of a value (REG_SZ, REG_EXPAND_SZ), or empty when key or value is missing.
std::optional<Text> GetRegValue(HKEY root, const Text& keyPath, const Text& valueName);

struct RegKeyNames {
    LSTATUS code = ERROR_SUCCESS;  ///< of the call that failed; then there may be more names than these
    std::vector<Text> names;
};

/// Names of the direct sub-keys, in the registry's order.
RegKeyNames EnumRegKeys(HKEY root, const Text& keyPath);

/// A value's data as text: a text up to its first zero character, or a number as its decimal text. None for
/// any other type. `data` holds the `bytes` bytes from the registry.
std::optional<Text> regText(DWORD type, Text data, std::size_t bytes);

struct RegTextResult {
    LSTATUS code = ERROR_SUCCESS;  ///< of the query
    DWORD type = REG_NONE;         ///< of the value, when there is one
    std::optional<Text> text;      ///< as `regText` has it
};

/// Reads a value of an open key, however long.
RegTextResult queryText(HKEY key, const Text& valueName);
