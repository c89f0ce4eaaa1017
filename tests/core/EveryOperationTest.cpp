// What the user does with notes and stores, one thing after the other, disturbed at every single point: the
// program is killed before each write; each write, each flush and each read fails once; the power fails. At
// the next start, however its question about left-over files is answered, each note is either as it was
// before the disturbed act or as it should become, and none is lost, doubled or blank.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/core/EveryPoint.h"
#include "tests/support/StoreName.h"

namespace {

using Desk = std::vector<NoteRecord>;

/// One thing that the user does.
using Act = std::function<void(Program&)>;

struct Operation {
    const char* name;
    std::vector<Act> acts;
    int notes = 3;          ///< on the desk before it
    bool imported = false;  ///< "ImportDAT" is there from an earlier run
};

NoteRecord newNote() {
    NoteRecord note;
    note.Titolo = u"new";
    note.Nota = u"new body";
    note.backcolor = kDesignColor;
    note.width = kDefaultWidth;
    note.height = kDefaultHeight;
    return note;
}

Act edit(int number, const Text& body) {
    return [=](Program& program) { program.edit(number, body); };
}

Act drag(int number, std::int32_t x) {
    return [=](Program& program) { program.drag(number, x); };
}

Act create() {
    return [](Program& program) {
        program.commit();
        program.create(newNote());
    };
}

Act remove(int number) {
    return [=](Program& program) { program.remove(number); };
}

Act choose(StoreKind kind) {
    return [=](Program& program) {
        program.commit();
        program.switchTo(kind);
    };
}

Act chooseHeld(StoreKind kind) {
    return [=](Program& program) {
        program.commit();
        program.switchToHeld(kind);
    };
}

Act type(int number, const Text& text) {
    return [=](Program& program) { program.type(number, text); };
}

Act escape(int number) {
    return [=](Program& program) { program.escape(number); };
}

Act enter(int number) {
    return [=](Program& program) { program.enter(number); };
}

std::vector<Operation> operations(StoreKind own, StoreKind other) {
    return {
        {"deletion of the last", {remove(3)}},
        {"deletions", {remove(2), remove(1)}},
        {"deletion, then everything", {remove(1), edit(2, u"moved and edited"), create(), remove(2)}},
        {"deletions and drags", {remove(2), drag(2, 4711), remove(1), drag(1, 4712)}},
        {"edits and a new note", {edit(1, u"longer than before"), create(), edit(4, u"x"), edit(1, u"y")}},
        {"switch", {choose(other)}},
        {"switch of one note", {choose(other), edit(1, u"after it")}, 1},
        {"switch after an import", {choose(other), edit(1, u"after it")}, 3, true},
        {"there and back with one note", {choose(other), choose(own), edit(1, u"after it")}, 1},
        {"there and back after an import", {choose(other), choose(own), remove(2)}, 3, true},
        {"switch, then everything",
         {choose(other), edit(2, u"after the switch"), create(), remove(1), edit(1, u"and again")}},
        {"there and back", {choose(other), choose(own)}},
        {"there, an edit, and back", {choose(other), edit(2, u"in between"), choose(own)}},
        {"there and back, then everything",
         {choose(other), choose(own), edit(2, u"after all"), create(), remove(1)}},
        {"there and back and there", {choose(other), choose(own), remove(1), choose(other), edit(1, u"z")}},
        {"refused switch, then the same", {chooseHeld(other), choose(other), edit(1, u"after it")}},
        {"refused switch, then the other", {chooseHeld(other), choose(own), edit(1, u"after it")}},
        {"drafts", {type(2, u"half a"), type(2, u"half a thought"), type(3, u"another")}},
        {"drafts that end", {type(2, u"dropped"), escape(2), type(2, u"kept"), enter(2), type(2, u"open")}},
        {"drafts over a deletion", {type(2, u"of two"), type(3, u"of three"), remove(1), escape(2)}},
        {"drafts over a switch",
         {type(1, u"ends with the switch"), choose(other), type(2, u"open in both"), escape(2),
          type(3, u"stays"), choose(own), type(1, u"the last")}},
    };
}

struct EveryOperation : testing::TestWithParam<bool> {
    static StoreKind own() { return GetParam() ? StoreKind::Registry : StoreKind::Files; }
    static StoreKind other() { return GetParam() ? StoreKind::Files : StoreKind::Registry; }

    static void seed(Stores& stores, const Operation& operation) {
        stores.seed(GetParam(), sampleNotes(operation.notes));
        if (operation.imported) stores.registry.put(u"setting", u"ImportDAT", u"1");
        stores.folder.flushAll();
    }
    template <class Test>
    static void forEach(Test test) {
        for (const Operation& operation : operations(own(), other())) {
            SCOPED_TRACE(operation.name);
            test(operation);
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, EveryOperation, testing::Bool(), storeName);

/// The desk before an operation and after each of its acts.
class History {
public:
    void add(const Desk& desk) { desks_.push_back(desk); }

    /// Whether the notes are as before the last act, or as after it.
    void expectBeforeOrAfter(const Desk& found) const {
        const bool known = found == desks_.back() || found == desks_[desks_.size() - 2];
        if (!known) lost(found);
    }
    /// Whether these are the notes of some moment, each as it was at some moment.
    void expectFromThen(const Desk& found) const {
        const bool known = std::any_of(desks_.begin(), desks_.end(), [&](const Desk& desk) {
            return std::equal(
                desk.begin(), desk.end(), found.begin(), found.end(),
                [](const NoteRecord& one, const NoteRecord& two) { return one.Titolo == two.Titolo; });
        });
        const bool whole = std::all_of(found.begin(), found.end(), [this](const NoteRecord& note) {
            return std::any_of(desks_.begin(), desks_.end(), [&](const Desk& desk) {
                return std::find(desk.begin(), desk.end(), note) != desk.end();
            });
        });
        if (!known || !whole) lost(found);
    }

private:
    static void lost(const Desk& found) {
        ++tally.lost;
        ADD_FAILURE() << testing::PrintToString(found);
    }
    std::vector<Desk> desks_;
};

std::string at(std::size_t act, std::size_t point, bool deleteLeftOver) {
    return "act " + std::to_string(act) + ", point " + std::to_string(point) +
           (deleteLeftOver ? ", left-over files go" : "");
}

TEST_P(EveryOperation, KilledBeforeAnyWriteIsDoneOrNot) {
    forEach([](const Operation& operation) {
        Stores stores;
        seed(stores, operation);
        Program program(stores);
        History history;
        history.add(program.wanted());
        Finds finds;
        for (std::size_t act = 0; act < operation.acts.size(); ++act) {
            const std::vector<Image> points = everyPoint(stores, [&] { operation.acts[act](program); });
            history.add(program.wanted());
            for (std::size_t point = 0; point < points.size(); ++point) {
                for (const bool deleteLeftOver : {false, true}) {
                    SCOPED_TRACE(at(act, point, deleteLeftOver));
                    history.expectBeforeOrAfter(finds.in(points[point], deleteLeftOver));
                }
                ++tally.killed;
            }
            for (const bool deleteLeftOver : {false, true})
                EXPECT_EQ(finds.in(points.back(), deleteLeftOver), program.wanted());
        }
        EXPECT_EQ(program.told, 0);
    });
}

TEST_P(EveryOperation, InterruptedByAPowerCutLeavesEachNoteAsItWasAtSomeMoment) {
    forEach([](const Operation& operation) {
        Stores stores;
        seed(stores, operation);
        Program program(stores);
        stores.folder.flushAll();
        History history;
        history.add(program.wanted());
        const std::vector<Image> images = everyPowerCut(stores, [&] {
            for (const Act& act : operation.acts) {
                act(program);
                history.add(program.wanted());
            }
        });
        for (std::size_t at = 0; at < images.size(); ++at) {
            for (const bool deleteLeftOver : {false, true}) {
                SCOPED_TRACE("image " + std::to_string(at) + (deleteLeftOver ? ", left-over files go" : ""));
                history.expectFromThen(foundIn(images[at], deleteLeftOver));
            }
            ++tally.powerCuts;
        }
    });
}

/// Deletes note 2 with one write refused, each `step`th in turn, then does all `acts`, killed at every point.
void killedAfterARefusedDeletion(const std::function<void(Stores&)>& seed, const std::vector<Act>& acts,
                                 int step) {
    Finds finds;
    for (int number = 0;; number += step) {
        SCOPED_TRACE("write " + std::to_string(number) + " refused");
        Stores stores;
        seed(stores);
        Program program(stores);
        History history;
        history.add(program.wanted());
        kFailingWrite.fail(stores, number);
        program.remove(2);
        const bool reached = kFailingWrite.end(stores);
        history.add(program.wanted());
        for (std::size_t act = 0; act < acts.size(); ++act) {
            const std::vector<Image> points = everyPoint(stores, [&] { acts[act](program); });
            history.add(program.wanted());
            for (std::size_t point = 0; point < points.size(); ++point) {
                SCOPED_TRACE(at(act, point, false));
                history.expectFromThen(finds.in(points[point], false));
                ++tally.killed;
            }
        }
        EXPECT_EQ(finds.in(stores.image(), false), program.wanted());
        if (!reached) break;
    }
}

TEST_P(EveryOperation, ADeletionThatFollowsARefusedOneMayBeKilledToo) {
    killedAfterARefusedDeletion([](Stores& stores) { seed(stores, {"", {}}); }, {remove(1)}, 1);
}

TEST_P(EveryOperation, ADragOrANewNoteThatFollowsARefusedDeletionMayBeKilledToo) {
    constexpr int kStep = 5;  // the writes of one note are much alike
    killedAfterARefusedDeletion(
        [](Stores& stores) {
            seed(stores, {"", {}, 4});
        },
        {drag(1, 4711), create(), remove(3), drag(2, 4712)}, kStep);
}

TEST_P(EveryOperation, ASwitchThatFollowsARefusedOneMayBeKilledToo) {
    constexpr int kStep = 3;  // the writes of one note are much alike
    Finds finds;
    for (const StoreKind second : {own(), other()}) {
        for (int number = 0;; number += kStep) {
            SCOPED_TRACE("write " + std::to_string(number) + " refused");
            Stores stores;
            seed(stores, {"", {}, 2});
            Program program(stores);
            kFailingWrite.fail(stores, number);
            choose(other())(program);
            const bool reached = kFailingWrite.end(stores);
            const std::vector<Image> points = everyPoint(stores, [&] { choose(second)(program); });
            for (std::size_t point = 0; point < points.size(); ++point) {
                for (const bool deleteLeftOver : {false, true}) {
                    SCOPED_TRACE(at(1, point, deleteLeftOver));
                    EXPECT_EQ(finds.in(points[point], deleteLeftOver), program.wanted());
                }
                ++tally.killed;
            }
            if (!reached) break;
        }
    }
}

/// Does an operation once for every call that may fail, and checks the result: when the program is killed
/// right afterwards, and after it has had its next chance.
void failedAnywhere(const Operation& operation, const Failing& failing,
                    const std::function<void(Stores&, const Operation&)>& seed) {
    Finds finds;
    for (int number = 0;; ++number) {
        SCOPED_TRACE(std::string(failing.name) + " " + std::to_string(number) + " failed");
        Stores stores;
        seed(stores, operation);
        Program program(stores);
        History history;
        history.add(program.wanted());
        failing.fail(stores, number);
        for (const Act& act : operation.acts) {
            act(program);
            history.add(program.wanted());
        }
        const bool reached = failing.end(stores);
        for (const bool deleteLeftOver : {false, true})
            history.expectFromThen(finds.in(stores.image(), deleteLeftOver));
        EXPECT_LE(program.told, 1);
        const Desk wanted = program.wanted();
        program.commit();
        EXPECT_EQ(program.wanted(), wanted) << "on screen";
        for (const bool deleteLeftOver : {false, true})
            EXPECT_EQ(finds.in(stores.image(), deleteLeftOver), wanted) << deleteLeftOver;
        if (!reached) break;
        ++(tally.*failing.tried);
    }
}

TEST_P(EveryOperation, WithAnyWriteRefusedOnceLosesNothingAndIsMadeUpFor) {
    forEach([](const Operation& operation) { failedAnywhere(operation, kFailingWrite, seed); });
}

TEST_P(EveryOperation, WithAnyFlushRefusedOnceLosesNothingAndIsMadeUpFor) {
    forEach([](const Operation& operation) { failedAnywhere(operation, kFailingFlush, seed); });
}

TEST_P(EveryOperation, WithAnyReadFailedOnceLosesNothingAndIsMadeUpFor) {
    forEach([](const Operation& operation) { failedAnywhere(operation, kFailingRead, seed); });
}

}  // namespace
