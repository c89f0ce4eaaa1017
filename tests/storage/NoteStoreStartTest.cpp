#include "storage/NoteStore.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <set>

#include "tests/storage/Samples.h"

namespace {

/// A start over stores in memory.
struct Start {
    Desk desk{false};
    std::optional<bool> answerDelete = false;
    std::set<StoreKind> heldElsewhere;  ///< stores that another session is using
    std::function<void()> wait = [] {};
    int questions = 0;
    int failures = 0;
    int refusals = 0;          ///< how often the user was told that another session is using a store
    int unreadable = 0;        ///< how often the user was told that something cannot be read
    std::vector<Text> copies;  ///< of damaged files
    GlobalSettings settings;
    StartState state;

    void set(TextView key, const Text& text) { desk.settings.put(u"setting", key, text); }
    Text stored(TextView key) { return desk.settings.text(u"setting", key); }

    void run() {
        desk.store = NoteStore(desk.parts());
        desk.store.claim = [this](StoreKind kind) { return !heldElsewhere.contains(kind); };
        desk.store.heldElsewhere = [this] { ++refusals; };
        settings = GlobalSettings();
        StartQuestions asked;
        asked.deleteLocalFiles = [this] {
            ++questions;
            return answerDelete;
        };
        asked.saveFailed = [this] { ++failures; };
        asked.cannotRead = [this] { ++unreadable; };
        asked.wait = [this] { wait(); };
        asked.damaged = [this](const std::vector<Text>& names) { copies = names; };
        state = desk.store.start(settings, asked);
    }
    bool inRegistry() const { return desk.store.kind() == StoreKind::Registry; }

    /// The local files as left by a program with these notes.
    void seedFiles(std::vector<NoteRecord> notes) {
        desk.open(false);
        desk.createAll(notes);
    }

    void seedRegistry(std::vector<NoteRecord> notes) {
        desk.store.begin(StoreKind::Registry);
        desk.createAll(notes);
    }

    Start() { desk.folder.content.clear(); }
};

TEST(FirstStart, WritesEveryDefaultBack) {
    Start start;
    start.run();
    for (const TextView key :
         {u"AlignAll", u"EasyAlign", u"RestoreWhenPlay", u"DontDeleteWhenPlay", u"UseRegistry"}) {
        EXPECT_EQ(start.stored(key), u"False") << std::string(key.begin(), key.end());
    }
    EXPECT_EQ(start.stored(u"defaultwidth"), u"2910");
    EXPECT_EQ(start.stored(u"defaultheight"), u"1890");
    EXPECT_EQ(start.stored(u"count"), u"(none)");
    EXPECT_EQ(start.stored(u"ImportDAT"), u"(none)");
}

TEST(FirstStart, MakesOneFreshNoteInTheFiles) {
    Start start;
    start.run();
    EXPECT_EQ(start.state.Count, 1);
    NoteRecord fresh;
    ClearNoteRecord(fresh);
    EXPECT_EQ(start.desk.file(kNoteFile), encodeRecord(westernPage(), fresh).bytes);
    EXPECT_EQ(start.desk.file(kMemoFile), std::string(kMemoLength, ' '));
    EXPECT_EQ(start.failures, 0);
}

TEST(FirstStart, TellsTheUserWhenTheFolderCannotBeWritten) {
    Start start;
    start.desk.changes->allFail = true;
    start.run();
    EXPECT_EQ(start.state.Count, 1);
    EXPECT_TRUE(start.state.usable);
    EXPECT_EQ(start.failures, 1);
}

TEST(StoredFlags, AreReadAndLeftAsTheyAre) {
    Start start;
    start.set(u"AlignAll", u"s\u00EC");
    start.set(u"EasyAlign", u"falso");
    start.set(u"RestoreWhenPlay", u"-1");
    start.set(u"DontDeleteWhenPlay", u"rubbish");
    start.run();
    EXPECT_TRUE(start.settings.AlignAll);
    EXPECT_FALSE(start.settings.EasyAlign);
    EXPECT_TRUE(start.settings.RestoreWhenPlay);
    EXPECT_FALSE(start.settings.DontDeleteWhenPlay);
    EXPECT_EQ(start.stored(u"AlignAll"), u"s\u00EC");
    EXPECT_EQ(start.stored(u"DontDeleteWhenPlay"), u"rubbish");
}

TEST(ChoiceOfStore, FollowsTheWord) {
    for (const TextView word : {u"Yes", u"SI", u"vero", u"1"}) {
        Start start;
        start.set(u"UseRegistry", Text(word));
        start.run();
        EXPECT_TRUE(start.inRegistry()) << std::string(word.begin(), word.end());
        EXPECT_EQ(start.stored(u"UseRegistry"), word);
    }
    for (const TextView word : {u"No", u"falso", u"0", u"abc"}) {
        Start start;
        start.set(u"UseRegistry", Text(word));
        start.run();
        EXPECT_FALSE(start.inRegistry()) << std::string(word.begin(), word.end());
    }
}

TEST(RegistryMode, CreatesNoFile) {
    Start start;
    start.set(u"UseRegistry", u"True");
    start.run();
    EXPECT_TRUE(start.desk.folder.content.empty());
    EXPECT_EQ(start.questions, 0);
}

TEST(RegistryMode, CountIsClampedBetweenOneAndFifty) {
    constexpr std::pair<TextView, int> kCases[] = {{u"0", 1},          {u"", 1},     {u"-7", 1},
                                                   {u"abc", 1},        {u"12", 12},  {u"75", 50},
                                                   {u"999999999", 50}, {u"1e99", 50}};
    for (const auto& [text, expected] : kCases) {
        Start start;
        start.set(u"UseRegistry", u"True");
        start.set(u"count", Text(text));
        start.run();
        EXPECT_EQ(start.state.Count, expected) << std::string(text.begin(), text.end());
    }
}

TEST(DefaultSizes, ZeroIsReplacedButOtherNonsenseIsKept) {
    Start start;
    start.set(u"defaultwidth", u"0");
    start.set(u"defaultheight", u"-100");
    start.run();
    EXPECT_EQ(start.stored(u"defaultwidth"), u"2910");
    EXPECT_EQ(start.settings.DefaultWidth, 2910);
    EXPECT_EQ(start.stored(u"defaultheight"), u"-100");
    EXPECT_EQ(start.settings.DefaultHeight, -100);
}

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

// --- What cannot be read ---------------------------------------------------------------------------------

/// Everything that a start has to read, made unreadable one after the other.
std::vector<std::function<void(Start&)>> unreadable() {
    std::vector<std::function<void(Start&)>> ways{
        [](Start& start) { start.desk.settings.locked.insert(Text(kSettingSection)); }};
    for (const TextView key :
         {u"UseRegistry", u"count", u"ImportDAT", u"places", u"AlignAll", u"EasyAlign", u"RestoreWhenPlay",
          u"DontDeleteWhenPlay", u"defaultwidth", u"defaultheight"}) {
        ways.emplace_back([key](Start& start) {
            if (start.desk.settings.find(kSettingSection, key) == nullptr) start.set(key, u"1");
            start.desk.settings.unreadable.insert({Text(kSettingSection), Text(key)});
        });
    }
    for (const TextView name : {kHeaderFile, kNoteFile, kMemoFile})
        ways.emplace_back([name](Start& start) { start.desk.folder.unseen.insert(Text(name)); });
    return ways;
}

/// A desk of three notes that has been started before.
void seedSettled(Start& start, bool useRegistry) {
    if (useRegistry) {
        start.set(u"UseRegistry", u"True");
        start.seedRegistry(sampleNotes(3));
    } else {
        start.seedFiles(sampleNotes(3));
    }
    start.run();
}

TEST(UnreadableStart, EndsInOneBoxAndHasWrittenNothing) {
    for (const bool useRegistry : {false, true}) {
        int number = 0;
        for (const auto& takeAway : unreadable()) {
            SCOPED_TRACE(std::to_string(number++) + (useRegistry ? " in the registry" : " in files"));
            Start start;
            seedSettled(start, useRegistry);
            takeAway(start);
            const auto files = start.desk.folder.content;
            const auto settings = start.desk.settings.content;
            int waits = 0;
            start.wait = [&waits] { ++waits; };
            start.run();
            EXPECT_FALSE(start.state.usable);
            EXPECT_EQ(start.unreadable, 1);
            EXPECT_EQ(start.questions + start.failures + start.refusals, 0);
            EXPECT_GE(waits, 10) << "about a second, 50 ms at a time";
            EXPECT_LE(waits, 20);
            EXPECT_EQ(start.desk.folder.content, files);
            EXPECT_EQ(start.desk.settings.content, settings);
        }
    }
}

TEST(UnreadableStart, GoesOnWhenItCanReadAgainInTime) {
    for (const bool useRegistry : {false, true}) {
        for (const auto& takeAway : unreadable()) {
            Start start;
            seedSettled(start, useRegistry);
            takeAway(start);
            int waits = 0;
            start.wait = [&] {
                if (++waits < 10) return;
                start.desk.settings.locked.clear();
                start.desk.settings.unreadable.clear();
                start.desk.folder.unseen.clear();
            };
            start.run();
            EXPECT_TRUE(start.state.usable);
            EXPECT_EQ(start.unreadable + start.failures + start.questions, 0);
            EXPECT_EQ(start.inRegistry(), useRegistry);
            EXPECT_EQ(start.state.Count, 3);
            EXPECT_EQ(waits, 10);
        }
    }
}

TEST(UnreadableStart, WithTheRegistryAsksNothingIfItSeesInTimeThatThereAreNoFiles) {
    Start start;
    seedSettled(start, true);
    int reads = 0;
    start.desk.folder.mayRead = [&reads](TextView) { return ++reads > 3; };
    start.run();
    EXPECT_EQ(start.questions, 0);
    EXPECT_TRUE(start.state.usable);
}

// --- What an earlier run left ------------------------------------------------------------------------------

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

TEST(UnreadableStart, WithoutItsRecordsOnceBlanksNoBody) {
    Start start;
    start.seedFiles(sampleNotes(3));
    const std::string records = start.desk.file(kNoteFile);
    start.desk.folder.content.erase(Text(kNoteFile));
    start.run();
    EXPECT_EQ(start.state.Count, 1);
    EXPECT_EQ(start.failures, 0);
    // The file comes back, as from a drive that was away.
    start.desk.file(kNoteFile) = records;
    start.desk.file(kHeaderFile) = encodeHeader({3, 0, kProgramVersion});
    start.run();
    for (int number = 1; number <= 3; ++number) {
        NoteRecord note;
        EXPECT_TRUE(start.desk.store.load(number, note, start.settings));
        EXPECT_EQ(note.Nota, sampleNotes(3)[static_cast<std::size_t>(number - 1)].Nota);
    }
}

TEST(UnreadableStart, WithoutItsRecordsOnceKeepsABodyThatWasCutShort) {
    Start start;
    start.seedFiles(sampleNotes(3));
    start.desk.folder.content.erase(Text(kNoteFile));
    start.desk.file(kMemoFile).resize(2 * kMemoLength + 300);
    const std::string bodies = start.desk.file(kMemoFile);
    start.run();
    EXPECT_EQ(start.state.Count, 1);
    EXPECT_EQ(start.desk.file(kMemoFile).substr(0, bodies.size()), bodies);
    EXPECT_EQ(start.desk.file(kMemoFile).size(), 4 * kMemoLength);
}

TEST(RegistryMode, StrayFilesOfNoKnownLayoutDoNotStopTheStart) {
    Start start;
    start.set(u"UseRegistry", u"True");
    start.desk.file(kNoteFile) = std::string(333, 'x');
    start.answerDelete = true;
    start.run();
    EXPECT_TRUE(start.state.usable);
    EXPECT_EQ(start.questions, 1);
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

TEST(FileMode, MissingNoteFileMeansOneNote) {
    Start start;
    start.desk.file(kHeaderFile) = encodeHeader({12, 0, kProgramVersion});
    start.run();
    EXPECT_EQ(start.state.Count, 1);
}

TEST(FileMode, UsesTheSmallerNumberOfHeaderAndFile) {
    for (const std::int32_t counted : {2, 40}) {
        Start start;
        start.seedFiles(sampleNotes(4));
        start.desk.file(kHeaderFile) = encodeHeader({counted, 0, kProgramVersion});
        start.run();
        EXPECT_EQ(start.state.Count, std::min(counted, 4));
    }
}

TEST(FileMode, NonsenseCountsMeanOne) {
    for (const std::int32_t counted : {0, -5, INT32_MIN}) {
        Start start;
        start.seedFiles(sampleNotes(4));
        start.desk.file(kHeaderFile) = encodeHeader({counted, 0, kProgramVersion});
        start.run();
        EXPECT_EQ(start.state.Count, 1);
    }
}

TEST(FileMode, LostHeaderCountsTheRecords) {
    Start start;
    start.seedFiles(sampleNotes(7));
    start.desk.folder.content.erase(Text(kHeaderFile));
    start.run();
    EXPECT_EQ(start.state.Count, 7);
    EXPECT_EQ(start.desk.file(kHeaderFile), encodeHeader({7, 0, kProgramVersion}));
}

TEST(FileMode, HeaderThatIsTooShortOrLockedHidesNoNote) {
    Start start;
    start.seedFiles(sampleNotes(5));
    start.desk.file(kHeaderFile).resize(4);
    start.run();
    EXPECT_EQ(start.state.Count, 5);
    start.desk.folder.locked.insert(Text(kHeaderFile));
    start.run();
    EXPECT_EQ(start.state.Count, 5);
}

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

TEST(Import, StopsAtFiftyForAnEndlessCount) {
    Start start;
    start.set(u"count", u"999999999");
    start.run();
    EXPECT_LE(start.state.Count, kMaxNotes);
}

TEST(Upgrade, FailureEndsTheStartAndLeavesTheFilesAlone) {
    Start start;
    start.desk.file(kHeaderFile) = encodeHeader({1, 0, 1.2F});
    start.desk.file(kNoteFile) = std::string(195, ' ');
    const auto before = start.desk.folder.content;
    start.desk.changes->allFail = true;
    start.run();
    EXPECT_FALSE(start.state.usable);
    EXPECT_EQ(start.failures, 1);
    EXPECT_EQ(start.desk.folder.content, before);
}

TEST(Upgrade, WaitsForFilesThatCannotBeReadAndSaysSo) {
    for (const bool inTime : {true, false}) {
        Start start;
        start.desk.file(kHeaderFile) = encodeHeader({2, 0, 1.2F});
        start.desk.file(kNoteFile) = std::string(2 * 195, ' ');
        const auto before = start.desk.folder.content;
        start.desk.folder.locked.insert(Text(kNoteFile));
        int waits = 0;
        start.wait = [&] {
            if (++waits == 10 && inTime) start.desk.folder.locked.clear();
        };
        start.run();
        EXPECT_EQ(start.state.usable, inTime);
        EXPECT_EQ(start.failures, 0);
        EXPECT_EQ(start.unreadable, inTime ? 0 : 1);
        EXPECT_GE(waits, 10);
        EXPECT_EQ(start.desk.folder.content == before, !inTime);
    }
}

/// Texts that a user, another program or a damaged disk may leave in any value.
Text hostileText(Dice& dice) {
    const std::uint32_t kind = dice.roll(4);
    if (kind == 0)
        return dice.oneOf({u"", u"True", u"-1", u"0", u"1e999", u"-1e999", u"99999999999999999999"});
    if (kind == 1) return decimal(dice.number());
    Text text;
    for (std::uint32_t i = dice.roll(40); i > 0; --i)
        text += static_cast<char16_t>(dice.roll(65535) + 1);
    if (kind == 3 && dice.roll(20) == 0) text = Text(100000, u'9');
    return text;
}

TEST(HostileStores, LetFiveThousandStartsSettleOnSomethingUsable) {
    Dice dice(20260101);
    for (int round = 0; round < 5000; ++round) {
        Start start;
        for (const TextView key :
             {u"AlignAll", u"EasyAlign", u"RestoreWhenPlay", u"DontDeleteWhenPlay", u"UseRegistry", u"count",
              u"ImportDAT", u"defaultwidth", u"defaultheight"}) {
            if (dice.coin()) start.set(key, hostileText(dice));
        }
        for (int number = 1; number <= 3; ++number) {
            for (const NoteFieldRow& row : noteFields()) {
                if (row.key != nullptr && dice.coin()) {
                    start.desk.settings.put(noteSection(number), row.key, hostileText(dice));
                }
            }
        }
        for (const TextView name : {kHeaderFile, kNoteFile, kMemoFile}) {
            if (dice.roll(3) == 0) start.desk.file(name) = dice.bytes(dice.roll(2500));
        }
        start.answerDelete = dice.coin();
        start.run();
        ASSERT_GE(start.state.Count, 1);
        ASSERT_LE(start.state.Count, kMaxNotes);
        if (!start.state.usable) continue;
        for (int number = 1; number <= start.state.Count; ++number) {
            NoteRecord note;
            start.desk.store.load(number, note, start.settings);
            ASSERT_LE(note.Titolo.size(), 100000U);
        }
    }
}

}  // namespace
