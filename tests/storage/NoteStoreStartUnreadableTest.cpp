// A start that cannot read what is there or bring it up to date: it waits, says so, and loses nothing.
#include <gtest/gtest.h>

#include <functional>

#include "tests/storage/Start.h"

namespace {

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
            EXPECT_EQ(waits, 19) << "about a second, 50 ms at a time";
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

}  // namespace
