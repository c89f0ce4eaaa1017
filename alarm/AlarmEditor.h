// The alarm editor without its window: how it answers bars, wheel, lists, clicks and buttons, one event after
// another. What the choices mean is in AlarmEditorRules; AlarmFace has the controls.
#pragma once

#include <optional>

#include "alarm/AlarmEditorRules.h"

/// How the editor ended. Closed without Start or Stop, neither flag is set and nothing changes.
struct EditorResult {
    bool AlarmStart = false;
    bool AlarmStop = false;
    bool DateNotSet = false;  ///< the date recurs
    EditorRule alarm;         ///< with AlarmStart: for ruleFromEditor
};

enum class EditorBar : unsigned char { Date, Hours, Minutes, Seconds };
enum class EditorList : unsigned char { Repeat, Day };

/// What a scroll bar reports, in the terms of Windows' own codes.
enum class BarMove : unsigned char {
    LineLeft,
    LineRight,
    PageLeft,
    PageRight,
    Left,
    Right,
    ThumbTrack,
    ThumbPosition,
    EndScroll
};

/// The controls that the user works with.
class EditorFace {
public:
    virtual ~EditorFace() = default;
    virtual Now now() const = 0;
    /// What the controls show. A day list without a choice counts as its first entry; `repeatKept` is left
    /// alone.
    virtual EditorControls controls() const = 0;
    /// Chooses an entry of a list. This is not reported back as the user's choice.
    virtual void choose(EditorList list, int index) = 0;
    /// Shows date and time, and puts the bars where they belong.
    virtual void showClock(const EditorClock& clock) = 0;
    virtual void showTime(const Text& time) = 0;
    virtual void showDate(const Text& date) = 0;
    /// Offers the units of a repeat step, or the weekdays.
    virtual void offerDays(bool units, int chosen) = 0;
    /// Shows or hides the frame of the weekdays.
    virtual void showWeek(bool shown) = 0;
    /// Says that a full date is needed. The editor may be gone when it returns.
    virtual void needFullDate() = 0;
    /// Start or Stop was pressed.
    virtual void finish(const EditorResult& answer) = 0;
};

class AlarmEditor {
public:
    explicit AlarmEditor(EditorFace& face) : face_(face) {}

    /// The editor opens, and its controls show this of the note's rule.
    void begin(const EditorControls& shown);

    /// A bar was used, or an assistive tool has moved it. `trackPosition` matters for the two thumb
    /// moves only.
    void onScroll(EditorBar bar, BarMove move, int trackPosition);
    /// The wheel was turned by `delta`, 120 per notch, over a bar or elsewhere.
    void onWheel(std::optional<EditorBar> bar, int delta);
    /// Another entry of a closed list is chosen; what the keyboard passes in an open one does not count yet.
    void onRepeat();
    void onDay();
    /// A part of the date was chosen.
    void onDatePart(DatePart part);
    void onStart();
    void onStop();

private:
    EditorControls choice() const;
    /// Whether the day list offers the units of a repeat step rather than the weekdays.
    bool offersUnits() const { return lastRepeat_ != 0; }
    /// The time with which the bars begin: now, if none is shown.
    TimeOfDay shownTime(const EditorControls& shown) const;
    /// A bar's position according to the date or time shown; the bar itself may have been moved already.
    int shownPosition(EditorBar bar, const EditorControls& shown) const;

    EditorFace& face_;
    int lastRepeat_ = 0;  ///< list indexes to return to when a choice is refused
    int lastDay_ = 0;
    std::int16_t repeatKept_ = 0;  ///< a repeat number that the list may lack
    bool dragging_ = false;        ///< a bar's thumb is held
    int wheelRest_ = 0;            ///< of a notch
};
