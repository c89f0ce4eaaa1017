// The date of the alarm editor, whose parts are clicked or chosen by keyboard.
#include <string>

#include "tests/window/AlarmFaceDesk.h"

namespace {

TEST_F(Editor, TheYearClickedTwiceReturnsToAFullDate) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] { clickDate(kYear); });
    script.when(dateIs("24/12/****"), [this] {
        EXPECT_EQ(text(ID_DATA), "24/12/**** 08:00:00");
        EXPECT_FALSE(IsWindowEnabled(item(ID_HDATE)));
        clickDate(kYear);
    });
    script.when(dateIs("24/12/2026"), [this] {
        EXPECT_TRUE(IsWindowEnabled(item(ID_HDATE)));
        closeBox();
    });
    edit(ruleAt(u"24/12/2030", u"08:00:00"));
}

TEST_F(Editor, MonthAndDayBecomeWildcardsAndAClickBesideThemDoesNothing) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        SendMessageW(item(ID_DATA), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 4));
        EXPECT_EQ(text(ID_DATA), "15/06/2026");
        clickDate(kMonth);
    });
    script.when(dateIs("15/**/****"), [this] { clickDate(kDay); });
    script.when(dateIs("**/**/****"), [this] { clickDate(kDay); });
    script.when(dateIs("15/06/2026"), [this] { closeBox(); });
    edit({});
}

TEST_F(Editor, ByKeyboardThePartsOfTheDateAreChosenAndToggled) {
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        key(VK_RIGHT);
        key(VK_SPACE);
    });
    script.when(dateIs("15/**/****"), [this] {
        key(VK_LEFT);
        key(VK_SPACE);
    });
    script.when(dateIs("**/**/****"), [this] { key(VK_ESCAPE); });
    const EditorResult answer = edit({});
    EXPECT_FALSE(answer.AlarmStart || answer.AlarmStop);
}

TEST_F(Editor, TheHintAppearsUnderTheMouse) {
    const auto hintShown = [this] {
        const HWND hint = FindWindowExW(dialog.hwnd, nullptr, L"STATIC",
                                        L" Clic over any portion of date to set a repeatable date ");
        const HWND mark = FindWindowExW(dialog.hwnd, nullptr, L"STATIC", L"*");
        EXPECT_EQ(IsWindowVisible(hint), IsWindowVisible(mark));
        return IsWindowVisible(hint) != FALSE;
    };
    Script script(dialog);
    script.when(shown("Set alarm"), [&] {
        SendMessageW(item(ID_DATA), WM_MOUSELEAVE, 0, 0);
        EXPECT_FALSE(hintShown());
        SendMessageW(item(ID_DATA), WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
        EXPECT_TRUE(hintShown());
        SendMessageW(item(ID_DATA), WM_MOUSELEAVE, 0, 0);
        EXPECT_FALSE(hintShown());
        closeBox();
    });
    edit({});
}

TEST_F(Editor, AClickOnTheDateWithAltDoesNothing) {
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        const std::string before = text(ID_DATA);
        const int x = toPx(Twips{kDay}, screenDpi()).n;
        for (const int key : {VK_MENU, VK_SHIFT, VK_CONTROL}) {
            BYTE keys[256]{};
            keys[key] = 0x80;
            SetKeyboardState(keys);
            const WPARAM with = key == VK_SHIFT ? MK_SHIFT : key == VK_CONTROL ? MK_CONTROL : 0;
            SendMessageW(item(ID_DATA), WM_LBUTTONDOWN, MK_LBUTTON | with, MAKELPARAM(x, 4));
            keys[key] = 0;
            SetKeyboardState(keys);
            EXPECT_EQ(text(ID_DATA), before) << key;
        }
        closeBox();
    });
    edit(ruleAt(u"16/06/2026", u"12:00:00"));
}

}  // namespace
