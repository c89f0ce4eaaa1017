// The dialog on a live desktop: its answers, faces over faces and its end, with real windows and real modal
// loops. A script, driven by a timer, does what a user would do as soon as the window is ready for it.
#include "resources/resource.h"
#include "tests/window/AlarmFaceDesk.h"

namespace {

// --- Message box -----------------------------------------------------------------------------------------

TEST_F(Fmsg, TheCloseBoxOfAYesNoBoxAnswersNo) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] { closeBox(); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
}

TEST_F(Fmsg, TheCloseBoxOfAMessageAnswersNothingAfterAQuestion) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] { click(ID_BTN2); });
    script.when(shown("Second"), [this] {
        EXPECT_EQ(text(ID_BTN1), "OK");
        EXPECT_EQ(text(ID_BTN2), "");
        EXPECT_FALSE(shows(ID_BTN2));
        closeBox();
    });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
    EXPECT_EQ(dialog.MsgBoxExt(u"Done.", 16, u"Second"), 0);
}

TEST_F(Fmsg, NotesCannotBeReachedWhileABoxIsOpen) {
    const HWND note = addNote();
    Script script(dialog);
    script.when(shown("Kardel"), [this, note] {
        EXPECT_TRUE(dialog.open());
        EXPECT_FALSE(IsWindowEnabled(note));
        click(ID_BTN1);
    });
    dialog.MsgBoxExt(u"Done.", 0);
    EXPECT_TRUE(IsWindowEnabled(note));
}

TEST_F(Fmsg, AMessageOverAMessageReturnsToTheFirst) {
    int inner = -1;
    Script script(dialog);
    script.when(shown("Outer"), [this, &inner] { inner = dialog.MsgBoxExt(u"Inner text", 1, u"Inner"); });
    script.when(shown("Inner"), [this] { click(ID_BTN1); });
    script.when(shown("Outer"), [this, &inner] {
        EXPECT_EQ(inner, IDOK);
        EXPECT_EQ(text(ID_LBLMSG), "Outer text");
        EXPECT_EQ(text(ID_BTN1), "&Yes");
        click(ID_BTN1);
    });
    EXPECT_EQ(dialog.MsgBoxExt(u"Outer text", 36, u"Outer"), IDYES);
}

TEST_F(Fmsg, ANoteThatWaitsForAnotherDialogGoesOnWaiting) {
    const HWND waiting = addNote();
    const HWND note = addNote();
    EnableWindow(waiting, FALSE);
    Script script(dialog);
    script.when(shown("Outer"), [this] { dialog.MsgBoxExt(u"?", 1, u"Inner"); });
    script.when(shown("Inner"), [this] { click(ID_BTN1); });
    script.when(shown("Outer"), [this, note] {
        EXPECT_FALSE(IsWindowEnabled(note));
        click(ID_BTN1);
    });
    dialog.MsgBoxExt(u"Done.", 0, u"Outer");
    EXPECT_FALSE(IsWindowEnabled(waiting));
    EXPECT_TRUE(IsWindowEnabled(note));
}

TEST_F(Fmsg, UnloadEndsEveryFaceAsItsCloseBoxWould) {
    const HWND note = addNote();
    int inner = -1;
    Script script(dialog);
    script.when(shown("Outer"), [this, &inner] { inner = dialog.MsgBoxExt(u"?", 1, u"Inner"); });
    script.when(shown("Inner"), [this] { dialog.unload(); });
    EXPECT_EQ(dialog.MsgBoxExt(u"?", 36, u"Outer"), IDNO);
    EXPECT_EQ(inner, IDCANCEL);
    EXPECT_EQ(dialog.hwnd, nullptr);
    EXPECT_TRUE(IsWindowEnabled(note));
}

TEST_F(Fmsg, ABoxCanBeShownAgainAfterUnload) {
    Script script(dialog);
    script.when(shown("First"), [this] { dialog.unload(); });
    script.when(shown("Second"), [this] { click(ID_BTN1); });
    EXPECT_EQ(dialog.MsgBoxExt(u"?", 36, u"First"), IDNO);
    EXPECT_EQ(dialog.MsgBoxExt(u"?", 36, u"Second"), IDYES);
}

TEST_F(Fmsg, TheEndOfTheProgramIsSeenByEveryLoop) {
    constexpr int kExitCode = 3;
    {
        Script script(dialog);
        script.when(shown("Kardel"), [] { PostQuitMessage(kExitCode); });
        EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
    }
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, static_cast<WPARAM>(kExitCode));
}

// --- About ------------------------------------------------------------------------------------------------

TEST_F(Fmsg, AboutIsOpenOnlyOnce) {
    Script script(dialog);
    script.when(shown("About"), [this] {
        dialog.about();
        EXPECT_TRUE(dialog.open()) << "it came forward and goes on waiting";
        click(ID_BTN1);
    });
    dialog.about();
    EXPECT_FALSE(dialog.open());
}

// --- Over the alarm editor --------------------------------------------------------------------------------

TEST_F(Editor, AMessageOverTheEditorLeavesItAsItWas) {
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        scroll(ID_HORE, SB_LINERIGHT);
        SendMessageW(item(ID_CHKMUTE), BM_CLICK, 0, 0);
        SetFocus(item(ID_HMIN));
        dialog.MsgBoxExt(u"Kardel application is already running.", 16);
    });
    script.when(focused(ID_BTN1), [this] { key(VK_RETURN); });
    script.when(focused(ID_HMIN), [this] {
        EXPECT_EQ(title(), "Set alarm");
        EXPECT_EQ(text(ID_LBLTIME), "11:20:30");
        EXPECT_FALSE(IsWindowEnabled(note));
        click(ID_BTNOK);
    });
    const EditorResult answer = edit({});
    EXPECT_TRUE(answer.AlarmStart && answer.alarm.Mute);
    EXPECT_EQ(answer.alarm.AlarmTime, u"11:20:30");
}

TEST_F(Editor, TheValuesForANoteThatHasGoneAreDropped) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        notes.clear();
        DestroyWindow(note);
        click(ID_BTNOK);
    });
    const EditorResult answer = edit(ruleAt(u"16/06/2026", u"12:00:00"));
    EXPECT_FALSE(answer.AlarmStart || answer.AlarmStop);
}

TEST_F(Editor, ASecondEditorIsNotOpened) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        const EditorResult second = edit({});
        EXPECT_FALSE(second.AlarmStart || second.AlarmStop);
        EXPECT_TRUE(dialog.open());
        click(ID_BTNCANCEL);
    });
    EXPECT_TRUE(edit({}).AlarmStop);
}

}  // namespace
