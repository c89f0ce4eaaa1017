// What a note's alarm does to its window, to the desk and to the store. alarm/Ringing decides when it rings
// and what happens then.
#pragma once

#include "alarm/Ringing.h"

struct fpost;

class NoteRinging final : public RingingFace {
public:
    explicit NoteRinging(fpost& note) : note_(note) {}

    /// Places and fills the time strip, or hides it when there is nothing to count.
    void showStrip() override;
    void showCountdown(const Text& text) override;
    void showColour(bool white) override;
    void appear() override;
    void settle() override;
    void announce() override;
    void startSound() override;
    void stopSound() override;
    std::uintptr_t startFlashTimer() override;
    void stopFlashTimer() override;
    void ticksChanged() override;
    void store(AlarmFields fields) override;
    void takeStoredPattern(AlarmRule& rule) override;
    bool removeNote() override;

private:
    /// Puts the ringing note above whatever covers it.
    void raise();

    fpost& note_;
};
