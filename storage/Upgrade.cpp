#include "storage/Upgrade.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "support/Number.h"

namespace {

/// An older layout, which is the beginning of the present record.
struct OldLayout {
    float below;  ///< header versions below this one, but not below the previous row's, have this layout
    std::size_t recordLength;
    TextView temporaryFile;
};
constexpr std::array<OldLayout, 3> kOldLayouts{
    {{1.21F, 195, u"KARDEL121.DAT"}, {1.22F, 197, u"KARDEL122.DAT"}, {1.25F, 201, u"KARDEL125.DAT"}}};

constexpr std::size_t kRepeatUnitOffset = 199;
constexpr std::size_t kMostBytes = kRecordLength * 65536;  // far more than 50 notes; bounds a damaged length

const OldLayout* layoutOf(float version) {
    for (const OldLayout& layout : kOldLayouts) {
        if (version < layout.below) return &layout;
    }
    return nullptr;
}

/// The layout of a file whose header is lost, judged by its length; the caller tries the present layout
/// first.
const OldLayout* layoutOfLength(std::uint64_t length) {
    for (const OldLayout& layout : kOldLayouts) {
        if (length % layout.recordLength == 0) return &layout;
    }
    return nullptr;
}

/// Turns old records into present ones. A short last record is filled with zero bytes, so that none is
/// dropped.
std::string converted(std::string_view old, std::size_t recordLength) {
    std::string image;
    for (std::size_t at = 0; at < old.size(); at += recordLength) {
        std::string record(old.substr(at, recordLength));
        record.resize(recordLength, '\0');
        record.resize(kRecordLength, '\0');
        if (recordLength <= kRepeatUnitOffset) record.replace(kRepeatUnitOffset, 2, 2, ' ');
        image += record;
    }
    return image;
}

std::uint64_t recordsIn(std::uint64_t length, std::size_t recordLength) {
    return (length + recordLength - 1) / recordLength;
}

struct StoredHeader {
    bool existed = false;
    bool whole = false;    ///< all of its bytes could be read, and the version is a number
    bool damaged = false;  ///< it could be read, but makes no sense
    DataHeader header;
};

StoredHeader storedHeader(const Files& files) {
    StoredHeader stored;
    const ReadResult read = files.read(kHeaderFile, 0, kHeaderLength);
    stored.existed = read.status != IoStatus::Absent;
    stored.whole = read.status == IoStatus::Done && decodeHeader(read.bytes, stored.header) &&
                   std::isfinite(stored.header.version);
    stored.damaged = read.status == IoStatus::Done && !stored.whole;
    if (!stored.whole) stored.header = DataHeader();
    return stored;
}

/// Whether the header claims the present layout although the records have an old one, whose new form has
/// `freshBytes`. The file's length decides or, if it fits both, the number of notes.
bool isOldUnderNewHeader(const DataHeader& header, std::uint64_t bytes, const OldLayout& layout,
                         std::uint64_t freshBytes) {
    const std::uint64_t records = recordsIn(bytes, layout.recordLength);
    const bool fits = records > 0 && records * kRecordLength == freshBytes;
    if (layoutOf(header.version) != nullptr || !fits) return false;
    return bytes % kRecordLength != 0 || header.count == static_cast<std::int64_t>(records);
}

/// Does the last step of an upgrade that was interrupted before it: the new file is complete, beside the old
/// one or alone. NotNeeded: there was no such upgrade.
Upgraded finishInterrupted(const DataFiles& data, StoredHeader& stored) {
    const LengthResult old = data.files.length(kNoteFile);
    if (old.status == IoStatus::Failed) return Upgraded::Unreadable;
    for (const OldLayout& layout : kOldLayouts) {
        const LengthResult fresh = data.files.length(layout.temporaryFile);
        if (fresh.status == IoStatus::Failed) return Upgraded::Unreadable;
        if (fresh.status == IoStatus::Absent || fresh.bytes % kRecordLength != 0) continue;
        const bool only = old.status == IoStatus::Absent && stored.existed;
        const bool beside =
            stored.whole && isOldUnderNewHeader(stored.header, old.bytes, layout, fresh.bytes);
        if (!only && !beside) continue;
        if (!data.files.rename(layout.temporaryFile, kNoteFile)) return Upgraded::Failed;
        if (stored.whole && !data.WriteHeader(stored.header)) return Upgraded::Failed;
        return Upgraded::Done;
    }
    return Upgraded::NotNeeded;
}

Upgraded convert(const DataFiles& data, DataHeader header, const OldLayout& layout) {
    const ReadResult old = data.files.read(kNoteFile, 0, kMostBytes);
    if (old.status != IoStatus::Done) return Upgraded::Unreadable;
    if (!data.files.replace(layout.temporaryFile, converted(old.bytes, layout.recordLength), Flush::Yes) ||
        !data.WriteHeader(header) || !data.files.rename(layout.temporaryFile, kNoteFile)) {
        return Upgraded::Failed;
    }
    return Upgraded::Done;
}

/// The name for a copy of a file: that of an existing copy with the same content, or else the first free one.
struct Copy {
    Text name;
    bool stands = false;
};

constexpr int kMostCopies = 1000;

Text copyName(TextView name, int number) {
    return Text(name) + u".damaged" + (number == 1 ? Text() : decimal(number));
}

std::optional<Copy> copyOf(const Files& files, TextView name, const std::string& bytes) {
    for (int number = 1; number <= kMostCopies; ++number) {
        const Text copy = copyName(name, number);
        const ReadResult read = files.read(copy, 0, bytes.size() + 1);
        if (read.status == IoStatus::Absent) return Copy{copy, false};
        if (read.status == IoStatus::Done && read.bytes == bytes) return Copy{copy, true};
    }
    return std::nullopt;
}

/// Copies the files as they were found. Done only when there is a copy of each.
Upgraded keepCopies(const Files& files, std::vector<Text>& copies) {
    for (const TextView name : kDataFiles) {
        const LengthResult length = files.length(name);
        if (length.status == IoStatus::Absent) continue;
        if (length.status == IoStatus::Failed) return Upgraded::Unreadable;
        const ReadResult read = files.read(name, 0, static_cast<std::size_t>(length.bytes));
        if (read.status != IoStatus::Done) return Upgraded::Unreadable;
        const std::optional<Copy> copy = copyOf(files, name, read.bytes);
        if (!copy) return Upgraded::Failed;
        if (copy->stands) continue;
        if (!files.replace(copy->name, read.bytes, Flush::Yes)) return Upgraded::Failed;
        copies.push_back(copy->name);
    }
    return Upgraded::Done;
}

/// Leaves the whole records in the present layout; `header` counts no more than these.
Upgraded cutToWhole(const DataFiles& data, DataHeader header, std::uint64_t length) {
    const std::uint64_t records = length / kRecordLength;
    header.count =
        static_cast<std::int32_t>(std::min<std::int64_t>(header.count, static_cast<std::int64_t>(records)));
    const bool done = data.files.cut(kNoteFile, records * kRecordLength) && data.WriteHeader(header);
    return done ? Upgraded::Done : Upgraded::Failed;
}

/// Handles files whose header makes no sense, with records that do not have the present layout.
Upgraded mend(const DataFiles& data, StoredHeader stored, std::uint64_t length, std::vector<Text>& copies) {
    const OldLayout* const layout = layoutOfLength(length);
    if (!stored.existed && layout != nullptr) {
        stored.header.count = static_cast<std::int32_t>(recordsIn(length, layout->recordLength));
        return convert(data, stored.header, *layout);
    }
    const Upgraded kept = keepCopies(data.files, copies);
    if (kept != Upgraded::Done) return kept;
    if (layout != nullptr) {
        stored.header.count = static_cast<std::int32_t>(recordsIn(length, layout->recordLength));
        return convert(data, stored.header, *layout);
    }
    stored.header.count = std::numeric_limits<std::int32_t>::max();
    return cutToWhole(data, stored.header, length);
}

}  // namespace

Upgraded UpgradeDataFiles(const DataFiles& data, std::vector<Text>& copies) {
    StoredHeader stored = storedHeader(data.files);
    const Upgraded finished = finishInterrupted(data, stored);
    if (finished != Upgraded::NotNeeded) return finished;
    const LengthResult length = data.files.length(kNoteFile);
    if (length.status == IoStatus::Failed) return Upgraded::Unreadable;
    const bool isPresent = length.status == IoStatus::Absent || length.bytes % kRecordLength == 0;

    if (!stored.whole) {
        // Treating present records as old ones would destroy them.
        if (isPresent) return Upgraded::NotNeeded;
        if (!stored.existed || stored.damaged) return mend(data, stored, length.bytes, copies);
        // It cannot be read now, and the records are old ones or damaged: both would be written over.
        return Upgraded::Unreadable;
    }
    const OldLayout* const layout = layoutOf(stored.header.version);
    const bool fitsHeader =
        layout != nullptr && length.status == IoStatus::Done && length.bytes % layout->recordLength == 0;
    if (!isPresent && !fitsHeader) {
        const Upgraded kept = keepCopies(data.files, copies);
        if (kept != Upgraded::Done) return kept;
        if (layout == nullptr) return cutToWhole(data, stored.header, length.bytes);
    }
    if (layout == nullptr) return Upgraded::NotNeeded;
    if (!isPresent || fitsHeader) return convert(data, stored.header, *layout);
    return data.WriteHeader(stored.header) ? Upgraded::NotNeeded : Upgraded::Failed;
}

std::vector<Text> upgradeFiles(const Files& files) {
    std::vector<Text> names;
    names.reserve(std::size(kOldLayouts) + std::size(kDataFiles));
    for (const OldLayout& layout : kOldLayouts)
        names.emplace_back(layout.temporaryFile);
    for (const TextView name : kDataFiles) {
        for (int number = 1; number <= kMostCopies; ++number) {
            names.push_back(copyName(name, number));
            if (files.length(names.back()).status != IoStatus::Done) break;
        }
    }
    return names;
}
