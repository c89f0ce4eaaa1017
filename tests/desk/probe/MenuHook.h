// What the hook, running inside the program under test, hands back about one open popup menu.
#pragma once

#include <windows.h>

inline constexpr wchar_t kMenuShare[] = L"KardelProbeMenu";        // name of the shared memory
inline constexpr wchar_t kMenuMessage[] = L"KardelProbeReadMenu";  // registered message, posted to the popup
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
