// The editor by itself, over a window that is not a note: what keys, characters and the wheel do to the text,
// and what it then asks of its note.
#include "resources/resource.h"
#include "tests/window/EditorDesk.h"

namespace {

// --- Begin and end ----------------------------------------------------------------------------------------

TEST_F(Editing, MakesItsControlAndTakesItAway) {
    for (const Edited what : {Edited::Body, Edited::Title}) {
        openAtEnd(u"milk", what);
        const HWND window = control();
        EXPECT_EQ(GetDlgCtrlID(window), what == Edited::Body ? ID_TXTNOTA : ID_TXTTITLE);
        EXPECT_TRUE(editor.edits(what) && editor.isOpen());
        EXPECT_EQ(selection(), (TextRange{4, 4}));
        EXPECT_EQ(GetFocus(), window);
        editor.end(true);
        EXPECT_FALSE(IsWindow(window) || editor.isOpen() || editor.edits(what));
        EXPECT_EQ(control(), nullptr);
        EXPECT_EQ(GetFocus(), parent) << "the keyboard stays with the note";
        EXPECT_EQ(note.kept, u"milk");
    }
    EXPECT_EQ(note.closed, 2);
}

TEST_F(Editing, KeepsOrDropsOnceHoweverItEnds) {
    openAtEnd(u"milk");
    type(u"!");
    key(VK_ESCAPE, kEscape);
    EXPECT_FALSE(note.kept.has_value());
    EXPECT_EQ(note.closed, 1);
    openAtEnd(u"milk");
    type(u"!");
    SetFocus(parent);
    EXPECT_EQ(note.kept, u"milk!");
    EXPECT_EQ(note.closed, 2);
    editor.end(true);
    EXPECT_EQ(note.closed, 2);
    EXPECT_EQ(note.dropped, 2);
    note.stores = false;
    openAtEnd(u"milk");
    editor.end(true);
    EXPECT_EQ(note.dropped, 2) << "what the store refused stays in the draft";
}

TEST_F(Editing, GoesWithItsNote) {
    openAtEnd(u"milk");
    const HWND window = control();
    DestroyWindow(parent);
    EXPECT_FALSE(IsWindow(window) || editor.isOpen());
    EXPECT_EQ(control(), nullptr);
}

NoteEditor* endedInMenu = nullptr;

/// Ends the edit once its menu is open.
void CALLBACK endInMenu(HWND timers, UINT, UINT_PTR id, DWORD) noexcept {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof(thread);
    GetGUIThreadInfo(GetCurrentThreadId(), &thread);
    if ((thread.flags & GUI_INMENUMODE) == 0) return;
    KillTimer(timers, id);
    endedInMenu->end(true);
}

TEST_F(Editing, EndsInsideItsOwnMenu) {
    openAtEnd(u"milk");
    const HWND window = control();
    endedInMenu = &editor;
    SetTimer(parent, 1, 50, endInMenu);
    SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window), MAKELPARAM(120, 140));
    EXPECT_FALSE(editor.isOpen());
    EXPECT_EQ(note.kept, u"milk");
    for (int tries = 0; tries < 100 && IsWindow(window) != FALSE; ++tries)
        pumpFor(20);
    EXPECT_FALSE(IsWindow(window));
}

// --- Keys and characters ----------------------------------------------------------------------------------

TEST_F(Editing, CtrlBackspaceDeletesTheWordBeforeTheCaret) {
    openAtEnd(u"milk and bread");
    character(kCtrlBackspace);
    EXPECT_EQ(text(), u"milk and ");
    undo();
    EXPECT_EQ(text(), u"milk and bread");
    SendMessageW(control(), EM_SETSEL, 4, 4);
    character(kCtrlBackspace);
    EXPECT_EQ(text(), u" and bread");
    EXPECT_EQ(selection(), (TextRange{0, 0}));
    character(kCtrlBackspace);
    EXPECT_EQ(text(), u" and bread") << "there is no word before it";
    SendMessageW(control(), EM_SETSEL, 1, 5);
    character(kCtrlBackspace);
    EXPECT_EQ(text(), u" bread") << "only what is selected";
    editor.end(true);
    openAtEnd(u"a title", Edited::Title);
    character(kCtrlBackspace);
    EXPECT_EQ(text(), u"a ");
}

TEST_F(Editing, ALineBreakThatNoKeyTypedIsInserted) {
    openAtEnd(u"");
    type(u"a\rb\nc\r\nd");
    EXPECT_TRUE(editor.isOpen());
    EXPECT_EQ(text(), u"a\r\nb\r\nc\r\nd");
    SendMessageW(control(), WM_KEYDOWN, VK_PACKET, 1);  // as SendInput brings it
    character(kReturn);
    EXPECT_EQ(text(), u"a\r\nb\r\nc\r\nd\r\n");
    key(VK_RETURN, kReturn);
    EXPECT_FALSE(editor.isOpen()) << "the key still ends the edit";
}

TEST_F(Editing, ALineBreakThatDoesNotFitInsertsNothing) {
    note.bytes = 6;
    open(u"milk!", 2, 2);
    key(VK_RETURN, kReturn, VK_SHIFT);
    EXPECT_EQ(text(), u"milk!");
    character(kReturn);
    EXPECT_EQ(text(), u"milk!");
    note.bytes = 8;
    key(VK_RETURN, kLineFeed, VK_CONTROL);
    EXPECT_EQ(text(), u"milk!") << "not half of the blank line";
    EXPECT_EQ(selection(), (TextRange{2, 2}));
    EXPECT_FALSE(canUndo());
    key(VK_RETURN, kReturn, VK_SHIFT);
    EXPECT_EQ(text(), u"mi\r\nlk!");
}

TEST_F(Editing, WhatDoesNotFitLeavesCaretSelectionAndUndo) {
    note.bytes = 8;
    open(u"ab\u3042cd", 2, 2);  // six bytes
    type(u"!");
    ASSERT_EQ(text(), u"ab!\u3042cd");
    type(u"\u3044");
    EXPECT_EQ(text(), u"ab!\u3042cd");
    EXPECT_EQ(selection(), (TextRange{3, 3}));
    EXPECT_TRUE(canUndo());
    undo();
    EXPECT_EQ(text(), u"ab\u3042cd") << "the letter typed before can still be undone";
    note.bytes = 6;
    SendMessageW(control(), EM_SETSEL, 0, 1);
    type(u"\u3044");
    EXPECT_EQ(text(), u"ab\u3042cd");
    EXPECT_EQ(selection(), (TextRange{0, 1})) << "what was to be replaced stays selected";
    SendMessageW(control(), EM_SETSEL, 2, 3);
    type(u"\u3044");
    EXPECT_EQ(text(), u"ab\u3044cd") << "what it replaces makes room";
}

TEST_F(Editing, ALetterOfTwoHalvesIsTypedWholeOrNotAtAll) {
    openAtEnd(u"");
    type(u"a\U0001F600b");
    EXPECT_EQ(text(), u"a\U0001F600b");
    note.bytes = 4;  // two bytes are left, and the page makes two question marks of it
    type(u"\U0001F600");
    EXPECT_EQ(text(), u"a\U0001F600b");
    character(0xD83D);
    type(u"c");
    EXPECT_EQ(text().find(char16_t{0xD83D}, 2), Text::npos) << "no half without the other";
}

TEST_F(Editing, ATextThatIsTooLongCanBeShortened) {
    note.bytes = 3;
    openAtEnd(u"too long");
    type(u"x");
    EXPECT_EQ(text(), u"too long");
    character(kCtrlBackspace);
    EXPECT_EQ(text(), u"too ");
    key(VK_BACK, VK_BACK);
    key(VK_BACK, VK_BACK);
    EXPECT_EQ(text(), u"to");
    type(u"x");
    EXPECT_EQ(text(), u"tox");
}

TEST_F(Editing, TakesLettersFromRightToLeft) {
    openAtEnd(u"");
    type(u"\u05E9\u05DC\u05D5\u05DD \u0633\u0644\u0627\u0645 abc");
    character(kCtrlBackspace);
    type(u"\u05D0");
    editor.end(true);
    EXPECT_EQ(note.kept, u"\u05E9\u05DC\u05D5\u05DD \u0633\u0644\u0627\u0645 \u05D0")
        << "in the order in which they were typed";
}

TEST_F(Editing, LetsTheNoteHaveItsKeysFirst) {
    openAtEnd(u"milk");
    EXPECT_EQ(SendMessageW(control(), WM_KEYDOWN, VK_F2, 1), 0);
    EXPECT_EQ(text(), u"milk");
}

// --- The wheel --------------------------------------------------------------------------------------------

TEST_F(Editing, TheWheelScrolls) {
    Text lines = u"0";
    for (int i = 1; i < 40; ++i)
        lines += u"\r\n" + Text(1, static_cast<char16_t>(u'0' + i % 10));
    open(lines, 0, 0);
    SendMessageW(control(), EM_SCROLLCARET, 0, 0);
    UINT notch = 0;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &notch, 0);
    const auto turn = [this](int delta) {
        SendMessageW(control(), WM_MOUSEWHEEL, MAKEWPARAM(0, delta), MAKELPARAM(150, 150));
        return static_cast<int>(SendMessageW(control(), EM_GETFIRSTVISIBLELINE, 0, 0));
    };
    EXPECT_EQ(turn(-120), static_cast<int>(notch));
    EXPECT_EQ(turn(-120), 2 * static_cast<int>(notch));
    EXPECT_EQ(turn(120), static_cast<int>(notch));
    EXPECT_EQ(turn(1200), 0);
    const int last = turn(-120 * 30);
    EXPECT_GT(last, 25);
    EXPECT_LT(last, 40 - 4) << "the last page stays full";
    EXPECT_EQ(text(), lines);
    EXPECT_EQ(selection(), (TextRange{0, 0})) << "the caret stays where it is";
}

// --- The draft --------------------------------------------------------------------------------------------

TEST_F(Editing, SavesADraftAtMostOnceASecond) {
    openAtEnd(u"");
    Text typed;
    for (int i = 0; note.drafts.size() < 3 && i < 2000; ++i) {
        character(u'x');
        typed += u'x';
        ASSERT_TRUE(note.drafts.empty() || typed.starts_with(note.drafts.back()));
        pumpFor(10);
    }
    ASSERT_EQ(note.drafts.size(), 3U);
    EXPECT_GE(note.draftTimes[1] - note.draftTimes[0], 950U);
    EXPECT_GE(note.draftTimes[2] - note.draftTimes[1], 950U);
    character(u'y');
    EXPECT_EQ(note.drafts.size(), 3U) << "never while a key is being handled";
    editor.end(true);
    pumpFor(1200);
    EXPECT_EQ(note.drafts.size(), 3U) << "nothing is saved after the end";
    EXPECT_EQ(note.dropped, 1);
}

}  // namespace
