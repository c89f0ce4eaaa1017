// Passes the program's texts to the W functions of Windows and back; the only header that includes
// <windows.h>. The casts below are only used directly in a call.
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
/// For calls that take a length besides the pointer.
inline LPCWSTR wideData(TextView text) {
    return reinterpret_cast<LPCWSTR>(text.data());
}
inline LPWSTR wideBuffer(Text& text) {
    return reinterpret_cast<LPWSTR>(text.data());
}
inline TextView fromWide(LPCWSTR text) {
    return TextView(reinterpret_cast<const char16_t*>(text));
}

/// The whole text of a window or control.
Text windowText(HWND window);

/// Sets the text unless it is the same already, which avoids a needless repaint and change event.
void setWindowText(HWND window, const Text& text);

/// The system's ANSI code page. Text is encoded without best-fit guesses, so that a letter that cannot be
/// kept is noticed. On a system set to UTF-8, bytes that are not UTF-8 are read in the locale's older code
/// page.
CodePage systemCodePage();

/// The abbreviated name of a weekday in the user's locale; 0 is Monday, 6 Sunday.
Text weekdayName(int mondayFirstIndex);

/// Full path of the running program's file, however long. Empty when Windows cannot say.
Text programPath();
