#include "alarm/AlarmPast.h"

#include <algorithm>

namespace {

/// More than any change to summer time or correction moves the clock by: whatever was due within it still
/// rings.
constexpr std::int64_t kSmallJump = std::int64_t{3} * 3600;

bool hasOwnStart(const AlarmRule& rule) {
    return rule.AlarmWeekday < 1 && !rule.DateNotSet();
}

/// Whether it has been due for at least so many seconds.
bool isDueSince(const AlarmRule& rule, Now now, std::int64_t seconds) {
    return rule.due && now.at.seconds - rule.due->seconds >= seconds;
}

/// For one rule before and after it moved, which never makes a date of a pattern.
bool sameStoredForm(const AlarmRule& a, const AlarmRule& b) {
    const bool sameDate = a.DateNotSet() || a.AlarmDate == b.AlarmDate;
    return sameDate && a.AlarmTime == b.AlarmTime;
}

}  // namespace

void AlarmPast::rang(Instant due, Now now) {
    std::erase_if(rung_, [now](const Ring& old) { return old.at.seconds < now.at.seconds - kSecondsPerDay; });
    rung_.push_back({due, now.at});
}

bool AlarmPast::hasRung(Instant due) const {
    return std::any_of(rung_.begin(), rung_.end(), [due](const Ring& rung) { return rung.due == due; });
}

void AlarmPast::forgetFarAhead(Now now) {
    // The clock was wrong by more than a day: what rang then has nothing to do with what is to come.
    std::erase_if(rung_,
                  [now](const Ring& rung) { return rung.at.seconds > now.at.seconds + kSecondsPerDay; });
}

void AlarmPast::movedOn(const AlarmRule& before, const AlarmRule& after, Now now) {
    if (sameStoredForm(before, after)) return;
    if (!move_) move_ = Move{now, before.AlarmDate, before.AlarmTime};
    if (isAfter(now, move_->at.at)) move_->at = now;
}

bool AlarmPast::followClock(AlarmRule& rule, Now now, std::int64_t jump) {
    forgetFarAhead(now);
    if (isOneOff(rule)) return false;
    const bool due = isDueSince(rule, now, 0);
    // What lies before the jump was missed for another reason, such as a sleeping machine.
    const bool neverWas = isDueSince(rule, now, kSmallJump) && !isDueSince(rule, now, jump);
    if (due && !neverWas) return false;

    const AlarmRule before = rule;
    if (hasOwnStart(rule)) {
        const bool tooFar = move_ && isBefore(now, move_->at.at);
        if (tooFar) {
            rule.AlarmDate = move_->date;
            rule.AlarmTime = move_->time;
            move_.reset();
        } else if (rule.due && !due) {
            return false;
        }
    }
    const AlarmRule start = rule;
    arm(rule, now);
    while (rule.due && hasRung(*rule.due))
        arm(rule, justAfter(*rule.due));
    movedOn(start, rule, now);
    return !sameStoredForm(before, rule);
}
