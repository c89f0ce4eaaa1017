// What the user does in the alarm editor: lists, bars, buttons and access keys.
#include <algorithm>

#include "alarm/AlarmFace.h"
#include "alarm/AlarmText.h"
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

int AlarmFace::selected(int id) const {
    return static_cast<int>(SendMessageW(item(id), CB_GETCURSEL, 0, 0));
}

EditorControls AlarmFace::choice() const {
    EditorControls now;
    now.data = windowText(data.hwnd);
    now.time = windowText(item(ID_LBLTIME));
    now.cboRepeat = selected(ID_CBOREPEAT);
    now.cboDay = std::max(0, selected(ID_CBODAY));
    now.repeatKept = repeatKept_;
    for (int day = 0; day < kWeekdays; ++day) {
        now.chkWeek[static_cast<std::size_t>(day)] =
            SendMessageW(item(ID_CHKWEEK + day), BM_GETCHECK, 0, 0) == BST_CHECKED;
    }
    now.chkMute = SendMessageW(item(ID_CHKMUTE), BM_GETCHECK, 0, 0) == BST_CHECKED;
    return now;
}

// The dialog shows the message in place of this editor and may be gone when that returns.
void AlarmFace::refuse() const {
    for (const int list : {ID_CBOREPEAT, ID_CBODAY})
        SendMessageW(item(list), CB_SHOWDROPDOWN, FALSE, 0);
    host.needFullDate();
}

void AlarmFace::onCommand(int id, int code) {
    if (id == ID_CBOREPEAT || id == ID_CBODAY) {
        onList(id, code);
    } else if (id == ID_BTNOK && code == BN_CLICKED) {
        onStart();
    } else if (id == ID_BTNCANCEL && code == BN_CLICKED) {
        result = {};
        result.AlarmStop = true;
        host.finished();
    }
}

// What the keyboard passes in an open list is not chosen yet; the choice counts once the list is closed.
void AlarmFace::onList(int id, int code) {
    const HWND list = item(id);
    if (code == CBN_CLOSEUP) {
        // Windows may still be accepting or cancelling the choice.
        PostMessageW(form_, WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, CBN_SELCHANGE)),
                     reinterpret_cast<LPARAM>(list));
    } else if (code == CBN_SELCHANGE && SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) == FALSE) {
        if (id == ID_CBOREPEAT) {
            onRepeat();
        } else {
            onDay();
        }
    }
}

void AlarmFace::onRepeat() {
    const int chosen = selected(ID_CBOREPEAT);
    if (chosen == lastRepeat_) return;
    if (chosen > 0 && holdsWildcards(windowText(data.hwnd))) {
        SendMessageW(item(ID_CBOREPEAT), CB_SETCURSEL, static_cast<WPARAM>(lastRepeat_), 0);
        refuse();
        return;
    }
    lastRepeat_ = chosen;
    fillDays(chosen > 0, chosen > 0 ? unitIndex(kMinutes) : 0);
    if (showWeek(false)) {
        show(true);
        host.resized();
    }
}

void AlarmFace::onDay() {
    const int chosen = selected(ID_CBODAY);
    if (chosen == lastDay_) return;
    const EditorControls now = choice();
    if (needsFullDate(now)) {
        SendMessageW(item(ID_CBODAY), CB_SETCURSEL, static_cast<WPARAM>(lastDay_), 0);
        refuse();
        return;
    }
    lastDay_ = chosen;
    if (!unitMode_ && chosen > 0 && now.time.empty()) setWindowText(item(ID_LBLTIME), timeText({}));
    if (showWeek(!unitMode_ && chosen == kSeveralWeekdays)) {
        show(true);
        host.resized();
    }
}

void AlarmFace::onDatePart(DatePart part) {
    EditorControls next = choice();
    next.data = toggled(next.data, part, host.now());
    if (needsFullDate(next)) {
        refuse();
        return;
    }
    showDate(dateAndTime(next.data, parseTime(next.time)));
}

void AlarmFace::onStart() {
    const EditorControls chosen = choice();
    if (needsFullDate(chosen)) {
        refuse();
        return;
    }
    result = {};
    result.AlarmStart = true;
    result.DateNotSet = holdsWildcards(chosen.data);
    result.alarm = ruleOfControls(chosen);
    host.finished();
}

void AlarmFace::onScroll(HWND control, int code, int trackPosition) {
    const Bar* const bar = barOf(GetDlgCtrlID(control));
    if (bar == nullptr || GetParent(control) != form_) return;
    if (bar->id == ID_HDATE && holdsWildcards(windowText(data.hwnd))) return;
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
        showDate(dateAtPosition(position, host.now()));
        return;
    }
    const auto part = static_cast<ClockPart>(bar->id - ID_HORE);
    showClock(scrolled({datePart(windowText(data.hwnd)), shownTime()}, part, position));
}

void AlarmFace::onWheel(int delta, POINT at) {
    HWND bar = WindowFromPoint(at);
    if (GetParent(bar) != form_ || barOf(GetDlgCtrlID(bar)) == nullptr) bar = GetFocus();
    wheelRest_ += delta;
    for (; wheelRest_ >= WHEEL_DELTA; wheelRest_ -= WHEEL_DELTA)
        onScroll(bar, SB_LINERIGHT, 0);
    for (; wheelRest_ <= -WHEEL_DELTA; wheelRest_ += WHEEL_DELTA)
        onScroll(bar, SB_LINELEFT, 0);
}

bool AlarmFace::accessKey(char16_t letter) const {
    const Text small = lowered(TextView(&letter, 1));
    for (const AccessKey& key : kAccessKeys) {
        if (key.letter != small.front()) continue;
        SetFocus(item(key.id));
        const bool isButton = key.id == ID_CHKMUTE || key.id == ID_BTNOK || key.id == ID_BTNCANCEL;
        if (isButton) SendMessageW(item(key.id), BM_CLICK, 0, 0);
        return true;
    }
    return false;
}
