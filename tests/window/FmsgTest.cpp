// The dialog on a live desktop: real windows, real modal loops. A script, driven by a timer, does what a user
// would do as soon as the window is ready for it.
#include "note/fmsg.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

#include "note/About.h"
#include "note/ShellExecuteExt.h"
#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"
#include "tests/window/Script.h"

namespace {

constexpr const char16_t* kNoteClass = u"FmsgTestNote";

LRESULT CALLBACK plainProc(HWND hwnd, UINT message, WPARAM wp, LPARAM lp) noexcept {
    return DefWindowProcW(hwnd, message, wp, lp);
}

std::string plain(const Text& text) {
    return std::string(text.begin(), text.end());
}

/// 15 June 2026, a Monday, 10:20:30.
Now someMonday() {
    return {instantOf({2026, 6, 15}, {10, 20, 30}), 0};
}

class Fmsg : public testing::Test {
protected:
    void SetUp() override {
        registerDialogClasses();
        registerClass(kNoteClass, plainProc, 0);
        owner = makeWindow(0, nullptr);
        dialog.ownerWindow = [this] { return owner; };
        dialog.noteWindows = [this] { return notes; };
        dialog.now = [] { return someMonday(); };
    }
    void TearDown() override {
        dialog.unload();
        for (const HWND note : notes)
            DestroyWindow(note);
        DestroyWindow(owner);
    }

    static HWND makeWindow(DWORD exStyle, HWND ownedBy) {
        return CreateWindowExW(exStyle, wide(kNoteClass), L"", WS_POPUP, 40, 40, 200, 150, ownedBy, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
    }
    HWND addNote(DWORD exStyle = 0) {
        notes.push_back(makeWindow(exStyle, owner));
        ShowWindow(notes.back(), SW_SHOW);
        return notes.back();
    }

    HWND item(int id) const { return GetDlgItem(dialog.hwnd, id); }
    std::string text(int id) const { return plain(windowText(item(id))); }
    std::string title() const { return plain(windowText(dialog.hwnd)); }
    bool shows(int id) const { return IsWindowVisible(item(id)) != FALSE; }
    void click(int id) const { PostMessageW(item(id), BM_CLICK, 0, 0); }
    void key(WPARAM vk) const { PostMessageW(GetFocus(), WM_KEYDOWN, vk, 0); }
    void closeBox() const { PostMessageW(dialog.hwnd, WM_CLOSE, 0, 0); }
    static void type(HWND window, UINT message, WPARAM wp) { PostMessageW(window, message, wp, 0); }

    Script::Condition shown(const char* caption) {
        return [this, caption] {
            return dialog.hwnd != nullptr && IsWindowVisible(dialog.hwnd) != FALSE && title() == caption;
        };
    }
    /// The dialog has the keyboard, in this control.
    Script::Condition focused(int id) {
        return [this, id] { return dialog.hwnd != nullptr && item(id) != nullptr && GetFocus() == item(id); };
    }

    fmsg dialog;
    HWND owner = nullptr;
    std::vector<HWND> notes;
};

// --- Message box -----------------------------------------------------------------------------------------

TEST_F(Fmsg, AQuestionShowsYesAndNoAndAnswersSix) {
    Script script(dialog);
    script.when(shown("Delete"), [this] {
        EXPECT_EQ(text(ID_BTN1), "&Yes");
        EXPECT_EQ(text(ID_BTN2), "&No");
        EXPECT_EQ(text(ID_LBLMSG), "Sure?");
        EXPECT_EQ(text(ID_MICON), "Question");
        EXPECT_TRUE(shows(ID_LBLMSG) && shows(ID_MICON) && shows(ID_BTN1) && shows(ID_BTN2) &&
                    shows(ID_FRAMSG));
        EXPECT_FALSE(shows(ID_LBLMAILTO));
        click(ID_BTN1);
    });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36, u"Delete"), IDYES);
    EXPECT_FALSE(dialog.open());
    EXPECT_FALSE(IsWindowVisible(dialog.hwnd));
}

TEST_F(Fmsg, TheSecondButtonAnswersNo) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] { click(ID_BTN2); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
}

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

TEST_F(Fmsg, EscapeAnswersAsTheCloseBox) {
    Script script(dialog);
    script.when(focused(ID_BTN1), [this] { key(VK_ESCAPE); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 1), IDCANCEL);
}

TEST_F(Fmsg, TheUnderlinedLetterPressesItsButton) {
    Script script(dialog);
    script.when(focused(ID_BTN1), [] { type(GetFocus(), WM_SYSCHAR, L'n'); });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36), IDNO);
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

TEST_F(Fmsg, TheKeyboardGoesBackToWhereItWas) {
    const HWND note = addNote();
    // A child: activating the note alone would give the keyboard to the note itself.
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

TEST_F(Fmsg, ALoneReturnCharacterBreaksTheLine) {
    int oneLine = 0;
    const auto height = [this] {
        RECT rect{};
        GetWindowRect(item(ID_LBLMSG), &rect);
        return static_cast<int>(rect.bottom - rect.top);
    };
    Script script(dialog);
    script.when(shown("One"), [&] {
        oneLine = height();
        click(ID_BTN1);
    });
    script.when(shown("Three"), [&] {
        EXPECT_EQ(height(), 3 * oneLine);
        click(ID_BTN1);
    });
    dialog.MsgBoxExt(u"First", 0, u"One");
    dialog.MsgBoxExt(u"First\r\rthird", 0, u"Three");
}

TEST_F(Fmsg, AnEndlessPromptStaysOnTheScreenWithItsButtons) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] {
        RECT box{};
        RECT button{};
        GetWindowRect(dialog.hwnd, &box);
        GetWindowRect(item(ID_BTN2), &button);
        const PxRect work = workAreaAt(pxRect(box));
        EXPECT_GE(box.left, work.left);
        EXPECT_GE(box.top, work.top);
        EXPECT_LE(box.right, work.right);
        EXPECT_LE(box.bottom, work.bottom);
        EXPECT_LE(box.right - box.left, work.width() / 2 + 100);
        EXPECT_LT(button.bottom, box.bottom);
        EXPECT_LT(button.right, box.right);
        click(ID_BTN2);
    });
    EXPECT_EQ(dialog.MsgBoxExt(Text(20000, u'x'), 36), IDNO);
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

TEST_F(Fmsg, AboutTellsTheVersionAndOffersItsLinks) {
    Script script(dialog);
    script.when(shown("About"), [this] {
        EXPECT_EQ(text(ID_LBLMSG).find("Kardel - version 1.28.0\r\n\r\n"), 0U) << text(ID_LBLMSG);
        EXPECT_EQ(windowText(item(ID_LBLMAILTO)), Text(about::kMail));
        EXPECT_EQ(windowText(item(ID_LBLWEBURL)), Text(about::kSite));
        for (const int link : {ID_LBLMAILTO, ID_LBLWEBURL}) {
            EXPECT_TRUE(shows(link));
            SetCursor(LoadCursorW(nullptr, IDC_ARROW));
            SendMessageW(item(link), WM_SETCURSOR, reinterpret_cast<WPARAM>(item(link)),
                         MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
            EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_HAND));
        }
        click(ID_BTN1);
    });
    dialog.about();
}

TEST_F(Fmsg, TheLinksOfAboutOpenByMouseAndKeyboard) {
    std::vector<Text> opened;
    dialog.openTarget = [&](const Text& target) {
        opened.push_back(target);
        return Text();
    };
    Script script(dialog);
    script.when(focused(ID_BTN1), [this] { key(VK_TAB); });
    script.when(focused(ID_LBLMAILTO), [this] { key(VK_RETURN); });
    script.when([&] { return opened.size() == 1; }, [this] { key(VK_TAB); });
    script.when(focused(ID_LBLWEBURL), [] {
        type(GetFocus(), WM_KEYDOWN, VK_SPACE);
        type(GetFocus(), WM_KEYUP, VK_SPACE);
    });
    script.when([&] { return opened.size() == 2; }, [this] { click(ID_LBLMAILTO); });
    script.when([&] { return opened.size() == 3; },
                [this] {
                    EXPECT_TRUE(dialog.open()) << "a link does not close the box";
                    key(VK_ESCAPE);
                });
    dialog.about();
    const Text mail = u"mailto:" + Text(about::kMail);
    EXPECT_EQ(opened, (std::vector<Text>{mail, Text(about::kSite), mail}));
}

TEST_F(Fmsg, ALinkThatCannotBeOpenedSaysWhyAndGivesAboutBack) {
    dialog.openTarget = [](const Text&) { return shellMessage(31); };
    Script script(dialog);
    script.when(shown("About"), [this] {
        SetFocus(item(ID_LBLWEBURL));
        click(ID_LBLWEBURL);
    });
    script.when(shown("Kardel"), [this] {
        EXPECT_EQ(text(ID_LBLMSG), "Missing association file type.");
        EXPECT_EQ(text(ID_MICON), "Warning");
        EXPECT_FALSE(shows(ID_LBLWEBURL));
        click(ID_BTN1);
    });
    script.when(focused(ID_LBLWEBURL), [this] {
        EXPECT_EQ(title(), "About");
        EXPECT_TRUE(shows(ID_LBLMAILTO));
        closeBox();
    });
    dialog.about();
}

TEST_F(Fmsg, AboutIsOpenOnlyOnce) {
    Script script(dialog);
    script.when(shown("About"), [this] {
        dialog.about();
        EXPECT_TRUE(dialog.open()) << "it came forward and waits on";
        click(ID_BTN1);
    });
    dialog.about();
    EXPECT_FALSE(dialog.open());
}

// --- Files and links -------------------------------------------------------------------------------------

TEST(ShellExecuteExt, SaysWhyAFileDoesNotOpen) {
    EXPECT_EQ(ShellExecuteExt(u"C:\\no such file.txt"), u"File not found.");
    Text folder(MAX_PATH, u'\0');
    folder.resize(GetTempPathW(MAX_PATH, wideBuffer(folder)));
    const Text file = folder + u"document.kardelunknown";
    const HANDLE made = CreateFileW(wide(file), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    ASSERT_NE(made, INVALID_HANDLE_VALUE);
    CloseHandle(made);
    EXPECT_EQ(ShellExecuteExt(file), u"Missing association file type.");
    DeleteFileW(wide(file));
}

// --- Alarm editor ----------------------------------------------------------------------------------------

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
