#include "note/NoteMenu.h"

#include <algorithm>

#include "resources/resource.h"

namespace {

constexpr std::intptr_t kSaidIconized = 1;
constexpr std::intptr_t kSaidAllHidden = 2;
constexpr std::intptr_t kSaidAllIconized = 4;

MenuRow& rowOf(Menu& menu, unsigned id) {
    return *std::find_if(menu.begin(), menu.end(), [id](const MenuRow& row) { return row.id == id; });
}

/// `FlagReset` true: the menu of a normal note; false: of an iconized one.
void ResetIconizeFormMenu(Menu& menu, bool FlagReset) {
    rowOf(menu, IDM_EDIT).caption = FlagReset ? u"&Edit\tF2" : u"&Edit title\tF2";
    rowOf(menu, IDM_ICONIZE).caption = FlagReset ? u"Iconize" : u"Restore";
    rowOf(menu, IDM_RESIZE).enabled = FlagReset;
}

void ResetHideAllFormMenu(Menu& menu, bool FlagReset) {
    rowOf(menu, IDM_HIDEALL).caption = FlagReset ? u"Hide All" : u"Show All";
}

void ResetIconizeAllFormMenu(Menu& menu, bool FlagReset) {
    rowOf(menu, IDM_ICONIZEALL).caption = FlagReset ? u"Iconize All" : u"Restore All";
}

}  // namespace

Menu noteMenu(const NoteMenuInput& input, NoteMenuFace& note) {
    const auto run = [&note](void (NoteMenuFace::*command)()) {
        return [&note, command] { (note.*command)(); };
    };
    const auto turn = [&note](void (NoteMenuFace::*command)(bool), bool on) {
        return [&note, command, on] { (note.*command)(on); };
    };
    using Do = NoteMenuFace;
    Menu menu = {
        {.id = IDM_NEW, .caption = u"&New Kardel\tCTRL+N", .action = run(&Do::mnuNew)},
        separatorRow(),
        {.id = IDM_EDIT, .action = run(&Do::mnuEdit)},
        {.id = IDM_COLOR, .caption = u"Back color", .action = run(&Do::mnuColor)},
        separatorRow(),
        {.id = IDM_ALARM, .caption = u"Set alarm\tF4", .action = run(&Do::mnuAlarm)},
        {.id = IDM_REWHENPLAY,
         .caption = u"Restore when elapsed",
         .action = run(&Do::mnuRewhenplay),
         .shown = input.alarmValid && input.iconized,
         .checked = input.restoreWhenPlay},
        separatorRow(),
        {.id = IDM_CLOSE, .caption = u"Close", .action = run(&Do::mnuClose)},
        {.id = IDM_DELETE, .caption = u"&Delete\tCANC", .action = run(&Do::mnuDelete)},
        {.id = IDM_DONTDELETE,
         .caption = u"Don't delete when elapsed",
         .action = run(&Do::mnuDontDelete),
         .shown = input.alarmValid && !input.alarmPast && input.alarmOneOff,
         .checked = input.dontDeleteWhenPlay},
        separatorRow(),
        {.id = IDM_TOPMOST,
         .caption = u"Always on Top",
         .action = run(&Do::mnuTopmost),
         .checked = input.topmost},
        {.id = IDM_RESIZE, .caption = u"&Resize", .action = run(&Do::mnuResize), .checked = input.resizeMode},
        {.id = IDM_ICONIZE, .action = turn(&Do::mnuIconize, !input.iconized)},
        separatorRow(),
        {.id = IDM_HIDEALL, .action = turn(&Do::mnuHideAll, !input.allHidden)},
        {.id = IDM_ICONIZEALL, .action = turn(&Do::mnuIconizeAll, !input.allIconized)},
        separatorRow(),
        {.id = IDM_EXIT, .caption = u"Exit", .action = run(&Do::mnuExit)},
    };
    ResetIconizeFormMenu(menu, !input.iconized);
    ResetHideAllFormMenu(menu, !input.allHidden);
    ResetIconizeAllFormMenu(menu, !input.allIconized);
    return menu;
}

std::intptr_t said(const NoteMenuInput& input) {
    return (input.iconized ? kSaidIconized : 0) | (input.allHidden ? kSaidAllHidden : 0) |
           (input.allIconized ? kSaidAllIconized : 0);
}

NoteMenuInput asSaid(const NoteMenuInput& now, std::intptr_t said) {
    NoteMenuInput input = now;
    input.iconized = (said & kSaidIconized) != 0;
    input.allHidden = (said & kSaidAllHidden) != 0;
    input.allIconized = (said & kSaidAllIconized) != 0;
    return input;
}
