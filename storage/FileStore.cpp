#include "storage/FileStore.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kMostDraftBytes = std::size_t{64} << 20;

/// Drops the drafts of a note that is removed; the notes behind it move up.
void removeNote(std::vector<Draft>& drafts, int number) {
    std::erase_if(drafts, [number](const Draft& draft) { return draft.number == number; });
    for (Draft& draft : drafts) {
        if (draft.number > number) --draft.number;
    }
}

}  // namespace

// --- The header -------------------------------------------------------------------------------------------

IoStatus FileStore::readHeader(bool useRegistry) {
    const IoStatus status = data_.ReadHeader(header_, useRegistry);
    header_.flag = useRegistry ? -1 : 0;
    return status;
}

bool FileStore::writeHeader() {
    headerOwed_ = !data_.WriteHeader(header_);
    return !headerOwed_;
}

IoStatus FileStore::readCount(IoStatus headerRead, int& count) {
    const LengthResult records = data_.noteRecords();
    if (records.status == IoStatus::Failed) return IoStatus::Failed;
    const int counted = headerRead == IoStatus::Failed ? kMaxNotes : header_.count;
    const auto held = std::min<std::uint64_t>(records.bytes, kMaxNotes);
    header_.count = std::max(std::min(counted, static_cast<int>(held)), 1);
    count = header_.count;
    return records.status;
}

bool FileStore::createFirst() {
    NoteRecord first;
    ClearNoteRecord(first);
    // If only KARDEL.DAT is missing, its bodies must be there when it comes back.
    return createInFiles(data_, 1, first).done;
}

// --- Notes ------------------------------------------------------------------------------------------------

IoStatus FileStore::load(int number, NoteRecord& record, DefaultSize size) const {
    const int place = places_.of(number);
    std::string bytes;
    if (data_.GetRecordBytes(place, bytes) == IoStatus::Failed) return IoStatus::Failed;
    NoteRecord loaded;
    if (isZeroRecord(bytes)) {
        ClearNoteRecord(loaded);
        loaded.width = size.width;
        loaded.height = size.height;
        // The first body may still be the first note's; any other one would belong to another note.
        const std::optional<std::vector<std::int32_t>> numbers = storedMemoNumbers(data_);
        if (!numbers) return IoStatus::Failed;
        if (place > 1 || std::find(numbers->begin(), numbers->end(), loaded.memo) != numbers->end())
            loaded.memo = 0;
    } else {
        loaded = decodeRecord(data_.page, bytes);
    }
    if (data_.ReadMemo(loaded.memo, loaded.Nota) == IoStatus::Failed) return IoStatus::Failed;
    record = loaded;
    return IoStatus::Done;
}

Saved FileStore::set(int number, NoteRecord& record, std::span<const NoteField> fields) {
    return setInFiles(data_, places_.of(number), record, fields);
}

Saved FileStore::create(int number, NoteRecord& record) {
    const int place = places_.of(number);
    Saved saved = createInFiles(data_, place, record);
    // A note that is not counted would be missing at the next start, however often it had been saved.
    header_.count = place;
    headerOwed_ = true;
    saved.done = saved.done && writeHeader();
    return saved;
}

bool FileStore::remove(int number, NoteList remaining, const GlobalSettings&) {
    places_.remove(number, static_cast<int>(remaining.size()));
    removeNote(drafts_, number);
    if (!draftsRead_) removedSince_.push_back(number);
    return makeDense(remaining);
}

void FileStore::finishRemovals(NoteList notes, const GlobalSettings&) {
    if (places_.unfinished) static_cast<void>(makeDense(notes));
}

bool FileStore::makeDense(NoteList notes) {
    if (!makeRecordsDense(data_, notes, places_)) return false;
    header_.count = static_cast<std::int32_t>(notes.size());
    // A start takes the smaller of the header's count and the number of records.
    const bool counted = writeHeader();
    compactMemo(data_, notes);
    if (counted) places_.settled();
    if (!drafts_.empty()) static_cast<void>(writeDrafts(Flush::Yes));
    return counted;
}

bool FileStore::replaceAll(NoteList notes, const GlobalSettings&) {
    const FileImages images = imagesOf(data_.page, notes);
    if (images.lost) return false;
    // Old records must not point to the new bodies.
    if (!data_.files.remove(kNoteFile)) return false;
    header_.count = static_cast<std::int32_t>(notes.size());
    bool done = notes.empty() ? data_.files.remove(kMemoFile)
                              : data_.files.replace(kMemoFile, images.memo, Flush::Yes);
    done = done && writeHeader();
    if (!notes.empty()) done = done && data_.files.replace(kNoteFile, images.dat, Flush::Yes);
    if (!done) return false;
    places_.settled();
    // What the file of drafts still has belonged to the notes that were here before.
    drafts_.clear();
    draftsRead_ = true;
    draftsOwed_ = data_.exists(kDraftFile);
    for (std::size_t i = 0; i < notes.size(); ++i)
        notes[i]->memo = static_cast<std::int32_t>(i) + 1;
    return true;
}

bool FileStore::writeAll(NoteList notes, const GlobalSettings& settings) {
    if (imagesOf(data_.page, notes).lost) return false;
    finishRemovals(notes, settings);
    if (places_.unfinished) return false;
    const std::vector<NoteField> fields = everyField();
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (!set(static_cast<int>(i) + 1, *notes[i], fields).done) return false;
    }
    header_.count = static_cast<std::int32_t>(notes.size());
    return writeHeader();
}

bool FileStore::storeCount(int) {
    return true;  // the header has it, and is written with every new and every deleted note
}

bool FileStore::settle() {
    const bool header = !headerOwed_ || writeHeader();
    const bool drafts = !draftsOwed_ || writeDrafts(Flush::Yes);
    return header && drafts;
}

// --- What a record has room for ---------------------------------------------------------------------------

std::optional<std::size_t> FileStore::limit(NoteField field) const {
    if (field == NoteField::Nota) return kMemoLength;
    const NoteFieldRow& row = rowOf(field);
    return row.kind == FieldKind::Words ? std::optional(row.width) : std::nullopt;
}

std::optional<std::size_t> FileStore::sizeOf(TextView text) const {
    bool lost = false;
    const std::size_t size = data_.page.encode(data_.page.id, text, lost).size();
    return lost ? std::nullopt : std::optional(size);
}

// --- Drafts -----------------------------------------------------------------------------------------------

bool FileStore::saveDraft(const Draft& draft) {
    std::erase_if(drafts_, [&](const Draft& other) { return other.number == draft.number; });
    drafts_.push_back(draft);
    // While somebody is typing, one comes every second; every other one is flushed to the disk.
    flushNextDraft_ = !flushNextDraft_;
    return writeDrafts(flushNextDraft_ ? Flush::No : Flush::Yes);
}

bool FileStore::dropDraft(int number) {
    const auto dropped = std::erase_if(drafts_, [&](const Draft& draft) { return draft.number == number; });
    if (dropped == 0 && !draftsOwed_) return true;
    // The note may just have taken the text over: until that is on the disk, a power cut leaves only the
    // draft.
    static_cast<void>(data_.files.flush(kMemoFile));
    static_cast<void>(data_.files.flush(kNoteFile));
    return writeDrafts(drafts_.empty() ? Flush::No : Flush::Yes);
}

/// Adds what an earlier run left in the file, once. False while it cannot be read.
bool FileStore::readDrafts() {
    if (draftsRead_) return true;
    const ReadResult read = data_.files.read(kDraftFile, 0, kMostDraftBytes);
    if (read.status == IoStatus::Failed) return false;
    draftsRead_ = true;
    if (read.status == IoStatus::Absent) return true;
    // It goes with the next draft that is written or dropped.
    draftsOwed_ = true;
    std::vector<Draft> found = decodeDrafts(read.bytes);
    for (const int removed : std::exchange(removedSince_, {}))
        removeNote(found, removed);
    for (Draft& draft : found) {
        const bool newer = std::any_of(drafts_.begin(), drafts_.end(), [&](const Draft& other) {
            return other.number == draft.number && other.stored == draft.stored;
        });
        if (!newer) drafts_.push_back(std::move(draft));
    }
    return true;
}

bool FileStore::writeDrafts(Flush flush) {
    // Those of an earlier run are nowhere else.
    if (!readDrafts()) {
        draftsOwed_ = true;
        return false;
    }
    const std::string bytes = encodeDrafts(drafts_);
    bool done =
        drafts_.empty() ? data_.files.remove(kDraftFile) : data_.files.replace(kDraftFile, bytes, flush);
    // A program that keeps others from deleting or replacing the file may still let them write to it.
    if (!done && data_.files.length(kDraftFile).status == IoStatus::Done) {
        done = data_.files.write(kDraftFile, 0, bytes) && data_.files.cut(kDraftFile, bytes.size());
    }
    draftsOwed_ = !done;
    return done;
}

FoundDrafts FileStore::drafts(int) {
    if (!readDrafts()) return {IoStatus::Failed, {}};
    return {drafts_.empty() && !draftsOwed_ ? IoStatus::Absent : IoStatus::Done, drafts_};
}
