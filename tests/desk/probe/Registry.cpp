// Values and keys of the registry.
#include <windows.h>

#include "Commands.h"

namespace {

struct Path {
    HKEY root;
    std::wstring below;
};

Path parse(const std::wstring& text) {
    const std::size_t bar = text.find(L'\\');
    const std::wstring root = text.substr(0, bar);
    const std::wstring below = bar == std::wstring::npos ? std::wstring() : text.substr(bar + 1);
    if (below.empty()) throw Failure{L"a path needs a key below its root: " + text};
    if (root == L"HKCU") return {HKEY_CURRENT_USER, below};
    if (root == L"HKLM") return {HKEY_LOCAL_MACHINE, below};
    throw Failure{L"unknown root: " + root};
}

void check(LSTATUS code, const std::wstring& what) {
    if (code != ERROR_SUCCESS) throw Failure{what + L": error " + std::to_wstring(code)};
}

struct Key {
    HKEY key = nullptr;
    Key() = default;
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key != nullptr) RegCloseKey(key);
    }
};

void create(const std::wstring& text, Key& opened) {
    const Path path = parse(text);
    check(RegCreateKeyExW(path.root, path.below.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &opened.key,
                          nullptr),
          text);
}

void put(HKEY key, const std::wstring& name, const std::wstring& value) {
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    check(RegSetValueExW(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes),
          name);
}

std::string fromHex(const std::wstring& text) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

}  // namespace

void readValues(const Words& words, Json& out) {
    const Path path = parse(word(words, 0));
    Key opened;
    const LSTATUS code = RegOpenKeyExW(path.root, path.below.c_str(), 0, KEY_READ, &opened.key);
    if (code == ERROR_FILE_NOT_FOUND) {
        out.null();
        return;
    }
    check(code, words[0]);
    out.beginObject();
    for (DWORD index = 0;; ++index) {
        std::wstring name(16384, L'\0');
        auto nameLength = static_cast<DWORD>(name.size());
        DWORD type = 0;
        DWORD bytes = 0;
        if (RegEnumValueW(opened.key, index, name.data(), &nameLength, nullptr, &type, nullptr, &bytes) !=
            ERROR_SUCCESS)
            break;
        name.resize(nameLength);
        std::vector<BYTE> data(bytes + sizeof(DWORD));
        check(RegQueryValueExW(opened.key, name.c_str(), nullptr, nullptr, data.data(), &bytes), name);
        // The name as a JSON string, written through a value of its own because key() takes only plain ASCII.
        Json quoted;
        quoted.text(name);
        out.key(std::string_view(quoted.str()).substr(1, quoted.str().size() - 2));
        if (type == REG_DWORD) {
            out.number(*reinterpret_cast<const DWORD*>(data.data()));
        } else if (type == REG_SZ || type == REG_EXPAND_SZ) {
            std::wstring value(reinterpret_cast<const wchar_t*>(data.data()), bytes / sizeof(wchar_t));
            if (!value.empty() && value.back() == L'\0') value.pop_back();
            out.text(value);
        } else {
            out.beginArray();
            for (DWORD i = 0; i < bytes; ++i)
                out.number(data[i]);
            out.endArray();
        }
    }
    out.endObject();
}

void listKeys(const Words& words, Json& out) {
    const Path path = parse(word(words, 0));
    Key opened;
    out.beginArray();
    if (RegOpenKeyExW(path.root, path.below.c_str(), 0, KEY_READ, &opened.key) == ERROR_SUCCESS) {
        for (DWORD index = 0;; ++index) {
            wchar_t name[256];
            DWORD length = 256;
            if (RegEnumKeyExW(opened.key, index, name, &length, nullptr, nullptr, nullptr, nullptr) !=
                ERROR_SUCCESS)
                break;
            out.text({name, length});
        }
    }
    out.endArray();
}

void setValue(const Words& words, Json& out) {
    Key opened;
    create(word(words, 0), opened);
    const std::wstring& name = word(words, 1);
    const std::wstring& type = word(words, 2);
    if (type == L"sz") {
        put(opened.key, name, word(words, 3));
    } else if (type == L"dword") {
        const auto value = static_cast<DWORD>(number(words, 3));
        check(RegSetValueExW(opened.key, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value),
                             sizeof value),
              name);
    } else {
        // A text type with bytes of the caller's choice, such as an odd length or no closing zero.
        const std::string bytes = fromHex(word(words, 3));
        check(RegSetValueExW(opened.key, name.c_str(), 0, type == L"rawsz" ? REG_SZ : REG_BINARY,
                             reinterpret_cast<const BYTE*>(bytes.data()), static_cast<DWORD>(bytes.size())),
              name);
    }
    out.truth(true);
}

void setTexts(const Words& words, Json& out) {
    Key opened;
    create(word(words, 0), opened);
    for (std::size_t i = 1; i + 1 < words.size(); i += 2)
        put(opened.key, words[i], words[i + 1]);
    out.truth(true);
}

void deleteValue(const Words& words, Json& out) {
    const Path path = parse(word(words, 0));
    Key opened;
    if (RegOpenKeyExW(path.root, path.below.c_str(), 0, KEY_SET_VALUE, &opened.key) == ERROR_SUCCESS) {
        RegDeleteValueW(opened.key, word(words, 1).c_str());
    }
    out.truth(true);
}

void deleteTree(const Words& words, Json& out) {
    const Path path = parse(word(words, 0));
    const LSTATUS code = RegDeleteTreeW(path.root, path.below.c_str());
    if (code != ERROR_FILE_NOT_FOUND) check(code, words[0]);
    out.truth(true);
}
