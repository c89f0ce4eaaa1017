#include "alarm/AlarmEditor.h"

#include <algorithm>

namespace {

constexpr int kNotch = 120;  // of the wheel, as Windows reports it

BarRange rangeOf(EditorBar bar) {
    constexpr BarRange kRanges[] = {kDateBar, kHourBar, kMinuteBar, kSecondBar};
    return kRanges[static_cast<std::size_t>(bar)];
}

ClockPart partOf(EditorBar bar) {
    if (bar == EditorBar::Hours) return ClockPart::Hours;
    return bar == EditorBar::Minutes ? ClockPart::Minutes : ClockPart::Seconds;
}

}  // namespace

void AlarmEditor::begin(const EditorControls& shown) {
    repeatKept_ = shown.repeatKept;
    lastRepeat_ = shown.cboRepeat;
    lastDay_ = shown.cboDay;
}

EditorControls AlarmEditor::choice() const {
    EditorControls now = face_.controls();
    now.repeatKept = repeatKept_;
    return now;
}

// --- Lists and date ---------------------------------------------------------------------------------------

void AlarmEditor::onRepeat() {
    const EditorControls now = choice();
    const int chosen = now.cboRepeat;
    if (chosen == lastRepeat_) return;
    if (chosen > 0 && holdsWildcards(now.data)) {
        face_.choose(EditorList::Repeat, lastRepeat_);
        face_.needFullDate();
        return;
    }
    lastRepeat_ = chosen;
    lastDay_ = offersUnits() ? unitIndex(kMinutes) : 0;
    face_.offerDays(offersUnits(), lastDay_);
    face_.showWeek(false);
}

void AlarmEditor::onDay() {
    const EditorControls now = choice();
    const int chosen = now.cboDay;
    if (chosen == lastDay_) return;
    if (needsFullDate(now)) {
        face_.choose(EditorList::Day, lastDay_);
        face_.needFullDate();
        return;
    }
    lastDay_ = chosen;
    if (!offersUnits() && chosen > 0 && now.time.empty()) face_.showTime(timeText({}));
    face_.showWeek(!offersUnits() && chosen == kSeveralWeekdays);
}

void AlarmEditor::onDatePart(DatePart part) {
    EditorControls next = choice();
    next.data = toggled(next.data, part, face_.now());
    if (needsFullDate(next)) {
        face_.needFullDate();
        return;
    }
    face_.showDate(dateAndTime(next.data, parseTime(next.time)));
}

// --- Buttons ----------------------------------------------------------------------------------------------

void AlarmEditor::onStart() {
    const EditorControls chosen = choice();
    if (needsFullDate(chosen)) {
        face_.needFullDate();
        return;
    }
    EditorResult started;
    started.AlarmStart = true;
    started.DateNotSet = holdsWildcards(chosen.data);
    started.alarm = ruleOfControls(chosen);
    face_.finish(started);
}

void AlarmEditor::onStop() {
    EditorResult stopped;
    stopped.AlarmStop = true;
    face_.finish(stopped);
}

// --- Bars -------------------------------------------------------------------------------------------------

TimeOfDay AlarmEditor::shownTime(const EditorControls& shown) const {
    return shown.time.empty() ? timeOf(face_.now().at) : parseTime(shown.time);
}

int AlarmEditor::shownPosition(EditorBar bar, const EditorControls& shown) const {
    switch (bar) {
        case EditorBar::Hours:
            return static_cast<int>(shownTime(shown).hours);
        case EditorBar::Minutes:
            return static_cast<int>(shownTime(shown).minutes);
        case EditorBar::Seconds:
            return static_cast<int>(shownTime(shown).seconds);
        case EditorBar::Date:
            break;
    }
    return positionOfDate(datePart(shown.data), face_.now());
}

void AlarmEditor::onScroll(EditorBar bar, BarMove move, int trackPosition) {
    const EditorControls shown = face_.controls();
    const bool isDate = bar == EditorBar::Date;
    if (isDate && holdsWildcards(shown.data)) return;
    const BarRange range = rangeOf(bar);
    const int before = shownPosition(bar, shown);
    const int page = isDate ? kDateBarPage : 1;
    int position = before;
    switch (move) {
        case BarMove::LineLeft:
            --position;
            break;
        case BarMove::LineRight:
            ++position;
            break;
        case BarMove::PageLeft:
            position -= page;
            break;
        case BarMove::PageRight:
            position += page;
            break;
        case BarMove::Left:
            position = 0;
            break;
        case BarMove::Right:
            position = isDate ? range.high : range.high - 1;
            break;
        case BarMove::ThumbTrack:
            dragging_ = true;
            position = trackPosition;
            break;
        case BarMove::ThumbPosition:
            position = trackPosition;
            break;
        case BarMove::EndScroll:
            dragging_ = false;
            return;
    }
    // A thumb dragged to the end stays there: the clock turns over only by steps.
    const int beyond = dragging_ && !isDate ? 1 : 0;
    position = std::clamp(position, range.low + beyond, range.high - beyond);
    if (position == before) return;
    if (isDate) {
        face_.showDate(dateAtPosition(position, face_.now()));
    } else {
        face_.showClock(scrolled({datePart(shown.data), shownTime(shown)}, partOf(bar), position));
    }
}

void AlarmEditor::onWheel(std::optional<EditorBar> bar, int delta) {
    wheelRest_ += delta;
    for (; wheelRest_ >= kNotch; wheelRest_ -= kNotch) {
        if (bar) onScroll(*bar, BarMove::LineRight, 0);
    }
    for (; wheelRest_ <= -kNotch; wheelRest_ += kNotch) {
        if (bar) onScroll(*bar, BarMove::LineLeft, 0);
    }
}
