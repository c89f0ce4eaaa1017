// A start: the settings that it reads and completes, the store that it chooses, and how many notes it counts.
#include <gtest/gtest.h>

#include "tests/storage/Start.h"

namespace {

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

TEST(RegistryMode, StrayFilesOfNoKnownLayoutDoNotStopTheStart) {
    Start start;
    start.set(u"UseRegistry", u"True");
    start.desk.file(kNoteFile) = std::string(333, 'x');
    start.answerDelete = true;
    start.run();
    EXPECT_TRUE(start.state.usable);
    EXPECT_EQ(start.questions, 1);
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

}  // namespace
