// Every operation, ended and disturbed at every single change of a store: what the next start finds.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/core/EveryPoint.h"

namespace {

class EveryChange : public testing::TestWithParam<bool> {
protected:
    static StoreKind own() { return GetParam() ? StoreKind::Registry : StoreKind::Files; }
    static StoreKind other() { return GetParam() ? StoreKind::Files : StoreKind::Registry; }
    static std::vector<NoteRecord> notes() { return sampleNotes(4); }

    /// Ends the program ahead of every change of `run`, and checks what the next start finds.
    static void endedAnywhere(const std::function<void(Stores&)>& seed,
                              const std::function<void(Program&)>& run,
                              const std::function<void(const std::vector<NoteRecord>&)>& check) {
        Stores stores;
        seed(stores);
        std::vector<Image> points;
        {
            Program program(stores);
            points = everyPoint(stores, [&] { run(program); });
        }
        for (std::size_t at = 0; at < points.size(); ++at) {
            for (const bool deleteLeftOver : {false, true}) {
                SCOPED_TRACE("ended ahead of change " + std::to_string(at) +
                             (deleteLeftOver ? ", left-over files go" : ""));
                check(foundIn(points[at], deleteLeftOver));
            }
            ++tally.killed;
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, EveryChange, testing::Bool(),
                         [](const auto& store) { return store.param ? "Registry" : "Files"; });

using Fields = std::vector<NoteField>;

/// What one action of the user stores in one go.
std::vector<Fields> storedTogether() {
    std::vector<Fields> sets;
    for (const NoteFieldRow& row : noteFields())
        sets.push_back({row.field});
    sets.push_back({NoteField::X, NoteField::Y});
    sets.push_back({NoteField::Width, NoteField::Height});
    sets.push_back({NoteField::AlarmDate, NoteField::AlarmTime});
    sets.push_back({NoteField::AlarmDate, NoteField::Interval, NoteField::AlarmDay, NoteField::AlarmDayMonth,
                    NoteField::AlarmTime, NoteField::AlarmWeekday, NoteField::AlarmRepeatNumber,
                    NoteField::AlarmRepeatEvery, NoteField::Mute, NoteField::Weekday0, NoteField::Weekday1});
    Fields all;
    for (const NoteFieldRow& row : noteFields())
        all.push_back(row.field);
    sets.push_back(all);
    return sets;
}

/// Note 1 with every field other than it was.
NoteRecord changed(NoteRecord note) {
    const NoteRecord other = sampleNotes(2)[note.alarmdate == kPatternDate ? 0 : 1];
    const NoteRecord old = note;
    note = other;
    note.memo = old.memo;
    note.Titolo = u"changed title";
    note.Nota = u"changed body";
    note.x = -77;
    note.closed = !old.closed;
    note.iconized = !old.iconized;
    note.mute = !old.mute;
    note.alarmtime = u"01:02:03";
    note.alarmweekday = 3;
    note.alarmrepeatnumber = 5;
    note.alarmrepeatevery = u"hh";
    return note;
}

TEST_P(EveryChange, AnEditIsDoneWholeOrNotAtAllAndTouchesNothingElse) {
    for (const Fields& fields : storedTogether()) {
        for (const std::size_t at : {0U, 1U, 3U}) {
            std::vector<NoteRecord> before;
            NoteRecord onScreen;
            std::vector<std::vector<NoteRecord>> finds;
            endedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                          [&](Program& program) {
                              before = storeFree(program.notes);
                              program.notes[at] = changed(program.notes[at]);
                              onScreen = program.notes[at];
                              EXPECT_TRUE(program.set(static_cast<int>(at) + 1, fields));
                          },
                          [&](const std::vector<NoteRecord>& found) { finds.push_back(found); });
            std::vector<NoteRecord> after = before;
            after[at] = finds.back()[at];
            for (const NoteField field : fields)
                EXPECT_EQ(rowOf(field).write(after[at]), rowOf(field).write(onScreen));
            for (const std::vector<NoteRecord>& found : finds) {
                if (found == before || found == after) continue;
                ++tally.lost;
                ADD_FAILURE() << testing::PrintToString(found[at]);
            }
        }
    }
}

NoteRecord freshNote() {
    NoteRecord note;
    note.Titolo = u"- 5 -";
    note.Nota = u"new body";
    note.backcolor = kDesignColor;
    note.width = kDefaultWidth;
    note.height = kDefaultHeight;
    return note;
}

TEST_P(EveryChange, ANewNoteIsThereWholeOrNotAtAll) {
    endedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                  [&](Program& program) { EXPECT_TRUE(program.create(freshNote())); },
                  [&](const std::vector<NoteRecord>& found) {
                      std::vector<NoteRecord> wanted = storeFree(notes());
                      if (found.size() > wanted.size()) wanted.push_back(freshNote());
                      EXPECT_EQ(found, wanted);
                  });
}

TEST_P(EveryChange, ADeletionIsDoneWholeOrNotAtAll) {
    for (int number = 1; number <= 4; ++number) {
        std::vector<NoteRecord> before;
        std::vector<NoteRecord> after;
        endedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                      [&](Program& program) {
                          before = storeFree(program.notes);
                          EXPECT_TRUE(program.remove(number));
                          after = storeFree(program.notes);
                      },
                      [&](const std::vector<NoteRecord>& found) {
                          if (found == before || found == after) return;
                          ++tally.lost;
                          ADD_FAILURE() << testing::PrintToString(found);
                      });
    }
}

TEST_P(EveryChange, SwitchingTheStoreKeepsEveryNote) {
    for (const bool importedBefore : {false, true}) {
        for (const int count : {1, 4}) {
            const std::vector<NoteRecord> all = sampleNotes(count);
            endedAnywhere(
                [&](Stores& stores) {
                    stores.seed(GetParam(), all);
                    if (importedBefore) stores.registry.put(u"setting", u"ImportDAT", u"1");
                },
                [&](Program& program) { program.switchTo(other()); },
                [&](const std::vector<NoteRecord>& found) { EXPECT_EQ(found, storeFree(all)); });
        }
    }
}

TEST_P(EveryChange, SwitchingBackInTheSameRunKeepsEveryNote) {
    for (const int count : {1, 4}) {
        const std::vector<NoteRecord> all = sampleNotes(count);
        endedAnywhere(
            [&](Stores& stores) {
                stores.seed(GetParam(), all);
                stores.registry.put(u"setting", u"ImportDAT", u"1");
            },
            [&](Program& program) {
                program.switchTo(other());
                program.switchTo(own());
            },
            [&](const std::vector<NoteRecord>& found) { EXPECT_EQ(found, storeFree(all)); });
    }
}

TEST_P(EveryChange, SwitchingAgainAfterADeletionPutsNoBodyUnderAnotherTitle) {
    std::vector<NoteRecord> left = sampleNotes(4);
    left.erase(left.begin());
    std::vector<Image> points;
    Stores stores;
    stores.seed(GetParam(), notes());
    Program program(stores);
    program.switchTo(other());
    program.switchTo(own());
    program.remove(1);
    points = everyPoint(stores, [&] { program.switchTo(other()); });
    for (std::size_t at = 0; at < points.size(); ++at) {
        for (const bool deleteLeftOver : {false, true}) {
            SCOPED_TRACE("ended ahead of change " + std::to_string(at) +
                         (deleteLeftOver ? ", left-over files go" : ""));
            const std::vector<NoteRecord> found = foundIn(points[at], deleteLeftOver);
            // The user may go back to the files as the first switch left them, as long as they are whole.
            const bool asSwitchedFirst = !deleteLeftOver && found == storeFree(notes());
            EXPECT_TRUE(asSwitchedFirst || found == storeFree(left)) << testing::PrintToString(found);
        }
        ++tally.killed;
    }
}

TEST_P(EveryChange, WhatIsDoneBetweenTheSwitchAndTheRestartIsSafeToo) {
    std::vector<NoteRecord> before;
    std::vector<NoteRecord> after;
    endedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                  [&](Program& program) {
                      program.switchTo(other());
                      before = storeFree(program.notes);
                      program.notes[1].Nota = u"edited after the switch";
                      const Fields body{NoteField::Nota};
                      EXPECT_TRUE(program.set(2, body));
                      EXPECT_TRUE(program.create(freshNote()));
                      after = storeFree(program.notes);
                  },
                  [&](const std::vector<NoteRecord>& found) {
                      ASSERT_GE(found.size(), 4U);
                      ASSERT_LE(found.size(), 5U);
                      for (std::size_t i = 0; i < found.size(); ++i) {
                          const bool old = i < before.size() && found[i] == before[i];
                          EXPECT_TRUE(found[i] == after[i] || old) << testing::PrintToString(found[i]);
                      }
                  });
}

// --- Refused changes --------------------------------------------------------------------------------------

/// Lets each change of `run` fail once in a program of its own; `check` gets the program afterwards, and
/// whether the user was told.
void failedAnywhere(const std::function<void(Stores&)>& seed, const std::function<bool(Program&)>& run,
                    const std::function<void(Program&, bool done)>& check) {
    for (int at = 0;; ++at) {
        SCOPED_TRACE("change " + std::to_string(at) + " failed");
        Stores stores;
        seed(stores);
        Program program(stores);
        stores.changes->failAt = stores.changes->made + at;
        const bool done = run(program);
        const bool reached = stores.changes->made > stores.changes->failAt;
        stores.changes->failAt = -1;
        EXPECT_EQ(program.told, done ? 0 : 1);
        check(program, done);
        if (!reached) break;
        ++tally.failed;
    }
}

/// Every note on screen is found once, beside at most `more` others.
void expectOnScreen(Program& program, std::size_t more) {
    std::vector<NoteRecord> found = foundIn(program.stores.image());
    for (const NoteRecord& note : storeFree(program.notes)) {
        const auto at = std::find(found.begin(), found.end(), note);
        if (at != found.end()) {
            found.erase(at);
            continue;
        }
        ++tally.lost;
        ADD_FAILURE() << "lost: " << testing::PrintToString(note);
    }
    EXPECT_LE(found.size(), more) << testing::PrintToString(found);
}

TEST_P(EveryChange, AnEditThatWasRefusedOnceIsStoredByTheNextSave) {
    for (const Fields& fields : storedTogether()) {
        failedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                       [&](Program& program) {
                           program.notes[1] = changed(program.notes[1]);
                           return program.set(2, fields);
                       },
                       [&](Program& program, bool) {
                           EXPECT_TRUE(program.set(2, fields));
                           std::vector<NoteRecord> found = foundIn(program.stores.image());
                           ASSERT_EQ(found.size(), 4U);
                           for (const NoteField field : fields) {
                               EXPECT_EQ(rowOf(field).write(found[1]), rowOf(field).write(program.notes[1]));
                           }
                           found.erase(found.begin() + 1);
                           std::vector<NoteRecord> others = storeFree(notes());
                           others.erase(others.begin() + 1);
                           EXPECT_EQ(found, others);
                       });
    }
}

TEST_P(EveryChange, ANewNoteThatWasRefusedOnceIsStoredByTheNextSave) {
    Fields all;
    for (const NoteFieldRow& row : noteFields())
        all.push_back(row.field);
    failedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                   [&](Program& program) { return program.create(freshNote()); },
                   [&](Program& program, bool) {
                       EXPECT_TRUE(program.set(5, all));
                       EXPECT_EQ(foundIn(program.stores.image()), storeFree(program.notes));
                   });
}

TEST_P(EveryChange, ADeletionThatWasRefusedHarmsNothingThatIsDoneAfterwards) {
    const Fields body{NoteField::Nota};
    for (int number = 1; number <= 4; ++number) {
        failedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                       [&](Program& program) { return program.remove(number); },
                       [&](Program& program, bool) {
                           expectOnScreen(program, 1);
                           program.notes[2].Nota = u"edited after the deletion";
                           EXPECT_TRUE(program.set(3, body));
                           EXPECT_TRUE(program.create(freshNote()));
                           EXPECT_TRUE(program.store.storeCount(4));
                           expectOnScreen(program, 1);
                           program.store.settle(pointersTo(program.notes), program.settings);
                           EXPECT_EQ(foundIn(program.stores.image()), storeFree(program.notes));
                       });
    }
}

TEST_P(EveryChange, ADeletionThatWasRefusedIsDoneWithTheNext) {
    failedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                   [&](Program& program) { return program.remove(2); },
                   [&](Program& program, bool) {
                       EXPECT_TRUE(program.remove(1));
                       EXPECT_EQ(foundIn(program.stores.image()), storeFree(program.notes));
                   });
}

TEST_P(EveryChange, ASwitchThatWasRefusedLosesNothingAndCanBeRepeated) {
    failedAnywhere(
        [&](Stores& stores) {
            stores.seed(GetParam(), notes());
            stores.registry.put(u"setting", u"ImportDAT", u"1");
        },
        [&](Program& program) {
            program.switchTo(other());
            // The marks that follow a copy are settings like any other: they tell nobody.
            return program.told == 0;
        },
        [&](Program& program, bool) {
            for (const bool deleteLeftOver : {false, true}) {
                EXPECT_EQ(foundIn(program.stores.image(), deleteLeftOver), storeFree(notes()));
            }
            program.switchTo(other());
            EXPECT_EQ(foundIn(program.stores.image()), storeFree(notes()));
            EXPECT_EQ(program.stores.registry.text(u"setting", u"UseRegistry"), boolText(!GetParam()));
        });
}

TEST_P(EveryChange, ASwitchBackThatWasRefusedLosesNothingAndCanBeRepeated) {
    failedAnywhere(
        [&](Stores& stores) {
            stores.seed(GetParam(), notes());
            stores.registry.put(u"setting", u"ImportDAT", u"1");
        },
        [&](Program& program) {
            const int from = program.stores.changes->failAt - program.stores.changes->made;
            program.stores.changes->failAt = -1;
            program.switchTo(other());
            program.stores.changes->failAt = program.stores.changes->made + from;
            program.switchTo(own());
            return program.told == 0;
        },
        [&](Program& program, bool) {
            for (const bool deleteLeftOver : {false, true}) {
                EXPECT_EQ(foundIn(program.stores.image(), deleteLeftOver), storeFree(notes()));
            }
            program.notes[1].Nota = u"edited meanwhile";
            const Fields body{NoteField::Nota};
            EXPECT_TRUE(program.set(2, body));
            EXPECT_EQ(foundIn(program.stores.image(), true), storeFree(program.notes));
            const Text chosen = program.stores.registry.text(u"setting", u"UseRegistry");
            // Files that a switch made are left over once the registry is chosen again: they stay as they
            // were.
            if (!GetParam() || chosen == u"False") {
                EXPECT_EQ(foundIn(program.stores.image()), storeFree(program.notes));
            }
            program.switchTo(own());
            EXPECT_EQ(foundIn(program.stores.image(), true), storeFree(program.notes));
            EXPECT_EQ(program.stores.registry.text(u"setting", u"UseRegistry"), boolText(GetParam()));
        });
}

TEST_P(EveryChange, ADeletionThatOnlyTheComingStoreRefusedPutsNoBodyUnderAnotherTitle) {
    const Fields body{NoteField::Nota};
    failedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                   [&](Program& program) {
                       const int from = program.stores.changes->failAt - program.stores.changes->made;
                       program.stores.changes->failAt = -1;
                       program.switchTo(other());
                       program.stores.changes->failAt = program.stores.changes->made + from;
                       return program.remove(2);
                   },
                   [&](Program& program, bool) {
                       program.notes[1].Nota = u"edited after the deletion";
                       EXPECT_TRUE(program.set(2, body));
                       expectOnScreen(program, 1);
                       program.store.settle(pointersTo(program.notes), program.settings);
                       EXPECT_EQ(foundIn(program.stores.image()), storeFree(program.notes));
                   });
}

// --- Starts -----------------------------------------------------------------------------------------------

/// Looks at the notes of a start; `refused`: of one in which a change failed.
using StartCheck = std::function<void(const std::vector<NoteRecord>& found, bool refused)>;

/// Ends a start ahead of every change, and checks what the next one finds.
void startEndedAnywhere(const std::function<void(Stores&)>& seed, bool deleteLeftOver,
                        const StartCheck& check) {
    Stores stores;
    seed(stores);
    const std::vector<Image> points =
        everyPoint(stores, [&] { const Program program(stores, deleteLeftOver); });
    for (std::size_t at = 0; at < points.size(); ++at) {
        SCOPED_TRACE("ended ahead of change " + std::to_string(at));
        check(foundIn(points[at], deleteLeftOver), false);
        ++tally.killed;
    }
}

/// Lets every change of a start fail once, and checks what that start and the next one find.
void startFailedAnywhere(const std::function<void(Stores&)>& seed, bool deleteLeftOver,
                         const StartCheck& check) {
    for (int at = 0;; ++at) {
        SCOPED_TRACE("change " + std::to_string(at) + " failed");
        Stores stores;
        seed(stores);
        stores.changes->made = 0;
        stores.changes->failAt = at;
        {
            const Program program(stores, deleteLeftOver);
            if (program.state.usable) {
                check(storeFree(program.notes), true);
            } else {
                EXPECT_EQ(program.told, 1);
            }
        }
        const bool reached = stores.changes->made > at;
        stores.changes->failAt = -1;
        check(foundIn(stores.image(), deleteLeftOver), false);
        if (!reached) break;
        ++tally.failed;
    }
}

/// A start in every way it may be disturbed.
void startDisturbedAnywhere(const std::function<void(Stores&)>& seed, bool deleteLeftOver,
                            const StartCheck& check) {
    startEndedAnywhere(seed, deleteLeftOver, check);
    startFailedAnywhere(seed, deleteLeftOver, check);
}

TEST(EveryChangeOfAStart, TheFirstEverMakesOneNote) {
    startDisturbedAnywhere([](Stores&) {}, false,
                           [](const std::vector<NoteRecord>& found, bool) {
                               ASSERT_EQ(found.size(), 1U);
                               EXPECT_EQ(found[0].Titolo + found[0].Nota, u"");
                           });
}

TEST(EveryChangeOfAStart, TheImportNeitherLosesNorDoublesANote) {
    for (const bool ownNote : {false, true}) {
        for (const int count : {1, 3, ownNote ? kMaxNotes - 1 : kMaxNotes}) {
            const std::vector<NoteRecord> all = sampleNotes(count);
            NoteRecord own = freshNote();
            own.Titolo = u"my own";
            startDisturbedAnywhere(
                [&](Stores& stores) {
                    if (ownNote) stores.seedFiles({own});
                    stores.seedRegistry(all);
                },
                false,
                [&](const std::vector<NoteRecord>& found, bool refused) {
                    std::vector<NoteRecord> wanted = storeFree(all);
                    if (ownNote) wanted.insert(wanted.begin(), own);
                    // Where the copy was refused, the registry's notes are the desk of that run.
                    EXPECT_TRUE(found == wanted || (refused && found == storeFree(all)))
                        << testing::PrintToString(found);
                });
        }
    }
}

TEST(EveryChangeOfAStart, LeftOverFilesGoOrStayWhole) {
    for (const bool deleteThem : {false, true}) {
        const std::vector<NoteRecord> inFiles = sampleNotes(3);
        std::vector<NoteRecord> inRegistry = sampleNotes(5);
        inRegistry.erase(inRegistry.begin(), inRegistry.begin() + 3);
        startDisturbedAnywhere(
            [&](Stores& stores) {
                stores.seed(false, inFiles);
                stores.seedRegistry(inRegistry);
                stores.registry.put(u"setting", u"UseRegistry", u"True");
            },
            deleteThem,
            [&](const std::vector<NoteRecord>& found, bool) {
                EXPECT_EQ(found, storeFree(deleteThem ? inRegistry : inFiles));
            });
    }
}

TEST(EveryChangeOfAStart, TheUpgradeOfEveryOlderLayoutKeepsEveryNote) {
    constexpr std::pair<float, std::size_t> kLayouts[] = {{1.2F, 195}, {1.21F, 197}, {1.22F, 201}};
    for (const auto& [version, length] : kLayouts) {
        std::vector<NoteRecord> plain = sampleNotes(4);
        for (NoteRecord& note : plain)
            note.weekdays = {};
        startDisturbedAnywhere(
            [&, version = version, length = length](Stores& stores) {
                stores.seed(false, plain);
                std::string& dat = stores.folder.content[Text(kNoteFile)];
                std::string old;
                for (std::size_t at = 0; at < dat.size(); at += kRecordLength)
                    old += dat.substr(at, length);
                dat = old;
                stores.folder.content[Text(kHeaderFile)] = encodeHeader({4, 0, version});
            },
            false, [&](const std::vector<NoteRecord>& found, bool) { EXPECT_EQ(found, storeFree(plain)); });
    }
}

}  // namespace
