#include "storage/bas_RegistryKey.h"

#include <algorithm>
#include <cstring>

#include "storage/bas_LogError.h"
#include "support/Handles.h"
#include "support/Number.h"

namespace {

constexpr TextView kProcedure = u"Call SaveRegValue";
constexpr DWORD kWriteAccess = KEY_SET_VALUE | KEY_CREATE_SUB_KEY;

void report(TextView beginning, const Text& name, LSTATUS code) {
    WriteLog(kProcedure, Text(beginning) + u" ''" + name + u"'' failure.", code);
}

/// Joins a path with exactly one backslash between the names and none around it.
Text tidied(const Text& path) {
    Text result;
    for (const char16_t c : path) {
        if (c == u'\\' && (result.empty() || result.back() == u'\\')) continue;
        result += c;
    }
    if (!result.empty() && result.back() == u'\\') result.pop_back();
    return result;
}

std::string textBytes(const Text& text) {
    return {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(char16_t)};
}

/// The bytes that go into the registry, or nothing when `value` does not fit the type.
std::optional<std::string> valueBytes(DWORD valueType, const RegData& value) {
    switch (valueType) {
        case REG_NONE:
            return std::string();
        case REG_SZ:
        case REG_EXPAND_SZ:
            if (const auto* text = std::get_if<Text>(&value)) return textBytes(*text);
            break;
        case REG_BINARY:
            if (const auto* bytes = std::get_if<std::string>(&value)) return *bytes;
            break;
        case REG_DWORD:
            if (const auto* number = std::get_if<std::uint32_t>(&value)) {
                return std::string(reinterpret_cast<const char*>(number), sizeof(*number));
            }
            break;
        case REG_MULTI_SZ:
            if (const auto* list = std::get_if<std::vector<Text>>(&value)) {
                std::string block;
                for (const Text& text : *list)
                    block += textBytes(text);
                return block + std::string(sizeof(char16_t), '\0');
            }
            break;
        default:
            break;
    }
    return std::nullopt;
}

LSTATUS openForWriting(HKEY root, const Text& path, UniqueKey& key) {
    HKEY opened = nullptr;
    LSTATUS code = RegOpenKeyExW(root, wide(path), 0, kWriteAccess, &opened);
    if (code != ERROR_SUCCESS) {
        report(u"Trying to open the Registry key", path, code);
        code = RegCreateKeyExW(root, wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE, kWriteAccess, nullptr,
                               &opened, nullptr);
        if (code != ERROR_SUCCESS) report(u"Trying to create the Registry key", path, code);
    }
    if (code == ERROR_SUCCESS) key.reset(opened);
    return code;
}

struct OpenedKey {
    LSTATUS code = ERROR_SUCCESS;
    UniqueKey key;
};

OpenedKey openForReading(HKEY root, const Text& path, REGSAM access) {
    HKEY opened = nullptr;
    const LSTATUS code = RegOpenKeyExW(root, wide(path), 0, access, &opened);
    return {code, UniqueKey(code == ERROR_SUCCESS ? opened : nullptr)};
}

}  // namespace

std::int16_t SaveRegValue(HKEY root, const Text& keyPath, const Text& valueName, DWORD valueType,
                          const RegData& value) {
    const std::optional<std::string> bytes = valueBytes(valueType, value);
    LSTATUS code = ERROR_INVALID_PARAMETER;
    if (bytes) {
        UniqueKey key;
        code = openForWriting(root, tidied(keyPath), key);
        if (code != ERROR_SUCCESS) return static_cast<std::int16_t>(code);
        code =
            RegSetValueExW(key.get(), wide(valueName), 0, valueType,
                           reinterpret_cast<const BYTE*>(bytes->data()), static_cast<DWORD>(bytes->size()));
    }
    if (code != ERROR_SUCCESS) report(u"Trying to save the Registry value", valueName, code);
    return static_cast<std::int16_t>(code);
}

std::optional<Text> GetRegValue(HKEY root, const Text& keyPath, const Text& valueName) {
    const UniqueKey key = openForReading(root, tidied(keyPath), KEY_QUERY_VALUE).key;
    if (key == nullptr) return std::nullopt;
    RegTextResult query = queryText(key.get(), valueName);
    return query.type == REG_DWORD ? std::nullopt : std::move(query.text);
}

std::optional<Text> regText(DWORD type, Text data, std::size_t bytes) {
    if (type == REG_DWORD && bytes == sizeof(std::uint32_t)) {
        std::uint32_t number = 0;
        std::memcpy(&number, data.data(), sizeof(number));
        return decimal(number);
    }
    if (type != REG_SZ && type != REG_EXPAND_SZ) return std::nullopt;
    data.resize(std::min(data.size(), bytes / sizeof(char16_t)));
    data.resize(std::min(data.size(), data.find(u'\0')));  // the closing zero may be missing
    return data;
}

RegTextResult queryText(HKEY key, const Text& valueName) {
    Text text(64, u'\0');
    for (;;) {
        auto bytes = static_cast<DWORD>(text.size() * sizeof(char16_t));
        DWORD type = REG_NONE;
        const LSTATUS code = RegQueryValueExW(key, wide(valueName), nullptr, &type,
                                              reinterpret_cast<BYTE*>(text.data()), &bytes);
        if (code == ERROR_MORE_DATA) {
            // Another program may lengthen the value meanwhile, so this is repeated until it fits.
            text.resize(bytes / sizeof(char16_t) + 1);
            continue;
        }
        if (code != ERROR_SUCCESS) return {code, type, {}};
        return {code, type, regText(type, std::move(text), bytes)};
    }
}

RegKeyNames EnumRegKeys(HKEY root, const Text& keyPath) {
    const OpenedKey opened = openForReading(root, tidied(keyPath), KEY_ENUMERATE_SUB_KEYS);
    RegKeyNames found{opened.code, {}};
    constexpr DWORD kLongestName = 255;
    Text name(kLongestName + 1, u'\0');
    for (DWORD index = 0; found.code == ERROR_SUCCESS; ++index) {
        auto length = static_cast<DWORD>(name.size());
        found.code = RegEnumKeyExW(opened.key.get(), index, wideBuffer(name), &length, nullptr, nullptr,
                                   nullptr, nullptr);
        if (found.code == ERROR_SUCCESS) found.names.push_back(name.substr(0, length));
    }
    if (found.code == ERROR_NO_MORE_ITEMS) found.code = ERROR_SUCCESS;
    return found;
}
