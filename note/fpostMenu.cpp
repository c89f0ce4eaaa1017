// The context menu, its commands, and the keys of a note.
#include "note/NoteKeys.h"
#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Messages.h"

namespace {

UniqueMenu popupOf(const std::vector<NoteMenuItem>& items) {
    UniqueMenu menu(CreatePopupMenu());
    for (const NoteMenuItem& item : visibleItems(items)) {
        const UINT flags = (item.id == 0 ? MF_SEPARATOR : MF_STRING) | (item.checked ? MF_CHECKED : 0U) |
                           (item.enabled ? MF_ENABLED : MF_GRAYED);
        AppendMenuW(menu.get(), flags, item.id, wide(item.caption));
    }
    return menu;
}

bool isDown(int key) {
    return GetKeyState(key) < 0;
}

// What the menu said when it was open, in the second word of posted::kChosen.
constexpr LPARAM kSaidIconized = 1;
constexpr LPARAM kSaidAllHidden = 2;
constexpr LPARAM kSaidAllIconized = 4;

}  // namespace

NoteMenuInput fpost::menuInput(const AlarmRule& rule) const {
    NoteMenuInput input;
    input.iconized = record.iconized;
    input.topmost = record.topmost;
    input.resizeMode = place.resizer.isOn();
    input.bodyBeingEdited = bodyBeingEdited();
    input.titleBeingEdited = titleBeingEdited();
    input.alarmValid = rule.due.has_value();
    input.alarmPast = rule.due && !isBefore(host->now(), *rule.due);
    input.alarmOneOff = isOneOff(rule);
    input.restoreWhenPlay = host->settings->RestoreWhenPlay;
    input.dontDeleteWhenPlay = host->settings->DontDeleteWhenPlay;
    input.allHidden = host->allHidden();
    input.allIconized = host->allIconized();
    return input;
}

AlarmRule fpost::storedAlarm() const {
    NoteRecord stored = record;
    if (!host->store->refresh(number, stored, kAlarmFields)) return alarm.rule;
    AlarmRule rule = ruleFromRecord(stored);
    armAfterLoad(rule, host->now());
    return rule;
}

void fpost::OpenMenu() {
    if (Help) return;
    CommitEdits();
    applyTopmost();
    // The menu shows what is stored, also when another program put it there.
    const NoteMenuInput said = menuInput(storedAlarm());
    const UniqueMenu menu = popupOf(noteMenu(said));
    POINT at{};
    GetCursorPos(&at);
    const NoteWatch watch(*this);
    const HWND window = hwnd;
    SetForegroundWindow(window);  // without it a click elsewhere would not close the menu
    const UINT flags = TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON;
    const BOOL chosen = TrackPopupMenu(menu.get(), flags, at.x, at.y, 0, window, nullptr);
    // The note may have gone meanwhile (an alarm, Exit); and a command that deletes it must not run inside
    // the menu's own loop.
    if (watch.destroyed()) return;
    PostMessageW(window, WM_NULL, 0, 0);
    if (chosen != 0) postChosen(static_cast<unsigned>(chosen), said);
}

void fpost::postChosen(unsigned id, const NoteMenuInput& said) const {
    const LPARAM words = (said.iconized ? kSaidIconized : 0) | (said.allHidden ? kSaidAllHidden : 0) |
                         (said.allIconized ? kSaidAllIconized : 0);
    PostMessageW(hwnd, posted::kChosen, id, words);
}

void fpost::onChosen(unsigned id, LPARAM said) {
    NoteMenuInput input = menuInput(alarm.rule);
    input.iconized = (said & kSaidIconized) != 0;
    input.allHidden = (said & kSaidAllHidden) != 0;
    input.allIconized = (said & kSaidAllIconized) != 0;
    command(id, input);
}

void fpost::command(unsigned id, const NoteMenuInput& said) {
    if (Help || beingDeleted || !commandAllowed(noteMenu(menuInput(alarm.rule)), id)) return;
    // Edit ends the other editor by itself and leaves its own as it is.
    if (id != IDM_EDIT) CommitEdits();
    switch (id) {
        case IDM_NEW:
            host->newNote();
            break;
        case IDM_EDIT:
            if (record.iconized) {
                EditCaption();
            } else {
                EditForm();
            }
            break;
        case IDM_COLOR:
            mnuColor();
            break;
        case IDM_ALARM:
            mnuAlarm();
            break;
        case IDM_REWHENPLAY:
            toggleSetting(&GlobalSettings::RestoreWhenPlay, Setting::RestoreWhenPlay);
            break;
        case IDM_CLOSE:
            CloseForm();
            break;
        case IDM_DELETE:
            DeleteForm(false);
            break;
        case IDM_DONTDELETE:
            toggleSetting(&GlobalSettings::DontDeleteWhenPlay, Setting::DontDeleteWhenPlay);
            break;
        case IDM_TOPMOST:
            toggleTopmost();
            break;
        case IDM_RESIZE:
            place.resizer.setMode(!place.resizer.isOn());
            break;
        case IDM_ICONIZE:
            // A note that rang meanwhile may have come back by itself: what the user read is done already.
            if (record.iconized == said.iconized) toggleIconized();
            break;
        case IDM_HIDEALL:
            host->hideAll(!said.allHidden);
            break;
        case IDM_ICONIZEALL:
            host->iconizeAll(!said.allIconized);
            break;
        case IDM_EXIT:
            host->exitProgram();
            break;
        default:
            break;
    }
}

bool fpost::onKeyDown(WPARAM key, bool repeated) {
    if (Help) {
        if (key != VK_ESCAPE) return false;
        unload();
        return true;
    }
    if (place.resizer.key(static_cast<unsigned>(key), isDown(VK_CONTROL))) return true;
    const NoteKey pressed{static_cast<unsigned>(key), isDown(VK_SHIFT), isDown(VK_CONTROL), isDown(VK_MENU),
                          repeated};
    switch (noteAction(pressed, {editor.isOpen(), Alarming(), place.resizer.isOn(), justEdited()})) {
        case NoteAction::None:
            return false;
        case NoteAction::Delete:
            command(IDM_DELETE);
            break;
        case NoteAction::New:
            command(IDM_NEW);
            break;
        case NoteAction::Menu:
            OpenMenu();
            break;
        case NoteAction::Edit:
            command(IDM_EDIT);
            break;
        case NoteAction::EditTitle:
            EditCaption();
            break;
        case NoteAction::Alarm:
            command(IDM_ALARM);
            break;
        case NoteAction::SwapStrip:
            swapStrip();
            break;
        case NoteAction::Silence:
            SoundStop();
            break;
        case NoteAction::NextNote:
            goToNote(1);
            break;
        case NoteAction::PreviousNote:
            goToNote(-1);
            break;
        case NoteAction::MoveLeft:
            place.moveStep(-1, 0);
            break;
        case NoteAction::MoveUp:
            place.moveStep(0, -1);
            break;
        case NoteAction::MoveRight:
            place.moveStep(1, 0);
            break;
        case NoteAction::MoveDown:
            place.moveStep(0, 1);
            break;
    }
    return true;
}

bool fpost::justEdited() const {
    constexpr std::uint64_t kLately = 1000;
    return editEnded && host->uptime() - *editEnded < kLately;
}

bool fpost::onSystemKeyDown(WPARAM key) {
    if (key != VK_F10 || !isDown(VK_SHIFT)) return false;
    OpenMenu();
    return true;
}

void fpost::goToNote(int step) {
    fpost* const next = host->nextVisible(*this, step);
    if (next != nullptr) next->show(true);
}

void fpost::toggleSetting(bool GlobalSettings::*flag, Setting setting) {
    bool& value = host->settings->*flag;
    value = !value;
    host->storeSetting(setting);
}
