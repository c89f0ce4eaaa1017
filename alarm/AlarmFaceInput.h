// What the user does in the alarm editor: lists, bars, wheel, buttons and letters. What the choices mean is
// in AlarmEditorRules, and what the controls look like in AlarmFace.
#pragma once

#include "alarm/AlarmEditorRules.h"
#include "support/WinText.h"

/// How the editor ended. Closed without Start or Stop, neither flag is set and nothing changes.
struct EditorResult {
    bool AlarmStart = false;
    bool AlarmStop = false;
    bool DateNotSet = false;  ///< the date recurs
    EditorRule alarm;         ///< with AlarmStart: for ruleFromEditor
};

/// The editor whose controls the user works with.
class EditorFace {
public:
    virtual ~EditorFace() = default;
    virtual HWND item(int id) const = 0;
    virtual Now now() const = 0;
    /// Shows date and time, and puts the bars where they belong.
    virtual void showClock(const EditorClock& clock) = 0;
    virtual void showDate(const Text& date) = 0;
    /// Offers the units of a repeat step, or the weekdays.
    virtual void offerDays(bool units, int chosen) = 0;
    /// Shows or hides the frame of the weekdays.
    virtual void showWeek(bool shown) = 0;
    /// Says that a full date is needed. The editor may be gone when it returns.
    virtual void needFullDate() const = 0;
    /// Start or Stop was pressed.
    virtual void finish(const EditorResult& answer) = 0;
};

class AlarmFaceInput {
public:
    explicit AlarmFaceInput(EditorFace& face) : face_(face) {}

    /// Takes over what the lists show of a rule: a repeat number, or 0, and what is chosen of units or
    /// weekdays.
    void begin(std::int16_t repeatNumber, bool units, int day);

    void onCommand(int id, int code);
    void onScroll(HWND bar, int code, int trackPosition);
    /// `delta` is Windows' own, 120 per notch; `at` is the pointer's place on the screen.
    void onWheel(int delta, POINT at);
    /// Alt with a letter. True when it is one of the editor's.
    bool accessKey(char16_t letter) const;
    /// A part of the date was chosen.
    void onDatePart(DatePart part);

private:
    int selected(int id) const;
    EditorControls choice() const;
    void refuse() const;
    void onList(int id, int code);
    void onRepeat();
    void onDay();
    void onStart();
    /// Whether a window is one of the editor's bars.
    bool isBar(HWND control) const;
    /// The time with which the bars begin: now, if none is shown.
    TimeOfDay shownTime() const;
    /// A bar's position according to the date or time shown; the bar itself may have been moved already.
    int shownPosition(int id) const;

    EditorFace& face_;
    bool unitMode_ = false;  ///< cboDay holds the units of a repeat step rather than the weekdays
    int lastRepeat_ = 0;     ///< list indexes to return to when a choice is refused
    int lastDay_ = 0;
    std::int16_t repeatKept_ = 0;  ///< a repeat number that the list may lack
    bool dragging_ = false;        ///< a bar's thumb is held
    int wheelRest_ = 0;            ///< of a notch
};
