// The one table that knows every stored field: its key, its text form, and its place in the 215-byte record.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "storage/NoteRecord.h"
#include "support/Text.h"

/// The stored fields. The order is that of the rows.
enum class NoteField : unsigned char {
    Titolo,
    Nota,
    Backcolor,
    X,
    Y,
    Width,
    Height,
    Topmost,
    Iconized,
    Closed,
    AlarmDate,
    AlarmTime,
    AlarmWeekday,
    AlarmRepeatNumber,
    AlarmRepeatEvery,
    Interval,
    AlarmDay,
    AlarmDayMonth,
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

/// What "alarmdate" holds instead of a date when the rule recurs by pattern.
inline constexpr TextView kPatternDate = u"*";

inline constexpr TextView kEachDay = u"eachday";
inline constexpr TextView kEachMonth = u"eachmonth";
inline constexpr TextView kEachYear = u"eachyear";

/// The kind that a stored interval names anywhere in it, or empty.
TextView intervalKind(TextView stored);

/// Whether the note's alarm has no fixed date: it recurs by an interval kind or on weekdays alone.
bool recursByPattern(const NoteRecord& record);
