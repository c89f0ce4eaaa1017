// The tray's menu while it is open: what it shows of the desk, who has the keyboard, and what happens when
// something else comes between.
#include <algorithm>
#include <bit>
#include <string>
#include <vector>

#include "support/Messages.h"
#include "support/Window.h"
#include "tests/window/PopupDesk.h"

namespace {

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

/// The windows of this thread, in the order in which they become active.
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

/// The window in the foreground. While the window manager takes over one that is new, there is none for a
/// moment.
HWND settledForeground() {
    for (int tries = 0; tries < 200 && GetForegroundWindow() == nullptr; ++tries)
        pumpFor(10);
    return GetForegroundWindow();
}

TEST_F(TrayPopup, GivesTheKeyboardBackToAnOpenBox) {
    leavePanel();
    desk.shown.dialogOpen = true;
    desk.box = plainWindow();
    SetForegroundWindow(desk.box);
    EXPECT_FALSE(open().commands.empty());
    EXPECT_EQ(settledForeground(), desk.box);
    DestroyWindow(desk.box);
}

TEST_F(TrayPopup, LeavesTheKeyboardWhereTheUserHasPutIt) {
    leavePanel();
    const HWND other = plainWindow();
    desk.shown.dialogOpen = true;
    desk.box = plainWindow();
    SetForegroundWindow(desk.box);
    open({VK_ESCAPE}, [&] { SetForegroundWindow(other); });
    EXPECT_EQ(settledForeground(), other);
    DestroyWindow(desk.box);
    DestroyWindow(other);
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
                 {posted::kSaveFailed, 0, "save failure"},
                 {WM_SECONDSTART, 0, "already running"}};
    for (const auto& c : cases) {
        desk.calls.clear();
        bool open = false;
        // Escape comes after the message and closes a menu that has not gone by itself.
        this->open({VK_ESCAPE}, [&] {
            open = menuIsOpen();
            PostMessageW(tray.hwnd, c.message, c.wp, 0);
        });
        EXPECT_TRUE(open) << c.call;
        EXPECT_EQ(desk.calls, Calls{c.call}) << c.message;
    }
}

}  // namespace
