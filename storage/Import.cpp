#include "storage/Import.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::size_t kMostMemoBytes = std::size_t{4} * kMaxNotes * kMemoLength;

bool sameNote(const NoteRecord& one, NoteRecord other) {
    other.memo = one.memo;
    return one == other;
}

/// The note as it comes back from the files.
NoteRecord throughFiles(const CodePage& page, const NoteRecord& note) {
    NoteRecord result = decodeRecord(page, encodeRecord(page, note).bytes);
    result.Nota = decodeField(page, encodeField(page, note.Nota, kMemoLength).bytes);
    return result;
}

bool isEmpty(const NoteRecord& note) {
    return note.Titolo.empty() && note.Nota.empty() && note.alarmdate.empty() && note.alarmtime.empty();
}

/// Whether the only note of the files has to stay when the registry's notes come: it holds something, and is
/// none of them, left by a copy or a deletion that was interrupted.
bool keepsFirst(const CodePage& page, const NoteRecord& first, const std::vector<NoteRecord>& imported) {
    if (isEmpty(first)) return false;
    const bool alarm = !first.alarmdate.empty() || !first.alarmtime.empty();
    const bool onlyBodyCame =
        first.Titolo.empty() && !alarm && first.Nota == throughFiles(page, imported.front()).Nota;
    return !onlyBodyCame && std::none_of(imported.begin(), imported.end(), [&](const NoteRecord& note) {
        return sameNote(first, throughFiles(page, note));
    });
}

/// Whether both are one note, of which one store has a change that the other did not come to. The words of
/// the two are the same, or all but one of the texts.
bool isOneNote(const NoteRecord& one, NoteRecord other) {
    if (one.Titolo == other.Titolo && one.Nota == other.Nota) return true;
    if (one.Titolo == other.Titolo) {
        other.Nota = one.Nota;
    } else {
        other.Titolo = one.Titolo;
        other.width = one.width;  // a longer title widens its note
    }
    return sameNote(one, other);
}

bool holdsBytes(const DataFiles& data, TextView name, std::uint64_t at, const std::string& bytes) {
    const ReadResult read = data.files.read(name, at, bytes.size());
    return read.status == IoStatus::Done && read.bytes == bytes;
}

/// Restores a file as it was read.
void putBack(const DataFiles& data, TextView name, const ReadResult& before) {
    if (before.status == IoStatus::Absent) static_cast<void>(data.files.remove(name));
    if (before.status == IoStatus::Done)
        static_cast<void>(data.files.replace(name, before.bytes, Flush::Yes));
}

/// Puts a copy after the note that stays, and its bodies after the `bodies` that MEMO has.
void putBehind(FileImages& images, std::string_view datBefore, std::int32_t bodies) {
    for (std::size_t at = 0; at < images.dat.size(); at += kRecordLength) {
        std::string record = images.dat.substr(at, kRecordLength);
        setMemoNumber(record, memoNumberOf(record) + bodies);
        images.dat.replace(at, kRecordLength, record);
    }
    std::string first(datBefore.substr(0, kRecordLength));
    first.resize(kRecordLength, '\0');
    images.dat.insert(0, first);
}

/// Writes a copy with its bodies at `memoAt`, in a MEMO that may be `kept`, and the header's count. True only
/// when all of it has been read back.
bool writeCopy(FileStore& store, const FileImages& images, bool kept, std::uint64_t memoAt) {
    const DataFiles& data = store.data();
    const bool bodies = kept ? data.files.write(kMemoFile, memoAt, images.memo) && data.files.flush(kMemoFile)
                             : data.files.replace(kMemoFile, images.memo, Flush::Yes);
    if (!bodies || !data.files.replace(kNoteFile, images.dat, Flush::Yes)) return false;
    if (!holdsBytes(data, kNoteFile, 0, images.dat) || !holdsBytes(data, kMemoFile, memoAt, images.memo))
        return false;
    store.count(static_cast<int>(images.dat.size() / kRecordLength));
    return store.writeHeader();
}

}  // namespace

Imported importRegistryNotes(FileStore& files, const RegistryStore& registry, int registryCount) {
    const DataFiles& data = files.data();
    std::vector<NoteRecord> notes(static_cast<std::size_t>(std::clamp(registryCount, 0, kMaxNotes)));
    if (notes.empty()) return Imported::Nothing;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const int slot = registry.placeOf(static_cast<int>(i) + 1) - 1;
        if (CopyRegistryNoteToRecord(registry.notes(), slot, notes[i]) == IoStatus::Failed)
            return Imported::Refused;
    }
    std::vector<NoteRecord*> all;
    all.reserve(notes.size());
    for (NoteRecord& note : notes)
        all.push_back(&note);
    FileImages images = imagesOf(data.page, all);
    if (images.lost) return Imported::Refused;

    const ReadResult datBefore = data.files.read(kNoteFile, 0, kMaxNotes * kRecordLength);
    const ReadResult memoBefore = data.files.read(kMemoFile, 0, kMostMemoBytes);
    const LengthResult memoLength = data.files.length(kMemoFile);
    const bool failed = datBefore.status == IoStatus::Failed || memoBefore.status == IoStatus::Failed ||
                        memoLength.status == IoStatus::Failed;
    if (failed) return Imported::Refused;

    NoteRecord first = decodeRecord(data.page, datBefore.bytes);
    if (data.ReadMemo(first.memo, first.Nota) == IoStatus::Failed) return Imported::Refused;
    const bool keep = keepsFirst(data.page, first, notes);
    // Both stores were kept in step, and the last change did not reach both.
    if (keep && notes.size() == 1 && isOneNote(first, throughFiles(data.page, notes.front())))
        return Imported::Nothing;
    // One of them would have to be dropped silently.
    if (keep && notes.size() == static_cast<std::size_t>(kMaxNotes)) return Imported::Refused;
    // Behind a note that stays, bodies are added to those in MEMO; otherwise both files begin anew.
    const std::uint64_t bodies = keep ? (memoLength.bytes + kMemoLength - 1) / kMemoLength : 0;
    if (bodies > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max() - kMaxNotes))
        return Imported::Refused;
    if (keep) putBehind(images, datBefore.bytes, static_cast<std::int32_t>(bodies));

    const int countBefore = files.header().count;
    if (writeCopy(files, images, keep, bodies * kMemoLength)) return Imported::Done;
    files.count(countBefore);
    putBack(data, kNoteFile, datBefore);
    if (keep && memoLength.status == IoStatus::Done) {
        static_cast<void>(data.files.cut(kMemoFile, memoLength.bytes));
    } else {
        putBack(data, kMemoFile, memoBefore);
    }
    return Imported::Refused;
}

bool mayHoldNote(const DataFiles& data) {
    const ReadResult record = data.files.read(kNoteFile, 0, kRecordLength);
    if (record.status == IoStatus::Absent) return false;
    NoteRecord first = decodeRecord(data.page, record.bytes);
    const bool read =
        record.status == IoStatus::Done && data.ReadMemo(first.memo, first.Nota) != IoStatus::Failed;
    return !read || !isEmpty(first);
}
