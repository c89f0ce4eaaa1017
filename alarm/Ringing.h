// A note's alarm during a run of the program: armed, counting down, ringing, silenced, armed again. It has no
// window and reads no clock: time is an argument, and what the note has to do is asked of RingingFace.
#pragma once

#include <cstdint>

#include "alarm/AlarmPast.h"
#include "alarm/AlarmRule.h"
#include "support/DateTime.h"
#include "support/Text.h"

/// Ticks of half a second from one start of the sound to the next: three seconds.
inline constexpr int kTicksBetweenSounds = 6;

/// The fields that a change of the alarm affects.
enum class AlarmFields : unsigned char {
    Everything,
    DateAndTime,  ///< it only moved on
    Cleared,      ///< there is no alarm any more
};

/// What an alarm asks of the note that carries it.
class RingingFace {
public:
    virtual ~RingingFace() = default;
    RingingFace(const RingingFace&) = delete;
    RingingFace& operator=(const RingingFace&) = delete;

    /// Prints the strip's text, and shows or hides the strip as `Ringing::wantsStrip` says.
    virtual void showStrip() = 0;
    /// The countdown's new text, for the strip and for whoever else shows it.
    virtual void showCountdown(const Text& text) = 0;
    /// White, or the note's own colour.
    virtual void showColour(bool white) = 0;
    /// Brings the note into view above everything that covers it, restored and reopened as far as that is
    /// wanted.
    virtual void appear() = 0;
    /// Puts the note, now silent, back in its own place among the windows.
    virtual void settle() = 0;
    /// Tells screen readers the note's new state.
    virtual void announce() = 0;
    virtual void startSound() = 0;
    virtual void stopSound() = 0;
    /// Starts the timer that calls `flashTick` every half second. Returns its identifier, or 0 when there is
    /// none to be had.
    virtual std::uintptr_t startFlashTimer() = 0;
    virtual void stopFlashTimer() = 0;
    /// `wantsTicks` has changed.
    virtual void ticksChanged() = 0;
    /// Stores what the rule has become.
    virtual void store(AlarmFields fields) = 0;
    /// Updates whether and how the alarm recurs from what the store holds now; what cannot be read stays as
    /// it is.
    virtual void takeStoredPattern(AlarmRule& rule) = 0;
    /// The alarm has rung its only time. True when the note went with it: then the alarm may be gone, too.
    virtual bool removeNote() = 0;

protected:
    RingingFace() = default;
};

struct Ringing {
    explicit Ringing(RingingFace& face) : face_(face) {}
    Ringing(const Ringing&) = delete;
    Ringing& operator=(const Ringing&) = delete;

    /// Settles a rule that was just read, stores it if it moved on, and starts the countdown.
    void armAfterLoad(Now now);
    /// Takes a rule that the user has confirmed.
    void set(const AlarmRule& confirmed);
    /// Ends the alarm for good.
    void clear();

    /// Half a second later: the countdown goes on, or it is time to ring.
    void tick(Now now);
    /// The clock was set to `now`, by `jump` seconds, back when negative: the alarm follows it. One that is
    /// ringing goes on and follows once it is stopped.
    void clockSet(Now now, std::int64_t jump);
    /// Half a second later while it rings: the colour changes, and every few ticks the sound begins again.
    void flashTick();
    /// Stops the ringing and arms the next occurrence. True when the note went with its alarm.
    bool SoundStop(Now now);
    /// Ends colour, sound and flash timer, and arms nothing.
    void silence();
    /// Counts down when there is something to wait for, and not otherwise.
    void updateCountdown();
    void stopCountdown() { count(false); }

    bool isCounting() const { return counting_; }
    /// Whether `tick` has to come every half second.
    bool wantsTicks() const { return counting_ || Alarming; }
    /// Whether the strip has something to show.
    bool wantsStrip() const { return rule.due || Alarming; }
    /// The time left or, by `ShowCountdown`, when it is due. Empty when there is nothing to wait for.
    Text stripText(Now now) const;

    AlarmRule rule;
    bool Alarming = false;          ///< rings now
    bool ShowCountdown = true;      ///< the strip shows the time left rather than the due time
    int Tickcount = 0;              ///< flash ticks since the sound last started, 0..5
    std::uintptr_t pTimerProc = 0;  ///< identifier of the running flash timer, 0 when none

private:
    void ring(Now now);
    void count(bool on);

    RingingFace& face_;
    AlarmPast past_;
    bool counting_ = false;
    bool white_ = false;
    std::int64_t jumpWhileRinging_ = 0;  ///< seconds
};
