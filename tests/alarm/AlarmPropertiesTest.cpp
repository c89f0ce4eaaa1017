// What must hold for every alarm rule, tried on random ones.
#include <gtest/gtest.h>

#include "alarm/AlarmRule.h"
#include "storage/NoteRecord.h"
#include "tests/alarm/RandomRules.h"

namespace {

TEST(AlarmProperties, RearmedInstantIsAfterNow) {
    Random random{std::mt19937_64(7)};
    for (int round = 0; round < 30000; ++round) {
        const Now now = random.now();
        AlarmRule rule = ruleFromEditor(random.alarm(now), now);
        if (!rule.due || isOneOff(rule)) continue;
        const Now silenced{{rule.due->seconds + random.below(100000000)}, 1 + random.below(999)};
        ASSERT_EQ(rearm(rule, silenced), Rearmed::Armed);
        ASSERT_TRUE(isBefore(silenced, *rule.due));
        ASSERT_TRUE(isAhead(rule, silenced));
    }
}

TEST(AlarmProperties, RepeatKeepsItsPhase) {
    Random random{std::mt19937_64(8)};
    for (int round = 0; round < 30000; ++round) {
        const Now now = random.now();
        EditorRule editor = random.alarm(now);
        if (editor.RepeatNumber < 1 || editor.RepeatEvery == kMonths) continue;
        AlarmRule rule = ruleFromEditor(editor, now);
        const Instant first = *rule.due;
        const Now silenced{{first.seconds + random.below(2000000000)}, 5};
        ASSERT_EQ(rearm(rule, silenced), Rearmed::Armed);
        const std::int64_t unit = editor.RepeatEvery == kMinutes ? 60
                                  : editor.RepeatEvery == kHours ? 3600
                                                                 : 86400;
        const std::int64_t step = unit * editor.RepeatNumber;
        ASSERT_EQ((rule.due->seconds - first.seconds) % step, 0);
        // The first one ahead, not a later one.
        ASSERT_LE(rule.due->seconds - step, silenced.at.seconds);
    }
}

TEST(AlarmProperties, PatternSurvivesBothStores) {
    Random random{std::mt19937_64(9)};
    for (int round = 0; round < 30000; ++round) {
        const Now now = random.now();
        const AlarmRule rule = ruleFromEditor(random.alarm(now), now);
        if (rule.DateNotSet() && rule.RepeatNumber >= 1)
            continue;  // the editor refuses it, as there is no place for its day
        NoteRecord record;
        storeRule(record, rule);
        ASSERT_EQ(record.alarmdate == u"*", rule.DateNotSet());
        ASSERT_LE(record.alarmdate.size(), 10U);
        AlarmRule stored = ruleFromRecord(record);
        ASSERT_FALSE(armAfterLoad(stored, now));
        ASSERT_EQ(stored, rule);
    }
}

}  // namespace
