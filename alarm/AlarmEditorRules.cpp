#include "alarm/AlarmEditorRules.h"

#include <algorithm>

#include "support/Number.h"

namespace {

constexpr std::size_t kDateLength = 10;  // of "dd/mm/yyyy", wildcards or not

constexpr std::array<std::int16_t, 37> kRepeatEntries{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                                      13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25,
                                                      26, 27, 28, 29, 30, 35, 40, 45, 50, 55, 60};

constexpr std::array kUnitCodes{TextView(), kMinutes, kHours, kDays, kMonths};

/// A day or month of a stored pattern; 0 when it is not one.
int numberOf(TextView piece) {
    return leadingInt16(piece.substr(0, 2));
}

bool hasText(Date date) {
    return date.year >= 1 && date.year <= 9999;
}

/// Whether a text is a date that can come: 99/99/9999 carries beyond the last year.
bool comes(TextView text) {
    return isDateText(text) && hasText(dateOfDay(dayNumber(parseDate(text))));
}

bool isDigits(TextView text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

/// The date so many days later (or earlier); unchanged when that would leave the years 1 to 9999.
Text movedByDays(TextView date, std::int64_t days) {
    const Date moved = dateOfDay(dayNumber(parseDate(date)) + days);
    return hasText(moved) ? dateText(moved) : Text(date);
}

/// Whether the choice is a valid repeat step.
bool choosesRepeat(const EditorControls& choice) {
    const bool number = choice.cboRepeat == -1 ? choice.repeatKept >= 1 : choice.cboRepeat >= 1;
    return number && !unitCode(choice.cboDay).empty();
}

/// The weekday 0..8 that applies: "several days" without a tick is none.
std::int16_t chosenWeekday(const EditorControls& choice) {
    if (inUnitMode(choice) || choice.cboDay < 1 || choice.cboDay > kSeveralWeekdays) return 0;
    const bool anyTicked =
        std::find(choice.chkWeek.begin(), choice.chkWeek.end(), true) != choice.chkWeek.end();
    if (choice.cboDay == kSeveralWeekdays && !anyTicked) return 0;
    return static_cast<std::int16_t>(choice.cboDay);
}

}  // namespace

// --- Opening ----------------------------------------------------------------------------------------------

Text editorDate(const AlarmRule& rule, Now now) {
    Text today = dateText(dateOf(now.at));
    if (!hasAlarm(rule)) return today;
    // A weekday takes precedence over a pattern, which an older release may have left beside it.
    const bool pattern = rule.AlarmWeekday < 1;
    if (pattern && rule.eachday) return u" **/**/****";
    if (pattern && rule.eachmonth) {
        const int day = numberOf(rule.alarmday);
        return day < 1 ? today : twoDigits(day) + u"/**/****";
    }
    if (pattern && rule.eachyear) {
        const TextView stored = rule.alarmdaymonth;
        const std::size_t slash = stored.find(u'/');
        const int day = numberOf(stored.substr(0, slash));
        const int month = slash == TextView::npos ? 0 : numberOf(stored.substr(slash + 1));
        return day < 1 || month < 1 ? today : twoDigits(day) + u"/" + twoDigits(month) + u"/****";
    }
    return comes(rule.AlarmDate) ? rule.AlarmDate : today;
}

Text editorTime(const AlarmRule& rule, Now now) {
    return hasAlarm(rule) ? rule.AlarmTime : timeText(timeOf(now.at));
}

// --- The date label ---------------------------------------------------------------------------------------

Text datePart(TextView label) {
    const std::size_t first = label.find_first_not_of(u' ');
    if (first == TextView::npos) return {};
    label.remove_prefix(first);
    return Text(label.substr(0, label.find(u' ')));
}

Text dateAndTime(TextView date, TimeOfDay time) {
    return Text(date) + u" " + timeText(time);
}

bool holdsWildcards(TextView label) {
    return label.find(u'*') != TextView::npos;
}

std::optional<DatePart> datePartAt(Twips x) {
    for (const DatePartArea& area : kDatePartAreas) {
        if (x >= area.left && x <= area.right) return area.part;
    }
    return {};
}

Text toggled(TextView label, DatePart part, Now now) {
    Text date = datePart(label);
    Text today = dateText(dateOf(now.at));
    if (date.size() != kDateLength) return today;
    const TextView shown = date;
    const TextView day = shown.substr(0, 2);
    const TextView month = shown.substr(3, 2);
    const TextView year = shown.substr(6);
    const bool hasDay = isDigits(day);
    const bool hasMonth = hasDay && isDigits(month);
    switch (part) {
        case DatePart::Day:
            return hasDay ? Text(u"**/**/****") : today;
        case DatePart::Month:
            if (!hasDay) return today;
            return Text(day) + (hasMonth ? Text(u"/**/****") : today.substr(2));
        case DatePart::Year:
            if (!hasDay) return today;
            if (!hasMonth) return Text(day) + today.substr(2);
            return Text(day) + u"/" + Text(month) + (isDigits(year) ? Text(u"/****") : today.substr(5));
    }
    return date;
}

// --- Scroll bars ------------------------------------------------------------------------------------------

EditorClock scrolled(const EditorClock& shown, ClockPart part, int position) {
    TimeOfDay time = shown.time;
    switch (part) {
        case ClockPart::Hours:
            time.hours = position;
            break;
        case ClockPart::Minutes:
            time.minutes = position;
            break;
        case ClockPart::Seconds:
            time.seconds = position;
            break;
    }
    // An instant carries by itself: whatever lies before or after day 0 is what the date moves by.
    const Instant turned = instantOf(dateOfDay(0), time);
    const std::int64_t days = dayNumber(dateOf(turned));
    const bool moves = days != 0 && isDateText(shown.date);
    return {moves ? movedByDays(shown.date, days) : shown.date, timeOf(turned)};
}

Text dateAtPosition(int position, Now now) {
    return movedByDays(dateText(dateOf(now.at)), position);
}

int positionOfDate(TextView date, Now now) {
    const std::int64_t days = dayNumber(parseDate(date)) - dayNumber(dateOf(now.at));
    return static_cast<int>(std::clamp<std::int64_t>(days, kDateBar.low, kDateBar.high));
}

// --- Lists ------------------------------------------------------------------------------------------------

std::span<const std::int16_t> repeatEntries() {
    return kRepeatEntries;
}

Text repeatEntryText(int index) {
    if (index < 1 || index >= static_cast<int>(kRepeatEntries.size())) return {};
    return decimal(kRepeatEntries[static_cast<std::size_t>(index)]);
}

int repeatIndex(std::int16_t number) {
    if (number < 1) return 0;
    const auto found = std::find(kRepeatEntries.begin(), kRepeatEntries.end(), number);
    return found == kRepeatEntries.end() ? -1 : static_cast<int>(found - kRepeatEntries.begin());
}

TextView unitCode(int index) {
    if (index < 1 || index >= static_cast<int>(kUnitCodes.size())) return {};
    return kUnitCodes[static_cast<std::size_t>(index)];
}

int unitIndex(TextView code) {
    const auto found = std::find(kUnitCodes.begin(), kUnitCodes.end(), code);
    return found == kUnitCodes.end() ? 0 : static_cast<int>(found - kUnitCodes.begin());
}

// --- The controls ------------------------------------------------------------------------------------------

EditorControls controlsOf(const AlarmRule& rule, Now now) {
    EditorControls shown;
    shown.data = editorDate(rule, now);
    shown.time = editorTime(rule, now);
    const bool repeats = rule.RepeatNumber >= 1 && unitIndex(rule.RepeatEvery) > 0;
    shown.repeatKept = repeats ? rule.RepeatNumber : std::int16_t{0};
    shown.cboRepeat = repeatIndex(shown.repeatKept);
    shown.cboDay = repeats ? unitIndex(rule.RepeatEvery) : rule.AlarmWeekday;
    if (!repeats && rule.AlarmWeekday == kSeveralWeekdays) shown.chkWeek = rule.FlagWeekday;
    shown.chkMute = rule.Mute;
    return shown;
}

bool inUnitMode(const EditorControls& shown) {
    return shown.cboRepeat != 0;
}

bool needsFullDate(const EditorControls& choice) {
    return holdsWildcards(choice.data) && (inUnitMode(choice) || choice.cboDay >= 1);
}

EditorRule ruleOfControls(const EditorControls& choice) {
    EditorRule alarm;
    alarm.AlarmTime = choice.time;
    alarm.Mute = choice.chkMute;
    if (choosesRepeat(choice)) {
        alarm.RepeatNumber =
            choice.cboRepeat == -1 ? choice.repeatKept : leadingInt16(repeatEntryText(choice.cboRepeat));
        alarm.RepeatEvery = unitCode(choice.cboDay);
    }
    alarm.AlarmWeekday = chosenWeekday(choice);
    if (alarm.AlarmWeekday == kSeveralWeekdays) alarm.FlagWeekday = choice.chkWeek;
    if (alarm.AlarmWeekday == 0) alarm.AlarmDate = datePart(choice.data);
    return alarm;
}
