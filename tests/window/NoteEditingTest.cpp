// Editing a note in place: what each key and mouse press does to the text, the editor and the store.
#include "tests/window/AlarmDesk.h"
#include "tests/window/MenuDesk.h"

namespace {

class NoteEditing : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, NoteEditing, testing::Bool(), storeName);

std::pair<DWORD, DWORD> selection(HWND editor) {
    DWORD from = 0;
    DWORD to = 0;
    SendMessageW(editor, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    return {from, to};
}

/// Opens the body's editor and gives it this text and this selection.
void editBody(fpost& note, const wchar_t* text, int from, int to) {
    note.EditForm();
    SetWindowTextW(note.editing.txtNota(), text);
    SendMessageW(note.editing.txtNota(), EM_SETSEL, static_cast<WPARAM>(from), to);
}

// --- Keys -------------------------------------------------------------------------------------------------

TEST_P(NoteEditing, EnterKeepsTheBodyAndClosesItsEditor) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"typed", 2, 2);
    EXPECT_TRUE(IsWindowVisible(note.editing.txtNota()));
    typeKey(note.editing.txtNota(), VK_RETURN, kReturn);
    EXPECT_FALSE(note.editing.bodyBeingEdited());
    EXPECT_FALSE(IsWindowVisible(note.editing.txtNota()));
    EXPECT_EQ(windowText(note.nota), u"typed");
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
}

TEST_P(NoteEditing, ShiftAndCtrlEnterBreakTheLineAtTheCaret) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"ab", 1, 1);
    {
        const HeldKeys held({VK_SHIFT});
        typeKey(note.editing.txtNota(), VK_RETURN, kReturn);
    }
    EXPECT_EQ(windowText(note.editing.txtNota()), u"a\r\nb");
    EXPECT_EQ(selection(note.editing.txtNota()), std::make_pair(DWORD{3}, DWORD{3}));
    {
        const HeldKeys held({VK_CONTROL});
        typeKey(note.editing.txtNota(), VK_RETURN, kLineFeed);
    }
    EXPECT_EQ(windowText(note.editing.txtNota()), u"a\r\n\r\n\r\nb");
    EXPECT_EQ(selection(note.editing.txtNota()), std::make_pair(DWORD{7}, DWORD{7}));
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_EQ(desk->stored(1).Nota, u"body of a") << "kept only when the editor closes";
    note.SaveNote();
    EXPECT_EQ(desk->stored(1).Nota, u"a\r\n\r\n\r\nb");
}

TEST_P(NoteEditing, ALineBreakReplacesTheSelectionAndCanBeUndone) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"one two", 3, 7);
    {
        const HeldKeys held({VK_SHIFT});
        typeKey(note.editing.txtNota(), VK_RETURN, kReturn);
    }
    EXPECT_EQ(windowText(note.editing.txtNota()), u"one\r\n");
    SendMessageW(note.editing.txtNota(), EM_UNDO, 0, 0);
    EXPECT_EQ(windowText(note.editing.txtNota()), u"one two");
}

TEST_P(NoteEditing, EscLeavesTheOldBodyVisibleAndStoresNothing) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    const int before = changesOf(*desk);
    editBody(note, L"not to be kept", 0, 0);
    typeKey(note.editing.txtNota(), VK_ESCAPE, kEscape);
    EXPECT_FALSE(note.editing.bodyBeingEdited());
    EXPECT_FALSE(IsWindowVisible(note.editing.txtNota()));
    EXPECT_EQ(windowText(note.nota), u"body of a");
    EXPECT_EQ(changesOf(*desk), before);
    note.EditForm();
    EXPECT_EQ(windowText(note.editing.txtNota()), u"body of a")
        << "the next edit begins with the note's text";
}

TEST_P(NoteEditing, AKeyThatTypedNothingLeavesTheNextLetterALetter) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"", 0, 0);
    for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_ESCAPE}}) {
        SendMessageW(note.editing.txtNota(), WM_KEYDOWN, key, 0);
        SendMessageW(note.editing.txtNota(), WM_CHAR, L'x', 0);
        ASSERT_TRUE(note.editing.bodyBeingEdited()) << key;
        typeKey(note.editing.txtNota(), key);
        ASSERT_TRUE(note.editing.bodyBeingEdited()) << key;
    }
    EXPECT_EQ(windowText(note.editing.txtNota()), u"xx");
    SendMessageW(note.editing.txtNota(), WM_CHAR, kEscape, 0);
    EXPECT_TRUE(note.editing.bodyBeingEdited()) << "no key typed it";
}

TEST_P(NoteEditing, EnterOfAnInputMethodBelongsToItsComposition) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"text", 4, 4);
    typeKey(note.editing.txtNota(), VK_PROCESSKEY, kReturn);
    typeKey(note.editing.txtNota(), VK_PROCESSKEY, kEscape);
    EXPECT_TRUE(note.editing.bodyBeingEdited());
}

TEST_P(NoteEditing, CtrlASelectsEverything) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"one\r\ntwo", 2, 2);
    SendMessageW(note.editing.txtNota(), WM_CHAR, 1, 0);
    EXPECT_EQ(selection(note.editing.txtNota()), std::make_pair(DWORD{0}, DWORD{8}));
}

// --- The title --------------------------------------------------------------------------------------------

TEST_P(NoteEditing, TheTitlesEditorFillsTheRoomBesideTheDeletePicture) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditCaption();
    EXPECT_EQ(windowText(note.editing.txtTitle()), u"a");
    EXPECT_EQ(selection(note.editing.txtTitle()), std::make_pair(DWORD{1}, DWORD{1}));
    EXPECT_FALSE(IsWindowVisible(note.lbl2) || IsWindowVisible(note.pic));
    const RECT editor = rectOf(note.editing.txtTitle());
    const RECT picture = rectOf(note.pic);
    EXPECT_EQ(picture.left - editor.right, desk->desk->look.px(design::kTitleGap));
    EXPECT_EQ(editor.left - rectOf(note.lbl).left, desk->desk->look.px(design::kLeadWidth));
}

TEST_P(NoteEditing, EnterKeepsTheTitleEverywhereItShows) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditCaption();
    SetWindowTextW(note.editing.txtTitle(), L"new");
    typeKey(note.editing.txtTitle(), VK_RETURN, kReturn);
    EXPECT_FALSE(note.editing.titleBeingEdited() || IsWindowVisible(note.editing.txtTitle()));
    EXPECT_TRUE(IsWindowVisible(note.lbl2) && IsWindowVisible(note.pic) && IsWindowVisible(note.pic2));
    EXPECT_EQ(windowText(note.lbl), u"     new");
    EXPECT_EQ(windowText(note.hwnd), u"new");
    EXPECT_EQ(desk->stored(1).Titolo, u"new");
    EXPECT_EQ(trayEntry(*desk, 0), u"new");
}

TEST_P(NoteEditing, EscKeepsTheOldTitleAndStoresNothing) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    const int before = changesOf(*desk);
    note.EditCaption();
    SetWindowTextW(note.editing.txtTitle(), L"not to be kept");
    typeKey(note.editing.txtTitle(), VK_ESCAPE, kEscape);
    EXPECT_FALSE(note.editing.titleBeingEdited() || IsWindowVisible(note.editing.txtTitle()));
    EXPECT_TRUE(IsWindowVisible(note.lbl2) && IsWindowVisible(note.pic));
    EXPECT_EQ(windowText(note.lbl), u"     a");
    EXPECT_EQ(changesOf(*desk), before);
}

TEST_P(NoteEditing, TheTitleEndsWithACharacterThatNoKeyTyped) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditCaption();
    SetWindowTextW(note.editing.txtTitle(), L"dictated");
    SendMessageW(note.editing.txtTitle(), WM_CHAR, kReturn, 0);
    EXPECT_FALSE(note.editing.titleBeingEdited() || IsWindowVisible(note.editing.txtTitle()));
    EXPECT_EQ(desk->stored(1).Titolo, u"dictated");
    note.EditCaption();
    SetWindowTextW(note.editing.txtTitle(), L"not to be kept");
    SendMessageW(note.editing.txtTitle(), WM_CHAR, kEscape, 0);
    EXPECT_FALSE(note.editing.titleBeingEdited() || IsWindowVisible(note.editing.txtTitle()));
    EXPECT_EQ(desk->stored(1).Titolo, u"dictated");
}

TEST_P(NoteEditing, AnEmptyTitleLeavesOnlyItsIndentAndAnEmptyBodyNothing) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditCaption();
    SetWindowTextW(note.editing.txtTitle(), L"");
    typeKey(note.editing.txtTitle(), VK_RETURN, kReturn);
    EXPECT_EQ(windowText(note.lbl), u"     ");
    EXPECT_EQ(desk->stored(1).Titolo, u"");
    EXPECT_EQ(trayEntry(*desk, 0), u"- 1 -");
    editBody(note, L"", 0, 0);
    typeKey(note.editing.txtNota(), VK_RETURN, kReturn);
    EXPECT_EQ(windowText(note.nota), u"");
    EXPECT_EQ(desk->stored(1).Nota, u"");
}

TEST_P(NoteEditing, AnIconizedNoteOpensItsTitle) {
    NoteRecord iconized = plainNote(u"a");
    iconized.iconized = true;
    const auto desk = run({iconized});
    fpost& note = desk->note(1);
    typeKey(note.hwnd, VK_F2);
    EXPECT_TRUE(note.editing.titleBeingEdited());
    EXPECT_FALSE(note.editing.bodyBeingEdited());
    EXPECT_FALSE(IsWindowVisible(note.pic2)) << "the grip would cover the end of the title";
    note.SaveCaption(false);
    EXPECT_TRUE(IsWindowVisible(note.pic2));
}

TEST_P(NoteEditing, WhatTheStoreCannotKeepCannotBeTyped) {
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

// --- What ends an edit ------------------------------------------------------------------------------------

TEST_P(NoteEditing, LosingTheKeyboardKeepsWhatWasTyped) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000, 6000)});
    fpost& note = desk->note(1);
    editBody(note, L"typed", 0, 0);
    SetFocus(desk->note(2).hwnd);
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
    note.EditCaption();
    SetWindowTextW(note.editing.txtTitle(), L"renamed");
    SetFocus(desk->note(2).hwnd);
    EXPECT_EQ(desk->stored(1).Titolo, u"renamed");
    EXPECT_FALSE(note.editing.bodyBeingEdited() || note.editing.titleBeingEdited());
}

TEST_P(NoteEditing, TheTwoEditorsAreNeverOpenAtOnce) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    editBody(note, L"typed", 0, 0);
    note.EditCaption();
    EXPECT_TRUE(note.editing.titleBeingEdited());
    EXPECT_FALSE(note.editing.bodyBeingEdited() || IsWindowVisible(note.editing.txtNota()));
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
    SetWindowTextW(note.editing.txtTitle(), L"renamed");
    note.EditForm();
    EXPECT_TRUE(note.editing.bodyBeingEdited());
    EXPECT_FALSE(note.editing.titleBeingEdited() || IsWindowVisible(note.editing.txtTitle()));
    EXPECT_EQ(desk->stored(1).Titolo, u"renamed");
}

TEST_P(NoteEditing, AnEditEndsTheResizeModeSoThatTheArrowsMoveTheCaret) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.place.resizer.setMode(true);
    editBody(note, L"typed", 5, 5);
    EXPECT_FALSE(note.place.resizer.isOn());
    typeKey(note.editing.txtNota(), VK_LEFT);
    EXPECT_EQ(selection(note.editing.txtNota()).first, 4U);
    EXPECT_EQ(note.pWidth(), 3000);
}

// --- Texts from elsewhere ---------------------------------------------------------------------------------

TEST_P(NoteEditing, LineBreaksFromElsewhereAreShownAndWrittenBackOnlyWhenEdited) {
    NoteRecord record = plainNote(u"a");
    record.Nota = u"one\ntwo\rthree";
    const auto desk = run({record});
    fpost& note = desk->note(1);
    EXPECT_EQ(windowText(note.nota), u"one\r\ntwo\r\nthree");
    note.EditForm();
    EXPECT_EQ(SendMessageW(note.editing.txtNota(), EM_GETLINECOUNT, 0, 0), 3);
    note.SaveNote();
    EXPECT_EQ(desk->stored(1).Nota, record.Nota);
    note.EditForm();
    SendMessageW(note.editing.txtNota(), WM_CHAR, L'!', 0);
    note.SaveNote();
    EXPECT_EQ(desk->stored(1).Nota, u"one\r\ntwo\r\nthree!");
}

TEST_P(NoteEditing, TheGripDoesNotLieOverTheTextThatIsTyped) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.EditForm();
    const RECT editor = rectOf(note.editing.txtNota());
    const RECT grip = rectOf(note.pic2);
    ASSERT_LT(grip.left, editor.right);
    ASSERT_LT(grip.top, editor.bottom);
    EXPECT_EQ(WindowFromPoint({grip.left + 2, grip.top + 2}), note.pic2) << "it can still be pressed";
    for (const int height : {2250, 1800, 3000}) {
        note.pHeight(height);
        RECT text{};
        SendMessageW(note.editing.txtNota(), EM_GETRECT, 0, reinterpret_cast<LPARAM>(&text));
        EXPECT_LE(rectOf(note.editing.txtNota()).top + text.bottom, rectOf(note.pic2).top) << height;
        EXPECT_GT(text.bottom, 40) << height;
    }
}

// --- Text that fits the window ----------------------------------------------------------------------------

TEST_P(NoteEditing, LongTitleWidensTheNoteUpToTheScreen) {
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

TEST_P(NoteEditing, FitsWidthAndHeightToTheBody) {
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

}  // namespace
