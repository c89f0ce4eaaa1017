// A note without a window for the tests of its alarm. It remembers what the alarm asked of it.
#pragma once

#include <string>
#include <vector>

#include "alarm/Ringing.h"
#include "tests/support/Plain.h"

struct FakeNote : RingingFace {
    Ringing alarm{*this};
    Now now;  ///< of the last tick or call
    bool keepsOneShots = false;
    bool timersFail = false;  ///< Windows refuses to make a flash timer

    std::string strip;          ///< text shown, empty while it is hidden
    std::string lastCountdown;  ///< as an open alarm editor would show it
    bool white = false;
    int colours = 0;  ///< how often the colour changed
    int appeared = 0;
    int raised = 0;  ///< how often it came up above what covers it
    int spoken = 0;
    int sounds = 0;
    int silences = 0;
    bool sounding = false;
    int timers = 0;  ///< flash timers running
    int tickChanges = 0;
    bool removed = false;
    std::vector<AlarmFields> stored;
    AlarmRule kept;                      ///< the rule as it was last stored
    const AlarmRule* inStore = nullptr;  ///< has the pattern in the store, when another program wrote it

    /// Takes a rule that was just read at a start.
    void load(const AlarmRule& rule, Now at) {
        now = at;
        alarm.rule = rule;
        alarm.armAfterLoad(at);
    }
    /// Takes a rule that the user confirmed.
    void set(const AlarmRule& confirmed, Now at) {
        now = at;
        alarm.set(confirmed);
    }
    void tick(Now at) {
        now = at;
        if (alarm.wantsTicks()) alarm.tick(at);
    }
    /// Sends so many ticks of the flash timer, if it runs.
    void flash(int ticks) {
        for (int i = 0; i < ticks && alarm.pTimerProc != 0; ++i)
            alarm.flashTick();
    }
    bool stop(Now at) {
        now = at;
        return alarm.SoundStop(at);
    }

    void showStrip() override { strip = alarm.wantsStrip() ? plain(alarm.stripText(now)) : std::string(); }
    void showCountdown(const Text& text) override {
        lastCountdown = plain(text);
        if (alarm.ShowCountdown) strip = lastCountdown;
    }
    void showColour(bool isWhite) override {
        white = isWhite;
        ++colours;
    }
    void appear() override {
        ++appeared;
        ++raised;
        showStrip();
    }
    void settle() override { --raised; }
    void announce() override { ++spoken; }
    void startSound() override {
        ++sounds;
        sounding = true;
    }
    void stopSound() override {
        ++silences;
        sounding = false;
    }
    std::uintptr_t startFlashTimer() override {
        if (timersFail) return 0;
        ++timers;
        return 1040;
    }
    void stopFlashTimer() override { --timers; }
    void ticksChanged() override { ++tickChanges; }
    void store(AlarmFields fields) override {
        stored.push_back(fields);
        kept = alarm.rule;
    }
    void takeStoredPattern(AlarmRule& rule) override {
        if (inStore == nullptr) return;
        rule.eachday = inStore->eachday;
        rule.eachmonth = inStore->eachmonth;
        rule.eachyear = inStore->eachyear;
        rule.alarmday = inStore->alarmday;
        rule.alarmdaymonth = inStore->alarmdaymonth;
    }
    bool removeNote() override {
        removed = !keepsOneShots;
        return removed;
    }
};
