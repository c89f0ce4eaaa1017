// What the tests of the alarm editor share: the editor, over a plain window that stands for its note.
#pragma once

#include <string>

#include "resources/resource.h"
#include "support/Units.h"
#include "tests/window/DialogTest.h"

inline AlarmRule ruleAt(const Text& date, const Text& time) {
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
    EditorResult edit(const AlarmRule& rule) { return dialog.editAlarm(rule, note, someMonday()); }

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
    /// Chooses as a user does: the list's selection changes, then the dialog is notified.
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
