// A note's alarm: the rule the user chose, the instant at which it is due next, and how it moves on. Time is
// always an argument, and nothing here knows about windows or stores.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "storage/NoteRecord.h"
#include "support/DateTime.h"
#include "support/Text.h"

/// Value of AlarmWeekday that stands for the days ticked in FlagWeekday.
inline constexpr std::int16_t kSeveralWeekdays = 8;

/// Units of a repeat step. Only the letters' case distinguishes minutes from months.
inline constexpr TextView kMinutes = u"mm";
inline constexpr TextView kHours = u"hh";
inline constexpr TextView kDays = u"dd";
inline constexpr TextView kMonths = u"MM";

struct AlarmRule {
    /// "dd/mm/yyyy" of the next due day, as it was put together: 31/02/2025 and 15/13/2025 carry over when
    /// they become an instant. Empty without an alarm. In a rule that was just read it may still be "*".
    Text AlarmDate;
    Text AlarmTime;                             ///< "hh:mm:ss"; anything else means that there is no alarm
    std::int16_t AlarmWeekday = 0;              ///< 0 none, 1..7 Monday..Sunday, 8 those of FlagWeekday
    std::array<bool, kWeekdays> FlagWeekday{};  ///< Monday first
    std::int16_t RepeatNumber = 0;              ///< size of the repeat step; below 1 there is none
    Text RepeatEvery;                           ///< kMinutes, kHours, kDays or kMonths
    bool eachday = false;                       ///< at most one of these three
    bool eachmonth = false;
    bool eachyear = false;
    Text alarmday;               ///< for eachmonth: "dd"
    Text alarmdaymonth;          ///< for eachyear: "dd/mm"
    bool Mute = false;           ///< flashes without sound
    std::optional<Instant> due;  ///< empty: there is nothing to wait for

    /// Whether the date is a pattern: each day, each month or each year.
    bool DateNotSet() const { return eachday || eachmonth || eachyear; }

    bool operator==(const AlarmRule&) const = default;
};

/// Whether there is an alarm at all.
bool hasAlarm(const AlarmRule& rule);

/// Whether it rings only once: no pattern, no weekday, no repeat step.
bool isOneOff(const AlarmRule& rule);

/// Whether the alarm is waiting for an instant that `now` has not reached.
bool isAhead(const AlarmRule& rule, Now now);

/// `due` as a day count whose fraction is the time of day; 0 when it is empty.
double DAlarmTime(const AlarmRule& rule);

/// The rule as stored. `due` is empty and AlarmDate may be "*" until armAfterLoad.
AlarmRule ruleFromRecord(const NoteRecord& record);

/// Writes the rule's stored form to the record's alarm fields and leaves the others alone. A pattern stores
/// "*" as its date, and only the day, or day and month, that belongs to it.
void storeRule(NoteRecord& record, const AlarmRule& rule);

/// What the alarm editor hands over.
struct EditorRule {
    Text AlarmDate;  ///< "dd/mm/yyyy", with "**" and "****" for parts that recur; empty is every day
    Text AlarmTime;  ///< "hh:mm:ss"
    std::int16_t AlarmWeekday = 0;
    std::array<bool, kWeekdays> FlagWeekday{};
    std::int16_t RepeatNumber = 0;
    Text RepeatEvery;
    bool Mute = false;

    bool operator==(const EditorRule&) const = default;
};

/// The rule that the user confirmed, with its first due instant. A single date that has passed stays and is
/// due at once. "Several weekdays" without a tick counts as no weekday.
AlarmRule ruleFromEditor(const EditorRule& editor, Now now);

/// Settles a rule that was just read: mends impossible values, finds the date of a pattern, moves on what
/// passed while the program was not running (except a single date, which is then due at once), and computes
/// `due`. True when the stored date or time changed and has to be written back.
bool armAfterLoad(AlarmRule& rule, Now now);

/// Finds `due` of a valid rule from scratch: a weekday takes precedence over a pattern, and a pattern's date
/// over a stored one. What has passed moves on, except a single date.
void arm(AlarmRule& rule, Now now);

/// "dd/mm/yyyy" of the next day, today included, that is this weekday (Monday 1) and on which `time`
/// ("hh:mm:ss") is still ahead. Empty for a weekday outside 1..7 and beyond the year 9999.
std::optional<Text> NextWeekdayDate(int weekday, TextView time, Now now);

/// The weekday 1..7 whose next occurrence at `time` comes first among the flagged ones; 0 when none is.
int PickFlaggedWeekday(const std::array<bool, kWeekdays>& flags, TextView time, Now now);

/// Moves AlarmDate and AlarmTime on by whole repeat steps until they are not before now, so that the rule
/// keeps its phase. This takes equally little time however long it was missed. Unchanged, and false, when
/// there is no step or date to move by, or the next one lies beyond the year 9999. Leaves `due` alone.
bool AdvanceRepeat(AlarmRule& rule, Now now);

enum class Rearmed : unsigned char {
    OneShotOver,  ///< it rang its only time; the rule is empty now
    Armed,        ///< `due` is ahead of now
    NotAhead,     ///< nothing to wait for; `due` is empty, the rule is kept
};

/// Moves a rule that has just rung to its next occurrence.
Rearmed rearm(AlarmRule& rule, Now now);

/// Resets the rule to that of a note without an alarm.
void clearAlarm(AlarmRule& rule);
