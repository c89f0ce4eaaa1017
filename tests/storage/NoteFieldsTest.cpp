#include "storage/NoteFields.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/storage/Samples.h"

namespace {

TEST(NoteFields, EveryFieldComesBackFromItsTextForm) {
    Dice dice(1);
    for (int round = 0; round < 500; ++round) {
        const NoteRecord note = randomNote(dice, westernPage());
        NoteRecord copy;
        for (const NoteFieldRow& row : noteFields())
            row.read(copy, row.write(note));
        EXPECT_EQ(copy, note) << "round " << round;
    }
}

TEST(NoteFields, FieldsOfARecordTouchEachOtherAndNeverOverlap) {
    std::vector<int> users(kRecordLength, 0);
    for (const NoteFieldRow& row : noteFields()) {
        for (std::size_t i = 0; i < row.width; ++i)
            ++users.at(row.offset + i);
    }
    for (std::size_t i = 0; i < 4; ++i)
        ++users.at(kMemoNumberAt + i);
    EXPECT_EQ(users, std::vector<int>(kRecordLength, 1));
}

TEST(NoteFields, FlagsAreWrittenAsWordsAndReadLeniently) {
    NoteRecord note;
    note.mute = true;
    EXPECT_EQ(rowOf(NoteField::Mute).write(note), u"True");
    note.mute = false;
    EXPECT_EQ(rowOf(NoteField::Mute).write(note), u"False");
    rowOf(NoteField::Mute).read(note, u"SI");
    EXPECT_TRUE(note.mute);
    rowOf(NoteField::Mute).read(note, u"0");
    EXPECT_FALSE(note.mute);
}

TEST(NoteFields, NumbersSaturateAndWordsReadAsZero) {
    NoteRecord note;
    rowOf(NoteField::X).read(note, u"99999999999");
    EXPECT_EQ(note.x, 2147483647);
    rowOf(NoteField::X).read(note, u"-99999999999");
    EXPECT_EQ(note.x, -2147483647 - 1);
    rowOf(NoteField::X).read(note, u"wide");
    EXPECT_EQ(note.x, 0);
    rowOf(NoteField::AlarmRepeatNumber).read(note, u"40000");
    EXPECT_EQ(note.alarmrepeatnumber, 32767);
}

TEST(NoteFields, AnImpossibleWeekdayReadsAsNoWeekday) {
    NoteRecord note;
    for (const TextView text : {u"9", u"-3", u"32767", u"99999"}) {
        note.alarmweekday = 5;
        rowOf(NoteField::AlarmWeekday).read(note, text);
        EXPECT_EQ(note.alarmweekday, 0);
    }
    rowOf(NoteField::AlarmWeekday).read(note, u"8");
    EXPECT_EQ(note.alarmweekday, 8);
}

TEST(NoteFields, AnEmptyColourLeavesTheNotesOwn) {
    NoteRecord note;
    note.backcolor = 255;
    rowOf(NoteField::Backcolor).read(note, u"");
    EXPECT_FALSE(note.backcolor.has_value());
    EXPECT_EQ(rowOf(NoteField::Backcolor).write(note), u"8454143");
    rowOf(NoteField::Backcolor).read(note, u"-2147483643");
    EXPECT_EQ(note.backcolor, -2147483643);
}

TEST(NoteFields, AKindIsFoundAnywhereInTheStoredInterval) {
    EXPECT_EQ(intervalKind(u"  eachmonth"), kEachMonth);
    EXPECT_EQ(intervalKind(u"eachyear"), kEachYear);
    EXPECT_EQ(intervalKind(u"never"), u"");
}

TEST(NoteFields, AKindOrAnAsteriskMakesAPattern) {
    NoteRecord note;
    EXPECT_FALSE(recursByPattern(note));
    note.alarmdate = u"01/01/2030";
    EXPECT_FALSE(recursByPattern(note));
    note.interval = kEachDay;
    EXPECT_TRUE(recursByPattern(note));
    note.interval.clear();
    note.alarmdate = u"*";
    EXPECT_TRUE(recursByPattern(note));
}

}  // namespace
