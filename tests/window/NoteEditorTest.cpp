// The editor by itself, over a window that is not a note: what keys, characters, the clipboard, the wheel and
// an input method do to the text, and what it then asks of its note.
#include "note/NoteEditor.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "note/NoteLook.h"
#include "resources/resource.h"
#include "support/Window.h"
#include "tests/support/TestCodePages.h"
// Need windows.h before them.
#include <commctrl.h>
#include <imm.h>

namespace {

constexpr WPARAM kReturn = 13;
constexpr WPARAM kLineFeed = 10;
constexpr WPARAM kEscape = 27;
constexpr WPARAM kCtrlBackspace = 0x7F;

/// A note that accepts any text up to a number of bytes in a double-byte code page.
class FakeNote final : public NoteEditorHost {
public:
    bool fits(Edited, const Text& text) const override { return encodedLength(kanaPage(), text) <= bytes; }
    bool keepEdit(Edited, const Text& text) override {
        kept = text;
        return stores;
    }
    void editClosed(Edited) override { ++closed; }
    bool keyOfNote(UINT, WPARAM key, LPARAM) override { return key == VK_F2; }
    void saveDraft(Edited, const Text& text) override {
        drafts.push_back(text);
        draftTimes.push_back(GetTickCount64());
    }
    void dropDraft() override { ++dropped; }

    std::size_t bytes = 1024;
    bool stores = true;
    std::optional<Text> kept;
    std::vector<Text> drafts;
    std::vector<ULONGLONG> draftTimes;
    int closed = 0;
    int dropped = 0;
};

LRESULT CALLBACK parentProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    auto* const editor = reinterpret_cast<NoteEditor*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_COMMAND && lp != 0 && editor != nullptr) editor->onNotice(HIWORD(wp));
    return DefWindowProcW(window, message, wp, lp);
}

int balloons = 0;
Text balloonText;
WNDPROC editorsOwn = nullptr;

/// Counts the balloons that the editor is asked to show.
LRESULT CALLBACK balloonEar(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (message == EM_SHOWBALLOONTIP) {
        ++balloons;
        balloonText = fromWide(reinterpret_cast<const EDITBALLOONTIP*>(lp)->pszText);
        return TRUE;
    }
    return CallWindowProcW(editorsOwn, window, message, wp, lp);
}

WPARAM unheardReports = 0;

/// Keeps some reports of the input method from the editor.
LRESULT CALLBACK deafEar(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (message == WM_IME_COMPOSITION && (static_cast<WPARAM>(lp) & unheardReports) != 0) return 0;
    return CallWindowProcW(editorsOwn, window, message, wp, lp);
}

class Editing : public testing::Test {
protected:
    Editing() {
        registerClass(u"EditorTestNote", parentProc, 0);
        parent = CreateWindowExW(WS_EX_TOOLWINDOW, L"EditorTestNote", L"", WS_POPUP | WS_VISIBLE, 100, 100,
                                 220, 160, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        SetWindowLongPtrW(parent, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&editor));
        balloons = 0;
    }
    ~Editing() override {
        SetWindowLongPtrW(parent, GWLP_USERDATA, 0);
        DestroyWindow(parent);
    }

    /// Opens the editor with this text and this selection.
    void open(const Text& text, std::size_t from, std::size_t to, Edited what = Edited::Body) {
        ASSERT_TRUE(
            editor.open({&note, parent, what, text, {4, 21, 200, 121}, look.body.get(), HWND_TOP, 0}));
        SendMessageW(control(), EM_SETSEL, from, static_cast<LPARAM>(to));
    }
    void openAtEnd(const Text& text, Edited what = Edited::Body) {
        open(text, text.size(), text.size(), what);
    }
    HWND control() const {
        const HWND body = editor.window(Edited::Body);
        return body != nullptr ? body : editor.window(Edited::Title);
    }
    void character(WPARAM c) const { SendMessageW(control(), WM_CHAR, c, 1); }
    void type(TextView text) const {
        for (const char16_t c : text)
            character(c);
    }
    void key(WPARAM key, WPARAM typed, int held = 0) const {
        BYTE before[256]{};
        GetKeyboardState(before);
        BYTE now[256];
        std::copy(std::begin(before), std::end(before), now);
        if (held != 0) now[held] = 0x80;
        SetKeyboardState(now);
        const HWND window = control();
        SendMessageW(window, WM_KEYDOWN, key, 1);
        SendMessageW(window, WM_CHAR, typed, 1);
        if (IsWindow(window) != FALSE) SendMessageW(window, WM_KEYUP, key, 1);
        SetKeyboardState(before);
    }
    Text text() const { return windowText(control()); }
    TextRange selection() const {
        DWORD from = 0;
        DWORD to = 0;
        SendMessageW(control(), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
        return {from, to};
    }
    bool canUndo() const { return SendMessageW(control(), EM_CANUNDO, 0, 0) != FALSE; }
    void undo() const { SendMessageW(control(), EM_UNDO, 0, 0); }
    void listenForBalloons() const { editorsOwn = replaceProcedure(control(), balloonEar); }
    void stopListening() const { replaceProcedure(control(), editorsOwn); }
    void endWhileComposing(WPARAM unheard);

    FakeNote note;
    NoteEditor editor;
    NoteLook look = loadNoteLook();
    HWND parent = nullptr;
};

/// Puts data on the clipboard in several formats.
void copy(std::initializer_list<std::pair<UINT, std::string>> forms) {
    for (int tries = 0; tries < 50 && OpenClipboard(nullptr) == FALSE; ++tries)
        pumpFor(20);
    EmptyClipboard();
    for (const auto& [form, bytes] : forms) {
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
        std::copy(bytes.begin(), bytes.end(), static_cast<char*>(GlobalLock(memory)));
        GlobalUnlock(memory);
        SetClipboardData(form, memory);
    }
    CloseClipboard();
}

std::string unitsOf(const Text& text) {
    return {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(char16_t)};
}

void copyText(const Text& text) {
    copy({{CF_UNICODETEXT, unitsOf(text)}});
}

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

// --- The clipboard, and texts from other programs ---------------------------------------------------------

TEST_F(Editing, PastesSeveralLines) {
    copyText(u"one\ntwo\r\nthree\rfour");
    open(u"<>", 1, 1);
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"<one\r\ntwo\r\nthree\r\nfour>");
    EXPECT_EQ(SendMessageW(control(), EM_GETLINECOUNT, 0, 0), 4) << "they are line breaks at once";
    undo();
    EXPECT_EQ(text(), u"<>");
    editor.end(true);
    openAtEnd(u"", Edited::Title);
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"one");
}

TEST_F(Editing, APasteThatIsCutSaysSo) {
    note.bytes = 10;
    open(u"ab", 1, 1);
    listenForBalloons();
    copyText(u"\u3042\u3044\u3046\u3048\u304A");
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"a\u3042\u3044\u3046\u3048b") << "eight bytes besides the two";
    EXPECT_EQ(balloons, 1);
    EXPECT_EQ(balloonText, u"The note can hold no more text.");
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"a\u3042\u3044\u3046\u3048b");
    EXPECT_EQ(balloons, 2) << "even when nothing fits";
    character(22);
    EXPECT_EQ(balloons, 3) << "by key as well";
    note.bytes = 20;
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"a\u3042\u3044\u3046\u3048\u3042\u3044\u3046\u3048\u304Ab");
    EXPECT_EQ(balloons, 3) << "a paste that fits says nothing";
    stopListening();
}

TEST_F(Editing, PastesTheTextOfWhatWasCopiedWithFormatting) {
    const UINT rich = RegisterClipboardFormatW(L"Rich Text Format");
    const UINT html = RegisterClipboardFormatW(L"HTML Format");
    copy({{rich, "{\\rtf1\\b bold\\b0}"}, {html, "<b>bold</b>"}, {CF_UNICODETEXT, unitsOf(u"bold")}});
    openAtEnd(u"");
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"bold");
    copy({{rich, "{\\rtf1 only looks}"}});
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"bold") << "there was nothing to paste";
}

TEST_F(Editing, TextFromAnotherProgramHasToFitToo) {
    note.bytes = 8;
    open(u"abcd", 2, 4);
    SendMessageW(control(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"1\n2345678"));
    EXPECT_EQ(text(), u"ab1\r\n234");
    SetWindowTextW(control(), L"a\nb, and much more");
    EXPECT_EQ(text(), u"a\r\nb, an");
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

// --- Input methods ----------------------------------------------------------------------------------------

/// Ends the edit of "milk " while "kana" is being composed, with an editor that is not told of `unheard`, and
/// expects both to be kept.
void Editing::endWhileComposing(WPARAM unheard) {
    openAtEnd(u"milk ");
    unheardReports = unheard;
    editorsOwn = replaceProcedure(control(), deafEar);
    const HIMC context = ImmGetContext(control());
    wchar_t composing[] = L"kana";
    ImmSetCompositionStringW(context, SCS_SETSTR, composing, 4 * sizeof(wchar_t), nullptr, 0);
    const LONG pending = ImmGetCompositionStringW(context, GCS_COMPSTR, nullptr, 0);
    ImmReleaseContext(control(), context);
    const bool isWine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    ASSERT_TRUE(pending > 0 || !isWine) << "Wine's input method composes on every desk";
    if (pending <= 0) {
        GTEST_SKIP()
            << "This session has no input method that composes text. Add a Japanese or Chinese keyboard in "
               "Windows' settings, choose it, and run the test again.";
    }
    editor.end(true);
    EXPECT_EQ(note.kept, u"milk kana");
}

TEST_F(Editing, KeepsWhatAnInputMethodIsStillComposing) {
    endWhileComposing(0);
}

TEST_F(Editing, KeepsWhatIsComposedBesideTheText) {
    endWhileComposing(GCS_COMPSTR);
}

TEST_F(Editing, KeepsWhatIsComposedWhenTheEditorTakesNoResult) {
    endWhileComposing(GCS_COMPSTR | GCS_RESULTSTR);
}

TEST_F(Editing, KeysOfAnInputMethodEndNothing) {
    openAtEnd(u"milk");
    key(VK_PROCESSKEY, kReturn + 0x100);
    EXPECT_TRUE(editor.isOpen());
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
