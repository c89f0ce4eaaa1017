// Deleting a note, interrupted and disturbed at every point.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/storage/Samples.h"

namespace {

constexpr int kMostNotes = 6;

/// A desk of notes, one of which is to be removed.
struct Removal {
    Desk desk;
    bool inRegistry;
    int number;
    std::vector<NoteRecord> notes;      ///< as loaded
    std::vector<NoteRecord> remaining;  ///< without the one that is removed

    Removal(bool registry, int total, int which) : desk(registry), inRegistry(registry), number(which) {
        std::vector<NoteRecord> made = sampleNotes(total);
        desk.createAll(made);
        desk.settings.put(u"setting", u"ImportDAT", u"1");
        desk.open(registry);
        notes = desk.loadAll();
        remaining = notes;
        remaining.erase(remaining.begin() + (which - 1));
    }

    bool run() {
        const std::vector<NoteRecord*> pointers = pointersTo(remaining);
        return desk.store.remove(number, pointers, desk.global);
    }

    /// What the next start finds.
    std::vector<NoteRecord> found() {
        desk.open(inRegistry);
        std::vector<NoteRecord> loaded = desk.loadAll();
        for (NoteRecord& note : loaded)
            note = storeFree(note);
        return loaded;
    }

    void expectDense() {
        std::vector<NoteRecord> expected;
        for (const NoteRecord& note : remaining)
            expected.push_back(storeFree(note));
        expectDense(expected);
    }

    void expectDense(const std::vector<NoteRecord>& expected) {
        if (remaining.empty()) {
            EXPECT_FALSE(desk.hasFile(kNoteFile));
            EXPECT_FALSE(desk.hasFile(kMemoFile));
            EXPECT_EQ(desk.settings.find(u"kardel-1"), nullptr);
            return;
        }
        EXPECT_EQ(found(), expected);
        EXPECT_EQ(desk.count(), static_cast<int>(remaining.size()));
        if (inRegistry) {
            EXPECT_EQ(desk.settings.content.size(), remaining.size() + 1);  // and "setting"
            EXPECT_EQ(desk.settings.find(u"setting", u"places"), nullptr);
        } else {
            EXPECT_EQ(desk.file(kNoteFile).size(), remaining.size() * kRecordLength);
            EXPECT_EQ(desk.file(kMemoFile).size(), remaining.size() * kMemoLength);
        }
    }

    void expectNoneLost(const std::string& where) {
        const std::vector<NoteRecord> loaded = found();
        for (const NoteRecord& note : remaining) {
            NoteRecord wanted = storeFree(note);
            wanted.readOnly = false;
            EXPECT_NE(std::find(loaded.begin(), loaded.end(), wanted), loaded.end())
                << where << ": lost the note with x " << note.x;
        }
        EXPECT_LE(loaded.size(), remaining.size() + 1) << where;
    }
};

/// Runs the removal and ends the program at that change. False when it was finished before.
bool endedAt(Removal& removal, int at) {
    removal.desk.changes->endAt = at;
    try {
        removal.run();
    } catch (const ProgramEnd&) {
        return true;
    }
    return false;
}

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
INSTANTIATE_TEST_SUITE_P(Stores, RemoveNote, testing::Values(true, false),
                         [](const auto& store) { return store.param ? "Registry" : "Files"; });

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
    Removal removal(true, 3, 1);
    removal.remaining[1] = NoteRecord();
    removal.remaining[1].readOnly = true;
    removal.desk.settings.locked.insert(u"kardel-3");
    EXPECT_FALSE(removal.run());
    EXPECT_EQ(removal.desk.changes->made, 0);
    EXPECT_EQ(removal.desk.told, 1);
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

// --- What a removal in the registry that was ended half-way leaves to the next start ----------------------

/// Starts over the registry and returns the notes as loaded.
std::vector<NoteRecord> startOver(Desk& desk) {
    desk.open(true);
    return desk.loadAll();
}

/// Calls `act` with every desk that a removal leaves when it is killed at some change, until `act` returns
/// false.
void forEveryEnd(int total, int number, const std::function<void(Removal&)>& act) {
    for (int at = 0;; ++at) {
        SCOPED_TRACE("ended at change " + std::to_string(at));
        Removal removal(true, total, number);
        if (!endedAt(removal, at)) return;
        act(removal);
    }
}

TEST(ResumedRemoval, IsDoneByTheNextStart) {
    for (int total = 2; total <= kMostNotes; ++total) {
        for (int number = 1; number <= total; ++number) {
            int resumed = 0;
            forEveryEnd(total, number, [&](Removal& removal) {
                std::vector<NoteRecord> notes = startOver(removal.desk);
                if (notes.size() == static_cast<std::size_t>(total)) return;
                EXPECT_EQ(notes, removal.remaining);
                if (removal.desk.settings.text(u"setting", u"places") == u"(none)") return;
                removal.desk.store.settle(pointersTo(notes), removal.desk.global);
                removal.expectDense();
                ++resumed;
            });
            EXPECT_GE(resumed, 20 * (total - number)) << number << " of " << total;
        }
    }
}

TEST(ResumedRemoval, IsDoneByTheStartAfterThatIfItIsKilledAgain) {
    forEveryEnd(4, 1, [&](Removal& removal) {
        const auto left = removal.desk.settings.content;
        for (int at = 0;; ++at) {
            removal.desk.settings.content = left;
            std::vector<NoteRecord> notes = startOver(removal.desk);
            if (notes.size() != removal.remaining.size()) return;
            removal.desk.changes->endAt = at;
            try {
                removal.desk.store.settle(pointersTo(notes), removal.desk.global);
            } catch (const ProgramEnd&) {
                EXPECT_EQ(startOver(removal.desk), removal.remaining) << "and then at " << at;
                continue;
            }
            break;
        }
    });
}

TEST(ResumedRemoval, KeepsEveryNoteAndItsChangesWhenRefused) {
    forEveryEnd(4, 1, [&](Removal& removal) {
        const auto left = removal.desk.settings.content;
        for (int at = 0;; ++at) {
            removal.desk.settings.content = left;
            std::vector<NoteRecord> notes = startOver(removal.desk);
            if (notes.size() != removal.remaining.size()) return;
            removal.desk.changes->failAt = at;
            removal.desk.store.settle(pointersTo(notes), removal.desk.global);
            const bool reached = removal.desk.changes->made > at;
            removal.desk.changes->failAt = -1;
            for (std::size_t i = 0; i < notes.size(); ++i) {
                notes[i].Nota = u"edited " + notes[i].Titolo;
                EXPECT_TRUE(removal.desk.store.set(static_cast<int>(i) + 1, notes[i], {NoteField::Nota}));
            }
            EXPECT_EQ(startOver(removal.desk), notes) << "refused at " << at;
            if (!reached) break;
        }
    });
}

TEST(ResumedRemoval, KeepsACompleteNoteAddedMeanwhile) {
    Removal removal(true, 4, 1);
    removal.desk.changes->failAt = 30;  // while the second of three notes is being moved
    EXPECT_FALSE(removal.run());
    removal.desk.changes->failAt = -1;
    const NoteRecord fresh = sampleNotes(9).back();
    removal.remaining.push_back(fresh);
    EXPECT_TRUE(removal.desk.store.create(4, removal.remaining.back()));
    removal.expectNoneLost("ended after the new note");
    std::vector<NoteRecord> notes = startOver(removal.desk);
    EXPECT_EQ(notes.back(), fresh);
}

TEST(ResumedRemoval, LeavesNotesThatCannotBeReadWhereTheyAre) {
    Removal removal(true, 4, 1);
    ASSERT_TRUE(endedAt(removal, 30));
    removal.desk.settings.locked = {u"kardel-3", u"kardel-4"};
    std::vector<NoteRecord> notes = startOver(removal.desk);
    ASSERT_EQ(notes.size(), 3U);
    removal.desk.store.settle(pointersTo(notes), removal.desk.global);
    removal.desk.settings.locked.clear();
    EXPECT_EQ(startOver(removal.desk), removal.remaining);
}

TEST(ResumedRemoval, IsNotSeenInTwoIdenticalNotesOfTheUser) {
    Desk desk(true);
    std::vector<NoteRecord> notes(2, sampleNotes(1).front());
    desk.createAll(notes);
    std::vector<NoteRecord> found = startOver(desk);
    desk.store.settle(pointersTo(found), desk.global);
    EXPECT_EQ(found.size(), 2U);
    EXPECT_EQ(desk.changes->made, 0);
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

TEST(RemoveNoteFromFiles, KeepsANoteThatCouldNotBeRead) {
    Removal removal(false, 3, 1);
    removal.remaining[0] = NoteRecord();
    removal.remaining[0].readOnly = true;
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.found().at(0).Titolo, u"Title 2");
}

}  // namespace
