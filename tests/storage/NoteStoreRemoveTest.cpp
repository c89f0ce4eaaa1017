// Deleting a note, interrupted and disturbed at every point.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/storage/Samples.h"

namespace {

constexpr int kMostNotes = 6;

/// A desk of notes from which one is to go.
struct Removal {
    Desk desk;
    bool inRegistry;
    int number;
    std::vector<NoteRecord> notes;      ///< as loaded
    std::vector<NoteRecord> remaining;  ///< without the one that goes

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

TEST_P(RemoveNote, EndedAtAnyPointLosesNoOtherNote) {
    forEveryNote([&](int total, int number) {
        for (int at = 0;; ++at) {
            Removal removal(GetParam(), total, number);
            removal.desk.changes->endAt = at;
            bool ended = false;
            try {
                removal.run();
            } catch (const ProgramEnd&) {
                ended = true;
            }
            removal.expectNoneLost(named(total, number, at));
            if (!ended) break;
        }
    });
}

TEST_P(RemoveNote, WithOneFailedChangeLosesNoOtherNoteEvenWhenTheyAreEditedAfterwards) {
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
                removal.desk.store.set(static_cast<int>(i) + 1, note, {NoteField::Nota});
            }
            removal.expectNoneLost(named(total, number, at));
            if (!reached) break;
        }
    });
}

TEST_P(RemoveNote, AfterAnInterruptionTheNextDeletionLeavesADenseStore) {
    for (int at = 0; at < 40; ++at) {
        Removal removal(GetParam(), 4, 2);
        removal.desk.changes->endAt = at;
        try {
            removal.run();
        } catch (const ProgramEnd&) {
        }
        removal.desk.open(GetParam());
        removal.notes = removal.desk.loadAll();
        removal.number = 1;
        removal.remaining.assign(removal.notes.begin() + 1, removal.notes.end());
        EXPECT_TRUE(removal.run());
        // The interruption may have left a note half moved; its rule is completed when it is saved.
        const std::vector<NoteRecord> found = removal.found();
        ASSERT_EQ(found.size(), removal.remaining.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_EQ(found[i].Titolo + found[i].Nota,
                      removal.remaining[i].Titolo + removal.remaining[i].Nota);
        }
        removal.expectDense(found);
    }
}

TEST_P(RemoveNote, ThatCannotBeDoneAtAllIsToldAndChangesNothing) {
    Removal removal(GetParam(), 4, 2);
    const auto filesBefore = removal.desk.folder.content;
    removal.desk.changes->allFail = true;
    EXPECT_FALSE(removal.run());
    EXPECT_EQ(removal.desk.told, 1);
    EXPECT_EQ(removal.desk.folder.content, filesBefore);
    // The others go on under their new numbers, each where it stands.
    for (int number = 1; number <= 3; ++number) {
        NoteRecord loaded;
        EXPECT_TRUE(removal.desk.store.load(number, loaded, removal.desk.global));
        EXPECT_EQ(loaded, removal.remaining[static_cast<std::size_t>(number - 1)]);
    }
    removal.expectNoneLost("nothing could be changed");
}

TEST_P(RemoveNote, ThatCouldNotBeDoneIsDoneLater) {
    Removal removal(GetParam(), 4, 2);
    removal.desk.changes->allFail = true;
    EXPECT_FALSE(removal.run());
    removal.desk.changes->allFail = false;
    removal.desk.store.finishRemovals(pointersTo(removal.remaining), removal.desk.global);
    EXPECT_EQ(removal.desk.told, 1);
    removal.expectDense();
}

TEST_P(RemoveNote, OfAllButOneUnderAFullDiskKeepsTheOneInItsPlace) {
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
    // The store is the one of five notes still, the edit in its right place.
    const std::vector<NoteRecord> found = removal.found();
    ASSERT_EQ(found.size(), 5U);
    EXPECT_EQ(found[2], storeFree(last));
    EXPECT_EQ(found[1], storeFree(removal.notes[1]));
}

TEST_P(RemoveNote, ThatCouldNotBeDoneKeepsTheLastPlaceFromANewNote) {
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
    EXPECT_FALSE(desk.store.create(kMaxNotes, notes.back())) << "no start would find it";
    EXPECT_FALSE(desk.store.set(kMaxNotes, notes.back(), {NoteField::Titolo}));
    EXPECT_EQ(desk.told, 2);
    desk.store.finishRemovals(pointersTo(notes), desk.global);
    EXPECT_TRUE(desk.store.save(kMaxNotes, notes.back()));
    NoteRecord loaded;
    ASSERT_TRUE(desk.store.load(kMaxNotes, loaded, desk.global));
    EXPECT_EQ(loaded.Titolo, u"fresh");
}

TEST(RemoveNoteFromRegistry, MovesANoteThatCouldNotBeReadUnseen) {
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
    Settings& settings = removal.desk.store.registry.settings;
    const auto inner = settings.set;
    settings.set = [inner](TextView section, std::span<const KeyText> values) {
        return section != u"setting" && inner(section, values);
    };
    EXPECT_FALSE(removal.run());
    EXPECT_EQ(removal.desk.told, 1);
    EXPECT_EQ(removal.desk.settings.text(u"setting", u"count"), u"3");
    removal.expectNoneLost("the count is the old one");
    for (const NoteRecord& note : removal.found())
        EXPECT_NE(note.Titolo, u"");
}

TEST(RemoveNoteFromRegistry, ClearsSectionsThatAreNoNotesAnyMore) {
    Removal removal(true, 3, 3);
    removal.desk.settings.put(u"kardel-17", u"Titolo", u"stale");
    EXPECT_TRUE(removal.run());
    removal.expectDense();
}

// --- What a removal that was ended half-way leaves twice -------------------------------------------------

/// The notes as a start loads them, without the one that stands there twice.
std::vector<NoteRecord> startOver(Desk& desk) {
    desk.open(true);
    std::vector<NoteRecord> notes = desk.loadAll();
    desk.store.dropDouble(notes, desk.global);
    return notes;
}

TEST(DoubledNote, IsDroppedByTheNextStartWhereverTheRemovalEnded) {
    for (int total = 2; total <= kMostNotes; ++total) {
        for (int number = 1; number <= total; ++number) {
            int doubles = 0;
            for (int at = 0;; ++at) {
                Removal removal(true, total, number);
                removal.desk.changes->endAt = at;
                bool ended = false;
                try {
                    removal.run();
                } catch (const ProgramEnd&) {
                    ended = true;
                }
                if (!ended) break;
                const std::size_t before = removal.found().size();
                const std::vector<NoteRecord> after = startOver(removal.desk);
                if (after.size() == before) continue;
                ++doubles;
                EXPECT_EQ(after, removal.remaining);
                removal.expectDense();
            }
            // Between two notes that move, and after the last of them until the count is written.
            EXPECT_GE(doubles, total - number) << number << " of " << total;
        }
    }
}

TEST(DoubledNote, IsDroppedOnceMoreWhenTheDropWasEndedToo) {
    Removal removal(true, 5, 1);
    removal.desk.settings.content.erase(removal.desk.settings.content.begin());  // "kardel-1"
    removal.desk.open(true);
    NoteRecord copy = removal.notes[1];
    removal.desk.store.registry.SaveNoteToRegistry(1, copy);
    for (int at = 0; at < 200; ++at) {
        removal.desk.open(true);
        std::vector<NoteRecord> notes = removal.desk.loadAll();
        removal.desk.changes->endAt = at;
        try {
            removal.desk.store.dropDouble(notes, removal.desk.global);
        } catch (const ProgramEnd&) {
            removal.expectNoneLost("drop ended at " + std::to_string(at));
            continue;
        }
        break;
    }
    EXPECT_LE(startOver(removal.desk).size(), removal.remaining.size() + 1);
    removal.expectNoneLost("in the end");
}

TEST(DoubledNote, OfAWeeklyRuleIsSeenThoughItsOldKindIsLost) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(2);
    notes[0].alarmweekday = 3;
    notes[0].alarmdate = kPatternDate;
    notes[0].interval.clear();
    notes[1] = notes[0];
    desk.createAll(notes);
    desk.settings.put(u"kardel-2", u"interval", u"eachday");
    EXPECT_EQ(startOver(desk).size(), 1U);
}

TEST(DoubledNote, OfTheUserIsKept) {
    const auto kept = [](std::vector<NoteRecord> notes) {
        Desk desk(true);
        desk.createAll(notes);
        const auto before = desk.settings.content.size();
        const std::size_t left = startOver(desk).size();
        EXPECT_EQ(desk.settings.content.size(), before);
        EXPECT_EQ(desk.changes->made, 0);
        return left;
    };
    const NoteRecord note = sampleNotes(1).front();
    NoteRecord elsewhere = note;
    elsewhere.x += 15;
    EXPECT_EQ(kept({note, elsewhere}), 2U) << "alike, but not on the same spot";
    EXPECT_EQ(kept({note, note, note}), 3U) << "an interruption leaves two";
    EXPECT_EQ(kept({note, note, elsewhere, elsewhere}), 4U) << "and only one note twice";
    EXPECT_EQ(kept({note, elsewhere, note}), 3U) << "side by side";
}

TEST(DoubledNote, IsNoneWhereNothingIsStoredOrNothingCouldBeRead) {
    Desk missing(true);
    missing.settings.put(u"setting", u"count", u"2");
    EXPECT_EQ(startOver(missing).size(), 2U);

    Desk locked(true);
    std::vector<NoteRecord> notes = sampleNotes(2);
    locked.createAll(notes);
    locked.settings.locked = {u"kardel-1", u"kardel-2"};
    EXPECT_EQ(startOver(locked).size(), 2U);

    Desk files(false);
    std::vector<NoteRecord> same(2, sampleNotes(1).front());
    files.createAll(same);
    files.store.dropDouble(same, files.global);
    EXPECT_EQ(same.size(), 2U) << "the files replace all records in one step";
}

TEST(DoubledNote, ThatCannotBeDroppedLeavesTheNotesWhereTheyAre) {
    Desk desk(true);
    std::vector<NoteRecord> notes = sampleNotes(4);
    notes[1] = notes[0];
    desk.createAll(notes);
    desk.open(true);
    std::vector<NoteRecord> loaded = desk.loadAll();
    desk.changes->allFail = true;
    desk.store.dropDouble(loaded, desk.global);
    desk.changes->allFail = false;
    ASSERT_EQ(loaded.size(), 3U);
    EXPECT_EQ(desk.told, 1);
    loaded[1].Nota = u"edited";
    EXPECT_TRUE(desk.store.set(2, loaded[1], {NoteField::Nota}));
    EXPECT_EQ(desk.settings.text(u"kardel-3", u"Nota"), u"edited");
}

TEST(RemoveNoteFromFiles, KeepsABodyThatAnotherNoteShares) {
    Removal removal(false, 4, 2);
    std::string record = removal.desk.file(kNoteFile).substr(3 * kRecordLength, kRecordLength);
    setMemoNumber(record, 2);  // the fourth note borrows the second's body
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

TEST(RemoveNoteFromFiles, DropsBodiesThatNobodyPointsTo) {
    Removal removal(false, 3, 1);
    removal.desk.store.files.WriteMemo(0, u"orphan");
    removal.desk.store.files.WriteMemo(0, u"orphan");
    EXPECT_TRUE(removal.run());
    removal.expectDense();
}

TEST(RemoveNoteFromFiles, CarriesANoteThatCouldNotBeReadAlong) {
    Removal removal(false, 3, 1);
    removal.remaining[0] = NoteRecord();
    removal.remaining[0].readOnly = true;
    EXPECT_TRUE(removal.run());
    EXPECT_EQ(removal.found().at(0).Titolo, u"Title 2");
}

}  // namespace
