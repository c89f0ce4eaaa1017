#include "note/NoteCommands.h"

#include "note/NoteKeys.h"
#include "note/bas_DialogColor.h"
#include "note/fmsg.h"
#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Accessible.h"
#include "support/PopupMenu.h"

namespace {

bool isDown(int key) {
    return GetKeyState(key) < 0;
}

}  // namespace

// --- The menu ---------------------------------------------------------------------------------------------

NoteMenuInput NoteCommands::input(const AlarmRule& rule) const {
    const NoteHost& desk = *note_.host;
    NoteMenuInput input;
    input.iconized = note_.record.iconized;
    input.topmost = note_.record.topmost;
    input.resizeMode = note_.place.resizer.isOn();
    input.alarmValid = rule.due.has_value();
    input.alarmPast = rule.due && !isBefore(desk.now(), *rule.due);
    input.alarmOneOff = isOneOff(rule);
    input.restoreWhenPlay = desk.settings->RestoreWhenPlay;
    input.dontDeleteWhenPlay = desk.settings->DontDeleteWhenPlay;
    input.allHidden = desk.allHidden();
    input.allIconized = desk.allIconized();
    return input;
}

AlarmRule NoteCommands::storedAlarm() const {
    NoteRecord stored = note_.record;
    if (!note_.host->store->refresh(note_.number, stored, kAlarmFields)) return note_.alarm.rule;
    AlarmRule rule = ruleFromRecord(stored);
    armAfterLoad(rule, note_.host->now());
    return rule;
}

void NoteCommands::OpenMenu() {
    if (note_.Help) return;
    note_.CommitEdits();
    note_.place.applyTopmost();
    // The menu shows what is stored, even if another program has changed it.
    const NoteMenuInput now = input(storedAlarm());
    trackMenu(note_.hwnd, noteMenu(now, *this), said(now));
}

void NoteCommands::onCommand(unsigned id) {
    // A box that opened inside the menu's loop would be below the menu, which has the mouse.
    if (endOpenMenu()) {
        postChosen(note_.hwnd, id, said(input(note_.alarm.rule)));
    } else {
        run(id);
    }
}

void NoteCommands::onChosen(unsigned id, std::intptr_t said) {
    run(id, asSaid(input(note_.alarm.rule), said));
}

void NoteCommands::run(unsigned id) {
    run(id, input(note_.alarm.rule));
}

void NoteCommands::run(unsigned id, const NoteMenuInput& read) {
    const Menu now = noteMenu(input(note_.alarm.rule), *this);
    if (note_.Help || note_.beingDeleted || !isAllowed(now, id)) return;
    const NoteWatch watch(note_);
    // Edit itself ends the other editor and leaves its own open.
    if (id != IDM_EDIT) note_.CommitEdits();
    if (!watch.gone()) answer(now, noteMenu(read, *this), id);
}

// --- The commands -----------------------------------------------------------------------------------------

void NoteCommands::mnuNew() {
    note_.host->newNote();
}

void NoteCommands::mnuEdit() {
    if (note_.record.iconized) {
        note_.EditCaption();
    } else {
        note_.EditForm();
    }
}

void NoteCommands::mnuColor() {
    const NoteWatch watch(note_);
    if (IsWindowEnabled(note_.hwnd) == FALSE) return;  // its colour dialog or another box is already open
    note_.CommitEdits();
    if (watch.gone() || note_.refusesChange()) return;
    const std::optional<Rgb> chosen = ChooseColorDialog(note_.hwnd, note_.Backcol());
    // An alarm or Exit may have removed the note while the dialog was open.
    if (watch.gone()) return;
    // Black cannot be stored, because 0 means a damaged record.
    if (!chosen || *chosen == kBlack) return;
    note_.Backcol(static_cast<std::int32_t>(*chosen));
    note_.ringing.showStrip();
    note_.kept.save({NoteField::Backcolor});
}

void NoteCommands::mnuAlarm() {
    if (note_.host->dialog->open() || note_.refusesChange()) return;
    const NoteWatch watch(note_);
    const EditorResult edit = note_.host->dialog->editAlarm(note_.alarm.rule, note_.hwnd, note_.host->now());
    // Meanwhile the note may have rung, been stopped and gone.
    if (watch.gone() || edit.AlarmStart == edit.AlarmStop) return;
    if (edit.AlarmStop) {
        note_.alarm.clear();
    } else {
        note_.alarm.set(ruleFromEditor(edit.alarm, note_.host->now()));
    }
}

void NoteCommands::mnuRewhenplay() {
    toggleSetting(&GlobalSettings::RestoreWhenPlay, Setting::RestoreWhenPlay);
}

void NoteCommands::mnuClose() {
    note_.CloseForm();
}

void NoteCommands::mnuDelete() {
    note_.DeleteForm(false);
}

void NoteCommands::mnuDontDelete() {
    toggleSetting(&GlobalSettings::DontDeleteWhenPlay, Setting::DontDeleteWhenPlay);
}

void NoteCommands::mnuTopmost() {
    if (note_.refusesChange()) return;
    note_.record.topmost = !note_.record.topmost;
    note_.place.applyTopmost();
    tellNameChanged(note_.hwnd);
    note_.kept.save({NoteField::Topmost});
}

void NoteCommands::mnuResize() {
    note_.place.resizer.setMode(!note_.place.resizer.isOn());
}

void NoteCommands::mnuIconize(bool iconized) {
    // A note that has rung meanwhile may have been restored by itself: then what the user chose is already
    // done.
    if (note_.record.iconized != iconized) note_.toggleIconized();
}

void NoteCommands::mnuHideAll(bool hidden) {
    note_.host->hideAll(hidden);
}

void NoteCommands::mnuIconizeAll(bool iconized) {
    note_.host->iconizeAll(iconized);
}

void NoteCommands::mnuExit() {
    note_.host->exitProgram();
}

void NoteCommands::toggleSetting(bool GlobalSettings::*flag, Setting setting) {
    bool& value = note_.host->settings->*flag;
    value = !value;
    note_.host->storeSetting(setting);
}

void NoteCommands::swapStrip() {
    if (IsWindowVisible(note_.pic_time) == FALSE) return;
    note_.alarm.ShowCountdown = !note_.alarm.ShowCountdown;
    setWindowText(note_.pic_time, note_.alarm.stripText(note_.host->now()));
}

// --- Keys -------------------------------------------------------------------------------------------------

bool NoteCommands::onKeyDown(WPARAM key, bool repeated) {
    if (note_.Help) {
        if (key != VK_ESCAPE) return false;
        note_.unload();
        return true;
    }
    if (note_.place.resizer.key(static_cast<unsigned>(key), isDown(VK_CONTROL))) return true;
    const NoteKey pressed{static_cast<unsigned>(key), isDown(VK_SHIFT), isDown(VK_CONTROL), isDown(VK_MENU),
                          repeated};
    switch (noteAction(pressed, {note_.editing.isOpen(), note_.Alarming(), note_.place.resizer.isOn(),
                                 note_.editing.justEnded()})) {
        case NoteAction::None:
            return false;
        case NoteAction::Delete:
            run(IDM_DELETE);
            break;
        case NoteAction::New:
            run(IDM_NEW);
            break;
        case NoteAction::OpenMenu:
            OpenMenu();
            break;
        case NoteAction::Edit:
            run(IDM_EDIT);
            break;
        case NoteAction::EditTitle:
            note_.EditCaption();
            break;
        case NoteAction::Alarm:
            run(IDM_ALARM);
            break;
        case NoteAction::SwapStrip:
            swapStrip();
            break;
        case NoteAction::Silence:
            note_.SoundStop();
            break;
        case NoteAction::NextNote:
            goToNote(1);
            break;
        case NoteAction::PreviousNote:
            goToNote(-1);
            break;
        case NoteAction::MoveLeft:
            note_.place.moveStep(-1, 0);
            break;
        case NoteAction::MoveUp:
            note_.place.moveStep(0, -1);
            break;
        case NoteAction::MoveRight:
            note_.place.moveStep(1, 0);
            break;
        case NoteAction::MoveDown:
            note_.place.moveStep(0, 1);
            break;
    }
    return true;
}

bool NoteCommands::onSystemKeyDown(WPARAM key) {
    if (key != VK_F10 || !isDown(VK_SHIFT)) return false;
    OpenMenu();
    return true;
}

void NoteCommands::goToNote(int step) {
    fpost* const next = note_.host->nextVisible(note_, step);
    if (next != nullptr) next->show(true);
}
