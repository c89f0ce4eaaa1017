// From a window procedure to a method of a form.
#pragma once

#include "support/WinText.h"

/// Registers a window class of the program. One that is there already is left as it is.
void registerClass(const char16_t* name, WNDPROC procedure, UINT style);

/// Puts another window procedure in place of a window's own, which it answers: it gets what the new one
/// leaves. Null when Windows refuses.
WNDPROC replaceProcedure(HWND window, WNDPROC procedure);

/// The same for a control of Windows' own, which keeps the former procedure until it goes.
void extendControl(HWND control, WNDPROC procedure);

/// What an extended control did before, and still does with every message that is passed on.
LRESULT passToControl(HWND control, UINT message, WPARAM wp, LPARAM lp);

/// Window procedure of a form: `Form` has a member `hwnd`, a method `LRESULT onMessage(UINT, WPARAM, LPARAM)`
/// and a static method `void onEscaped(UINT) noexcept`, the last barrier: an exception must not travel
/// through Windows. The Form* is the last argument of CreateWindowExW; it stays attached until WM_NCDESTROY,
/// in which onMessage may free the form at its very end.
template <class Form>
LRESULT CALLBACK formProc(HWND hwnd, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (message == WM_NCCREATE) {
        auto* fresh = static_cast<Form*>(reinterpret_cast<const CREATESTRUCTW*>(lp)->lpCreateParams);
        fresh->hwnd = hwnd;
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(fresh));
    }
    auto* form = reinterpret_cast<Form*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (form == nullptr) return DefWindowProcW(hwnd, message, wp, lp);  // e.g. an early WM_GETMINMAXINFO
    if (message == WM_NCDESTROY) SetWindowLongPtrW(hwnd, GWLP_USERDATA, 0);
    try {
        return form->onMessage(message, wp, lp);
    } catch (...) {
        Form::onEscaped(message);
        return 0;
    }
}

/// The form behind a window, or null.
template <class Form>
Form* formOf(HWND hwnd) {
    return reinterpret_cast<Form*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
}

/// Dots per inch of the screen. The program is aware of the system's scaling, so one figure holds for every
/// rectangle that it sees.
int screenDpi();

/// Processes the messages that wait now. False when WM_QUIT was among them; it is posted again, so that the
/// outer loop sees it too.
bool pumpPending();

/// Ends the menu that is open in this thread. True when there was one: it goes as soon as the message at hand
/// has been handled, and before any that is posted now.
bool endOpenMenu();

/// Posts a message to a window in `ms` milliseconds, once, without one of the timers that windows have.
void postLater(HWND window, UINT message, WPARAM wp, DWORD ms);

/// Lets messages through until `ms` milliseconds have passed, to a millisecond. False on WM_QUIT.
bool pumpFor(DWORD ms);
