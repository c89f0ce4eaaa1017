#include "storage/NoteFields.h"

#include <algorithm>
#include <array>

#include "support/Number.h"

namespace {

constexpr std::size_t kFlagWidth = 2;
constexpr std::size_t kInt16Width = 2;
constexpr std::size_t kInt32Width = 4;
constexpr std::int16_t kLastWeekdayChoice = 8;

template <Text NoteRecord::*Member>
constexpr NoteFieldRow text(NoteField field, const char16_t* key, std::size_t offset, std::size_t width) {
    return {field,
            key,
            FieldKind::Words,
            offset,
            width,
            [](const NoteRecord& note) { return note.*Member; },
            [](NoteRecord& note, TextView stored) { note.*Member = stored; }};
}

template <std::int32_t NoteRecord::*Member>
constexpr NoteFieldRow int32(NoteField field, const char16_t* key, std::size_t offset) {
    return {field,
            key,
            FieldKind::Int32,
            offset,
            kInt32Width,
            [](const NoteRecord& note) { return decimal(note.*Member); },
            [](NoteRecord& note, TextView stored) { note.*Member = leadingInt32(stored); }};
}

template <bool NoteRecord::*Member>
constexpr NoteFieldRow flag(NoteField field, const char16_t* key, std::size_t offset) {
    return {field,
            key,
            FieldKind::Flag,
            offset,
            kFlagWidth,
            [](const NoteRecord& note) { return boolText(note.*Member); },
            [](NoteRecord& note, TextView stored) { note.*Member = ParseBool(stored); }};
}

template <std::size_t Day>
constexpr NoteFieldRow weekday(NoteField field) {
    return {field,
            nullptr,
            FieldKind::Flag,
            201 + Day * kFlagWidth,
            kFlagWidth,
            [](const NoteRecord& note) { return boolText(note.weekdays[Day]); },
            [](NoteRecord& note, TextView stored) { note.weekdays[Day] = ParseBool(stored); }};
}

constexpr NoteFieldRow body() {
    return {NoteField::Nota,
            u"Nota",
            FieldKind::Body,
            0,
            0,
            [](const NoteRecord& note) { return note.Nota; },
            [](NoteRecord& note, TextView stored) { note.Nota = stored; }};
}

constexpr NoteFieldRow backcolor() {
    return {NoteField::Backcolor,
            u"backcolor",
            FieldKind::Int32,
            25,
            kInt32Width,
            [](const NoteRecord& note) { return decimal(note.backcolor.value_or(kDesignColor)); },
            [](NoteRecord& note, TextView stored) {
                note.backcolor.reset();
                if (!stored.empty()) note.backcolor = leadingInt32(stored);
            }};
}

constexpr NoteFieldRow alarmWeekday() {
    return {NoteField::AlarmWeekday,
            u"alarmweekday",
            FieldKind::Int16,
            195,
            kInt16Width,
            [](const NoteRecord& note) { return decimal(note.alarmweekday); },
            [](NoteRecord& note, TextView stored) {
                // 1 to 7 is a day, 8 several days. A search for any other day would never end.
                const std::int16_t choice = leadingInt16(stored);
                note.alarmweekday = choice < 0 || choice > kLastWeekdayChoice ? std::int16_t{0} : choice;
            }};
}

constexpr NoteFieldRow repeatNumber() {
    return {NoteField::AlarmRepeatNumber,
            u"alarmrepeatnumber",
            FieldKind::Int16,
            197,
            kInt16Width,
            [](const NoteRecord& note) { return decimal(note.alarmrepeatnumber); },
            [](NoteRecord& note, TextView stored) { note.alarmrepeatnumber = leadingInt16(stored); }};
}

using Note = NoteRecord;

constexpr std::array<NoteFieldRow, kNoteFieldCount> kRows{{
    int32<&Note::x>(NoteField::X, u"x", 47),
    int32<&Note::y>(NoteField::Y, u"y", 185),
    int32<&Note::width>(NoteField::Width, u"width", 191),
    int32<&Note::height>(NoteField::Height, u"height", 31),
    body(),
    flag<&Note::topmost>(NoteField::Topmost, u"topmost", 189),
    text<&Note::Titolo>(NoteField::Titolo, u"Titolo", 57, kTitleLength),
    flag<&Note::iconized>(NoteField::Iconized, u"iconized", 35),
    flag<&Note::closed>(NoteField::Closed, u"closed", 29),
    text<&Note::alarmdate>(NoteField::AlarmDate, u"alarmdate", 0, 10),
    text<&Note::interval>(NoteField::Interval, u"interval", 37, 10),
    text<&Note::alarmday>(NoteField::AlarmDay, u"alarmday", 18, 2),
    text<&Note::alarmdaymonth>(NoteField::AlarmDayMonth, u"alarmdaymonth", 20, 5),
    text<&Note::alarmtime>(NoteField::AlarmTime, u"alarmtime", 10, 8),
    alarmWeekday(),
    repeatNumber(),
    text<&Note::alarmrepeatevery>(NoteField::AlarmRepeatEvery, u"alarmrepeatevery", 199, 2),
    backcolor(),
    flag<&Note::mute>(NoteField::Mute, u"mute", 51),
    weekday<0>(NoteField::Weekday0),
    weekday<1>(NoteField::Weekday1),
    weekday<2>(NoteField::Weekday2),
    weekday<3>(NoteField::Weekday3),
    weekday<4>(NoteField::Weekday4),
    weekday<5>(NoteField::Weekday5),
    weekday<6>(NoteField::Weekday6),
}};

constexpr bool rowsAreIndexedByField() {
    for (std::size_t i = 0; i < kRows.size(); ++i) {
        if (static_cast<std::size_t>(kRows[i].field) != i) return false;
    }
    return true;
}
static_assert(rowsAreIndexedByField());

}  // namespace

std::span<const NoteFieldRow> noteFields() {
    return kRows;
}

const NoteFieldRow& rowOf(NoteField field) {
    return kRows[static_cast<std::size_t>(field)];
}

std::vector<NoteField> everyField() {
    std::vector<NoteField> fields;
    fields.reserve(kRows.size());
    for (const NoteFieldRow& row : kRows)
        fields.push_back(row.field);
    return fields;
}

TextView intervalKind(TextView stored) {
    for (const TextView kind : {kEachDay, kEachMonth, kEachYear}) {
        if (stored.find(kind) != TextView::npos) return kind;
    }
    return {};
}

bool recursByPattern(const NoteRecord& record) {
    return record.alarmdate == kPatternDate || !intervalKind(record.interval).empty();
}

NoteRecord withStoredRule(NoteRecord record) {
    if (recursByPattern(record)) {
        record.alarmdate = kPatternDate;
    } else {
        record.interval.clear();
        record.alarmday.clear();
        record.alarmdaymonth.clear();
    }
    return record;
}

std::vector<NoteField> storedTogether(const NoteRecord& record, std::span<const NoteField> fields) {
    std::vector<NoteField> together(fields.begin(), fields.end());
    const auto has = [&](NoteField field) {
        return std::find(together.begin(), together.end(), field) != together.end();
    };
    if (recursByPattern(record) || !has(NoteField::AlarmDate)) return together;
    for (const NoteField field : kPatternFields) {
        if (!has(field)) together.push_back(field);
    }
    return together;
}
