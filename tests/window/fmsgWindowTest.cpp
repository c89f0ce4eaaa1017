// The dialog's window on a live desktop: its buttons and keys, the keyboard, and its place in front of the
// notes.
#include "resources/resource.h"
#include "tests/window/DialogTest.h"

namespace {

TEST_F(Fmsg, TheSecondButtonAnswersNo) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] { click(ID_BTN2); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
}

TEST_F(Fmsg, EnterPressesTheDefaultButton) {
    Script script(dialog);
    script.when(focused(ID_BTN1), [this] { key(VK_RETURN); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDYES);
}

TEST_F(Fmsg, EnterPressesTheSecondButtonWhenThatIsTheDefault) {
    Script script(dialog);
    script.when(focused(ID_BTN2), [this] { key(VK_RETURN); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36 + 256), IDNO);
}

TEST_F(Fmsg, TabReachesTheOtherButton) {
    Script script(dialog);
    script.when(focused(ID_BTN2), [this] { key(VK_TAB); });
    script.when(focused(ID_BTN1), [this] { key(VK_RETURN); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36 + 256), IDYES);
}

TEST_F(Fmsg, EscapeAnswersLikeTheCloseBox) {
    Script script(dialog);
    script.when(focused(ID_BTN1), [this] { key(VK_ESCAPE); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 1), IDCANCEL);
}

TEST_F(Fmsg, TheUnderlinedLetterPressesItsButton) {
    Script script(dialog);
    script.when(focused(ID_BTN1), [] { type(GetFocus(), WM_SYSCHAR, L'n'); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
}

TEST_F(Fmsg, TheKeyboardGoesBackToWhereItWas) {
    const HWND note = addNote();
    // A child window, as merely activating the note would give the keyboard to the note itself.
    const HWND editor = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | WS_VISIBLE, 0, 0, 90, 30, note, nullptr,
                                        GetModuleHandleW(nullptr), nullptr);
    SetForegroundWindow(note);
    SetFocus(editor);
    ASSERT_EQ(GetFocus(), editor);
    Script script(dialog);
    script.when(focused(ID_BTN1), [this] { click(ID_BTN1); });
    dialog.MsgBoxExt(u"Done.", 0);
    EXPECT_EQ(GetFocus(), editor);
}

TEST_F(Fmsg, ABoxThatIsArrangedByOthersMovesAndStaysWhole) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] {
        RECT before{};
        GetWindowRect(dialog.hwnd, &before);
        for (const int size : {1, 3000}) {
            SetWindowPos(dialog.hwnd, nullptr, 20, 30, size, size, SWP_NOZORDER | SWP_NOACTIVATE);
            RECT after{};
            GetWindowRect(dialog.hwnd, &after);
            EXPECT_EQ(after.right - after.left, before.right - before.left);
            EXPECT_EQ(after.bottom - after.top, before.bottom - before.top);
            EXPECT_EQ(after.left, 20);
            EXPECT_EQ(after.top, 30);
        }
        click(ID_BTN1);
    });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDYES);
}

TEST_F(Fmsg, ABoxIsAboveTopmostNotesAndOwned) {
    addNote(WS_EX_TOPMOST);
    Script script(dialog);
    script.when(shown("Kardel"), [this] {
        EXPECT_NE(GetWindowLongPtrW(dialog.hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
        EXPECT_EQ(GetWindow(dialog.hwnd, GW_OWNER), owner);
        bool noteBelow = false;
        for (HWND w = dialog.hwnd; w != nullptr; w = GetWindow(w, GW_HWNDNEXT))
            noteBelow |= w == notes[0];
        EXPECT_TRUE(noteBelow);
        click(ID_BTN1);
    });
    dialog.MsgBoxExt(u"Done.", 0);
}

}  // namespace
