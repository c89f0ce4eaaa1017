// Translates what Windows reports of the alarm editor's controls into what AlarmEditor has to do.
#pragma once

#include <optional>

#include "alarm/AlarmEditor.h"
#include "support/WinText.h"

class AlarmFaceInput {
public:
    /// `form` is the dialog that will hold the controls.
    AlarmFaceInput(AlarmEditor& editor, const HWND& form) : editor_(editor), form_(form) {}

    void onCommand(int id, int code);
    void onScroll(HWND bar, int code, int trackPosition);
    /// `delta` is Windows' own, 120 per notch; `at` is the pointer's place on the screen.
    void onWheel(int delta, POINT at);
    /// Alt with a letter. True when it is one of the editor's.
    bool accessKey(char16_t letter) const;

private:
    HWND item(int id) const { return GetDlgItem(form_, id); }
    void onList(int id, int code);
    /// Which of the editor's bars a window is, if any.
    std::optional<EditorBar> barOf(HWND control) const;

    AlarmEditor& editor_;
    const HWND& form_;
};
