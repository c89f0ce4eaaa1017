// The alarm editor by itself on a live desktop: what it shows for a rule, what its lists and buttons do, and
// what it returns.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "tests/window/AlarmFaceDesk.h"

namespace {

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
    const EditorResult answer = edit({});
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
            EXPECT_EQ(info.nPage, 1U) << bar;  // a longer page would keep the bar from reaching its end
        }
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
        const EditorResult answer = edit(row.first);
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
    const EditorResult answer = edit(weekly);
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
    const EditorResult answer = edit(weekly);
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
    const EditorResult answer = edit(repeating);
    EXPECT_EQ(answer.alarm.RepeatNumber, 0);
    EXPECT_EQ(answer.alarm.RepeatEvery, u"");
}

TEST_F(Editor, ARepeatThatTheListLacksIsKeptAndShown) {
    AlarmRule repeating = ruleAt(u"16/06/2026", u"12:00:00");
    repeating.RepeatNumber = 90;
    repeating.RepeatEvery = u"mm";
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_CBOREPEAT), "90");
        EXPECT_EQ(chosen(ID_CBOREPEAT), CB_ERR);
        click(ID_BTNOK);
    });
    const EditorResult answer = edit(repeating);
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
    const EditorResult answer = edit(weekly);
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
    dialog.showCountdown(note, u"0:00:06");  // nobody is listening any more
}

/// What a control draws, as pixels.
std::vector<COLORREF> pictureOf(HWND control) {
    RECT client{};
    GetClientRect(control, &client);
    const WindowDc screen(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    const HBITMAP sheet = CreateCompatibleBitmap(screen, client.right, client.bottom);
    const HGDIOBJ before = SelectObject(dc, sheet);
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x)
            pixels.push_back(GetPixel(dc, x, y));
    }
    SelectObject(dc, before);
    DeleteObject(sheet);
    DeleteDC(dc);
    return pixels;
}

TEST_F(Editor, ItsButtonsUnderlineTheLettersThatReachThem) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        struct Row {
            int id;
            const wchar_t* drawn;
            const char* read;
        };
        for (const Row& row : {Row{ID_CHKMUTE, L"&Mute", "Mute"}, Row{ID_BTNOK, L"Re&start", "Restart"},
                               Row{ID_BTNCANCEL, L"S&top", "Stop"}}) {
            const HWND button = item(row.id);
            EXPECT_EQ(text(row.id), row.read);
            wchar_t part[3]{};
            EXPECT_EQ(GetWindowTextW(button, part, 3), 2) << row.read;
            RECT at{};
            GetClientRect(button, &at);
            const auto like = [&](const wchar_t* caption) {
                const auto style = static_cast<DWORD>(GetWindowLongPtrW(button, GWL_STYLE));
                const HWND plainOne = CreateWindowExW(0, L"BUTTON", caption, style, 0, 0, at.right, at.bottom,
                                                      dialog.hwnd, nullptr, nullptr, nullptr);
                SendMessageW(plainOne, WM_SETFONT,
                             static_cast<WPARAM>(SendMessageW(button, WM_GETFONT, 0, 0)), 0);
                const std::vector<COLORREF> picture = pictureOf(plainOne);
                DestroyWindow(plainOne);
                return picture;
            };
            const Text caption = windowText(button);
            EXPECT_EQ(pictureOf(button), like(row.drawn)) << row.read;
            EXPECT_NE(pictureOf(button), like(wide(caption))) << row.read;
        }
        closeBox();
    });
    edit(ruleAt(u"16/06/2026", u"12:00:00"));
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

TEST_F(Editor, APassedAlarmOffersStart) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_BTNOK), "Start");
        EXPECT_FALSE(shows(ID_LBLCOUNTDOWN));
        closeBox();
    });
    edit(ruleAt(u"14/06/2026", u"12:00:00"));
}

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
