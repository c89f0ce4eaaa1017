#include "storage/NoteStore.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "support/Number.h"

namespace {

constexpr TextView kSettingSection = u"setting";
constexpr TextView kCountKey = u"count";
constexpr TextView kUseRegistryKey = u"UseRegistry";

std::vector<NoteField> allFields() {
    std::vector<NoteField> fields;
    for (const NoteFieldRow& row : noteFields())
        fields.push_back(row.field);
    return fields;
}

/// A record that holds nothing at all: the file ends before it, or only zero bytes stand there.
bool isZero(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

/// The note with its rule as both stores keep it: "*" for a pattern, and no pattern beside a fixed date.
NoteRecord withStoredRule(NoteRecord record) {
    if (recursByPattern(record)) {
        record.alarmdate = kPatternDate;
    } else {
        record.interval.clear();
        record.alarmday.clear();
        record.alarmdaymonth.clear();
    }
    return record;
}

// --- MEMO numbers -----------------------------------------------------------------------------------------

/// The MEMO numbers in the first `count` records of an image of KARDEL.DAT.
std::vector<std::int32_t> memoNumbers(std::string_view image, std::size_t count) {
    std::vector<std::int32_t> numbers;
    for (std::size_t i = 0; i < count && (i + 1) * kRecordLength <= image.size(); ++i) {
        numbers.push_back(memoNumberOf(image.substr(i * kRecordLength, kRecordLength)));
    }
    return numbers;
}

/// The MEMO numbers of all notes; empty when they cannot be read.
std::optional<std::vector<std::int32_t>> storedMemoNumbers(const DataFiles& data) {
    ReadResult read = data.files.read(kNoteFile, 0, kMaxNotes * kRecordLength);
    if (read.status == IoStatus::Failed) return std::nullopt;
    read.bytes.resize((read.bytes.size() + kRecordLength - 1) / kRecordLength * kRecordLength, '\0');
    return memoNumbers(read.bytes, kMaxNotes);
}

bool isIn(const std::vector<std::int32_t>& numbers, std::int64_t number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

/// The MEMO numbers of the notes before note `number`, and those of all others.
struct OtherNumbers {
    std::vector<std::int32_t> before;
    std::vector<std::int32_t> all;
};

OtherNumbers othersThan(const std::vector<std::int32_t>& numbers, int number) {
    OtherNumbers others;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const int note = static_cast<int>(i) + 1;
        if (note < number) others.before.push_back(numbers[i]);
        if (note != number) others.all.push_back(numbers[i]);
    }
    return others;
}

/// Writes a body into a record at the end that no other note points to. `taken` are the other notes' numbers:
/// where MEMO was lost or cut, they point behind its end, and the body must not become theirs.
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
/// that number is none of MEMO's or an earlier note has it. A `fresh` record shares with no note at all.
MemoResult writeBody(const DataFiles& data, int number, std::int32_t current, bool fresh, TextView body) {
    const std::optional<std::vector<std::int32_t>> numbers = storedMemoNumbers(data);
    const LengthResult memos = data.memoRecords();
    if (!numbers || memos.status == IoStatus::Failed) return {};
    const OtherNumbers others = othersThan(*numbers, number);
    const bool inside = current >= 1 && static_cast<std::uint64_t>(current) <= memos.bytes + 1;
    if (inside && !isIn(fresh ? others.all : others.before, current)) return data.WriteMemo(current, body);
    return appendMemo(data, others.all, body);
}

// --- Single notes in the files
// ------------------------------------------------------------------------------

struct FileSave {
    bool done = false;
    bool unmappable = false;
};

/// Writes fields of a note into its record. What the record holds beside them stays as it is, byte for byte.
FileSave setInFiles(const DataFiles& data, int number, NoteRecord& record,
                    std::span<const NoteField> fields) {
    FileSave save;
    EncodedRecord stored;
    const IoStatus status = data.GetRecordBytes(number, stored.bytes);
    if (status == IoStatus::Failed) return save;
    const bool fresh = isZero(stored.bytes);
    const std::string before = stored.bytes;
    const NoteRecord source = withStoredRule(record);
    const auto has = [fields](NoteField field) {
        return std::find(fields.begin(), fields.end(), field) != fields.end();
    };
    if (fresh) {
        stored = encodeRecord(data.page, source);
    } else {
        for (const NoteField field : fields)
            encodeFieldInto(data.page, source, field, stored);
        if (has(NoteField::AlarmDate) && !recursByPattern(source)) {
            for (const NoteField field :
                 {NoteField::Interval, NoteField::AlarmDay, NoteField::AlarmDayMonth}) {
                encodeFieldInto(data.page, source, field, stored);
            }
        }
    }
    save.unmappable = stored.unmappable;
    save.done = true;
    if (fresh || has(NoteField::Nota)) {
        // The body first: a record must never point to one that is not there.
        const MemoResult body = writeBody(data, number, memoNumberOf(stored.bytes), fresh, record.Nota);
        save.done = body.done;
        save.unmappable = save.unmappable || body.unmappable;
        if (body.done) setMemoNumber(stored.bytes, body.recordNumber);
        if (!body.done && fresh) setMemoNumber(stored.bytes, 0);
    }
    record.memo = memoNumberOf(stored.bytes);
    if (stored.bytes == before) return save;
    save.done = data.PutRecordBytes(number, stored.bytes) && save.done;
    return save;
}

FileSave createInFiles(const DataFiles& data, int number, NoteRecord& record, DataHeader& header) {
    FileSave save;
    std::optional<std::vector<std::int32_t>> numbers = storedMemoNumbers(data);
    if (!numbers) return save;
    // Records from `number` on are left-overs: their bodies are nobody's.
    numbers->resize(std::min(numbers->size(), static_cast<std::size_t>(number - 1)));
    const MemoResult body = appendMemo(data, *numbers, record.Nota);
    if (!body.done) return save;
    record.memo = body.recordNumber;
    const EncodedRecord encoded = encodeRecord(data.page, withStoredRule(record));
    if (!data.PutRecordBytes(number, encoded.bytes)) return save;
    header.count = number;
    save.done = data.WriteHeader(header);
    save.unmappable = body.unmappable || encoded.unmappable;
    return save;
}

// --- Removal
// ------------------------------------------------------------------------------------------------

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

/// Leaves no record in MEMO that no note points to: the last one moves into a free place, then the file is
/// cut. At every instant each note points to its own body; what is left undone is done at the next removal.
void compactMemo(const DataFiles& data, std::string image, std::span<NoteRecord* const> notes) {
    const LengthResult length = data.files.length(kMemoFile);
    if (length.status != IoStatus::Done) return;
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
            if (needed < length.bytes) static_cast<void>(data.files.cut(kMemoFile, needed));
            return;
        }
        const auto at = [](std::int32_t number) {
            return static_cast<std::uint64_t>(number - 1) * kMemoLength;
        };
        ReadResult body = data.files.read(kMemoFile, at(last), kMemoLength);
        if (body.status != IoStatus::Done) return;
        body.bytes.resize(kMemoLength, ' ');
        if (!data.files.write(kMemoFile, at(gap), body.bytes)) return;
        if (!repoint(data, image, last, gap, notes)) return;
    }
}

/// False when nothing was changed.
bool removeFromFiles(const DataFiles& data, int number, std::span<NoteRecord* const> remaining,
                     DataHeader& header) {
    header.count = static_cast<std::int32_t>(remaining.size());
    if (remaining.empty()) {
        data.DeleteDataFiles();
        return data.WriteHeader(header) && !data.exists(kNoteFile);
    }
    const std::size_t total = (remaining.size() + 1) * kRecordLength;
    ReadResult read = data.files.read(kNoteFile, 0, total);
    bool replaced = read.status != IoStatus::Failed;
    if (replaced) {
        read.bytes.resize(total, '\0');
        read.bytes.erase(static_cast<std::size_t>(number - 1) * kRecordLength, kRecordLength);
        replaced = data.files.replace(kNoteFile, read.bytes);
    }
    if (!replaced) {
        ++header.count;
        return false;
    }
    // A start takes the smaller of the header's count and the number of records.
    static_cast<void>(data.WriteHeader(header));
    compactMemo(data, std::move(read.bytes), remaining);
    return true;
}

struct Removal {
    bool done = true;
    int stoppedAt = 0;  ///< the first note that did not move, 0 when all did
};

/// Note by note, so that each remaining note is whole in at least one section at every instant: the section
/// that a note moves into holds the removed note or one that stands in the section before already. A note
/// that cannot be moved ends it there, as the next step would take that note's only section.
Removal removeFromRegistry(const RegistryStore& registry, int number, std::span<NoteRecord* const> remaining,
                           const GlobalSettings& settings, bool useRegistry) {
    const int left = static_cast<int>(remaining.size());
    const auto noteAt = [remaining](int at) -> const NoteRecord& {
        return *remaining[static_cast<std::size_t>(at - 1)];
    };
    for (int to = number; to <= left; ++to) {
        if (!noteAt(to).readOnly) continue;
        if (registry.settings.readSection(noteSection(to + 1)).status == IoStatus::Failed) {
            return {false, number};
        }
    }
    for (int to = number; to <= left; ++to) {
        const bool moved = noteAt(to).readOnly
                               ? registry.copySection(to + 1, to)
                               : registry.removeNote(to) && registry.SaveNoteToRegistry(to, noteAt(to));
        if (!moved) return {false, to};
    }
    Removal removal;
    removal.done = registry.settings.set(kSettingSection, settingValues(settings, left, useRegistry));
    // While the count is the old one, the last section must stand: it would come back as an empty note.
    if (!removal.done) return removal;
    removal.done = registry.removeNote(left + 1);
    removal.done = registry.removeBeyond(left) && removal.done;
    return removal;
}

/// Notes that could not move in the store must not be written under their new numbers: they would overwrite
/// their neighbours. They stay as they are until the next start.
void freeze(int number, std::span<NoteRecord* const> remaining) {
    for (auto i = static_cast<std::size_t>(number - 1); i < remaining.size(); ++i) {
        remaining[i]->readOnly = true;
    }
}

// --- Whole copies
// -------------------------------------------------------------------------------------------

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

/// Whether the only note of the files has to stay when the registry's notes come: it holds something, and is
/// not the first of them, left by a copy that was interrupted.
bool keepsFirst(const CodePage& page, const NoteRecord& first, const NoteRecord& imported) {
    const bool alarm = !first.alarmdate.empty() || !first.alarmtime.empty();
    if (first.Titolo.empty() && first.Nota.empty() && !alarm) return false;
    const NoteRecord copy = throughFiles(page, imported);
    const bool onlyBodyCame = first.Titolo.empty() && !alarm && first.Nota == copy.Nota;
    return !onlyBodyCame && !sameNote(first, copy);
}

bool holdsBytes(const DataFiles& data, TextView name, std::uint64_t at, const std::string& bytes) {
    const ReadResult read = data.files.read(name, at, bytes.size());
    return read.status == IoStatus::Done && read.bytes == bytes;
}

/// Puts a file back as it was read.
void putBack(const DataFiles& data, TextView name, const ReadResult& before) {
    if (before.status == IoStatus::Absent) static_cast<void>(data.files.remove(name));
    if (before.status == IoStatus::Done) static_cast<void>(data.files.replace(name, before.bytes));
}

/// Both files of a copy of notes.
struct Images {
    std::string dat;
    std::string memo;
    bool lost = false;
};

void append(const CodePage& page, Images& images, const NoteRecord& note) {
    images.lost = !AppendRecordPair(page, images.dat, images.memo, withStoredRule(note)) || images.lost;
}

}  // namespace

// --- One note
// -----------------------------------------------------------------------------------------------

bool NoteStore::load(int number, NoteRecord& record, const GlobalSettings& settings) {
    const std::int32_t width = wholeTwips(settings.DefaultWidth);
    const std::int32_t height = wholeTwips(settings.DefaultHeight);
    NoteRecord loaded;
    const bool done = UseRegistry ? loadFromRegistry(number, loaded, width, height)
                                  : loadFromFiles(number, loaded, width, height);
    if (!done) {
        loaded = NoteRecord();
        loaded.readOnly = true;
    }
    record = loaded;
    return done;
}

bool NoteStore::loadFromRegistry(int number, NoteRecord& record, std::int32_t width,
                                 std::int32_t height) const {
    return registry.LoadNoteFromRegistry(number - 1, record, width, height) != IoStatus::Failed;
}

bool NoteStore::loadFromFiles(int number, NoteRecord& record, std::int32_t width, std::int32_t height) const {
    std::string bytes;
    if (files.GetRecordBytes(number, bytes) == IoStatus::Failed) return false;
    if (isZero(bytes)) {
        ClearNoteRecord(record);
        record.width = width;
        record.height = height;
        // The first body may still be the first note's; any other one would be borrowed.
        const std::optional<std::vector<std::int32_t>> numbers = storedMemoNumbers(files);
        if (!numbers) return false;
        if (number > 1 || isIn(*numbers, record.memo)) record.memo = 0;
    } else {
        record = decodeRecord(files.page, bytes);
    }
    return files.ReadMemo(record.memo, record.Nota) != IoStatus::Failed;
}

bool NoteStore::set(int number, NoteRecord& record, std::span<const NoteField> fields) {
    if (record.readOnly) return true;
    bool done = true;
    bool unmappable = false;
    if (!UseRegistry || switchPending) {
        const FileSave save = setInFiles(files, number, record, fields);
        done = save.done;
        unmappable = save.unmappable;
    }
    if (UseRegistry || switchPending) done = registry.set(number, record, fields) && done;
    if (done) settleCount();
    if (!done || unmappable) saveFailed();
    return done;
}

void NoteStore::settleCount() {
    if (countPending == 0) return;
    bool done = true;
    if (!UseRegistry || switchPending) {
        header.count = std::max(header.count, countPending);
        done = files.WriteHeader(header);
    }
    if (storeCount(countPending) && done) countPending = 0;
}

bool NoteStore::save(int number, NoteRecord& record) {
    if (record.readOnly) return true;
    bool done = true;
    bool unmappable = false;
    if (!UseRegistry || switchPending) {
        const FileSave stored = setInFiles(files, number, record, allFields());
        done = stored.done;
        unmappable = stored.unmappable;
    }
    if (UseRegistry || switchPending) done = registry.SaveNoteToRegistry(number, record) && done;
    if (!done || unmappable) saveFailed();
    return done;
}

bool NoteStore::create(int number, NoteRecord& record) {
    bool done = true;
    bool unmappable = false;
    if (!UseRegistry || switchPending) {
        const FileSave stored = createInFiles(files, number, record, header);
        done = stored.done;
        unmappable = stored.unmappable;
    }
    if (UseRegistry || switchPending) {
        // A left-over section of that number would lend the new note its alarm or hide it.
        done = registry.removeNote(number) && done;
        done = registry.SaveNoteToRegistry(number, record) && done;
        done = storeCount(number) && done;
    }
    // A note that is not counted would be missing at the next start, however often it is saved.
    countPending = done ? 0 : number;
    if (!done || unmappable) saveFailed();
    return done;
}

bool NoteStore::remove(int number, std::span<NoteRecord* const> remaining, const GlobalSettings& settings) {
    bool done = true;
    int frozenFrom = 0;
    const auto fromFiles = [&] {
        if (removeFromFiles(files, number, remaining, header)) return;
        done = false;
        if (!UseRegistry) frozenFrom = number;
    };
    const auto fromRegistry = [&] {
        const Removal removal =
            removeFromRegistry(registry, number, remaining, settings, settings.UseRegistry);
        done = removal.done && done;
        if (UseRegistry) frozenFrom = removal.stoppedAt;
    };
    if (!UseRegistry || switchPending) fromFiles();
    if (UseRegistry || switchPending) fromRegistry();
    if (frozenFrom > 0) freeze(frozenFrom, remaining);
    countPending = std::min(countPending, static_cast<int>(remaining.size()));
    if (!done) saveFailed();
    return done;
}

bool NoteStore::storeCount(int count) {
    if (!UseRegistry && !switchPending) return true;
    return saveSetting(registry.settings, kSettingSection, kCountKey, decimal(count));
}

// --- Switch of the store
// ------------------------------------------------------------------------------------

bool NoteStore::switchToFiles(std::span<NoteRecord* const> notes) {
    if (!UseRegistry) {
        // Back to the store in force: the registry is no longer one, so nothing may count its notes.
        switchPending = false;
        return registry.settings.removeValue(kSettingSection, kCountKey);
    }
    switchPending = false;
    Images images;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        NoteRecord note = *notes[i];
        if (note.readOnly &&
            CopyRegistryNoteToRecord(registry, static_cast<int>(i), note) == IoStatus::Failed) {
            saveFailed();
            return false;
        }
        append(files.page, images, note);
    }
    bool done = true;
    if (notes.empty()) {
        files.DeleteDataFiles();
    } else {
        done = files.files.replace(kMemoFile, images.memo) && files.files.replace(kNoteFile, images.dat);
    }
    header.count = static_cast<std::int32_t>(notes.size());
    done = done && files.WriteHeader(header);
    if (done) {
        for (std::size_t i = 0; i < notes.size(); ++i)
            notes[i]->memo = static_cast<std::int32_t>(i) + 1;
        switchPending = true;
    }
    if (!done || images.lost) saveFailed();
    return done && !images.lost;
}

bool NoteStore::switchToRegistry(std::span<NoteRecord* const> notes, const GlobalSettings& settings) {
    const bool done = UseRegistry ? returnToRegistry(notes, settings) : copyToRegistry(notes, settings);
    if (!done) saveFailed();
    return done;
}

bool NoteStore::returnToRegistry(std::span<NoteRecord* const> notes, const GlobalSettings& settings) {
    switchPending = false;
    bool done = true;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (!notes[i]->readOnly) {
            done = registry.SaveNoteToRegistry(static_cast<int>(i) + 1, *notes[i]) && done;
        }
    }
    const int count = static_cast<int>(notes.size());
    done = registry.settings.set(kSettingSection, settingValues(settings, count, true)) && done;
    if (done) done = registry.removeBeyond(count);
    // A header on its own would make the next start ask about local files that nobody has.
    if (files.exists(kHeaderFile)) done = files.WriteHeader(header) && done;
    return done;
}

bool NoteStore::copyToRegistry(std::span<NoteRecord* const> notes, const GlobalSettings& settings) {
    switchPending = false;
    std::vector<NoteRecord> copies;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        copies.push_back(*notes[i]);
        if (copies.back().readOnly && !load(static_cast<int>(i) + 1, copies.back(), settings)) return false;
    }
    bool done = files.WriteHeader(header);
    // Everything may go: the notes stand in the files, which stay the store until the last value below.
    done = registry.settings.removeAll() && done;
    const int count = static_cast<int>(copies.size());
    std::vector<KeyText> values = settingValues(settings, count, true);
    const auto isMark = [](const KeyText& value) {
        return value.first == kCountKey || value.first == kUseRegistryKey;
    };
    const auto marks = std::stable_partition(values.begin(), values.end(), std::not_fn(isMark));
    done = registry.settings.set(kSettingSection, std::span(values.begin(), marks)) && done;
    for (std::size_t i = 0; i < copies.size(); ++i) {
        done = registry.SaveNoteToRegistry(static_cast<int>(i) + 1, copies[i]) && done;
    }
    if (!done) return false;
    // "count" first, which means nothing while the files are the store; the choice of store last, and only
    // when all else stands.
    for (auto mark = marks; done && mark != values.end(); ++mark) {
        done = saveSetting(registry.settings, kSettingSection, mark->first, mark->second);
    }
    switchPending = done;
    return done;
}

// --- Import
// -------------------------------------------------------------------------------------------------

bool NoteStore::importRegistryNotes(int registryCount) {
    const auto most = static_cast<std::size_t>(std::clamp(registryCount, 0, kMaxNotes));
    std::vector<NoteRecord> notes(most);
    for (std::size_t i = 0; i < most; ++i) {
        const int slot = static_cast<int>(i);
        if (CopyRegistryNoteToRecord(registry, slot, notes[i]) == IoStatus::Failed) return false;
    }
    const ReadResult datBefore = files.files.read(kNoteFile, 0, kMaxNotes * kRecordLength);
    const ReadResult memoBefore = files.files.read(kMemoFile, 0, kMostMemoBytes);
    const LengthResult memoLength = files.files.length(kMemoFile);
    const bool failed = datBefore.status == IoStatus::Failed || memoBefore.status == IoStatus::Failed ||
                        memoLength.status == IoStatus::Failed;
    if (failed || notes.empty()) return false;

    NoteRecord first = decodeRecord(files.page, datBefore.bytes);
    if (files.ReadMemo(first.memo, first.Nota) == IoStatus::Failed) return false;
    const bool keep = keepsFirst(files.page, first, notes.front());
    if (keep && notes.size() == static_cast<std::size_t>(kMaxNotes)) notes.pop_back();
    Images images;
    for (const NoteRecord& note : notes)
        append(files.page, images, note);

    // Behind a note that stays, bodies are added to those in MEMO; otherwise both files begin anew.
    std::uint64_t memoAt = 0;
    if (keep) {
        const std::uint64_t records = (memoLength.bytes + kMemoLength - 1) / kMemoLength;
        if (records > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max() - kMaxNotes)) {
            return false;
        }
        memoAt = records * kMemoLength;
        for (std::size_t at = 0; at < images.dat.size(); at += kRecordLength) {
            std::string record = images.dat.substr(at, kRecordLength);
            setMemoNumber(record, memoNumberOf(record) + static_cast<std::int32_t>(records));
            images.dat.replace(at, kRecordLength, record);
        }
        std::string firstBytes = datBefore.bytes.substr(0, kRecordLength);
        firstBytes.resize(kRecordLength, '\0');
        images.dat.insert(0, firstBytes);
    }

    const std::int32_t countBefore = header.count;
    bool done = keep ? files.files.write(kMemoFile, memoAt, images.memo)
                     : files.files.replace(kMemoFile, images.memo);
    done = done && files.files.replace(kNoteFile, images.dat);
    done = done && holdsBytes(files, kNoteFile, 0, images.dat) &&
           holdsBytes(files, kMemoFile, memoAt, images.memo);
    if (done) {
        header.count = static_cast<std::int32_t>(images.dat.size() / kRecordLength);
        done = files.WriteHeader(header);
    }
    if (!done) {
        header.count = countBefore;
        putBack(files, kNoteFile, datBefore);
        if (keep && memoLength.status == IoStatus::Done) {
            static_cast<void>(files.files.cut(kMemoFile, memoLength.bytes));
        } else {
            putBack(files, kMemoFile, memoBefore);
        }
        return false;
    }
    if (images.lost) saveFailed();
    return true;
}
