// Compares the alarm rule with a second model of it that is slow and plain: it uses the library's calendar
// and steps one period, day or repeat at a time. Both must agree on every rule at every moment.
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "alarm/AlarmRule.h"
#include "storage/NoteRecord.h"
#include "tests/alarm/RandomRules.h"

namespace {

using Millis = std::int64_t;  // since 1970
constexpr Millis kDay = 86400000;

struct ModelDate {
    int d = 0;
    int m = 0;
    int y = 0;
};

struct Model {
    std::string date;
    std::string time;
    std::optional<Millis> due;
};

std::string narrow(TextView text) {
    std::string plain;
    for (const char16_t c : text)
        plain += static_cast<char>(c);
    return plain;
}

std::string printed(ModelDate date) {
    char text[40];
    std::snprintf(text, sizeof text, "%02d/%02d/%04d", date.d, date.m, date.y);
    return text;
}

Millis midnight(ModelDate date) {
    while (date.m > 12) {
        date.m -= 12;
        date.y += 1;
    }
    const std::chrono::sys_days first = std::chrono::year(date.y) / date.m / 1;
    return (first.time_since_epoch().count() + date.d - 1) * kDay;
}

ModelDate calendar(Millis moment) {
    const auto day = std::chrono::floor<std::chrono::days>(
        std::chrono::sys_time<std::chrono::milliseconds>(std::chrono::milliseconds(moment)));
    const std::chrono::year_month_day ymd = day;
    return {static_cast<int>(static_cast<unsigned>(ymd.day())),
            static_cast<int>(static_cast<unsigned>(ymd.month())), static_cast<int>(ymd.year())};
}

int modelWeekday(Millis moment) {
    const auto day = std::chrono::floor<std::chrono::days>(
        std::chrono::sys_time<std::chrono::milliseconds>(std::chrono::milliseconds(moment)));
    return static_cast<int>(std::chrono::weekday(day).iso_encoding());
}

std::optional<ModelDate> readDate(const std::string& text) {
    ModelDate date;
    if (text.size() != 10 || text[2] != '/' || text[5] != '/') return {};
    for (const std::size_t at : {0U, 1U, 3U, 4U, 6U, 7U, 8U, 9U}) {
        if (text[at] < '0' || text[at] > '9') return {};
    }
    date.d = std::stoi(text.substr(0, 2));
    date.m = std::stoi(text.substr(3, 2));
    date.y = std::stoi(text.substr(6, 4));
    if (date.d < 1 || date.m < 1) return {};
    return date;
}

Millis timeOfDay(const std::string& text) {
    return (std::stoi(text.substr(0, 2)) * 3600 + std::stoi(text.substr(3, 2)) * 60 +
            std::stoi(text.substr(6, 2))) *
           1000LL;
}

std::string printedTime(Millis moment) {
    const Millis inDay = moment - midnight(calendar(moment));
    char text[40];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", static_cast<int>(inDay / 3600000),
                  static_cast<int>(inDay / 60000 % 60), static_cast<int>(inDay / 1000 % 60));
    return text;
}

/// Weekday rules: the first wanted day from today on whose time is still ahead.
void modelWeekdays(Model& model, const AlarmRule& rule, Millis now) {
    model.due.reset();
    const Millis time = timeOfDay(model.time);
    const Millis today = midnight(calendar(now));
    int wanted = rule.AlarmWeekday;
    if (wanted == 8) {
        wanted = 0;
        for (int i = 0; i <= 7 && wanted == 0; ++i) {
            const Millis candidate = today + i * kDay + time;
            const int weekday = modelWeekday(candidate);
            if (rule.FlagWeekday[static_cast<std::size_t>(weekday - 1)] && candidate >= now) wanted = weekday;
        }
    }
    if (wanted == 0) return;
    for (int i = 0; i <= 7; ++i) {
        const Millis candidate = today + i * kDay + time;
        if (modelWeekday(candidate) != wanted || candidate <= now) continue;
        model.date = printed(calendar(candidate));
        model.due = candidate;
        return;
    }
}

/// Repeat steps, one after the other, exactly from text to text.
void modelSteps(Model& model, const AlarmRule& rule, Millis now) {
    Millis then = midnight(*readDate(model.date)) + timeOfDay(model.time);
    while (now > then) {
        if (rule.RepeatEvery == u"MM") {
            const ModelDate from = calendar(then);
            int m = from.m + rule.RepeatNumber;
            int years = 0;
            while (m > 12) {
                m -= 12;
                ++years;
            }
            model.date = printed({from.d, m, from.y + years});
        } else if (rule.RepeatEvery == u"dd") {
            model.date = printed(calendar(then + rule.RepeatNumber * kDay));
        } else {
            const Millis step = (rule.RepeatEvery == u"hh" ? 3600000LL : 60000LL) * rule.RepeatNumber;
            model.date = printed(calendar(then + step));
            model.time = printedTime(then + step);
        }
        then = midnight(*readDate(model.date)) + timeOfDay(model.time);
    }
    model.due = then;
}

void modelPattern(Model& model, const AlarmRule& rule, Millis now) {
    const ModelDate today = calendar(now);
    ModelDate candidate = today;
    if (rule.eachmonth) candidate.d = std::stoi(narrow(rule.alarmday));
    if (rule.eachyear) {
        candidate.d = std::stoi(narrow(rule.alarmdaymonth).substr(0, 2));
        candidate.m = std::stoi(narrow(rule.alarmdaymonth).substr(3, 2));
    }
    const Millis time = timeOfDay(model.time);
    if (now > midnight(candidate) + time && rule.RepeatNumber < 1) {
        if (rule.eachmonth) {
            candidate.m += 1;
        } else if (rule.eachyear) {
            candidate.y += 1;
        } else {
            candidate = calendar(midnight(today) + kDay);
        }
    }
    model.date = printed(candidate);
    model.due = midnight(candidate) + time;
}

void modelArm(Model& model, const AlarmRule& rule, Millis now) {
    model.due.reset();
    if (rule.AlarmWeekday >= 1) {
        modelWeekdays(model, rule, now);
        return;
    }
    if (rule.DateNotSet()) {
        modelPattern(model, rule, now);
    } else {
        const std::optional<ModelDate> date = readDate(model.date);
        if (!date) return;
        model.due = midnight(*date) + timeOfDay(model.time);
    }
    if (rule.RepeatNumber >= 1) modelSteps(model, rule, now);
}

/// After ringing. Not called for rules that ring once.
void modelRearm(Model& model, const AlarmRule& rule, Millis now) {
    if (rule.AlarmWeekday >= 1) {
        modelWeekdays(model, rule, now);
    } else if (rule.RepeatNumber >= 1) {
        modelSteps(model, rule, now);
    } else {
        ModelDate next = calendar(*model.due);
        if (rule.eachmonth) {
            next.m += 1;
        } else if (rule.eachyear) {
            next.y += 1;
        } else {
            next = calendar(midnight(calendar(now)) + kDay);
        }
        model.date = printed(next);
        model.due = midnight(next) + timeOfDay(model.time);
        if (now >= *model.due) modelArm(model, rule, now);
    }
    if (model.due && now >= *model.due) model.due.reset();
}

// --- Both side by side ------------------------------------------------------------------------------------

const Millis kZeroOfDayCounts = midnight({30, 12, 1899});

Millis millis(Now now) {
    return kZeroOfDayCounts + now.at.seconds * 1000 + now.ms;
}

std::optional<Millis> millis(std::optional<Instant> due) {
    return due ? std::optional(kZeroOfDayCounts + due->seconds * 1000) : std::nullopt;
}

/// The same text form for both, so that a difference is shown in full.
std::string summary(const std::string& date, const std::string& time, std::optional<Millis> due) {
    return date + " " + time + " due " +
           (due ? printed(calendar(*due)) + " " + printedTime(*due) : std::string("never"));
}

std::string summary(const AlarmRule& rule) {
    return summary(narrow(rule.AlarmDate), narrow(rule.AlarmTime), millis(rule.due));
}

std::string summary(const Model& model) {
    return summary(model.date, model.time, model.due);
}

std::string described(const EditorRule& alarm, Now now) {
    return narrow(alarm.AlarmDate) + " " + narrow(alarm.AlarmTime) + " weekday " +
           std::to_string(alarm.AlarmWeekday) + " repeat " + std::to_string(alarm.RepeatNumber) +
           narrow(alarm.RepeatEvery) + " at " + summary("", "", millis(now)) + "." + std::to_string(now.ms);
}

constexpr int kRounds = 120000;

TEST(AlarmModel, AgreesOnArmingRearmingAndLoading) {
    Random random{std::mt19937_64(20261121)};
    int armed = 0;
    for (int round = 0; round < kRounds; ++round) {
        const Now now = random.now();
        const EditorRule editor = random.alarm(now);
        SCOPED_TRACE(described(editor, now));

        AlarmRule rule = ruleFromEditor(editor, now);
        Model model{
            rule.AlarmWeekday >= 1 ? std::string() : narrow(editor.AlarmDate), narrow(editor.AlarmTime), {}};
        modelArm(model, rule, millis(now));
        ASSERT_EQ(summary(rule), summary(model)) << "set";
        if (!rule.due) continue;
        ++armed;

        // It rings, and is silenced soon or after a long sleep.
        Now silenced{*rule.due, random.below(1000)};
        silenced.at.seconds += random.oneIn(2) ? random.below(20) : random.below(400) * 43201LL;
        const bool walks = rule.RepeatEvery == kMinutes || rule.RepeatEvery == kHours;
        const int reach = walks ? 20000 : 200000;
        if (walks) silenced.at.seconds = rule.due->seconds + random.below(reach);
        if (isOneOff(rule)) {
            EXPECT_EQ(rearm(rule, silenced), Rearmed::OneShotOver);
            EXPECT_EQ(rule, AlarmRule());
            continue;
        }
        const AlarmRule rung = rule;
        const Rearmed result = rearm(rule, silenced);
        modelRearm(model, rung, millis(silenced));
        ASSERT_EQ(summary(rule), summary(model)) << "silenced at " << summary("", "", millis(silenced));
        ASSERT_EQ(result, model.due ? Rearmed::Armed : Rearmed::NotAhead);

        // The program ends and starts again later.
        NoteRecord record;
        storeRule(record, rule);
        const Now later{{silenced.at.seconds + random.below(reach)}, random.below(1000)};
        AlarmRule loaded = ruleFromRecord(record);
        armAfterLoad(loaded, later);
        modelArm(model, loaded, millis(later));
        ASSERT_EQ(summary(loaded), summary(model)) << "loaded at " << summary("", "", millis(later));
    }
    EXPECT_GT(armed, kRounds * 9 / 10);
}

TEST(AlarmModel, AgreesOnMonthsForEveryDayAndStep) {
    // Each day of the month, steps of up to four years, missed for up to a century.
    const Now now{instantOf({2104, 3, 1}, {12, 0, 0}), 1};
    for (std::int16_t step = 1; step <= 48; ++step) {
        for (int day = 27; day <= 31; ++day) {
            for (int month = 1; month <= 12; ++month) {
                for (const int year : {2000, 2003, 2097, 2103}) {
                    AlarmRule rule;
                    rule.AlarmDate = dateText({year, month, day});
                    rule.AlarmTime = u"12:00:00";
                    rule.RepeatNumber = step;
                    rule.RepeatEvery = kMonths;
                    Model model{narrow(rule.AlarmDate), "12:00:00", {}};
                    modelSteps(model, rule, millis(now));
                    ASSERT_TRUE(AdvanceRepeat(rule, now));
                    ASSERT_EQ(narrow(rule.AlarmDate), model.date)
                        << step << " from " << day << "/" << month << "/" << year;
                }
            }
        }
    }
}

}  // namespace
