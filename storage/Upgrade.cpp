#include "storage/Upgrade.h"

#include <array>
#include <cmath>
#include <optional>

namespace {

/// An older layout: a beginning of the present record.
struct OldLayout {
    float below;  ///< header versions below this, and not below the row before, have it
    std::size_t recordLength;
    TextView temporaryFile;
};
constexpr std::array<OldLayout, 3> kOldLayouts{
    {{1.21F, 195, u"KARDEL121.DAT"}, {1.22F, 197, u"KARDEL122.DAT"}, {1.25F, 201, u"KARDEL125.DAT"}}};

constexpr std::size_t kRepeatUnitOffset = 199;
constexpr std::size_t kMostBytes = kRecordLength * 65536;  // far beyond 50 notes; a damaged length ends here

const OldLayout* layoutOf(float version) {
    for (const OldLayout& layout : kOldLayouts) {
        if (version < layout.below) return &layout;
    }
    return nullptr;
}

/// The layout of a file whose header is lost, from its length; the present one is tried first by the caller.
const OldLayout* layoutOfLength(std::uint64_t length) {
    for (const OldLayout& layout : kOldLayouts) {
        if (length % layout.recordLength == 0) return &layout;
    }
    return nullptr;
}

/// The present records for old ones. A short last record is filled with zero bytes, so that none is dropped.
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
    bool whole = false;  ///< all of its bytes could be read, and the version is a number
    DataHeader header;
};

StoredHeader storedHeader(const Files& files) {
    StoredHeader stored;
    const ReadResult read = files.read(kHeaderFile, 0, kHeaderLength);
    stored.existed = read.status != IoStatus::Absent;
    stored.whole = read.status == IoStatus::Done && decodeHeader(read.bytes, stored.header) &&
                   std::isfinite(stored.header.version);
    return stored;
}

/// Whether the header claims the present layout over records of an old one, whose new form has `freshBytes`.
/// The two are told apart by the file's length or, where that fits both, by the number of notes.
bool isOldUnderNewHeader(const DataHeader& header, std::uint64_t bytes, const OldLayout& layout,
                         std::uint64_t freshBytes) {
    const std::uint64_t records = recordsIn(bytes, layout.recordLength);
    const bool fits = records > 0 && records * kRecordLength == freshBytes;
    if (layoutOf(header.version) != nullptr || !fits) return false;
    return bytes % kRecordLength != 0 || header.count == static_cast<std::int64_t>(records);
}

/// The last step of an upgrade that was interrupted before it: the new file is complete beside the old one,
/// or the only one. NotNeeded: there was no such upgrade.
Upgraded finishInterrupted(const DataFiles& data, StoredHeader& stored) {
    const LengthResult old = data.files.length(kNoteFile);
    if (old.status == IoStatus::Failed) return Upgraded::Failed;
    for (const OldLayout& layout : kOldLayouts) {
        const LengthResult fresh = data.files.length(layout.temporaryFile);
        if (fresh.status != IoStatus::Done || fresh.bytes % kRecordLength != 0) continue;
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
    if (old.status != IoStatus::Done) return Upgraded::Failed;
    if (!data.files.replace(layout.temporaryFile, converted(old.bytes, layout.recordLength)) ||
        !data.WriteHeader(header) || !data.files.rename(layout.temporaryFile, kNoteFile)) {
        return Upgraded::Failed;
    }
    return Upgraded::Done;
}

}  // namespace

Upgraded UpgradeDataFiles(const DataFiles& data) {
    StoredHeader stored = storedHeader(data.files);
    const Upgraded finished = finishInterrupted(data, stored);
    if (finished != Upgraded::NotNeeded) return finished;
    const LengthResult length = data.files.length(kNoteFile);
    if (length.status == IoStatus::Failed) return Upgraded::Failed;

    if (!stored.existed) {
        if (length.status == IoStatus::Absent || length.bytes % kRecordLength == 0)
            return Upgraded::NotNeeded;
        const OldLayout* const layout = layoutOfLength(length.bytes);
        if (layout == nullptr) return Upgraded::Failed;
        stored.header.count = static_cast<std::int32_t>(recordsIn(length.bytes, layout->recordLength));
        return convert(data, stored.header, *layout);
    }
    if (!stored.whole) {
        // It says nothing: taking it for an old one would destroy present notes. Records that can only be old
        // ones would be read, and written over, as something else.
        const bool old = length.bytes % kRecordLength != 0 && layoutOfLength(length.bytes) != nullptr;
        return old ? Upgraded::Failed : Upgraded::NotNeeded;
    }
    const OldLayout* const layout = layoutOf(stored.header.version);
    if (layout == nullptr) return Upgraded::NotNeeded;
    const bool present = length.status == IoStatus::Absent ||
                         (length.bytes % kRecordLength == 0 && length.bytes % layout->recordLength != 0);
    if (!present) return convert(data, stored.header, *layout);
    return data.WriteHeader(stored.header) ? Upgraded::NotNeeded : Upgraded::Failed;
}
