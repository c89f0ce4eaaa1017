#include "storage/Upgrade.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/storage/OldFiles.h"

namespace {

TEST(UpgradeDataFiles, RewritesEveryOlderLayoutByteForByte) {
    for (const Layout& layout : kLayouts) {
        OldFiles old;
        old.seed(layout.version, layout.length, 4);
        EXPECT_EQ(upgrade(old.data), Upgraded::Done) << layout.version;
        EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(layout.length, 4)) << layout.version;
        EXPECT_EQ(old.file(kHeaderFile), encodeHeader({4, 0, kProgramVersion}));
        EXPECT_EQ(old.file(kMemoFile), std::string(4 * kMemoLength, 'm'));
        EXPECT_FALSE(old.has(layout.temporary));
    }
}

TEST(UpgradeDataFiles, LeavesThePresentLayoutAlone) {
    for (const float version : {1.25F, 1.28F, 2.0F}) {
        OldFiles files;
        files.seed(version, kRecordLength, 3);
        const auto before = files.folder.content;
        EXPECT_EQ(upgrade(files.data), Upgraded::NotNeeded);
        EXPECT_EQ(files.folder.content, before);
        EXPECT_EQ(files.folder.changes->made, 0);
    }
}

TEST(UpgradeDataFiles, KeepsEachNotesBodyNumber) {
    OldFiles old;
    old.seed(1.2F, 195, 3);
    upgrade(old.data);
    for (int number = 1; number <= 3; ++number) {
        NoteRecord note;
        old.data.GetNoteRecord(number, note);
        EXPECT_EQ(note.memo, 4 - number);
    }
}

TEST(UpgradeDataFiles, FileOfNoRecordsStaysEmptyAndGetsItsHeader) {
    OldFiles old;
    old.seed(1.2F, 195, 0);
    EXPECT_EQ(upgrade(old.data), Upgraded::Done);
    EXPECT_TRUE(old.has(kNoteFile));
    EXPECT_EQ(old.file(kNoteFile), "");
    EXPECT_EQ(old.file(kHeaderFile), encodeHeader({0, 0, kProgramVersion}));
    EXPECT_FALSE(old.has(u"KARDEL121.DAT"));
}

TEST(UpgradeDataFiles, CreatesNothingWhereThereIsNothing) {
    OldFiles none;
    EXPECT_EQ(upgrade(none.data), Upgraded::NotNeeded);
    EXPECT_TRUE(none.folder.content.empty());
    none.file(kHeaderFile) = encodeHeader({1, 0, 1.2F});
    EXPECT_EQ(upgrade(none.data), Upgraded::NotNeeded);
    EXPECT_FALSE(none.has(kNoteFile));
    EXPECT_EQ(none.file(kHeaderFile), encodeHeader({1, 0, kProgramVersion}));
}

TEST(UpgradeDataFiles, HeaderThatCannotBeReadDoesNotCountAsAnOldVersion) {
    OldFiles files;
    files.seed(1.28F, kRecordLength, 3);
    files.file(kHeaderFile).resize(0);
    const auto before = files.folder.content;
    EXPECT_EQ(upgrade(files.data), Upgraded::NotNeeded);
    EXPECT_EQ(files.folder.content, before);
    files.folder.locked.insert(Text(kHeaderFile));
    EXPECT_EQ(upgrade(files.data), Upgraded::NotNeeded);
    EXPECT_EQ(files.folder.content, before);
}

TEST(UpgradeDataFiles, OldRecordsWithAHeaderThatCannotBeReadNowAreLeftAlone) {
    OldFiles files;
    files.seed(1.2F, 195, 4);
    files.folder.locked.insert(Text(kHeaderFile));
    const auto before = files.folder.content;
    EXPECT_EQ(upgrade(files.data), Upgraded::Unreadable);
    EXPECT_EQ(files.folder.content, before);
}

TEST(UpgradeDataFiles, OldRecordsWithADamagedHeaderAreRecognisedByTheLengthAndCopiedFirst) {
    for (const std::size_t length : {std::size_t{195}, std::size_t{197}, std::size_t{201}}) {
        const std::string noNumber = encodeHeader({4, 0, std::numeric_limits<float>::quiet_NaN()});
        for (const std::string& header : {std::string(), std::string("\4\0\0\0\0", 5), noNumber}) {
            OldFiles old;
            old.seed(1.0F, length, 4);
            old.file(kHeaderFile) = header;
            const auto before = old.folder.content;
            std::vector<Text> copies;
            EXPECT_EQ(UpgradeDataFiles(old.data, copies), Upgraded::Done);
            EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(length, 4));
            EXPECT_EQ(old.file(kHeaderFile), encodeHeader({4, 0, kProgramVersion}));
            EXPECT_EQ(copies,
                      (std::vector<Text>{u"KARDEL.DAT.damaged", u"KARDEL.HDR.damaged", u"MEMO.damaged"}));
            EXPECT_EQ(old.file(u"KARDEL.DAT.damaged"), before.at(Text(kNoteFile)));
            EXPECT_EQ(old.file(u"KARDEL.HDR.damaged"), header);
        }
    }
}

TEST(UpgradeDataFiles, PresentRecordsWithAnOldHeaderStayAsTheyAre) {
    OldFiles files;
    files.seed(1.2F, kRecordLength, 3);
    const std::string before = files.file(kNoteFile);
    EXPECT_EQ(upgrade(files.data), Upgraded::NotNeeded);
    EXPECT_EQ(files.file(kNoteFile), before);
    EXPECT_EQ(files.file(kHeaderFile), encodeHeader({3, 0, kProgramVersion}));
}

TEST(UpgradeDataFiles, ShortLastRecordIsNotDropped) {
    OldFiles old;
    old.seed(1.2F, 195, 3);
    old.file(kNoteFile).resize(2 * 195 + 100);
    const std::string found = old.file(kNoteFile);
    std::vector<Text> copies;
    EXPECT_EQ(UpgradeDataFiles(old.data, copies), Upgraded::Done);
    EXPECT_EQ(old.file(kNoteFile).size(), 3 * kRecordLength);
    EXPECT_EQ(copies.size(), 3U);
    EXPECT_EQ(old.file(u"KARDEL.DAT.damaged"), found);
}

TEST(UpgradeDataFiles, OldRecordsWithoutAHeaderAreRecognisedByTheLength) {
    for (const std::size_t length : {std::size_t{195}, std::size_t{197}, std::size_t{201}}) {
        OldFiles old;
        old.seed(1.0F, length, 4);
        old.folder.content.erase(Text(kHeaderFile));
        EXPECT_EQ(upgrade(old.data), Upgraded::Done);
        EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(length, 4));
        EXPECT_EQ(old.file(kHeaderFile), encodeHeader({4, 0, kProgramVersion}));
    }
}

TEST(UpgradeDataFiles, LengthThatFitsNoLayoutKeepsWholeRecordsAndACopyOfTheFiles) {
    for (const bool header : {false, true}) {
        OldFiles odd;
        const std::string found = std::string(kRecordLength, 'x') + std::string(88, 'y');
        odd.file(kNoteFile) = found;
        if (header) odd.file(kHeaderFile) = "damaged";
        std::vector<Text> copies;
        EXPECT_EQ(UpgradeDataFiles(odd.data, copies), Upgraded::Done);
        EXPECT_EQ(odd.file(kNoteFile), std::string(kRecordLength, 'x'));
        EXPECT_EQ(odd.file(kHeaderFile), encodeHeader({1, 0, kProgramVersion}));
        EXPECT_EQ(odd.file(u"KARDEL.DAT.damaged"), found);
        EXPECT_EQ(copies.size(), header ? 2U : 1U);
        copies.clear();
        EXPECT_EQ(UpgradeDataFiles(odd.data, copies), Upgraded::NotNeeded);
        EXPECT_TRUE(copies.empty()) << "the user must not be told twice";
    }
}

TEST(UpgradeDataFiles, LengthThatDoesNotFitAWholeHeaderKeepsWholeRecordsAndACopyOfTheFiles) {
    OldFiles odd;
    odd.seed(kProgramVersion, kRecordLength, 3);
    odd.file(kNoteFile).resize(kRecordLength + 88);
    const auto before = odd.folder.content;
    std::vector<Text> copies;
    EXPECT_EQ(UpgradeDataFiles(odd.data, copies), Upgraded::Done);
    EXPECT_EQ(odd.file(kNoteFile), before.at(Text(kNoteFile)).substr(0, kRecordLength));
    EXPECT_EQ(odd.file(kHeaderFile), encodeHeader({1, 0, kProgramVersion}));
    EXPECT_EQ(copies, (std::vector<Text>{u"KARDEL.DAT.damaged", u"KARDEL.HDR.damaged", u"MEMO.damaged"}));
    EXPECT_EQ(odd.file(u"KARDEL.DAT.damaged"), before.at(Text(kNoteFile)));
    EXPECT_EQ(odd.file(u"MEMO.damaged"), before.at(Text(kMemoFile)));
    copies.clear();
    odd.file(kMemoFile) += "a body since then";
    EXPECT_EQ(UpgradeDataFiles(odd.data, copies), Upgraded::NotNeeded);
    EXPECT_TRUE(copies.empty()) << "the user must not be told twice";
}

TEST(UpgradeDataFiles, AThousandCopiesAreEnough) {
    for (const int stand : {999, 1000}) {
        OldFiles odd;
        odd.file(kNoteFile) = std::string(333, 'x');
        for (int number = 1; number <= stand; ++number)
            odd.file(u"KARDEL.DAT.damaged" + (number == 1 ? Text() : decimal(number))) = "another";
        const auto before = odd.folder.content;
        std::vector<Text> copies;
        EXPECT_EQ(UpgradeDataFiles(odd.data, copies), stand == 999 ? Upgraded::Done : Upgraded::Failed);
        if (stand == 999) {
            EXPECT_EQ(copies, std::vector<Text>{u"KARDEL.DAT.damaged1000"});
        } else {
            EXPECT_EQ(odd.folder.content, before) << "what is not copied is left alone";
        }
    }
}

TEST(UpgradeDataFiles, DamagedFilesAreLeftAloneUntilTheyAreCopied) {
    for (int at = 0; at < 3; ++at) {
        OldFiles odd;
        odd.file(kNoteFile) = std::string(333, 'x');
        odd.folder.changes->failAt = at;
        std::vector<Text> copies;
        EXPECT_EQ(UpgradeDataFiles(odd.data, copies), Upgraded::Failed) << at;
        odd.folder.changes->failAt = -1;
        EXPECT_EQ(UpgradeDataFiles(odd.data, copies), at == 2 ? Upgraded::NotNeeded : Upgraded::Done) << at;
        EXPECT_EQ(odd.file(u"KARDEL.DAT.damaged"), std::string(333, 'x'));
        EXPECT_EQ(copies.size(), 1U);
        EXPECT_FALSE(odd.folder.content.contains(u"KARDEL.DAT.damaged2")) << "one copy is enough";
    }
}

}  // namespace
