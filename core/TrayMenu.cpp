#include "core/TrayMenu.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/Number.h"

static_assert(IDM_DYN_LAST - IDM_DYN + 1 == kTrayItems);

namespace {

constexpr std::intptr_t kSaidAllHidden = 1;
constexpr std::intptr_t kSaidAllIconized = 2;

}  // namespace

Menu trayMenu(const TrayMenuState& state, TrayCommands& desk) {
    const auto run = [&desk](void (TrayCommands::*command)()) {
        return [&desk, command] { (desk.*command)(); };
    };
    const auto turn = [&desk](void (TrayCommands::*command)(bool), bool on) {
        return [&desk, command, on] { (desk.*command)(on); };
    };
    using Do = TrayCommands;
    const bool anyNote = state.notes > 0;
    // Anything that changes notes or opens a window would interfere with the open question.
    const bool free = !state.dialogOpen;
    // Automatic position and easy alignment exclude each other; with both on, from two runs, neither can be
    // changed.
    return {
        {.id = IDM_DYN, .caption = u"New Kardel", .action = run(&Do::newNote), .enabled = free},
        separatorRow(IDM_DYN + 1),
        {.id = IDM_DYN + 2,
         .caption = state.allHidden ? u"Show All" : u"Hide All",
         .action = turn(&Do::hideAll, !state.allHidden),
         .enabled = anyNote,
         .isDefault = true},
        {.id = IDM_DYN + 3,
         .caption = state.allIconized ? u"Restore All" : u"Iconize All",
         .action = turn(&Do::iconizeAll, !state.allIconized),
         .enabled = anyNote && free},
        separatorRow(IDM_DYN + 4),
        {.id = IDM_DYN + 5,
         .caption = u"Automatic position",
         .action = run(&Do::toggleAlignAll),
         .enabled = anyNote && !state.easyAlign && free,
         .checked = state.alignAll},
        {.id = IDM_DYN + 6,
         .caption = u"Easy alignment",
         .action = run(&Do::toggleEasyAlign),
         .enabled = !state.alignAll && free,
         .checked = state.easyAlign},
        separatorRow(IDM_DYN + 7),
        {.id = IDM_DYN + 8,
         .caption = u"Use local files",
         .action = run(&Do::switchStore),
         .enabled = free,
         .checked = state.localFiles},
        separatorRow(IDM_DYN + 9),
        {.id = IDM_DYN + 10, .caption = u"Quick Help\tF1", .shown = false, .enabled = false},
        {.id = IDM_DYN + 11, .caption = u"About...", .action = run(&Do::about), .enabled = free},
        separatorRow(IDM_DYN + 12),
        {.id = IDM_DYN + 13, .caption = u"Exit", .action = run(&Do::exitProgram)},
    };
}

Menu openMenu(const std::vector<Text>& titles, const TrayMenuState& state, TrayCommands& desk) {
    Menu menu;
    for (const Text& title : titles) {
        const auto slot = static_cast<int>(menu.size());
        menu.push_back({.id = IDM_DYN2 + static_cast<unsigned>(slot),
                        .caption = openCaption(title, slot + 1),
                        .action = [&desk, slot] { desk.openNote(slot); },
                        .enabled = slot < state.notes && !state.dialogOpen});
    }
    if (menu.empty()) menu.push_back({.id = IDM_DYN2, .caption = u"(none)", .enabled = false});
    return menu;
}

std::intptr_t said(const TrayMenuState& state) {
    return (state.allHidden ? kSaidAllHidden : 0) | (state.allIconized ? kSaidAllIconized : 0);
}

TrayMenuState asSaid(const TrayMenuState& now, std::intptr_t said) {
    TrayMenuState state = now;
    state.allHidden = (said & kSaidAllHidden) != 0;
    state.allIconized = (said & kSaidAllIconized) != 0;
    return state;
}

Text numberTitle(int number) {
    return u"- " + decimal(number) + u" -";
}

Text openCaption(TextView title, int number) {
    Text caption(title);
    // A tab would begin the column of shortcuts; other control characters would begin a new line or a
    // right-aligned part.
    std::replace_if(
        caption.begin(), caption.end(), [](char16_t c) { return c < u' '; }, u' ');
    if (withoutTrailingBlanks(caption).empty()) return numberTitle(number);
    if (caption.size() > kCaptionLength) caption = Text(clipped(caption, kCaptionLength - 1)) + u'\u2026';
    return replaced(caption, u"&", u"&&");
}
