// A data folder in memory.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <vector>

#include "storage/Files.h"
#include "tests/storage/Changes.h"

struct MemoryFiles {
    std::map<Text, std::string> content;
    std::set<Text> locked;  ///< files that cannot be read
    std::set<Text> unseen;  ///< files of which not even this can be told: whether they are there
    std::set<Text> kept;    ///< files that cannot be removed or replaced, only written
    /// Asked ahead of every read; false lets it fail.
    std::function<bool(TextView name)> mayRead = [](TextView) { return true; };
    std::vector<unsigned> waits;  ///< what the commands allowed for waiting, in ms

    /// The files as they may stand after a power cut at this moment: what was not flushed is there, or is
    /// not, or only the length of its file is.
    std::vector<std::map<Text, std::string>> afterPowerCut() const {
        std::vector<std::map<Text, std::string>> images{{}};
        for (const auto& [name, bytes] : content) {
            const auto flushed = disk.find(name);
            const std::string old = flushed == disk.end() ? std::string() : flushed->second;
            std::vector<std::string> kinds{bytes};
            if (old != bytes) {
                kinds.push_back(old);
                std::string stretched = old;
                stretched.resize(bytes.size(), '\0');
                kinds.push_back(stretched);
            }
            std::vector<std::map<Text, std::string>> next;
            for (const auto& image : images) {
                for (const std::string& kind : kinds) {
                    next.push_back(image);
                    next.back()[name] = kind;
                }
            }
            images = std::move(next);
        }
        return images;
    }
    /// From here on all that stands is on the disk.
    void flushAll() { disk = content; }
    std::map<Text, std::string> disk;  ///< what a power cut leaves in any case
    SharedChanges changes = std::make_shared<Changes>();

    /// Valid as long as this folder.
    Files files() {
        Files files;
        files.read = [this](TextView name, std::uint64_t offset, std::size_t size) -> ReadResult {
            if (locked.contains(Text(name)) || unseen.contains(Text(name)) || !mayRead(name))
                return {IoStatus::Failed, {}};
            const auto found = content.find(Text(name));
            if (found == content.end()) return {IoStatus::Absent, {}};
            const std::uint64_t at = std::min<std::uint64_t>(offset, found->second.size());
            return {IoStatus::Done, found->second.substr(static_cast<std::size_t>(at), size)};
        };
        files.length = [this](TextView name) -> LengthResult {
            if (unseen.contains(Text(name)) || !mayRead(name)) return {IoStatus::Failed, 0};
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
        files.flush = [this](TextView name) {
            if (!content.contains(Text(name))) return false;
            disk[Text(name)] = content[Text(name)];
            return true;
        };
        files.replace = [this](TextView name, std::string_view bytes, Flush flush) {
            if (!changes->next() || kept.contains(Text(name))) return false;
            content[Text(name)] = bytes;
            if (flush == Flush::Yes) disk[Text(name)] = content[Text(name)];
            return true;
        };
        files.rename = [this](TextView from, TextView to) {
            if (!changes->next() || !content.contains(Text(from))) return false;
            content[Text(to)] = content[Text(from)];
            content.erase(Text(from));
            disk[Text(to)] = content[Text(to)];
            disk.erase(Text(from));
            return true;
        };
        files.cut = [this](TextView name, std::uint64_t length) {
            if (!changes->next() || !content.contains(Text(name))) return false;
            content[Text(name)].resize(static_cast<std::size_t>(length), '\0');
            return true;
        };
        files.remove = [this](TextView name) {
            if (!changes->next() || kept.contains(Text(name))) return false;
            content.erase(Text(name));
            disk.erase(Text(name));
            return true;
        };
        files.mayWait = [this](unsigned ms) { waits.push_back(ms); };
        return files;
    }

private:
    static constexpr std::uint64_t kFullAt = 16U << 20;  ///< a write that far out finds no room
};
