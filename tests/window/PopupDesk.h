// The menu that a tray over a fake collection opens, looked at and answered while it is open.
#pragma once

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

#include "support/WinText.h"
#include "tests/window/TrayDesk.h"

struct Entry {
    Text caption;
    UINT state = 0;
    UINT id = 0;
    HMENU submenu = nullptr;
};

inline std::vector<Entry> entriesOf(HMENU menu) {
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
inline OpenPopup* lookingAt = nullptr;

inline void CALLBACK look(HWND, UINT, UINT_PTR timer, DWORD) {
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
    /// Takes the icon out of the panel, for tests of who has the keyboard: a panel that has just taken an
    /// icon in may give the keyboard to it some moments later. The menu opens without an icon as well.
    void leavePanel() const { TrayIconDelete(tray.hwnd); }
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
