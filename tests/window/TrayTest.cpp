// The tray window on a live desktop session: messages in, calls of the collection out.
#include "core/fTray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <functional>
#include <initializer_list>
#include <new>
#include <string>
#include <vector>

#include "core/basTrayIcon.h"
#include "resources/resource.h"
#include "support/WinText.h"
#include "tests/storage/win/TestLog.h"

namespace {

/// The collection as far as the tray knows it: answers with what the test sets, notes what it was asked to
/// do.
class FakeDesk final : public TrayHost {
public:
    TrayMenuState shown;
    std::vector<Text> noteTitles{u"Milk", u"Salt & pepper", u""};
    HWND box = nullptr;
    std::vector<UINT> fromBelow;  ///< messages that programs with fewer rights may send
    std::vector<std::string> calls;
    std::function<void(const std::string& call)> instead;  ///< asked in place of noting the call

    FakeDesk() { shown.notes = 3; }

    TrayMenuState state() const override { return shown; }
    std::vector<Text> titles() const override { return noteTitles; }
    HWND openBox() const override { return box; }
    void letThrough(HWND window, UINT message) override {
        EXPECT_EQ(GetWindowTextLengthW(window), 0) << "ahead of the title by which a second start finds it";
        fromBelow.push_back(message);
    }
    void newNote() override { note("new"); }
    void hideAll(bool hidden) override { note(hidden ? "hide all" : "show all"); }
    void iconizeAll(bool iconized) override { note(iconized ? "iconize all" : "restore all"); }
    void toggleAlignAll() override { note("align all"); }
    void toggleEasyAlign() override { note("easy align"); }
    void switchStore() override { note("switch store"); }
    void about() override { note("about"); }
    void exitProgram() override { note("exit"); }
    void openNote(int slot) override { note("open " + std::to_string(slot)); }
    void defaultAction() override { note("default"); }
    void alreadyRunning() override { note("already running"); }
    void commitEdits() override { note("commit"); }
    void endSession() override { note("end session"); }
    void showSaveFailure() override { note("save failure"); }
    void tick() override { note("tick"); }
    void clockSet() override { note("clock set"); }

private:
    void note(const std::string& call) {
        if (instead) {
            instead(call);
        } else {
            calls.push_back(call);
        }
    }
};

using Calls = std::vector<std::string>;

class Tray : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(tray.create(desk));
        procedureOfForm = procedure(tray.hwnd);
        ASSERT_EQ(FindWindowW(L"ThunderRT6FormDC", L"kardel:trayicon"), nullptr);
        const ULONGLONG end = GetTickCount64() + 20000;
        while (!tray.addIcon() && GetTickCount64() < end)
            pumpFor(100);
        ASSERT_EQ(FindWindowW(L"ThunderRT6FormDC", L"kardel:trayicon"), tray.hwnd);
    }

    void post(UINT message, WPARAM wp, LPARAM lp) {
        PostMessageW(tray.hwnd, message, wp, lp);
        pumpPending();
    }
    void mouse(std::initializer_list<UINT> messages) {
        for (const UINT message : messages)
            PostMessageW(tray.hwnd, WM_TRAYICON, TRAYICON_ID, static_cast<LPARAM>(message));
        pumpPending();
    }
    Calls after(WPARAM command) {
        desk.calls.clear();
        post(WM_COMMAND, command, 0);
        return desk.calls;
    }
    static LONG_PTR procedure(HWND window) { return GetWindowLongPtrW(window, GWLP_WNDPROC); }
    bool iconIsThere() const {
        // Adding an icon that is there is refused.
        if (!TrayIconAdd(tray.hwnd)) return true;
        TrayIconDelete(tray.hwnd);
        return false;
    }

    FakeDesk desk;
    fTray tray;
    LONG_PTR procedureOfForm = 0;  ///< before the icon was there
};

// --- The window -------------------------------------------------------------------------------------------

TEST_F(Tray, IsAHiddenTopLevelWindow) {
    EXPECT_EQ(IsWindowVisible(tray.hwnd), FALSE);
    EXPECT_EQ(GetAncestor(tray.hwnd, GA_PARENT), GetDesktopWindow());  // not a message-only one
}

TEST_F(Tray, TheStartCountsAnIconThatIsThereAsAdded) {
    EXPECT_FALSE(TrayIconAdd(tray.hwnd));
    EXPECT_TRUE(tray.addIcon());
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP});  // still answered once, not once a try
    EXPECT_EQ(desk.calls, Calls{"default"});
}

/// The tray window as it was when it began to go.
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
    // The shell keeps the icon of a window that is gone until the mouse comes by.
    const HWND window = tray.hwnd;
    ASSERT_TRUE(iconIsThere());
    ASSERT_NE(procedure(window), procedureOfForm) << "it is taken over while the icon is there";
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
    tray.destroy();  // once more does no harm
}

TEST_F(Tray, ProgramsWithFewerRightsReachItWithASecondStartAndANewTaskBar) {
    const std::vector<UINT> wanted = {WM_SECONDSTART, RegisterWindowMessageW(L"TaskbarCreated")};
    EXPECT_EQ(desk.fromBelow, wanted);
    EXPECT_TRUE(tray.addIcon());
    EXPECT_EQ(desk.fromBelow, wanted) << "once is enough";
}

/// Windows refuses the tray window so many times.
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

TEST_F(Tray, ASecondStartIsToldThatThisCopyRuns) {
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
    post(RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);  // there already: no word about it
    EXPECT_EQ(desk.calls, Calls{});
}

/// A task bar in front of the real one: it takes no icon until it is told to.
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
    EXPECT_EQ(bar.asked, taken) << "and no longer";
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
    post(fTray::kSaveFailed, 0, 0);
    EXPECT_EQ(desk.calls, Calls{"save failure"});
}

// --- The popup --------------------------------------------------------------------------------------------

struct Entry {
    Text caption;
    UINT state = 0;
    UINT id = 0;
    HMENU submenu = nullptr;
};

std::vector<Entry> entriesOf(HMENU menu) {
    std::vector<Entry> entries;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        Text caption(200, u'\0');
        MENUITEMINFOW info{};
        info.cbSize = sizeof(info);
        info.fMask = MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING | MIIM_FTYPE;
        info.dwTypeData = wideBuffer(caption);
        info.cch = static_cast<UINT>(caption.size());
        GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info);
        caption.resize((info.fType & MFT_SEPARATOR) != 0 ? 0 : info.cch);
        entries.push_back(
            {(info.fType & MFT_SEPARATOR) != 0 ? u"-" : caption, info.fState, info.wID, info.hSubMenu});
    }
    return entries;
}

/// Looks at the popup while it is open, then does to it what a user would.
struct OpenPopup {
    std::vector<Entry> commands;
    std::vector<Entry> notes;
    std::vector<WPARAM> keys{VK_ESCAPE};
    std::function<void()> meanwhile = [] {};  ///< what happens while it is open
};
OpenPopup* lookingAt = nullptr;

void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD) {
    const HWND popup = FindWindowW(L"#32768", nullptr);
    if (popup == nullptr || lookingAt == nullptr) return;  // not open yet: the next tick looks again
    KillTimer(nullptr, timer);
    const auto menu = reinterpret_cast<HMENU>(SendMessageW(popup, 0x01E1 /* MN_GETHMENU */, 0, 0));
    lookingAt->commands = entriesOf(menu);
    if (!lookingAt->commands.empty()) lookingAt->notes = entriesOf(lookingAt->commands[0].submenu);
    lookingAt->meanwhile();
    for (const WPARAM key : lookingAt->keys) {
        PostMessageW(popup, WM_KEYDOWN, key, 0);
        PostMessageW(popup, WM_KEYUP, key, 0);
    }
}

class TrayPopup : public Tray {
protected:
    OpenPopup open(
        std::vector<WPARAM> keys = {VK_ESCAPE}, std::function<void()> meanwhile = [] {}) {
        OpenPopup seen;
        seen.keys = std::move(keys);
        seen.meanwhile = std::move(meanwhile);
        lookingAt = &seen;
        const UINT_PTR timer = SetTimer(nullptr, 0, 50, look);
        mouse({WM_RBUTTONDOWN, WM_RBUTTONUP});
        pumpPending();
        lookingAt = nullptr;
        KillTimer(nullptr, timer);
        return seen;
    }
    static Entry find(const std::vector<Entry>& entries, UINT id) {
        const auto found =
            std::find_if(entries.begin(), entries.end(), [id](const Entry& e) { return e.id == id; });
        return found == entries.end() ? Entry{} : *found;
    }
};

TEST_F(TrayPopup, ShowsTheCommandsInOrder) {
    std::vector<Text> captions;
    for (const Entry& entry : open().commands)
        captions.push_back(entry.caption);
    const std::vector<Text> expected = {u"Open",
                                        u"New Kardel",
                                        u"-",
                                        u"Hide All",
                                        u"Iconize All",
                                        u"-",
                                        u"Automatic position",
                                        u"Easy alignment",
                                        u"-",
                                        u"Use local files",
                                        u"-",
                                        u"About...",
                                        u"-",
                                        u"Exit"};
    EXPECT_EQ(captions, expected);
}

TEST_F(TrayPopup, ShowsHideAllBoldAndOnlyThat) {
    for (const Entry& entry : open().commands) {
        EXPECT_EQ((entry.state & MFS_DEFAULT) != 0, entry.id == 402) << entry.id;
    }
    desk.shown.allHidden = true;
    const Entry showAll = find(open().commands, 402);
    EXPECT_EQ(showAll.caption, u"Show All");
    EXPECT_NE(showAll.state & MFS_DEFAULT, 0U);
}

TEST_F(TrayPopup, ChecksAndGreysAsTheDeskIsWhenItOpens) {
    desk.shown.alignAll = true;
    desk.shown.localFiles = true;
    std::vector<Entry> commands = open().commands;
    EXPECT_NE(find(commands, 405).state & MFS_CHECKED, 0U);
    EXPECT_NE(find(commands, 406).state & MFS_GRAYED, 0U);
    EXPECT_NE(find(commands, 408).state & MFS_CHECKED, 0U);
    desk.shown.alignAll = false;
    desk.shown.localFiles = false;
    commands = open().commands;
    EXPECT_EQ(find(commands, 405).state & MFS_CHECKED, 0U);
    EXPECT_EQ(find(commands, 406).state & MFS_GRAYED, 0U);
    EXPECT_EQ(find(commands, 408).state & MFS_CHECKED, 0U);
}

TEST_F(TrayPopup, ListsTheNotesAsTheyAreWhenItOpens) {
    std::vector<Entry> notes = open().notes;
    ASSERT_EQ(notes.size(), 3U);
    EXPECT_EQ(notes[0].caption, u"Milk");
    EXPECT_EQ(notes[1].caption, u"Salt && pepper");
    EXPECT_EQ(notes[2].caption, u"- 3 -");
    EXPECT_EQ(notes[2].id, 502U);

    desk.noteTitles.clear();
    desk.shown.notes = 0;
    notes = open().notes;
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].caption, u"(none)");
    EXPECT_NE(notes[0].state & MFS_GRAYED, 0U);
}

/// Windows of this thread in the order in which they become active.
std::vector<HWND>* activations = nullptr;
LRESULT CALLBACK noteActivation(int code, WPARAM wp, LPARAM lp) {
    if (code == HCBT_ACTIVATE && activations != nullptr) activations->push_back(std::bit_cast<HWND>(wp));
    return CallNextHookEx(nullptr, code, wp, lp);
}

TEST_F(TrayPopup, BringsItsWindowForwardSoThatAClickElsewhereClosesIt) {
    const HWND other = CreateWindowExW(0, L"STATIC", L"other", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr,
                                       nullptr, nullptr, nullptr);
    SetForegroundWindow(other);
    std::vector<HWND> active;
    activations = &active;
    const HHOOK hook = SetWindowsHookExW(WH_CBT, noteActivation, nullptr, GetCurrentThreadId());
    open();
    UnhookWindowsHookEx(hook);
    activations = nullptr;
    DestroyWindow(other);
    EXPECT_NE(std::find(active.begin(), active.end(), tray.hwnd), active.end());
}

HWND plainWindow() {
    return CreateWindowExW(0, L"STATIC", L"box", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                           nullptr, nullptr);
}

TEST_F(TrayPopup, GivesTheKeyboardBackToAnOpenBox) {
    desk.shown.dialogOpen = true;
    desk.box = plainWindow();
    SetForegroundWindow(desk.box);
    EXPECT_FALSE(open().commands.empty());
    EXPECT_EQ(GetForegroundWindow(), desk.box);
    DestroyWindow(desk.box);
}

TEST_F(TrayPopup, LeavesTheKeyboardWhereTheUserTookIt) {
    const HWND other = plainWindow();
    desk.shown.dialogOpen = true;
    desk.box = plainWindow();
    SetForegroundWindow(desk.box);
    open({VK_ESCAPE}, [&] { SetForegroundWindow(other); });
    EXPECT_EQ(GetForegroundWindow(), other);
    DestroyWindow(desk.box);
    DestroyWindow(other);
}

TEST_F(TrayPopup, EscapeChoosesNothingAndTheNextPopupStaysOpen) {
    EXPECT_FALSE(open().commands.empty());
    EXPECT_FALSE(open().commands.empty());
    EXPECT_EQ(desk.calls, Calls{});
}

TEST_F(TrayPopup, RunsTheEntryThatIsChosen) {
    open({VK_UP, VK_RETURN});  // the last one
    EXPECT_EQ(desk.calls, Calls{"exit"});
}

TEST_F(TrayPopup, OpensTheNoteThatIsChosen) {
    open({VK_DOWN, VK_RIGHT, VK_DOWN, VK_RETURN});
    EXPECT_EQ(desk.calls, Calls{"open 1"});
}

TEST_F(TrayPopup, DoesWhatItsEntrySaidAlsoWhenTheDeskHasChangedMeanwhile) {
    // A note that rings while the menu is open is there again: not all notes are hidden any more.
    desk.shown.allHidden = true;
    open({VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, [this] { desk.shown.allHidden = false; });
    EXPECT_EQ(desk.calls, Calls{"show all"});
    desk.calls.clear();
    desk.shown.allIconized = true;
    open({VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, [this] { desk.shown.allIconized = false; });
    EXPECT_EQ(desk.calls, Calls{"restore all"});
}

bool menuIsOpen() {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof(thread);
    GetGUIThreadInfo(GetCurrentThreadId(), &thread);
    return (thread.flags & GUI_INMENUMODE) != 0;
}

TEST_F(TrayPopup, GoesBeforeABoxOpensOrTheProgramEnds) {
    desk.instead = [this](const std::string& call) {
        desk.calls.push_back(call);
        if (menuIsOpen()) desk.calls.emplace_back("under the menu");
    };
    const struct {
        UINT message;
        WPARAM wp;
        const char* call;
    } cases[] = {{WM_COMMAND, 411, "about"},
                 {WM_COMMAND, 413, "exit"},
                 {WM_CLOSE, 0, "exit"},
                 {fTray::kSaveFailed, 0, "save failure"},
                 {WM_SECONDSTART, 0, "already running"}};
    for (const auto& c : cases) {
        desk.calls.clear();
        bool open = false;
        // Escape comes after the message, and ends a menu that has not gone by itself.
        this->open({VK_ESCAPE}, [&] {
            open = menuIsOpen();
            PostMessageW(tray.hwnd, c.message, c.wp, 0);
        });
        EXPECT_TRUE(open) << c.call;
        EXPECT_EQ(desk.calls, Calls{c.call}) << c.message;
    }
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

TEST_F(Tray, AnInstallerThatWantsTheProgramGoneEndsIt) {
    SendMessageW(tray.hwnd, WM_QUERYENDSESSION, 0, ENDSESSION_CLOSEAPP);
    SendMessageW(tray.hwnd, WM_ENDSESSION, FALSE, ENDSESSION_CLOSEAPP);  // it has thought better of it
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
