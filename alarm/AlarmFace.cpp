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
constexpr int kMarkId = -1;    // mark and hint need no id
constexpr TextView kHint = u" Clic over any portion of date to set a repeatable date ";

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

// A bar shows no text: its name is for screen readers.
void AlarmFace::addBar(const DialogGrid& grid, int id, BarRange range, const Text& name) {
    const HWND bar = add(grid, L"SCROLLBAR", name, WS_TABSTOP | SBS_HORZ, id);
    // A page of 1, because with a longer one the bar could not reach its last position.
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

// Their order is the Tab order, and a screen reader uses the label before a field as its name. What may cover
// other controls comes first, and the frames come last.
bool AlarmFace::create(HWND form, const DialogGrid& grid, const AlarmRule& rule, Now now) {
    form_ = form;
    ViewElapse = isAhead(rule, now);
    data.clicked = [this](DatePart part) { editor.onDatePart(part); };
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
    const EditorControls shown = controlsOf(rule, now);
    SetWindowTextW(data.hwnd, wide(shown.data));
    showClock({datePart(shown.data), parseTime(shown.time)});

    std::vector<Text> numbers;
    for (std::size_t i = 0; i < repeatEntries().size(); ++i)
        numbers.push_back(repeatEntryText(static_cast<int>(i)));
    const std::vector<TextView> entries(numbers.begin(), numbers.end());
    // A step that the list lacks is shown and kept until the user chooses another one.
    repeatCue_.at = CB_ERR;
    repeatCue_.cue = shown.cboRepeat == CB_ERR ? decimal(shown.repeatKept) : Text();
    fillList(item(ID_CBOREPEAT), entries, shown.cboRepeat);
    offerDays(inUnitMode(shown), shown.cboDay);
    editor.begin(shown);

    weekShown_ = !inUnitMode(shown) && shown.cboDay == kSeveralWeekdays;
    for (int day = 0; day < kWeekdays; ++day)
        tick(ID_CHKWEEK + day, shown.chkWeek[static_cast<std::size_t>(day)]);
    tick(ID_CHKMUTE, shown.chkMute);
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
    const int dataWidth = data.width(grid.font.get());
    const int markWidth = grid.x(kMargin);
    const int barLeft = fieldLeft + dataWidth + markWidth;
    const int barWidth = grid.x(kBarWidth);
    const int right = barLeft + 3 * barWidth + 4 * gapX;
    const int digits = data.digitsLeft();

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

EditorControls AlarmFace::controls() const {
    const auto selected = [this](int list) {
        return static_cast<int>(SendMessageW(item(list), CB_GETCURSEL, 0, 0));
    };
    const auto ticked = [this](int box) { return SendMessageW(item(box), BM_GETCHECK, 0, 0) == BST_CHECKED; };
    EditorControls now;
    now.data = windowText(data.hwnd);
    now.time = windowText(item(ID_LBLTIME));
    now.cboRepeat = selected(ID_CBOREPEAT);
    now.cboDay = std::max(0, selected(ID_CBODAY));
    for (int day = 0; day < kWeekdays; ++day)
        now.chkWeek[static_cast<std::size_t>(day)] = ticked(ID_CHKWEEK + day);
    now.chkMute = ticked(ID_CHKMUTE);
    return now;
}

void AlarmFace::choose(EditorList list, int index) {
    SendMessageW(item(list == EditorList::Repeat ? ID_CBOREPEAT : ID_CBODAY), CB_SETCURSEL,
                 static_cast<WPARAM>(index), 0);
}

void AlarmFace::showClock(const EditorClock& clock) {
    showTime(timeText(clock.time));
    moveBar(ID_HORE, static_cast<int>(clock.time.hours));
    moveBar(ID_HMIN, static_cast<int>(clock.time.minutes));
    moveBar(ID_HSEC, static_cast<int>(clock.time.seconds));

    const Text label = windowText(data.hwnd);
    if (datePart(label) != clock.date) {
        showDate(clock.date);
    } else if (label.find(u':') != Text::npos) {
        showDate(dateAndTime(clock.date, clock.time));  // the time follows the date
    } else {
        showDate(label);
    }
}

void AlarmFace::showTime(const Text& time) {
    setWindowText(item(ID_LBLTIME), time);
}

void AlarmFace::showDate(const Text& date) {
    setWindowText(data.hwnd, date);
    const bool full = !holdsWildcards(date);
    if (full) moveBar(ID_HDATE, positionOfDate(datePart(date), host.now()));
    EnableWindow(item(ID_HDATE), full ? TRUE : FALSE);  // "every month" has no next day
}

void AlarmFace::moveBar(int id, int position) {
    SCROLLINFO info{sizeof(info), SIF_POS, 0, 0, 0, position, 0};
    SendMessageW(item(id), SBM_SETSCROLLINFO, TRUE, reinterpret_cast<LPARAM>(&info));
}

void AlarmFace::tick(int box, bool ticked) {
    SendMessageW(item(box), BM_SETCHECK, ticked ? BST_CHECKED : BST_UNCHECKED, 0);
}

void AlarmFace::showHint(bool shown) {
    hovered_ = shown;
    for (const HWND control : {hint_, mark_})
        ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
}

void AlarmFace::offerDays(bool units, int chosen) {
    setWindowText(dayName_, units ? u"Unit" : u"Weekday");
    dayCue_.at = 0;
    dayCue_.cue = units ? Text() : Text(u"Weekday");
    if (units) {
        fillList(item(ID_CBODAY), kUnitEntries, chosen);
    } else {
        fillList(item(ID_CBODAY), kWeekdayEntries, chosen);
    }
}

void AlarmFace::showWeek(bool shown) {
    if (shown == weekShown_) return;
    weekShown_ = shown;
    show(true);
    host.resized();
}

void AlarmFace::needFullDate() {
    for (const int list : {ID_CBOREPEAT, ID_CBODAY})
        SendMessageW(item(list), CB_SHOWDROPDOWN, FALSE, 0);
    host.needFullDate();
}

void AlarmFace::finish(const EditorResult& answer) {
    result = answer;
    host.finished();
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
