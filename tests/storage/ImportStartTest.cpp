// The copy of registry notes into the local files in a start, and which notes of both are one.
#include "storage/Import.h"

#include <gtest/gtest.h>

#include "tests/storage/Start.h"
#include "tests/storage/SwitchedNotes.h"

namespace {

TEST(Import, CopiesRegistryNotesIntoNewFilesOnce) {
    Start start;
    std::vector<NoteRecord> notes = sampleNotes(5);
    start.seedRegistry(notes);
    start.run();
    EXPECT_EQ(start.state.Count, 5);
    EXPECT_EQ(start.stored(u"ImportDAT"), u"1");
    EXPECT_EQ(start.stored(u"count"), u"(none)");
    for (int number = 1; number <= 5; ++number) {
        NoteRecord loaded;
        ASSERT_TRUE(start.desk.store.load(number, loaded, start.settings));
        EXPECT_EQ(storeFree(loaded), storeFree(notes[static_cast<std::size_t>(number - 1)]));
    }
    start.run();
    EXPECT_EQ(start.state.Count, 5) << "a second start must not import again";
}

TEST(Import, FollowsANoteThatIsThere) {
    Start start;
    std::vector<NoteRecord> mine = sampleNotes(1);
    mine[0].Nota = u"my own body";
    start.seedFiles(mine);
    start.seedRegistry(sampleNotes(3));
    start.desk.file(kHeaderFile) = encodeHeader({1, 0, kProgramVersion});
    start.run();
    EXPECT_EQ(start.state.Count, 4);
    NoteRecord first;
    start.desk.store.load(1, first, start.settings);
    EXPECT_EQ(first.Nota, u"my own body");
}

TEST(Import, LeavesTheRegistryInForceWhenTheFilesCannotBeWritten) {
    Start start;
    start.seedRegistry(sampleNotes(3));
    start.desk.folder.changes = std::make_shared<Changes>();
    start.desk.folder.changes->allFail = true;
    start.run();
    EXPECT_TRUE(start.inRegistry());
    EXPECT_EQ(start.state.Count, 3);
    EXPECT_EQ(start.failures, 1);
    EXPECT_EQ(start.stored(u"count"), u"3");
    EXPECT_EQ(start.stored(u"ImportDAT"), u"(none)");
}

TEST(Import, OfFiftyBehindANoteIsRefusedAndTheRegistryStays) {
    Start start;
    std::vector<NoteRecord> mine = sampleNotes(1);
    mine[0].Titolo = u"mine";
    mine[0].Nota = u"my own body";
    start.seedFiles(mine);
    start.seedRegistry(sampleNotes(kMaxNotes));
    const auto files = start.desk.folder.content;
    start.run();
    EXPECT_TRUE(start.inRegistry());
    EXPECT_EQ(start.state.Count, kMaxNotes);
    EXPECT_EQ(start.failures, 1);
    EXPECT_EQ(start.stored(u"count"), u"50");
    EXPECT_EQ(start.stored(u"ImportDAT"), u"(none)");
    EXPECT_EQ(start.desk.folder.content, files);
    NoteRecord last;
    EXPECT_TRUE(start.desk.store.load(kMaxNotes, last, start.settings));
    EXPECT_EQ(last.Titolo, u"Title 50");
}

TEST(Import, OfATextThatDoesNotFitIsRefusedAndTheRegistryStays) {
    Start start;
    std::vector<NoteRecord> notes = sampleNotes(2);
    notes[0].Nota = Text(1025, u'x');
    start.seedRegistry(notes);
    for (int time = 1; time <= 2; ++time) {
        start.run();
        EXPECT_TRUE(start.inRegistry());
        EXPECT_EQ(start.state.Count, 2);
        EXPECT_EQ(start.failures, time);
        EXPECT_EQ(start.stored(u"count"), u"2");
        NoteRecord first;
        EXPECT_TRUE(start.desk.store.load(1, first, start.settings));
        EXPECT_EQ(first.Nota, notes[0].Nota);
    }
    start.desk.settings.put(u"kardel-1", u"Nota", u"shorter now");
    start.run();
    EXPECT_FALSE(start.inRegistry());
    EXPECT_EQ(start.state.Count, 2);
}

TEST(Import, ThatWasRefusedLeavesTheNoteInTheFilesToTheNextStart) {
    for (const bool unreadable : {false, true}) {
        Start start;
        std::vector<NoteRecord> notes = sampleNotes(3);
        start.seedFiles({notes[2]});
        notes.pop_back();
        notes[0].Nota = Text(1025, u'x');
        start.seedRegistry(notes);
        if (unreadable) start.desk.folder.locked.insert(Text(kMemoFile));
        start.run();
        ASSERT_TRUE(start.inRegistry());
        start.desk.folder.locked.clear();
        notes[0].Nota = u"shorter now";
        std::vector<NoteRecord*> all{&notes[0], &notes[1]};
        ASSERT_TRUE(start.desk.store.set(1, notes[0], {NoteField::Nota}));
        EXPECT_EQ(start.desk.store.switchTo(StoreKind::Files, all, start.settings), Switched::Refused);
        start.run();
        EXPECT_FALSE(start.inRegistry());
        ASSERT_EQ(start.state.Count, 3);
        NoteRecord first;
        EXPECT_TRUE(start.desk.store.load(1, first, start.settings));
        EXPECT_EQ(first.Titolo, u"Title 3");
    }
}

TEST(Import, OfTheNoteThatIsThereKeepsTheFilesForm) {
    for (const bool title : {false, true}) {
        Start start;
        std::vector<NoteRecord> one = sampleNotes(1);
        start.seedRegistry(one);
        (title ? one[0].Titolo : one[0].Nota) = u"edited before the power went";
        start.seedFiles(one);
        start.run();
        EXPECT_EQ(start.state.Count, 1);
        NoteRecord note;
        EXPECT_TRUE(start.desk.store.load(1, note, start.settings));
        EXPECT_EQ(storeFree(note), storeFree(one[0]));
    }
}

TEST(Import, TakesTwoNotesForOneOnlyIfAllButOneOfTheirTextsAgree) {
    struct Row {
        const char* name;
        bool title, body, place;  ///< what differs
        int notes;
    };
    for (const Row& row :
         {Row{"nothing", false, false, false, 1}, Row{"place", false, false, true, 1},
          Row{"body", false, true, false, 1}, Row{"title", true, false, false, 1},
          Row{"title and place", true, false, true, 2}, Row{"body and place", false, true, true, 2},
          Row{"title and body", true, true, false, 2}, Row{"all", true, true, true, 2}}) {
        Start start;
        std::vector<NoteRecord> one = sampleNotes(1);
        start.seedRegistry(one);
        if (row.title) one[0].Titolo = u"another title";
        if (row.body) one[0].Nota = u"another body";
        if (row.place) one[0].x += 15;
        start.seedFiles(one);
        start.run();
        EXPECT_EQ(start.state.Count, row.notes) << row.name;
        NoteRecord first;
        EXPECT_TRUE(start.desk.store.load(1, first, start.settings));
        EXPECT_EQ(storeFree(first), storeFree(one[0])) << row.name;
    }
}

TEST(Import, KeepsANoteWithoutATitleThatHasAnAlarm) {
    for (const bool date : {false, true}) {
        Start start;
        std::vector<NoteRecord> two = sampleNotes(2);
        start.seedRegistry(two);
        NoteRecord mine;
        ClearNoteRecord(mine);
        mine.Nota = two[0].Nota;  // as if only the body of a copy had come
        (date ? mine.alarmdate : mine.alarmtime) = date ? u"31/12/2030" : u"12:00:00";
        start.seedFiles({mine});
        start.run();
        EXPECT_EQ(start.state.Count, 3);
    }
}

TEST(Import, IsDoneAgainAfterASwitchToTheFilesThatWasKilledAnywhere) {
    int asked = 0;
    bool ended = true;
    for (int point = 0; ended; ++point) {
        Start start;
        std::vector<NoteRecord> notes = sampleNotes(3);
        start.seedRegistry(notes);
        start.set(u"UseRegistry", u"True");
        start.set(u"ImportDAT", u"1");  // from files that were deleted since
        start.run();
        start.desk.changes->made = 0;
        start.desk.changes->endAt = point;
        ended = false;
        try {
            static_cast<void>(start.desk.store.switchTo(StoreKind::Files, pointersTo(notes), start.settings));
        } catch (const ProgramEnd&) {
            ended = true;
        }
        start.desk.changes->endAt = -1;
        start.run();  // files that are found are to be used
        asked += start.questions;
        ASSERT_EQ(start.state.Count, 3) << point;
        for (int number = 1; number <= 3; ++number) {
            NoteRecord note;
            EXPECT_TRUE(start.desk.store.load(number, note, start.settings));
            EXPECT_EQ(storeFree(note), storeFree(notes[static_cast<std::size_t>(number - 1)])) << point;
        }
    }
    EXPECT_GE(asked, 3) << "after the first body, the header and the records";
}

TEST(Import, StopsAtFiftyForAnEndlessCount) {
    Start start;
    start.set(u"count", u"999999999");
    start.run();
    EXPECT_LE(start.state.Count, kMaxNotes);
}

}  // namespace
