// What a screen reader hears of a window that is not one of Windows' own controls. Nothing is computed until
// somebody listens.
#pragma once

#include "support/WinText.h"

/// What kind of thing it is; the values are those of Windows.
enum class Role : unsigned char {
    Standard = 0,  ///< whatever Windows itself would say
    Grip = 0x04,
    Dialog = 0x12,
    Toolbar = 0x16,
    StaticText = 0x29,
    PushButton = 0x2B,
    SpinButton = 0x34,
};

/// What is said about a window, or about one element that is drawn in it.
struct Spoken {
    Text name;   ///< empty: the window's text, as Windows reads it
    Text value;  ///< what it holds, besides its name
    Role role = Role::Standard;
    unsigned press = 0;  ///< command posted to the form when it is pressed; 0: it cannot be
    RECT area{};         ///< of an element, in client pixels
};

/// How windows of one kind are described. `say` is called anew every time; the form may be gone by then.
struct Voice {
    int elements = 0;  ///< drawn in the window, numbered from 1; element 0 is the window itself
    Spoken (*say)(HWND window, int element) = nullptr;
};

/// The answer to WM_GETOBJECT; `voice` lives as long as the program.
LRESULT answerAccessible(HWND window, WPARAM wp, LPARAM lp, const Voice& voice);

/// Gives one of Windows' own controls a name for screen readers and leaves everything else about it to
/// Windows. Call it on WM_GETOBJECT, before the control answers; further calls do nothing.
void nameControl(HWND control, const Text& name);
/// Call it on WM_DESTROY: the name goes with the control.
void forgetName(HWND control);

/// Tells listeners that a window's name or value has changed, or that it needs the user's attention.
void tellNameChanged(HWND window);
void tellValueChanged(HWND window);
void tellAlert(HWND window);
