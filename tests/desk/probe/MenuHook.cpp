#include "MenuHook.h"

namespace {

// Not in every SDK's headers under this name: asks a popup window for the menu it shows.
constexpr UINT kGetMenu = 0x01E1;  // MN_GETHMENU

void read(HWND popup, MenuView& view) {
    auto* menu = reinterpret_cast<HMENU>(SendMessageW(popup, kGetMenu, 0, 0));
    const int count = GetMenuItemCount(menu);
    view.count = 0;
    for (int i = 0; i < count && view.count < kMenuItems; ++i) {
        MenuItemView& item = view.items[view.count];
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_FTYPE | MIIM_STATE | MIIM_STRING | MIIM_SUBMENU;
        info.dwTypeData = item.text;
        info.cch = kMenuText;
        item.text[0] = L'\0';
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(i), TRUE, &info)) continue;
        item.id = info.wID;
        item.type = info.fType;
        item.state = info.fState;
        item.opensMenu = info.hSubMenu != nullptr;
        GetMenuItemRect(popup, menu, static_cast<UINT>(i), &item.rect);
        ++view.count;
    }
}

// Called for every message that the program's thread takes from its queue, the menu's own loop included.
LRESULT CALLBACK menuHook(int code, WPARAM wp, LPARAM lp) {
    const auto* message = reinterpret_cast<const MSG*>(lp);
    if (code == HC_ACTION && wp == PM_REMOVE && message->message == RegisterWindowMessageW(kMenuMessage)) {
        HANDLE share = OpenFileMappingW(FILE_MAP_WRITE, FALSE, kMenuShare);
        if (share != nullptr) {
            auto* view = static_cast<MenuView*>(MapViewOfFile(share, FILE_MAP_WRITE, 0, 0, sizeof(MenuView)));
            if (view != nullptr) {
                read(message->hwnd, *view);
                InterlockedExchange(&view->done, 1);
                UnmapViewOfFile(view);
            }
            CloseHandle(share);
        }
    }
    return CallNextHookEx(nullptr, code, wp, lp);
}

}  // namespace

// The hook by a plain function: the exported name of the procedure itself differs between 32 and 64 bits.
extern "C" __declspec(dllexport) HOOKPROC menuHookProc();
extern "C" HOOKPROC menuHookProc() {
    return menuHook;
}
