// The collection on a live desktop, in both stores: what its commands do to windows, flags and store.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "resources/resource.h"
#include "support/PopupMenu.h"
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

// --- Hide All and Show All --------------------------------------------------------------------------------

TEST_P(Collection, HideAllHidesEveryNoteAndStoresNothing) {
    const auto desk = run(manyNotes(3));
    std::vector<NoteRecord> before;
    for (int n = 1; n <= 3; ++n)
        before.push_back(desk->stored(n));
    desk->desk->ToggleHideAll();
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All");
    for (int n = 1; n <= 3; ++n) {
        EXPECT_FALSE(desk->note(n).visible());
        EXPECT_EQ(noteCaption(desk->note(n), IDM_HIDEALL), u"Show All");
        EXPECT_EQ(desk->stored(n), before[static_cast<std::size_t>(n - 1)]);
    }
}

TEST_P(Collection, HiddenNotesAreNotClosedByALaterFullSave) {
    const auto desk = run(manyNotes(3));
    desk->desk->ToggleHideAll();
    desk->note(1).DeleteForm(true);  // stores the notes behind it under new numbers
    pumpPending();
    EXPECT_EQ(desk->desk->Count(), 2);
    EXPECT_FALSE(desk->stored(1).closed);
    EXPECT_FALSE(desk->stored(2).closed);
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All");
}

TEST_P(Collection, ShowAllReopensClosedNotes) {
    const auto desk =
        run({with(plainNote(u"a"), &NoteRecord::closed), with(plainNote(u"b"), &NoteRecord::closed)});
    ASSERT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All");
    desk->desk->ToggleHideAll();
    for (int n = 1; n <= 2; ++n) {
        EXPECT_TRUE(desk->note(n).visible());
        EXPECT_FALSE(desk->stored(n).closed);
    }
    EXPECT_EQ(desk->desk->ClosedCount(), 0);
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Hide All");
}

TEST_P(Collection, ShowAllReappliesWhatIsStored) {
    const auto desk = run({plainNote(u"a")});
    desk->desk->ToggleHideAll();
    NoteRecord changed = desk->stored(1);
    changed.x = 4500;
    changed.y = 6000;
    changed.width = 3750;
    changed.height = 3000;
    changed.topmost = true;
    EXPECT_TRUE(desk->desk->store.set(1, changed, everyField()));
    ShowWindow(desk->note(1).hwnd, SW_SHOWMINNOACTIVE);
    desk->desk->ToggleHideAll();
    const fpost& note = desk->note(1);
    EXPECT_FALSE(IsIconic(note.hwnd));
    EXPECT_EQ(note.place.Left(), 4500);
    EXPECT_EQ(note.place.Top(), 6000);
    EXPECT_EQ(note.place.Width(), 3750);
    EXPECT_EQ(note.place.Height(), 3000);
    EXPECT_NE(GetWindowLongPtrW(note.hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
}

TEST_P(Collection, ShowAllKeepsAnIconizedNoteIconizedAndItsFullHeight) {
    const auto desk = run({with(plainNote(u"a"), &NoteRecord::iconized), plainNote(u"b")});
    const int strip = desk->note(1).place.Height();
    desk->desk->ToggleHideAll();
    desk->desk->ToggleHideAll();
    EXPECT_EQ(desk->note(1).place.Height(), strip);
    EXPECT_EQ(desk->note(2).place.Height(), 2250);
    EXPECT_EQ(desk->stored(1).height, 2250);
    desk->note(1).toggleIconized();
    EXPECT_EQ(desk->note(1).place.Height(), 2250);
}

TEST(CollectionRegistry, FieldsMissingAtShowAllReadAsTheirFallbacks) {
    TestNotes desk(true, {with(plainNote(u"a"), &NoteRecord::topmost)});
    desk.desk->ToggleHideAll();
    for (const TextView key : {u"x", u"y", u"width", u"height", u"topmost"}) {
        desk.registry.settings().removeValue(u"kardel-1", key);
    }
    desk.desk->ToggleHideAll();
    const fpost& note = desk.note(1);
    EXPECT_EQ(note.place.Left(), 0);
    EXPECT_EQ(note.place.Top(), 0);
    EXPECT_EQ(note.place.Width(), 2910) << "a note without a size has the usual one";
    EXPECT_EQ(note.place.Height(), 1890);
    EXPECT_FALSE(note.TopMost());
}

TEST_P(Collection, HideAllKeepsTheTextBeingTyped) {
    const auto desk = run({plainNote(u"a")});
    desk->note(1).EditForm();
    SetWindowTextW(desk->note(1).editing.txtNota(), L"typed");
    desk->desk->ToggleHideAll();
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
    EXPECT_FALSE(desk->note(1).visible());
}

/// A desk on which notes 1 and 3 ring, both with an alarm that rings once.
std::unique_ptr<TestNotes> ringing(bool useRegistry, bool keepThem) {
    GlobalSettings settings;
    settings.DontDeleteWhenPlay = keepThem;
    std::vector<NoteRecord> notes = manyNotes(4);
    for (const std::size_t at : {std::size_t{0}, std::size_t{2}}) {
        notes[at].alarmdate = u"15/06/2026";
        notes[at].alarmtime = u"12:00:10";
    }
    auto desk = std::make_unique<TestNotes>(useRegistry, std::move(notes), settings);
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
    for (const int n : {1, 3})
        desk->note(n).tmr_Timer();
    return desk;
}

TEST_P(Collection, HideAllSilencesRingingNotesAndRemovesThoseWhoseAlarmIsOver) {
    const auto desk = ringing(GetParam(), false);
    ASSERT_TRUE(desk->note(1).Alarming() && desk->note(3).Alarming());
    desk->desk->ToggleHideAll();
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"n2", u"n4"}));
    for (int n = 1; n <= 2; ++n) {
        EXPECT_FALSE(desk->note(n).visible());
        EXPECT_EQ(desk->note(n).number, n);
    }
    EXPECT_EQ(desk->stored(1).Titolo, u"n2");
    EXPECT_EQ(desk->stored(2).Titolo, u"n4");
    EXPECT_EQ(countedNotes(*desk), 2);
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All");
}

TEST_P(Collection, HideAllSilencesRingingNotesThatAreToBeKept) {
    const auto desk = ringing(GetParam(), true);
    desk->desk->ToggleHideAll();
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 4);
    for (int n = 1; n <= 4; ++n) {
        EXPECT_FALSE(desk->note(n).Alarming()) << n;
        EXPECT_FALSE(desk->note(n).visible()) << n;
    }
    EXPECT_EQ(desk->stored(1).alarmdate, u"");
}

TEST_P(Collection, ShowAllReachesTheNotesBehindOneThatGoesWithItsAlarm) {
    GlobalSettings settings;
    std::vector<NoteRecord> notes = manyNotes(3);
    notes[0].alarmdate = u"15/06/2026";
    notes[0].alarmtime = u"12:00:10";
    notes[1].closed = notes[2].closed = true;
    const auto desk = run(notes, settings);
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
    desk->note(1).tmr_Timer();
    ASSERT_TRUE(desk->note(1).Alarming());
    desk->desk->HideAll(false);  // as said by a menu that was open when the note rang
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"n2", u"n3"}));
    for (int n = 1; n <= 2; ++n) {
        EXPECT_TRUE(desk->note(n).visible()) << n;
        EXPECT_FALSE(desk->stored(n).closed) << n;
    }
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Hide All");
}

TEST_P(Collection, ACommandOfANotesMenuDoesWhatTheMenuSaid) {
    GlobalSettings settings;
    settings.RestoreWhenPlay = true;
    std::vector<NoteRecord> notes = manyNotes(3);
    for (NoteRecord& note : notes)
        note.iconized = true;
    notes[0].alarmdate = u"15/06/2026";
    notes[0].alarmtime = u"12:00:10";
    const auto desk = run(notes, settings);
    const NoteMenuInput own = desk->note(1).commands.input(desk->note(1).alarm.rule);
    const NoteMenuInput others = desk->note(2).commands.input(desk->note(2).alarm.rule);
    ASSERT_TRUE(own.iconized && others.allIconized);
    // While the menu is open, the note rings and is restored for that.
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
    desk->note(1).tmr_Timer();
    ASSERT_FALSE(desk->note(1).Iconized());
    postChosen(desk->note(1).hwnd, IDM_ICONIZE, said(own));  // "Restore"
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 3) << "if it were iconized again, it would be silenced and deleted";
    EXPECT_FALSE(desk->note(1).Iconized());
    EXPECT_TRUE(desk->note(1).Alarming());
    postChosen(desk->note(2).hwnd, IDM_ICONIZEALL, said(others));  // "Restore All"
    pumpPending();
    for (int n = 1; n <= 3; ++n)
        EXPECT_FALSE(desk->note(n).Iconized()) << n;
    postChosen(desk->note(2).hwnd, IDM_ICONIZE, said(desk->note(2).commands.input(desk->note(2).alarm.rule)));
    pumpPending();
    EXPECT_TRUE(desk->note(2).Iconized());
}

TEST_P(Collection, CommandsOnAnEmptyDeskDoNothing) {
    const auto desk = run({});
    desk->desk->ToggleHideAll();
    desk->desk->ToggleIconizeAll();
    desk->desk->AutoPosition();
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_FALSE(desk->desk->AllIconized());
}

// --- Iconize All and Restore All --------------------------------------------------------------------------

TEST_P(Collection, IconizeAllShrinksAndRestoreAllBringsBack) {
    const auto desk = run({plainNote(u"a"), with(plainNote(u"b"), &NoteRecord::iconized), plainNote(u"c")});
    desk->desk->ToggleIconizeAll();
    EXPECT_EQ(trayCaption(*desk, tray::kIconizeAll), u"Restore All");
    EXPECT_EQ(desk->desk->IconizedCount(), 3);
    for (int n = 1; n <= 3; ++n) {
        EXPECT_TRUE(desk->stored(n).iconized) << n;
        EXPECT_EQ(desk->stored(n).height, 2250) << n;
        EXPECT_EQ(noteCaption(desk->note(n), IDM_ICONIZEALL), u"Restore All");
    }
    desk->desk->ToggleIconizeAll();
    EXPECT_EQ(trayCaption(*desk, tray::kIconizeAll), u"Iconize All");
    EXPECT_EQ(desk->desk->IconizedCount(), 0);
    for (int n = 1; n <= 3; ++n) {
        EXPECT_FALSE(desk->stored(n).iconized) << n;
        EXPECT_EQ(desk->note(n).place.Height(), 2250) << n;
    }
}

TEST_P(Collection, IconizeAllReachesTheNotesBehindOneThatGoesWithItsAlarm) {
    const auto desk = ringing(GetParam(), false);
    desk->desk->ToggleIconizeAll();
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"n2", u"n4"}));
    EXPECT_EQ(trayCaption(*desk, tray::kIconizeAll), u"Restore All");
    for (int n = 1; n <= 2; ++n) {
        EXPECT_TRUE(desk->note(n).Iconized()) << n;
        EXPECT_TRUE(desk->stored(n).iconized) << n;
    }
}

TEST_P(Collection, RestoreAllReachesTheNotesBehindOneThatGoesWithItsAlarm) {
    const auto desk = ringing(GetParam(), true);
    desk->desk->ToggleIconizeAll();
    for (const int n : {1, 3}) {
        fpost& note = desk->note(n);
        note.alarm.rule.AlarmDate = u"15/06/2026";
        note.alarm.rule.AlarmTime = u"12:00:10";
        note.ArmAfterLoad();
        note.tmr_Timer();
        ASSERT_TRUE(note.Alarming()) << n;
    }
    desk->desk->settings.DontDeleteWhenPlay = false;
    desk->desk->ToggleIconizeAll();
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"n2", u"n4"}));
    EXPECT_EQ(trayCaption(*desk, tray::kIconizeAll), u"Iconize All");
    for (int n = 1; n <= 2; ++n) {
        EXPECT_FALSE(desk->note(n).Iconized()) << n;
        EXPECT_FALSE(desk->stored(n).iconized) << n;
    }
}

TEST_P(Collection, IconizeAllRestoresNotesThatTheSystemMinimised) {
    const auto desk = run(manyNotes(2));
    ShowWindow(desk->note(2).hwnd, SW_MINIMIZE);
    desk->desk->ToggleIconizeAll();
    EXPECT_FALSE(IsIconic(desk->note(2).hwnd));
    EXPECT_EQ(desk->note(2).place.Height(), desk->note(1).place.Height());
    EXPECT_EQ(desk->stored(2).x, 600);
}

// --- Automatic position -----------------------------------------------------------------------------------

TEST_P(Collection, AutomaticPositionStacksTheVisibleNotesAndStoresThem) {
    GlobalSettings settings;
    std::vector<NoteRecord> notes = manyNotes(4);
    notes[1].closed = true;
    const auto desk = run(notes, settings);
    desk->desk->ToggleAlignAll();
    EXPECT_EQ(desk->note(3).place.Top(), 150 + 2250);
    EXPECT_EQ(desk->note(4).place.Top(), 150 + 2 * 2250);
    EXPECT_EQ(desk->stored(3).y, 150 + 2250);
    EXPECT_EQ(desk->stored(4).x, 300);
    EXPECT_EQ(desk->stored(2).x, 600) << "a hidden note stays where it was";
    EXPECT_EQ(*desk->registry.find(u"setting", u"AlignAll"), u"True");
}

TEST_P(Collection, ColumnsBeginWhereAHiddenFirstNoteWillBeShown) {
    std::vector<NoteRecord> notes = manyNotes(2);
    notes[0].closed = true;
    notes[0].iconized = true;
    const auto desk = run(notes);
    SetWindowPos(desk->note(1).hwnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    desk->desk->ToggleAlignAll();
    EXPECT_EQ(desk->stored(2).x, desk->stored(1).x);
    EXPECT_EQ(desk->stored(2).y, desk->stored(1).y + kIconizedHeight.n) << "and not under its hidden window";
    EXPECT_EQ(desk->stored(1).x, 300);
}

TEST_P(Collection, ThePlacesAreStoredWhateverMakesTheColumnsChange) {
    GlobalSettings settings;
    settings.AlignAll = true;
    const auto desk = run(manyNotes(3), settings);
    const auto storedBelow = [&desk](int high, int low) {
        return desk->stored(low).y == desk->note(high).place.Top() + desk->note(high).place.Height();
    };
    EXPECT_TRUE(storedBelow(1, 2) && storedBelow(2, 3)) << "at the start";
    desk->desk->ToggleIconizeAll();
    EXPECT_TRUE(storedBelow(1, 2) && storedBelow(2, 3)) << "iconized";
    desk->desk->ToggleIconizeAll();
    EXPECT_TRUE(storedBelow(1, 2) && storedBelow(2, 3)) << "restored";
    desk->note(2).CloseForm();
    EXPECT_TRUE(storedBelow(1, 3)) << "one closed";
    desk->desk->ToggleHideAll();
    desk->desk->ToggleHideAll();
    EXPECT_TRUE(storedBelow(1, 2) && storedBelow(2, 3)) << "all shown";
}

TEST_P(Collection, TheTwoAlignmentsAreNeverBothOnInARun) {
    const auto desk = run(manyNotes(2));
    desk->desk->ToggleEasyAlign();
    EXPECT_FALSE(trayAllows(*desk, tray::kAlignAll));
    desk->desk->ToggleEasyAlign();
    EXPECT_TRUE(trayAllows(*desk, tray::kAlignAll));
    desk->desk->ToggleAlignAll();
    EXPECT_FALSE(trayAllows(*desk, tray::kEasyAlign));
    EXPECT_FALSE(desk->desk->settings.EasyAlign);
}

TEST_P(Collection, TurningOneAlignmentOnLeavesTheKeyOfTheOtherAlone) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    const auto desk = run(manyNotes(2), settings);
    ASSERT_TRUE(saveSetting(desk->registry.settings(), u"setting", u"EasyAlign", u"True"));
    desk->desk->ToggleAlignAll();
    EXPECT_FALSE(desk->desk->settings.EasyAlign);
    EXPECT_EQ(*desk->registry.find(u"setting", u"EasyAlign"), u"True");
    EXPECT_EQ(*desk->registry.find(u"setting", u"AlignAll"), u"True");
}

TEST_P(Collection, BothAlignmentsStoredAsOnAreBothCheckedAndGrey) {
    GlobalSettings settings;
    settings.AlignAll = true;
    settings.EasyAlign = true;
    const auto desk = run(manyNotes(2), settings);
    const Menu menu = shownTray(*desk);
    for (const int command : {tray::kAlignAll, tray::kEasyAlign}) {
        EXPECT_TRUE(menu[static_cast<std::size_t>(command)].checked) << command;
        EXPECT_FALSE(menu[static_cast<std::size_t>(command)].enabled) << command;
    }
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
