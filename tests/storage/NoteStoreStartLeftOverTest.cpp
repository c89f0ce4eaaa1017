// What earlier runs left to a start: files of a store not in use, half-written files, and a list of places.
#include <gtest/gtest.h>

#include "tests/storage/Start.h"

namespace {

TEST(LeftOverFiles, AnswerNoReturnsToThem) {
    Start start;
    start.seedFiles(sampleNotes(3));
    start.set(u"UseRegistry", u"True");
    const auto before = start.desk.folder.content;
    start.run();
    EXPECT_EQ(start.questions, 1);
    EXPECT_FALSE(start.inRegistry());
    EXPECT_EQ(start.stored(u"UseRegistry"), u"False");
    EXPECT_EQ(start.state.Count, 3);
    EXPECT_EQ(start.desk.folder.content, before);
}

TEST(LeftOverFiles, AnswerYesDeletesAllThree) {
    Start start;
    start.seedFiles(sampleNotes(2));
    start.set(u"UseRegistry", u"True");
    start.answerDelete = true;
    start.run();
    EXPECT_TRUE(start.inRegistry());
    EXPECT_TRUE(start.desk.folder.content.empty());
    start.run();
    EXPECT_EQ(start.questions, 1) << "the question must not come back";
}

TEST(LeftOverFiles, TheEndOfTheProgramIsNoAnswer) {
    Start start;
    start.seedFiles(sampleNotes(2));
    start.run();  // every default is there
    start.set(u"UseRegistry", u"True");
    const auto files = start.desk.folder.content;
    const int made = start.desk.settings.changes->made + start.desk.folder.changes->made;
    start.answerDelete.reset();
    start.run();
    EXPECT_FALSE(start.state.usable);
    EXPECT_EQ(start.desk.folder.content, files);
    EXPECT_EQ(start.stored(u"UseRegistry"), u"True");
    EXPECT_EQ(start.desk.settings.changes->made + start.desk.folder.changes->made, made);
    EXPECT_EQ(start.failures, 0);
}

TEST(LeftOverFiles, OneThatCannotBeDeletedIsLeftSilently) {
    for (const TextView refused : {kHeaderFile, kMemoFile}) {
        Start start;
        start.seedFiles(sampleNotes(2));
        start.set(u"UseRegistry", u"True");
        start.answerDelete = true;
        start.desk.folder.kept.insert(Text(refused));
        start.run();
        EXPECT_TRUE(start.state.usable && start.inRegistry());
        EXPECT_EQ(start.failures, 0);
        ASSERT_EQ(start.desk.folder.content.size(), 1U) << "the other two are deleted";
        EXPECT_EQ(start.desk.folder.content.begin()->first, refused);
    }
}

TEST(LeftOverFiles, StayWholeIfTheirRecordsCannotBeDeleted) {
    Start start;
    start.seedFiles(sampleNotes(2));
    start.set(u"UseRegistry", u"True");
    const auto before = start.desk.folder.content;
    start.answerDelete = true;
    start.desk.folder.kept.insert(Text(kNoteFile));
    start.run();
    EXPECT_TRUE(start.state.usable && start.inRegistry());
    EXPECT_EQ(start.failures, 0);
    EXPECT_EQ(start.desk.folder.content, before);
    start.answerDelete = false;
    start.run();
    EXPECT_EQ(start.state.Count, 2);
    NoteRecord second;
    EXPECT_TRUE(start.desk.store.load(2, second, start.settings));
    EXPECT_EQ(second.Nota, sampleNotes(2)[1].Nota);
}

TEST(LeftOverFiles, AnswerNoKeepsTheRegistrysNotesUntilItIsStored) {
    Start start;
    start.seedFiles(sampleNotes(3));
    start.seedRegistry(sampleNotes(2));
    start.set(u"UseRegistry", u"True");
    start.desk.settings.writeProtected.insert(Text(kSettingSection));
    start.run();
    EXPECT_EQ(start.state.Count, 3);
    EXPECT_EQ(start.stored(u"UseRegistry"), u"True");
    EXPECT_EQ(start.stored(u"count"), u"2") << "the next start may use them";
    start.desk.settings.writeProtected.clear();
    std::vector<NoteRecord> notes = sampleNotes(3);
    start.desk.store.settle(pointersTo(notes), start.settings);
    EXPECT_EQ(start.stored(u"UseRegistry"), u"False");
    EXPECT_EQ(start.stored(u"count"), u"(none)");
}

TEST(LeftOverNotes, AreForgottenForGood) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    RegistryStore registry(desk.settings.settings(), englishWeekdayKeys());
    EXPECT_TRUE(registry.storeCount(3));
    EXPECT_TRUE(registry.removeCount());
    EXPECT_TRUE(registry.settle());
    EXPECT_EQ(desk.settings.text(kSettingSection, kCountKey), u"(none)");
}

TEST(LeftOverNotes, ThatCouldNotBeForgottenDoNotCostTheNotesOfALaterSwitch) {
    Start start;
    std::vector<NoteRecord> notes = sampleNotes(3);
    start.seedFiles(notes);
    start.set(u"count", u"2");
    start.desk.settings.kept.insert({Text(kSettingSection), Text(kCountKey)});
    start.run();
    ASSERT_FALSE(start.inRegistry());
    start.desk.settings.kept.clear();
    ASSERT_EQ(start.desk.store.switchTo(StoreKind::Registry, pointersTo(notes), start.settings),
              Switched::Done);
    start.desk.store.settle(pointersTo(notes), start.settings);
    EXPECT_EQ(start.stored(u"count"), u"3");
    start.answerDelete = true;
    start.run();
    EXPECT_TRUE(start.inRegistry());
    EXPECT_EQ(start.state.Count, 3);
}

TEST(LeftOverFiles, AnswerNoMakesTheirHeaderOneOfThisRelease) {
    Start start;
    start.seedFiles(sampleNotes(3));
    start.desk.file(kHeaderFile) = encodeHeader({3, -1, 1.27F});
    start.set(u"UseRegistry", u"True");
    start.run();
    EXPECT_EQ(start.state.Count, 3);
    EXPECT_EQ(start.desk.file(kHeaderFile), encodeHeader({3, 0, kProgramVersion}));
}

TEST(LeftOverFiles, AnswerNoLeavesAHeaderAloneThatCannotBeRead) {
    Start start;
    start.seedFiles(sampleNotes(5));
    start.desk.file(kHeaderFile) = encodeHeader({3, 0, kProgramVersion});  // two records are left over
    const auto before = start.desk.folder.content;
    start.set(u"UseRegistry", u"True");
    start.desk.folder.locked.insert(Text(kHeaderFile));
    start.run();
    EXPECT_EQ(start.state.Count, 5) << "none is hidden";
    EXPECT_EQ(start.desk.folder.content, before);
    start.desk.folder.locked.clear();
    start.run();
    EXPECT_EQ(start.state.Count, 3);
}

TEST(LeftOverFiles, AnswerNoWithADamagedHeaderHidesNoNoteAtTheNextStart) {
    Start start;
    start.seedFiles(sampleNotes(5));
    start.desk.file(kHeaderFile).resize(4);
    start.set(u"UseRegistry", u"True");
    start.run();
    EXPECT_EQ(start.state.Count, 5);
    start.run();
    EXPECT_EQ(start.state.Count, 5);
}

TEST(LeftOverFiles, AnswerNoBringsOlderFilesUpToDateFirst) {
    Start start;
    start.desk.file(kHeaderFile) = encodeHeader({2, 0, 1.2F});
    start.desk.file(kNoteFile) = std::string(2 * 195, ' ');
    start.set(u"UseRegistry", u"True");
    start.run();
    EXPECT_EQ(start.desk.file(kNoteFile).size(), 2 * kRecordLength);
    EXPECT_EQ(start.state.Count, 2);
}

TEST(LeftOverFiles, NeitherAnswerTouchesThemWhileAnotherSessionUsesThem) {
    for (const bool answer : {false, true}) {
        Start start;
        start.seedFiles(sampleNotes(2));
        start.run();  // every default is there
        start.set(u"UseRegistry", u"True");
        start.heldElsewhere = {StoreKind::Files};
        start.answerDelete = answer;
        const auto before = start.desk.folder.content;
        const auto settings = start.desk.settings.content;
        start.run();
        EXPECT_EQ(start.questions, 1);
        EXPECT_TRUE(start.state.busy);
        EXPECT_EQ(start.refusals, 1);
        EXPECT_EQ(start.desk.folder.content, before);
        EXPECT_EQ(start.desk.settings.content, settings);
    }
}

TEST(LeftOverFiles, AnyOneOfThemIsAskedAbout) {
    for (const TextView name : {kHeaderFile, kNoteFile, kMemoFile}) {
        Start start;
        start.set(u"UseRegistry", u"True");
        start.desk.file(name) = name == kHeaderFile ? encodeHeader({}) : std::string(kRecordLength, ' ');
        start.answerDelete = true;
        start.run();
        EXPECT_EQ(start.questions, 1);
    }
}

TEST(LeftOverTemporaries, OfKilledWritesAreRemovedWithEitherStore) {
    for (const bool useRegistry : {false, true}) {
        Start start;
        seedSettled(start, useRegistry);
        const auto before = start.desk.folder.content;
        for (const TextView name :
             {u"MEMO.tmp", u"KARDEL.DAT.tmp", u"KARDEL.TMP.tmp", u"KARDEL121.DAT.tmp", u"KARDEL122.DAT.tmp",
              u"KARDEL125.DAT.tmp", u"KARDEL.DAT.damaged.tmp", u"MEMO.damaged.tmp"})
            start.desk.file(name) = "half";
        start.run();
        EXPECT_EQ(start.desk.folder.content, before);
        EXPECT_EQ(start.questions, 0);
        const StoreKind used = useRegistry ? StoreKind::Registry : StoreKind::Files;
        EXPECT_EQ(start.held, std::set<StoreKind>{used}) << "another session may use the other one";
    }
}

TEST(LeftOverTemporaries, OfFilesThatAnotherSessionIsWritingStay) {
    Start start;
    seedSettled(start, true);
    start.desk.file(u"MEMO.tmp") = "half";
    start.heldElsewhere = {StoreKind::Files};
    start.run();
    EXPECT_TRUE(start.state.usable);
    EXPECT_EQ(start.refusals, 0);
    EXPECT_TRUE(start.desk.hasFile(u"MEMO.tmp"));
}

TEST(StalePlaces, NeverActOnALaterNumberOfNotes) {
    for (const TextView list : {u"9 1 2", u"2 1 3", u"4 1 2 3 4 5", u"rubbish"}) {
        Start start;
        seedSettled(start, true);
        start.set(u"places", Text(list));
        start.run();
        EXPECT_EQ(start.state.Count, 3) << std::string(list.begin(), list.end());
        EXPECT_EQ(start.stored(u"places"), u"(none)");
        std::vector<NoteRecord> two = start.desk.loadAll();
        two.pop_back();
        EXPECT_TRUE(start.desk.store.remove(3, pointersTo(two), start.settings));
        start.run();
        EXPECT_EQ(start.state.Count, 2);
        NoteRecord second;
        EXPECT_TRUE(start.desk.store.load(2, second, start.settings));
        EXPECT_EQ(second.Titolo, u"Title 2");
    }
}

TEST(StalePlaces, KeptByTheRegistryAreRemovedBeforeTheNumberOfNotesChanges) {
    Start start;
    seedSettled(start, true);
    start.set(u"places", u"4 1 3 4");
    start.desk.settings.changes->failAt = start.desk.settings.changes->made;  // the list stays for now
    start.set(u"count", u"6");
    start.run();
    EXPECT_EQ(start.stored(u"places"), u"4 1 3 4");
    start.desk.settings.changes->failAt = -1;
    NoteRecord seventh = sampleNotes(7).back();
    EXPECT_TRUE(start.desk.store.create(7, seventh));
    EXPECT_EQ(start.stored(u"places"), u"(none)");
}

}  // namespace
