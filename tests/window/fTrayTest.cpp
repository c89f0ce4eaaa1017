// The tray window on a live desktop: which messages become which calls of the collection.
#include "core/fTray.h"

#include <bit>
#include <functional>
#include <new>
#include <string>

#include "core/basTrayIcon.h"
#include "support/Messages.h"
#include "tests/storage/win/TestLog.h"
#include "tests/window/TrayDesk.h"

namespace {

// --- The window -------------------------------------------------------------------------------------------

TEST_F(Tray, IsAHiddenTopLevelWindow) {
    EXPECT_EQ(IsWindowVisible(tray.hwnd), FALSE);
    EXPECT_EQ(GetAncestor(tray.hwnd, GA_PARENT), GetDesktopWindow());  // not a message-only one
}

/// The state of the tray window when its destruction began.
struct LastLook {
    HWND tray = nullptr;
    bool iconStillThere = true;
    LONG_PTR procedure = 0;
};
LastLook* lastLook = nullptr;
LRESULT CALLBACK lookAtTheEnd(int code, WPARAM wp, LPARAM lp) {
    if (code == HCBT_DESTROYWND && std::bit_cast<HWND>(wp) == lastLook->tray) {
        lastLook->iconStillThere = TrayIconDelete(lastLook->tray);
        lastLook->procedure = GetWindowLongPtrW(lastLook->tray, GWLP_WNDPROC);
    }
    return CallNextHookEx(nullptr, code, wp, lp);
}

TEST_F(Tray, TheIconGoesBeforeTheWindowWhichHasItsProcedureBack) {
    // The shell keeps the icon of a destroyed window until the mouse passes over it.
    const HWND window = tray.hwnd;
    ASSERT_TRUE(iconIsThere());
    ASSERT_NE(procedure(window), procedureOfForm) << "it has another procedure while the icon is there";
    LastLook end;
    end.tray = window;
    lastLook = &end;
    const HHOOK hook = SetWindowsHookExW(WH_CBT, lookAtTheEnd, nullptr, GetCurrentThreadId());
    tray.destroy();
    UnhookWindowsHookEx(hook);
    EXPECT_FALSE(end.iconStillThere);
    EXPECT_EQ(end.procedure, procedureOfForm);
    EXPECT_EQ(IsWindow(window), FALSE);
    EXPECT_EQ(tray.hwnd, nullptr);
    tray.destroy();  // a second time does no harm
}

TEST_F(Tray, ProgramsWithFewerRightsReachItWithASecondStartAndANewTaskBar) {
    const std::vector<UINT> wanted = {WM_SECONDSTART, RegisterWindowMessageW(L"TaskbarCreated")};
    EXPECT_EQ(desk.fromBelow, wanted);
    EXPECT_TRUE(tray.addIcon());
    EXPECT_EQ(desk.fromBelow, wanted) << "once is enough";
}

/// Makes Windows refuse the tray window a number of times.
class RefusedWindows {
public:
    explicit RefusedWindows(int times) {
        left_ = times;
        hook_ = SetWindowsHookExW(WH_CBT, refuse, nullptr, GetCurrentThreadId());
    }
    ~RefusedWindows() { UnhookWindowsHookEx(hook_); }
    RefusedWindows(const RefusedWindows&) = delete;
    RefusedWindows& operator=(const RefusedWindows&) = delete;

private:
    static LRESULT CALLBACK refuse(int code, WPARAM wp, LPARAM lp) {
        if (code == HCBT_CREATEWND && left_ > 0) {
            --left_;
            return 1;
        }
        return CallNextHookEx(nullptr, code, wp, lp);
    }
    static inline int left_ = 0;
    HHOOK hook_;
};

TEST(TrayWindow, IsTriedTwiceAndTheLogSaysWhy) {
    FakeDesk desk;
    for (const int refused : {0, 1, 2}) {
        const TestLog log;
        const RefusedWindows refusal(refused);
        fTray tray;
        EXPECT_EQ(tray.create(desk), refused < 2);
        EXPECT_EQ(tray.hwnd != nullptr, refused < 2);
        EXPECT_EQ(log.lines(), refused);
        EXPECT_EQ(log.has("(fTray)"), refused > 0);
    }
}

// --- Clicks -----------------------------------------------------------------------------------------------

TEST_F(Tray, ASingleClickActsOnce) {
    mouse({WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, Calls{"default"});
}

TEST_F(Tray, ADoubleClickDoesNotToggleTwice) {
    mouse({WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, Calls{"default"});
}

TEST_F(Tray, TheClickAfterADoubleClickCountsAgain) {
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP, WM_LBUTTONDOWN, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, (Calls{"default", "default"}));
    // Also when the second release of the double click happened off the icon.
    desk.calls.clear();
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONDOWN, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, (Calls{"default", "default"}));
}

TEST_F(Tray, OldSystemsActOnTheDoubleClick) {
    tray.windows = classified({2, 5, 1, 2600, false});
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, Calls{});
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, Calls{"default"});
}

TEST_F(Tray, OtherIconsAndOtherMouseMessagesDoNothing) {
    post(WM_TRAYICON, TRAYICON_ID + 1, WM_LBUTTONUP);
    mouse({WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONUP});
    EXPECT_EQ(desk.calls, Calls{});
}

// --- A second start, a new task bar -----------------------------------------------------------------------

TEST_F(Tray, ASecondStartIsToldThatThisCopyIsRunning) {
    post(WM_SECONDSTART, 0, 0);
    EXPECT_EQ(desk.calls, Calls{"already running"});
    EXPECT_TRUE(iconIsThere());
}

TEST_F(Tray, ASecondStartBringsAVanishedIconBackInSilence) {
    ASSERT_TRUE(TrayIconDelete(tray.hwnd));
    post(WM_SECONDSTART, 0, 0);
    EXPECT_EQ(desk.calls, Calls{});
    EXPECT_TRUE(iconIsThere());
}

struct SecondStart {
    HWND tray = nullptr;
    HANDLE answered = nullptr;
};
DWORD WINAPI startAgain(void* argument) {
    const auto* start = static_cast<const SecondStart*>(argument);
    SendMessageW(start->tray, WM_SECONDSTART, 0, 0);
    SetEvent(start->answered);
    return 0;
}

TEST_F(Tray, ASecondStartDoesNotWaitForTheMessageBox) {
    SecondStart start{tray.hwnd, CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    bool freeWhileOpen = false;
    desk.instead = [&](const std::string&) {
        freeWhileOpen = WaitForSingleObject(start.answered, 10000) == WAIT_OBJECT_0;
    };
    const HANDLE thread = CreateThread(nullptr, 0, startAgain, &start, 0, nullptr);
    ASSERT_NE(thread, nullptr);
    while (MsgWaitForMultipleObjects(1, &thread, FALSE, 20000, QS_ALLINPUT) == WAIT_OBJECT_0 + 1)
        pumpPending();
    EXPECT_TRUE(freeWhileOpen);
    CloseHandle(thread);
    CloseHandle(start.answered);
}

TEST_F(Tray, TheIconComesBackWithANewTaskBar) {
    ASSERT_TRUE(TrayIconDelete(tray.hwnd));
    post(RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    EXPECT_TRUE(iconIsThere());
    post(RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);  // it is there already: nothing is logged
    EXPECT_EQ(desk.calls, Calls{});
}

/// A task bar in front of the real one that takes no icon until it is told to.
class SlowTaskBar {
public:
    SlowTaskBar() {
        asked = 0;
        ready = false;
        registerClass(u"Shell_TrayWnd", answer, 0);
        window_ = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, L"Shell_TrayWnd", L"", WS_POPUP, 0, 0, 0,
                                  0, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        EXPECT_EQ(FindWindowW(L"Shell_TrayWnd", nullptr), window_);
    }
    ~SlowTaskBar() {
        DestroyWindow(window_);
        UnregisterClassW(L"Shell_TrayWnd", GetModuleHandleW(nullptr));
    }
    SlowTaskBar(const SlowTaskBar&) = delete;
    SlowTaskBar& operator=(const SlowTaskBar&) = delete;

    static inline int asked = 0;
    static inline bool ready = false;

private:
    static LRESULT CALLBACK answer(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
        if (message != WM_COPYDATA) return DefWindowProcW(window, message, wp, lp);
        ++asked;
        return ready ? TRUE : FALSE;
    }
    HWND window_;
};

bool comesTrue(const std::function<bool()>& condition) {
    const ULONGLONG end = GetTickCount64() + 20000;
    while (!condition() && GetTickCount64() < end)
        pumpFor(20);
    return condition();
}

TEST_F(Tray, ANewTaskBarThatTakesNoIconYetIsAskedUntilItDoes) {
    ASSERT_TRUE(TrayIconDelete(tray.hwnd));
    SlowTaskBar bar;
    post(RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    const int first = bar.asked;
    EXPECT_GT(first, 0);
    EXPECT_TRUE(comesTrue([&] { return bar.asked > 2 * first; }));
    bar.ready = true;
    const int before = bar.asked;
    EXPECT_TRUE(comesTrue([&] { return bar.asked > before; }));
    const int taken = bar.asked;
    pumpFor(600);
    EXPECT_EQ(bar.asked, taken) << "but no longer";
    EXPECT_EQ(desk.calls, Calls{});
}

// --- Commands ---------------------------------------------------------------------------------------------

TEST_F(Tray, EveryCommandReachesTheCollection) {
    EXPECT_EQ(after(400), Calls{"new"});
    EXPECT_EQ(after(402), Calls{"hide all"});
    EXPECT_EQ(after(403), Calls{"iconize all"});
    EXPECT_EQ(after(405), Calls{"align all"});
    EXPECT_EQ(after(406), Calls{"easy align"});
    EXPECT_EQ(after(408), Calls{"switch store"});
    EXPECT_EQ(after(411), Calls{"about"});
    EXPECT_EQ(after(413), Calls{"exit"});
    EXPECT_EQ(after(500), Calls{"open 0"});
    EXPECT_EQ(after(502), Calls{"open 2"});
}

TEST_F(Tray, SeparatorsHiddenEntriesAndStrangeNumbersDoNothing) {
    for (const WPARAM command : {399U, 401U, 404U, 407U, 409U, 410U, 412U, 414U, 499U, 503U, 549U, 550U}) {
        EXPECT_EQ(after(command), Calls{}) << command;
    }
}

TEST_F(Tray, WhatIsGreyDoesNothing) {
    desk.shown = {};
    for (const WPARAM command : {402U, 403U, 405U, 500U})
        EXPECT_EQ(after(command), Calls{}) << command;
    desk.shown.notes = 1;
    desk.shown.alignAll = true;
    desk.shown.easyAlign = true;
    for (const WPARAM command : {405U, 406U})
        EXPECT_EQ(after(command), Calls{}) << command;
}

TEST_F(Tray, OnlyHideAllAndExitRunWhileAQuestionIsOpen) {
    desk.shown.dialogOpen = true;
    for (const WPARAM command : {400U, 403U, 405U, 406U, 408U, 411U, 500U})
        EXPECT_EQ(after(command), Calls{}) << command;
    EXPECT_EQ(after(402), Calls{"hide all"});
    EXPECT_EQ(after(413), Calls{"exit"});
}

TEST_F(Tray, APostedSaveFailureIsShown) {
    post(posted::kSaveFailed, 0, 0);
    EXPECT_EQ(desk.calls, Calls{"save failure"});
}

// --- The end ----------------------------------------------------------------------------------------------

TEST_F(Tray, AnEndingSessionKeepsEditsAndIsNotHeldUp) {
    EXPECT_EQ(SendMessageW(tray.hwnd, WM_QUERYENDSESSION, 0, 0), TRUE);
    EXPECT_EQ(desk.calls, Calls{"commit"});
    EXPECT_TRUE(iconIsThere());
}

TEST_F(Tray, ASessionThatGoesOnChangesNothing) {
    SendMessageW(tray.hwnd, WM_QUERYENDSESSION, 0, 0);
    desk.calls.clear();
    SendMessageW(tray.hwnd, WM_ENDSESSION, FALSE, 0);
    EXPECT_EQ(desk.calls, Calls{});
    EXPECT_TRUE(iconIsThere());
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP});
    EXPECT_EQ(desk.calls, Calls{"default"});
}

TEST_F(Tray, TheEndOfTheSessionTakesTheIcon) {
    SendMessageW(tray.hwnd, WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(desk.calls, Calls{"end session"});
    EXPECT_FALSE(iconIsThere());
}

TEST_F(Tray, AnInstallerThatAsksForTheEndGetsIt) {
    SendMessageW(tray.hwnd, WM_QUERYENDSESSION, 0, ENDSESSION_CLOSEAPP);
    SendMessageW(tray.hwnd, WM_ENDSESSION, FALSE, ENDSESSION_CLOSEAPP);  // it has changed its mind
    pumpPending();
    EXPECT_EQ(desk.calls, Calls{"commit"});
    desk.calls.clear();
    SendMessageW(tray.hwnd, WM_ENDSESSION, TRUE, ENDSESSION_CLOSEAPP);
    pumpPending();
    EXPECT_EQ(desk.calls, (Calls{"end session", "exit"}));
    desk.calls.clear();
    SendMessageW(tray.hwnd, WM_ENDSESSION, TRUE, static_cast<LPARAM>(ENDSESSION_LOGOFF));
    pumpPending();
    EXPECT_EQ(desk.calls, Calls{"end session"}) << "Windows itself ends it then";
}

TEST_F(Tray, APoliteKillIsExit) {
    SendMessageW(tray.hwnd, WM_CLOSE, 0, 0);
    EXPECT_EQ(desk.calls, Calls{"exit"});
    EXPECT_NE(IsWindow(tray.hwnd), FALSE);  // it goes when the collection says so
}

TEST_F(Tray, AHandlerThatFailsDoesNotTakeTheProgramWithIt) {
    desk.instead = [](const std::string&) { throw std::bad_alloc(); };
    EXPECT_EQ(after(400), Calls{});
    desk.instead = {};
    EXPECT_EQ(after(402), Calls{"hide all"});
}

}  // namespace
