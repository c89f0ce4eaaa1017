// The collection on a live desktop, in both stores: its flags, the switch of the store, opening a note, and
// the end.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "resources/resource.h"
#include "tests/core/EveryPoint.h"
#include "tests/window/CollectionDesk.h"
#include "tests/window/Script.h"

namespace {

class Collection : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, Collection, testing::Bool(), storeName);

// --- Numbers and flags at a start -------------------------------------------------------------------------

TEST_P(Collection, CountsFollowTheNotes) {
    NoteRecord closed = plainNote(u"closed");
    closed.closed = true;
    NoteRecord iconized = plainNote(u"iconized");
    iconized.iconized = true;
    const auto desk = run({plainNote(u"a"), closed, iconized});
    EXPECT_EQ(desk->desk->ClosedCount(), 1);
    EXPECT_EQ(desk->desk->IconizedCount(), 1);
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_FALSE(desk->desk->AllIconized());
    EXPECT_FALSE(desk->note(2).visible());
    EXPECT_EQ(desk->desk->NoteSlots[0], &desk->note(1));
    EXPECT_EQ(desk->desk->NoteSlots[3], nullptr);
}

TEST_P(Collection, AllClosedAndAllIconizedAreSeenAtTheStart) {
    NoteRecord note = plainNote(u"a");
    note.closed = true;
    note.iconized = true;
    const auto desk = run({note, note});
    EXPECT_TRUE(desk->desk->AllHidden());
    EXPECT_TRUE(desk->desk->AllIconized());
}

TEST_P(Collection, DeskWithoutNotesIsNeitherHiddenNorIconized) {
    const auto desk = run({});
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_FALSE(desk->desk->AllIconized());
}

// --- Use local files ---------------------------------------------------------------------------------------

/// The dialog is shown with this title.
Script::Condition titled(fmsg& dialog, TextView title) {
    return [&dialog, title] {
        return dialog.open() && IsWindowVisible(dialog.hwnd) != FALSE && windowText(dialog.hwnd) == title;
    };
}

Script::Action pressing(fmsg& dialog, int button) {
    return [&dialog, button] { PostMessageW(GetDlgItem(dialog.hwnd, button), BM_CLICK, 0, 0); };
}

TEST_P(Collection, ANoteThatGoesWhileTheSwitchIsAskedForIsWrittenToNeitherStore) {
    std::vector<NoteRecord> notes = manyNotes(3);
    notes[0].alarmdate = u"15/06/2026";
    notes[0].alarmtime = u"12:00:10";
    const auto desk = run(notes);
    desk->registry.put(u"setting", u"UseRegistry", boolText(GetParam()));
    fmsg& dialog = desk->desk->dialog;
    {
        Script script(dialog);
        const TextView title = GetParam() ? u"Use the local files?" : u"Don't use the local files?";
        script.when(titled(dialog, title), [&] {
            desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
            desk->note(1).tmr_Timer();
            desk->desk->ToggleHideAll();  // silences the note, which goes with its only alarm
            pressing(dialog, ID_BTN1)();
        });
        desk->desk->SwitchStore();
    }
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 2);
    std::vector<NoteRecord> shown;
    for (const fpost* note : desk->desk->Notes)
        shown.push_back(storeFree(note->record));
    for (const bool deleteLeftOver : {false, true})
        EXPECT_EQ(foundIn({desk->folder.content, desk->registry.content}, deleteLeftOver), shown);
    EXPECT_EQ(desk->registry.text(u"setting", u"UseRegistry"), boolText(!GetParam()));
}

TEST(CollectionRegistry, ARefusedWriteOfAnUnchangedValueLeavesTheStoreChosen) {
    TestNotes desk(true, manyNotes(2), [] {
        GlobalSettings settings;
        settings.UseRegistry = true;
        return settings;
    }());
    fmsg& dialog = desk.desk->dialog;
    {
        Script script(dialog);
        script.when(titled(dialog, u"Use the local files?"),
                    pressing(dialog, ID_BTN2));  // Cancel: the entry stays checked
        desk.desk->SwitchStore();
    }
    {
        const FullDisk fullDisk(desk);
        Script script(dialog);
        script.when(titled(dialog, u"Don't use the local files?"), pressing(dialog, ID_BTN1));
        script.when(titled(dialog, u"Kardel"), pressing(dialog, ID_BTN1));  // the memo could not be saved
        desk.desk->SwitchStore();
        pumpPending();
    }
    desk.note(1).DeleteForm(true);  // writes the settings again
    EXPECT_EQ(desk.registry.text(u"setting", u"UseRegistry"), u"True");
}

TEST_P(Collection, ARefusedSwitchLeavesTheCheckMarkAndTheNextClickAsksForTheSameAgain) {
    const auto desk = run(manyNotes(2));
    desk->desk->settings.UseRegistry = GetParam();
    fmsg& dialog = desk->desk->dialog;
    const TextView title = GetParam() ? u"Use the local files?" : u"Don't use the local files?";
    const auto click = [&] {
        Script script(dialog);
        script.when(titled(dialog, title), pressing(dialog, ID_BTN1));
        desk->desk->SwitchStore();
    };
    desk->desk->store.claim = [](StoreKind) { return false; };
    click();
    EXPECT_EQ(desk->desk->trayState().localFiles, !GetParam());
    desk->desk->store.claim = [](StoreKind) { return true; };
    click();
    EXPECT_EQ(desk->desk->trayState().localFiles, GetParam());
    EXPECT_EQ(desk->registry.text(u"setting", u"UseRegistry"), boolText(!GetParam()));
}

TEST_P(Collection, ACommandOnAllNotesWaitsForHeldFilesOnce) {
    const auto desk = run(manyNotes(kMaxNotes));
    basPost& all = *desk->desk;
    const std::vector<std::function<void()>> commands{
        [&] { all.ToggleIconizeAll(); }, [&] { all.ToggleIconizeAll(); }, [&] { all.ToggleHideAll(); },
        [&] { all.ToggleHideAll(); },    [&] { all.ToggleAlignAll(); },   [&] { all.AutoPosition(); },
        [&] { all.CommitEdits(); }};
    for (std::size_t i = 0; i < commands.size(); ++i) {
        desk->folder.waits.clear();
        commands[i]();
        EXPECT_EQ(desk->folder.waits, std::vector<unsigned>{1000}) << "command " << i;
    }
}

TEST_P(Collection, ALogOffWaitsASecondInAll) {
    const auto desk = run(manyNotes(3));
    fTray& tray = desk->desk->tray;
    desk->folder.waits.clear();
    SendMessageW(tray.hwnd, WM_QUERYENDSESSION, 0, 0);
    SendMessageW(tray.hwnd, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(desk->folder.waits, (std::vector<unsigned>{500, 500}));
}

TEST_P(Collection, ANewNoteWaitsForHeldFilesOnce) {
    const auto desk = run(manyNotes(3));
    desk->folder.waits.clear();
    EXPECT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(desk->folder.waits, std::vector<unsigned>{1000});
}

TEST_P(Collection, ASwitchWaitsForHeldFilesOnceAfterItsAnswer) {
    const auto desk = run(manyNotes(3));
    fmsg& dialog = desk->desk->dialog;
    Script script(dialog);
    const TextView title = GetParam() ? u"Use the local files?" : u"Don't use the local files?";
    script.when(titled(dialog, title), [&] {
        desk->folder.waits.clear();
        pressing(dialog, ID_BTN1)();
    });
    desk->desk->SwitchStore();
    EXPECT_EQ(desk->folder.waits, std::vector<unsigned>{1000});
}

TEST_P(Collection, LoadingAllNotesWaitsForHeldFilesOnce) {
    const auto desk = run(manyNotes(3));
    desk->desk->store.saveDraft(2, false, u"typed");
    desk->folder.waits.clear();
    desk->killAndRestart();
    EXPECT_EQ(desk->folder.waits, std::vector<unsigned>{1000});
}

// --- Open -------------------------------------------------------------------------------------------------

TEST_P(Collection, OpeningAClosedNoteClearsItsFlagForGood) {
    const auto desk = run({plainNote(u"a"), with(plainNote(u"b"), &NoteRecord::closed)});
    desk->desk->OpenNote(1);
    EXPECT_TRUE(desk->note(2).visible());
    EXPECT_FALSE(desk->stored(2).closed);
    EXPECT_EQ(desk->desk->ClosedCount(), 0);
    EXPECT_TRUE(desk->desk->store.set(2, desk->note(2).record, everyField()));
    EXPECT_FALSE(desk->stored(2).closed);
}

TEST_P(Collection, OpeningOneOfAllClosedNotesBringsHideAllBack) {
    const auto desk =
        run({with(plainNote(u"a"), &NoteRecord::closed), with(plainNote(u"b"), &NoteRecord::closed)});
    desk->desk->OpenNote(0);
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Hide All");
    EXPECT_TRUE(desk->stored(2).closed);
}

TEST_P(Collection, AHiddenDeskOfWhichOneNoteWasOpenedIsHiddenAgainWithoutIt) {
    for (const bool closed : {true, false}) {
        const auto desk = run(manyNotes(3));
        desk->desk->ToggleHideAll();
        desk->desk->OpenNote(1);
        EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Hide All");
        if (closed) {
            desk->note(2).CloseForm();
        } else {
            desk->note(2).DeleteForm(true);
            pumpPending();
        }
        EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All") << "nothing is in sight";
        EXPECT_EQ(noteCaption(desk->note(1), IDM_HIDEALL), u"Show All");
        desk->desk->ToggleHideAll();
        for (const fpost* note : desk->desk->Notes)
            EXPECT_TRUE(note->visible());
    }
}

/// Titles of the visible notes, front to back.
std::vector<Text> stacking(const TestNotes& desk) {
    std::vector<Text> titles;
    for (HWND window = GetTopWindow(nullptr); window != nullptr; window = GetWindow(window, GW_HWNDNEXT)) {
        const auto isIt = [window](const fpost* note) { return note->hwnd == window && note->visible(); };
        if (std::any_of(desk.desk->Notes.begin(), desk.desk->Notes.end(), isIt)) {
            titles.push_back(windowText(window));
        }
    }
    return titles;
}

TEST_P(Collection, OpeningACoveredNoteBringsItToTheFrontWithTheKeyboard) {
    const auto desk =
        run({plainNote(u"a"), plainNote(u"b"), with(plainNote(u"c"), &NoteRecord::closed), plainNote(u"d")});
    for (const int number : {1, 3, 2, 4, 1}) {
        fpost& note = desk->note(number);
        desk->desk->OpenNote(number - 1);
        EXPECT_EQ(stacking(*desk).front(), note.Titolo());
        EXPECT_EQ(GetForegroundWindow(), note.hwnd);
        EXPECT_EQ(GetFocus(), note.hwnd);
        desk->desk->OpenNote(number - 1);  // in front already
        EXPECT_EQ(stacking(*desk).front(), note.Titolo());
    }
    EXPECT_EQ(stacking(*desk).size(), 4U);
}

TEST_P(Collection, OpeningASlotWithoutANoteDoesNothing) {
    const auto desk = run({plainNote(u"a")});
    for (const int slot : {-1, 1, 49, 50, 1000})
        desk->desk->OpenNote(slot);
    EXPECT_EQ(desk->desk->Count(), 1);
}

TEST_P(Collection, ASettingThatTheStoreRefusedIsStoredLater) {
    const auto desk = run({plainNote(u"a")});
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    desk->desk->ToggleEasyAlign();
    desk->note(1).commands.mnuRewhenplay();
    desk->note(1).commands.mnuDontDelete();
    desk->note(1).commands.mnuDontDelete();
    EXPECT_EQ(desk->registry.text(u"setting", u"EasyAlign"), u"(none)");
    fullDisk.reset();
    desk->desk->CommitEdits();
    EXPECT_EQ(desk->registry.text(u"setting", u"EasyAlign"), u"True");
    EXPECT_EQ(desk->registry.text(u"setting", u"RestoreWhenPlay"), u"True");
    EXPECT_EQ(desk->registry.text(u"setting", u"DontDeleteWhenPlay"), u"False");
}

// --- The end ----------------------------------------------------------------------------------------------

TEST_P(Collection, TheEndOfTheSessionKeepsTextAndARingingNote) {
    const auto desk = ringing(GetParam(), false);
    desk->note(2).EditForm();
    SetWindowTextW(desk->note(2).editing.txtNota(), L"typed at log-off");
    EXPECT_EQ(SendMessageW(desk->desk->tray.hwnd, WM_QUERYENDSESSION, 0, 0), TRUE);
    SendMessageW(desk->desk->tray.hwnd, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(desk->stored(2).Nota, u"typed at log-off");
    EXPECT_EQ(desk->desk->Count(), 4);
    EXPECT_EQ(desk->stored(1).alarmdate, u"15/06/2026") << "it rings again at the next start";
    EXPECT_FALSE(desk->note(1).Alarming());
}

TEST_P(Collection, ASaveThatFailsAtLogOffIsToldOnlyWhenTheSessionGoesOn) {
    const auto desk = run({plainNote(u"a")});
    const HWND tray = desk->desk->tray.hwnd;
    desk->note(1).EditForm();
    SetWindowTextW(desk->note(1).editing.txtNota(), L"typed at log-off");
    {
        const FullDisk full(*desk);
        EXPECT_EQ(SendMessageW(tray, WM_QUERYENDSESSION, 0, 0), TRUE);
    }
    Script script(desk->desk->dialog);
    bool asked = false;
    const auto shown = [&] {
        const HWND box = desk->desk->dialog.hwnd;
        return box != nullptr && IsWindowVisible(box) != FALSE;
    };
    script.when(shown, [&] {
        EXPECT_TRUE(asked) << "otherwise the log-off would wait for the answer";
        PostMessageW(desk->desk->dialog.hwnd, WM_CLOSE, 0, 0);
    });
    pumpFor(100);
    EXPECT_FALSE(desk->desk->dialog.open());
    asked = true;
    SendMessageW(tray, WM_ENDSESSION, FALSE, 0);
    pumpPending();
    desk->desk->CommitEdits();
    EXPECT_EQ(desk->stored(1).Nota, u"typed at log-off");
}

TEST_P(Collection, ExitNeverDeletesARingingNote) {
    auto desk = ringing(GetParam(), false);
    desk->desk->ExitProgram();
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
    desk->desk->Teardown();
    EXPECT_EQ(countedNotes(*desk), 4);
    EXPECT_EQ(desk->stored(1).Titolo, u"n1");
    EXPECT_EQ(desk->stored(1).alarmdate, u"15/06/2026");
    EXPECT_EQ(desk->stored(3).alarmtime, u"12:00:10");
}

TEST_P(Collection, NoWindowOfADeletedNoteOutlivesTheDesk) {
    auto desk = run(manyNotes(2));
    const HWND gone = desk->note(1).hwnd;
    desk->note(1).DeleteForm(true);
    ASSERT_TRUE(IsWindow(gone)) << "a message of its own destroys it";
    desk->desk->Teardown();
    EXPECT_FALSE(IsWindow(gone));
}

}  // namespace
