#include "storage/Upgrade.h"

#include <array>
#include <cmath>
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
    if (old.status == IoStatus::Failed) return Upgraded::Failed;
    for (const OldLayout& layout : kOldLayouts) {
        const LengthResult fresh = data.files.length(layout.temporaryFile);
        if (fresh.status == IoStatus::Failed) return Upgraded::Failed;
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
    if (old.status != IoStatus::Done) return Upgraded::Failed;
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

std::optional<Copy> copyOf(const Files& files, TextView name, const std::string& bytes) {
    constexpr int kMostCopies = 1000;
    for (int number = 1; number <= kMostCopies; ++number) {
        const Text copy = Text(name) + u".damaged" + (number == 1 ? Text() : decimal(number));
        const ReadResult read = files.read(copy, 0, bytes.size() + 1);
        if (read.status == IoStatus::Absent) return Copy{copy, false};
        if (read.status == IoStatus::Done && read.bytes == bytes) return Copy{copy, true};
    }
    return std::nullopt;
}

/// Copies the files as they were found. False when that could not be done for all of them.
bool keepCopies(const Files& files, std::vector<Text>& copies) {
    for (const TextView name : {kNoteFile, kHeaderFile, kMemoFile}) {
        const LengthResult length = files.length(name);
        if (length.status == IoStatus::Absent) continue;
        if (length.status == IoStatus::Failed) return false;
        const ReadResult read = files.read(name, 0, static_cast<std::size_t>(length.bytes));
        if (read.status != IoStatus::Done) return false;
        const std::optional<Copy> copy = copyOf(files, name, read.bytes);
        if (!copy) return false;
        if (copy->stands) continue;
        if (!files.replace(copy->name, read.bytes, Flush::Yes)) return false;
        copies.push_back(copy->name);
    }
    return true;
}

/// Handles files whose header makes no sense, with records that do not have the present layout.
Upgraded mend(const DataFiles& data, StoredHeader stored, std::uint64_t length, std::vector<Text>& copies) {
    const OldLayout* const layout = layoutOfLength(length);
    if (!stored.existed && layout != nullptr) {
        stored.header.count = static_cast<std::int32_t>(recordsIn(length, layout->recordLength));
        return convert(data, stored.header, *layout);
    }
    if (!keepCopies(data.files, copies)) return Upgraded::Failed;
    if (layout != nullptr) {
        stored.header.count = static_cast<std::int32_t>(recordsIn(length, layout->recordLength));
        return convert(data, stored.header, *layout);
    }
    stored.header.count = static_cast<std::int32_t>(length / kRecordLength);
    const bool done =
        data.files.cut(kNoteFile, length / kRecordLength * kRecordLength) && data.WriteHeader(stored.header);
    return done ? Upgraded::Done : Upgraded::Failed;
}

}  // namespace

Upgraded UpgradeDataFiles(const DataFiles& data, std::vector<Text>& copies) {
    StoredHeader stored = storedHeader(data.files);
    const Upgraded finished = finishInterrupted(data, stored);
    if (finished != Upgraded::NotNeeded) return finished;
    const LengthResult length = data.files.length(kNoteFile);
    if (length.status == IoStatus::Failed) return Upgraded::Failed;
    const bool isPresent = length.status == IoStatus::Absent || length.bytes % kRecordLength == 0;

    if (!stored.whole) {
        // Treating present records as old ones would destroy them.
        if (isPresent) return Upgraded::NotNeeded;
        if (!stored.existed || stored.damaged) return mend(data, stored, length.bytes, copies);
        // It cannot be read now. Records that can only be old ones would be overwritten in another layout.
        return layoutOfLength(length.bytes) != nullptr ? Upgraded::Failed : Upgraded::NotNeeded;
    }
    const OldLayout* const layout = layoutOf(stored.header.version);
    if (layout == nullptr) return Upgraded::NotNeeded;
    const bool fitsPresentOnly =
        length.status == IoStatus::Absent || (isPresent && length.bytes % layout->recordLength != 0);
    if (!fitsPresentOnly) return convert(data, stored.header, *layout);
    return data.WriteHeader(stored.header) ? Upgraded::NotNeeded : Upgraded::Failed;
}
