#include "storage/FileNotes.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

/// The MEMO numbers in the first `count` records of an image of KARDEL.DAT.
std::vector<std::int32_t> memoNumbers(std::string_view image, std::size_t count) {
    std::vector<std::int32_t> numbers;
    for (std::size_t i = 0; i < count && (i + 1) * kRecordLength <= image.size(); ++i) {
        numbers.push_back(memoNumberOf(image.substr(i * kRecordLength, kRecordLength)));
    }
    return numbers;
}

bool isIn(const std::vector<std::int32_t>& numbers, std::int64_t number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

/// Writes a body into a record at the end that no other note points to. `taken` are the other notes' numbers:
/// if MEMO was lost or cut, they point beyond its end, and this body must not become theirs.
MemoResult appendMemo(const DataFiles& data, const std::vector<std::int32_t>& taken, TextView body) {
    const LengthResult length = data.files.length(kMemoFile);
    if (length.status == IoStatus::Failed) return {};
    const std::uint64_t tail = length.bytes % kMemoLength;
    if (tail != 0) {
        const std::string blanks(kMemoLength - static_cast<std::size_t>(tail), ' ');
        if (!data.files.write(kMemoFile, length.bytes, blanks)) return {};
    }
    auto next = static_cast<std::int64_t>((length.bytes + kMemoLength - 1) / kMemoLength) + 1;
    for (; isIn(taken, next); ++next) {
        if (!data.WriteMemo(0, {}).done) return {};
    }
    return data.WriteMemo(0, body);
}

/// Writes the body of note `number`, which points to MEMO record `current`: there, or into a new record when
/// MEMO has no such record or another note points to it as well (whose body it was first is unknown).
MemoResult writeBody(const DataFiles& data, int number, std::int32_t current, TextView body) {
    std::optional<std::vector<std::int32_t>> others = storedMemoNumbers(data);
    const LengthResult memos = data.memoRecords();
    if (!others || memos.status == IoStatus::Failed) return {};
    if (static_cast<std::size_t>(number) <= others->size()) others->erase(others->begin() + (number - 1));
    const bool inside = current >= 1 && static_cast<std::uint64_t>(current) <= memos.bytes + 1;
    if (inside && !isIn(*others, current)) return data.WriteMemo(current, body);
    return appendMemo(data, *others, body);
}

/// Makes every note that points to MEMO record `from` point to `to`.
bool repoint(const DataFiles& data, std::string& image, std::int32_t from, std::int32_t to,
             std::span<NoteRecord* const> notes) {
    for (std::size_t i = 0; i < notes.size(); ++i) {
        std::string record = image.substr(i * kRecordLength, kRecordLength);
        if (memoNumberOf(record) != from) continue;
        setMemoNumber(record, to);
        if (!data.PutRecordBytes(static_cast<int>(i) + 1, record)) return false;
        image.replace(i * kRecordLength, kRecordLength, record);
        notes[i]->memo = to;
    }
    return true;
}

/// Whether place `place` of an image of KARDEL.DAT holds a note.
bool holdsRecord(std::string_view image, int place) {
    const std::size_t at = static_cast<std::size_t>(place - 1) * kRecordLength;
    return at + kRecordLength <= image.size() && !isZeroRecord(image.substr(at, kRecordLength));
}

}  // namespace

FileImages imagesOf(const CodePage& page, std::span<NoteRecord* const> notes) {
    FileImages images;
    for (const NoteRecord* note : notes) {
        images.lost = !AppendRecordPair(page, images.dat, images.memo, withStoredRule(*note)) || images.lost;
    }
    return images;
}

bool isZeroRecord(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

std::optional<std::vector<std::int32_t>> storedMemoNumbers(const DataFiles& data) {
    ReadResult read = data.files.read(kNoteFile, 0, kMaxNotes * kRecordLength);
    if (read.status == IoStatus::Failed) return std::nullopt;
    read.bytes.resize((read.bytes.size() + kRecordLength - 1) / kRecordLength * kRecordLength, '\0');
    return memoNumbers(read.bytes, kMaxNotes);
}

Saved setInFiles(const DataFiles& data, int number, NoteRecord& record, std::span<const NoteField> fields) {
    Saved save;
    EncodedRecord stored;
    const IoStatus status = data.GetRecordBytes(number, stored.bytes);
    if (status == IoStatus::Failed) return save;
    const bool fresh = isZeroRecord(stored.bytes);
    const std::string before = stored.bytes;
    const NoteRecord source = withStoredRule(record);
    if (fresh) {
        stored = encodeRecord(data.page, source);
    } else {
        for (const NoteField field : storedTogether(record, fields))
            encodeFieldInto(data.page, source, field, stored);
    }
    save.unmappable = stored.unmappable;
    save.done = true;
    const bool body = std::find(fields.begin(), fields.end(), NoteField::Nota) != fields.end();
    if (fresh || body) {
        // The body comes first, because a record must never point to one that is not there. If the record
        // changes too, the body gets a new place, so that both take effect together with the record.
        const std::int32_t place = stored.bytes == before ? memoNumberOf(stored.bytes) : 0;
        const MemoResult written = writeBody(data, number, place, record.Nota);
        save.done = written.done && (written.recordNumber == place || data.files.flush(kMemoFile));
        save.unmappable = save.unmappable || written.unmappable;
        if (save.done) setMemoNumber(stored.bytes, written.recordNumber);
        if (!save.done && fresh) setMemoNumber(stored.bytes, 0);
    }
    record.memo = memoNumberOf(stored.bytes);
    if (stored.bytes == before) return save;
    save.done = data.PutRecordBytes(number, stored.bytes) && save.done;
    return save;
}

Saved createInFiles(const DataFiles& data, int number, NoteRecord& record) {
    Saved save;
    std::optional<std::vector<std::int32_t>> numbers = storedMemoNumbers(data);
    if (!numbers) return save;
    // Records from `number` on are left over, and their bodies belong to no note.
    numbers->resize(std::min(numbers->size(), static_cast<std::size_t>(number - 1)));
    const MemoResult body = appendMemo(data, *numbers, record.Nota);
    if (!body.done || !data.files.flush(kMemoFile)) return save;
    record.memo = body.recordNumber;
    const EncodedRecord encoded = encodeRecord(data.page, withStoredRule(record));
    // On the disk before the header counts it: what a power cut left there would come up as an empty note.
    save.done = data.PutRecordBytes(number, encoded.bytes) && data.files.flush(kNoteFile);
    save.unmappable = body.unmappable || encoded.unmappable;
    return save;
}

bool makeRecordsDense(const DataFiles& data, std::span<NoteRecord* const> notes, NotePlaces& places) {
    if (notes.empty()) {
        data.DeleteDataFiles();
        return !data.exists(kNoteFile);
    }
    const int left = static_cast<int>(notes.size());
    const std::size_t total = static_cast<std::size_t>(places.of(left)) * kRecordLength;
    const ReadResult read = data.files.read(kNoteFile, 0, total);
    if (read.status == IoStatus::Failed) return false;
    std::string image;
    std::vector<std::int32_t> taken;
    for (int number = 1; number <= left; ++number) {
        const int place = places.of(number);
        if (!holdsRecord(read.bytes, place)) continue;
        taken.push_back(memoNumberOf(read.bytes.substr(static_cast<std::size_t>(place - 1) * kRecordLength)));
    }
    bool written = false;
    for (int number = 1; number <= left; ++number) {
        const int place = places.of(number);
        if (holdsRecord(read.bytes, place)) {
            image += read.bytes.substr(static_cast<std::size_t>(place - 1) * kRecordLength, kRecordLength);
            continue;
        }
        // The file was lost or cut after it was read: the note only exists on screen.
        NoteRecord& note = *notes[static_cast<std::size_t>(number - 1)];
        if (note.readOnly) return false;
        const MemoResult body = appendMemo(data, taken, note.Nota);
        if (!body.done) return false;
        written = true;
        note.memo = body.recordNumber;
        taken.push_back(note.memo);
        image += encodeRecord(data.page, withStoredRule(note)).bytes;
    }
    if (written && !data.files.flush(kMemoFile)) return false;
    if (!data.files.replace(kNoteFile, image, Flush::Yes)) return false;
    places.moved.clear();
    return true;
}

void compactMemo(const DataFiles& data, std::span<NoteRecord* const> notes) {
    ReadResult read = data.files.read(kNoteFile, 0, notes.size() * kRecordLength);
    const LengthResult length = data.files.length(kMemoFile);
    if (read.status != IoStatus::Done || length.status != IoStatus::Done) return;
    std::string image = std::move(read.bytes);
    if (image.size() != notes.size() * kRecordLength) return;
    const std::uint64_t records = (length.bytes + kMemoLength - 1) / kMemoLength;
    for (;;) {
        std::vector<std::int32_t> used;
        for (const std::int32_t number : memoNumbers(image, notes.size())) {
            if (number >= 1 && static_cast<std::uint64_t>(number) <= records) used.push_back(number);
        }
        const std::int32_t last = used.empty() ? 0 : *std::max_element(used.begin(), used.end());
        std::int32_t gap = 1;
        while (isIn(used, gap))
            ++gap;
        if (gap > last) {
            const std::uint64_t needed = static_cast<std::uint64_t>(last) * kMemoLength;
            if (needed < length.bytes && data.files.flush(kNoteFile))
                static_cast<void>(data.files.cut(kMemoFile, needed));
            return;
        }
        const auto at = [](std::int32_t number) {
            return static_cast<std::uint64_t>(number - 1) * kMemoLength;
        };
        ReadResult body = data.files.read(kMemoFile, at(last), kMemoLength);
        if (body.status != IoStatus::Done) return;
        body.bytes.resize(kMemoLength, ' ');
        // The body must be on the disk before a record points to it. Its old place stays as it is until the
        // records are on the disk, too, and the end of the file is cut off.
        if (!data.files.write(kMemoFile, at(gap), body.bytes) || !data.files.flush(kMemoFile)) return;
        if (!repoint(data, image, last, gap, notes)) return;
    }
}
