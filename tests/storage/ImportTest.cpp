// The copy of registry notes into new local files.
#include "storage/Import.h"

#include <gtest/gtest.h>

#include "tests/storage/SwitchedNotes.h"

namespace {

/// Notes in the registry, and a program that uses the local files.
struct ImportDesk {
    Desk desk{true};
    std::vector<NoteRecord> notes;

    explicit ImportDesk(int count) : notes(sampleNotes(count)) {
        desk.createAll(notes);
        desk.open(false);
    }

    std::vector<NoteRecord> found() {
        desk.open(false);
        return storeFree(desk.loadAll());
    }
};

TEST(Import, CopiesTheRegistrysNotesIntoNewFiles) {
    ImportDesk import(12);
    EXPECT_EQ(import.desk.import(12), Imported::Done);
    EXPECT_EQ(import.desk.headerCount(), 12);
    EXPECT_EQ(import.found(), storeFree(import.notes));
    EXPECT_EQ(import.desk.file(kMemoFile).size(), 12 * kMemoLength);
}

TEST(Import, KeepsTheAlarmsOfEveryKind) {
    Desk desk(true);
    std::vector<NoteRecord> notes = randomNotes(kMaxNotes, 41);
    desk.createAll(notes);
    desk.open(false);
    EXPECT_EQ(desk.import(kMaxNotes), Imported::Done);
    desk.open(false);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(Import, StopsAtFiftyNotesForAnAbsurdCount) {
    ImportDesk import(2);
    EXPECT_EQ(import.desk.import(999999999), Imported::Done);
    EXPECT_EQ(import.desk.headerCount(), 50);
    EXPECT_EQ(import.desk.file(kNoteFile).size(), 50 * kRecordLength);
}

TEST(Import, HasNothingToDoWithoutNotes) {
    ImportDesk import(1);
    EXPECT_EQ(import.desk.import(0), Imported::Nothing);
    EXPECT_EQ(import.desk.import(-5), Imported::Nothing);
    EXPECT_FALSE(import.desk.hasFile(kNoteFile));
}

TEST(Import, ReplacesAnEmptyFirstNote) {
    ImportDesk import(3);
    NoteRecord empty;
    ClearNoteRecord(empty);
    EXPECT_TRUE(import.desk.dataFiles().WriteMemo(1, u"").done);
    EXPECT_TRUE(import.desk.dataFiles().PutNoteRecord(1, empty));
    EXPECT_EQ(import.desk.import(3), Imported::Done);
    EXPECT_EQ(import.found(), storeFree(import.notes));
}

TEST(Import, ReplacesAFirstNoteOfWhichOnlyTheBodyHadCome) {
    ImportDesk import(3);
    NoteRecord half;
    ClearNoteRecord(half);
    EXPECT_TRUE(import.desk.dataFiles().WriteMemo(1, import.notes[0].Nota).done);
    half.memo = 1;
    EXPECT_TRUE(import.desk.dataFiles().PutNoteRecord(1, half));
    EXPECT_EQ(import.desk.import(3), Imported::Done);
    EXPECT_EQ(import.found(), storeFree(import.notes));
}

struct ImportBehindANote : testing::Test {
    ImportDesk import{3};
    NoteRecord first;

    void SetUp() override { seed(import); }

    void seed(ImportDesk& into) {
        first.Titolo = u"the user's own";
        first.Nota = u"with a body";
        first.backcolor = 255;
        EXPECT_TRUE(into.desk.store.create(1, first));
        into.desk.changes->made = 0;
    }
    std::vector<NoteRecord> all() {
        std::vector<NoteRecord> notes = storeFree(import.notes);
        notes.insert(notes.begin(), storeFree(first));
        return notes;
    }
};

TEST_F(ImportBehindANote, AddsTheRegistrysNotes) {
    EXPECT_EQ(import.desk.import(3), Imported::Done);
    EXPECT_EQ(import.desk.headerCount(), 4);
    EXPECT_EQ(import.found(), all());
}

TEST_F(ImportBehindANote, LeavesWhatIsLeftOfItsBody) {
    for (const std::size_t left : {1U, 300U, 1023U}) {
        ImportDesk again(3);
        seed(again);
        std::string record = again.desk.file(kNoteFile);
        setMemoNumber(record, 2);
        again.desk.file(kNoteFile) = record;
        again.desk.file(kMemoFile) = std::string(kMemoLength, ' ') + std::string(left, 'x');
        EXPECT_EQ(again.desk.import(3), Imported::Done);
        const std::vector<NoteRecord> found = again.found();
        EXPECT_EQ(found.at(0).Nota, Text(left, u'x'));
        EXPECT_EQ(found.at(3).Nota, again.notes[2].Nota);
    }
}

TEST_F(ImportBehindANote, IsRefusedIfOneOfFiftyWouldHaveToGo) {
    const auto before = import.desk.folder.content;
    EXPECT_EQ(import.desk.import(50), Imported::Refused);
    EXPECT_EQ(import.desk.folder.content, before);
    EXPECT_EQ(import.desk.import(49), Imported::Done);
    EXPECT_EQ(import.desk.headerCount(), 50);
    EXPECT_EQ(import.found().at(0), storeFree(first));
}

TEST_F(ImportBehindANote, KilledAtAnyPointLosesNothingAndIsDoneAgain) {
    for (int at = 0; at < 3; ++at) {
        ImportDesk again(3);
        seed(again);
        again.desk.changes->endAt = at;
        EXPECT_THROW(again.desk.import(3), ProgramEnd);
        EXPECT_EQ(again.found(), (std::vector<NoteRecord>{storeFree(first)})) << at;
        EXPECT_EQ(again.desk.import(3), Imported::Done);
        EXPECT_EQ(again.found(), all()) << at;
    }
}

TEST_F(ImportBehindANote, LeavesTheFilesAsTheyWereWhereverItFails) {
    for (const std::size_t bodies : {0U, 1U, 500U}) {  // what MEMO holds; it may have grown for years
        for (int at = 0; at < 3; ++at) {
            ImportDesk again(3);
            seed(again);
            again.desk.file(kMemoFile).resize(bodies * kMemoLength, ' ');
            if (bodies == 0) again.desk.folder.content.erase(Text(kMemoFile));
            const auto before = again.desk.folder.content;
            again.desk.changes->failAt = at;
            EXPECT_EQ(again.desk.import(3), Imported::Refused) << at;
            EXPECT_EQ(again.desk.folder.content, before) << at;
            EXPECT_EQ(again.desk.headerCount(), 1);
        }
    }
}

TEST(Import, IsDoneAgainWithoutDuplicatesWhereverItIsKilled) {
    for (int at = 0; at < 3; ++at) {
        ImportDesk import(3);
        import.desk.changes->endAt = at;
        EXPECT_THROW(import.desk.import(3), ProgramEnd);
        import.desk.open(false);
        EXPECT_EQ(import.desk.import(3), Imported::Done);
        EXPECT_EQ(import.found(), storeFree(import.notes)) << at;
    }
}

TEST(Import, LeavesNoFilesWhereverItFails) {
    for (int at = 0; at < 3; ++at) {
        ImportDesk import(3);
        import.desk.changes->failAt = at;
        EXPECT_EQ(import.desk.import(3), Imported::Refused) << at;
        EXPECT_FALSE(import.desk.hasFile(kNoteFile)) << at;
        EXPECT_FALSE(import.desk.hasFile(kMemoFile)) << at;
    }
}

TEST(Import, LeavesAnEmptyFirstNoteAsItWasWhereverItFails) {
    for (const bool records : {false, true}) {
        for (int at = 0; at < 3; ++at) {
            ImportDesk import(3);
            NoteRecord empty;
            ClearNoteRecord(empty);
            import.desk.file(kMemoFile) = std::string(kMemoLength, ' ') + "a body that no record points to";
            if (records) {
                EXPECT_TRUE(import.desk.dataFiles().PutNoteRecord(1, empty));
            }
            const auto before = import.desk.folder.content;
            import.desk.changes->made = 0;
            import.desk.changes->failAt = at;
            EXPECT_EQ(import.desk.import(3), Imported::Refused) << at;
            EXPECT_EQ(import.desk.folder.content, before) << at;
        }
    }
}

TEST(Import, KnowsANoteByItsBodyAlone) {
    ImportDesk import(1);
    EXPECT_FALSE(mayHoldNote(import.desk.dataFiles()));
    NoteRecord bodyOnly;
    ClearNoteRecord(bodyOnly);
    EXPECT_TRUE(import.desk.dataFiles().PutNoteRecord(1, bodyOnly));
    EXPECT_FALSE(mayHoldNote(import.desk.dataFiles()));
    EXPECT_TRUE(import.desk.dataFiles().WriteMemo(1, u"words").done);
    EXPECT_TRUE(mayHoldNote(import.desk.dataFiles()));
}

TEST(Import, DoesNotCountIfItCannotBeReadBack) {
    ImportDesk import(3);
    Files files = import.desk.folder.files();
    bool damaged = false;
    files.read = [&, inner = files.read](TextView name, std::uint64_t offset, std::size_t size) {
        ReadResult read = inner(name, offset, size);
        // The medium returns one wrong byte of the last body.
        if (name == kMemoFile && read.bytes.size() == 3 * kMemoLength) {
            read.bytes.back() = 'x';
            damaged = true;
        }
        return read;
    };
    FileStore store(files, westernPage());
    ASSERT_EQ(store.readHeader(false), IoStatus::Done);
    const RegistryStore registry(import.desk.settings.settings(), englishWeekdayKeys());
    EXPECT_EQ(importRegistryNotes(store, registry, 3), Imported::Refused);
    EXPECT_TRUE(damaged);
    EXPECT_EQ(import.desk.headerCount(), 1);
}

TEST(Import, WaitsWhileASectionOrTheFilesCannotBeRead) {
    ImportDesk import(3);
    import.desk.settings.locked.insert(u"kardel-2");
    EXPECT_EQ(import.desk.import(3), Imported::Refused);
    import.desk.settings.locked.clear();
    import.desk.folder.locked.insert(Text(kNoteFile));
    EXPECT_EQ(import.desk.import(3), Imported::Refused);
    EXPECT_EQ(import.desk.changes->made, 0);
}

TEST(Import, OfATextThatDoesNotFitIsRefusedAndWritesNothing) {
    for (const Text& text : {Text(1100, u'x'), Text(u"\u0416")}) {
        Desk desk(true);
        std::vector<NoteRecord> notes = sampleNotes(2);
        notes[1].Nota = text;
        desk.createAll(notes);
        desk.open(false);
        EXPECT_EQ(desk.import(2), Imported::Refused);
        EXPECT_EQ(desk.changes->made, 0);
        EXPECT_EQ(desk.settings.text(u"kardel-2", u"Nota"), notes[1].Nota);
        EXPECT_FALSE(desk.hasFile(kNoteFile) || desk.hasFile(kMemoFile));
    }
}

}  // namespace
