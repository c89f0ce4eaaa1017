#include "storage/SectionChange.h"

#include <gtest/gtest.h>

#include "tests/storage/MemorySettings.h"

namespace {

using ChangeList = std::vector<ValueChange>;
using Values = std::vector<KeyText>;

constexpr TextView kSection = u"kardel-1";

struct SectionChange : testing::Test {
    MemorySettings memory;
    Settings settings = memory.settings();

    void SetUp() override {
        for (const TextView key : {u"x", u"y", u"alarmday"})
            memory.put(kSection, key, u"old");
    }
    Values read() { return readChangedSection(settings, kSection).values; }
    Values stored() { return memory.find(kSection)->values; }

    const Values before{{u"x", u"old"}, {u"y", u"old"}, {u"alarmday", u"old"}};
    const ChangeList changes{{u"x", u"new"}, {u"alarmday", std::nullopt}, {u"z", u""}};
    /// Written values keep their places in the section.
    const Values after{{u"x", u"new"}, {u"y", u"old"}, {u"z", u""}};
};

Values sorted(Values values) {
    std::sort(values.begin(), values.end());
    return values;
}

TEST_F(SectionChange, IsMadeInOrderAndLeavesNothingElse) {
    EXPECT_TRUE(changeSection(settings, kSection, changes));
    EXPECT_EQ(stored(), after);
}

TEST_F(SectionChange, OfOneValueIsOneWrite) {
    EXPECT_TRUE(changeSection(settings, kSection, {{u"x", u"new"}}));
    EXPECT_EQ(memory.changes->made, 1);
}

TEST_F(SectionChange, KilledAnywhereReadsAsBeforeOrAfterAndIsFinishedByReading) {
    int points = 0;
    for (int end = 0;; ++end) {
        SCOPED_TRACE(end);
        MemorySettings other;
        other.content = memory.content;
        other.changes->endAt = end;
        bool ended = false;
        try {
            static_cast<void>(changeSection(other.settings(), kSection, changes));
        } catch (const ProgramEnd&) {
            ended = true;
        }
        other.changes->endAt = -1;
        const Values found = sorted(readChangedSection(other.settings(), kSection).values);
        EXPECT_EQ(found, sorted(end == 0 ? before : after));
        EXPECT_EQ(sorted(other.find(kSection)->values), found) << "something is left pending";
        if (!ended) break;
        ++points;
    }
    EXPECT_EQ(points, 5);  // the list, two values, one removal, the end of the list
}

TEST_F(SectionChange, IsFinishedByTheNextOneIfRefusedAndYieldsToItWhereBothSetAValue) {
    for (int fail = 0; fail < 4; ++fail) {
        SCOPED_TRACE(fail);
        MemorySettings other;
        other.content = memory.content;
        other.changes->failAt = fail;
        EXPECT_FALSE(changeSection(other.settings(), kSection, changes));
        EXPECT_TRUE(changeSection(other.settings(), kSection, {{u"X", u"newer"}}));
        Values wanted = after;
        wanted[0].second = u"newer";
        EXPECT_EQ(sorted(other.find(kSection)->values), sorted(wanted));
    }
}

TEST_F(SectionChange, DoesNoHarmToLaterOnesIfItsListStays) {
    memory.changes->failAt = 4;
    EXPECT_FALSE(changeSection(settings, kSection, changes));
    EXPECT_NE(memory.text(kSection, u"pending"), u"(none)");
    EXPECT_TRUE(changeSection(settings, kSection, {{u"x", u"newer"}}));
    Values wanted = after;
    wanted[0].second = u"newer";
    EXPECT_EQ(sorted(stored()), sorted(wanted));
}

TEST_F(SectionChange, IsRefusedForASectionThatCannotBeRead) {
    memory.locked.insert(Text(kSection));
    EXPECT_FALSE(changeSection(settings, kSection, changes));
    EXPECT_EQ(memory.changes->made, 0);
    EXPECT_EQ(readChangedSection(settings, kSection).status, IoStatus::Failed);
}

TEST_F(SectionChange, IsIgnoredIfItsListIsDamaged) {
    const Text whole = pendingText(changes);
    for (std::size_t length = 1; length < whole.size(); ++length) {
        const Text cut = whole.substr(0, length);
        if (parsePending(cut)) continue;  // the list was cut after a complete change
        memory.put(kSection, u"pending", cut);
        EXPECT_EQ(read(), before) << length;
        EXPECT_EQ(stored(), before) << length;
    }
    for (const TextView text :
         {u"x", u":", u"1:x", u"1:x=", u"1:x*1:y", u"0:=1:y", u"-1:x=1:y", u"1:x=99:y"}) {
        EXPECT_EQ(parsePending(text), std::nullopt) << testing::PrintToString(Text(text));
    }
}

TEST_F(SectionChange, HasAListThatComesBackWhateverTheTextsHold) {
    const ChangeList odd{{u"a=b", u"3:x"}, {u"Nota", u"one\r\ntwo 7:"}, {u"-", std::nullopt}, {u":", u""}};
    EXPECT_EQ(parsePending(pendingText(odd)), odd);
    EXPECT_EQ(parsePending(u""), ChangeList());
}

}  // namespace
