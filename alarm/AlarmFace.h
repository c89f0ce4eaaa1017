// The alarm editor: the controls that it puts on the program's dialog, and what they do. AlarmEditorRules
// decides what they mean.
#pragma once

#include <array>
#include <functional>

#include "alarm/AlarmControls.h"
#include "alarm/AlarmEditorRules.h"
#include "alarm/DateLabel.h"
#include "support/DialogGrid.h"

/// How the editor ended. Closed without Start or Stop, neither flag is set and nothing changes.
struct EditorResult {
    bool AlarmStart = false;
    bool AlarmStop = false;
    bool DateNotSet = false;  ///< the date recurs
    EditorRule alarm;         ///< with AlarmStart: for ruleFromEditor
};

struct AlarmFace {
    /// What the editor needs from its dialog.
    struct Host {
        std::function<void()> needFullDate;  ///< shows the message; the dialog may be gone when it returns
        std::function<void()> finished;      ///< Start or Stop was pressed
        std::function<void()> resized;       ///< the layout changed while it was shown
        std::function<Now()> now;
    };
    Host host;
    EditorResult result;

    AlarmFace() = default;
    ~AlarmFace();
    AlarmFace(const AlarmFace&) = delete;
    AlarmFace& operator=(const AlarmFace&) = delete;

    /// Puts the controls on `form`, hidden and filled with the rule. False when Windows refuses.
    [[nodiscard]] bool create(HWND form, const DialogGrid& grid, const AlarmRule& rule, Now now);
    /// Shows or hides all controls; they keep their contents.
    void show(bool shown) const;
    /// Places the controls and returns the client size in pixels that they take.
    PxSize layout(const DialogGrid& grid);
    /// Height in pixels of the upper area, without the buttons at the foot.
    int contentHeight() const { return contentHeight_; }
    /// The control that has the keyboard at first.
    HWND firstControl() const { return data.hwnd; }
    /// Shows the note's countdown if the editor was opened on a running alarm.
    void showCountdown(const Text& text) const;

    void onCommand(int id, int code);
    void onScroll(HWND bar, int code, int trackPosition);
    /// `delta` is Windows' own, 120 per notch; `at` is the pointer's place on the screen.
    void onWheel(int delta, POINT at);
    /// Alt with a letter. True when it is one of the editor's.
    bool accessKey(char16_t letter) const;
    bool isHint(HWND control) const { return control != nullptr && control == hint_; }
    /// Draws the labels, the frame of the weekdays and the entries of the lists.
    static void draw(const DRAWITEMSTRUCT& drawn);

    DateLabel data;
    bool ViewElapse = false;  ///< the countdown is shown

private:
    HWND item(int id) const { return GetDlgItem(form_, id); }
    HWND add(const DialogGrid& grid, const wchar_t* name, const Text& text, DWORD style, int id);
    void addBar(const DialogGrid& grid, int id, BarRange range, const Text& name);
    void addList(const DialogGrid& grid, int id, CueList& cue);
    void placeLists(const DialogGrid& grid, int left, int top) const;
    void placeWeek(const DialogGrid& grid, int left, int top, int width) const;
    void showRule(const AlarmRule& rule, Now now);
    void showClock(const EditorClock& clock);
    void showDate(const Text& date);
    void showHint(bool shown);
    void fillDays(bool units, int chosen);
    bool showWeek(bool shown);
    int selected(int id) const;
    bool alive() const { return IsWindow(form_) != FALSE; }
    EditorControls choice() const;
    void refuse() const;
    void onList(int id, int code);
    void onRepeat();
    void onDay();
    void onDatePart(DatePart part);
    void onStart();
    void moveBar(int id, int position);
    /// The time with which the bars begin: now, if none is shown.
    TimeOfDay shownTime() const;
    /// A bar's position according to the date or time shown; the bar itself may have been moved already.
    int shownPosition(int id) const;

    HWND form_ = nullptr;
    HWND hint_ = nullptr;
    HWND mark_ = nullptr;
    HWND dayName_ = nullptr;  ///< never shown; gives the list after it its name for screen readers
    std::vector<HWND> controls_;
    CueList repeatCue_;
    CueList dayCue_;
    bool unitMode_ = false;  ///< cboDay holds the units of a repeat step rather than the weekdays
    bool weekShown_ = false;
    bool hovered_ = false;
    bool dragging_ = false;  ///< a bar's thumb is held
    int wheelRest_ = 0;      ///< of a notch
    int lastRepeat_ = 0;     ///< list indexes to return to when a choice is refused
    int lastDay_ = 0;
    std::int16_t repeatKept_ = 0;  ///< a repeat number that the list lacks
    int contentHeight_ = 0;
};

/// Registers the window classes of the editor's own controls.
void registerAlarmClasses();
