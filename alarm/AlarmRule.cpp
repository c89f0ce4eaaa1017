#include "alarm/AlarmRule.h"

#include <algorithm>
#include <numeric>

#include "alarm/bas_Sorting.h"
#include "storage/NoteFields.h"
#include "support/Number.h"

namespace {

/// Dates are ten characters long; what lies beyond this year has no text.
constexpr std::int64_t kLastYear = 9999;

/// No month is shorter than this, so a date up to this day never carries over.
constexpr std::int64_t kShortestMonth = 28;

bool hasText(Instant instant) {
    return dateOf(instant).year <= kLastYear;
}

bool isRealDate(Date date) {
    return date.day >= 1 && date.month >= 1;
}

TextView trimmed(TextView text) {
    const std::size_t first = text.find_first_not_of(u' ');
    return first == TextView::npos ? TextView() : withoutTrailingBlanks(text.substr(first));
}

bool endsWith(TextView text, TextView end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// The leading digits of at most two characters; 0 without any.
std::int64_t twoDigitNumber(TextView text) {
    std::int64_t number = 0;
    for (const char16_t c : trimmed(text).substr(0, 2)) {
        if (c < u'0' || c > u'9') break;
        number = number * 10 + (c - u'0');
    }
    return number;
}

bool isUnit(TextView unit) {
    return unit == kMinutes || unit == kHours || unit == kDays || unit == kMonths;
}

/// The instant of a rule's texts; empty when they are not a date and time, or too far away to be written.
std::optional<Instant> instantOfTexts(const AlarmRule& rule) {
    if (!isDateText(rule.AlarmDate) || !isTimeText(rule.AlarmTime)) return {};
    const Instant instant = instantOf(parseDate(rule.AlarmDate), parseTime(rule.AlarmTime));
    return hasText(instant) ? std::optional(instant) : std::nullopt;
}

/// Sets the date of the next occurrence and everything that depends on it. A date that has no text leaves the
/// rule's date as it is, with nothing to wait for.
void setDate(AlarmRule& rule, Date date) {
    rule.due.reset();
    if (!isRealDate(date) || !hasText(instantOf(date, parseTime(rule.AlarmTime)))) return;
    rule.AlarmDate = dateText(date);
    rule.due = instantOfTexts(rule);
}

/// Month and year of a pattern's date in the current period, or in the next one. Not real when the pattern's
/// own texts hold no day or month.
Date patternDate(const AlarmRule& rule, Now now, bool nextPeriod) {
    const std::int64_t step = nextPeriod ? 1 : 0;
    const Date today = dateOf(now.at);
    if (rule.eachmonth) return {today.year, today.month + step, twoDigitNumber(rule.alarmday)};
    if (rule.eachyear) {
        const TextView text = rule.alarmdaymonth;
        const std::size_t slash = text.find(u'/');
        if (slash == TextView::npos) return {};
        const std::int64_t day = twoDigitNumber(text.substr(0, slash));
        const std::int64_t month = twoDigitNumber(text.substr(slash + 1));
        return {today.year + step, month, day};
    }
    return dateOfDay(dayNumber(today) + step);
}

/// Whether stepping by `months` from this date never reaches a month that lacks its day.
bool neverCarries(Date date, std::int64_t months) {
    if (date.day <= kShortestMonth) return true;
    const std::int64_t stride = std::gcd(months, std::int64_t{12});
    const auto meets = [&](std::int64_t month) { return (month - date.month) % stride == 0; };
    if (meets(2)) return false;
    return date.day <= 30 || !(meets(4) || meets(6) || meets(9) || meets(11));
}

/// The first date of the repeat by months, counted from `then`, that is not before now. Its month is real,
/// but may lack its day: that carries into the next month, from which the next step goes on.
Date advanceMonths(Instant then, std::int64_t months, Now now) {
    const TimeOfDay time = timeOf(then);
    const Date today = dateOf(now.at);
    Date date = dateOf(then);
    while (isAfter(now, then) && hasText(then)) {
        date = dateOf(then);
        std::int64_t steps = 1;
        if (neverCarries(date, months)) {
            // All steps that end before this month are taken at once. Other dates soon become one of this
            // kind, as they carry over to the first days of a month.
            const std::int64_t distance = (today.year - date.year) * 12 + today.month - date.month;
            steps = std::max(steps, distance / months);
        }
        const std::int64_t month = date.year * 12 + date.month - 1 + steps * months;
        date = {month / 12, month % 12 + 1, date.day};
        then = instantOf(date, time);
    }
    return date;
}

/// The first instant at whole steps of so many seconds from `then` that is not before now.
Instant advanceSeconds(Instant then, std::int64_t step, Now now) {
    if (!isAfter(now, then)) return then;
    const std::int64_t late = now.at.seconds - then.seconds + (now.ms > 0 ? 1 : 0);
    return {then.seconds + (late + step - 1) / step * step};
}

std::int64_t secondsOf(TextView unit) {
    if (unit == kMinutes) return 60;
    return unit == kHours ? 3600 : kSecondsPerDay;
}

bool hasRepeat(const AlarmRule& rule) {
    return rule.RepeatNumber >= 1 && isUnit(rule.RepeatEvery);
}

void validate(AlarmRule& rule) {
    if (rule.AlarmWeekday < 0 || rule.AlarmWeekday > kSeveralWeekdays) rule.AlarmWeekday = 0;
    if (rule.RepeatNumber >= 1 && !isUnit(rule.RepeatEvery)) {
        rule.RepeatNumber = 0;
        rule.RepeatEvery.clear();
    }
}

void armWeekday(AlarmRule& rule, Now now) {
    rule.due.reset();
    const int weekday = rule.AlarmWeekday == kSeveralWeekdays
                            ? PickFlaggedWeekday(rule.FlagWeekday, rule.AlarmTime, now)
                            : rule.AlarmWeekday;
    const std::optional<Text> date = NextWeekdayDate(weekday, rule.AlarmTime, now);
    if (date) setDate(rule, parseDate(*date));
}

void armRepeat(AlarmRule& rule, Now now) {
    rule.due = AdvanceRepeat(rule, now) ? instantOfTexts(rule) : std::nullopt;
}

/// One period after the instant that has just rung. A daily alarm goes on from today, so that one missed for
/// days rings once and then tomorrow.
Date followingDate(const AlarmRule& rule, Now now) {
    Date date = rule.due ? dateOf(*rule.due) : dateOf(now.at);
    if (rule.eachmonth) {
        ++date.month;
    } else if (rule.eachyear) {
        ++date.year;
    } else {
        date = dateOfDay(dayNumber(dateOf(now.at)) + 1);
    }
    return date;
}

/// The next occurrence of a rule that recurs.
void moveOn(AlarmRule& rule, Now now) {
    if (rule.AlarmWeekday >= 1) {
        armWeekday(rule, now);
    } else if (rule.RepeatNumber < 1) {
        setDate(rule, followingDate(rule, now));
        // The machine may have slept past that one as well: then it goes on as if it had just been loaded.
        if (!isAhead(rule, now)) arm(rule, now);
    } else {
        armRepeat(rule, now);
    }
}

Text storedDate(const AlarmRule& rule) {
    return rule.DateNotSet() ? Text(kPatternDate) : rule.AlarmDate;
}

}  // namespace

bool hasAlarm(const AlarmRule& rule) {
    return isTimeText(rule.AlarmTime);
}

bool isOneOff(const AlarmRule& rule) {
    return rule.RepeatNumber < 1 && rule.AlarmWeekday < 1 && !rule.DateNotSet();
}

bool isAhead(const AlarmRule& rule, Now now) {
    return rule.due && isBefore(now, *rule.due);
}

double DAlarmTime(const AlarmRule& rule) {
    if (!rule.due) return 0;
    return static_cast<double>(rule.due->seconds) / static_cast<double>(kSecondsPerDay);
}

AlarmRule ruleFromRecord(const NoteRecord& record) {
    AlarmRule rule;
    rule.AlarmDate = record.alarmdate;
    rule.AlarmTime = record.alarmtime;
    rule.AlarmWeekday = record.alarmweekday;
    rule.FlagWeekday = record.weekdays;
    rule.RepeatNumber = record.alarmrepeatnumber;
    rule.RepeatEvery = record.alarmrepeatevery;
    rule.eachday = record.interval == kEachDay;
    rule.eachmonth = record.interval == kEachMonth;
    rule.eachyear = record.interval == kEachYear;
    if (rule.eachmonth) rule.alarmday = record.alarmday;
    if (rule.eachyear) rule.alarmdaymonth = record.alarmdaymonth;
    rule.Mute = record.mute;
    return rule;
}

void storeRule(NoteRecord& record, const AlarmRule& rule) {
    record.alarmdate = storedDate(rule);
    record.alarmtime = rule.AlarmTime;
    record.alarmweekday = rule.AlarmWeekday;
    record.weekdays = rule.FlagWeekday;
    record.alarmrepeatnumber = rule.RepeatNumber;
    record.alarmrepeatevery = rule.RepeatEvery;
    record.interval = rule.eachday ? kEachDay : rule.eachmonth ? kEachMonth : rule.eachyear ? kEachYear : u"";
    record.alarmday = rule.eachmonth ? rule.alarmday : Text();
    record.alarmdaymonth = rule.eachyear ? rule.alarmdaymonth : Text();
    record.mute = rule.Mute;
}

void arm(AlarmRule& rule, Now now) {
    rule.due.reset();
    if (!hasAlarm(rule)) return;
    if (rule.AlarmWeekday >= 1) {
        armWeekday(rule, now);
        return;
    }
    if (rule.DateNotSet()) {
        setDate(rule, patternDate(rule, now, false));
        const bool passed = rule.due && isAfter(now, *rule.due);
        if (passed && !hasRepeat(rule)) setDate(rule, patternDate(rule, now, true));
    } else {
        rule.due = instantOfTexts(rule);
    }
    if (rule.due && hasRepeat(rule)) armRepeat(rule, now);
}

AlarmRule ruleFromEditor(const EditorRule& editor, Now now) {
    AlarmRule rule;
    rule.AlarmTime = editor.AlarmTime;
    rule.AlarmWeekday = editor.AlarmWeekday;
    rule.FlagWeekday = editor.FlagWeekday;
    rule.RepeatNumber = editor.RepeatNumber;
    rule.RepeatEvery = editor.RepeatEvery;
    rule.Mute = editor.Mute;
    validate(rule);
    const bool anyFlag =
        std::find(rule.FlagWeekday.begin(), rule.FlagWeekday.end(), true) != rule.FlagWeekday.end();
    if (rule.AlarmWeekday == kSeveralWeekdays && !anyFlag) rule.AlarmWeekday = 0;
    if (rule.AlarmWeekday == 0) {  // a weekday finds its date by itself
        const TextView date = trimmed(editor.AlarmDate);
        if (date.empty() || endsWith(date, u"**/**/****")) {
            rule.eachday = true;
        } else if (endsWith(date, u"**/****")) {
            rule.eachmonth = true;
            rule.alarmday = date.substr(0, 2);
        } else if (endsWith(date, u"****")) {
            rule.eachyear = true;
            rule.alarmdaymonth = date.substr(0, 5);
        } else {
            rule.AlarmDate = date;
        }
    }
    arm(rule, now);
    return rule;
}

bool armAfterLoad(AlarmRule& rule, Now now) {
    const Text date = storedDate(rule);
    const Text time = rule.AlarmTime;
    validate(rule);
    arm(rule, now);
    return storedDate(rule) != date || rule.AlarmTime != time;
}

std::optional<Text> NextWeekdayDate(int weekday, TextView time, Now now) {
    if (weekday < 1 || weekday > kWeekdays) return {};
    const Date today = dateOf(now.at);
    std::int64_t day = dayNumber(today) + (weekday - weekdayOf(today) + kWeekdays) % kWeekdays;
    if (!isBefore(now, instantOf(dateOfDay(day), parseTime(time)))) day += kWeekdays;
    const Date date = dateOfDay(day);
    if (date.year > kLastYear) return {};
    return dateText(date);
}

int PickFlaggedWeekday(const std::array<bool, kWeekdays>& flags, TextView time, Now now) {
    const Date today = dateOf(now.at);
    const std::int64_t monday = dayNumber(today) - (weekdayOf(today) - 1);
    std::array<std::int64_t, kWeekdays> slots{};  // instants in seconds; 0 is a day without a flag
    for (std::size_t d = 0; d < slots.size(); ++d) {
        if (!flags[d]) continue;
        Instant candidate = instantOf(dateOfDay(monday + static_cast<std::int64_t>(d)), parseTime(time));
        if (isAfter(now, candidate)) candidate.seconds += kWeekdays * kSecondsPerDay;
        slots[d] = candidate.seconds;
    }
    Sort(slots);
    const auto first = std::find_if(slots.begin(), slots.end(), [](std::int64_t slot) { return slot != 0; });
    return first == slots.end() ? 0 : weekdayOf(dateOf(Instant{*first}));
}

bool AdvanceRepeat(AlarmRule& rule, Now now) {
    const std::optional<Instant> then = instantOfTexts(rule);
    if (!then || !hasRepeat(rule)) return false;
    if (!isAfter(now, *then)) return true;
    const std::int64_t number = rule.RepeatNumber;
    if (rule.RepeatEvery == kMonths) {
        const Date next = advanceMonths(*then, number, now);
        if (!hasText(instantOf(next, timeOf(*then)))) return false;
        rule.AlarmDate = dateText(next);
        return true;
    }
    const Instant next = advanceSeconds(*then, number * secondsOf(rule.RepeatEvery), now);
    if (!hasText(next)) return false;
    rule.AlarmDate = dateText(dateOf(next));
    rule.AlarmTime = timeText(timeOf(next));
    return true;
}

Rearmed rearm(AlarmRule& rule, Now now) {
    validate(rule);
    if (isOneOff(rule)) {
        clearAlarm(rule);
        return Rearmed::OneShotOver;
    }
    const std::optional<Instant> rung = rule.due;
    moveOn(rule, now);
    // When the clock was set back while it rang, the same instant lies ahead again, but it has had its turn.
    if (rung && rule.due == rung && isBefore(now, *rung)) moveOn(rule, justAfter(*rung));
    if (isAhead(rule, now)) return Rearmed::Armed;
    rule.due.reset();
    return Rearmed::NotAhead;
}

void clearAlarm(AlarmRule& rule) {
    rule = AlarmRule();
}
