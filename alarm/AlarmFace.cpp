#include "alarm/AlarmFace.h"

#include <algorithm>

#include "alarm/AlarmText.h"
#include "resources/resource.h"
#include "support/Number.h"
#include "support/Window.h"

namespace {

// Dialog units.
constexpr int kMargin = 7;
constexpr int kGap = 4;
constexpr int kRow = 14;  ///< height of fields and buttons
constexpr int kButtonWidth = 50;
constexpr int kBarWidth = 36;
constexpr int kRepeatWidth = 32;
constexpr int kDayWidth = 68;
constexpr int kFrameInset = 5;

constexpr int kListRows = 12;  // shown by an open list
constexpr int kMarkId = -1;    // mark and hint are nobody's to address
constexpr TextView kHint = u" Clic over any portion of date to set a repeatable date ";

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

void registerAlarmClasses() {
    registerDateLabel();
}

AlarmFace::~AlarmFace() {
    for (const HWND control : controls_) {
        if (alive()) DestroyWindow(control);
    }
}

// --- Controls ---------------------------------------------------------------------------------------------

HWND AlarmFace::add(const DialogGrid& grid, const wchar_t* name, const Text& text, DWORD style, int id) {
    const HWND control = grid.add(form_, name, text, style, id);
    if (control != nullptr) controls_.push_back(control);
    return control;
}

// A bar has nothing to read on it: its name is for screen readers.
void AlarmFace::addBar(const DialogGrid& grid, int id, BarRange range, const Text& name) {
    const HWND bar = add(grid, L"SCROLLBAR", name, WS_TABSTOP | SBS_HORZ, id);
    // A page of 1: with a longer one the bar could not reach its last position.
    SCROLLINFO info{sizeof(info), SIF_RANGE | SIF_PAGE | SIF_POS, range.low, range.high, 1, 0, 0};
    SendMessageW(bar, SBM_SETSCROLLINFO, FALSE, reinterpret_cast<LPARAM>(&info));
    makeSpokenBar(bar);
}

void AlarmFace::addList(const DialogGrid& grid, int id, CueList& cue) {
    const HWND list =
        add(grid, L"COMBOBOX", {},
            WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_OWNERDRAWFIXED | CBS_HASSTRINGS, id);
    if (list != nullptr) makeCueList(list, cue);
}

// Their order is the Tab order, and a screen reader takes the label before a field for the field's name. What
// may lie over others comes first, the frames last.
bool AlarmFace::create(HWND form, const DialogGrid& grid, const AlarmRule& rule, Now now) {
    form_ = form;
    ViewElapse = isAhead(rule, now);
    data.clicked = [this](DatePart part) { onDatePart(part); };
    data.hovered = [this](bool over) { showHint(over); };

    hint_ = add(grid, L"STATIC", Text(kHint), WS_BORDER | SS_CENTER | SS_NOPREFIX | SS_CENTERIMAGE, kMarkId);
    mark_ = add(grid, L"STATIC", u"*", SS_CENTER | SS_CENTERIMAGE, kMarkId);
    add(grid, L"STATIC", u"Date", SS_OWNERDRAW, ID_LBLDATE);
    if (createDateLabel(data, form, ID_DATA, grid.font.get()) == nullptr) return false;
    controls_.push_back(data.hwnd);
    addBar(grid, ID_HDATE, kDateBar, u"Date");
    add(grid, L"STATIC", {}, SS_CENTERIMAGE | SS_NOPREFIX, ID_LBLTIME);
    add(grid, L"STATIC", u"Hours", SS_OWNERDRAW, ID_LBLHOURS);
    addBar(grid, ID_HORE, kHourBar, u"Hours");
    addBar(grid, ID_HMIN, kMinuteBar, u"Minutes");
    addBar(grid, ID_HSEC, kSecondBar, u"Seconds");
    add(grid, L"STATIC", u"Repeat every:", SS_OWNERDRAW, ID_LBLREPEAT);
    addList(grid, ID_CBOREPEAT, repeatCue_);
    dayName_ = add(grid, L"STATIC", {}, 0, kMarkId);
    addList(grid, ID_CBODAY, dayCue_);
    for (int day = 0; day < kWeekdays; ++day) {
        const auto name = Text(kWeekdayCaptions[static_cast<std::size_t>(day)]);
        add(grid, L"BUTTON", name, WS_TABSTOP | BS_AUTOCHECKBOX | (day == 0 ? WS_GROUP : 0),
            ID_CHKWEEK + day);
    }
    add(grid, L"BUTTON", u"&Mute", WS_TABSTOP | WS_GROUP | BS_AUTOCHECKBOX, ID_CHKMUTE);
    add(grid, L"STATIC", {}, SS_RIGHT | SS_CENTERIMAGE | SS_NOPREFIX, ID_LBLCOUNTDOWN);
    add(grid, L"BUTTON", ViewElapse ? u"Re&start" : u"&Start",
        WS_TABSTOP | WS_GROUP | BS_NOTIFY | BS_DEFPUSHBUTTON, ID_BTNOK);
    add(grid, L"BUTTON", u"S&top", WS_TABSTOP | BS_NOTIFY, ID_BTNCANCEL);
    for (const int button : {ID_CHKMUTE, ID_BTNOK, ID_BTNCANCEL})
        hideMark(item(button));
    add(grid, L"STATIC", u"Weekdays", SS_OWNERDRAW, ID_FRAWEEK);
    add(grid, L"STATIC", {}, 0, ID_FRAALARM);
    if (item(ID_FRAALARM) == nullptr || item(ID_CBODAY) == nullptr) return false;
    showRule(rule, now);
    return true;
}

void AlarmFace::showRule(const AlarmRule& rule, Now now) {
    SetWindowTextW(data.hwnd, wide(editorDate(rule, now)));
    showClock({datePart(editorDate(rule, now)), parseTime(editorTime(rule, now))});

    std::vector<Text> numbers;
    for (std::size_t i = 0; i < repeatEntries().size(); ++i)
        numbers.push_back(repeatEntryText(static_cast<int>(i)));
    const std::vector<TextView> entries(numbers.begin(), numbers.end());
    const bool repeats = rule.RepeatNumber >= 1 && unitIndex(rule.RepeatEvery) > 0;
    repeatKept_ = repeats ? rule.RepeatNumber : std::int16_t{0};
    lastRepeat_ = repeatIndex(repeatKept_);
    // A step that the list lacks stays as it is, and is seen, until the user chooses another one.
    repeatCue_.at = CB_ERR;
    repeatCue_.cue = lastRepeat_ == CB_ERR ? decimal(repeatKept_) : Text();
    fillList(item(ID_CBOREPEAT), entries, lastRepeat_);
    fillDays(repeats, repeats ? unitIndex(rule.RepeatEvery) : rule.AlarmWeekday);

    showWeek(!repeats && rule.AlarmWeekday == kSeveralWeekdays);
    for (int day = 0; day < kWeekdays; ++day) {
        const bool ticked = weekShown_ && rule.FlagWeekday[static_cast<std::size_t>(day)];
        SendMessageW(item(ID_CHKWEEK + day), BM_SETCHECK, ticked ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    SendMessageW(item(ID_CHKMUTE), BM_SETCHECK, rule.Mute ? BST_CHECKED : BST_UNCHECKED, 0);
    if (ViewElapse && rule.due) showCountdown(countdownText(*rule.due, now));
}

void AlarmFace::show(bool shown) const {
    for (const HWND control : controls_) {
        const int id = GetDlgCtrlID(control);
        const bool inWeek = (id >= ID_CHKWEEK && id <= ID_CHKWEEK_LAST) || id == ID_FRAWEEK;
        const bool onHover = control == hint_ || control == mark_;
        const bool wanted = shown && (!inWeek || weekShown_) && (!onHover || hovered_) &&
                            (id != ID_LBLCOUNTDOWN || ViewElapse) && control != dayName_;
        ShowWindow(control, wanted ? SW_SHOWNA : SW_HIDE);
    }
}

void AlarmFace::showCountdown(const Text& text) const {
    if (ViewElapse && alive()) setWindowText(item(ID_LBLCOUNTDOWN), text);
}

void AlarmFace::placeLists(const DialogGrid& grid, int left, int top) const {
    const int row = grid.y(kRow);
    const int entry = grid.baseY + 2;
    for (const int list : {ID_CBOREPEAT, ID_CBODAY}) {
        const int width = grid.x(list == ID_CBOREPEAT ? kRepeatWidth : kDayWidth);
        SendMessageW(item(list), CB_SETITEMHEIGHT, 0, entry);
        SendMessageW(item(list), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), row - 6);  // within its border
        placeControl(item(list), left, top, width, row + kListRows * entry);
        left += width + grid.x(kGap);
    }
}

void AlarmFace::placeWeek(const DialogGrid& grid, int left, int top, int width) const {
    const int row = grid.y(kRow);
    const int gap = grid.y(kGap);
    const int inset = grid.x(kFrameInset);
    const int dayWidth = (width - 2 * inset) / kWeekdays;
    placeControl(item(ID_FRAWEEK), left, top, width, row + gap);
    for (int day = 0; day < kWeekdays; ++day)
        placeControl(item(ID_CHKWEEK + day), left + inset + day * dayWidth, top + gap / 2, dayWidth, row);
}

PxSize AlarmFace::layout(const DialogGrid& grid) {
    const int marginX = grid.x(kMargin);
    const int gapX = grid.x(kGap);
    const int row = grid.y(kRow);
    const int step = row + grid.y(kGap);
    const int barHeight = GetSystemMetrics(SM_CYHSCROLL);
    const int barTop = (row - barHeight) / 2;

    const int labelWidth = grid.textSize(u"Repeat every:").width;
    const int fieldLeft = marginX + labelWidth + 2 * gapX;
    const int dataWidth = DateLabel::widthOf(grid.font.get());
    const int markWidth = grid.x(kMargin);
    const int barLeft = fieldLeft + dataWidth + markWidth;
    const int barWidth = grid.x(kBarWidth);
    const int right = barLeft + 3 * barWidth + 4 * gapX;
    const int digits = toPx(kDatePartAreas.front().left, screenDpi()).n;

    int top = grid.y(kMargin);
    placeControl(item(ID_LBLDATE), marginX, top, labelWidth, row);
    placeControl(data.hwnd, fieldLeft, top, dataWidth, row);
    placeControl(mark_, fieldLeft + dataWidth, top, markWidth, row);
    placeControl(item(ID_HDATE), barLeft, top + barTop, right - barLeft, barHeight);
    const PxSize hint = grid.textSize(kHint);
    placeControl(hint_, fieldLeft, top + row, hint.width + gapX, hint.height + grid.y(kGap));

    top += step;
    placeControl(item(ID_LBLHOURS), marginX, top, labelWidth, row);
    placeControl(item(ID_LBLTIME), fieldLeft + digits, top, dataWidth - digits, row);
    int left = barLeft;
    for (const int bar : {ID_HORE, ID_HMIN, ID_HSEC}) {
        placeControl(item(bar), left, top + barTop, barWidth, barHeight);
        left += barWidth + 2 * gapX;
    }

    top += step;
    placeControl(item(ID_LBLREPEAT), marginX, top, labelWidth, row);
    placeLists(grid, fieldLeft, top);

    if (weekShown_) {
        top += step;
        placeWeek(grid, marginX, top, right - marginX);
        top += grid.y(kGap);
    }

    top += step;
    placeControl(item(ID_CHKMUTE), fieldLeft, top, dataWidth, row);
    placeControl(item(ID_LBLCOUNTDOWN), barLeft, top, right - barLeft, row);

    contentHeight_ = top + row + grid.y(kMargin);
    const int width = right + marginX;
    placeControl(item(ID_FRAALARM), 0, 0, width, contentHeight_);
    const int button = grid.x(kButtonWidth);
    const int buttonTop = contentHeight_ + grid.y(kMargin);
    placeControl(item(ID_BTNOK), right - 2 * button - gapX, buttonTop, button, row);
    placeControl(item(ID_BTNCANCEL), right - button, buttonTop, button, row);
    return {width, buttonTop + row + grid.y(kMargin)};
}

// --- What the controls show ------------------------------------------------------------------------------

void AlarmFace::showClock(const EditorClock& clock) {
    setWindowText(item(ID_LBLTIME), timeText(clock.time));
    moveBar(ID_HORE, static_cast<int>(clock.time.hours));
    moveBar(ID_HMIN, static_cast<int>(clock.time.minutes));
    moveBar(ID_HSEC, static_cast<int>(clock.time.seconds));

    const Text label = windowText(data.hwnd);
    if (datePart(label) != clock.date) {
        showDate(clock.date);
    } else if (label.find(u':') != Text::npos) {
        showDate(dateAndTime(clock.date, clock.time));  // the time stands behind the date
    } else {
        showDate(label);
    }
}

void AlarmFace::showDate(const Text& date) {
    setWindowText(data.hwnd, date);
    const bool full = !holdsWildcards(date);
    if (full) moveBar(ID_HDATE, positionOfDate(datePart(date), host.now()));
    EnableWindow(item(ID_HDATE), full ? TRUE : FALSE);  // there is no next day of "every month"
}

void AlarmFace::moveBar(int id, int position) {
    SCROLLINFO info{sizeof(info), SIF_POS, 0, 0, 0, position, 0};
    SendMessageW(item(id), SBM_SETSCROLLINFO, TRUE, reinterpret_cast<LPARAM>(&info));
}

TimeOfDay AlarmFace::shownTime() const {
    const Text label = windowText(item(ID_LBLTIME));
    return label.empty() ? timeOf(host.now().at) : parseTime(label);
}

int AlarmFace::shownPosition(int id) const {
    switch (id) {
        case ID_HORE:
            return static_cast<int>(shownTime().hours);
        case ID_HMIN:
            return static_cast<int>(shownTime().minutes);
        case ID_HSEC:
            return static_cast<int>(shownTime().seconds);
        default:
            return positionOfDate(datePart(windowText(data.hwnd)), host.now());
    }
}

void AlarmFace::showHint(bool shown) {
    hovered_ = shown;
    for (const HWND control : {hint_, mark_})
        ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
}

void AlarmFace::fillDays(bool units, int chosen) {
    unitMode_ = units;
    lastDay_ = chosen;
    setWindowText(dayName_, units ? u"Unit" : u"Weekday");
    dayCue_.at = 0;
    dayCue_.cue = units ? Text() : Text(u"Weekday");
    if (units) {
        fillList(item(ID_CBODAY), kUnitEntries, chosen);
    } else {
        fillList(item(ID_CBODAY), kWeekdayEntries, chosen);
    }
}

/// True when that changed the layout.
bool AlarmFace::showWeek(bool shown) {
    if (shown == weekShown_) return false;
    weekShown_ = shown;
    return true;
}

// --- What the user does ----------------------------------------------------------------------------------

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

// The dialog shows the message in this editor's place and may be gone when that returns.
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

// What the keyboard passes in an open list is not chosen yet: it counts once the list is closed.
void AlarmFace::onList(int id, int code) {
    const HWND list = item(id);
    if (code == CBN_CLOSEUP) {
        // Windows may still be taking the choice or giving it up.
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
    // A thumb drawn to the end stays at the end: the clock turns over only by steps.
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

void AlarmFace::draw(const DRAWITEMSTRUCT& drawn) {
    if (drawn.CtlType == ODT_COMBOBOX) {
        drawEntry(drawn);
    } else if (drawn.CtlID == ID_FRAWEEK) {
        drawFrame(drawn);
    } else {
        drawLabel(drawn);
    }
}
