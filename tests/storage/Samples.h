// Notes and stores for the tests of this folder.
#pragma once

#include <ostream>
#include <random>

#include "storage/Import.h"
#include "storage/NoteStore.h"
#include "support/Number.h"
#include "tests/storage/MemoryFiles.h"
#include "tests/storage/MemorySettings.h"
#include "tests/support/TestCodePages.h"

/// Makes a failed comparison of notes readable.
inline void PrintTo(const NoteRecord& note, std::ostream* out) {
    *out << "{memo " << note.memo;
    for (const NoteFieldRow& row : noteFields()) {
        bool lost = false;
        const std::string text = testing_pages::encodeUtf8(0, row.write(note), lost).substr(0, 40);
        if (!text.empty() && text != "0" && text != "False") *out << ", " << text;
    }
    *out << (note.readOnly ? ", read-only}" : "}");
}

inline std::array<Text, kWeekdays> englishWeekdayKeys() {
    return {u"w.Mon", u"w.Tue", u"w.Wed", u"w.Thu", u"w.Fri", u"w.Sat", u"w.Sun"};
}

/// Random numbers that are the same in every run and with every standard library.
struct Dice {
    std::mt19937 engine;

    explicit Dice(unsigned seed) : engine(seed) {}

    /// 0 .. sides - 1
    std::uint32_t roll(std::uint32_t sides) { return static_cast<std::uint32_t>(engine() % sides); }
    bool coin() { return roll(2) == 1; }
    std::int32_t number() { return static_cast<std::int32_t>(engine()); }

    /// A text of characters in `page`, without blanks at its end.
    Text text(const CodePage& page, std::size_t mostBytes) {
        constexpr TextView kLetters = u"abcXYZ 019,.-\r\n\u00e8\u00df\u20ac\u3042\u30ab";
        Text result;
        std::size_t used = 0;
        const std::uint32_t wanted = roll(static_cast<std::uint32_t>(mostBytes) + 1);
        for (std::uint32_t i = 0; i < wanted; ++i) {
            const Text one(1, kLetters[roll(static_cast<std::uint32_t>(kLetters.size()))]);
            bool lost = false;
            const std::size_t length = page.encode(page.id, one, lost).size();
            if (lost || used + length > mostBytes) continue;
            result += one;
            used += length;
        }
        return Text(withoutTrailingBlanks(result));
    }

    std::string bytes(std::size_t length) {
        std::string result(length, '\0');
        for (char& one : result)
            one = testing_pages::byteOf(roll(256));
        return result;
    }

    Text oneOf(std::initializer_list<TextView> texts) {
        return Text(texts.begin()[roll(static_cast<std::uint32_t>(texts.size()))]);
    }
};

/// A note with every field set at random, and a rule that the program could have made.
inline NoteRecord randomNote(Dice& dice, const CodePage& page) {
    NoteRecord note;
    note.Titolo = dice.text(page, kTitleLength);
    note.Nota = dice.text(page, kMemoLength);
    note.backcolor = dice.number();
    note.x = dice.number();
    note.y = dice.number();
    note.width = dice.number();
    note.height = dice.number();
    note.topmost = dice.coin();
    note.iconized = dice.coin();
    note.closed = dice.coin();
    note.mute = dice.coin();
    note.alarmtime = dice.oneOf({u"", u"08:30:00", u"23:59:59"});
    note.alarmweekday = static_cast<std::int16_t>(dice.roll(9));
    note.alarmrepeatnumber = static_cast<std::int16_t>(dice.number());
    note.alarmrepeatevery = dice.oneOf({u"", u"mm", u"hh", u"dd", u"MM"});
    for (bool& day : note.weekdays)
        day = dice.coin();
    note.interval = dice.oneOf({u"", u"eachday", u"eachmonth", u"eachyear"});
    if (note.interval.empty()) {
        note.alarmdate = dice.oneOf({u"", u"31/12/2026", u"01/02/2027"});
        return note;
    }
    note.alarmdate = u"*";
    if (note.interval == kEachMonth) note.alarmday = u"07";
    if (note.interval == kEachYear) note.alarmdaymonth = u"24/12";
    return note;
}

/// Both stores in memory, and a gateway over them. `open` does what the next start does with the same stores.
struct Desk {
    MemoryFiles folder;
    MemorySettings settings;
    SharedChanges changes = std::make_shared<Changes>();
    GlobalSettings global;
    NoteStore store;
    CodePage page;
    int told = 0;  ///< how often the user was told that a save failed

    explicit Desk(bool useRegistry, const CodePage& codePage = westernPage()) { open(useRegistry, codePage); }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    StoreParts parts() { return {settings.settings(), englishWeekdayKeys(), folder.files(), page}; }
    /// The files and the registry's sections themselves, bypassing the gateway.
    DataFiles dataFiles() { return {folder.files(), page}; }
    RegistryNotes sections() { return {settings.settings(), englishWeekdayKeys()}; }

    /// Starts the program over these stores.
    void open(bool useRegistry, const CodePage& codePage = westernPage()) {
        page = codePage;
        changes = std::make_shared<Changes>();
        folder.changes = changes;
        settings.changes = changes;
        told = 0;
        store = NoteStore(parts());
        global.UseRegistry = useRegistry;
        store.saveFailed = [this] { ++told; };
        store.begin(useRegistry ? StoreKind::Registry : StoreKind::Files);
        changes->made = 0;
    }

    /// The number of notes in the header of the local files.
    int headerCount() {
        DataHeader header;
        decodeHeader(file(kHeaderFile), header);
        return header.count;
    }

    /// The number of notes that a start over these stores finds.
    int count() {
        if (store.kind() == StoreKind::Registry) {
            const Text* const stored = settings.find(u"setting", u"count");
            const int counted = stored == nullptr ? 1 : std::max(1, static_cast<int>(leadingInt32(*stored)));
            const auto places = parsePlaces(settings.text(u"setting", u"places"), counted);
            return places ? static_cast<int>(places->moved.size()) : counted;
        }
        const LengthResult records = dataFiles().noteRecords();
        if (records.status != IoStatus::Done) return 1;
        return std::min(headerCount(), static_cast<int>(records.bytes));
    }

    std::vector<NoteRecord> loadAll() {
        std::vector<NoteRecord> notes(static_cast<std::size_t>(std::clamp(count(), 0, kMaxNotes)));
        for (std::size_t i = 0; i < notes.size(); ++i)
            store.load(static_cast<int>(i) + 1, notes[i], global);
        return notes;
    }

    void createAll(std::vector<NoteRecord>& notes) {
        for (std::size_t i = 0; i < notes.size(); ++i)
            static_cast<void>(store.create(static_cast<int>(i) + 1, notes[i]));
    }

    bool toFiles(std::vector<NoteRecord>& notes);
    bool toRegistry(std::vector<NoteRecord>& notes);
    Imported import(int registryCount) {
        FileStore files(folder.files(), page);
        static_cast<void>(files.readHeader(true));
        const RegistryStore registry(settings.settings(), englishWeekdayKeys());
        return importRegistryNotes(files, registry, registryCount);
    }

    std::string& file(TextView name) { return folder.content[Text(name)]; }
    bool hasFile(TextView name) const { return folder.content.contains(Text(name)); }
};

inline std::vector<NoteRecord*> pointersTo(std::vector<NoteRecord>& notes) {
    std::vector<NoteRecord*> pointers;
    for (NoteRecord& note : notes)
        pointers.push_back(&note);
    return pointers;
}

inline bool Desk::toFiles(std::vector<NoteRecord>& notes) {
    return store.switchTo(StoreKind::Files, pointersTo(notes), global) == Switched::Done;
}

inline bool Desk::toRegistry(std::vector<NoteRecord>& notes) {
    return store.switchTo(StoreKind::Registry, pointersTo(notes), global) == Switched::Done;
}

/// The note without what only one of the stores has, for comparing the two.
inline NoteRecord storeFree(NoteRecord note) {
    note.memo = 0;
    return note;
}

/// `count` notes that differ in every text and number.
inline std::vector<NoteRecord> sampleNotes(int count) {
    std::vector<NoteRecord> notes;
    for (int i = 1; i <= count; ++i) {
        NoteRecord note;
        note.Titolo = u"Title " + decimal(i);
        note.Nota = u"Body " + decimal(i) + u"\r\nsecond line";
        note.backcolor = 1000 * i;
        note.x = 15 * i;
        note.y = 30 * i;
        note.width = 2000 + i;
        note.height = 1500 + i;
        note.topmost = i % 2 == 0;
        note.closed = i % 3 == 0;
        note.alarmdate = i % 2 == 0 ? u"*" : u"31/12/2030";
        note.alarmtime = u"12:00:00";
        note.interval = i % 2 == 0 ? u"eachmonth" : u"";
        note.alarmday = i % 2 == 0 ? twoDigits(i) : Text();
        note.weekdays[static_cast<std::size_t>(i % kWeekdays)] = true;
        notes.push_back(note);
    }
    return notes;
}
