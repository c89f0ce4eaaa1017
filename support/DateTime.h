// Civil dates and times of day: local wall-clock time in whole seconds, texts "dd/mm/yyyy" and "hh:mm:ss".
// Nothing here reads a clock or a locale.
#pragma once

#include <compare>
#include <cstdint>

#include "support/Text.h"

inline constexpr std::int64_t kSecondsPerDay = 86400;

/// Whole seconds of local time since 30/12/1899 00:00:00, the zero of day counts.
struct Instant {
    std::int64_t seconds = 0;
    auto operator<=>(const Instant&) const = default;
};

/// The wall clock at one moment. Compared with an Instant as a time with milliseconds.
struct Now {
    Instant at;
    int ms = 0;  ///< 0..999 past `at`
};
constexpr bool isAfter(const Now& now, Instant then) {
    return now.at > then || (now.at == then && now.ms > 0);
}
constexpr bool isBefore(const Now& now, Instant then) {
    return now.at < then;
}
/// The first moment that is after it.
constexpr Now justAfter(Instant then) {
    return {then, 1};
}

/// A civil date. Not necessarily a real one: month 13 or 31 February carries over when it is turned into an
/// Instant.
struct Date {
    std::int64_t year = 0;
    std::int64_t month = 0;
    std::int64_t day = 0;
    auto operator<=>(const Date&) const = default;
};

/// A time of day, or zero where a text held none.
struct TimeOfDay {
    std::int64_t hours = 0;
    std::int64_t minutes = 0;
    std::int64_t seconds = 0;
    auto operator<=>(const TimeOfDay&) const = default;
};

/// Days from 30/12/1899 to a date; months and days beyond their range carry over (31/02 is 3 March).
std::int64_t dayNumber(Date date);

/// The real date of a day number.
Date dateOfDay(std::int64_t dayNumber);

/// Date and time to an instant, with carry.
Instant instantOf(Date date, TimeOfDay time);

/// The real date on which an instant lies, and its time of day.
Date dateOf(Instant instant);
TimeOfDay timeOf(Instant instant);

/// 1 Monday .. 7 Sunday.
int weekdayOf(Date date);

/// "dd/mm/yyyy" with zero padding. Impossible dates are printed as they are (31/02/2025, 15/13/2025).
Text dateText(Date date);

/// "hh:mm:ss" with zero padding.
Text timeText(TimeOfDay time);

/// Reads "dd/mm/yyyy" by position: characters 1-2, 4-5 and the last four. Pieces without digits are 0.
Date parseDate(TextView text);

/// Reads "hh:mm:ss" by position. Pieces without digits are 0.
TimeOfDay parseTime(TextView text);

/// Whether the text is "dd/mm/yyyy" of digits with day and month of at least 1. The month need not have that
/// day, since it carries over.
bool isDateText(TextView text);

/// Whether the text is "hh:mm:ss" within 00:00:00 .. 23:59:59.
bool isTimeText(TextView text);
