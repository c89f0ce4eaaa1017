// Drafts in a store of either kind: typed text comes back, dropped text never, and nobody waits for either.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "storage/NoteStore.h"
#include "tests/storage/StoreCases.h"

namespace {

struct DraftsInEitherStore : EitherStore {
    /// Three notes that are exactly alike, after a start that could not read the file with the draft of one.
    std::vector<NoteRecord> alike(int number, const Text& typed) {
        std::vector<NoteRecord> notes = sampleNotes(3);
        for (NoteRecord& note : notes)
            note.Titolo = note.Nota = u"all alike";
        desk.createAll(notes);
        desk.store.saveDraft(number, false, typed);
        restart();
        desk.folder.locked.insert(Text(kDraftFile));
        notes = desk.loadAll();
        static_cast<void>(desk.store.takeDrafts(pointersTo(notes)));
        return notes;
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, DraftsInEitherStore, testing::Values(true, false), storeName);

TEST_P(DraftsInEitherStore, DraftsOfSeveralNotesNeverMix) {
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    desk.store.saveDraft(1, false, u"one");
    desk.store.saveDraft(3, true, u"three");
    desk.store.saveDraft(1, false, u"one and more");
    EXPECT_EQ(typedIn(desk, inRegistry()).size(), 2U);
    desk.open(inRegistry());
    notes = desk.loadAll();
    const std::vector<Draft> drafts = desk.store.takeDrafts(pointersTo(notes)).drafts;
    ASSERT_EQ(drafts.size(), 2U);
    for (const Draft& draft : drafts)
        EXPECT_EQ(draft.text, draft.number == 1 ? u"one and more" : u"three");
    EXPECT_TRUE(desk.store.takeDrafts(pointersTo(notes)).drafts.empty()) << "handed out once";
    desk.store.dropDraft(3);
    EXPECT_EQ(typedIn(desk, inRegistry()), std::vector<Text>{u"one and more"});
}

TEST_P(DraftsInEitherStore, ADraftThatCannotBeDroppedNeverComesBack) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.store.saveDraft(2, false, u"dropped");
    // The file cannot be touched at all, or the value cannot be removed.
    if (inRegistry()) {
        desk.changes->failAt = desk.changes->made;
    } else {
        desk.folder.changes = refusing();
    }
    desk.store.dropDraft(2);
    EXPECT_NE(desk.settings.text(u"setting", u"dropped"), u"(none)");
    const auto held = desk.folder.content;
    EXPECT_TRUE(typedIn(desk, inRegistry()).empty());
    // And if the file was held during that start, too, the one after it.
    if (!inRegistry()) desk.folder.content = held;
    EXPECT_TRUE(typedIn(desk, inRegistry()).empty());
    // The same words typed again are a draft like any other once the old one is gone.
    desk.open(inRegistry());
    notes = desk.loadAll();
    static_cast<void>(desk.store.takeDrafts(pointersTo(notes)));
    desk.store.settle(pointersTo(notes), desk.global);
    EXPECT_EQ(desk.settings.text(u"setting", u"dropped"), u"(none)");
    desk.store.saveDraft(2, false, u"dropped");
    EXPECT_EQ(typedIn(desk, inRegistry()), std::vector<Text>{u"dropped"});
}

TEST_P(DraftsInEitherStore, ADraftThatCannotBeDroppedStaysVoidAsLongAsItIsThere) {
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    for (int number = 1; number <= 3; ++number) {
        desk.store.saveDraft(number, false, u"dropped");
        desk.settings.kept.insert({u"kardel-" + decimal(number), u"draft"});
    }
    if (!inRegistry()) desk.folder.changes = refusing();
    for (int number = 1; number <= 3; ++number)
        desk.store.dropDraft(number);
    for (int minute = 0; minute < 3; ++minute)
        desk.store.settle(pointersTo(notes), desk.global);
    EXPECT_TRUE(typedIn(desk, inRegistry()).empty());
}

TEST_P(DraftsInEitherStore, ADraftThatOneOfTwoStoresCannotDropStaysVoidThere) {
    for (const bool stuckInRegistry : {false, true}) {
        desk.folder.content.clear();
        desk.settings.content.clear();
        restart();
        std::vector<NoteRecord> notes = sampleNotes(2);
        desk.createAll(notes);
        ASSERT_TRUE(inRegistry() ? desk.toFiles(notes) : desk.toRegistry(notes));
        desk.store.saveDraft(2, false, u"dropped");
        if (stuckInRegistry) desk.settings.kept.insert({u"kardel-2", u"draft"});
        if (!stuckInRegistry) desk.folder.changes = refusing();
        desk.store.dropDraft(2);
        desk.store.settle(pointersTo(notes), desk.global);
        EXPECT_TRUE(typedIn(desk, stuckInRegistry).empty());
        desk.settings.kept.clear();
    }
}

TEST_P(DraftsInEitherStore, ADraftOfANoteThatIsBeingEditedWaitsForTheEnd) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.store.saveDraft(2, false, u"of the last run");
    restart();
    notes = desk.loadAll();
    EXPECT_TRUE(desk.store.takeDrafts(pointersTo(notes), {2}).drafts.empty());
    EXPECT_TRUE(desk.store.hasUnreadDrafts()) << "it has to be looked for again";
    const std::vector<Draft> found = desk.store.takeDrafts(pointersTo(notes), {}).drafts;
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].text, u"of the last run");
    EXPECT_FALSE(desk.store.hasUnreadDrafts());
}

TEST_P(DraftsInEitherStore, OneThatIsDamagedIsRemovedAtOnce) {
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.createAll(notes);
    desk.file(kDraftFile) = "rubbish";
    desk.settings.put(u"kardel-1", u"draft", u"rubbish");
    restart();
    EXPECT_EQ(desk.store.takeDrafts(pointersTo(notes)).drafts, std::vector<Draft>());
    EXPECT_EQ(inRegistry() ? desk.settings.find(u"kardel-1", u"draft") != nullptr : desk.hasFile(kDraftFile),
              false);
}

TEST_P(DraftsInEitherStore, ADraftIsGoneEvenIfItsFileMayNotBeDeleted) {
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.createAll(notes);
    desk.store.saveDraft(1, false, u"dropped");
    desk.folder.kept.insert(Text(kDraftFile));
    desk.store.dropDraft(1);
    EXPECT_TRUE(typedIn(desk, inRegistry()).empty());
    EXPECT_EQ(desk.settings.text(u"setting", u"dropped"), u"(none)");
}

TEST_P(DraftsInEitherStore, ADraftIsStoredEvenIfItsFileMayNotBeReplaced) {
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.createAll(notes);
    desk.store.saveDraft(1, false, u"a text that is longer");
    desk.folder.kept.insert(Text(kDraftFile));
    desk.store.saveDraft(1, false, u"than this");
    EXPECT_EQ(typedIn(desk, inRegistry()), std::vector<Text>{u"than this"});
}

TEST_P(DraftsInEitherStore, ADraftThatIsTypedOverOneThatCouldNotBeReadReplacesIt) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.store.saveDraft(2, false, u"of the last run");
    restart();
    desk.folder.locked.insert(Text(kDraftFile));
    notes = desk.loadAll();
    static_cast<void>(desk.store.takeDrafts(pointersTo(notes)));
    desk.store.saveDraft(2, false, u"typed over it");
    desk.folder.locked.clear();
    desk.store.saveDraft(2, false, u"typed over it twice");
    EXPECT_EQ(typedIn(desk, inRegistry()), std::vector<Text>{u"typed over it twice"});
}

TEST_P(DraftsInEitherStore, TypingLeavesDraftsAloneThatCouldNotBeRead) {
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    desk.store.saveDraft(1, false, u"one");
    desk.store.saveDraft(3, true, u"three");
    restart();
    desk.folder.locked.insert(Text(kDraftFile));
    desk.settings.unreadable = {{u"kardel-1", u"draft"}, {u"kardel-3", u"draft"}};
    notes = desk.loadAll();
    const FoundDrafts none = desk.store.takeDrafts(pointersTo(notes));
    EXPECT_EQ(none.status, IoStatus::Failed);
    EXPECT_TRUE(none.drafts.empty() && desk.store.hasUnreadDrafts());
    desk.store.saveDraft(2, false, u"typed meanwhile");
    if (inRegistry()) desk.store.saveDraft(3, true, u"typed over it");
    desk.store.settle(pointersTo(notes), desk.global);
    desk.folder.locked.clear();
    desk.settings.unreadable.clear();
    std::set<Text> found;
    for (const Draft& draft : desk.store.takeDrafts(pointersTo(notes)).drafts)
        found.insert(draft.text);
    EXPECT_TRUE(found.contains(u"one") && found.contains(u"three"));
    EXPECT_FALSE(desk.store.hasUnreadDrafts());
    // And after a kill that came before any of them was finished.
    desk.store.saveDraft(2, false, u"typed later");
    const std::vector<Text> typed = typedIn(desk, inRegistry());
    EXPECT_EQ(std::set<Text>(typed.begin(), typed.end()), (std::set<Text>{u"one", u"typed later", u"three"}));
}

TEST_P(DraftsInEitherStore, ADeletionRenumbersDraftsThatCouldNotBeRead) {
    std::vector<NoteRecord> notes = alike(3, u"of the last");
    notes.erase(notes.begin());
    EXPECT_TRUE(desk.store.remove(1, pointersTo(notes), desk.global));
    desk.folder.locked.clear();
    desk.store.saveDraft(1, false, u"typed");
    restart();
    notes = desk.loadAll();
    std::map<int, Text> found;
    for (const Draft& draft : desk.store.takeDrafts(pointersTo(notes)).drafts)
        found[draft.number] = draft.text;
    EXPECT_EQ(found, (std::map<int, Text>{{1, u"typed"}, {2, u"of the last"}}));
}

TEST_P(DraftsInEitherStore, ADeletionTakesADraftAlongThatCouldNotBeRead) {
    std::vector<NoteRecord> notes = alike(2, u"of the one that goes");
    notes.erase(notes.begin() + 1);
    EXPECT_TRUE(desk.store.remove(2, pointersTo(notes), desk.global));
    desk.folder.locked.clear();
    EXPECT_EQ(desk.store.takeDrafts(pointersTo(notes)).drafts, std::vector<Draft>());
}

TEST_P(DraftsInEitherStore, ADraftThatIsVoidDoesNotMoveWithItsNote) {
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    desk.store.saveDraft(2, false, u"dropped");
    desk.store.saveDraft(3, false, u"alive");
    desk.changes->failAt = desk.changes->made;
    desk.store.dropDraft(2);
    desk.changes->failAt = -1;
    notes.erase(notes.begin());
    EXPECT_TRUE(desk.store.remove(1, pointersTo(notes), desk.global));
    desk.store.settle(pointersTo(notes), desk.global);
    EXPECT_EQ(typedIn(desk, inRegistry()), std::vector<Text>{u"alive"});
    EXPECT_EQ(desk.settings.text(u"kardel-1", u"draft"), u"(none)");
}

TEST_P(DraftsInEitherStore, EveryOtherDraftIsFlushedToTheDisk) {
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.createAll(notes);
    desk.folder.waits.clear();
    int flushed = 0;
    for (int second = 0; second < 6; ++second) {
        desk.store.saveDraft(1, false, u"typed for " + decimal(second));
        flushed += desk.folder.unflushed.contains(Text(kDraftFile)) ? 0 : 1;
    }
    EXPECT_EQ(flushed, inRegistry() ? 6 : 3);
    EXPECT_EQ(desk.folder.waits, std::vector<unsigned>(6, 0)) << "nobody who types waits for a file";
}

}  // namespace
