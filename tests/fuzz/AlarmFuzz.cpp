// Any record and any clock: loading, ringing and editing its alarm must end soon, with a rule that does what
// it says.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "alarm/AlarmEditorRules.h"
#include "alarm/AlarmRule.h"
#include "alarm/AlarmText.h"

namespace {

/// Takes the input apart; what is missing is zero.
struct Input {
    const std::uint8_t* data;
    std::size_t size;

    std::uint8_t byte() {
        if (size == 0) return 0;
        --size;
        return *data++;
    }
    std::int16_t int16() { return static_cast<std::int16_t>(byte() | byte() << 8); }
    bool flag() { return (byte() & 1) != 0; }
    /// Up to `most` characters: the length first.
    Text text(std::size_t most) {
        Text text(byte() % (most + 1), u' ');
        for (char16_t& c : text)
            c = byte();
        return text;
    }
    /// Any moment from the year 0 on, far beyond the last date that can be written.
    Now now() {
        std::int64_t seconds = 0;
        for (int i = 0; i < 5; ++i)
            seconds = seconds << 8 | byte();
        return {{seconds - 59926435200}, byte() * 999 / 255};
    }
};

void require(bool holds) {
    if (!holds) std::abort();
}

void checkDue(const AlarmRule& rule) {
    if (!rule.due) return;
    require(hasAlarm(rule));
    require(dateOf(*rule.due).year <= 9999);
    require(rule.AlarmDate.size() == 10);
    require(instantOf(parseDate(rule.AlarmDate), parseTime(rule.AlarmTime)) == *rule.due);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{data, size};
    const Now now = input.now();
    const Now later{{now.at.seconds + input.int16() * 86400LL}, now.ms};
    NoteRecord record;
    record.alarmweekday = static_cast<std::int16_t>(input.flag() ? input.int16() : input.byte() % 10);
    record.alarmrepeatnumber = input.int16();
    constexpr TextView kUnits[] = {u"mm", u"hh", u"dd", u"MM"};
    const std::uint8_t unit = input.byte();
    record.alarmrepeatevery = unit < 200 ? Text(kUnits[unit % 4]) : input.text(3);
    constexpr TextView kWords[] = {u"", u"eachday", u"eachmonth", u"eachyear"};
    const std::uint8_t word = input.byte();
    record.interval = word < 200 ? Text(kWords[word % 4]) : input.text(10);
    for (bool& flag : record.weekdays)
        flag = input.flag();
    record.alarmtime = input.text(9);
    record.alarmdate = input.text(12);
    record.alarmday = input.text(3);
    record.alarmdaymonth = input.text(6);

    AlarmRule rule = ruleFromRecord(record);
    armAfterLoad(rule, now);
    checkDue(rule);
    require(rule.AlarmWeekday >= 0 && rule.AlarmWeekday <= kSeveralWeekdays);
    if (rule.due) countdownText(*rule.due, now);
    dueText(rule);

    AlarmRule again = rule;
    const bool changed = armAfterLoad(again, now);
    // A pattern that also repeats has no place to store its day. It is the only kind of rule that may move
    // again.
    const bool settled = !(rule.DateNotSet() && rule.RepeatNumber >= 1);
    if (settled) require(!changed && again == rule);

    const Rearmed result = rearm(again, later);
    checkDue(again);
    require((result == Rearmed::Armed) == isAhead(again, later));

    EditorRule editor;
    editor.AlarmDate = editorDate(rule, now);
    editor.AlarmTime = editorTime(rule, now);
    editor.AlarmWeekday = record.alarmweekday;
    editor.FlagWeekday = record.weekdays;
    editor.RepeatNumber = record.alarmrepeatnumber;
    editor.RepeatEvery = record.alarmrepeatevery;
    checkDue(ruleFromEditor(editor, now));
    editor.AlarmDate = record.alarmdate;
    editor.AlarmTime = record.alarmtime;
    checkDue(ruleFromEditor(editor, now));

    for (const DatePart part : {DatePart::Day, DatePart::Month, DatePart::Year}) {
        const Text date = toggled(record.alarmdate, part, now);
        const EditorClock clock{date, parseTime(record.alarmtime)};
        for (const int position : {-1, 0, 60})
            scrolled(clock, ClockPart::Hours, position);
        positionOfDate(date, now);
    }
    return 0;
}
