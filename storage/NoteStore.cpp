#include "storage/NoteStore.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "storage/FileNotes.h"
#include "support/Number.h"

namespace {

constexpr TextView kUseRegistryKey = u"UseRegistry";
constexpr TextView kImportedKey = u"ImportDAT";
constexpr TextView kPlacesKey = u"places";  ///< only while a removal is under way

/// Note by note, so that each one is whole in at least one section at every instant: the section that a note
/// moves into holds a removed note or one that stands in the section before already. The registry is told
/// where each note stands before its former section is written over, so that a start can go on with it. A
/// note that cannot be moved ends it there, as the next step would take that note's only section.
bool moveSections(const RegistryStore& registry, std::span<NoteRecord* const> notes, NotePlaces& places) {
    const int left = static_cast<int>(notes.size());
    const auto noteAt = [notes](int at) -> const NoteRecord& {
        return *notes[static_cast<std::size_t>(at - 1)];
    };
    for (int to = 1; to <= left; ++to) {
        if (!noteAt(to).readOnly || places.of(to) == to) continue;
        if (registry.settings.readSection(noteSection(places.of(to))).status == IoStatus::Failed)
            return false;
    }
    places.name(left);
    const int counted = storedCount(registry.settings);
    const auto tell = [&](const NotePlaces& known) {
        return saveSetting(registry.settings, kSettingSection, kPlacesKey, placesText(known, counted));
    };
    bool told = false;
    for (int to = 1; to <= left; ++to) {
        if (places.of(to) == to) continue;
        told = told || tell(places);
        const bool moved = told && (noteAt(to).readOnly ? registry.copySection(places.of(to), to)
                                                        : registry.removeNote(to) &&
                                                              registry.SaveNoteToRegistry(to, noteAt(to)));
        NotePlaces next = places;
        next.moved[static_cast<std::size_t>(to - 1)] = to;
        // Not told, the note goes on in its former section: there the next start would look for it.
        if (!moved || !tell(next)) return false;
        places = next;
    }
    places.moved.clear();
    return true;
}

bool makeSectionsDense(const RegistryStore& registry, std::span<NoteRecord* const> notes, NotePlaces& places,
                       const GlobalSettings& settings, bool useRegistry) {
    if (!moveSections(registry, notes, places)) return false;
    const int left = static_cast<int>(notes.size());
    // While the count is the old one, the last section must stand: it would come back as an empty note.
    if (!registry.settings.set(kSettingSection, settingValues(settings, left, useRegistry))) return false;
    if (!dropSetting(registry.settings, kSettingSection, kPlacesKey)) return false;
    const bool removed = registry.removeNote(left + 1);
    return registry.removeBeyond(left) && removed;
}

// --- Whole copies ----------------------------------------------------------------------------------------

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

/// Puts a copy behind the note that stays, and its bodies behind the `bodies` that MEMO has.
void putBehind(Images& images, std::string_view datBefore, std::int32_t bodies) {
    for (std::size_t at = 0; at < images.dat.size(); at += kRecordLength) {
        std::string record = images.dat.substr(at, kRecordLength);
        setMemoNumber(record, memoNumberOf(record) + bodies);
        images.dat.replace(at, kRecordLength, record);
    }
    std::string first(datBefore.substr(0, kRecordLength));
    first.resize(kRecordLength, '\0');
    images.dat.insert(0, first);
}

/// Writes a copy, its bodies at `memoAt` of a MEMO that is `kept`, and the header's count. True only when all
/// of it has been read back.
bool writeCopy(const DataFiles& data, DataHeader& header, const Images& images, bool kept,
               std::uint64_t memoAt) {
    const bool bodies =
        kept ? data.files.write(kMemoFile, memoAt, images.memo) : data.files.replace(kMemoFile, images.memo);
    if (!bodies || !data.files.replace(kNoteFile, images.dat)) return false;
    if (!holdsBytes(data, kNoteFile, 0, images.dat) || !holdsBytes(data, kMemoFile, memoAt, images.memo))
        return false;
    header.count = static_cast<std::int32_t>(images.dat.size() / kRecordLength);
    return data.WriteHeader(header);
}

}  // namespace

// --- One note --------------------------------------------------------------------------------------------

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
    return registry.LoadNoteFromRegistry(sectionPlaces.of(number) - 1, record, width, height) !=
           IoStatus::Failed;
}

bool NoteStore::loadFromFiles(int number, NoteRecord& record, std::int32_t width, std::int32_t height) const {
    const int place = recordPlaces.of(number);
    std::string bytes;
    if (files.GetRecordBytes(place, bytes) == IoStatus::Failed) return false;
    if (isZeroRecord(bytes)) {
        ClearNoteRecord(record);
        record.width = width;
        record.height = height;
        // The first body may still be the first note's; any other one would be borrowed.
        const std::optional<std::vector<std::int32_t>> numbers = storedMemoNumbers(files);
        if (!numbers) return false;
        if (place > 1 || std::find(numbers->begin(), numbers->end(), record.memo) != numbers->end())
            record.memo = 0;
    } else {
        record = decodeRecord(files.page, bytes);
    }
    return files.ReadMemo(record.memo, record.Nota) != IoStatus::Failed;
}

bool NoteStore::write(int number, const std::function<FileSave()>& toFiles,
                      const std::function<bool()>& toRegistry) {
    if (!hasPlace(number)) {
        saveFailed();
        return false;
    }
    FileSave inFiles{true, false};
    if (!UseRegistry || switchPending) inFiles = toFiles();
    bool done = inFiles.done;
    if (UseRegistry || switchPending) done = toRegistry() && done;
    if (!done || inFiles.unmappable) saveFailed();
    return done;
}

bool NoteStore::set(int number, NoteRecord& record, std::span<const NoteField> fields) {
    if (record.readOnly) return true;
    const bool done = write(
        number, [&] { return setInFiles(files, recordPlaces.of(number), record, fields); },
        [&] { return registry.set(sectionPlaces.of(number), record, fields); });
    if (done) settleCount();
    return done;
}

void NoteStore::settleCount() {
    if (countPending == 0) return;
    bool done = true;
    if (!UseRegistry || switchPending) {
        header.count = std::max(header.count, recordPlaces.of(countPending));
        done = files.WriteHeader(header);
    }
    if (storeCount(countPending) && done) countPending = 0;
}

bool NoteStore::hasPlace(int number) const {
    return recordPlaces.of(number) <= kMaxNotes && sectionPlaces.of(number) <= kMaxNotes;
}

bool NoteStore::create(int number, NoteRecord& record) {
    const bool done = write(
        number, [&] { return createInFiles(files, recordPlaces.of(number), record, header); },
        [&] {
            // A left-over section of that number would lend the new note its alarm or hide it.
            const int place = sectionPlaces.of(number);
            const bool cleared = registry.removeNote(place);
            const bool saved = registry.SaveNoteToRegistry(place, record);
            return storeCount(number) && saved && cleared;
        });
    // A note that is not counted would be missing at the next start, however often it is saved.
    countPending = done ? 0 : number;
    return done;
}

bool NoteStore::remove(int number, std::span<NoteRecord* const> remaining, const GlobalSettings& settings) {
    const int left = static_cast<int>(remaining.size());
    bool done = true;
    if (!UseRegistry || switchPending) {
        recordPlaces.remove(number, left);
        done = settleRecords(remaining);
    }
    if (UseRegistry || switchPending) {
        sectionPlaces.remove(number, left);
        done = settleSections(remaining, settings, settings.UseRegistry) && done;
    }
    countPending = std::min(countPending, left);
    if (!done) saveFailed();
    return done;
}

void NoteStore::finishRemovals(std::span<NoteRecord* const> notes, const GlobalSettings& settings) {
    if (recordPlaces.unfinished && (!UseRegistry || switchPending)) settleRecords(notes);
    if (sectionPlaces.unfinished && (UseRegistry || switchPending)) {
        settleSections(notes, settings, settings.UseRegistry);
    }
}

bool NoteStore::settleRecords(std::span<NoteRecord* const> notes) {
    const bool done = makeRecordsDense(files, notes, recordPlaces, header);
    if (done) recordPlaces.settled();
    return done;
}

bool NoteStore::settleSections(std::span<NoteRecord* const> notes, const GlobalSettings& settings,
                               bool useRegistry) {
    const bool done = makeSectionsDense(registry, notes, sectionPlaces, settings, useRegistry);
    if (done) sectionPlaces.settled();
    return done;
}

int NoteStore::resumeRemoval(int count) {
    if (!UseRegistry) return count;
    const Text stored = settingOr(registry.settings, kSettingSection, kPlacesKey, u"");
    const std::optional<NotePlaces> places = parsePlaces(stored, count);
    if (!places) return count;
    sectionPlaces = *places;
    return static_cast<int>(places->moved.size());
}

bool NoteStore::storeCount(int count) {
    if (!UseRegistry && !switchPending) return true;
    // The note that is new is none of those whose places the registry was told.
    if (sectionPlaces.unfinished && !dropSetting(registry.settings, kSettingSection, kPlacesKey))
        return false;
    const int last = count > 0 ? sectionPlaces.of(count) : 0;
    return saveSetting(registry.settings, kSettingSection, kCountKey, decimal(last));
}

// --- Switch of the store ---------------------------------------------------------------------------------

bool NoteStore::switchToFiles(std::span<NoteRecord* const> notes) {
    const Settings& settings = registry.settings;
    if (!UseRegistry) {
        // Back to the store in force: the registry is no longer one, so nothing may count its notes. The
        // choice first: a registry without a count would be a desk of one empty note. Until the choice is
        // stored, the next start may take either store: both are kept in step.
        if (!saveSetting(settings, kSettingSection, kUseRegistryKey, boolText(false))) return false;
        switchPending = false;
        return settings.removeValue(kSettingSection, kCountKey);
    }
    switchPending = false;
    Images images;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        NoteRecord note = *notes[i];
        const int slot = sectionPlaces.of(static_cast<int>(i) + 1) - 1;
        if (note.readOnly && CopyRegistryNoteToRecord(registry, slot, note) == IoStatus::Failed) {
            saveFailed();
            return false;
        }
        append(files.page, images, note);
    }
    // Ended on the way, the next start finds files beside the registry and may be told to go on with them.
    // Until the records stand, which comes last, it then has to copy the registry's notes once more; and
    // records of an earlier switch must not find the new bodies.
    bool done = settings.removeValue(kSettingSection, kImportedKey) && files.files.remove(kNoteFile);
    header.count = static_cast<std::int32_t>(notes.size());
    if (notes.empty()) {
        done = done && files.files.remove(kMemoFile) && files.WriteHeader(header);
    } else {
        done = done && files.files.replace(kMemoFile, images.memo) && files.WriteHeader(header) &&
               files.files.replace(kNoteFile, images.dat);
    }
    if (done) {
        recordPlaces.settled();
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
    finishRemovals(notes, settings);
    if (sectionPlaces.unfinished) return false;  // a note would be written over the only section of another
    bool done = true;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (!notes[i]->readOnly) {
            done = registry.SaveNoteToRegistry(static_cast<int>(i) + 1, *notes[i]) && done;
        }
    }
    const int count = static_cast<int>(notes.size());
    done = registry.settings.set(kSettingSection, settingValues(settings, count, true)) && done;
    // Until the choice is stored, the next start may take either store: both are kept in step.
    if (done) switchPending = false;
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
    sectionPlaces.settled();
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

// --- Import ----------------------------------------------------------------------------------------------

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
    const std::uint64_t bodies = keep ? (memoLength.bytes + kMemoLength - 1) / kMemoLength : 0;
    if (bodies > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max() - kMaxNotes))
        return false;
    if (keep) putBehind(images, datBefore.bytes, static_cast<std::int32_t>(bodies));

    const std::int32_t countBefore = header.count;
    if (!writeCopy(files, header, images, keep, bodies * kMemoLength)) {
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
