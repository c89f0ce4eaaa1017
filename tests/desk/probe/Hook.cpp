#include "Hook.h"

#include <cstdint>

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

/// When Wine's labels are destroyed they leave a block behind, with a font in it and two empty places.
/// Windows' labels do not.
bool isLeftByLabel(const PROCESS_HEAP_ENTRY& block) {
    constexpr std::uintptr_t kFont = 0x0A;  // the upper part of a font's handle
    constexpr std::uintptr_t kKinds = 0x1F;
    const auto* places = static_cast<const std::uintptr_t*>(block.lpData);
    return block.cbData == 3 * sizeof *places && (places[0] >> 16 & kKinds) == kFont && places[1] == 0 &&
           places[2] == 0;
}

void read(HWND, HeapView& view) {
    constexpr DWORD kMostHeaps = 64;
    HANDLE heaps[kMostHeaps];
    const DWORD count = GetProcessHeaps(kMostHeaps, heaps);
    view.blocks = 0;
    view.bytes = 0;
    for (DWORD i = 0; i < count && i < kMostHeaps; ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != FALSE) {
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0 || isLeftByLabel(entry)) continue;
            ++view.blocks;
            view.bytes += entry.cbData;
        }
        HeapUnlock(heaps[i]);
    }
}

// Called for every message that the program's thread takes from its queue, the menu's own loop included.
template <class View>
LRESULT answer(const HookQuestion& question, int code, WPARAM wp, LPARAM lp) {
    const auto* message = reinterpret_cast<const MSG*>(lp);
    if (code == HC_ACTION && wp == PM_REMOVE &&
        message->message == RegisterWindowMessageW(question.message)) {
        HANDLE share = OpenFileMappingW(FILE_MAP_WRITE, FALSE, question.share);
        if (share != nullptr) {
            auto* view = static_cast<View*>(MapViewOfFile(share, FILE_MAP_WRITE, 0, 0, sizeof(View)));
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

LRESULT CALLBACK menuHook(int code, WPARAM wp, LPARAM lp) {
    return answer<MenuView>(kMenuQuestion, code, wp, lp);
}

LRESULT CALLBACK heapHook(int code, WPARAM wp, LPARAM lp) {
    return answer<HeapView>(kHeapQuestion, code, wp, lp);
}

}  // namespace

// The hooks are returned by plain functions, because the exported name of a procedure itself differs between
// 32 and 64 bits.
extern "C" __declspec(dllexport) HOOKPROC menuHookProc();
extern "C" HOOKPROC menuHookProc() {
    return menuHook;
}
extern "C" __declspec(dllexport) HOOKPROC heapHookProc();
extern "C" HOOKPROC heapHookProc() {
    return heapHook;
}
