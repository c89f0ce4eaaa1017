#include "alarm/Ringing.h"

#include <utility>

#include "alarm/AlarmText.h"

// --- Arming -----------------------------------------------------------------------------------------------

void Ringing::armAfterLoad(Now now) {
    const AlarmRule before = rule;
    if (::armAfterLoad(rule, now)) face_.store(AlarmFields::DateAndTime);
    past_.movedOn(before, rule, now);
    updateCountdown();
}

void Ringing::set(const AlarmRule& confirmed) {
    silence();
    rule = confirmed;
    past_ = {};
    face_.store(AlarmFields::Everything);
    updateCountdown();
}

void Ringing::clear() {
    silence();
    stopCountdown();
    clearAlarm(rule);
    past_ = {};
    face_.showStrip();
    face_.store(AlarmFields::Cleared);
}

void Ringing::updateCountdown() {
    count(rule.due && !Alarming);
    face_.showStrip();
}

void Ringing::count(bool on) {
    if (counting_ == on) return;
    counting_ = on;
    face_.ticksChanged();
    face_.announce();
}

Text Ringing::stripText(Now now) const {
    if (!rule.due) return {};
    return ShowCountdown ? countdownText(*rule.due, now) : dueText(rule);
}

// --- Countdown and ringing --------------------------------------------------------------------------------

void Ringing::tick(Now now) {
    if (Alarming && pTimerProc == 0) {
        // Without a timer of its own it flashes and sounds on the countdown's ticks.
        flashTick();
        pTimerProc = face_.startFlashTimer();
    }
    if (!counting_ || !rule.due) return;
    face_.showCountdown(countdownText(*rule.due, now));
    if (!isBefore(now, *rule.due)) ring(now);
}

void Ringing::ring(Now now) {
    counting_ = false;
    Alarming = true;
    jumpWhileRinging_ = 0;
    past_.rang(*rule.due, now);
    face_.appear();
    if (!rule.Mute) face_.startSound();
    Tickcount = 0;
    white_ = true;
    face_.showColour(white_);
    face_.announce();
    pTimerProc = face_.startFlashTimer();
}

void Ringing::flashTick() {
    white_ = !white_;
    face_.showColour(white_);
    if (rule.Mute || ++Tickcount < kTicksBetweenSounds) return;
    Tickcount = 0;
    face_.startSound();
}

void Ringing::silence() {
    if (!Alarming) return;
    Alarming = false;
    if (std::exchange(pTimerProc, 0) != 0) face_.stopFlashTimer();
    white_ = false;
    face_.showColour(white_);
    face_.settle();
    face_.stopSound();
    face_.ticksChanged();
    face_.announce();
}

void Ringing::clockSet(Now now, std::int64_t jump) {
    if (Alarming) {
        jumpWhileRinging_ += jump;
        return;
    }
    if (past_.followClock(rule, now, jump)) face_.store(AlarmFields::DateAndTime);
    updateCountdown();
}

bool Ringing::SoundStop(Now now) {
    silence();
    face_.takeStoredPattern(rule);
    const AlarmRule rung = rule;
    if (rearm(rule, now) == Rearmed::OneShotOver) {
        if (face_.removeNote()) return true;
        clear();
        return false;
    }
    past_.movedOn(rung, rule, now);
    if (jumpWhileRinging_ != 0) past_.followClock(rule, now, jumpWhileRinging_);
    face_.store(AlarmFields::Everything);
    updateCountdown();
    return false;
}
