// How long it takes to move a repeating rule to its next occurrence after it was missed for a hundred years,
// and after it was missed by one step. Prints one line per sample: name, then nanoseconds for one missed step
// and for the hundred years.
#include <time.h>

#include <cstdio>
#include <cstdlib>

#include "alarm/AlarmRule.h"

namespace {

constexpr int kSamples = 41;
constexpr int kRules = 2000;  // of one sample
constexpr std::int64_t kYears = 100;

struct Kind {
    const char* name;
    TextView unit;
    std::int16_t number;
    Date start;
    Date oneStepLater;  ///< before it, and after `start`
};

// The 31st of a month is the hardest date, because half of the months do not have it.
constexpr Kind kKinds[] = {
    {"minutes", kMinutes, 7, {1926, 1, 31}, {1926, 1, 31}},
    {"hours", kHours, 5, {1926, 1, 31}, {1926, 1, 31}},
    {"days", kDays, 3, {1926, 1, 31}, {1926, 2, 2}},
    {"months", kMonths, 1, {1926, 1, 31}, {1926, 2, 20}},
};

AlarmRule ruleOf(const Kind& kind) {
    AlarmRule rule;
    rule.AlarmDate = dateText(kind.start);
    rule.AlarmTime = u"12:00:00";
    rule.RepeatNumber = kind.number;
    rule.RepeatEvery = kind.unit;
    return rule;
}

/// Nanoseconds that this program has computed; whatever else the machine does in between does not count.
double computed() {
    timespec spent{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) * 1e9 + static_cast<double>(spent.tv_nsec);
}

/// Nanoseconds for one rule at this moment, the copy of the rule included.
double sample(const AlarmRule& rule, Now now) {
    const double begun = computed();
    for (int i = 0; i < kRules; ++i) {
        AlarmRule one = rule;
        if (!AdvanceRepeat(one, now) ||
            (one.AlarmDate == rule.AlarmDate && one.AlarmTime == rule.AlarmTime)) {
            std::fputs("the rule did not move\n", stderr);
            std::exit(1);
        }
    }
    return (computed() - begun) / kRules;
}

}  // namespace

int main() {
    for (const Kind& kind : kKinds) {
        const AlarmRule rule = ruleOf(kind);
        const Now soon{instantOf(kind.oneStepLater, {12, 1, 0}), 0};
        const Date end{kind.start.year + kYears, kind.start.month, kind.start.day};
        const Now late{instantOf(end, {12, 1, 0}), 0};
        for (int i = -1; i < kSamples; ++i) {
            const double one = sample(rule, soon);
            const double all = sample(rule, late);
            if (i >= 0) std::printf("%s %.1f %.1f\n", kind.name, one, all);  // the first round warms up
        }
    }
    return 0;
}
