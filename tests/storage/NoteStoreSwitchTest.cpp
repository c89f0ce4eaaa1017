// Switching the store, in both directions.
#include <gtest/gtest.h>

#include <set>

#include "tests/storage/SwitchedNotes.h"

namespace {

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

TEST(SwitchToRegistry, IsRefusedWhileWhatIsLeftOverThereCannotBeTold) {
    for (const TextView unread : {u"", u"setting"}) {
        Desk desk(false);
        std::vector<NoteRecord> notes = sampleNotes(2);
        desk.createAll(notes);
        bool listed = false;
        desk.settings.mayRead = [&](TextView section) {
            listed = listed || section.empty();
            return !listed || section != unread;
        };
        EXPECT_FALSE(desk.toRegistry(notes));
        EXPECT_TRUE(listed);
        EXPECT_EQ(desk.settings.text(u"setting", u"count"), u"(none)") << "it holds nothing yet";
        desk.settings.mayRead = [](TextView) { return true; };
        EXPECT_TRUE(desk.toRegistry(notes));
    }
}

TEST(SwitchToRegistry, IsRefusedWhileAnOlderCountStays) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.settings.put(kSettingSection, kCountKey, u"4");
    desk.settings.kept.insert({Text(kSettingSection), Text(kCountKey)});
    EXPECT_FALSE(desk.toRegistry(notes));
    EXPECT_EQ(desk.settings.find(u"kardel-1"), nullptr) << "no section may be taken for a note";
}

TEST(SwitchToRegistry, LeavesAHeaderOfThisRelease) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.file(kHeaderFile) = encodeHeader({2, 0, 1.27F});
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_EQ(desk.file(kHeaderFile), encodeHeader({2, 0, kProgramVersion}));
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

/// Keeps a list of the stores that the desk has for itself.
void trackHeld(Desk& desk, std::set<StoreKind>& held) {
    desk.store.claim = [&held](StoreKind kind) { return held.insert(kind).second; };
    desk.store.release = [&held](StoreKind kind) { held.erase(kind); };
}

TEST(Switch, GivesTheStoreBackThatItCouldNotWrite) {
    for (const bool toRegistry : {false, true}) {
        Desk desk(!toRegistry);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        std::set<StoreKind> held;
        trackHeld(desk, held);
        desk.changes->allFail = true;
        EXPECT_FALSE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_TRUE(held.empty());
        desk.changes->allFail = false;
        EXPECT_TRUE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_EQ(held.size(), 1U);
    }
}

TEST(Switch, KeepsTheStoreThatHasAllNotesIfOnlyTheChoiceIsRefused) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    std::set<StoreKind> held;
    trackHeld(desk, held);
    desk.settings.writeProtected.insert(Text(kSettingSection));
    EXPECT_FALSE(desk.toFiles(notes));
    EXPECT_EQ(held, std::set<StoreKind>{StoreKind::Files}) << "every change goes there, too";
}

TEST(Switch, KeepsTheStoreThatItHasIfALaterOneIsRefused) {
    for (const bool toRegistry : {false, true}) {
        Desk desk(!toRegistry);
        std::vector<NoteRecord> notes = sampleNotes(3);
        desk.createAll(notes);
        std::set<StoreKind> held;
        trackHeld(desk, held);
        EXPECT_TRUE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        desk.settings.writeProtected.insert(Text(kSettingSection));
        EXPECT_FALSE(toRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
        EXPECT_TRUE(held.contains(toRegistry ? StoreKind::Registry : StoreKind::Files))
            << "it holds the notes, and every change still goes there";
    }
}

TEST(SwitchToFiles, BetweenStoresInStepNeverForgetsThatTheFilesHaveTheNotes) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    switchThereAndBack(desk, notes, false);
    desk.changes->before = [&desk] {
        EXPECT_EQ(desk.settings.text(kSettingSection, kImportedKey), u"1") << "they would be copied twice";
    };
    switchThereAndBack(desk, notes, false);
}

TEST(SwitchToFiles, TellsEachNoteWhereItsBodyIs) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    EXPECT_TRUE(desk.toFiles(notes));
    for (int number = 1; number <= 3; ++number) {
        NoteRecord stored;
        EXPECT_EQ(desk.dataFiles().GetNoteRecord(number, stored), IoStatus::Done);
        EXPECT_EQ(notes[static_cast<std::size_t>(number - 1)].memo, stored.memo);
    }
}

TEST(SwitchToRegistry, KeepsWhatIsKnownOfDroppedDrafts) {
    Desk desk(false);
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.store.saveDraft(1, false, u"dropped");
    const std::string draft = desk.file(kDraftFile);
    desk.folder.changes = refusing();  // the file is held throughout
    desk.store.dropDraft(1);
    EXPECT_TRUE(desk.toRegistry(notes));
    EXPECT_NE(desk.settings.text(u"setting", u"dropped"), u"(none)");
    // The next run drops another one beside it, before the file is free.
    desk.open(false);
    desk.folder.changes = refusing();
    notes = desk.loadAll();
    EXPECT_TRUE(desk.store.takeDrafts(pointersTo(notes)).drafts.empty());
    desk.store.saveDraft(2, false, u"dropped later");
    desk.store.dropDraft(2);
    ASSERT_EQ(desk.file(kDraftFile), draft);
    desk.open(false);
    notes = desk.loadAll();
    EXPECT_TRUE(desk.store.takeDrafts(pointersTo(notes)).drafts.empty());
}

}  // namespace
