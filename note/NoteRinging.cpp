#include "note/NoteRinging.h"

#include "note/fmsg.h"
#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Accessible.h"

namespace {

void CALLBACK AlarmTimerProc(HWND window, UINT message, UINT_PTR, DWORD) noexcept {
    // A tick may still be on its way when the note goes or has been silenced.
    fpost* const note = formOf<fpost>(window);
    if (note == nullptr || note->alarm.pTimerProc == 0) return;
    try {
        note->alarm.flashTick();
    } catch (...) {
        fpost::onEscaped(message);
    }
}

}  // namespace

void NoteRinging::showStrip() {
    // During an edit it would cover the last line; but while the note rings there must be something to click.
    const bool edited = note_.editing.bodyBeingEdited();
    const bool room = !edited || note_.alarm.Alarming;
    const bool shown = note_.alarm.wantsStrip() && !note_.record.iconized && room && !note_.Help;
    if (shown && edited) {
        SetWindowPos(note_.pic_time, note_.pic2, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    setWindowText(note_.pic_time, note_.alarm.stripText(note_.host->now()));
    ShowWindow(note_.pic_time, shown ? SW_SHOWNA : SW_HIDE);
}

void NoteRinging::showCountdown(const Text& text) {
    note_.host->dialog->showCountdown(note_.hwnd, text);
    if (note_.alarm.ShowCountdown) setWindowText(note_.pic_time, text);
}

void NoteRinging::showColour(bool white) {
    note_.tBackColor(white ? kWhite : note_.Backcol());
    if (note_.Alarming() && !isTopmost(note_.hwnd)) raise();  // once it has lost the keyboard
}

void NoteRinging::raise() {
    // A note with the keyboard is in front already, and an edit in it must go on undisturbed: on a Wine
    // desktop a window that is raised while it is active loses the keyboard for a moment.
    if (GetForegroundWindow() != note_.hwnd) note_.place.applyTopmost();
}

void NoteRinging::appear() {
    NoteRecord& record = note_.record;
    const bool restored = record.iconized && note_.host->settings->RestoreWhenPlay;
    const bool reopened = record.closed;
    if (restored) record.iconized = false;
    record.closed = false;
    if (restored && reopened) {
        note_.kept.save({NoteField::Iconized, NoteField::Closed});
    } else if (restored || reopened) {
        note_.kept.save({restored ? NoteField::Iconized : NoteField::Closed});
    }
    // Not through IconizeForm, which would silence the alarm that has just begun.
    if (restored) note_.showIconized();
    showStrip();
    if (!note_.visible()) {  // a ringing note must be visible to be silenced
        note_.place.goHome();
        note_.show(false);
    }
    note_.host->noteShown();
    note_.host->notesChanged();
    raise();
}

void NoteRinging::settle() {
    note_.place.applyTopmost();
}

void NoteRinging::announce() {
    tellNameChanged(note_.hwnd);
    if (note_.Alarming()) tellAlert(note_.hwnd);
}

void NoteRinging::startSound() {
    note_.host->startSound();
}

void NoteRinging::stopSound() {
    note_.host->stopSound();
}

std::uintptr_t NoteRinging::startFlashTimer() {
    return SetTimer(note_.hwnd, IDT_FLASH, kAlarmTick, AlarmTimerProc);
}

void NoteRinging::stopFlashTimer() {
    KillTimer(note_.hwnd, IDT_FLASH);
}

void NoteRinging::ticksChanged() {
    note_.host->countingChanged();
}

void NoteRinging::store(AlarmFields fields) {
    storeRule(note_.record, note_.alarm.rule);
    switch (fields) {
        case AlarmFields::Everything:
            note_.kept.save(kAlarmFields);
            break;
        case AlarmFields::DateAndTime:
            note_.kept.save({NoteField::AlarmDate, NoteField::AlarmTime});
            break;
        case AlarmFields::Cleared:
            note_.kept.save(kClearedAlarmFields);
            break;
    }
}

void NoteRinging::takeStoredPattern(AlarmRule& rule) {
    // What the store has refused is only in memory.
    if (note_.record.readOnly || note_.kept.owes(NoteField::Interval)) return;
    NoteRecord stored = note_.record;
    if (!note_.host->store->refresh(note_.number, stored, kAlarmFields)) return;
    const AlarmRule kept = ruleFromRecord(stored);
    if (!hasAlarm(kept)) return;
    rule.eachday = kept.eachday;
    rule.eachmonth = kept.eachmonth;
    rule.eachyear = kept.eachyear;
    rule.alarmday = kept.alarmday;
    rule.alarmdaymonth = kept.alarmdaymonth;
}

bool NoteRinging::removeNote() {
    if (note_.host->settings->DontDeleteWhenPlay || note_.record.readOnly) return false;
    const NoteWatch watch(note_);
    // The alarm stays as it is, so that the store either holds the note as it was or not at all.
    note_.DeleteForm(true);
    return watch.gone();
}
