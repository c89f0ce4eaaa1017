// The alarm editor without its window: what it shows for a rule, how scroll bars, lists and clicks change
// that, and what rule it hands over at the end.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "alarm/AlarmRule.h"
#include "support/DateTime.h"
#include "support/Text.h"
#include "support/Units.h"

// --- Opening ----------------------------------------------------------------------------------------------

/// Text of the date label: " **/**/****", "dd/**/****" or "dd/mm/****" for a pattern, the rule's date, or
/// today's without an alarm or a readable date.
Text editorDate(const AlarmRule& rule, Now now);

/// Text of the time label: the rule's time, or the current time without an alarm.
Text editorTime(const AlarmRule& rule, Now now);

// --- The date label ---------------------------------------------------------------------------------------

/// The date in the label's text, without blanks around it and without the time that may follow it.
Text datePart(TextView label);

/// The label's text with the time behind the date, as it stands after a click.
Text dateAndTime(TextView date, TimeOfDay time);

/// Whether a part of the label's date is a wildcard. A weekday or a repeat step needs a date without any.
bool holdsWildcards(TextView label);

enum class DatePart : unsigned char { Day, Month, Year };

/// Where each part stands in the label; both ends are included.
struct DatePartArea {
    DatePart part = DatePart::Day;
    Twips left;
    Twips right;
};
inline constexpr std::array<DatePartArea, 3> kDatePartAreas{
    {{DatePart::Day, {105}, {315}}, {DatePart::Month, {390}, {630}}, {DatePart::Year, {660}, {1100}}}};

/// The part under a position in the label.
std::optional<DatePart> datePartAt(Twips x);

/// The label's date after a click on one of its parts, without a time. Digits become wildcards, together with
/// the larger parts; wildcards become the current values, so that a full date results.
Text toggled(TextView label, DatePart part, Now now);

// --- Scroll bars ------------------------------------------------------------------------------------------

struct BarRange {
    int low;
    int high;
};
/// One step beyond the clock's range at each end, which is how a bar is seen to turn over.
inline constexpr BarRange kHourBar{-1, 24};
inline constexpr BarRange kMinuteBar{-1, 60};
inline constexpr BarRange kSecondBar{-1, 60};
/// Days from today.
inline constexpr BarRange kDateBar{-1, 365};
inline constexpr int kDateBarPage = 30;

enum class ClockPart : unsigned char { Hours, Minutes, Seconds };

/// The date (without blanks or time) and the time that the editor shows.
struct EditorClock {
    Text date;
    TimeOfDay time;

    bool operator==(const EditorClock&) const = default;
};

/// What a bar's new position makes of them: the part takes the position; beyond the end it turns over and
/// carries into the next larger part, and at midnight into the date, if that is a full one.
EditorClock scrolled(const EditorClock& shown, ClockPart part, int position);

/// The date at a position of the date bar, and the position nearest to a date.
Text dateAtPosition(int position, Now now);
int positionOfDate(TextView date, Now now);

// --- Lists ------------------------------------------------------------------------------------------------

/// Numbers in the repeat list: 0 (its empty entry), 1 to 30, then 35 to 60 by fives.
std::span<const std::int16_t> repeatEntries();
Text repeatEntryText(int index);
/// The number's place in the list; 0 for no repeat, -1 for a number that is not in the list.
int repeatIndex(std::int16_t number);

inline constexpr std::array<TextView, 5> kUnitEntries{u"", u"Minutes", u"Hours", u"Days", u"Months"};
/// Stored code of a unit's entry 1..4, empty for every other index; and back, 0 for an unknown code.
TextView unitCode(int index);
int unitIndex(TextView code);

/// Indexed by AlarmWeekday.
inline constexpr std::array<TextView, 9> kWeekdayEntries{
    u"", u"Monday", u"Tuesday", u"Wednesday", u"Thursday", u"Friday", u"Saturday", u"Sunday", u"**Week**"};
inline constexpr std::array<TextView, kWeekdays> kWeekdayCaptions{u"Mon", u"Tue", u"Wed", u"Thu",
                                                                  u"Fri", u"Sat", u"Sun"};

// --- The controls ------------------------------------------------------------------------------------------

/// What the controls show.
struct EditorControls {
    Text data;                    ///< the date label
    Text time;                    ///< the time label
    int cboRepeat = 0;            ///< list index; -1 keeps `repeatKept`
    int cboDay = 0;               ///< list index: a weekday without a repeat, else a unit
    std::int16_t repeatKept = 0;  ///< repeat number that the editor was opened with
    std::array<bool, kWeekdays> chkWeek{};
    bool chkMute = false;

    bool operator==(const EditorControls&) const = default;
};

/// What they show of a rule when the editor opens.
EditorControls controlsOf(const AlarmRule& rule, Now now);

/// Whether the day list holds the units of a repeat step rather than the weekdays.
bool inUnitMode(const EditorControls& shown);

/// Whether a weekday or a repeat is chosen on a date with wildcards. Then the user has to be told, and the
/// last choice or click is undone: call this with what the controls would show.
bool needsFullDate(const EditorControls& choice);

/// What the editor hands over: a repeat step or a weekday, never both, and the date where it matters.
EditorRule ruleOfControls(const EditorControls& choice);
