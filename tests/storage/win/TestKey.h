// A registry key of the user for one test, removed with everything below it afterwards.
#pragma once

#include "storage/bas_RegistryKey.h"
#include "support/Handles.h"
#include "support/Number.h"

struct TestKey {
    Text path = u"Software\\KardelTest-" + decimal(GetCurrentProcessId());

    TestKey() { remove(); }
    ~TestKey() { remove(); }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

    UniqueKey create(const Text& below = {}) const {
        HKEY key = nullptr;
        const Text whole = below.empty() ? path : path + u"\\" + below;
        RegCreateKeyExW(HKEY_CURRENT_USER, wide(whole), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                        nullptr);
        return UniqueKey(key);
    }

    /// Type and raw bytes of a value; type -1 when there is none.
    std::pair<int, std::string> raw(const Text& name) const {
        const UniqueKey key = create();
        DWORD type = 0;
        DWORD size = 0;
        if (RegQueryValueExW(key.get(), wide(name), nullptr, &type, nullptr, &size) != ERROR_SUCCESS)
            return {-1, {}};
        std::string bytes(size, '\0');
        RegQueryValueExW(key.get(), wide(name), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
        return {static_cast<int>(type), bytes};
    }

    void setRaw(const Text& name, DWORD type, std::string_view bytes, const Text& below = {}) const {
        const UniqueKey key = create(below);
        RegSetValueExW(key.get(), wide(name), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                       static_cast<DWORD>(bytes.size()));
    }

private:
    void remove() const { RegDeleteTreeW(HKEY_CURRENT_USER, wide(path)); }
};
