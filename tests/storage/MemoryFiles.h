// A data folder in memory.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "storage/Files.h"
#include "tests/storage/Changes.h"

struct MemoryFiles {
    std::map<Text, std::string> content;
    std::set<Text> locked;  ///< files that cannot be read
    std::set<Text> unseen;  ///< files that may or may not be there: nobody can tell
    std::set<Text> kept;    ///< files that can be written to, but not removed or replaced
    /// Called before every read; false lets it fail.
    std::function<bool(TextView name)> mayRead = [](TextView) { return true; };
    /// Called before every flush; false lets it fail.
    std::function<bool(TextView name)> mayFlush = [](TextView) { return true; };
    std::vector<unsigned> waits;  ///< how long the commands allowed it to wait, in ms

    /// The files as a power cut at this moment may leave them. Of what was written to a file but not flushed,
    /// there is everything, nothing, the beginning, any single write, or only the new length.
    std::vector<std::map<Text, std::string>> afterPowerCut() const {
        std::vector<std::map<Text, std::string>> images{{}};
        for (const auto& [name, bytes] : content) {
            const std::vector<std::optional<std::string>> kinds = afterPowerCut(name, bytes);
            std::vector<std::map<Text, std::string>> next;
            for (const auto& image : images) {
                for (const std::optional<std::string>& kind : kinds) {
                    next.push_back(image);
                    if (kind) next.back()[name] = *kind;
                }
            }
            images = std::move(next);
        }
        return images;
    }
    /// From here on everything written so far is on the disk.
    void flushAll() {
        disk = content;
        unflushed.clear();
    }

    /// Puts bytes into a file or, without bytes, cuts it there.
    struct Write {
        std::size_t at = 0;
        std::optional<std::string> bytes;

        void to(std::string& file) const {
            if (!bytes) return file.resize(at, '\0');
            if (file.size() < at + bytes->size()) file.resize(at + bytes->size(), '\0');
            file.replace(at, bytes->size(), *bytes);
        }
    };
    std::map<Text, std::string> disk;              ///< what survives a power cut in any case
    std::map<Text, std::vector<Write>> unflushed;  ///< what a power cut may take away
    std::function<void()> beforeFlush = [] {};     ///< looks at the folder before each flush
    SharedChanges changes = std::make_shared<Changes>();

    /// Valid as long as this folder exists.
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
            change(Text(name), {static_cast<std::size_t>(offset), std::string(bytes)});
            return true;
        };
        files.flush = [this](TextView name) {
            if (!content.contains(Text(name))) return false;
            beforeFlush();
            if (!mayFlush(name)) return false;
            flushed(Text(name));
            return true;
        };
        files.replace = [this](TextView name, std::string_view bytes, Flush flush) {
            if (!changes->next() || kept.contains(Text(name))) return false;
            content[Text(name)] = bytes;
            unflushed[Text(name)] = {{0, std::string(bytes)}, {bytes.size(), std::nullopt}};
            if (flush == Flush::Yes) flushed(Text(name));
            return true;
        };
        files.rename = [this](TextView from, TextView to) {
            if (!changes->next() || !content.contains(Text(from))) return false;
            content[Text(to)] = content[Text(from)];
            forget(Text(from));
            flushed(Text(to));
            return true;
        };
        files.cut = [this](TextView name, std::uint64_t length) {
            if (!changes->next() || !content.contains(Text(name))) return false;
            change(Text(name), {static_cast<std::size_t>(length), std::nullopt});
            return true;
        };
        files.remove = [this](TextView name) {
            if (!changes->next() || kept.contains(Text(name))) return false;
            forget(Text(name));
            return true;
        };
        files.mayWait = [this](unsigned ms) { waits.push_back(ms); };
        return files;
    }

private:
    /// What may be left of one file; none: not even its name.
    std::vector<std::optional<std::string>> afterPowerCut(const Text& name, const std::string& bytes) const {
        std::vector<std::optional<std::string>> kinds{bytes};
        const auto pending = unflushed.find(name);
        if (pending == unflushed.end()) return kinds;
        const auto found = disk.find(name);
        const std::string old = found == disk.end() ? std::string() : found->second;
        if (found == disk.end()) kinds.emplace_back(std::nullopt);
        std::string beginning = old;
        std::string stretched = old;
        if (stretched.size() < bytes.size()) stretched.resize(bytes.size(), '\0');
        kinds.emplace_back(stretched);
        for (const Write& write : pending->second) {
            kinds.emplace_back(beginning);
            write.to(beginning);
            std::string single = old;
            write.to(single);
            kinds.emplace_back(single);
        }
        std::vector<std::optional<std::string>> different;
        for (std::optional<std::string>& kind : kinds) {
            if (std::find(different.begin(), different.end(), kind) == different.end())
                different.push_back(std::move(kind));
        }
        return different;
    }
    void change(const Text& name, Write write) {
        write.to(content[name]);
        unflushed[name].push_back(std::move(write));
    }
    void flushed(const Text& name) {
        disk[name] = content[name];
        unflushed.erase(name);
    }
    void forget(const Text& name) {
        content.erase(name);
        disk.erase(name);
        unflushed.erase(name);
    }

    static constexpr std::uint64_t kFullAt = 16U << 20;  ///< a write beyond this finds no room
};
