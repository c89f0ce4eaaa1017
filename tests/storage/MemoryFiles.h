// A data folder in memory.
#pragma once

#include <algorithm>
#include <map>
#include <set>

#include "storage/Files.h"
#include "tests/storage/Changes.h"

struct MemoryFiles {
    std::map<Text, std::string> content;
    std::set<Text> locked;  ///< files that cannot be read
    SharedChanges changes = std::make_shared<Changes>();

    /// Valid as long as this folder.
    Files files() {
        Files files;
        files.read = [this](TextView name, std::uint64_t offset, std::size_t size) -> ReadResult {
            if (locked.contains(Text(name))) return {IoStatus::Failed, {}};
            const auto found = content.find(Text(name));
            if (found == content.end()) return {IoStatus::Absent, {}};
            const std::uint64_t at = std::min<std::uint64_t>(offset, found->second.size());
            return {IoStatus::Done, found->second.substr(static_cast<std::size_t>(at), size)};
        };
        files.length = [this](TextView name) -> LengthResult {
            if (locked.contains(Text(name))) return {IoStatus::Failed, 0};
            const auto found = content.find(Text(name));
            if (found == content.end()) return {IoStatus::Absent, 0};
            return {IoStatus::Done, found->second.size()};
        };
        files.write = [this](TextView name, std::uint64_t offset, std::string_view bytes) {
            if (!changes->next() || offset > kFullAt) return false;
            std::string& file = content[Text(name)];
            const auto at = static_cast<std::size_t>(offset);
            if (file.size() < at + bytes.size()) file.resize(at + bytes.size(), '\0');
            file.replace(at, bytes.size(), bytes);
            return true;
        };
        files.replace = [this](TextView name, std::string_view bytes) {
            if (!changes->next()) return false;
            content[Text(name)] = bytes;
            return true;
        };
        files.rename = [this](TextView from, TextView to) {
            if (!changes->next() || !content.contains(Text(from))) return false;
            content[Text(to)] = content[Text(from)];
            content.erase(Text(from));
            return true;
        };
        files.cut = [this](TextView name, std::uint64_t length) {
            if (!changes->next() || !content.contains(Text(name))) return false;
            content[Text(name)].resize(static_cast<std::size_t>(length), '\0');
            return true;
        };
        files.remove = [this](TextView name) {
            if (!changes->next()) return false;
            content.erase(Text(name));
            return true;
        };
        return files;
    }

private:
    static constexpr std::uint64_t kFullAt = 16U << 20;  ///< a write that far out finds no room
};
