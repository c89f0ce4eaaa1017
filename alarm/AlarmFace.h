// The alarm editor: the controls that it puts on the program's dialog, and what they show. AlarmFaceInput
// tells AlarmEditor what the user does with them.
#pragma once

#include <functional>

#include "alarm/AlarmControls.h"
#include "alarm/AlarmFaceInput.h"
#include "alarm/DateLabel.h"
#include "support/DialogGrid.h"

struct AlarmFace final : private EditorFace {
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
    ~AlarmFace() override;
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

    bool isHint(HWND control) const { return control != nullptr && control == hint_; }
    /// Draws the labels, the frame of the weekdays and the entries of the lists.
    static void draw(const DRAWITEMSTRUCT& drawn);

    DateLabel data;
    AlarmEditor editor{*this};
    AlarmFaceInput input{editor, form_};
    bool ViewElapse = false;  ///< the countdown is shown

private:
    Now now() const override { return host.now(); }
    EditorControls controls() const override;
    void choose(EditorList list, int index) override;
    void showClock(const EditorClock& clock) override;
    void showTime(const Text& time) override;
    void showDate(const Text& date) override;
    void offerDays(bool units, int chosen) override;
    void showWeek(bool shown) override;
    void needFullDate() override;
    void finish(const EditorResult& answer) override;

    HWND item(int id) const { return GetDlgItem(form_, id); }
    HWND add(const DialogGrid& grid, const wchar_t* name, const Text& text, DWORD style, int id);
    void addBar(const DialogGrid& grid, int id, BarRange range, const Text& name);
    void addList(const DialogGrid& grid, int id, CueList& cue);
    void placeLists(const DialogGrid& grid, int left, int top) const;
    void placeWeek(const DialogGrid& grid, int left, int top, int width) const;
    void showRule(const AlarmRule& rule, Now now);
    void showHint(bool shown);
    bool alive() const { return IsWindow(form_) != FALSE; }
    void moveBar(int id, int position);
    void tick(int box, bool ticked);

    HWND form_ = nullptr;
    HWND hint_ = nullptr;
    HWND mark_ = nullptr;
    HWND dayName_ = nullptr;  ///< never shown; gives the list after it its name for screen readers
    std::vector<HWND> controls_;
    CueList repeatCue_;
    CueList dayCue_;
    bool weekShown_ = false;
    bool hovered_ = false;
    int contentHeight_ = 0;
};

/// Registers the window classes of the editor's own controls.
void registerAlarmClasses();
