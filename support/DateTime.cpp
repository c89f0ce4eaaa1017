#include "support/DateTime.h"

#include <algorithm>

#include "support/Number.h"

namespace {

/// Days between 01/03/0000 (where the leap day ends a year, so months need no table) and 30/12/1899.
constexpr std::int64_t kEpochShift = 693899;
constexpr std::int64_t kDaysPerEra = 146097;  // 400 years

/// Rounded down; `b` is positive.
constexpr std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

std::int64_t piece(TextView text, std::size_t at, std::size_t length = TextView::npos) {
    std::int64_t value = 0;
    for (const char16_t c : text.substr(std::min(at, text.size()), length)) {
        if (c < u'0' || c > u'9') break;
        value = value * 10 + (c - u'0');
    }
    return value;
}

/// Whether `text` has digits where `shape` has "0" and the same character everywhere else.
bool hasShape(TextView text, TextView shape) {
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(), [](char16_t c, char16_t wanted) {
        return wanted == u'0' ? c >= u'0' && c <= u'9' : c == wanted;
    });
}

}  // namespace

std::int64_t dayNumber(Date date) {
    // March is month 0 of the shifted year.
    const std::int64_t months = date.year * 12 + date.month - 3;
    const std::int64_t year = floorDiv(months, 12);
    const std::int64_t month = months - year * 12;
    const std::int64_t leapDays = floorDiv(year, 4) - floorDiv(year, 100) + floorDiv(year, 400);
    const std::int64_t dayOfYear = (153 * month + 2) / 5;
    return year * 365 + leapDays + dayOfYear + date.day - 1 - kEpochShift;
}

Date dateOfDay(std::int64_t number) {
    const std::int64_t days = number + kEpochShift;
    const std::int64_t era = floorDiv(days, kDaysPerEra);
    const std::int64_t dayOfEra = days - era * kDaysPerEra;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / (kDaysPerEra - 1)) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t month = (5 * dayOfYear + 2) / 153;
    const std::int64_t day = dayOfYear - (153 * month + 2) / 5 + 1;
    const bool nextYear = month >= 10;
    return {era * 400 + yearOfEra + (nextYear ? 1 : 0), nextYear ? month - 9 : month + 3, day};
}

Instant instantOf(Date date, TimeOfDay time) {
    return {dayNumber(date) * kSecondsPerDay + time.hours * 3600 + time.minutes * 60 + time.seconds};
}

Date dateOf(Instant instant) {
    return dateOfDay(floorDiv(instant.seconds, kSecondsPerDay));
}

TimeOfDay timeOf(Instant instant) {
    const std::int64_t second = instant.seconds - floorDiv(instant.seconds, kSecondsPerDay) * kSecondsPerDay;
    return {second / 3600, second / 60 % 60, second % 60};
}

int weekdayOf(Date date) {
    const std::int64_t sinceMonday = dayNumber(date) + 5;  // 30/12/1899 was a Saturday
    return static_cast<int>(sinceMonday - floorDiv(sinceMonday, 7) * 7) + 1;
}

Text dateText(Date date) {
    Text year = decimal(date.year);
    year.insert(0, 4 - std::min<std::size_t>(4, year.size()), u'0');
    return twoDigits(date.day) + u"/" + twoDigits(date.month) + u"/" + year;
}

Text timeText(TimeOfDay time) {
    return twoDigits(time.hours) + u":" + twoDigits(time.minutes) + u":" + twoDigits(time.seconds);
}

Date parseDate(TextView text) {
    const std::size_t year = text.size() - std::min<std::size_t>(4, text.size());
    return {piece(text, year), piece(text, 3, 2), piece(text, 0, 2)};
}

TimeOfDay parseTime(TextView text) {
    return {piece(text, 0, 2), piece(text, 3, 2), piece(text, 6, 2)};
}

bool isDateText(TextView text) {
    const Date date = parseDate(text);
    return hasShape(text, u"00/00/0000") && date.day >= 1 && date.month >= 1;
}

bool isTimeText(TextView text) {
    const TimeOfDay time = parseTime(text);
    return hasShape(text, u"00:00:00") && time.hours < 24 && time.minutes < 60 && time.seconds < 60;
}
