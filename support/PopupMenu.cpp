#include "support/PopupMenu.h"

#include "support/Handles.h"
#include "support/Messages.h"

namespace {

UniqueMenu filled(const Menu& rows) {
    UniqueMenu menu(CreatePopupMenu());
    for (const MenuRow& row : shownRows(rows)) {
        UINT flags = row.separator ? MF_SEPARATOR : MF_STRING;
        if (!row.enabled) flags |= MF_GRAYED;
        if (row.checked) flags |= MF_CHECKED;
        if (row.items.empty()) {
            AppendMenuW(menu.get(), flags, row.id, wide(row.caption));
            if (row.isDefault) SetMenuDefaultItem(menu.get(), row.id, FALSE);
            continue;
        }
        UniqueMenu list = filled(row.items);
        const auto handle = reinterpret_cast<UINT_PTR>(list.get());
        const bool taken = AppendMenuW(menu.get(), flags | MF_POPUP, handle, wide(row.caption)) != FALSE;
        if (taken) static_cast<void>(list.release());  // from here on the menu owns it
    }
    return menu;
}

}  // namespace

void trackMenu(HWND window, const Menu& menu, LPARAM said) {
    const UniqueMenu popup = filled(menu);
    POINT mouse{};
    GetCursorPos(&mouse);
    SetForegroundWindow(window);  // otherwise a click elsewhere would not close the menu
    constexpr UINT kFlags = TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON;
    const BOOL chosen = TrackPopupMenu(popup.get(), kFlags, mouse.x, mouse.y, 0, window, nullptr);
    if (IsWindow(window) == FALSE) return;
    PostMessageW(window, WM_NULL, 0, 0);  // otherwise the next menu would close at once
    if (chosen != 0) postChosen(window, static_cast<unsigned>(chosen), said);
}

void postChosen(HWND window, unsigned id, LPARAM said) {
    PostMessageW(window, posted::kChosen, id, said);
}
