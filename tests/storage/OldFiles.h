// Data files as older releases left them, and what an upgrade must make of them.
#pragma once

#include <gtest/gtest.h>

#include <cmath>

#include "storage/Upgrade.h"
#include "tests/storage/Samples.h"

struct OldFiles {
    MemoryFiles folder;
    DataFiles data{folder.files(), westernPage()};

    std::string& file(TextView name) { return folder.content[Text(name)]; }
    bool has(TextView name) const { return folder.content.contains(Text(name)); }

    void seed(float version, std::size_t recordLength, int count) {
        file(kHeaderFile) = encodeHeader({count, 0, version});
        file(kNoteFile) = oldRecords(recordLength, count);
        file(kMemoFile) = std::string(kMemoLength * static_cast<std::size_t>(count), 'm');
    }

    /// Records as an older release wrote them, which are the present ones cut off.
    static std::string oldRecords(std::size_t recordLength, int count) {
        std::string bytes;
        for (NoteRecord note : sampleNotes(count)) {
            note.memo = count - note.x / 15 + 1;
            bytes += encodeRecord(westernPage(), note).bytes.substr(0, recordLength);
        }
        return bytes;
    }

    /// What the upgrade must make of them.
    static std::string expected(std::size_t recordLength, int count) {
        std::string bytes;
        const std::string old = oldRecords(recordLength, count);
        for (std::size_t at = 0; at < old.size(); at += recordLength) {
            std::string record = old.substr(at, recordLength);
            while (record.size() < 199)
                record += '\0';
            if (record.size() == 199) record += "  ";
            while (record.size() < kRecordLength)
                record += '\0';
            bytes += record;
        }
        return bytes;
    }
};

struct Layout {
    float version;
    std::size_t length;
    TextView temporary;
};

/// The last version below a limit.
inline float below(float limit) {
    return std::nextafter(limit, 0.0F);
}

/// An upgrade that has nothing damaged to copy.
inline Upgraded upgrade(const DataFiles& data) {
    std::vector<Text> copies;
    const Upgraded upgraded = UpgradeDataFiles(data, copies);
    EXPECT_TRUE(copies.empty());
    return upgraded;
}

const Layout kLayouts[] = {
    {-1.0F, 195, u"KARDEL121.DAT"},   {0.0F, 195, u"KARDEL121.DAT"},         {0.5F, 195, u"KARDEL121.DAT"},
    {1.2099F, 195, u"KARDEL121.DAT"}, {below(1.21F), 195, u"KARDEL121.DAT"}, {1.21F, 197, u"KARDEL122.DAT"},
    {1.2199F, 197, u"KARDEL122.DAT"}, {below(1.22F), 197, u"KARDEL122.DAT"}, {1.22F, 201, u"KARDEL125.DAT"},
    {1.2499F, 201, u"KARDEL125.DAT"}, {below(1.25F), 201, u"KARDEL125.DAT"}};
