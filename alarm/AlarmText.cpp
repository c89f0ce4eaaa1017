#include "alarm/AlarmText.h"

#include <algorithm>

#include "support/Number.h"

Text countdownText(Instant due, Now now) {
    const std::int64_t left = std::max<std::int64_t>(0, due.seconds - now.at.seconds);
    const std::int64_t days = left / kSecondsPerDay;
    Text text = days < 1 ? Text() : decimal(days) + u" d   ";
    text += decimal(left / 3600 % 24) + u":" + twoDigits(left / 60 % 60) + u":" + twoDigits(left % 60);
    return text;
}

Text dueText(const AlarmRule& rule) {
    if (!rule.due) return {};
    const Text time = timeText(timeOf(*rule.due));
    return dateText(dateOf(*rule.due)) + u" " + time.substr(0, 5) + u"  h.";
}
