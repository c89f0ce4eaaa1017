// The editor by itself, over a window that is not a note: texts that nobody types letter by letter, from the
// clipboard, other programs and input methods.
#include "tests/window/EditorDesk.h"
// Needs windows.h before it.
#include <imm.h>

namespace {

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

TEST_F(Editing, TextFromAnotherProgramHasToFitToo) {
    note.bytes = 8;
    open(u"abcd", 2, 4);
    SendMessageW(control(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"1\n2345678"));
    EXPECT_EQ(text(), u"ab1\r\n234");
    SetWindowTextW(control(), L"a\nb, and much more");
    EXPECT_EQ(text(), u"a\r\nb, an");
}

// --- Input methods ----------------------------------------------------------------------------------------

WPARAM unheardReports = 0;

/// Keeps some reports of the input method from the editor.
LRESULT CALLBACK deafEar(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (message == WM_IME_COMPOSITION && (static_cast<WPARAM>(lp) & unheardReports) != 0) return 0;
    return CallWindowProcW(editorsOwn, window, message, wp, lp);
}

class Composing : public Editing {
protected:
    /// Ends the edit of "milk " while "kana" is being composed, with an editor that is not told of `unheard`,
    /// and expects both to be kept.
    void endWhileComposing(WPARAM unheard) {
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
            GTEST_SKIP() << "This session has no input method that composes text. Add a Japanese or Chinese "
                            "keyboard in "
                            "Windows' settings, choose it, and run the test again.";
        }
        editor.end(true);
        EXPECT_EQ(note.kept, u"milk kana");
    }
};

TEST_F(Composing, KeepsWhatAnInputMethodIsStillComposing) {
    endWhileComposing(0);
}

TEST_F(Composing, KeepsWhatIsComposedBesideTheText) {
    endWhileComposing(GCS_COMPSTR);
}

TEST_F(Composing, KeepsWhatIsComposedWhenTheEditorTakesNoResult) {
    endWhileComposing(GCS_COMPSTR | GCS_RESULTSTR);
}

TEST_F(Composing, KeysOfAnInputMethodEndNothing) {
    openAtEnd(u"milk");
    key(VK_PROCESSKEY, kReturn + 0x100);
    EXPECT_TRUE(editor.isOpen());
}

}  // namespace
