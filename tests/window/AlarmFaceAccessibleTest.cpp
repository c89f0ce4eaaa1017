// What a screen reader hears of the alarm editor, and what Tab reaches in it.
#include <functional>
#include <utility>

#include "resources/resource.h"
#include "tests/window/AccessibleDesk.h"

namespace {

class AccessibleEditor : public AccessibleDialog {
protected:
    void edit(const AlarmRule& rule, const std::function<void()>& look) {
        const HWND note = addNote();
        Script script(dialog);
        script.when(ready("Set alarm"), [&] {
            checkFace();
            look();
            closeBox();
        });
        dialog.editAlarm(rule, note, someMonday());
    }
    static AlarmRule tomorrow() {
        AlarmRule rule;
        rule.AlarmDate = u"16/06/2026";
        rule.AlarmTime = u"08:30:00";
        rule.due = instantOf({2026, 6, 16}, {8, 30, 0});
        return rule;
    }
};

TEST_F(AccessibleEditor, SaysTheDateAndTheTimeOfItsFields) {
    edit(tomorrow(), [this] {
        EXPECT_EQ(Ear(item(ID_DATA)).name(), u"Date");
        EXPECT_EQ(Ear(item(ID_DATA)).value(), u"16/06/2026, day");
        SendMessageW(item(ID_DATA), WM_KEYDOWN, VK_RIGHT, 0);
        EXPECT_EQ(Ear(item(ID_DATA)).value(), u"16/06/2026, month");
        SendMessageW(item(ID_DATA), WM_KEYDOWN, VK_RIGHT, 0);
        EXPECT_EQ(Ear(item(ID_DATA)).value(), u"16/06/2026, year");
        EXPECT_EQ(Ear(item(ID_HDATE)).value(), u"16/06/2026");
        const std::pair<int, const char16_t*> bars[] = {
            {ID_HDATE, u"Date"}, {ID_HORE, u"Hours"}, {ID_HMIN, u"Minutes"}, {ID_HSEC, u"Seconds"}};
        for (const auto& [bar, name] : bars) {
            EXPECT_EQ(Ear(item(bar)).name(), name);
            // Whatever Windows' own object would use as a label must say the same, or nothing.
            const Text label = labelOf(item(bar));
            EXPECT_TRUE(label.empty() || label == name) << plain(label);
        }
        SendMessageW(dialog.hwnd, WM_HSCROLL, SB_LINERIGHT, reinterpret_cast<LPARAM>(item(ID_HORE)));
        EXPECT_EQ(Ear(item(ID_HORE)).value(), u"09:30:00");
    });
}

TEST_F(AccessibleEditor, NamesItsListsEvenWhenTheyChange) {
    edit(tomorrow(), [this] {
        EXPECT_EQ(labelOf(item(ID_CBOREPEAT)), u"Repeat every:");
        EXPECT_EQ(labelOf(item(ID_CBODAY)), u"Weekday");
    });
    AlarmRule repeating = tomorrow();
    repeating.RepeatNumber = 5;
    repeating.RepeatEvery = u"mm";
    edit(repeating, [this] { EXPECT_EQ(labelOf(item(ID_CBODAY)), u"Unit"); });
}

TEST_F(AccessibleEditor, TabReachesTheSevenDaysOnlyWhenTheyAreShown) {
    edit(tomorrow(), [this] { EXPECT_EQ(tabStops().size(), 10U); });
    AlarmRule week = tomorrow();
    week.AlarmWeekday = 8;
    edit(week, [this] { EXPECT_EQ(tabStops().size(), 17U); });
    AlarmRule daily = tomorrow();
    daily.eachday = true;
    edit(daily, [this] { EXPECT_EQ(tabStops().size(), 9U) << "a daily pattern has no date to step by"; });
}

TEST_F(AccessibleEditor, TheButtonThatEnterPressesStaysMarkedWhereverTabGoes) {
    const auto marked = [this](int button) {
        return (GetWindowLongPtrW(item(button), GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
    };
    const HWND note = addNote();
    Script script(dialog);
    script.when(focused(ID_DATA), [this] { key(VK_TAB); });
    script.when(focused(ID_HDATE), [this, marked] {
        EXPECT_TRUE(marked(ID_BTNOK));
        SetFocus(item(ID_BTNOK));
        key(VK_TAB);
    });
    script.when(focused(ID_BTNCANCEL), [this, marked] {
        EXPECT_TRUE(marked(ID_BTNCANCEL));
        EXPECT_FALSE(marked(ID_BTNOK));
        closeBox();
    });
    dialog.editAlarm(tomorrow(), note, someMonday());
}

TEST_F(AccessibleEditor, ListenersHearOfADateThatChanges) {
    edit(tomorrow(), [this] {
        const Events events;
        SendMessageW(item(ID_DATA), WM_KEYDOWN, VK_RIGHT, 0);
        EXPECT_TRUE(events.has(EVENT_OBJECT_VALUECHANGE, item(ID_DATA)));
    });
}

}  // namespace
