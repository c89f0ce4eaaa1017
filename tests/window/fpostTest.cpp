// A note's window: its parts, colours and sizes, what the mouse and the system do to it, and what it stores.
#include <gtest/gtest.h>

#include <functional>

#include "resources/resource.h"
#include "support/Messages.h"
#include "tests/window/AlarmDesk.h"

namespace {

/// Makes note 1 unreadable in either store.
void lockStores(TestNotes& desk) {
    desk.folder.locked.insert(Text(kNoteFile));
    desk.registry.locked.insert(u"kardel-1");
}

class NoteWindow : public InBothStores {
protected:
    /// A start that could not read its note.
    static std::unique_ptr<TestNotes> runUnreadable() {
        auto desk = run({plainNote(u"a")});
        lockStores(*desk);
        desk->killAndRestart();
        return desk;
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, NoteWindow, testing::Bool(), storeName);

Rgb pixelOf(HWND window, int x, int y) {
    UpdateWindow(window);
    const WindowDc dc(window);
    return GetPixel(dc, x, y);
}

// --- Geometry and the store -------------------------------------------------------------------------------

TEST_P(NoteWindow, SavedWhileMinimisedKeepsItsPlaceAndSize) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    ShowWindow(note.hwnd, SW_MINIMIZE);
    EXPECT_TRUE(desk->desk->store.set(1, note.record, everyField()));
    const NoteRecord stored = desk->stored(1);
    EXPECT_EQ(stored.x, 1500);
    EXPECT_EQ(stored.y, 1500);
    EXPECT_EQ(stored.width, 3000);
    EXPECT_EQ(stored.height, 2250);
}

TEST_P(NoteWindow, MinimisedByTheSystemIsRestoredAtOnce) {
    const auto desk = run({plainNote(u"a")});
    const HWND window = desk->note(1).hwnd;
    const RECT before = rectOf(window);
    ShowWindow(window, SW_MINIMIZE);
    pumpPending();
    EXPECT_FALSE(IsIconic(window));
    const RECT after = rectOf(window);
    EXPECT_TRUE(EqualRect(&before, &after));
    SendMessageW(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    EXPECT_FALSE(IsIconic(window));
}

TEST_P(NoteWindow, SavedWhileIconizedKeepsItsFullSize) {
    NoteRecord iconized = plainNote(u"a");
    iconized.iconized = true;
    const auto desk = run({iconized});
    fpost& note = desk->note(1);
    EXPECT_EQ(rectOf(note.hwnd).bottom - rectOf(note.hwnd).top, desk->desk->look.px(kIconizedHeight));
    EXPECT_TRUE(desk->desk->store.set(1, note.record, everyField()));
    EXPECT_EQ(desk->stored(1).height, 2250);
    EXPECT_EQ(desk->stored(1).width, 3000);
}

TEST_P(NoteWindow, NonsenseSizesAreMadeUsableOnScreenAndStayStored) {
    NoteRecord tiny = plainNote(u"tiny");
    tiny.width = 5;
    tiny.height = 5;
    NoteRecord none = plainNote(u"none");
    none.width = 0;
    none.height = -7;
    NoteRecord huge = plainNote(u"huge");
    huge.width = 2000000000;
    huge.height = 2000000000;
    const auto desk = run({tiny, none, huge});
    EXPECT_EQ(desk->note(1).place.Width(), desk->desk->look.twips(desk->desk->look.px(design::kMinWidth)));
    EXPECT_EQ(desk->note(2).place.Width(), 2910);
    EXPECT_EQ(desk->note(2).place.Height(), 1890);
    EXPECT_LE(rectOf(desk->note(3).hwnd).right - rectOf(desk->note(3).hwnd).left,
              GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(desk->stored(1).width, 5);
    EXPECT_EQ(desk->stored(3).width, 2000000000);
}

TEST_P(NoteWindow, RescuedNoteKeepsItsStoredPlace) {
    const auto desk = run({plainNote(u"far", -900000, 900000)});
    EXPECT_GE(desk->note(1).place.Left(), 0);
    EXPECT_EQ(desk->note(1).record.x, -900000);
    EXPECT_EQ(desk->stored(1).y, 900000);
}

TEST_P(NoteWindow, DeletePictureNeverLeavesTheNote) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (int width = 3000; width >= 1130; width -= 10) {
        note.pWidth(width);
        RECT client{};
        GetClientRect(note.hwnd, &client);
        RECT picture = rectOf(note.pic);
        MapWindowPoints(nullptr, note.hwnd, reinterpret_cast<POINT*>(&picture), 2);
        ASSERT_EQ(picture.right, client.right) << width;
        ASSERT_GE(picture.left, 0) << width;
    }
}

// --- Colours ----------------------------------------------------------------------------------------------

TEST_P(NoteWindow, PaintingSetsAllSevenSurfaces) {
    NoteRecord record = plainNote(u"a");
    record.alarmdate = u"01/01/2030";
    record.alarmtime = u"10:00:00";
    const auto desk = run({record});
    fpost& note = desk->note(1);
    note.Backcol(0x30C0F0);
    for (const HWND part : {note.nota, note.pic, note.pic2, note.lbl2, note.pic_time}) {
        EXPECT_EQ(pixelOf(part, 0, 0), 0x30C0F0U) << GetDlgCtrlID(part);
    }
    EXPECT_EQ(pixelOf(note.lbl, 150, 0), 0x30C0F0U) << "to the right of the buttons over it";
    EXPECT_EQ(pixelOf(note.hwnd, 1, 60), 0x30C0F0U);
}

TEST(NoteColour, NoteWithoutOneKeepsTheDesignColour) {
    NoteRecord record = plainNote(u"a");
    TestNotes desk(true, {record});
    desk.registry.find(u"kardel-1", u"backcolor")->clear();
    desk.killAndRestart();
    EXPECT_EQ(desk.note(1).Backcol(), static_cast<Rgb>(kDesignColor));
    EXPECT_EQ(pixelOf(desk.note(1).nota, 0, 0), static_cast<Rgb>(kDesignColor));
}

// --- Re-alignment -----------------------------------------------------------------------------------------

TEST_P(NoteWindow, ResizingRealignsForANormalNoteButNotForAnIconizedOne) {
    GlobalSettings settings;
    settings.AlignAll = true;
    const auto desk = run({plainNote(u"1"), plainNote(u"2", 6000, 6000)}, settings);
    EXPECT_EQ(desk->note(2).place.Top(), desk->note(1).place.Top() + desk->note(1).place.Height());
    desk->note(1).pHeight(3000);
    EXPECT_EQ(desk->note(2).place.Top(), desk->note(1).place.Top() + desk->note(1).place.Height());
    EXPECT_EQ(desk->stored(2).y, desk->note(2).place.Top());

    desk->note(1).toggleIconized();
    desk->note(2).place.moveTo(Twips{9000}, Twips{9000});
    desk->note(1).pWidth(2400);
    EXPECT_EQ(desk->note(2).place.Left(), 9000);
}

// --- Keys, messages, menu ---------------------------------------------------------------------------------

TEST_P(NoteWindow, DeleteKeyBelongsToTheOpenEditor) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    EXPECT_FALSE(note.commands.onKeyDown(VK_DELETE));
    note.EditCaption();
    EXPECT_FALSE(note.commands.onKeyDown(VK_DELETE));
    EXPECT_EQ(desk->desk->Count(), 1);
}

TEST_P(NoteWindow, EditKeyInTheOpenEditorKeepsWhatWasTyped) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"typed");
    EXPECT_TRUE(note.commands.onKeyDown(VK_F2));
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_EQ(windowText(note.editing.txtNota()), u"typed");
}

TEST_P(NoteWindow, WhatTheStoreCannotKeepCannotBeTyped) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), wide(Text(1023, u'x')));
    SendMessageW(note.editing.txtNota(), EM_SETSEL, 1023, 1023);
    for (const WPARAM letter : {L'y', L'z'})
        SendMessageW(note.editing.txtNota(), WM_CHAR, letter, 0);
    note.EditCaption();
    EXPECT_EQ(desk->stored(1).Nota, Text(1023, u'x') + (GetParam() ? u"yz" : u"y"));
    SetWindowTextW(note.editing.txtTitle(), wide(Text(127, u'x')));
    SendMessageW(note.editing.txtTitle(), EM_SETSEL, 127, 127);
    for (const WPARAM letter : {L'y', L'z'})
        SendMessageW(note.editing.txtTitle(), WM_CHAR, letter, 0);
    note.SaveCaption(true);
    EXPECT_EQ(desk->stored(1).Titolo, Text(127, u'x') + (GetParam() ? u"yz" : u"y"));
}

TEST_P(NoteWindow, OpeningTheMenuLeavesTheAlarmCounting) {
    const auto desk = run({every(u"daily", u"eachday")});
    fpost& note = desk->note(1);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmValid);
    EXPECT_EQ(note.alarm.rule.due, kDue);
    lockStores(*desk);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmValid)
        << "memory serves while the store is locked";
}

TEST_P(NoteWindow, TheMenuSaysWhatIsStoredOfTheAlarm) {
    const auto desk = run({once(u"a")});
    fpost& note = desk->note(1);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmOneOff);
    NoteRecord changed = every(u"a", u"eachday");  // by another program
    EXPECT_TRUE(desk->desk->store.set(1, changed, everyField()));
    EXPECT_FALSE(note.commands.input(note.commands.storedAlarm()).alarmOneOff);
    lockStores(*desk);
    EXPECT_TRUE(note.commands.input(note.commands.storedAlarm()).alarmOneOff) << "nothing else is known";
}

TEST_P(NoteWindow, CloseMessageIsIgnored) {
    const auto desk = run({plainNote(u"a")});
    SendMessageW(desk->note(1).hwnd, WM_CLOSE, 0, 0);
    EXPECT_TRUE(desk->note(1).visible());
    EXPECT_FALSE(desk->stored(1).closed);
}

TEST_P(NoteWindow, PartsHaveTheirIdsAndTexts) {
    const auto desk = run({plainNote(u"title")});
    fpost& note = desk->note(1);
    EXPECT_EQ(note.editing.txtNota(), nullptr);
    EXPECT_EQ(note.editing.txtTitle(), nullptr);
    note.EditForm();
    EXPECT_EQ(GetDlgItem(note.hwnd, ID_TXTNOTA), note.editing.txtNota());
    EXPECT_NE(note.editing.txtNota(), nullptr);
    EXPECT_EQ(note.editing.txtTitle(), nullptr);
    note.EditCaption();
    EXPECT_EQ(GetDlgItem(note.hwnd, ID_TXTTITLE), note.editing.txtTitle());
    EXPECT_NE(note.editing.txtTitle(), nullptr);
    EXPECT_EQ(note.editing.txtNota(), nullptr);
    note.SaveCaption(false);
    EXPECT_EQ(GetDlgItem(note.hwnd, ID_TXTTITLE), nullptr);
    const std::pair<HWND, int> parts[] = {{note.lbl, ID_LBL},   {note.lbl2, ID_LBL2},
                                          {note.pic, ID_PIC},   {note.nota, ID_NOTA},
                                          {note.pic2, ID_PIC2}, {note.pic_time, ID_PIC_TIME}};
    for (const auto& [window, id] : parts) {
        EXPECT_EQ(GetDlgCtrlID(window), id);
        EXPECT_EQ(GetParent(window), note.hwnd);
    }
    EXPECT_EQ(windowText(note.lbl), u"     title");
    EXPECT_EQ(windowText(note.nota), u"body of title");
}

TEST_P(NoteWindow, HiddenCommandsDoNothing) {
    const auto desk = run({plainNote(u"a")});
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_DONTDELETE, 0);
    EXPECT_FALSE(desk->desk->settings.DontDeleteWhenPlay);
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_TOPMOST, 0);
    EXPECT_TRUE(desk->stored(1).topmost);
}

// --- Hot areas --------------------------------------------------------------------------------------------

/// Presses the left button on a part, at a place in twips.
void press(const TestNotes& desk, HWND part, int x, int y) {
    const NoteLook& look = desk.desk->look;
    SendMessageW(part, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(look.px(Twips{x}), look.px(Twips{y})));
}

TEST_P(NoteWindow, TheIconizeAndCloseButtonsTakeThePressAtEveryCornerAndNotBesideIt) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (const auto& [x, y] : {std::pair{15, 30}, {195, 30}, {15, 240}, {195, 240}}) {
        const bool before = note.Iconized();
        press(*desk, note.lbl2, x, y);
        EXPECT_NE(note.Iconized(), before) << x << ", " << y;
        EXPECT_EQ(desk->stored(1).iconized, note.Iconized()) << x << ", " << y;
    }
    for (const auto& [x, y] :
         {std::pair{0, 30}, {210, 30}, {15, 15}, {15, 255}, {240, 120}, {255, 255}, {450, 15}}) {
        press(*desk, note.lbl2, x, y);
        EXPECT_FALSE(note.Iconized()) << x << ", " << y;
        EXPECT_TRUE(note.visible()) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair{255, 30}, {450, 30}, {255, 240}, {450, 240}}) {
        desk->desk->OpenNote(0);
        press(*desk, note.lbl2, x, y);
        EXPECT_FALSE(note.visible()) << x << ", " << y;
        EXPECT_TRUE(desk->stored(1).closed) << x << ", " << y;
    }
}

TEST_P(NoteWindow, TheDeletePictureAsksInItsUpperPartOnly) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    int asked = 0;
    desk->desk->host.ask = [&asked](const Text&, long, const Text&) { return ++asked, IDNO; };
    for (const auto& [x, y] : {std::pair{0, 0}, {255, 0}, {0, 225}, {255, 225}})
        press(*desk, note.pic, x, y);
    EXPECT_EQ(asked, 4);
    for (const int x : {0, 135, 255})
        press(*desk, note.pic, x, 240);
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(desk->desk->Count(), 1);
}

// --- Failures ---------------------------------------------------------------------------------------------

/// Whether the collection has posted the message about a failed save.
bool tookFailureReport(HWND tray) {
    MSG message{};
    return PeekMessageW(&message, tray, posted::kSaveFailed, posted::kSaveFailed, PM_REMOVE) != FALSE;
}

TEST_P(NoteWindow, FailedSaveKeepsTheTextAndTheNextSaveTriesAgain) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"typed while the disk was full");
    note.SaveNote();
    EXPECT_TRUE(tookFailureReport(desk->desk->tray.hwnd));
    EXPECT_EQ(windowText(note.nota), u"typed while the disk was full");
    EXPECT_EQ(desk->stored(1).Nota, u"body of a");

    fullDisk.reset();
    note.EditForm();
    note.SaveNote();
    EXPECT_EQ(desk->stored(1).Nota, u"typed while the disk was full");
}

TEST_P(NoteWindow, ExitTriesOnceMoreWhatTheStoreRefused) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), L"typed while the disk was full");
    note.SaveNote();
    note.commands.mnuTopmost();
    fullDisk.reset();
    desk->desk->CommitEdits();
    EXPECT_EQ(desk->stored(1).Nota, u"typed while the disk was full");
    EXPECT_TRUE(desk->stored(1).topmost);
}

TEST_P(NoteWindow, NoteWhoseCreationFailedIsCountedOnceASaveWorks) {
    const auto desk = run({plainNote(u"a")});
    auto fullDisk = std::make_unique<FullDisk>(*desk);
    ASSERT_TRUE(desk->desk->NewNote());
    fullDisk.reset();
    desk->note(2).commands.mnuTopmost();
    EXPECT_EQ(desk->stored(2).Titolo, u"- 2 -");
    DataHeader header;
    if (GetParam()) {
        EXPECT_EQ(desk->registry.text(u"setting", u"count"), u"2");
    } else {
        ASSERT_TRUE(decodeHeader(desk->folder.content[Text(kHeaderFile)], header));
        EXPECT_EQ(header.count, 2);
    }
}

TEST_P(NoteWindow, NoteThatCouldNotBeReadIsNotDeletedEither) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b")});
    desk->note(1).record.readOnly = true;
    desk->note(1).DeleteForm(true);
    EXPECT_EQ(desk->desk->Count(), 2);
    EXPECT_EQ(desk->stored(1).Titolo, u"a");
}

TEST_P(NoteWindow, NoteThatCouldNotBeReadIsNeverWrittenBack) {
    const auto desk = runUnreadable();
    EXPECT_TRUE(desk->note(1).record.readOnly);
    desk->folder.locked.clear();
    desk->registry.locked.clear();
    desk->note(1).place.moveTo(Twips{4500}, Twips{4500});
    desk->note(1).kept.save({NoteField::X, NoteField::Y, NoteField::Titolo, NoteField::Nota});
    EXPECT_EQ(desk->stored(1).x, 1500);
    EXPECT_EQ(desk->stored(1).Titolo, u"a");
    EXPECT_EQ(desk->stored(1).Nota, u"body of a");
}

TEST_P(NoteWindow, NoteThatCouldNotBeReadTakesNoAlarmColourOrMoveAndSaysSo) {
    const auto desk = runUnreadable();
    int asked = 0;
    desk->desk->host.ask = [&asked](const Text&, long, const Text&) { return ++asked, IDOK; };
    fpost& note = desk->note(1);
    const NoteRecord before = note.record;
    const RECT at = rectOf(note.hwnd);
    const std::vector<std::function<void()>> changes{
        [&] { note.mnuAlarm(); }, [&] { note.mnuColor(); }, [&] { note.commands.mnuTopmost(); },
        [&] { note.toggleIconized(); }, [&] { note.place.moveStep(1, 0); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        EXPECT_EQ(asked, static_cast<int>(i) + 1);
        EXPECT_FALSE(desk->desk->dialog.open());
    }
    EXPECT_EQ(note.record, before);
    const RECT now = rectOf(note.hwnd);
    EXPECT_TRUE(EqualRect(&now, &at) != FALSE);
    EXPECT_FALSE(note.alarm.isCounting());
}

TEST_P(NoteWindow, NotesThatCouldNotBeReadAppearOnceTheyCan) {
    std::vector<NoteRecord> notes{plainNote(u"a"), plainNote(u"b", 4500, 4500), plainNote(u"c")};
    notes[1].alarmdate = u"16/06/2026";
    notes[1].alarmtime = u"12:00:00";
    notes[2].closed = true;
    const auto desk = run(notes);
    const auto lock = [&](bool on) {
        for (const TextView section : {u"kardel-1", u"kardel-2", u"kardel-3"}) {
            if (on) desk->registry.locked.insert(Text(section));
        }
        if (on) desk->folder.locked.insert(Text(kNoteFile));
        if (!on) desk->registry.locked.clear();
        if (!on) desk->folder.locked.clear();
    };
    const auto ticks = [&](int count) {
        for (int i = 0; i < count; ++i)
            desk->desk->Tick();
        pumpPending();
    };
    lock(true);
    desk->killAndRestart();
    ticks(100);
    ASSERT_EQ(desk->desk->Count(), 3);
    EXPECT_TRUE(desk->note(2).record.readOnly);
    lock(false);
    ticks(200);
    ASSERT_EQ(desk->desk->Count(), 3);
    for (int number = 1; number <= 3; ++number)
        EXPECT_EQ(storeFree(desk->note(number).record),
                  storeFree(notes[static_cast<std::size_t>(number) - 1]));
    EXPECT_EQ(windowText(desk->note(2).nota), u"body of b");
    EXPECT_EQ(desk->note(2).place.Left(), 4500);
    EXPECT_TRUE(desk->note(2).alarm.isCounting());
    EXPECT_TRUE(desk->note(1).visible() && desk->note(2).visible());
    EXPECT_FALSE(desk->note(3).visible());
    desk->note(1).place.moveTo(Twips{6000}, Twips{6000});
    desk->note(1).kept.save({NoteField::X});
    EXPECT_EQ(desk->stored(1).x, 6000);
}

// --- Alarms at load ---------------------------------------------------------------------------------------

TEST_P(NoteWindow, MissedDailyAlarmMovesOnSilentlyAndStaysDaily) {
    NoteRecord daily = plainNote(u"daily");
    daily.alarmdate = u"*";
    daily.alarmtime = u"09:00:00";
    daily.interval = u"eachday";
    const auto desk = run({daily});
    const fpost& note = desk->note(1);
    EXPECT_FALSE(note.Alarming());
    ASSERT_TRUE(note.alarm.rule.due.has_value());
    EXPECT_EQ(*note.alarm.rule.due, instantOf({2026, 6, 16}, {9, 0, 0}));
    EXPECT_EQ(desk->stored(1).alarmdate, u"*");
    EXPECT_EQ(desk->stored(1).interval, u"eachday");
}

TEST_P(NoteWindow, MissedRepeatIsMovedOnAndWrittenBack) {
    NoteRecord repeat = plainNote(u"repeat");
    repeat.alarmdate = u"14/06/2026";
    repeat.alarmtime = u"09:00:00";
    repeat.alarmrepeatnumber = 2;
    repeat.alarmrepeatevery = u"hh";
    const auto desk = run({repeat});
    EXPECT_EQ(desk->stored(1).alarmdate, u"15/06/2026");
    EXPECT_EQ(desk->stored(1).alarmtime, u"13:00:00");
    EXPECT_EQ(windowText(desk->note(1).pic_time), u"1:00:00");
    EXPECT_TRUE(IsWindowVisible(desk->note(1).pic_time));
}

TEST_P(NoteWindow, WeekdayRuleWithoutADayHasNothingToWaitFor) {
    NoteRecord weekly = plainNote(u"weekly");
    weekly.alarmdate = u"15/06/2026";
    weekly.alarmtime = u"09:00:00";
    weekly.alarmweekday = 8;
    const auto desk = run({weekly});
    EXPECT_FALSE(desk->note(1).alarm.rule.due.has_value());
    EXPECT_FALSE(IsWindowVisible(desk->note(1).pic_time));
    EXPECT_EQ(desk->stored(1).alarmweekday, 8);
}

// --- Among the other windows ----------------------------------------------------------------------------

TEST_P(NoteWindow, HasNoOwnerAndNoTaskBarButton) {
    const auto desk = run({plainNote(u"a")});
    const HWND note = desk->note(1).hwnd;
    EXPECT_EQ(GetWindow(note, GW_OWNER), nullptr) << "otherwise a click would bring all notes to the front";
    EXPECT_NE(GetWindowLongPtrW(note, GWL_EXSTYLE) & WS_EX_TOOLWINDOW, 0);
}

// --- Numbers and flags of the collection -----------------------------------------------------------------

TEST_P(NoteWindow, CountsFollowTheNotes) {
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

TEST_P(NoteWindow, AllClosedAndAllIconizedAreSeenAtTheStart) {
    NoteRecord note = plainNote(u"a");
    note.closed = true;
    note.iconized = true;
    const auto desk = run({note, note});
    EXPECT_TRUE(desk->desk->AllHidden());
    EXPECT_TRUE(desk->desk->AllIconized());
}

TEST_P(NoteWindow, DeskWithoutNotesIsNeitherHiddenNorIconized) {
    const auto desk = run({});
    EXPECT_FALSE(desk->desk->AllHidden());
    EXPECT_FALSE(desk->desk->AllIconized());
}

// --- Text that fits the window ---------------------------------------------------------------------------

TEST_P(NoteWindow, LongTitleWidensTheNoteUpToTheScreen) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.CheckTitleWidth();
    EXPECT_EQ(desk->stored(1).width, 3000);
    note.Titolo(Text(60, u'W'));
    note.CheckTitleWidth();
    const int wide = desk->stored(1).width;
    EXPECT_GT(wide, 3000);
    EXPECT_EQ(wide, note.pWidth());
    note.Titolo(Text(128, u'W'));
    note.CheckTitleWidth();
    EXPECT_LE(note.place.Width(), desk->desk->look.twips(GetSystemMetrics(SM_CXSCREEN)));
}

TEST_P(NoteWindow, FitsWidthAndHeightToTheBody) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.editing.FitWidth();
    note.editing.FitHeight();
    EXPECT_EQ(desk->stored(1).width, 3000) << "a short body does not need more room";
    EXPECT_EQ(desk->stored(1).height, 2250);
    note.record.Nota = u"one line that is certainly wider than two hundred pixels of a note";
    note.editing.FitWidth();
    EXPECT_GT(desk->stored(1).width, 3000);
    note.record.Nota = u"1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10\r\n11\r\n12";
    note.editing.FitHeight();
    EXPECT_GT(desk->stored(1).height, 2250);
}

TEST_P(NoteWindow, WrappedTextBreaksWhereTheNoteDoes) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.record.Nota = u"some words that do not fit on one line of this narrow note\r\nend";
    const Text wrapped = note.editing.WrappedText();
    EXPECT_NE(wrapped.find(u"\r\n"), wrapped.rfind(u"\r\n"));
    EXPECT_EQ(replaced(replaced(wrapped, u"\r\n", u""), u" ", u""),
              replaced(replaced(note.record.Nota, u"\r\n", u""), u" ", u""));
    note.record.Nota.clear();
    EXPECT_EQ(note.editing.WrappedText(), u"");
}

}  // namespace
