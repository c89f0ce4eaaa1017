#include "core/TrayMenu.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/Number.h"

static_assert(IDM_DYN_LAST - IDM_DYN + 1 == kTrayItems);

std::vector<TrayMenuItem> trayMenu(const TrayMenuState& state) {
    std::vector<TrayMenuItem> items(kTrayItems);
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].id = IDM_DYN + static_cast<unsigned>(i);
        items[i].caption = u"-";
        items[i].separator = true;
    }
    const auto set = [&items, &state](int index, const char16_t* caption, bool enabled,
                                      bool checked = false) {
        TrayMenuItem& item = items[static_cast<std::size_t>(index)];
        // What changes notes or opens a window would pull them away under the question that is open.
        const bool always = index == tray::kHideAll || index == tray::kExit;
        item.caption = caption;
        item.separator = false;
        item.enabled = enabled && (always || !state.dialogOpen);
        item.checked = checked;
    };
    const bool anyNote = state.notes > 0;
    set(tray::kNew, u"New Kardel", true);
    set(tray::kHideAll, state.allHidden ? u"Show All" : u"Hide All", anyNote);
    set(tray::kIconizeAll, state.allIconized ? u"Restore All" : u"Iconize All", anyNote);
    // Each excludes the other; with both on, from two runs, neither can be changed.
    set(tray::kAlignAll, u"Automatic position", anyNote && !state.easyAlign, state.alignAll);
    set(tray::kEasyAlign, u"Easy alignment", !state.alignAll, state.easyAlign);
    set(tray::kLocalFiles, u"Use local files", true, state.localFiles);
    set(tray::kQuickHelp, u"Quick Help\tF1", false);
    set(tray::kAbout, u"About...", true);
    set(tray::kExit, u"Exit", true);
    items[tray::kQuickHelp].visible = false;
    items[tray::kHideAll].isDefault = true;
    return items;
}

bool trayCommandAllowed(const TrayMenuState& state, int index) {
    if (index < 0 || index >= kTrayItems) return false;
    const TrayMenuItem item = trayMenu(state)[static_cast<std::size_t>(index)];
    return item.visible && item.enabled && !item.separator;
}

std::vector<TrayMenuItem> openMenu(const std::vector<Text>& titles, const TrayMenuState& state) {
    std::vector<TrayMenuItem> items;
    for (const Text& title : titles) {
        const auto slot = static_cast<int>(items.size());
        TrayMenuItem entry;
        entry.id = IDM_DYN2 + static_cast<unsigned>(slot);
        entry.caption = openCaption(title, slot + 1);
        entry.enabled = openAllowed(state, slot);
        items.push_back(entry);
    }
    if (items.empty()) {
        TrayMenuItem none;
        none.id = IDM_DYN2;
        none.caption = u"(none)";
        none.enabled = false;
        items.push_back(none);
    }
    return items;
}

bool openAllowed(const TrayMenuState& state, int slot) {
    return slot >= 0 && slot < state.notes && !state.dialogOpen;
}

Text numberTitle(int number) {
    return u"- " + decimal(number) + u" -";
}

Text openCaption(TextView title, int number) {
    Text caption(title);
    // A tab would begin the column of shortcuts, other control characters a new line or a right-aligned part.
    std::replace_if(
        caption.begin(), caption.end(), [](char16_t c) { return c < u' '; }, u' ');
    if (withoutTrailingBlanks(caption).empty()) return numberTitle(number);
    if (caption.size() > kCaptionLength) caption = Text(clipped(caption, kCaptionLength - 1)) + u'\u2026';
    return replaced(caption, u"&", u"&&");
}
