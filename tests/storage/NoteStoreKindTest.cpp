// What only one kind of store has: the registry's sections, and the local files' records and bodies.
#include "storage/NoteStore.h"

#include <gtest/gtest.h>

#include "tests/storage/StoreCases.h"

namespace {

// --- The registry ----------------------------------------------------------------------------------------

TEST(NoteStoreInRegistry, ANewNoteInheritsNothingFromALeftOverSection) {
    Desk desk(true);
    desk.settings.put(u"kardel-1", u"closed", u"True");
    desk.settings.put(u"kardel-1", u"interval", u"eachday");
    desk.settings.put(u"kardel-1", u"other", u"x");
    NoteRecord note;
    note.Titolo = u"- 1 -";
    EXPECT_TRUE(desk.store.create(1, note));
    EXPECT_EQ(desk.settings.text(u"kardel-1", u"closed"), u"False");
    EXPECT_EQ(desk.settings.text(u"kardel-1", u"other"), u"(none)");
    EXPECT_EQ(desk.settings.text(u"kardel-1", u"Titolo"), u"- 1 -");
    EXPECT_EQ(desk.settings.text(u"kardel-1", u"Nota"), u"");
    EXPECT_EQ(desk.settings.text(u"setting", u"count"), u"1");
    EXPECT_TRUE(desk.folder.content.empty());
}

TEST(NoteStoreInRegistry, TextOfAnyLengthAndScriptIsKept) {
    Desk desk(true);
    NoteRecord note;
    note.Titolo = Text(500, u'\u0416');
    note.Nota = Text(40000, u'\u3042');
    EXPECT_TRUE(desk.store.create(1, note));
    EXPECT_EQ(desk.loadAll().at(0).Nota, note.Nota);
    EXPECT_EQ(desk.loadAll().at(0).Titolo, note.Titolo);
    EXPECT_EQ(desk.told, 0);
}

// --- The local files -------------------------------------------------------------------------------------

struct InFiles : testing::Test {
    Desk desk{false};

    NoteRecord load(int number) {
        NoteRecord note;
        EXPECT_TRUE(desk.store.load(number, note, desk.global));
        return note;
    }
    std::int32_t memoNumber(int number) {
        const auto at = static_cast<std::size_t>(number - 1) * kRecordLength;
        return memoNumberOf(desk.file(kNoteFile).substr(at, kRecordLength));
    }
    void setMemo(int number, std::int32_t memo) {
        const auto at = static_cast<std::size_t>(number - 1) * kRecordLength;
        std::string record = desk.file(kNoteFile).substr(at, kRecordLength);
        setMemoNumber(record, memo);
        desk.file(kNoteFile).replace(at, kRecordLength, record);
    }
    std::vector<NoteRecord> made(int count) {
        std::vector<NoteRecord> notes = sampleNotes(count);
        desk.createAll(notes);
        return notes;
    }
};

TEST_F(InFiles, ADraftFollowsItsNoteThatAKilledDeletionMoved) {
    std::vector<NoteRecord> notes = made(4);
    desk.store.saveDraft(3, false, u"of three");
    desk.store.saveDraft(4, false, u"of four");
    const std::string drafts = desk.file(kDraftFile);
    notes.erase(notes.begin());
    EXPECT_TRUE(desk.store.remove(1, pointersTo(notes), desk.global));
    desk.file(kDraftFile) = drafts;
    desk.open(false);
    notes = desk.loadAll();
    EXPECT_EQ(desk.store.takeDrafts(pointersTo(notes)).drafts.size(), 2U);
    desk.store.dropDraft(2);
    EXPECT_EQ(typedIn(desk, false), std::vector<Text>{u"of four"});
    desk.store.dropDraft(3);
    EXPECT_FALSE(desk.hasFile(kDraftFile));
}

TEST_F(InFiles, TheHeaderCountsEveryNewNoteAndTheRegistryDoesNot) {
    made(3);
    EXPECT_EQ(desk.file(kHeaderFile)[0], 3);
    EXPECT_TRUE(desk.store.storeCount(3));
    EXPECT_TRUE(desk.settings.content.empty());
}

TEST_F(InFiles, TheHeaderInMemoryKnowsTheStoreThatIsUsed) {
    made(1);
    FileStore files(desk.folder.files(), desk.page);
    for (const bool useRegistry : {true, false}) {
        EXPECT_EQ(files.readHeader(useRegistry), IoStatus::Done);
        EXPECT_EQ(files.header().flag, useRegistry ? -1 : 0);
    }
}

TEST_F(InFiles, RecordNHoldsNoteNAndItsBody) {
    const std::vector<NoteRecord> notes = made(3);
    EXPECT_EQ(desk.file(kNoteFile).size(), 3 * kRecordLength);
    EXPECT_EQ(desk.file(kMemoFile).size(), 3 * kMemoLength);
    for (int n = 1; n <= 3; ++n)
        EXPECT_EQ(memoNumber(n), n);
    EXPECT_EQ(notes[2].memo, 3);
}

TEST_F(InFiles, BytesThatTheProgramCannotReadSurviveADrag) {
    std::vector<NoteRecord> notes = made(1);
    desk.file(kNoteFile)[57] = '\x81';  // not a character of the code page
    const std::string title = desk.file(kNoteFile).substr(57, 128);
    NoteRecord note = load(1);
    note.x = 9;
    EXPECT_TRUE(desk.store.set(1, note, {NoteField::X}));
    EXPECT_EQ(desk.file(kNoteFile).substr(57, 128), title);
}

TEST_F(InFiles, ADragWritesNoBodyAndAnUnchangedFieldNothing) {
    std::vector<NoteRecord> notes = made(1);
    desk.changes->made = 0;
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::X, NoteField::Titolo}));
    EXPECT_EQ(desk.changes->made, 0);
    const std::string memo = desk.file(kMemoFile);
    notes[0].x = 1;
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::X}));
    EXPECT_EQ(desk.changes->made, 1);
    EXPECT_EQ(desk.file(kMemoFile), memo);
}

TEST_F(InFiles, ACharacterOutsideTheCodePageIsReportedOncePerSaveAndTheRestKept) {
    std::vector<NoteRecord> notes = made(1);
    notes[0].Titolo = u"Caf\u00e9 \u0416";
    notes[0].Nota = u"\u0416 body";
    EXPECT_TRUE(desk.store.set(1, notes[0], {kTitle, kBody}));
    EXPECT_EQ(desk.told, 1);
    EXPECT_EQ(load(1).Titolo, u"Caf\u00e9 ?");
    EXPECT_EQ(load(1).Nota, u"? body");
    notes[0].x = 4;
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::X}));
    EXPECT_EQ(desk.told, 1);
}

TEST_F(InFiles, ACharacterOutsideTheCodePageIsReportedInTitleAndBodyAlike) {
    std::vector<NoteRecord> notes = made(1);
    notes[0].Titolo = u"Title";
    notes[0].Nota = u"\u0416 body";
    EXPECT_TRUE(desk.store.set(1, notes[0], {kTitle, kBody}));
    EXPECT_EQ(desk.told, 1);
    notes[0].Titolo = u"\u0416";
    notes[0].Nota = u"plain body";
    EXPECT_TRUE(desk.store.set(1, notes[0], {kTitle, kBody}));
    EXPECT_EQ(desk.told, 2);
    EXPECT_TRUE(desk.store.create(2, notes[0]));
    EXPECT_EQ(desk.told, 3) << "of a new note as well";
    notes[0].Titolo = u"Title";
    notes[0].Nota = u"\u0416 body";
    EXPECT_TRUE(desk.store.create(3, notes[0]));
    EXPECT_EQ(desk.told, 4);
}

TEST_F(InFiles, ATextThatIsOnlyTooLongIsCutSilently) {
    std::vector<NoteRecord> notes = made(1);
    notes[0].Nota = Text(1025, u'x');
    notes[0].Titolo = Text(129, u'y');
    EXPECT_TRUE(desk.store.set(1, notes[0], {kTitle, kBody}));
    EXPECT_EQ(desk.told, 0);
    EXPECT_EQ(load(1).Nota, Text(1024, u'x'));
    EXPECT_EQ(load(1).Titolo, Text(128, u'y'));
}

TEST_F(InFiles, AnUnreadableRecordIsNotOverwritten) {
    std::vector<NoteRecord> notes = made(2);
    const auto before = desk.folder.content;
    desk.folder.locked.insert(Text(kNoteFile));
    EXPECT_FALSE(desk.store.set(1, notes[0], {NoteField::X}));
    EXPECT_EQ(desk.told, 1);
    EXPECT_EQ(desk.folder.content, before);
}

TEST_F(InFiles, AZeroRecordIsAFreshNote) {
    made(3);
    desk.file(kNoteFile).replace(kRecordLength, kRecordLength, std::string(kRecordLength, '\0'));
    const NoteRecord note = load(2);
    EXPECT_EQ(note.backcolor, kDesignColor);
    EXPECT_EQ(note.width, 2910);
    EXPECT_EQ(note.Nota, u"");
    EXPECT_EQ(note.memo, 0);
}

TEST_F(InFiles, AZeroRecordIsReplacedByAWholeOneAtTheNextSave) {
    made(3);
    desk.file(kNoteFile).replace(kRecordLength, kRecordLength, std::string(kRecordLength, '\0'));
    NoteRecord note = load(2);
    note.Titolo = u"new";
    note.Nota = u"new body";
    EXPECT_TRUE(desk.store.set(2, note, {NoteField::X}));
    EXPECT_EQ(load(2).Titolo, u"new");
    EXPECT_EQ(load(2).Nota, u"new body");
    EXPECT_EQ(load(2).width, 2910);
    EXPECT_EQ(load(1).Nota, u"Body 1\r\nsecond line");
    EXPECT_EQ(load(3).Nota, u"Body 3\r\nsecond line");
}

TEST_F(InFiles, AZeroRecordWhoseBodyIsRefusedShowsNobodyElses) {
    std::vector<NoteRecord> notes = made(2);
    desk.file(kNoteFile).replace(kRecordLength, kRecordLength, kRecordLength, '\0');
    desk.changes->made = 0;
    desk.changes->failAt = 0;
    EXPECT_FALSE(desk.store.set(2, notes[1], {kTitle}));
    EXPECT_EQ(load(2).Titolo, u"Title 2");
    EXPECT_EQ(load(2).Nota, u"") << "the first body is another note's";
}

TEST_F(InFiles, AZeroFirstRecordKeepsTheFirstBodyUnlessAnotherNoteHasIt) {
    made(2);
    desk.file(kNoteFile).replace(0, kRecordLength, std::string(kRecordLength, '\0'));
    EXPECT_EQ(load(1).memo, 1);
    EXPECT_EQ(load(1).Nota, u"Body 1\r\nsecond line");
    setMemo(2, 1);
    EXPECT_EQ(load(1).memo, 0);
    EXPECT_EQ(load(1).Nota, u"");
}

TEST_F(InFiles, ARecordThatVanishedIsWrittenWholeAgain) {
    std::vector<NoteRecord> notes = made(2);
    desk.folder.content.erase(Text(kNoteFile));
    desk.folder.content.erase(Text(kMemoFile));
    notes[1].x = 5;
    EXPECT_TRUE(desk.store.set(2, notes[1], {NoteField::X}));
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::X}));
    for (int n = 1; n <= 2; ++n) {
        EXPECT_EQ(storeFree(load(n)), storeFree(notes[static_cast<std::size_t>(n - 1)]));
    }
}

TEST_F(InFiles, NotesThatShareABodyAreSeparatedByTheLaterOnesNextSave) {
    std::vector<NoteRecord> notes = made(3);
    setMemo(3, 1);
    NoteRecord third = load(3);
    EXPECT_EQ(third.Nota, notes[0].Nota);
    third.Nota = u"third's own";
    EXPECT_TRUE(desk.store.set(3, third, {kBody}));
    EXPECT_EQ(memoNumber(3), 4);
    EXPECT_EQ(load(1).Nota, notes[0].Nota);
    EXPECT_EQ(load(3).Nota, u"third's own");
    NoteRecord first = load(1);
    first.Nota = u"first's own";
    EXPECT_TRUE(desk.store.set(1, first, {kBody}));
    EXPECT_EQ(memoNumber(1), 1);
    EXPECT_EQ(load(3).Nota, u"third's own");
}

TEST_F(InFiles, ABodyIsWrittenAnewInItsPlace) {
    made(3);
    for (int n = 1; n <= 3; ++n) {
        NoteRecord note = load(n);
        note.Nota = u"rewritten";
        EXPECT_TRUE(desk.store.set(n, note, {kBody}));
        EXPECT_EQ(memoNumber(n), n);
    }
    EXPECT_EQ(desk.file(kMemoFile).size(), 3 * kMemoLength);
}

TEST_F(InFiles, ABodyThatWasCutShortIsWrittenAnewInItsPlace) {
    for (const std::size_t left : {1U, 300U, 1023U}) {
        desk.folder.content.clear();
        made(2);
        desk.file(kMemoFile).replace(kMemoLength, kMemoLength, std::string(left, 'x'));
        NoteRecord second = load(2);
        second.Nota = u"whole again";
        EXPECT_TRUE(desk.store.set(2, second, {kBody}));
        EXPECT_EQ(load(2).Nota, u"whole again");
        EXPECT_EQ(memoNumber(2), 2);
        EXPECT_EQ(desk.file(kMemoFile).size(), 2 * kMemoLength) << "nothing of the old text is left over";
    }
}

TEST_F(InFiles, AWildBodyNumberReadsAsNothingAndGetsANewRecord) {
    for (const std::int32_t wild : {2000000000, -1, 0, 5}) {
        desk.folder.content.clear();
        std::vector<NoteRecord> notes = made(3);
        setMemo(2, wild);
        NoteRecord second = load(2);
        EXPECT_EQ(second.Nota, u"") << wild;
        second.Nota = u"back";
        EXPECT_TRUE(desk.store.set(2, second, {kBody}));
        EXPECT_LE(desk.file(kMemoFile).size(), 20 * kMemoLength);
        EXPECT_EQ(load(2).Nota, u"back");
        EXPECT_EQ(load(1).Nota, notes[0].Nota);
        EXPECT_EQ(load(3).Nota, notes[2].Nota);
    }
}

TEST_F(InFiles, AfterMemoWasLostEachNoteStillGetsItsOwnBody) {
    std::vector<NoteRecord> notes = made(4);
    desk.folder.content.erase(Text(kMemoFile));
    for (const int n : {3, 1, 4, 2}) {
        NoteRecord note = load(n);
        EXPECT_EQ(note.Nota, u"");
        note.Nota = u"rewritten " + decimal(n);
        EXPECT_TRUE(desk.store.set(n, note, {kBody}));
    }
    for (int n = 1; n <= 4; ++n)
        EXPECT_EQ(load(n).Nota, u"rewritten " + decimal(n));
}

TEST_F(InFiles, ABodyNeverTakesThePlaceThatAnotherNotePointsTo) {
    for (const std::int32_t lost : {4, 5, 6}) {
        desk.folder.content.clear();
        made(3);
        setMemo(1, lost);
        setMemo(2, 4);
        NoteRecord first = load(1);
        first.Nota = u"only the first one's";
        EXPECT_TRUE(desk.store.set(1, first, {kBody}));
        EXPECT_EQ(load(1).Nota, first.Nota);
        EXPECT_EQ(load(2).Nota, u"") << lost;
    }
}

TEST_F(InFiles, AZeroRecordNeverShowsABodyThatWasNotItsOwn) {
    made(3);
    setMemo(1, 3);
    setMemo(3, 2);
    desk.file(kNoteFile).replace(kRecordLength, kRecordLength, kRecordLength, '\0');
    EXPECT_EQ(load(2).Nota, u"") << "the first body is not the second note's";
}

TEST_F(InFiles, AfterMemoWasLostANewNotesBodyIsNobodyElses) {
    made(2);
    desk.folder.content.erase(Text(kMemoFile));
    NoteRecord third = sampleNotes(3)[2];
    EXPECT_TRUE(desk.store.create(3, third));
    EXPECT_EQ(load(1).Nota + load(2).Nota, u"");
    EXPECT_EQ(load(3).Nota, third.Nota);
}

TEST_F(InFiles, ABodyThatMovesIsOnTheDiskBeforeItsRecordPointsThere) {
    std::vector<NoteRecord> notes = made(2);
    desk.folder.flushAll();
    desk.changes->made = 0;
    desk.changes->before = [this] {
        if (desk.changes->made == 1) {
            EXPECT_FALSE(desk.folder.unflushed.contains(Text(kMemoFile)));
        }
    };
    notes[0].Titolo = u"another title";
    notes[0].Nota = u"another body";
    EXPECT_TRUE(desk.store.set(1, notes[0], {kTitle, kBody}));
    EXPECT_EQ(desk.changes->made, 2) << "the body, then the record";
    EXPECT_EQ(memoNumber(1), 3);
}

TEST_F(InFiles, ABodyCutShortIsNotOverwrittenByANewOne) {
    for (const std::size_t left : {1U, 300U, 1023U}) {
        desk.folder.content.clear();
        made(2);
        desk.file(kMemoFile).replace(kMemoLength, kMemoLength, std::string(left, 'x'));
        NoteRecord third = sampleNotes(3)[2];
        EXPECT_TRUE(desk.store.create(3, third));
        EXPECT_EQ(load(2).Nota, Text(left, u'x'));
        EXPECT_EQ(load(3).Nota, third.Nota);
    }
}

TEST_F(InFiles, TheBodyIsWrittenBeforeTheRecordThatPointsToIt) {
    for (int endAt = 0; endAt < 3; ++endAt) {
        desk.folder.content.clear();
        made(1);
        desk.changes->made = 0;
        desk.changes->endAt = endAt;
        NoteRecord second = sampleNotes(2)[1];
        EXPECT_THROW(static_cast<void>(desk.store.create(2, second)), ProgramEnd);
        desk.open(false);
        const bool recorded = desk.dataFiles().noteRecords().bytes == 2;
        EXPECT_EQ(recorded, endAt == 2);
        EXPECT_EQ(load(2).Nota, recorded ? second.Nota : Text());
        EXPECT_EQ(load(1).Nota, u"Body 1\r\nsecond line");
        EXPECT_EQ(desk.count(), 1);
    }
}

TEST_F(InFiles, ANewNoteIgnoresLeftOverRecords) {
    made(3);
    setMemo(2, 4);
    setMemo(3, 5);
    // What an interrupted deletion may leave.
    desk.file(kHeaderFile) = encodeHeader({1, 0, kProgramVersion});
    desk.open(false);
    NoteRecord second = sampleNotes(2)[1];
    EXPECT_TRUE(desk.store.create(2, second));
    EXPECT_EQ(memoNumber(2), 4);
    EXPECT_EQ(desk.file(kMemoFile).size(), 4 * kMemoLength);
    EXPECT_EQ(desk.count(), 2);
}

}  // namespace
