// An open menu as a user sees it, and a choice in it.
#include <windows.h>

#include <algorithm>
#include <bit>

#include "Commands.h"
#include "MenuHook.h"

namespace {

constexpr ULONGLONG kAnswerWait = 3000;  // ms

std::vector<HWND> openPopups() {
    std::vector<HWND> popups;
    HWND popup = nullptr;
    while ((popup = FindWindowExW(nullptr, popup, L"#32768", nullptr)) != nullptr) {
        if (IsWindowVisible(popup)) popups.push_back(popup);
    }
    std::reverse(popups.begin(),
                 popups.end());  // front to back: a sub-menu comes before the menu that opened it
    return popups;
}

void addItem(Json& out, const MenuItemView& item) {
    out.beginObject().field("id", item.id).field("text", item.text);
    out.flag("separator", (item.type & MFT_SEPARATOR) != 0).flag("checked", (item.state & MFS_CHECKED) != 0);
    out.flag("enabled", (item.state & MFS_DISABLED) == 0).flag("default", (item.state & MFS_DEFAULT) != 0);
    out.flag("highlighted", (item.state & MFS_HILITE) != 0).flag("submenu", item.opensMenu != FALSE);
    out.key("rect").beginArray().number(item.rect.left).number(item.rect.top);
    out.number(item.rect.right - item.rect.left)
        .number(item.rect.bottom - item.rect.top)
        .endArray()
        .endObject();
}

}  // namespace

void readMenu(const Words&, Json& out) {
    HMODULE library = LoadLibraryW(L"kardel_probe_hook.dll");
    if (library == nullptr) throw Failure{L"kardel_probe_hook.dll is not beside the probe"};
    const auto hookProc = std::bit_cast<HOOKPROC (*)()>(GetProcAddress(library, "menuHookProc"))();
    HANDLE share =
        CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(MenuView), kMenuShare);
    auto* view = static_cast<MenuView*>(MapViewOfFile(share, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(MenuView)));
    const UINT message = RegisterWindowMessageW(kMenuMessage);

    out.beginArray();
    for (HWND popup : openPopups()) {
        view->done = 0;
        HHOOK hook =
            SetWindowsHookExW(WH_GETMESSAGE, hookProc, library, GetWindowThreadProcessId(popup, nullptr));
        PostMessageW(popup, message, 0, 0);
        const ULONGLONG end = GetTickCount64() + kAnswerWait;
        while (InterlockedCompareExchange(&view->done, 0, 0) == 0 && IsWindow(popup) &&
               GetTickCount64() < end)
            Sleep(5);
        const bool answered = InterlockedCompareExchange(&view->done, 0, 0) != 0;
        if (hook != nullptr) UnhookWindowsHookEx(hook);
        out.beginArray();
        for (UINT i = 0; answered && i < view->count; ++i)
            addItem(out, view->items[i]);
        out.endArray();
    }
    out.endArray();
    UnmapViewOfFile(view);
    CloseHandle(share);
    FreeLibrary(library);
}
