// Switching the store there and back in one run.
#include <gtest/gtest.h>

#include "tests/storage/SwitchedNotes.h"

namespace {

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
        ASSERT_NO_FATAL_FAILURE(switchThereAndBack(desk, notes, useRegistry));
        EXPECT_EQ(desk.settings.text(u"setting", u"UseRegistry"), boolText(useRegistry));
        live(desk, notes);
        EXPECT_EQ(desk.told, 0);
        for (const bool next : {true, false}) {
            desk.open(next);
            EXPECT_EQ(storeFree(desk.loadAll()), storeFree(notes)) << useRegistry << next;
        }
    }
}

TEST(SwitchBack, ANumberOfNotesThatTheRegistryRefusesIsNotKept) {
    for (const bool useRegistry : {true, false}) {
        Desk desk(useRegistry);
        std::vector<NoteRecord> notes = sampleNotes(4);
        desk.createAll(notes);
        ASSERT_NO_FATAL_FAILURE(switchThereAndBack(desk, notes, useRegistry));
        desk.changes->allFail = true;
        EXPECT_FALSE(desk.store.storeCount(4)) << useRegistry;
        desk.changes->allFail = false;
        EXPECT_TRUE(desk.store.storeCount(4)) << useRegistry;
    }
}

TEST(SwitchBack, IsRefusedWhileTheRegistryRefusesTheNumberOfNotes) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(4);
    desk.createAll(notes);
    ASSERT_TRUE(desk.toFiles(notes));
    desk.changes->made = 0;
    desk.changes->failAt = 0;
    EXPECT_FALSE(desk.toRegistry(notes));
    desk.changes->failAt = -1;
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_EQ(desk.told, 1) << "the user knows";
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

}  // namespace
