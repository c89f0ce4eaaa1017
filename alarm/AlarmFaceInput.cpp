#include "alarm/AlarmFaceInput.h"

#include <algorithm>
#include <iterator>

#include "resources/resource.h"

namespace {

struct Bar {
    int id;
    BarRange range;
    int page;
};
constexpr Bar kBars[] = {{ID_HDATE, kDateBar, kDateBarPage},
                         {ID_HORE, kHourBar, 1},
                         {ID_HMIN, kMinuteBar, 1},
                         {ID_HSEC, kSecondBar, 1}};

const Bar* barOf(int id) {
    const auto* const found =
        std::find_if(std::begin(kBars), std::end(kBars), [id](const Bar& b) { return b.id == id; });
    return found == std::end(kBars) ? nullptr : found;
}

/// Letters that reach a control with Alt; labels and buttons show them underlined.
struct AccessKey {
    char16_t letter;
    int id;
};
constexpr AccessKey kAccessKeys[] = {{u'd', ID_DATA},    {u'h', ID_HORE},  {u'r', ID_CBOREPEAT},
                                     {u'm', ID_CHKMUTE}, {u's', ID_BTNOK}, {u't', ID_BTNCANCEL}};

}  // namespace

void AlarmFaceInput::begin(std::int16_t repeatNumber, bool units, int day) {
    repeatKept_ = repeatNumber;
    lastRepeat_ = repeatIndex(repeatNumber);
    unitMode_ = units;
    lastDay_ = day;
}

int AlarmFaceInput::selected(int id) const {
    return static_cast<int>(SendMessageW(face_.item(id), CB_GETCURSEL, 0, 0));
}

EditorControls AlarmFaceInput::choice() const {
    EditorControls now;
    now.data = windowText(face_.item(ID_DATA));
    now.time = windowText(face_.item(ID_LBLTIME));
    now.cboRepeat = selected(ID_CBOREPEAT);
    now.cboDay = std::max(0, selected(ID_CBODAY));
    now.repeatKept = repeatKept_;
    for (int day = 0; day < kWeekdays; ++day) {
        now.chkWeek[static_cast<std::size_t>(day)] =
            SendMessageW(face_.item(ID_CHKWEEK + day), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }
    now.chkMute = SendMessageW(face_.item(ID_CHKMUTE), BM_GETCHECK, 0, 0) == BST_CHECKED;
    return now;
}

// The dialog shows the message in place of this editor and may be gone when that returns.
void AlarmFaceInput::refuse() const {
    for (const int list : {ID_CBOREPEAT, ID_CBODAY})
        SendMessageW(face_.item(list), CB_SHOWDROPDOWN, FALSE, 0);
    face_.needFullDate();
}

void AlarmFaceInput::onCommand(int id, int code) {
    if (id == ID_CBOREPEAT || id == ID_CBODAY) {
        onList(id, code);
    } else if (id == ID_BTNOK && code == BN_CLICKED) {
        onStart();
    } else if (id == ID_BTNCANCEL && code == BN_CLICKED) {
        EditorResult stopped;
        stopped.AlarmStop = true;
        face_.finish(stopped);
    }
}

// What the keyboard passes in an open list is not chosen yet; the choice counts once the list is closed.
void AlarmFaceInput::onList(int id, int code) {
    const HWND list = face_.item(id);
    if (code == CBN_CLOSEUP) {
        // Windows may still be accepting or cancelling the choice.
        PostMessageW(GetParent(list), WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, CBN_SELCHANGE)),
                     reinterpret_cast<LPARAM>(list));
    } else if (code == CBN_SELCHANGE && SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) == FALSE) {
        if (id == ID_CBOREPEAT) {
            onRepeat();
        } else {
            onDay();
        }
    }
}

void AlarmFaceInput::onRepeat() {
    const int chosen = selected(ID_CBOREPEAT);
    if (chosen == lastRepeat_) return;
    if (chosen > 0 && holdsWildcards(windowText(face_.item(ID_DATA)))) {
        SendMessageW(face_.item(ID_CBOREPEAT), CB_SETCURSEL, static_cast<WPARAM>(lastRepeat_), 0);
        refuse();
        return;
    }
    lastRepeat_ = chosen;
    unitMode_ = chosen > 0;
    lastDay_ = unitMode_ ? unitIndex(kMinutes) : 0;
    face_.offerDays(unitMode_, lastDay_);
    face_.showWeek(false);
}

void AlarmFaceInput::onDay() {
    const int chosen = selected(ID_CBODAY);
    if (chosen == lastDay_) return;
    const EditorControls now = choice();
    if (needsFullDate(now)) {
        SendMessageW(face_.item(ID_CBODAY), CB_SETCURSEL, static_cast<WPARAM>(lastDay_), 0);
        refuse();
        return;
    }
    lastDay_ = chosen;
    if (!unitMode_ && chosen > 0 && now.time.empty()) setWindowText(face_.item(ID_LBLTIME), timeText({}));
    face_.showWeek(!unitMode_ && chosen == kSeveralWeekdays);
}

void AlarmFaceInput::onDatePart(DatePart part) {
    EditorControls next = choice();
    next.data = toggled(next.data, part, face_.now());
    if (needsFullDate(next)) {
        refuse();
        return;
    }
    face_.showDate(dateAndTime(next.data, parseTime(next.time)));
}

void AlarmFaceInput::onStart() {
    const EditorControls chosen = choice();
    if (needsFullDate(chosen)) {
        refuse();
        return;
    }
    EditorResult started;
    started.AlarmStart = true;
    started.DateNotSet = holdsWildcards(chosen.data);
    started.alarm = ruleOfControls(chosen);
    face_.finish(started);
}

bool AlarmFaceInput::isBar(HWND control) const {
    const int id = GetDlgCtrlID(control);
    return barOf(id) != nullptr && face_.item(id) == control;
}

TimeOfDay AlarmFaceInput::shownTime() const {
    const Text label = windowText(face_.item(ID_LBLTIME));
    return label.empty() ? timeOf(face_.now().at) : parseTime(label);
}

int AlarmFaceInput::shownPosition(int id) const {
    switch (id) {
        case ID_HORE:
            return static_cast<int>(shownTime().hours);
        case ID_HMIN:
            return static_cast<int>(shownTime().minutes);
        case ID_HSEC:
            return static_cast<int>(shownTime().seconds);
        default:
            return positionOfDate(datePart(windowText(face_.item(ID_DATA))), face_.now());
    }
}

void AlarmFaceInput::onScroll(HWND control, int code, int trackPosition) {
    if (!isBar(control)) return;
    const Bar* const bar = barOf(GetDlgCtrlID(control));
    if (bar->id == ID_HDATE && holdsWildcards(windowText(face_.item(ID_DATA)))) return;
    const BarRange range = bar->range;
    const int before = shownPosition(bar->id);
    int position = before;
    switch (code) {
        case SB_LINELEFT:
            --position;
            break;
        case SB_LINERIGHT:
            ++position;
            break;
        case SB_PAGELEFT:
            position -= bar->page;
            break;
        case SB_PAGERIGHT:
            position += bar->page;
            break;
        case SB_LEFT:
            position = 0;
            break;
        case SB_RIGHT:
            position = bar->id == ID_HDATE ? range.high : range.high - 1;
            break;
        case SB_THUMBTRACK:
            dragging_ = true;
            position = trackPosition;
            break;
        case SB_THUMBPOSITION:
            position = trackPosition;
            break;
        case SB_ENDSCROLL:
            dragging_ = false;
            return;
        default:
            return;
    }
    // A thumb dragged to the end stays there: the clock turns over only by steps.
    const int beyond = dragging_ && bar->id != ID_HDATE ? 1 : 0;
    position = std::clamp(position, range.low + beyond, range.high - beyond);
    if (position == before) return;
    if (bar->id == ID_HDATE) {
        face_.showDate(dateAtPosition(position, face_.now()));
        return;
    }
    const auto part = static_cast<ClockPart>(bar->id - ID_HORE);
    face_.showClock(scrolled({datePart(windowText(face_.item(ID_DATA))), shownTime()}, part, position));
}

void AlarmFaceInput::onWheel(int delta, POINT at) {
    HWND bar = WindowFromPoint(at);
    if (!isBar(bar)) bar = GetFocus();
    wheelRest_ += delta;
    for (; wheelRest_ >= WHEEL_DELTA; wheelRest_ -= WHEEL_DELTA)
        onScroll(bar, SB_LINERIGHT, 0);
    for (; wheelRest_ <= -WHEEL_DELTA; wheelRest_ += WHEEL_DELTA)
        onScroll(bar, SB_LINELEFT, 0);
}

bool AlarmFaceInput::accessKey(char16_t letter) const {
    const Text small = lowered(TextView(&letter, 1));
    for (const AccessKey& key : kAccessKeys) {
        if (key.letter != small.front()) continue;
        SetFocus(face_.item(key.id));
        const bool isButton = key.id == ID_CHKMUTE || key.id == ID_BTNOK || key.id == ID_BTNCANCEL;
        if (isButton) SendMessageW(face_.item(key.id), BM_CLICK, 0, 0);
        return true;
    }
    return false;
}
