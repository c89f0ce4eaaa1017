// What a screen reader hears of a window that is no control of Windows' own: asked when somebody listens,
// never before.
#pragma once

#include "support/WinText.h"

/// What kind of thing it is: the figures are Windows' own.
enum class Role : unsigned char {
    Standard = 0,  ///< as Windows would say
    Grip = 0x04,
    Dialog = 0x12,
    Toolbar = 0x16,
    StaticText = 0x29,
    PushButton = 0x2B,
    SpinButton = 0x34,
};

/// What is said of a window, or of one element that is drawn in it.
struct Spoken {
    Text name;   ///< empty: the window's text, as Windows reads it
    Text value;  ///< what it holds beside its name
    Role role = Role::Standard;
    unsigned press = 0;  ///< the command that its press posts to the form; 0: it cannot be pressed
    RECT area{};         ///< of an element, in client pixels
};

/// How windows of one kind are spoken of. Asked anew every time; the form may be gone by then.
struct Voice {
    int elements = 0;  ///< drawn in the window, numbered from 1; element 0 is the window itself
    Spoken (*say)(HWND window, int element) = nullptr;
};

/// The answer to WM_GETOBJECT; `voice` lives as long as the program.
LRESULT answerAccessible(HWND window, WPARAM wp, LPARAM lp, const Voice& voice);

/// Gives one of Windows' own controls a name for screen readers, and leaves everything else that they know of
/// it to Windows. For its WM_GETOBJECT, ahead of the control's own answer: asked again, nothing is done.
void nameControl(HWND control, const Text& name);
/// For its WM_DESTROY: the name goes with the control.
void forgetName(HWND control);

/// Tells listeners that a window's name, or its value, is another now; or that it needs the user.
void tellNameChanged(HWND window);
void tellValueChanged(HWND window);
void tellAlert(HWND window);
