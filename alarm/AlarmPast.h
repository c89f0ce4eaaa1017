// What an alarm has been through in this run of the program, and what becomes of it when the clock is set:
// alarms follow what the clock shows, whatever it showed before.
#pragma once

#include <optional>
#include <vector>

#include "alarm/AlarmRule.h"

class AlarmPast {
public:
    /// It begins to ring, at `now`, for its due instant.
    void rang(Instant due, Now now);

    /// It moved on at `now`. A repeat can go back to where it was before that, should `now` turn out to lie
    /// in the future.
    void movedOn(const AlarmRule& before, const AlarmRule& after, Now now);

    /// Settles the rule after the clock was set to `now`, by `jump` seconds, back when negative. A rule
    /// without a start of its own (each day, month or year, weekdays) is computed anew. A repeat that moved
    /// on at a moment that is now still to come goes back by whole periods, but never behind where it stood;
    /// one that begins far ahead because the user wanted it so stays. What a small step forward skipped rings
    /// late; what a large one skipped does not ring. Nothing becomes due again for an instant for which it
    /// has rung. True when the stored date or time changed.
    bool followClock(AlarmRule& rule, Now now, std::int64_t jump);

private:
    bool hasRung(Instant due) const;
    void forgetFarAhead(Now now);

    struct Move {
        Now at;     ///< the latest moment at which the repeat moved on
        Text date;  ///< where it stood before it ever did
        Text time;
    };
    std::optional<Move> move_;
    struct Ring {
        Instant due;
        Instant at;  ///< what the clock showed when it rang, perhaps much later
    };
    std::vector<Ring> rung_;  ///< those of the last day, counted back from the latest
};
