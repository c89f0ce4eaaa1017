// Switching the store, and the copy of registry notes into new local files.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/storage/Samples.h"

namespace {

std::vector<NoteRecord> storeFree(std::vector<NoteRecord> notes) {
    for (NoteRecord& note : notes)
        note = storeFree(note);
    return notes;
}

std::vector<NoteRecord> randomNotes(int count, unsigned seed) {
    Dice dice(seed);
    std::vector<NoteRecord> notes;
    for (int i = 0; i < count; ++i)
        notes.push_back(randomNote(dice, westernPage()));
    return notes;
}

/// What the user does between the switch and the restart: edits, a new note, a deletion.
void live(Desk& desk, std::vector<NoteRecord>& notes) {
    notes[0].Nota = u"edited after the switch";
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::Nota}));
    notes[1].x = 4711;
    EXPECT_TRUE(desk.store.set(2, notes[1], {NoteField::X}));
    NoteRecord fresh;
    fresh.Titolo = u"made after the switch";
    fresh.backcolor = kDesignColor;
    notes.push_back(fresh);
    EXPECT_TRUE(desk.store.create(static_cast<int>(notes.size()), notes.back()));
    notes.erase(notes.begin() + 2);
    const std::vector<NoteRecord*> remaining = pointersTo(notes);
    EXPECT_TRUE(desk.store.remove(3, remaining, desk.global));
}

// --- To the files ----------------------------------------------------------------------------------------

TEST(SwitchToFiles, CopiesEveryNote) {
    Desk desk(true);
    std::vector<NoteRecord> notes = randomNotes(kMaxNotes, 31);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toFiles(notes));
    EXPECT_EQ(desk.told, 0);
    EXPECT_EQ(desk.file(kMemoFile).size(), kMaxNotes * kMemoLength);
    desk.open(false);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchToFiles, LeavesNothingOfOlderFiles) {
    Desk desk(true);
    desk.file(kNoteFile) = std::string(9 * kRecordLength, 'x');
    desk.file(kMemoFile) = std::string(9 * kMemoLength, 'x');
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toFiles(notes));
    desk.open(false);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchToFiles, KeepsWhatIsChangedBeforeTheRestart) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(4);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toFiles(notes));
    live(desk, notes);
    EXPECT_EQ(desk.told, 0);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));  // the store in force
    EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), u"False");
    desk.open(false);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchToFiles, IsRefusedWhileATextDoesNotFitAndWritesNothing) {
    for (const bool tooLong : {true, false}) {
        Desk desk(true);
        std::vector<NoteRecord> notes = sampleNotes(3);
        notes[0].Nota = tooLong ? Text(1025, u'x') : Text(u"\u0416");
        notes[2].Titolo = tooLong ? Text(129, u'x') : Text(u"\u0416");
        desk.createAll(notes);
        desk.settings.put(u"setting", u"UseRegistry", u"True");
        desk.changes->made = 0;
        EXPECT_FALSE(desk.toFiles(notes));
        EXPECT_EQ(desk.told, 1);
        EXPECT_EQ(desk.changes->made, 0);
        EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), u"True");
        EXPECT_TRUE(desk.global.UseRegistry);
        EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
    }
}

TEST(SwitchToFiles, LeavesTheRegistryInForceWhereverItFails) {
    for (int at = 0; at < 3; ++at) {
        Desk desk(true);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        desk.changes->made = 0;
        desk.changes->failAt = at;
        EXPECT_FALSE(desk.toFiles(notes));
        EXPECT_EQ(desk.told, 1);
        EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
    }
}

TEST(SwitchToFiles, TriesAgainToReadANoteThatCouldNotBeRead) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    std::vector<NoteRecord> shown = notes;
    shown[1] = NoteRecord();
    shown[1].readOnly = true;
    EXPECT_TRUE(desk.toFiles(shown));
    desk.settings.locked.insert(u"kardel-2");
    EXPECT_FALSE(desk.toFiles(shown));
    desk.open(false);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchToFiles, WithoutAnyNoteLeavesNoRecords) {
    Desk desk(true);
    desk.file(kNoteFile) = std::string(kRecordLength, 'x');
    std::vector<NoteRecord> none;
    EXPECT_TRUE(desk.toFiles(none));
    EXPECT_FALSE(desk.hasFile(kNoteFile));
    EXPECT_FALSE(desk.hasFile(kMemoFile));
}

// --- To the registry -------------------------------------------------------------------------------------

TEST(SwitchToRegistry, CopiesEveryNote) {
    Desk desk(false);
    std::vector<NoteRecord> notes = randomNotes(kMaxNotes, 32);
    desk.createAll(notes);
    desk.settings.put(u"kardel-3", u"interval", u"stale");
    desk.settings.put(u"setting", u"ImportDAT", u"1");
    desk.global.EasyAlign = true;
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_EQ(desk.settings.text(u"setting", u"count"), u"50");
    EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), u"True");
    EXPECT_EQ(desk.settings.text(u"setting", u"EasyAlign"), u"True");
    EXPECT_EQ(desk.settings.text(u"setting", u"defaultwidth"), u"2910");
    EXPECT_EQ(desk.settings.text(u"setting", u"ImportDAT"), u"(none)");
    desk.open(true);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchToRegistry, KeepsWhatIsChangedBeforeTheRestart) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(4);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toRegistry(notes));
    live(desk, notes);
    EXPECT_EQ(desk.told, 0);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
    EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), u"True");
    desk.open(true);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchToRegistry, LetsTheNextStartFindEveryNoteWhereverItIsKilled) {
    for (int at = 0;; ++at) {
        Desk desk(false);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        desk.changes->made = 0;
        desk.changes->endAt = at;
        bool ended = false;
        try {
            desk.toRegistry(notes);
        } catch (const ProgramEnd&) {
            ended = true;
        }
        desk.open(ParseBool(desk.settings.text(u"setting", u"UseRegistry")));
        EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes)) << "ended at change " << at;
        if (!ended) break;
    }
}

TEST(SwitchToRegistry, NeverTakesEffectIfItFailsAnywhere) {
    for (int at = 1; at < 60; ++at) {
        Desk desk(false);
        std::vector<NoteRecord> notes = sampleNotes(2);
        desk.createAll(notes);
        desk.changes->made = 0;
        desk.changes->failAt = at;
        const bool done = desk.toRegistry(notes);
        EXPECT_EQ(done, desk.changes->made <= at) << at;
        EXPECT_EQ(desk.told, done ? 0 : 1);
        desk.open(ParseBool(desk.settings.text(u"setting", u"UseRegistry")));
        EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes)) << at;
    }
}

TEST(SwitchToRegistry, IsRefusedWhileANoteCannotBeRead) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.settings.put(u"setting", u"defaultwidth", u"3000");
    notes[1] = NoteRecord();
    notes[1].readOnly = true;
    desk.folder.locked.insert(Text(kNoteFile));
    EXPECT_FALSE(desk.toRegistry(notes));
    EXPECT_EQ(desk.settings.text(u"setting", u"defaultwidth"), u"3000");
    desk.folder.locked.clear();
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_EQ(desk.settings.text(u"kardel-2", u"Titolo"), u"Title 2");
}

TEST(SwitchToRegistry, NeedsNoWritableFolder) {
    for (const bool headerOnly : {true, false}) {
        Desk desk(false);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        desk.folder.changes = std::make_shared<Changes>();
        (headerOnly ? desk.folder.changes->failAt : desk.folder.changes->made) = 0;
        desk.folder.changes->allFail = !headerOnly;
        EXPECT_TRUE(desk.toRegistry(notes));
        EXPECT_EQ(desk.told, 0);
        EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), u"True");
        EXPECT_EQ(desk.settings.text(u"setting", u"count"), u"3");
        desk.open(true);
        EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
    }
}

TEST(Switch, IsRefusedWhileAnotherSessionHoldsTheStoreAndWritesNothing) {
    for (const bool toRegistry : {false, true}) {
        Desk desk(!toRegistry);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        const StoreKind wanted = toRegistry ? StoreKind::Registry : StoreKind::Files;
        int told = 0;
        std::vector<StoreKind> asked;
        desk.store.claim = [&](StoreKind kind) {
            asked.push_back(kind);
            return false;
        };
        desk.store.heldElsewhere = [&told] { ++told; };
        desk.changes->made = 0;
        EXPECT_FALSE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_EQ(asked, std::vector<StoreKind>{wanted});
        EXPECT_EQ(told, 1);
        EXPECT_EQ(desk.told, 0) << "the other message says it all";
        EXPECT_EQ(desk.changes->made, 0);
        desk.store.claim = [](StoreKind) { return true; };
        EXPECT_TRUE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
    }
}

TEST(Switch, GivesTheStoreBackThatItCouldNotWrite) {
    for (const bool toRegistry : {false, true}) {
        Desk desk(!toRegistry);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        std::set<StoreKind> held;
        desk.store.claim = [&](StoreKind kind) { return held.insert(kind).second; };
        desk.store.release = [&](StoreKind kind) { held.erase(kind); };
        desk.changes->allFail = true;
        EXPECT_FALSE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_TRUE(held.empty());
        desk.changes->allFail = false;
        EXPECT_TRUE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_EQ(held.size(), 1U);
    }
}

TEST(SwitchToRegistry, KeepsWhatIsKnownOfDroppedDrafts) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.store.saveDraft(1, false, u"dropped");
    const std::string draft = desk.file(kDraftFile);
    const SharedChanges refusing = std::make_shared<Changes>();
    refusing->allFail = true;
    desk.folder.changes = refusing;  // the file is held throughout
    desk.store.dropDraft(1);
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_NE(desk.settings.text(u"setting", u"dropped"), u"(none)");
    // The next run drops another one beside it, before the file is free.
    desk.open(false);
    desk.folder.changes = refusing;
    notes = desk.loadAll();
    EXPECT_TRUE(desk.store.takeDrafts(pointersTo(notes)).drafts.empty());
    desk.store.saveDraft(2, false, u"dropped later");
    desk.store.dropDraft(2);
    ASSERT_EQ(desk.file(kDraftFile), draft);
    desk.open(false);
    notes = desk.loadAll();
    EXPECT_TRUE(desk.store.takeDrafts(pointersTo(notes)).drafts.empty());
}

// --- There and back in one run ---------------------------------------------------------------------------

TEST(SwitchBack, ToTheRegistryInForceCreatesNoFiles) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_TRUE(desk.folder.content.empty());
    desk.open(true);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

TEST(SwitchBack, ToTheRegistryInForceIsSafeAtEveryPointAndKeepsOtherSettings) {
    for (int at = 0;; ++at) {
        Desk desk(true);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        desk.settings.put(u"kardel-9", u"Titolo", u"stale");
        desk.settings.put(u"setting", u"ImportDAT", u"1");
        desk.changes->made = 0;
        desk.changes->endAt = at;
        bool ended = false;
        try {
            desk.toRegistry(notes);
        } catch (const ProgramEnd&) {
            ended = true;
        }
        desk.open(true);
        EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes)) << "ended at change " << at;
        EXPECT_EQ(desk.settings.text(u"setting", u"ImportDAT"), u"1");
        if (ended) continue;
        EXPECT_EQ(desk.settings.find(u"kardel-9"), nullptr);
        break;
    }
}

TEST(SwitchBack, KeepsBothStoresInStepUntilTheEnd) {
    for (const bool useRegistry : {true, false}) {
        Desk desk(useRegistry);
        std::vector<NoteRecord> notes = sampleNotes(4);
        desk.createAll(notes);
        ASSERT_TRUE(useRegistry ? desk.toFiles(notes) : desk.toRegistry(notes));
        ASSERT_TRUE(useRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), boolText(useRegistry));
        live(desk, notes);
        EXPECT_EQ(desk.told, 0);
        for (const bool next : {true, false}) {
            desk.open(next);
            EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes)) << useRegistry << next;
        }
    }
}

TEST(SwitchBack, KeepsTheDraftOfANoteThatEndsInABlankInBothStores) {
    for (const bool useRegistry : {true, false}) {
        Desk desk(useRegistry);
        std::vector<NoteRecord> notes = sampleNotes(2);
        notes[0].Titolo += u" ";
        notes[1].Nota += u"  ";
        desk.createAll(notes);
        ASSERT_TRUE(useRegistry ? desk.toFiles(notes) : desk.toRegistry(notes));
        desk.store.saveDraft(1, false, u"typed in one");
        desk.store.saveDraft(2, false, u"typed in two");
        for (const bool next : {true, false}) {
            desk.open(next);
            std::vector<NoteRecord> found = desk.loadAll();
            EXPECT_EQ(desk.store.takeDrafts(pointersTo(found)).drafts.size(), 2U) << useRegistry << next;
        }
    }
}

TEST(SwitchBack, ToTheFilesInForceIsFollowedByNoImport) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_TRUE(desk.toFiles(notes));
    EXPECT_EQ(desk.settings.text(u"setting", u"ImportDAT"), u"1");
}

TEST(RoundTrip, FilesToRegistryToFilesKeepsFiftyFullNotes) {
    Desk desk(false);
    const std::vector<NoteRecord> notes = randomNotes(kMaxNotes, 33);
    std::vector<NoteRecord> made = notes;
    desk.createAll(made);
    desk.open(false);
    std::vector<NoteRecord> inFiles = desk.loadAll();
    EXPECT_TRUE(desk.toRegistry(inFiles));
    desk.folder.content.clear();
    desk.open(true);
    std::vector<NoteRecord> inRegistry = desk.loadAll();
    EXPECT_TRUE(desk.toFiles(inRegistry));
    desk.settings.content.clear();
    desk.open(false);
    EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes));
}

// --- Import ----------------------------------------------------------------------------------------------

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
    for (int at = 0; at < 3; ++at) {
        ImportDesk again(3);
        seed(again);
        const auto before = again.desk.folder.content;
        again.desk.changes->failAt = at;
        EXPECT_EQ(again.desk.import(3), Imported::Refused) << at;
        EXPECT_EQ(again.desk.folder.content, before) << at;
        EXPECT_EQ(again.desk.headerCount(), 1);
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
