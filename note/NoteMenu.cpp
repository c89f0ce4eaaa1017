#include "note/NoteMenu.h"

#include <algorithm>

#include "resources/resource.h"

namespace {

const NoteMenuItem kSeparator{};

NoteMenuItem& itemOf(std::vector<NoteMenuItem>& items, unsigned id) {
    return *std::find_if(items.begin(), items.end(), [id](const NoteMenuItem& i) { return i.id == id; });
}

/// `FlagReset` true: the menu of a normal note; false: of an iconized one.
void ResetIconizeFormMenu(std::vector<NoteMenuItem>& items, bool FlagReset) {
    itemOf(items, IDM_EDIT).caption = FlagReset ? u"&Edit\tF2" : u"&Edit title\tF2";
    itemOf(items, IDM_ICONIZE).caption = FlagReset ? u"Iconize" : u"Restore";
    itemOf(items, IDM_RESIZE).enabled = FlagReset;
}

void ResetHideAllFormMenu(std::vector<NoteMenuItem>& items, bool FlagReset) {
    itemOf(items, IDM_HIDEALL).caption = FlagReset ? u"Hide All" : u"Show All";
}

void ResetIconizeAllFormMenu(std::vector<NoteMenuItem>& items, bool FlagReset) {
    itemOf(items, IDM_ICONIZEALL).caption = FlagReset ? u"Iconize All" : u"Restore All";
}

void setAlarmItems(std::vector<NoteMenuItem>& items, const NoteMenuInput& input) {
    NoteMenuItem& keep = itemOf(items, IDM_DONTDELETE);
    keep.visible = input.alarmValid && !input.alarmPast && input.alarmOneOff;
    keep.checked = input.dontDeleteWhenPlay;
    NoteMenuItem& restore = itemOf(items, IDM_REWHENPLAY);
    restore.visible = input.alarmValid && input.iconized;
    restore.checked = input.restoreWhenPlay;
}

}  // namespace

std::vector<NoteMenuItem> noteMenu(const NoteMenuInput& input) {
    std::vector<NoteMenuItem> items = {
        {IDM_NEW, u"&New Kardel\tCTRL+N"},
        kSeparator,
        {IDM_EDIT, {}},
        {IDM_COLOR, u"Back color"},
        kSeparator,
        {IDM_ALARM, u"Set alarm\tF4"},
        {IDM_REWHENPLAY, u"Restore when elapsed"},
        kSeparator,
        {IDM_CLOSE, u"Close"},
        {IDM_DELETE, u"&Delete\tCANC"},
        {IDM_DONTDELETE, u"Don't delete when elapsed"},
        kSeparator,
        {IDM_TOPMOST, u"Always on Top"},
        {IDM_RESIZE, u"&Resize"},
        {IDM_ICONIZE, {}},
        kSeparator,
        {IDM_HIDEALL, {}},
        {IDM_ICONIZEALL, {}},
        kSeparator,
        {IDM_EXIT, u"Exit"},
    };
    ResetIconizeFormMenu(items, !input.iconized);
    ResetHideAllFormMenu(items, !input.allHidden);
    ResetIconizeAllFormMenu(items, !input.allIconized);
    setAlarmItems(items, input);
    itemOf(items, IDM_TOPMOST).checked = input.topmost;
    itemOf(items, IDM_RESIZE).checked = input.resizeMode;
    return items;
}

std::vector<NoteMenuItem> visibleItems(const std::vector<NoteMenuItem>& items) {
    std::vector<NoteMenuItem> shown;
    for (const NoteMenuItem& item : items) {
        const bool separator = item.id == 0;
        const bool afterItem = !shown.empty() && shown.back().id != 0;
        if (separator ? afterItem : item.visible) shown.push_back(item);
    }
    if (!shown.empty() && shown.back().id == 0) shown.pop_back();
    return shown;
}

bool commandAllowed(const std::vector<NoteMenuItem>& items, unsigned id) {
    return std::any_of(items.begin(), items.end(), [id](const NoteMenuItem& item) {
        return item.id == id && id != 0 && item.visible && item.enabled;
    });
}
