// The tray's menu while it is open: what it shows, and what happens when an entry is chosen, the menu is
// left, or something else comes between.
#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/Messages.h"
#include "support/WinText.h"
#include "tests/window/TrayDesk.h"

namespace {

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

/// Looks at the open popup, then does what a user would do to it.
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

TEST_F(TrayPopup, GivesTheKeyboardBackToAnOpenBox) {
    desk.shown.dialogOpen = true;
    desk.box = plainWindow();
    SetForegroundWindow(desk.box);
    EXPECT_FALSE(open().commands.empty());
    EXPECT_EQ(GetForegroundWindow(), desk.box);
    DestroyWindow(desk.box);
}

TEST_F(TrayPopup, LeavesTheKeyboardWhereTheUserHasPutIt) {
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

TEST_F(TrayPopup, DoesWhatItsEntrySaidEvenIfTheDeskHasChangedMeanwhile) {
    // A note that rings while the menu is open comes back, so not all notes are hidden any more.
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
