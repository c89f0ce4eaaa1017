// What the hook, which runs inside the program under test, hands back.
#pragma once

#include <windows.h>

/// A question: the shared memory for the answer, the registered message that asks it, the exported function
/// that returns the hook, and the size of the answer.
struct HookQuestion {
    const wchar_t* share;
    const wchar_t* message;
    const char* procedure;
    DWORD bytes;
};

// --- one open popup menu, asked of the popup

inline constexpr unsigned kMenuItems = 80;
inline constexpr unsigned kMenuText = 160;  // characters, with the closing zero

struct MenuItemView {
    UINT id;
    UINT type;
    UINT state;
    RECT rect;  // on the screen
    BOOL opensMenu;
    wchar_t text[kMenuText];
};

struct MenuView {
    LONG done;  // set to 1 last
    UINT count;
    MenuItemView items[kMenuItems];
};

inline constexpr HookQuestion kMenuQuestion{L"KardelProbeMenu", L"KardelProbeReadMenu", "menuHookProc",
                                            sizeof(MenuView)};

// --- the program's heaps, asked of any of its windows

struct HeapView {
    LONG done;  // set to 1 last
    UINT blocks;
    ULONGLONG bytes;  // in use
};

inline constexpr HookQuestion kHeapQuestion{L"KardelProbeHeap", L"KardelProbeReadHeap", "heapHookProc",
                                            sizeof(HeapView)};
