// The one table of all stored fields: their keys, their text forms and their places in the 215-byte record.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "storage/NoteRecord.h"
#include "support/Text.h"

/// The stored fields, in the order in which a note's section holds them. The order is that of the rows.
enum class NoteField : unsigned char {
    X,
    Y,
    Width,
    Height,
    Nota,
    Topmost,
    Titolo,
    Iconized,
    Closed,
    AlarmDate,
    Interval,
    AlarmDay,
    AlarmDayMonth,
    AlarmTime,
    AlarmWeekday,
    AlarmRepeatNumber,
    AlarmRepeatEvery,
    Backcolor,
    Mute,
    Weekday0,
    Weekday1,
    Weekday2,
    Weekday3,
    Weekday4,
    Weekday5,
    Weekday6,
};
inline constexpr std::size_t kNoteFieldCount = 26;

inline constexpr std::size_t kTitleLength = 128;  ///< bytes of a title in its record

enum class FieldKind : unsigned char { Words, Int32, Int16, Flag, Body };

struct NoteFieldRow {
    NoteField field;
    const char16_t* key;  ///< name of the value in the note's section; null for the weekday flags
    FieldKind kind;
    std::size_t offset;                          ///< in the 215-byte record; the body has none
    std::size_t width;                           ///< bytes in the record
    Text (*write)(const NoteRecord&);            ///< the stored text form
    void (*read)(NoteRecord&, TextView stored);  ///< from the stored text form
};

/// All rows, indexed by NoteField.
std::span<const NoteFieldRow> noteFields();
const NoteFieldRow& rowOf(NoteField field);
/// All fields, to store a note whole.
std::vector<NoteField> everyField();

/// The content of "alarmdate" in place of a date when the rule recurs by pattern.
inline constexpr TextView kPatternDate = u"*";

inline constexpr TextView kEachDay = u"eachday";
inline constexpr TextView kEachMonth = u"eachmonth";
inline constexpr TextView kEachYear = u"eachyear";

/// The kind named anywhere in a stored interval, or empty.
TextView intervalKind(TextView stored);

/// Whether the note's alarm has no fixed date: it recurs by an interval kind or on weekdays alone.
bool recursByPattern(const NoteRecord& record);

/// The note with its rule in the form in which both stores keep it: "*" for a pattern, and no pattern beside
/// a fixed date.
NoteRecord withStoredRule(NoteRecord record);

/// The fields that have to be stored when `fields` have changed: a fixed date also clears the values of an
/// earlier pattern.
std::vector<NoteField> storedTogether(const NoteRecord& record, std::span<const NoteField> fields);

/// The fields of the alarm, in the order in which they are stored when a rule is set, and when it is cleared.
inline constexpr NoteField kAlarmFields[] = {
    NoteField::AlarmDate, NoteField::Interval,     NoteField::AlarmDay,          NoteField::AlarmDayMonth,
    NoteField::AlarmTime, NoteField::AlarmWeekday, NoteField::AlarmRepeatNumber, NoteField::AlarmRepeatEvery,
    NoteField::Mute,      NoteField::Weekday0,     NoteField::Weekday1,          NoteField::Weekday2,
    NoteField::Weekday3,  NoteField::Weekday4,     NoteField::Weekday5,          NoteField::Weekday6};
inline constexpr NoteField kClearedAlarmFields[] = {
    NoteField::AlarmTime,         NoteField::AlarmDate,        NoteField::AlarmWeekday,
    NoteField::AlarmRepeatNumber, NoteField::AlarmRepeatEvery, NoteField::Mute,
    NoteField::Interval,          NoteField::AlarmDay,         NoteField::AlarmDayMonth};
/// The fields that say how an alarm recurs by pattern.
inline constexpr NoteField kPatternFields[] = {NoteField::Interval, NoteField::AlarmDay,
                                               NoteField::AlarmDayMonth};
