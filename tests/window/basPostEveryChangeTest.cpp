// What the user does on a live desk, killed or refused at every single change of the store behind it.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/Messages.h"
#include "tests/core/EveryPoint.h"
#include "tests/window/TestNotes.h"

namespace {

struct Operation {
    const char* name;
    std::function<void(TestNotes&)> prepare;
    std::function<void(TestNotes&)> run;
    int removed = 0;  ///< number of the note that is removed
};

void nothing(TestNotes&) {}

void type(HWND editor, LPCWSTR text) {
    SetWindowTextW(editor, text);
}

/// Removes the quit message, which must not end the tests.
void takeQuit() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE) {
    }
}

/// Makes note 2 ring.
void ringNoteTwo(TestNotes& desk) {
    desk.clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
    desk.note(2).tmr_Timer();
}

std::vector<Operation> operations() {
    return {
        {"edit of a body", nothing,
         [](TestNotes& desk) {
             desk.note(1).EditForm();
             type(desk.note(1).editing.txtNota(), L"another body");
             desk.note(1).SaveNote();
         }},
        {"edit of a title", nothing,
         [](TestNotes& desk) {
             desk.note(3).EditCaption();
             type(desk.note(3).editing.txtTitle(),
                  L"a title that is longer than its note is wide, so that the note grows");
             desk.note(3).SaveCaption(true);
         }},
        {"colour", nothing,
         [](TestNotes& desk) {
             desk.note(2).Backcol(0x00FF00);
             desk.note(2).kept.save({NoteField::Backcolor});
         }},
        {"resizing by key", [](TestNotes& desk) { desk.note(1).place.resizer.setMode(true); },
         [](TestNotes& desk) { desk.note(1).place.resizer.key(VK_RIGHT, false); }},
        {"iconizing one", nothing, [](TestNotes& desk) { desk.note(2).toggleIconized(); }},
        {"always on top", nothing, [](TestNotes& desk) { desk.note(2).commands.mnuTopmost(); }},
        {"closing", nothing, [](TestNotes& desk) { desk.note(4).CloseForm(); }},
        {"opening a closed one", [](TestNotes& desk) { desk.note(4).CloseForm(); },
         [](TestNotes& desk) { desk.desk->OpenNote(3); }},
        {"new note", nothing, [](TestNotes& desk) { static_cast<void>(desk.desk->NewNote()); }},
        {"deleting the first", nothing, [](TestNotes& desk) { desk.note(1).DeleteForm(true); }, 1},
        {"deleting one in the middle", nothing, [](TestNotes& desk) { desk.note(2).DeleteForm(true); }, 2},
        {"deleting the last", nothing, [](TestNotes& desk) { desk.note(4).DeleteForm(true); }, 4},
        {"hide all", nothing, [](TestNotes& desk) { desk.desk->ToggleHideAll(); }},
        {"show all",
         [](TestNotes& desk) {
             desk.note(1).CloseForm();
             desk.note(3).CloseForm();
             desk.desk->ToggleHideAll();
         },
         [](TestNotes& desk) { desk.desk->ToggleHideAll(); }},
        {"iconize all", nothing, [](TestNotes& desk) { desk.desk->ToggleIconizeAll(); }},
        {"restore all", [](TestNotes& desk) { desk.desk->ToggleIconizeAll(); },
         [](TestNotes& desk) { desk.desk->ToggleIconizeAll(); }},
        {"automatic position", nothing, [](TestNotes& desk) { desk.desk->AutoPosition(); }},
        {"automatic position on", nothing, [](TestNotes& desk) { desk.desk->ToggleAlignAll(); }},
        {"ringing and re-arming a repeated alarm", nothing,
         [](TestNotes& desk) {
             ringNoteTwo(desk);
             desk.note(2).SoundStop();
         }},
        {"ringing of a note that is iconized and closed",
         [](TestNotes& desk) {
             desk.desk->settings.RestoreWhenPlay = true;
             desk.note(2).toggleIconized();
             desk.note(2).CloseForm();
         },
         ringNoteTwo},
        {"a single alarm that takes its note away",
         [](TestNotes& desk) {
             desk.note(2).alarm.rule.RepeatNumber = 0;
             desk.note(2).ringing.store(AlarmFields::Everything);
             ringNoteTwo(desk);
         },
         [](TestNotes& desk) { desk.note(2).SoundStop(); }, 2},
        {"exit with an open editor",
         [](TestNotes& desk) {
             desk.note(1).EditForm();
             type(desk.note(1).editing.txtNota(), L"typed until the end");
         },
         [](TestNotes& desk) {
             desk.desk->ExitProgram();
             takeQuit();
         }},
        {"end of the session with an open editor",
         [](TestNotes& desk) {
             desk.note(1).EditCaption();
             type(desk.note(1).editing.txtTitle(), L"typed until the end");
         },
         [](TestNotes& desk) { desk.desk->EndSession(); }},
    };
}

struct WindowChanges : testing::TestWithParam<bool> {
    SharedChanges changes = std::make_shared<Changes>();

    std::unique_ptr<TestNotes> run(const Operation& operation) {
        std::vector<NoteRecord> notes{plainNote(u"a", 1500, 1500), plainNote(u"b", 3000, 3000),
                                      plainNote(u"c", 4500, 4500), plainNote(u"d", 6000, 1500)};
        notes[1].alarmdate = u"15/06/2026";
        notes[1].alarmtime = u"12:00:10";
        notes[1].alarmrepeatnumber = 5;
        notes[1].alarmrepeatevery = u"hh";
        auto desk = std::make_unique<TestNotes>(GetParam(), notes);
        desk->registry.put(u"setting", u"UseRegistry", boolText(GetParam()));
        operation.prepare(*desk);
        changes = std::make_shared<Changes>();
        desk->folder.changes = changes;
        desk->registry.changes = changes;
        return desk;
    }

    static Image imageOf(const TestNotes& desk) { return {desk.folder.content, desk.registry.content}; }

    static std::vector<NoteRecord> onScreen(const TestNotes& desk) {
        std::vector<NoteRecord> notes;
        for (const fpost* note : desk.desk->Notes)
            notes.push_back(storeFree(note->record));
        return notes;
    }

    /// Removes the message about a failed save before it can open a box.
    static bool tookFailureReport(const TestNotes& desk) {
        MSG message{};
        bool told = false;
        while (PeekMessageW(&message, desk.desk->tray.hwnd, posted::kSaveFailed, posted::kSaveFailed,
                            PM_REMOVE) != FALSE) {
            told = true;
        }
        return told;
    }

    static void expectUnharmed(const std::vector<NoteRecord>& found, const std::vector<NoteRecord>& before,
                               const std::vector<NoteRecord>& after) {
        ASSERT_GE(found.size(), before.size());
        ASSERT_LE(found.size(), after.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            const NoteRecord& old = i < before.size() ? before[i] : after[i];
            if (found[i] == old || found[i] == after[i]) continue;
            ++tally.lost;
            ADD_FAILURE() << testing::PrintToString(found[i]);
        }
    }

    static void expectGoneOrNot(const std::vector<NoteRecord>& found, const std::vector<NoteRecord>& before,
                                const std::vector<NoteRecord>& after) {
        if (found == before || found == after) return;
        ++tally.lost;
        ADD_FAILURE() << testing::PrintToString(found);
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, WindowChanges, testing::Bool(), storeName);

TEST_P(WindowChanges, KilledBeforeAnyOfThemLoseOrMixUpNoNote) {
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        const auto desk = run(operation);
        const std::vector<NoteRecord> before = foundIn(imageOf(*desk));
        const std::vector<Image> points = everyPoint(
            *changes, [&] { return imageOf(*desk); }, [&] { operation.run(*desk); });
        EXPECT_FALSE(tookFailureReport(*desk));
        const std::vector<NoteRecord> after = foundIn(points.back());
        EXPECT_EQ(after, onScreen(*desk));
        for (std::size_t at = 0; at < points.size(); ++at) {
            SCOPED_TRACE("ended ahead of change " + std::to_string(at));
            if (operation.removed > 0) {
                expectGoneOrNot(foundIn(points[at]), before, after);
            } else {
                expectUnharmed(foundIn(points[at]), before, after);
            }
            ++tally.killed;
        }
    }
}

TEST_P(WindowChanges, AreMadeUpForByTheNextSuccessWhenAnyIsRefused) {
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        for (int at = 0;; ++at) {
            SCOPED_TRACE("change " + std::to_string(at) + " failed");
            const auto desk = run(operation);
            const int count = desk->desk->Count();
            changes->failAt = at;
            operation.run(*desk);
            const bool reached = changes->made > at;
            changes->failAt = -1;
            if (!reached) {
                EXPECT_FALSE(tookFailureReport(*desk));
                break;
            }
            ++tally.failed;
            const int expected = operation.removed > 0 ? count - 1 : count;
            EXPECT_GE(desk->desk->Count(), expected);
            // The user is told about everything but what merely wastes room in a file.
            const bool told = tookFailureReport(*desk);
            EXPECT_TRUE(told || foundIn(imageOf(*desk)) == onScreen(*desk));
            desk->desk->CommitEdits();
            EXPECT_FALSE(tookFailureReport(*desk));
            EXPECT_EQ(foundIn(imageOf(*desk)), onScreen(*desk));
        }
    }
}

}  // namespace
