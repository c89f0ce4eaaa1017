// What the next start finds when storing any set of fields in one go is killed or refused at any single
// change of a store.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/core/EveryPoint.h"
#include "tests/support/StoreName.h"

namespace {

class EveryChange : public testing::TestWithParam<bool> {
protected:
    static std::vector<NoteRecord> notes() { return sampleNotes(4); }

    /// Kills the program before every change of `run`, and checks what the next start finds.
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
INSTANTIATE_TEST_SUITE_P(Stores, EveryChange, testing::Bool(), storeName);

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

/// Note 1 with every field changed.
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

TEST_P(EveryChange, AnEditIsDoneCompletelyOrNotAtAllAndTouchesNothingElse) {
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

// --- Refused changes --------------------------------------------------------------------------------------

/// Lets each change of `run` fail once in a separate program; `check` gets that program afterwards.
void failedAnywhere(const std::function<void(Stores&)>& seed, const std::function<bool(Program&)>& run,
                    const std::function<void(Program&)>& check) {
    for (int at = 0;; ++at) {
        SCOPED_TRACE("change " + std::to_string(at) + " failed");
        Stores stores;
        seed(stores);
        Program program(stores);
        kFailingWrite.fail(stores, at);
        const bool done = run(program);
        const bool reached = kFailingWrite.end(stores);
        EXPECT_EQ(program.told, done ? 0 : 1);
        check(program);
        if (!reached) break;
        ++tally.failed;
    }
}

TEST_P(EveryChange, AnEditThatWasRefusedOnceIsStoredByTheNextSave) {
    for (const Fields& fields : storedTogether()) {
        failedAnywhere([&](Stores& stores) { stores.seed(GetParam(), notes()); },
                       [&](Program& program) {
                           program.notes[1] = changed(program.notes[1]);
                           return program.set(2, fields);
                       },
                       [&](Program& program) {
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

}  // namespace
