// The alarm editor by itself on a live desktop: what it shows, what mouse and keyboard do in it, what it
// answers.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "resources/resource.h"
#include "support/Units.h"
#include "tests/window/DialogTest.h"

namespace {

AlarmRule ruleAt(const Text& date, const Text& time) {
    AlarmRule rule;
    rule.AlarmDate = date;
    rule.AlarmTime = time;
    if (isDateText(date)) rule.due = instantOf(parseDate(date), parseTime(time));
    return rule;
}

class Editor : public Fmsg {
protected:
    void SetUp() override {
        Fmsg::SetUp();
        note = addNote();
    }
    AlarmEdit edit(const AlarmRule& rule) { return dialog.editAlarm(rule, note, someMonday()); }

    int position(int bar) const { return static_cast<int>(SendMessageW(item(bar), SBM_GETPOS, 0, 0)); }
    int chosen(int list) const { return static_cast<int>(SendMessageW(item(list), CB_GETCURSEL, 0, 0)); }
    int count(int list) const { return static_cast<int>(SendMessageW(item(list), CB_GETCOUNT, 0, 0)); }
    std::string entry(int list, int index) const {
        Text room(64, u'\0');
        SendMessageW(item(list), CB_GETLBTEXT, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(wideBuffer(room)));
        return plain(room.substr(0, room.find(u'\0')));
    }
    bool ticked(int box) const { return SendMessageW(item(box), BM_GETCHECK, 0, 0) == BST_CHECKED; }
    void scroll(int bar, WORD code) const {
        SendMessageW(dialog.hwnd, WM_HSCROLL, code, reinterpret_cast<LPARAM>(item(bar)));
    }
    /// As a user does: the list's selection changes, then the dialog hears of it.
    void choose(int list, int index) const {
        SendMessageW(item(list), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        PostMessageW(dialog.hwnd, WM_COMMAND, MAKEWPARAM(list, CBN_SELCHANGE),
                     reinterpret_cast<LPARAM>(item(list)));
    }
    void clickDate(int twips) const {
        const int x = toPx(Twips{twips}, screenDpi()).n;
        PostMessageW(item(ID_DATA), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, 4));
    }
    Script::Condition dateIs(const char* wanted) {
        return [this, wanted] {
            return dialog.hwnd != nullptr && plain(datePart(windowText(item(ID_DATA)))) == wanted;
        };
    }

    static constexpr int kDay = 200;
    static constexpr int kMonth = 500;
    static constexpr int kYear = 900;
    HWND note = nullptr;
};

TEST_F(Editor, WithoutAnAlarmShowsTodayAndTheTimeNow) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_DATA), "15/06/2026");
        EXPECT_EQ(text(ID_LBLTIME), "10:20:30");
        EXPECT_EQ(position(ID_HORE), 10);
        EXPECT_EQ(position(ID_HMIN), 20);
        EXPECT_EQ(position(ID_HSEC), 30);
        EXPECT_EQ(position(ID_HDATE), 0);
        EXPECT_EQ(text(ID_BTNOK), "Start");
        EXPECT_EQ(text(ID_BTNCANCEL), "Stop");
        EXPECT_EQ(text(ID_CBODAY), "Weekday");
        EXPECT_TRUE(shows(ID_BTNCANCEL) && shows(ID_FRAALARM) && shows(ID_DATA) && shows(ID_CHKMUTE));
        EXPECT_FALSE(shows(ID_FRAWEEK) || shows(ID_CHKWEEK) || shows(ID_LBLCOUNTDOWN) || shows(ID_BTN1));
        closeBox();
    });
    const AlarmEdit answer = edit({});
    EXPECT_FALSE(answer.AlarmStart || answer.AlarmStop);
    EXPECT_EQ(dialog.hwnd, nullptr);
}

TEST_F(Editor, ListsAndBarsHaveTheirRanges) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(count(ID_CBOREPEAT), 37);
        EXPECT_EQ(entry(ID_CBOREPEAT, 0), "");
        EXPECT_EQ(entry(ID_CBOREPEAT, 30), "30");
        EXPECT_EQ(entry(ID_CBOREPEAT, 36), "60");
        EXPECT_EQ(count(ID_CBODAY), 9);
        EXPECT_EQ(entry(ID_CBODAY, 1), "Monday");
        EXPECT_EQ(entry(ID_CBODAY, 8), "**Week**");
        const std::pair<int, int> highs[] = {{ID_HDATE, 365}, {ID_HORE, 24}, {ID_HMIN, 60}, {ID_HSEC, 60}};
        for (const auto& [bar, high] : highs) {
            SCROLLINFO info{sizeof(info), SIF_RANGE | SIF_PAGE, 0, 0, 0, 0, 0};
            SendMessageW(item(bar), SBM_GETSCROLLINFO, 0, reinterpret_cast<LPARAM>(&info));
            EXPECT_EQ(info.nMin, -1) << bar;
            EXPECT_EQ(info.nMax, high) << bar;
            EXPECT_EQ(info.nPage, 1U) << bar;  // a longer page would keep the bar from its end
        }
        closeBox();
    });
    edit({});
}

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

TEST_F(Editor, ATimeThatIsEmptyBeginsWithNowOrMidnight) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        SetWindowTextW(item(ID_LBLTIME), L"");
        scroll(ID_HMIN, SB_LINERIGHT);
        EXPECT_EQ(text(ID_LBLTIME), "10:21:30");
        SetWindowTextW(item(ID_LBLTIME), L"");
        choose(ID_CBODAY, 3);
    });
    script.when([this] { return text(ID_LBLTIME) == "00:00:00"; }, [this] { click(ID_BTNOK); });
    const AlarmEdit answer = edit({});
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

TEST_F(Editor, ABarThatATouchScreenOrAToolHasMovedIsHeard) {
    // The bar's own position has changed before the dialog hears of it.
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
    const AlarmEdit answer = edit({});
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

TEST_F(Editor, PatternsAreShownWithTheirWildcards) {
    AlarmRule daily = ruleAt(u"15/06/2026", u"12:00:00");
    daily.eachday = true;
    AlarmRule monthly = ruleAt(u"15/06/2026", u"12:00:00");
    monthly.eachmonth = true;
    monthly.alarmday = u"7";
    AlarmRule yearly = ruleAt(u"15/06/2026", u"12:00:00");
    yearly.eachyear = true;
    yearly.alarmdaymonth = u"29/02";
    const std::pair<AlarmRule, const char*> rows[] = {
        {daily, " **/**/****"}, {monthly, "07/**/****"}, {yearly, "29/02/****"}};
    for (const auto& row : rows) {
        Script script(dialog);
        script.when(shown("Set alarm"), [&] {
            EXPECT_EQ(text(ID_DATA), row.second);
            click(ID_BTNOK);
        });
        const AlarmEdit answer = edit(row.first);
        EXPECT_TRUE(answer.AlarmStart && answer.DateNotSet);
        EXPECT_EQ(answer.alarm.AlarmTime, u"12:00:00");
        EXPECT_EQ(plain(answer.alarm.AlarmDate),
                  plain(datePart(Text(row.second, row.second + strlen(row.second)))));
    }
}

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

TEST_F(Editor, AWildcardBesideAWeekdayIsRefused) {
    AlarmRule weekly = ruleAt(u"16/06/2026", u"12:00:00");
    weekly.AlarmWeekday = 2;
    Script script(dialog);
    script.when(shown("Set alarm"), [this] { clickDate(kYear); });
    script.when(shown("Date"), [this] { click(ID_BTN1); });
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_DATA), "16/06/2026");
        click(ID_BTNOK);
    });
    const AlarmEdit answer = edit(weekly);
    EXPECT_TRUE(answer.AlarmStart);
    EXPECT_EQ(answer.alarm.AlarmWeekday, 2);
    EXPECT_FALSE(answer.DateNotSet);
}

TEST_F(Editor, ARepeatNumberOffersUnitsAndReplacesTheWeekday) {
    AlarmRule weekly = ruleAt(u"16/06/2026", u"12:00:00");
    weekly.AlarmWeekday = 2;
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_CBODAY), "Tuesday");
        choose(ID_CBOREPEAT, 31);
    });
    script.when([this] { return count(ID_CBODAY) == 5; },
                [this] {
                    EXPECT_EQ(text(ID_CBODAY), "Minutes");
                    choose(ID_CBODAY, 4);
                    click(ID_BTNOK);
                });
    const AlarmEdit answer = edit(weekly);
    EXPECT_TRUE(answer.AlarmStart);
    EXPECT_EQ(answer.alarm.RepeatNumber, 35);
    EXPECT_EQ(answer.alarm.RepeatEvery, u"MM");
    EXPECT_EQ(answer.alarm.AlarmWeekday, 0);
    EXPECT_EQ(answer.alarm.AlarmDate, u"16/06/2026");
}

TEST_F(Editor, TheEmptyRepeatEntryBringsTheWeekdaysBack) {
    AlarmRule repeating = ruleAt(u"16/06/2026", u"12:00:00");
    repeating.RepeatNumber = 35;
    repeating.RepeatEvery = u"dd";
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_CBOREPEAT), "35");
        EXPECT_EQ(text(ID_CBODAY), "Days");
        choose(ID_CBOREPEAT, 0);
    });
    script.when([this] { return count(ID_CBODAY) == 9; },
                [this] {
                    EXPECT_EQ(text(ID_CBODAY), "Weekday");
                    click(ID_BTNOK);
                });
    const AlarmEdit answer = edit(repeating);
    EXPECT_EQ(answer.alarm.RepeatNumber, 0);
    EXPECT_EQ(answer.alarm.RepeatEvery, u"");
}

TEST_F(Editor, ARepeatThatTheListLacksIsKeptAndSeen) {
    AlarmRule repeating = ruleAt(u"16/06/2026", u"12:00:00");
    repeating.RepeatNumber = 90;
    repeating.RepeatEvery = u"mm";
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_CBOREPEAT), "90");
        EXPECT_EQ(chosen(ID_CBOREPEAT), CB_ERR);
        click(ID_BTNOK);
    });
    const AlarmEdit answer = edit(repeating);
    EXPECT_EQ(answer.alarm.RepeatNumber, 90);
    EXPECT_EQ(answer.alarm.RepeatEvery, u"mm");
}

TEST_F(Editor, SeveralWeekdaysAreTickedInTheirFrame) {
    AlarmRule weekly = ruleAt(u"16/06/2026", u"12:00:00");
    weekly.AlarmWeekday = 8;
    weekly.FlagWeekday = {true, false, false, false, false, false, true};
    weekly.Mute = true;
    int tall = 0;
    const auto height = [this] {
        RECT rect{};
        GetWindowRect(dialog.hwnd, &rect);
        return static_cast<int>(rect.bottom - rect.top);
    };
    Script script(dialog);
    script.when(shown("Set alarm"), [&] {
        EXPECT_TRUE(shows(ID_FRAWEEK) && shows(ID_CHKWEEK) && shows(ID_CHKWEEK_LAST));
        EXPECT_TRUE(ticked(ID_CHKWEEK) && ticked(ID_CHKWEEK_LAST) && ticked(ID_CHKMUTE));
        EXPECT_FALSE(ticked(ID_CHKWEEK + 1));
        EXPECT_EQ(text(ID_CHKWEEK), "Mon");
        EXPECT_EQ(text(ID_CHKWEEK_LAST), "Sun");
        tall = height();
        choose(ID_CBODAY, 3);
    });
    script.when([this] { return !shows(ID_FRAWEEK); },
                [&] {
                    EXPECT_LT(height(), tall);
                    choose(ID_CBODAY, 8);
                });
    script.when([this] { return shows(ID_FRAWEEK); },
                [&] {
                    EXPECT_EQ(height(), tall);
                    click(ID_CHKWEEK + 1);
                    click(ID_BTNOK);
                });
    const AlarmEdit answer = edit(weekly);
    EXPECT_EQ(answer.alarm.AlarmWeekday, 8);
    EXPECT_TRUE(answer.alarm.FlagWeekday[0] && answer.alarm.FlagWeekday[1] && answer.alarm.FlagWeekday[6]);
    EXPECT_FALSE(answer.alarm.FlagWeekday[2]);
    EXPECT_TRUE(answer.alarm.Mute);
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
                    EXPECT_TRUE(open()) << "a new layout would close it under the user's hands";
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

TEST_F(Editor, OnlyStopIsStop) {
    const AlarmRule rule = ruleAt(u"16/06/2026", u"12:00:00");
    {
        Script script(dialog);
        script.when(shown("Set alarm"), [this] { click(ID_BTNCANCEL); });
        const AlarmEdit answer = edit(rule);
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
        const AlarmEdit answer = edit(rule);
        EXPECT_FALSE(answer.AlarmStop || answer.AlarmStart);
    }
}

TEST_F(Editor, EnterStartsAndAltWithALetterReachesTheControls) {
    Script script(dialog);
    script.when(focused(ID_DATA), [] { type(GetFocus(), WM_SYSCHAR, L'r'); });
    script.when(focused(ID_CBOREPEAT), [] { type(GetFocus(), WM_SYSCHAR, L'm'); });
    script.when(focused(ID_CHKMUTE), [this] { key(VK_RETURN); });
    const AlarmEdit answer = edit({});
    EXPECT_TRUE(answer.AlarmStart);
    EXPECT_TRUE(answer.alarm.Mute);
    EXPECT_EQ(answer.alarm.AlarmDate, u"15/06/2026");
    EXPECT_EQ(answer.alarm.AlarmTime, u"10:20:30");
}

TEST_F(Editor, ARunningAlarmOffersRestartAndCountsDown) {
    const HWND other = addNote();
    Script script(dialog);
    script.when(shown("Set alarm"), [this, other] {
        EXPECT_EQ(text(ID_BTNOK), "Restart");
        EXPECT_TRUE(shows(ID_LBLCOUNTDOWN));
        EXPECT_EQ(text(ID_LBLCOUNTDOWN), "1 d   1:39:30");
        dialog.showCountdown(note, u"0:00:07");
        dialog.showCountdown(other, u"5:00:00");
        EXPECT_EQ(text(ID_LBLCOUNTDOWN), "0:00:07");
        closeBox();
    });
    edit(ruleAt(u"16/06/2026", u"12:00:00"));
    dialog.showCountdown(note, u"0:00:06");  // nobody listens any more
}

TEST_F(Editor, APassedAlarmOffersStart) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_BTNOK), "Start");
        EXPECT_FALSE(shows(ID_LBLCOUNTDOWN));
        closeBox();
    });
    edit(ruleAt(u"14/06/2026", u"12:00:00"));
}

TEST_F(Editor, AMessageOverTheEditorGivesItBackAsItWas) {
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
    const AlarmEdit answer = edit({});
    EXPECT_TRUE(answer.AlarmStart && answer.alarm.Mute);
    EXPECT_EQ(answer.alarm.AlarmTime, u"11:20:30");
}

TEST_F(Editor, TheValuesOfANoteThatWentAreDropped) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        notes.clear();
        DestroyWindow(note);
        click(ID_BTNOK);
    });
    const AlarmEdit answer = edit(ruleAt(u"16/06/2026", u"12:00:00"));
    EXPECT_FALSE(answer.AlarmStart || answer.AlarmStop);
}

TEST_F(Editor, ASecondEditorIsNotOpened) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        const AlarmEdit second = edit({});
        EXPECT_FALSE(second.AlarmStart || second.AlarmStop);
        EXPECT_TRUE(dialog.open());
        click(ID_BTNCANCEL);
    });
    EXPECT_TRUE(edit({}).AlarmStop);
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
