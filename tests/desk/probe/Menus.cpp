// An open menu as a user sees it, and a choice in it.
#include <windows.h>

#include <algorithm>

#include "Commands.h"
#include "Inside.h"

namespace {

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
    Inside inside(kMenuQuestion);
    out.beginArray();
    for (HWND popup : openPopups()) {
        const auto* view = ask<MenuView>(inside, popup);
        out.beginArray();
        for (UINT i = 0; view != nullptr && i < view->count; ++i)
            addItem(out, view->items[i]);
        out.endArray();
    }
    out.endArray();
}
