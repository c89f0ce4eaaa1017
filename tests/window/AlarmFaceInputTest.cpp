// What the user does in the alarm editor on a live desktop: bars, wheel, lists, buttons and letters.
#include <gtest/gtest.h>

#include "tests/window/AlarmFaceDesk.h"

namespace {

// --- Bars -------------------------------------------------------------------------------------------------

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

TEST_F(Editor, EveryMoveOfABarReachesTheClock) {
    struct Row {
        WORD code;
        const char* time;
    };
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        for (const Row& row :
             {Row{SB_LINERIGHT, "11:20:30"}, Row{SB_LINELEFT, "10:20:30"}, Row{SB_PAGERIGHT, "11:20:30"},
              Row{SB_PAGELEFT, "10:20:30"}, Row{SB_RIGHT, "23:20:30"}, Row{SB_LEFT, "00:20:30"}}) {
            scroll(ID_HORE, row.code);
            EXPECT_EQ(text(ID_LBLTIME), row.time) << row.code;
        }
        SendMessageW(dialog.hwnd, WM_HSCROLL, MAKEWPARAM(SB_THUMBTRACK, 24),
                     reinterpret_cast<LPARAM>(item(ID_HORE)));
        EXPECT_EQ(text(ID_LBLTIME), "23:20:30") << "a dragged thumb stays at the end of the clock";
        scroll(ID_HORE, SB_ENDSCROLL);
        scroll(ID_HORE, SB_LINERIGHT);
        EXPECT_EQ(text(ID_LBLTIME), "00:20:30") << "and is let go here";
        EXPECT_EQ(text(ID_DATA), "16/06/2026");
        EXPECT_EQ(position(ID_HDATE), 1);
        scroll(ID_HDATE, SB_PAGERIGHT);
        EXPECT_EQ(text(ID_DATA), "16/07/2026");
        scroll(ID_HMIN, SB_LINELEFT);
        scroll(ID_HSEC, SB_LINERIGHT);
        EXPECT_EQ(text(ID_LBLTIME), "00:19:31");
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

TEST_F(Editor, TheWheelTurnsTheBarUnderThePointerWhoeverHasTheKeyboard) {
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        SetFocus(item(ID_HMIN));
        RECT bar{};
        GetWindowRect(item(ID_HORE), &bar);
        const LPARAM at = MAKELPARAM((bar.left + bar.right) / 2, (bar.top + bar.bottom) / 2);
        SendMessageW(dialog.hwnd, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), at);
        EXPECT_EQ(text(ID_LBLTIME), "11:20:30");
        closeBox();
    });
    edit({});
}

// --- Lists ------------------------------------------------------------------------------------------------

TEST_F(Editor, AWeekdayOnAPatternIsRefusedAndUndone) {
    AlarmRule daily = ruleAt(u"15/06/2026", u"12:00:00");
    daily.eachday = true;
    Script script(dialog);
    script.when(shown("Set alarm"), [this] { choose(ID_CBODAY, 3); });
    script.when(shown("Date"), [this] {
        EXPECT_EQ(text(ID_LBLMSG), "Need before to set a full date.");
        EXPECT_FALSE(shows(ID_DATA) || shows(ID_BTNOK) || shows(ID_CBODAY));
        click(ID_BTN1);
    });
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(chosen(ID_CBODAY), 0);
        EXPECT_TRUE(shows(ID_DATA) && shows(ID_BTNOK));
        EXPECT_FALSE(shows(ID_LBLMSG) || shows(ID_BTN1));
        choose(ID_CBOREPEAT, 5);
    });
    script.when(shown("Date"), [this] { click(ID_BTN1); });
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(chosen(ID_CBOREPEAT), 0);
        EXPECT_EQ(count(ID_CBODAY), 9);
        closeBox();
    });
    edit(daily);
}

TEST_F(Editor, WhatTheKeyboardPassesInAnOpenListCountsOnceItIsClosed) {
    const auto open = [this] { return SendMessageW(item(ID_CBODAY), CB_GETDROPPEDSTATE, 0, 0) != FALSE; };
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        SetFocus(item(ID_CBODAY));
        SendMessageW(item(ID_CBODAY), CB_SHOWDROPDOWN, TRUE, 0);
        SendMessageW(item(ID_CBODAY), WM_KEYDOWN, VK_END, 0);
    });
    script.when([this] { return chosen(ID_CBODAY) == kSeveralWeekdays; },
                [this, open] {
                    EXPECT_TRUE(open()) << "a new layout would close it while the user is choosing";
                    EXPECT_FALSE(shows(ID_FRAWEEK));
                    key(VK_RETURN);
                });
    script.when([this] { return shows(ID_FRAWEEK); },
                [this, open] {
                    EXPECT_FALSE(open());
                    closeBox();
                });
    EXPECT_FALSE(edit(ruleAt(u"16/06/2026", u"12:00:00")).AlarmStart);
}

TEST_F(Editor, APatternsWeekdayIsRefusedOnceTheListIsClosed) {
    AlarmRule daily = ruleAt(u"", u"12:00:00");
    daily.eachday = true;
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        SetFocus(item(ID_CBODAY));
        SendMessageW(item(ID_CBODAY), CB_SHOWDROPDOWN, TRUE, 0);
        SendMessageW(item(ID_CBODAY), WM_KEYDOWN, VK_DOWN, 0);
        SendMessageW(item(ID_CBODAY), WM_KEYDOWN, VK_DOWN, 0);
        EXPECT_EQ(chosen(ID_CBODAY), 2);
        key(VK_RETURN);
    });
    script.when(shown("Date"), [this] { key(VK_RETURN); });
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(chosen(ID_CBODAY), 0);
        closeBox();
    });
    EXPECT_FALSE(edit(daily).AlarmStart);
}

TEST_F(Editor, AListThatIsOpenClosesBeforeTheUserIsToldWhatIsMissing) {
    AlarmRule weekly = ruleAt(u"16/06/2026", u"12:00:00");
    weekly.AlarmWeekday = 2;
    const auto open = [this] { return SendMessageW(item(ID_CBODAY), CB_GETDROPPEDSTATE, 0, 0) != FALSE; };
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        SendMessageW(item(ID_CBODAY), CB_SHOWDROPDOWN, TRUE, 0);
        clickDate(kYear);
    });
    script.when(shown("Date"), [this, open] {
        EXPECT_FALSE(open());
        click(ID_BTN1);
    });
    script.when(shown("Set alarm"), [this] { closeBox(); });
    edit(weekly);
}

// --- Buttons and letters ----------------------------------------------------------------------------------

TEST_F(Editor, OnlyTheStopButtonStopsTheAlarm) {
    const AlarmRule rule = ruleAt(u"16/06/2026", u"12:00:00");
    {
        Script script(dialog);
        script.when(shown("Set alarm"), [this] { click(ID_BTNCANCEL); });
        const EditorResult answer = edit(rule);
        EXPECT_TRUE(answer.AlarmStop);
        EXPECT_FALSE(answer.AlarmStart);
    }
    {
        Script script(dialog);
        script.when(focused(ID_DATA), [this] { key(VK_ESCAPE); });
        EXPECT_FALSE(edit(rule).AlarmStop);
    }
    {
        Script script(dialog);
        script.when(shown("Set alarm"), [this] { dialog.unload(); });
        const EditorResult answer = edit(rule);
        EXPECT_FALSE(answer.AlarmStop || answer.AlarmStart);
    }
}

TEST_F(Editor, EnterStartsAndAltWithALetterReachesTheControls) {
    Script script(dialog);
    script.when(focused(ID_DATA), [] { type(GetFocus(), WM_SYSCHAR, L'r'); });
    script.when(focused(ID_CBOREPEAT), [] { type(GetFocus(), WM_SYSCHAR, L'm'); });
    script.when(focused(ID_CHKMUTE), [this] { key(VK_RETURN); });
    const EditorResult answer = edit({});
    EXPECT_TRUE(answer.AlarmStart);
    EXPECT_TRUE(answer.alarm.Mute);
    EXPECT_EQ(answer.alarm.AlarmDate, u"15/06/2026");
    EXPECT_EQ(answer.alarm.AlarmTime, u"10:20:30");
}

TEST_F(Editor, ALetterWithoutAltIsNoCommand) {
    Script script(dialog);
    script.when(focused(ID_DATA), [this] {
        SetFocus(item(ID_HMIN));
        for (const WPARAM letter : {WPARAM{'t'}, WPARAM{'s'}, WPARAM{'m'}})
            PostMessageW(item(ID_HMIN), WM_CHAR, letter, 0);
        PostMessageW(item(ID_HMIN), WM_SYSCHAR, 'm', 0);
    });
    script.when([this] { return ticked(ID_CHKMUTE); },
                [this] {
                    EXPECT_TRUE(dialog.open());
                    closeBox();
                });
    const EditorResult answer = edit({});
    EXPECT_FALSE(answer.AlarmStart || answer.AlarmStop);
}

}  // namespace
