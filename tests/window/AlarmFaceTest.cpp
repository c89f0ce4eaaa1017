// The alarm editor by itself on a live desktop: what it shows for a rule, and what it returns of it.
#include <gtest/gtest.h>

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

TEST_F(Editor, APassedAlarmOffersStart) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        EXPECT_EQ(text(ID_BTNOK), "Start");
        EXPECT_FALSE(shows(ID_LBLCOUNTDOWN));
        closeBox();
    });
    edit(ruleAt(u"14/06/2026", u"12:00:00"));
}

}  // namespace
