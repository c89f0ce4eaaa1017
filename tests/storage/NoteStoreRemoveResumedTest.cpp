// What a removal in the registry that was ended half-way leaves to the next start.
#include <gtest/gtest.h>

#include <functional>

#include "tests/storage/Removal.h"

namespace {

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

}  // namespace
