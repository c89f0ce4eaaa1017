// Upgrades that were killed or refused, and what earlier ones left.
#include "storage/Upgrade.h"

#include <gtest/gtest.h>

#include "tests/storage/OldFiles.h"

namespace {

/// Kills the upgrade of so many notes at every point, and lets the next start finish it.
void killEverywhere(const Layout& layout, int notes) {
    int points = 0;
    for (bool ended = true; ended; ++points) {
        OldFiles old;
        old.seed(layout.version, layout.length, notes);
        old.folder.changes->endAt = points;
        ended = false;
        try {
            upgrade(old.data);
        } catch (const ProgramEnd&) {
            ended = true;
        }
        old.folder.changes->endAt = -1;
        EXPECT_NE(upgrade(old.data), Upgraded::Failed);
        EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(layout.length, notes)) << points;
        EXPECT_EQ(old.file(kHeaderFile), encodeHeader({notes, 0, kProgramVersion}));
        EXPECT_FALSE(old.has(layout.temporary));
    }
    EXPECT_EQ(points, 4) << "temporary file, header, rename, and once to the end";
}

TEST(UpgradeDataFiles, IsFinishedByTheNextStartWhereverItIsKilled) {
    for (const Layout& layout : kLayouts) {
        for (const int notes : {1, 4, kMaxNotes})
            killEverywhere(layout, notes);
    }
}

TEST(UpgradeDataFiles, OfAShortLastRecordIsFinishedByTheNextStartWhereverItIsKilled) {
    for (const std::size_t left : {1U, 100U, 194U}) {
        const auto seeded = [left](OldFiles& old) {
            old.seed(1.2F, 195, 3);
            old.file(kNoteFile).resize(2 * 195 + left);
        };
        OldFiles whole;
        seeded(whole);
        std::vector<Text> copies;
        ASSERT_EQ(UpgradeDataFiles(whole.data, copies), Upgraded::Done);
        bool ended = true;
        for (int point = 0; ended; ++point) {
            OldFiles old;
            seeded(old);
            old.folder.changes->endAt = point;
            ended = false;
            try {
                static_cast<void>(UpgradeDataFiles(old.data, copies));
            } catch (const ProgramEnd&) {
                ended = true;
            }
            old.folder.changes->endAt = -1;
            EXPECT_NE(UpgradeDataFiles(old.data, copies), Upgraded::Failed);
            EXPECT_EQ(old.folder.content, whole.folder.content) << left << " " << point;
        }
    }
}

TEST(UpgradeDataFiles, ARewrittenHeaderIsRecognisedByItsCountIfTheLengthFitsBothLayouts) {
    constexpr int kNotes = 43;  // as long as 39 present records
    OldFiles old;
    old.seed(1.2F, 195, kNotes);
    ASSERT_EQ(old.file(kNoteFile).size() % kRecordLength, 0U);
    old.file(kHeaderFile) = encodeHeader({kNotes, 0, kProgramVersion});
    old.file(u"KARDEL121.DAT") = OldFiles::expected(195, kNotes);
    EXPECT_EQ(upgrade(old.data), Upgraded::Done);
    EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(195, kNotes));

    OldFiles present;
    present.seed(1.28F, kRecordLength, 39);
    present.file(u"KARDEL121.DAT") = OldFiles::expected(195, kNotes);
    const std::string before = present.file(kNoteFile);
    EXPECT_EQ(upgrade(present.data), Upgraded::NotNeeded);
    EXPECT_EQ(present.file(kNoteFile), before);
}

TEST(UpgradeDataFiles, NewFileAloneWithAnOldHeaderIsPutInPlaceOnce) {
    OldFiles old;
    old.seed(1.2F, 195, 39);
    old.folder.content.erase(Text(kNoteFile));
    old.file(u"KARDEL121.DAT") = OldFiles::expected(195, 39);  // as long as 43 old records
    for (const Upgraded wanted : {Upgraded::Done, Upgraded::NotNeeded}) {
        EXPECT_EQ(upgrade(old.data), wanted);
        EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(195, 39));
        EXPECT_EQ(old.file(kHeaderFile), encodeHeader({39, 0, kProgramVersion}));
    }
}

TEST(UpgradeDataFiles, LongerStaleTemporaryFileLeavesNothingBehind) {
    OldFiles old;
    old.seed(1.2F, 195, 2);
    old.file(u"KARDEL121.DAT") = std::string(9 * kRecordLength, 's');
    EXPECT_EQ(upgrade(old.data), Upgraded::Done);
    EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(195, 2));
}

TEST(UpgradeDataFiles, StaleTemporaryFileNeverReplacesPresentNotes) {
    OldFiles files;
    files.seed(1.28F, kRecordLength, 3);
    files.file(u"KARDEL121.DAT") = std::string(4 * kRecordLength, 's');
    const std::string before = files.file(kNoteFile);
    EXPECT_EQ(upgrade(files.data), Upgraded::NotNeeded);
    EXPECT_EQ(files.file(kNoteFile), before);
}

TEST(UpgradeDataFiles, EmptyLeftOverBesideAnEmptyFileIsNothingToFinish) {
    OldFiles empty;
    empty.seed(kProgramVersion, kRecordLength, 0);
    empty.file(u"KARDEL122.DAT") = "";
    EXPECT_EQ(upgrade(empty.data), Upgraded::NotNeeded);
    EXPECT_TRUE(empty.has(u"KARDEL122.DAT"));
}

TEST(UpgradeDataFiles, RecordsThatCannotBeReadNowAreLeftAlone) {
    OldFiles old;
    old.seed(1.22F, 201, 3);
    const auto before = old.folder.content;
    old.folder.locked.insert(Text(kNoteFile));
    EXPECT_EQ(upgrade(old.data), Upgraded::Unreadable);
    EXPECT_EQ(old.folder.content, before);
}

TEST(UpgradeDataFiles, FailedChangeLeavesTheNotesReadable) {
    for (int point = 0; point < 3; ++point) {
        OldFiles old;
        old.seed(1.22F, 201, 3);
        old.folder.changes->failAt = point;
        EXPECT_EQ(upgrade(old.data), Upgraded::Failed);
        EXPECT_NE(upgrade(old.data), Upgraded::Failed);
        EXPECT_EQ(old.file(kNoteFile), OldFiles::expected(201, 3));
    }
}

}  // namespace
