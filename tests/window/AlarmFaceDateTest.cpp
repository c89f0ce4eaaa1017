// Date and time of the alarm editor on a live desktop: its scroll bars, the parts of its date, the wheel.
#include <gtest/gtest.h>

#include <string>

#include "tests/window/AlarmFaceDesk.h"

namespace {

TEST_F(Editor, HoursTurnOverIntoTheNextDayAndBack) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        scroll(ID_HORE, SB_LINERIGHT);
        EXPECT_EQ(text(ID_LBLTIME), "00:15:00");
        EXPECT_EQ(text(ID_DATA), "01/07/2026");
        EXPECT_EQ(position(ID_HORE), 0);
        EXPECT_EQ(position(ID_HDATE), 16);
        scroll(ID_HORE, SB_LINELEFT);
        EXPECT_EQ(text(ID_LBLTIME), "23:15:00");
        EXPECT_EQ(text(ID_DATA), "30/06/2026");
        closeBox();
    });
    edit(ruleAt(u"30/06/2026", u"23:15:00"));
}

TEST_F(Editor, SecondsCarryIntoMinutesAndHours) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        scroll(ID_HSEC, SB_LINERIGHT);
        EXPECT_EQ(text(ID_LBLTIME), "10:00:00");
        scroll(ID_HMIN, SB_LINELEFT);
        EXPECT_EQ(text(ID_LBLTIME), "09:59:00");
        closeBox();
    });
    edit(ruleAt(u"30/06/2026", u"09:59:59"));
}

TEST_F(Editor, AnEmptyTimeBeginsWithNowOrMidnight) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        SetWindowTextW(item(ID_LBLTIME), L"");
        scroll(ID_HMIN, SB_LINERIGHT);
        EXPECT_EQ(text(ID_LBLTIME), "10:21:30");
        SetWindowTextW(item(ID_LBLTIME), L"");
        choose(ID_CBODAY, 3);
    });
    script.when([this] { return text(ID_LBLTIME) == "00:00:00"; }, [this] { click(ID_BTNOK); });
    const EditorResult answer = edit({});
    EXPECT_EQ(answer.alarm.AlarmWeekday, 3);
    EXPECT_EQ(answer.alarm.AlarmTime, u"00:00:00");
}

TEST_F(Editor, ADraggedThumbStaysAtTheEndOfTheClock) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        scroll(ID_HORE, SB_THUMBTRACK);  // at position 0
        EXPECT_EQ(text(ID_LBLTIME), "00:20:30");
        SendMessageW(dialog.hwnd, WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 24),
                     reinterpret_cast<LPARAM>(item(ID_HORE)));
        scroll(ID_HORE, SB_ENDSCROLL);
        EXPECT_EQ(text(ID_LBLTIME), "23:20:30");
        EXPECT_EQ(text(ID_DATA), "15/06/2026");
        closeBox();
    });
    edit({});
}

TEST_F(Editor, FollowsABarThatATouchScreenOrAToolHasMoved) {
    // The bar's own position has changed before the dialog is notified.
    const auto put = [this](int bar, int position) {
        SendMessageW(item(bar), SBM_SETPOS, static_cast<WPARAM>(position), TRUE);
        SendMessageW(dialog.hwnd, WM_HSCROLL, MAKEWPARAM(SB_THUMBPOSITION, position),
                     reinterpret_cast<LPARAM>(item(bar)));
    };
    Script script(dialog);
    script.when(shown("Set alarm"), [&] {
        put(ID_HORE, 24);
        EXPECT_EQ(text(ID_LBLTIME), "00:20:30");
        EXPECT_EQ(text(ID_DATA), "16/06/2026");
        put(ID_HMIN, 5);
        put(ID_HSEC, 59);
        EXPECT_EQ(text(ID_LBLTIME), "00:05:59");
        put(ID_HDATE, 10);
        EXPECT_EQ(text(ID_DATA), "25/06/2026");
        closeBox();
    });
    edit({});
}

TEST_F(Editor, TheDateBarStepsByDaysAndPagesByThirty) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        scroll(ID_HDATE, SB_LINERIGHT);
        EXPECT_EQ(text(ID_DATA), "16/06/2026");
        scroll(ID_HDATE, SB_PAGERIGHT);
        EXPECT_EQ(text(ID_DATA), "16/07/2026");
        closeBox();
    });
    edit({});
}

TEST_F(Editor, ADateBeyondTheBarStaysUntilItIsScrolled) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_DATA), "24/12/2030");
        EXPECT_EQ(position(ID_HDATE), 365);
        scroll(ID_HDATE, SB_LINELEFT);
        EXPECT_EQ(text(ID_DATA), "14/06/2027");
        closeBox();
    });
    edit(ruleAt(u"24/12/2030", u"08:00:00"));
}

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

TEST_F(Editor, TheWheelTurnsTheBarWithTheKeyboard) {
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        SetFocus(item(ID_HMIN));
        SendMessageW(dialog.hwnd, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), MAKELPARAM(-9, -9));
        EXPECT_EQ(text(ID_LBLTIME), "10:21:30");
        SendMessageW(dialog.hwnd, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-2 * WHEEL_DELTA)),
                     MAKELPARAM(-9, -9));
        EXPECT_EQ(text(ID_LBLTIME), "10:19:30");
        closeBox();
    });
    edit({});
}

}  // namespace
