// Short notations for moments and rules in the alarm's tests.
#pragma once

#include "alarm/AlarmRule.h"
#include "support/DateTime.h"
#include "support/Text.h"

/// "dd/mm/yyyy hh:mm:ss", by default a few milliseconds past, as a clock in use shows it.
inline Now at(TextView text, int ms = 7) {
    return {instantOf(parseDate(text.substr(0, 10)), parseTime(text.substr(11))), ms};
}

inline Instant instantAt(TextView text) {
    return at(text).at;
}

/// "dd/mm/yyyy hh:mm:ss" of an instant, "none" without one: what a failing test prints.
inline std::string shown(const std::optional<Instant>& due) {
    if (!due) return "none";
    std::string plain;
    for (const char16_t c : dateText(dateOf(*due)) + u" " + timeText(timeOf(*due)))
        plain += static_cast<char>(c);
    return plain;
}

/// A rule as the editor hands it over, armed at `now`.
inline AlarmRule dateRule(TextView date, TextView time, Now now) {
    EditorRule editor;
    editor.AlarmDate = date;
    editor.AlarmTime = time;
    return ruleFromEditor(editor, now);
}

inline AlarmRule weekdayRule(std::int16_t weekday, TextView time, Now now) {
    EditorRule editor;
    editor.AlarmTime = time;
    editor.AlarmWeekday = weekday;
    return ruleFromEditor(editor, now);
}

inline AlarmRule repeatRule(TextView date, TextView time, std::int16_t number, TextView unit, Now now) {
    EditorRule editor;
    editor.AlarmDate = date;
    editor.AlarmTime = time;
    editor.RepeatNumber = number;
    editor.RepeatEvery = unit;
    return ruleFromEditor(editor, now);
}
