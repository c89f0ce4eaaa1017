// Deleting a note, interrupted and disturbed at every point.
#include <gtest/gtest.h>

#include "tests/storage/Removal.h"
#include "tests/support/StoreName.h"

namespace {

struct RemoveNote : testing::TestWithParam<bool> {
    template <class Test>
    void forEveryNote(Test test) {
        for (int total = 1; total <= kMostNotes; ++total) {
            for (int number = 1; number <= total; ++number)
                test(total, number);
        }
    }
    static std::string named(int total, int number, int at) {
        return "note " + std::to_string(number) + " of " + std::to_string(total) + ", change " +
               std::to_string(at);
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, RemoveNote, testing::Values(true, false), storeName);

TEST_P(RemoveNote, LeavesTheOthersInOrderWithoutAGap) {
    forEveryNote([&](int total, int number) {
        Removal removal(GetParam(), total, number);
        EXPECT_TRUE(removal.run());
        EXPECT_EQ(removal.desk.told, 0);
        removal.expectDense();
    });
}

TEST_P(RemoveNote, KilledAtAnyPointLosesNoOtherNote) {
    forEveryNote([&](int total, int number) {
        for (int at = 0;; ++at) {
            Removal removal(GetParam(), total, number);
            const bool ended = endedAt(removal, at);
            removal.expectNoneLost(named(total, number, at));
            if (!ended) break;
        }
    });
}

TEST_P(RemoveNote, WithOneFailedChangeLosesNoOtherNoteEvenIfTheyAreEditedAfterwards) {
    forEveryNote([&](int total, int number) {
        for (int at = 0;; ++at) {
            Removal removal(GetParam(), total, number);
            removal.desk.changes->failAt = at;
            removal.run();
            const bool reached = removal.desk.changes->made > at;
            removal.desk.changes->failAt = -1;
            for (std::size_t i = 0; i < removal.remaining.size(); ++i) {
                NoteRecord& note = removal.remaining[i];
                note.Nota = u"edited " + note.Titolo;
                EXPECT_TRUE(removal.desk.store.set(static_cast<int>(i) + 1, note, {NoteField::Nota}));
            }
            removal.expectNoneLost(named(total, number, at));
            if (!reached) break;
        }
    });
}

TEST_P(RemoveNote, AfterAnInterruptionTheNextDeletionLeavesNoGaps) {
    for (int at = 0; at < 40; ++at) {
        Removal removal(GetParam(), 4, 2);
        endedAt(removal, at);
        removal.desk.open(GetParam());
        removal.notes = removal.desk.loadAll();
        removal.number = 1;
        removal.remaining.assign(removal.notes.begin() + 1, removal.notes.end());
        EXPECT_TRUE(removal.run());
        // The interruption may have left a note half moved, whose rule is completed when it is saved.
        const std::vector<NoteRecord> found = removal.found();
        ASSERT_EQ(found.size(), removal.remaining.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_EQ(found[i].Titolo + found[i].Nota,
                      removal.remaining[i].Titolo + removal.remaining[i].Nota);
        }
        removal.expectDense(found);
    }
}

TEST_P(RemoveNote, ChangesNothingAndTellsTheUserWhenItCannotBeDoneAtAll) {
    Removal removal(GetParam(), 4, 2);
    const auto filesBefore = removal.desk.folder.content;
    removal.desk.changes->allFail = true;
    EXPECT_FALSE(removal.run());
    EXPECT_EQ(removal.desk.told, 1);
    EXPECT_EQ(removal.desk.folder.content, filesBefore);
    // The others go on under their new numbers, each in its old place.
    for (int number = 1; number <= 3; ++number) {
        NoteRecord loaded;
        EXPECT_TRUE(removal.desk.store.load(number, loaded, removal.desk.global));
        EXPECT_EQ(loaded, removal.remaining[static_cast<std::size_t>(number - 1)]);
    }
    removal.expectNoneLost("nothing could be changed");
}

TEST_P(RemoveNote, IsDoneLaterWhenItCouldNotBeDone) {
    Removal removal(GetParam(), 4, 2);
    removal.desk.changes->allFail = true;
    EXPECT_FALSE(removal.run());
    removal.desk.changes->allFail = false;
    removal.desk.store.settle(pointersTo(removal.remaining), removal.desk.global);
    EXPECT_EQ(removal.desk.told, 1);
    removal.expectDense();
}

TEST_P(RemoveNote, OfAllButOneOnAFullDiskKeepsThatOneInItsPlace) {
    Removal removal(GetParam(), 5, 4);
    removal.desk.changes->allFail = true;
    EXPECT_FALSE(removal.run());
    for (const int number : {1, 3, 1}) {
        removal.number = number;
        removal.remaining.erase(removal.remaining.begin() + (number - 1));
        EXPECT_FALSE(removal.run());
    }
    removal.desk.changes->allFail = false;
    NoteRecord& last = removal.remaining.at(0);
    EXPECT_EQ(last.Titolo, u"Title 3");
    last.Nota = u"edited meanwhile";
    EXPECT_TRUE(removal.desk.store.set(1, last, {NoteField::Nota}));
    // The store still has its five notes, with the edit in the right place.
    const std::vector<NoteRecord> found = removal.found();
    ASSERT_EQ(found.size(), 5U);
    EXPECT_EQ(found[2], storeFree(last));
    EXPECT_EQ(found[1], storeFree(removal.notes[1]));
}

TEST_P(RemoveNote, WhileUnfinishedGivesNoNewNoteAPlaceBeyondTheLast) {
    Desk desk(GetParam());
    std::vector<NoteRecord> notes = sampleNotes(kMaxNotes);
    desk.createAll(notes);
    desk.changes->allFail = true;
    notes.erase(notes.begin());
    EXPECT_FALSE(desk.store.remove(1, pointersTo(notes), desk.global));
    desk.changes->allFail = false;
    desk.told = 0;
    NoteRecord fresh;
    fresh.Titolo = u"fresh";
    notes.push_back(fresh);
    EXPECT_FALSE(desk.store.create(kMaxNotes, notes.back())) << "no start would find it there";
    EXPECT_FALSE(desk.store.set(kMaxNotes, notes.back(), {NoteField::Titolo}));
    EXPECT_EQ(desk.told, 2);
    desk.store.settle(pointersTo(notes), desk.global);
    EXPECT_TRUE(desk.store.set(kMaxNotes, notes.back(), everyField()));
    NoteRecord loaded;
    ASSERT_TRUE(desk.store.load(kMaxNotes, loaded, desk.global));
    EXPECT_EQ(loaded.Titolo, u"fresh");
}

// --- The registry ----------------------------------------------------------------------------------------

TEST(RemoveNoteFromRegistry, MovesANoteThatCouldNotBeReadAsItIs) {
    Removal removal(true, 3, 1);
    removal.desk.settings.put(u"kardel-2", u"later release", u"kept");
    removal.remaining[0] = NoteRecord();
    removal.remaining[0].readOnly = true;
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.desk.settings.text(u"kardel-1", u"Titolo"), u"Title 2");
    EXPECT_EQ(removal.desk.settings.text(u"kardel-1", u"later release"), u"kept");
    EXPECT_EQ(removal.desk.settings.text(u"kardel-2", u"Titolo"), u"Title 3");
}

TEST(RemoveNoteFromRegistry, StopsBeforeANoteThatStillCannotBeRead) {
    for (const std::size_t unread : {0U, 1U}) {
        Removal removal(true, 3, 1);
        removal.remaining[unread] = NoteRecord();
        removal.remaining[unread].readOnly = true;
        removal.desk.settings.locked.insert(unread == 0 ? u"kardel-2" : u"kardel-3");
        EXPECT_FALSE(removal.run());
        EXPECT_EQ(removal.desk.changes->made, 0);
        EXPECT_EQ(removal.desk.told, 1);
    }
}

TEST(RemoveNoteFromRegistry, DoesNotCareForANoteThatCannotBeReadAndStaysWhereItIs) {
    Removal removal(true, 3, 2);
    removal.remaining[0] = NoteRecord();
    removal.remaining[0].readOnly = true;
    removal.desk.settings.locked.insert(u"kardel-1");
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.desk.settings.text(u"kardel-1", u"Titolo"), u"Title 1");
    EXPECT_EQ(removal.desk.settings.text(u"kardel-2", u"Titolo"), u"Title 3");
}

TEST(RemoveNoteFromRegistry, RewritesTheSettingsFromMemoryAndLeavesOthers) {
    Removal removal(true, 2, 1);
    removal.desk.settings.put(u"setting", u"AlignAll", u"False");
    removal.desk.global.AlignAll = true;
    removal.desk.global.DefaultWidth = 3000;
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"count"), u"1");
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"AlignAll"), u"True");
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"defaultwidth"), u"3000");
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"UseRegistry"), u"True");
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"ImportDAT"), u"1");
}

TEST(RemoveNoteFromRegistry, LeavesNoEmptyNoteWhereTheCountCannotBeWritten) {
    Removal removal(true, 3, 1);
    removal.desk.settings.writeProtected.insert(u"setting");
    EXPECT_FALSE(removal.run());
    EXPECT_EQ(removal.desk.told, 1);
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"count"), u"3");
    removal.expectNoneLost("the count is the old one");
    for (const NoteRecord& note : removal.found())
        EXPECT_NE(note.Titolo, u"");
}

TEST(RemoveNoteFromRegistry, RemovesSectionsThatAreNoLongerNotes) {
    Removal removal(true, 3, 3);
    removal.desk.settings.put(u"kardel-17", u"Titolo", u"stale");
    EXPECT_TRUE(removal.run());
    removal.expectDense();
}

TEST(RemoveNoteFromRegistry, TakesTheLastSectionEvenIfTheSectionsCannotBeListed) {
    for (int number = 1; number <= 3; ++number) {
        Removal removal(true, 3, number);
        removal.desk.settings.namesFail = true;
        EXPECT_FALSE(removal.run()) << "others may be left over";
        EXPECT_EQ(removal.desk.settings.find(u"kardel-3"), nullptr);
        EXPECT_NE(removal.desk.settings.find(u"kardel-2"), nullptr);
    }
}

// --- The local files -------------------------------------------------------------------------------------

TEST(RemoveNoteFromFiles, CutsNoBodyOffBeforeTheRecordsAreOnTheDisk) {
    Removal removal(false, 3, 1);
    removal.desk.folder.mayFlush = [](TextView name) { return name != kNoteFile; };
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.desk.file(kMemoFile).size(), 3 * kMemoLength);
    removal.desk.folder.mayFlush = [](TextView) { return true; };
    removal.expectNoneLost("the bodies have moved");
}

TEST(RemoveNoteFromFiles, KeepsABodyThatAnotherNoteShares) {
    Removal removal(false, 4, 2);
    std::string record = removal.desk.file(kNoteFile).substr(3 * kRecordLength, kRecordLength);
    setMemoNumber(record, 2);  // the fourth note points to the second note's body
    removal.desk.file(kNoteFile).replace(3 * kRecordLength, kRecordLength, record);
    EXPECT_TRUE(removal.run());
    const std::vector<NoteRecord> left = removal.found();
    ASSERT_EQ(left.size(), 3U);
    EXPECT_EQ(left[0].Nota, u"Body 1\r\nsecond line");
    EXPECT_EQ(left[1].Nota, u"Body 3\r\nsecond line");
    EXPECT_EQ(left[2].Nota, u"Body 2\r\nsecond line");
    EXPECT_EQ(removal.desk.file(kMemoFile).size(), 3 * kMemoLength);
}

TEST(RemoveNoteFromFiles, ErasesTheDeletedText) {
    for (int number = 1; number <= 3; ++number) {
        Removal removal(false, 3, number);
        EXPECT_TRUE(removal.run());
        const std::string gone = "Body " + std::to_string(number);
        EXPECT_EQ(removal.desk.file(kMemoFile).find(gone), std::string::npos);
    }
}

TEST(RemoveNoteFromFiles, DropsBodiesThatNoNotePointsTo) {
    Removal removal(false, 3, 1);
    EXPECT_TRUE(removal.desk.dataFiles().WriteMemo(0, u"orphan").done);
    EXPECT_TRUE(removal.desk.dataFiles().WriteMemo(0, u"orphan").done);
    EXPECT_TRUE(removal.run());
    removal.expectDense();
}

TEST(RemoveNoteFromFiles, KeepsWhatIsLeftOfABodyThatWasCutShort) {
    for (const std::size_t left : {1U, 300U, 1023U}) {
        Removal removal(false, 3, 1);
        removal.desk.file(kMemoFile).replace(2 * kMemoLength, kMemoLength, std::string(left, 'x'));
        EXPECT_TRUE(removal.run());
        EXPECT_EQ(removal.found().at(1).Nota, Text(left, u'x'));
    }
}

TEST(RemoveNoteFromFiles, MakesNoRoomForABodyOfAWildNumber) {
    for (const std::int32_t wild : {2000000000, 4, 0, -1}) {
        Removal removal(false, 3, 1);
        std::string record = removal.desk.file(kNoteFile).substr(kRecordLength, kRecordLength);
        setMemoNumber(record, wild);
        removal.desk.file(kNoteFile).replace(kRecordLength, kRecordLength, record);
        EXPECT_TRUE(removal.run());
        EXPECT_EQ(removal.desk.file(kMemoFile).size(), kMemoLength) << wild;
        const std::vector<NoteRecord> left = removal.found();
        ASSERT_EQ(left.size(), 2U);
        EXPECT_EQ(left[1].Nota, u"Body 3\r\nsecond line");
    }
}

TEST(RemoveNoteFromFiles, OfTheLastBodyLeavesNone) {
    Removal removal(false, 2, 1);
    std::string record = removal.desk.file(kNoteFile).substr(kRecordLength, kRecordLength);
    setMemoNumber(record, 7);  // the other one's was lost
    removal.desk.file(kNoteFile).replace(kRecordLength, kRecordLength, record);
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.desk.file(kMemoFile), "");
    EXPECT_EQ(removal.found().at(0).Titolo, u"Title 2");
}

TEST(RemoveNoteFromFiles, WhereTheRecordsWereLostWritesTheOthersFromMemory) {
    for (const std::size_t left : {std::size_t{0}, kRecordLength - 1, 2 * kRecordLength + 5}) {
        for (const bool memoToo : {false, true}) {
            Removal removal(false, 4, 2);
            std::string& records = removal.desk.file(kNoteFile);
            records.resize(left);
            if (left == 0) removal.desk.folder.content.erase(Text(kNoteFile));
            if (memoToo) removal.desk.folder.content.erase(Text(kMemoFile));
            EXPECT_TRUE(removal.run());
            const std::vector<NoteRecord> found = removal.found();
            ASSERT_EQ(found.size(), 3U) << left;
            for (std::size_t i = 0; i < found.size(); ++i) {
                NoteRecord wanted = storeFree(removal.remaining[i]);
                // A record that is still whole points to the body that was lost with MEMO.
                if (memoToo && (i + 2) * kRecordLength <= left && i == 0) wanted.Nota.clear();
                EXPECT_EQ(found[i], wanted) << left << memoToo;
            }
        }
    }
}

TEST(RemoveNoteFromFiles, GivesABodyFromMemoryNoPlaceThatAnotherNotePointsTo) {
    for (const int lost : {2, 3}) {
        Removal removal(false, 3, 1);
        const int other = 5 - lost;
        removal.desk.file(kNoteFile).replace((static_cast<std::size_t>(lost) - 1) * kRecordLength,
                                             kRecordLength, kRecordLength, '\0');
        removal.desk.file(kMemoFile).resize((static_cast<std::size_t>(other) - 1) * kMemoLength);
        EXPECT_TRUE(removal.run());
        const std::vector<NoteRecord> left = removal.found();
        ASSERT_EQ(left.size(), 2U);
        EXPECT_EQ(left[static_cast<std::size_t>(lost) - 2].Nota,
                  u"Body " + decimal(lost) + u"\r\nsecond line");
        EXPECT_EQ(left[static_cast<std::size_t>(other) - 2].Nota, u"") << "it was lost with the end of MEMO";
    }
}

TEST(RemoveNoteFromFiles, KeepsANoteThatCouldNotBeRead) {
    Removal removal(false, 3, 1);
    removal.remaining[0] = NoteRecord();
    removal.remaining[0].readOnly = true;
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.found().at(0).Titolo, u"Title 2");
}

}  // namespace
