// A settings store in memory. Names are compared without case, as in the registry.
#pragma once

#include <algorithm>
#include <set>

#include "storage/Settings.h"
#include "tests/storage/Changes.h"

struct MemorySettings {
    struct Section {
        Text name;
        std::vector<KeyText> values;  ///< in the order in which they were first written
        bool operator==(const Section&) const = default;
    };
    std::vector<Section> content;
    std::set<Text> locked;                       ///< sections that cannot be read
    std::set<std::pair<Text, Text>> unreadable;  ///< values (section and key) of another type
    std::set<Text> writeProtected;               ///< sections that no value can be written to
    std::set<std::pair<Text, Text>> kept;        ///< values (section and key) that cannot be removed
    bool namesFail = false;                      ///< the list of sections breaks off
    /// Called before every read; false lets it fail.
    std::function<bool(TextView section)> mayRead = [](TextView) { return true; };
    SharedChanges changes = std::make_shared<Changes>();

    Section* find(TextView name) {
        const auto found = std::find_if(content.begin(), content.end(), [&](const Section& section) {
            return isSameName(section.name, name);
        });
        return found == content.end() ? nullptr : &*found;
    }

    Text* find(TextView section, TextView key) {
        Section* const in = find(section);
        if (in == nullptr) return nullptr;
        const auto found = std::find_if(in->values.begin(), in->values.end(),
                                        [&](const KeyText& value) { return isSameName(value.first, key); });
        return found == in->values.end() ? nullptr : &found->second;
    }

    /// The text of a value, or "(none)".
    Text text(TextView section, TextView key) {
        const Text* const found = find(section, key);
        return found == nullptr ? u"(none)" : *found;
    }

    void put(TextView section, TextView key, const Text& text) {
        if (Text* const old = find(section, key)) {
            *old = text;
            return;
        }
        if (find(section) == nullptr) content.push_back({Text(section), {}});
        find(section)->values.emplace_back(key, text);
    }

    /// Valid as long as this store exists.
    Settings settings() {
        Settings settings;
        settings.get = [this](TextView section, TextView key) -> SettingResult {
            if (locked.contains(Text(section)) || !mayRead(section)) return {IoStatus::Failed, {}};
            if (unreadable.contains({Text(section), Text(key)})) return {IoStatus::Failed, {}};
            const Text* const found = find(section, key);
            if (found == nullptr) return {IoStatus::Absent, {}};
            return {IoStatus::Done, *found};
        };
        settings.readSection = [this](TextView section) -> SectionResult {
            if (locked.contains(Text(section)) || !mayRead(section)) return {IoStatus::Failed, {}, {}};
            const Section* const found = find(section);
            if (found == nullptr) return {IoStatus::Absent, {}, {}};
            SectionResult result{IoStatus::Done, {}, {}};
            for (const KeyText& value : found->values) {
                if (unreadable.contains({Text(section), value.first})) {
                    result.unreadable.push_back(value.first);
                } else {
                    result.values.push_back(value);
                }
            }
            return result;
        };
        settings.set = [this](TextView section, std::span<const KeyText> values) {
            bool done = true;
            for (const auto& [key, text] : values) {
                if (changes->next() && !writeProtected.contains(Text(section))) {
                    put(section, key, text);
                } else {
                    done = false;
                }
            }
            return done;
        };
        settings.removeValue = [this](TextView section, TextView key) {
            if (!changes->next() || kept.contains({Text(section), Text(key)})) return false;
            Section* const in = find(section);
            if (in == nullptr) return true;
            std::erase_if(in->values, [&](const KeyText& value) { return isSameName(value.first, key); });
            return true;
        };
        settings.removeSection = [this](TextView section) {
            if (!changes->next()) return false;
            std::erase_if(content, [&](const Section& s) { return isSameName(s.name, section); });
            return true;
        };
        settings.sections = [this]() -> SectionNames {
            if (namesFail || !mayRead(u"")) return {IoStatus::Failed, {}};
            SectionNames names{IoStatus::Done, {}};
            for (const Section& section : content)
                names.names.push_back(section.name);
            return names;
        };
        return settings;
    }
};
