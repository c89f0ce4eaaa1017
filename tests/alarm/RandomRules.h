// Random moments and alarm rules, the same in every run.
#pragma once

#include <random>

#include "alarm/AlarmRule.h"
#include "support/DateTime.h"

struct Random {
    std::mt19937_64 engine;
    int below(int limit) { return static_cast<int>(engine() % static_cast<std::uint64_t>(limit)); }
    bool oneIn(int n) { return below(n) == 0; }

    /// Anywhere in a century, but often around the ends of months and years and at full minutes.
    Now now() {
        Date date{2000 + below(100), 1 + below(12), 1 + below(28)};
        if (oneIn(3)) date.day = 28 + below(4);
        if (oneIn(4)) date.month = oneIn(2) ? 2 : 12;
        TimeOfDay time{below(24), below(60), oneIn(2) ? 0 : below(60)};
        return {instantOf(date, time), oneIn(3) ? 0 : below(1000)};
    }

    Text time(Now near) {
        if (oneIn(5)) return timeText(timeOf(near.at));  // the very second
        return timeText({below(24), below(60), oneIn(2) ? 0 : below(60)});
    }

    EditorRule alarm(Now now) {
        EditorRule alarm;
        alarm.AlarmTime = time(now);
        const int kind = below(8);
        Date date = dateOf({now.at.seconds + static_cast<std::int64_t>(below(1200) - 900) * kSecondsPerDay});
        if (oneIn(3)) date.day = 28 + below(4);
        if (oneIn(6)) date = dateOf(now.at);
        const Text full = dateText(date);
        if (kind == 0) {
            alarm.AlarmDate = u"**/**/****";
        } else if (kind == 1) {
            alarm.AlarmDate = full.substr(0, 2) + u"/**/****";
        } else if (kind == 2) {
            alarm.AlarmDate = full.substr(0, 5) + u"/****";
        } else {
            alarm.AlarmDate = full;
        }
        if (kind == 3 || kind == 4) {
            alarm.AlarmWeekday = static_cast<std::int16_t>(1 + below(8));
            for (bool& flag : alarm.FlagWeekday)
                flag = oneIn(3);
        }
        if (kind >= 5 || (kind < 3 && oneIn(8))) {
            constexpr TextView kUnits[] = {kMinutes, kHours, kDays, kMonths};
            alarm.RepeatEvery = kUnits[below(4)];
            alarm.RepeatNumber = static_cast<std::int16_t>(1 + (oneIn(3) ? below(30) : below(60)));
            // The other model goes step by step: at most a day by minutes, or some weeks by hours.
            const int reach = alarm.RepeatEvery == kMinutes ? 2 : alarm.RepeatEvery == kHours ? 120 : 0;
            if (reach > 0) {
                const Date recent = dateOf({now.at.seconds - below(reach) * (kSecondsPerDay / 2)});
                alarm.AlarmDate = kind == 0 ? Text(u"**/**/****") : dateText(recent);
            }
        }
        return alarm;
    }
};
