// One note as it is stored, whichever store holds it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "support/Text.h"

inline constexpr int kMaxNotes = 50;
inline constexpr int kWeekdays = 7;

/// Light yellow (hex 80FFFF): the colour of a note that has no other.
inline constexpr std::int32_t kDesignColor = 8454143;

/// Every persisted field of a note, in its stored form. Geometry in twips; a width or height of 0 or less
/// means "the default size".
struct NoteRecord {
    Text Titolo;
    Text Nota;
    std::optional<std::int32_t> backcolor;  ///< empty: the note keeps the design colour
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool topmost = false;
    bool iconized = false;
    bool closed = false;
    Text alarmdate;  ///< "dd/mm/yyyy", "*" for a rule that recurs by pattern, empty without an alarm
    Text alarmtime;
    std::int16_t alarmweekday = 0;
    std::int16_t alarmrepeatnumber = 0;
    Text alarmrepeatevery;
    Text interval;  ///< "eachday", "eachmonth", "eachyear" or empty
    Text alarmday;
    Text alarmdaymonth;
    bool mute = false;
    std::array<bool, kWeekdays> weekdays{};  ///< Monday first

    /// Local files only: number of the body's record in MEMO, 0 when it has none yet.
    std::int32_t memo = 0;
    /// The note could not be read completely: nothing of it is written back during this run.
    bool readOnly = false;

    bool operator==(const NoteRecord&) const = default;
};
