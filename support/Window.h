// Window classes and procedures, from a message to a method of a form, and the message loops.
#pragma once

#include "support/WinText.h"

/// Registers a window class of the program. One that is there already is left as it is.
void registerClass(const char16_t* name, WNDPROC procedure, UINT style);

/// Replaces a window's procedure and returns the old one; the new one forwards what it does not handle. Null
/// when Windows refuses.
WNDPROC replaceProcedure(HWND window, WNDPROC procedure);

/// The same for one of Windows' own controls, which itself remembers the old procedure as long as it lives.
void extendControl(HWND control, WNDPROC procedure);

/// Forwards a message to the procedure that an extended control had before.
LRESULT passToControl(HWND control, UINT message, WPARAM wp, LPARAM lp);

/// Window procedure of a form: `Form` has a member `hwnd`, a method `LRESULT onMessage(UINT, WPARAM, LPARAM)`
/// and a static method `void onEscaped(UINT) noexcept` for exceptions, which must not travel through Windows.
/// The Form* is the last argument of CreateWindowExW; it stays attached until WM_NCDESTROY, at whose very end
/// onMessage may free the form.
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

/// Whether a window is above all that are not always on top.
bool isTopmost(HWND window);

/// Dots per inch of the screen. The program is aware of the system's scaling, so one figure holds for every
/// rectangle that it sees.
int screenDpi();

/// Processes the messages that are waiting. False when WM_QUIT was among them; it is posted again, so that
/// the outer loop sees it too.
bool pumpPending();

/// Closes the menu that is open in this thread. True when there was one: it goes once the current message has
/// been handled, and before any message posted from now on.
bool endOpenMenu();

/// Posts a message to a window once, `ms` milliseconds from now, without using one of Windows' timers.
void postLater(HWND window, UINT message, WPARAM wp, DWORD ms);

/// Processes messages until `ms` milliseconds have passed, accurate to a millisecond. False on WM_QUIT.
bool pumpFor(DWORD ms);
