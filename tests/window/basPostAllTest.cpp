// The commands on all notes of a live desktop, in both stores: what they do to windows, captions and store.
#include "resources/resource.h"
#include "tests/window/CollectionDesk.h"

namespace {

class AllNotes : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, AllNotes, testing::Bool(), storeName);

// --- Hide All and Show All --------------------------------------------------------------------------------

TEST_P(AllNotes, HideAllHidesEveryNoteAndStoresNothing) {
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

TEST_P(AllNotes, HiddenNotesAreNotClosedByALaterFullSave) {
    const auto desk = run(manyNotes(3));
    desk->desk->ToggleHideAll();
    desk->note(1).DeleteForm(true);  // stores the notes behind it under new numbers
    pumpPending();
    EXPECT_EQ(desk->desk->Count(), 2);
    EXPECT_FALSE(desk->stored(1).closed);
    EXPECT_FALSE(desk->stored(2).closed);
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All");
}

TEST_P(AllNotes, ShowAllReopensClosedNotes) {
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

TEST_P(AllNotes, ShowAllReappliesWhatIsStored) {
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

TEST_P(AllNotes, ShowAllKeepsAnIconizedNoteIconizedAndItsFullHeight) {
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

TEST(AllNotesRegistry, FieldsMissingAtShowAllReadAsTheirFallbacks) {
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

TEST_P(AllNotes, HideAllKeepsTheTextBeingTyped) {
    const auto desk = run({plainNote(u"a")});
    desk->note(1).EditForm();
    SetWindowTextW(desk->note(1).editing.txtNota(), L"typed");
    desk->desk->ToggleHideAll();
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
    EXPECT_FALSE(desk->note(1).visible());
}

TEST_P(AllNotes, HideAllSilencesRingingNotesAndRemovesThoseWhoseAlarmIsOver) {
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

TEST_P(AllNotes, HideAllSilencesRingingNotesThatAreToBeKept) {
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

TEST_P(AllNotes, ShowAllReachesTheNotesBehindOneThatGoesWithItsAlarm) {
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

TEST_P(AllNotes, CommandsOnAnEmptyDeskDoNothing) {
    const auto desk = run({});
    desk->desk->ToggleHideAll();
    desk->desk->ToggleIconizeAll();
    desk->desk->AutoPosition();
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_FALSE(desk->desk->AllIconized());
}

// --- Iconize All and Restore All --------------------------------------------------------------------------

TEST_P(AllNotes, IconizeAllShrinksAndRestoreAllBringsBack) {
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

TEST_P(AllNotes, IconizeAllReachesTheNotesBehindOneThatGoesWithItsAlarm) {
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

TEST_P(AllNotes, RestoreAllReachesTheNotesBehindOneThatGoesWithItsAlarm) {
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

TEST_P(AllNotes, IconizeAllRestoresNotesThatTheSystemMinimised) {
    const auto desk = run(manyNotes(2));
    ShowWindow(desk->note(2).hwnd, SW_MINIMIZE);
    desk->desk->ToggleIconizeAll();
    EXPECT_FALSE(IsIconic(desk->note(2).hwnd));
    EXPECT_EQ(desk->note(2).place.Height(), desk->note(1).place.Height());
    EXPECT_EQ(desk->stored(2).x, 600);
}

// --- Automatic position -----------------------------------------------------------------------------------

TEST_P(AllNotes, AutomaticPositionStacksTheVisibleNotesAndStoresThem) {
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

TEST_P(AllNotes, ColumnsBeginWhereAHiddenFirstNoteWillBeShown) {
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

TEST_P(AllNotes, ThePlacesAreStoredWhateverMakesTheColumnsChange) {
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

TEST_P(AllNotes, TheTwoAlignmentsAreNeverBothOnInARun) {
    const auto desk = run(manyNotes(2));
    desk->desk->ToggleEasyAlign();
    EXPECT_FALSE(trayAllows(*desk, tray::kAlignAll));
    desk->desk->ToggleEasyAlign();
    EXPECT_TRUE(trayAllows(*desk, tray::kAlignAll));
    desk->desk->ToggleAlignAll();
    EXPECT_FALSE(trayAllows(*desk, tray::kEasyAlign));
    EXPECT_FALSE(desk->desk->settings.EasyAlign);
}

TEST_P(AllNotes, TurningOneAlignmentOnLeavesTheKeyOfTheOtherAlone) {
    GlobalSettings settings;
    settings.EasyAlign = true;
    const auto desk = run(manyNotes(2), settings);
    ASSERT_TRUE(saveSetting(desk->registry.settings(), u"setting", u"EasyAlign", u"True"));
    desk->desk->ToggleAlignAll();
    EXPECT_FALSE(desk->desk->settings.EasyAlign);
    EXPECT_EQ(*desk->registry.find(u"setting", u"EasyAlign"), u"True");
    EXPECT_EQ(*desk->registry.find(u"setting", u"AlignAll"), u"True");
}

TEST_P(AllNotes, BothAlignmentsStoredAsOnAreBothCheckedAndGrey) {
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

}  // namespace
