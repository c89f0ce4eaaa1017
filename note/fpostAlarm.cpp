// A note's alarm on screen: the countdown in the time strip, the ringing, and what ends it. When it is due
// next is alarm/AlarmRule's to say.
#include <algorithm>

#include "alarm/AlarmText.h"
#include "note/fmsg.h"
#include "note/fpost.h"
#include "resources/resource.h"

namespace {

constexpr int kTicksBetweenSounds = 6;  // flash ticks: the sound starts every three seconds

void CALLBACK AlarmTimerProc(HWND window, UINT message, UINT_PTR, DWORD) noexcept {
    // A tick may still be on its way when the note goes or has been silenced.
    fpost* const note = formOf<fpost>(window);
    if (note == nullptr || note->flashTimer == 0) return;
    try {
        note->flashTick();
    } catch (...) {
        fpost::onEscaped(message);
    }
}

}  // namespace

AlarmRule fpost::ruleOf(const NoteRecord& stored) const {
    // A registry value is the word alone, the files' field of ten characters contains it.
    const bool exact = host->store->UseRegistry;
    return ruleFromRecord(stored, exact ? IntervalReading::Exact : IntervalReading::Contained);
}

// --- Arming -----------------------------------------------------------------------------------------------

void fpost::ArmAfterLoad() {
    if (Help) return;
    if (armAfterLoad(alarm, host->now())) {
        storeRule(record, alarm);
        store({NoteField::AlarmDate, NoteField::AlarmTime});
    }
    startCountdown();
}

void fpost::startCountdown() {
    if (alarm.due && !Alarming) {
        count(true);
    } else {
        stopCountdown();
    }
    ShowAlarmStrip();
}

void fpost::stopCountdown() {
    count(false);
}

void fpost::count(bool on) {
    if (counting == on) return;
    counting = on;
    host->countingChanged();
    tellNameChanged(hwnd);
}

void fpost::ShowAlarmStrip() {
    const bool shown = (alarm.due || Alarming) && !record.iconized && !bodyBeingEdited && !Help;
    placeStripText();
    ShowWindow(pic_time, shown ? SW_SHOWNA : SW_HIDE);
}

Text fpost::stripText() const {
    if (!alarm.due) return {};
    return ShowCountdown ? countdownText(*alarm.due, host->now()) : dueText(alarm);
}

void fpost::swapStrip() {
    if (IsWindowVisible(pic_time) == FALSE) return;
    ShowCountdown = !ShowCountdown;
    placeStripText();
}

void fpost::placeStripText() {
    setWindowText(pic_time, stripText());
}

// --- Countdown and ringing --------------------------------------------------------------------------------

void fpost::tmr_Timer() {
    if (!counting || !alarm.due) return;
    const Now now = host->now();
    host->dialog->showCountdown(hwnd, countdownText(*alarm.due, now));
    if (!isBefore(now, *alarm.due)) {
        ring();
        return;
    }
    if (ShowCountdown) placeStripText();
}

void fpost::ring() {
    stopCountdown();
    Alarming = true;
    const bool restored = record.iconized && host->settings->RestoreWhenPlay;
    const bool reopened = record.closed;
    if (restored) record.iconized = false;
    record.closed = false;
    if (restored && reopened) {
        store({NoteField::Iconized, NoteField::Closed});
    } else if (restored || reopened) {
        store({restored ? NoteField::Iconized : NoteField::Closed});
    }
    // Not through IconizeForm, which would silence the alarm that is just beginning.
    if (restored) showIconized();
    ShowAlarmStrip();
    host->showAgain();
    host->notesChanged();
    if (!visible()) {  // a note that rings must be there to be silenced
        place();
        show(false);
    }
    if (!alarm.Mute) host->startSound();
    Tickcount = 0;
    tBackColor(kWhite);
    tellNameChanged(hwnd);
    tellAlert(hwnd);
    flashTimer = SetTimer(hwnd, IDT_FLASH, kAlarmTick, AlarmTimerProc);
}

void fpost::flashTick() {
    tBackColor(tBackColor() != kWhite ? kWhite : Backcol());
    if (alarm.Mute) return;
    if (++Tickcount < kTicksBetweenSounds) return;
    Tickcount = 0;
    host->startSound();
}

void fpost::StopRinging() {
    if (!Alarming && flashTimer == 0) return;
    Alarming = false;
    if (flashTimer != 0) KillTimer(hwnd, IDT_FLASH);
    flashTimer = 0;
    tBackColor(Backcol());
    host->stopSound();
    tellNameChanged(hwnd);
}

void fpost::takeStoredPattern() {
    // What the store has refused stands in memory alone.
    const auto refused = std::find(unsaved.begin(), unsaved.end(), NoteField::Interval);
    if (record.readOnly || refused != unsaved.end()) return;
    NoteRecord stored;
    if (!host->store->load(number, stored, *host->settings)) return;
    const AlarmRule kept = ruleOf(stored);
    if (!hasAlarm(kept)) return;
    alarm.eachday = kept.eachday;
    alarm.eachmonth = kept.eachmonth;
    alarm.eachyear = kept.eachyear;
    alarm.alarmday = kept.alarmday;
    alarm.alarmdaymonth = kept.alarmdaymonth;
}

bool fpost::SoundStop() {
    const NoteWatch watch(*this);
    StopRinging();
    takeStoredPattern();
    switch (rearm(alarm, host->now())) {
        case Rearmed::OneShotOver:
            if (host->settings->DontDeleteWhenPlay || record.readOnly) {
                ClearAlarm();
                return false;
            }
            // With its alarm as it is: the store holds the note as it was or not at all.
            DeleteForm(true);
            return watch.gone();
        case Rearmed::Armed:
        case Rearmed::NotAhead:
            break;
    }
    storeAlarm();
    startCountdown();
    return false;
}

// --- Setting and clearing ---------------------------------------------------------------------------------

void fpost::storeAlarm() {
    storeRule(record, alarm);
    store({NoteField::AlarmDate, NoteField::Interval, NoteField::AlarmDay, NoteField::AlarmDayMonth,
           NoteField::AlarmTime, NoteField::AlarmWeekday, NoteField::AlarmRepeatNumber,
           NoteField::AlarmRepeatEvery, NoteField::Mute, NoteField::Weekday0, NoteField::Weekday1,
           NoteField::Weekday2, NoteField::Weekday3, NoteField::Weekday4, NoteField::Weekday5,
           NoteField::Weekday6});
}

void fpost::ClearAlarm() {
    stopCountdown();
    clearAlarm(alarm);
    ShowAlarmStrip();
    storeRule(record, alarm);
    store({NoteField::AlarmTime, NoteField::AlarmDate, NoteField::AlarmWeekday, NoteField::AlarmRepeatNumber,
           NoteField::AlarmRepeatEvery, NoteField::Mute, NoteField::Interval, NoteField::AlarmDay,
           NoteField::AlarmDayMonth});
}

void fpost::mnuAlarm() {
    if (host->dialog->open()) return;
    const NoteWatch watch(*this);
    const AlarmEdit edit = host->dialog->editAlarm(alarm, hwnd, host->now());
    // Meanwhile the note may have rung, been stopped and gone.
    if (watch.gone() || edit.AlarmStart == edit.AlarmStop) return;
    StopRinging();
    if (edit.AlarmStop) {
        ClearAlarm();
        return;
    }
    alarm = ruleFromEditor(edit.alarm, host->now());
    storeAlarm();
    startCountdown();
}
