// The door between the program's texts and the W functions of Windows; the only header that includes
// <windows.h>. The casts below always go straight into a call.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include "support/Text.h"

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline LPCWSTR wide(const Text& text) {
    return reinterpret_cast<LPCWSTR>(text.c_str());
}
inline LPCWSTR wide(const char16_t* text) {
    return reinterpret_cast<LPCWSTR>(text);
}
/// For calls that take the length beside the pointer.
inline LPCWSTR wideData(TextView text) {
    return reinterpret_cast<LPCWSTR>(text.data());
}
inline LPWSTR wideBuffer(Text& text) {
    return reinterpret_cast<LPWSTR>(text.data());
}
inline TextView fromWide(LPCWSTR text) {
    return TextView(reinterpret_cast<const char16_t*>(text));
}

/// The text of a window or control, whole.
Text windowText(HWND window);

/// Sets the text unless it stands there already: no needless repaint, no needless change event.
void setWindowText(HWND window, const Text& text);

/// The system's ANSI code page. Text goes out without best-fit guesses, so that what cannot be kept is
/// noticed. On a system set to UTF-8, bytes that are no UTF-8 are read in the locale's older code page.
CodePage systemCodePage();

/// The abbreviated name of a weekday in the user's locale; 0 is Monday, 6 Sunday.
Text weekdayName(int mondayFirstIndex);

/// Full path of the running program's file, however long. Empty when Windows does not tell.
Text programPath();
