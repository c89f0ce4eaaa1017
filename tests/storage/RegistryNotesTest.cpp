#include "storage/RegistryNotes.h"

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"

namespace {

struct RegistryStoreTest : testing::Test {
    MemorySettings memory;
    RegistryNotes store{memory.settings(), englishWeekdayKeys()};

    NoteRecord load(int slot) {
        NoteRecord note;
        EXPECT_NE(store.LoadNoteFromRegistry(slot, note, 2910, 1890), IoStatus::Failed);
        return note;
    }
    Text text(TextView key) { return memory.text(u"kardel-1", key); }
};

NoteRecord withPattern(const Text& interval, std::int16_t weekday) {
    NoteRecord note;
    note.alarmdate = u"*";
    note.interval = interval;
    note.alarmweekday = weekday;
    note.alarmday = u"07";
    return note;
}

TEST_F(RegistryStoreTest, SlotZeroIsSectionOne) {
    memory.put(u"kardel-1", u"Titolo", u"first");
    memory.put(u"kardel-50", u"Titolo", u"last");
    EXPECT_EQ(load(0).Titolo, u"first");
    EXPECT_EQ(load(49).Titolo, u"last");
    EXPECT_EQ(noteSection(7), u"kardel-7");
}

TEST_F(RegistryStoreTest, AMissingSectionIsAnEmptyNoteOfTheDefaultSizeInTheCorner) {
    NoteRecord note;
    EXPECT_EQ(store.LoadNoteFromRegistry(4, note, 3000, 2000), IoStatus::Absent);
    NoteRecord expected;
    expected.width = 3000;
    expected.height = 2000;
    EXPECT_EQ(note, expected);
}

TEST_F(RegistryStoreTest, AMissingKeyTakesItsDefault) {
    memory.put(u"kardel-1", u"Titolo", u"only");
    NoteRecord expected;
    expected.Titolo = u"only";
    expected.width = 2910;
    expected.height = 1890;
    EXPECT_EQ(load(0), expected);
}

TEST_F(RegistryStoreTest, AStoredSizeThatIsNoNumberIsZeroRatherThanTheDefault) {
    memory.put(u"kardel-1", u"width", u"abc");
    memory.put(u"kardel-1", u"height", u"-5");
    EXPECT_EQ(load(0).width, 0);
    EXPECT_EQ(load(0).height, -5);
}

TEST_F(RegistryStoreTest, KeysAreFoundWithoutCase) {
    memory.put(u"KARDEL-1", u"TITOLO", u"shouted");
    memory.put(u"kardel-1", u"W.MON", u"True");
    EXPECT_EQ(load(0).Titolo, u"shouted");
    EXPECT_TRUE(load(0).weekdays[0]);
}

TEST_F(RegistryStoreTest, ANoteIsReadWithOneOpeningOfItsSection) {
    memory.put(u"kardel-1", u"Titolo", u"x");
    int reads = 0;
    const auto inner = store.settings.readSection;
    store.settings.readSection = [&](TextView section) {
        ++reads;
        return inner(section);
    };
    store.settings.get = [&](TextView, TextView) -> SettingResult {
        ++reads;
        return {};
    };
    load(0);
    EXPECT_EQ(reads, 1);
}

TEST_F(RegistryStoreTest, AFailedReadLeavesTheRecordAlone) {
    memory.put(u"kardel-1", u"Titolo", u"x");
    memory.locked.insert(u"kardel-1");
    NoteRecord note;
    note.Titolo = u"kept";
    EXPECT_EQ(store.LoadNoteFromRegistry(0, note, 1, 1), IoStatus::Failed);
    EXPECT_EQ(note.Titolo, u"kept");
}

TEST_F(RegistryStoreTest, RandomNotesComeBackWhole) {
    Dice dice(11);
    for (int round = 0; round < 300; ++round) {
        const NoteRecord note = randomNote(dice, westernPage());
        ASSERT_TRUE(store.SaveNoteToRegistry(1, note));
        EXPECT_EQ(load(0), note) << "round " << round;
    }
}

TEST_F(RegistryStoreTest, AWholeNoteIsWrittenInTheFixedOrder) {
    ASSERT_TRUE(store.SaveNoteToRegistry(3, withPattern(u"eachmonth", 0)));
    std::vector<Text> keys;
    for (const KeyText& value : memory.find(u"kardel-3")->values)
        keys.push_back(value.first);
    const std::vector<Text> expected{u"x",
                                     u"y",
                                     u"width",
                                     u"height",
                                     u"Nota",
                                     u"topmost",
                                     u"Titolo",
                                     u"iconized",
                                     u"closed",
                                     u"alarmdate",
                                     u"interval",
                                     u"alarmday",
                                     u"alarmdaymonth",
                                     u"alarmtime",
                                     u"alarmweekday",
                                     u"alarmrepeatnumber",
                                     u"alarmrepeatevery",
                                     u"backcolor",
                                     u"mute",
                                     u"w.Mon",
                                     u"w.Tue",
                                     u"w.Wed",
                                     u"w.Thu",
                                     u"w.Fri",
                                     u"w.Sat",
                                     u"w.Sun"};
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(memory.text(u"kardel-3", u"alarmdate"), u"*");
    EXPECT_EQ(memory.text(u"kardel-3", u"w.Sun"), u"False");
    EXPECT_EQ(memory.text(u"kardel-3", u"backcolor"), u"8454143");
}

TEST_F(RegistryStoreTest, AFixedDateRemovesThePatternsDaysAndEmptiesTheInterval) {
    ASSERT_TRUE(store.SaveNoteToRegistry(1, withPattern(u"eachmonth", 0)));
    ASSERT_EQ(text(u"alarmday"), u"07");
    NoteRecord fixed;
    fixed.alarmdate = u"01/02/2030";
    fixed.alarmday = u"07";
    ASSERT_TRUE(store.SaveNoteToRegistry(1, fixed));
    EXPECT_EQ(text(u"alarmdate"), u"01/02/2030");
    EXPECT_EQ(text(u"interval"), u"");
    EXPECT_EQ(text(u"alarmday"), u"(none)");
}

TEST_F(RegistryStoreTest, AFixedDateDoesTheSameWhenOnlyTheDateIsStored) {
    ASSERT_TRUE(store.SaveNoteToRegistry(1, withPattern(u"eachyear", 0)));
    memory.put(u"kardel-1", u"alarmdaymonth", u"24/12");
    NoteRecord fixed;
    fixed.alarmdate = u"01/02/2030";
    const NoteField date = NoteField::AlarmDate;
    ASSERT_TRUE(store.set(1, fixed, std::span(&date, 1)));
    EXPECT_EQ(text(u"alarmdate"), u"01/02/2030");
    EXPECT_EQ(text(u"interval"), u"");
    EXPECT_EQ(text(u"alarmday"), u"(none)");
    EXPECT_EQ(text(u"alarmdaymonth"), u"(none)");
}

TEST_F(RegistryStoreTest, AnEmptyDayOfAPatternIsRemoved) {
    ASSERT_TRUE(store.SaveNoteToRegistry(1, withPattern(u"eachmonth", 0)));
    const NoteRecord daily = [] {
        NoteRecord note;
        note.alarmdate = u"*";
        note.interval = u"eachday";
        return note;
    }();
    const std::array fields{NoteField::AlarmDate, NoteField::Interval, NoteField::AlarmDay};
    ASSERT_TRUE(store.set(1, daily, fields));
    EXPECT_EQ(text(u"interval"), u"eachday");
    EXPECT_EQ(text(u"alarmday"), u"(none)");
}

TEST_F(RegistryStoreTest, AWeeklyRuleLeavesTheIntervalUntouched) {
    for (const std::int16_t weekday : {std::int16_t{1}, std::int16_t{3}, std::int16_t{8}}) {
        memory.put(u"kardel-1", u"interval", u"as it was");
        ASSERT_TRUE(store.SaveNoteToRegistry(1, withPattern(u"", weekday)));
        EXPECT_EQ(text(u"alarmdate"), u"*");
        EXPECT_EQ(text(u"interval"), u"as it was") << weekday;
    }
    ASSERT_TRUE(store.SaveNoteToRegistry(2, withPattern(u"", 3)));
    EXPECT_EQ(memory.text(u"kardel-2", u"interval"), u"(none)");
}

TEST_F(RegistryStoreTest, APatternWithoutKindOrWeekdayIsDaily) {
    ASSERT_TRUE(store.SaveNoteToRegistry(1, withPattern(u"", 0)));
    EXPECT_EQ(text(u"interval"), u"eachday");
}

TEST_F(RegistryStoreTest, ARecurringRuleNeverStoresItsNextDate) {
    NoteRecord note = withPattern(u"eachday", 0);
    note.alarmdate = u"05/06/2030";
    ASSERT_TRUE(store.SaveNoteToRegistry(1, note));
    EXPECT_EQ(text(u"alarmdate"), u"*");
    const NoteField date = NoteField::AlarmDate;
    ASSERT_TRUE(store.set(1, note, std::span(&date, 1)));
    EXPECT_EQ(text(u"alarmdate"), u"*");
    EXPECT_EQ(text(u"interval"), u"eachday");
}

TEST_F(RegistryStoreTest, SingleFieldsLeaveTheOthersAlone) {
    ASSERT_TRUE(store.SaveNoteToRegistry(1, sampleNotes(1)[0]));
    const auto before = memory.find(u"kardel-1")->values;
    NoteRecord moved;
    moved.x = -600;
    const NoteField x = NoteField::X;
    ASSERT_TRUE(store.set(1, moved, std::span(&x, 1)));
    auto expected = before;
    expected[0].second = u"-600";
    EXPECT_EQ(memory.find(u"kardel-1")->values, expected);
}

TEST_F(RegistryStoreTest, WeekdaysOfAnotherLocaleReadAsFalse) {
    NoteRecord note;
    note.weekdays.fill(true);
    RegistryNotes italian = store;
    italian.weekdayKeys = {u"w.lun", u"w.mar", u"w.mer", u"w.gio", u"w.ven", u"w.sab", u"w.dom"};
    ASSERT_TRUE(italian.SaveNoteToRegistry(1, note));
    EXPECT_EQ(text(u"w.dom"), u"True");
    EXPECT_EQ(load(0).weekdays, (std::array<bool, kWeekdays>{}));
    NoteRecord same;
    static_cast<void>(italian.LoadNoteFromRegistry(0, same, 1, 1));
    EXPECT_EQ(same.weekdays, note.weekdays);
}

TEST_F(RegistryStoreTest, WeekdaysOfAnyScriptAreFoundWithoutCase) {
    RegistryNotes russian = store;
    russian.weekdayKeys = {u"w.\u041F\u043D", u"w.\u0412\u0442", u"w.\u0421\u0440", u"w.\u0427\u0442",
                           u"w.\u041F\u0442", u"w.\u0421\u0431", u"w.\u0412\u0441"};
    NoteRecord note;
    note.weekdays[0] = true;
    ASSERT_TRUE(russian.SaveNoteToRegistry(1, note));
    // Another version of Windows writes the days in small letters.
    for (Text& key : russian.weekdayKeys)
        key = lowered(key);
    ASSERT_EQ(russian.weekdayKeys[0], u"w.\u043F\u043D");
    NoteRecord read;
    EXPECT_EQ(russian.LoadNoteFromRegistry(0, read, 1, 1), IoStatus::Done);
    EXPECT_EQ(read.weekdays, note.weekdays);
    const std::size_t values = memory.find(u"kardel-1")->values.size();
    ASSERT_TRUE(russian.SaveNoteToRegistry(1, read));
    EXPECT_EQ(memory.find(u"kardel-1")->values.size(), values) << "no day twice";
}

TEST_F(RegistryStoreTest, ANoteThatReplacesAnotherKeepsItsDaysUnderNamesOfAnotherCase) {
    RegistryNotes russian = store;
    russian.weekdayKeys[0] = u"w.\u041F\u043D";
    ASSERT_TRUE(russian.SaveNoteToRegistry(1, NoteRecord{}));
    russian.weekdayKeys[0] = u"w.\u043F\u043D";
    NoteRecord note;
    note.weekdays[0] = true;
    ASSERT_TRUE(russian.replaceNote(1, note, false));
    NoteRecord read;
    EXPECT_EQ(russian.LoadNoteFromRegistry(0, read, 1, 1), IoStatus::Done);
    EXPECT_TRUE(read.weekdays[0]);
}

TEST_F(RegistryStoreTest, SectionsThatCouldNotAllBeListedAreLeftToTheNextTime) {
    for (const TextView section : {u"kardel-1", u"kardel-2"})
        memory.put(section, u"a", u"b");
    memory.namesFail = true;
    EXPECT_FALSE(store.removeBeyond(1));
    memory.namesFail = false;
    EXPECT_TRUE(store.removeBeyond(1));
    EXPECT_EQ(memory.find(u"kardel-2"), nullptr);
}

TEST_F(RegistryStoreTest, ASectionThatCannotBeRemovedIsReportedWhicheverItIs) {
    for (int failing = 0; failing < 3; ++failing) {
        for (const TextView section : {u"kardel-2", u"kardel-3", u"kardel-4"})
            memory.put(section, u"a", u"b");
        memory.changes->made = 0;
        memory.changes->failAt = failing;
        EXPECT_FALSE(store.removeBeyond(1)) << failing;
        EXPECT_EQ(memory.changes->made, 3) << "the others are removed nevertheless";
        EXPECT_TRUE(store.removeBeyond(1));
    }
}

TEST_F(RegistryStoreTest, ANoteThatReplacesAnotherTakesNothingOver) {
    for (const bool keepDraft : {false, true}) {
        memory.put(u"kardel-1", u"stale", u"of the other");
        memory.put(u"kardel-1", u"draft", u"typed");
        ASSERT_TRUE(store.replaceNote(1, sampleNotes(1)[0], keepDraft));
        EXPECT_EQ(text(u"Titolo"), u"Title 1");
        EXPECT_EQ(text(u"stale"), u"(none)");
        EXPECT_EQ(text(u"draft"), keepDraft ? u"typed" : u"(none)");
    }
}

TEST_F(RegistryStoreTest, OnlyNoteSectionsAreNotes) {
    EXPECT_TRUE(isNoteSection(u"kardel-1"));
    EXPECT_TRUE(isNoteSection(u"Kardel-99999"));
    EXPECT_TRUE(isNoteSection(u"kardel-10"));
    for (const TextView other :
         {u"setting", u"kardel-", u"kardel-0", u"kardel-01", u"kardel-1a", u"kardel1", u"my kardel-1", u""}) {
        EXPECT_FALSE(isNoteSection(other));
    }
}

TEST_F(RegistryStoreTest, SectionsBeyondTheCountAreRemovedAndNoOthers) {
    for (const TextView section :
         {u"kardel-1", u"kardel-2", u"kardel-3", u"kardel-51", u"setting", u"kardel-x"}) {
        memory.put(section, u"a", u"b");
    }
    ASSERT_TRUE(store.removeBeyond(2));
    std::vector<Text> left;
    for (const auto& section : memory.content)
        left.push_back(section.name);
    EXPECT_EQ(left, (std::vector<Text>{u"kardel-1", u"kardel-2", u"setting", u"kardel-x"}));
}

TEST_F(RegistryStoreTest, ASectionIsCopiedValueByValue) {
    memory.put(u"kardel-2", u"Titolo", u"moved");
    memory.put(u"kardel-2", u"unknown", u"kept too");
    memory.put(u"kardel-1", u"stale", u"gone");
    ASSERT_TRUE(store.copySection(2, 1, true));
    EXPECT_EQ(text(u"Titolo"), u"moved");
    EXPECT_EQ(text(u"unknown"), u"kept too");
    EXPECT_EQ(text(u"stale"), u"(none)");
}

TEST_F(RegistryStoreTest, ASectionThatCannotBeReadIsNotCopiedOverAnother) {
    memory.put(u"kardel-2", u"Titolo", u"locked");
    memory.put(u"kardel-1", u"Titolo", u"stays");
    memory.locked.insert(u"kardel-2");
    EXPECT_FALSE(store.copySection(2, 1, true));
    EXPECT_EQ(text(u"Titolo"), u"stays");
}

TEST_F(RegistryStoreTest, AFailedWriteIsReported) {
    memory.changes->failAt = 5;
    EXPECT_FALSE(store.SaveNoteToRegistry(1, sampleNotes(1)[0]));
}

}  // namespace
