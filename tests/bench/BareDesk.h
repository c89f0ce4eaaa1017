// What the programs share that show the benchmark's desk with the least that it takes: the notes, their fonts
// and texts, and plain windows.
#pragma once

#include <windows.h>

struct Note {
    int x, y, width, height;  // pixels
    COLORREF color;
    const wchar_t* title;
    const wchar_t* body;
};

inline constexpr Note kNotes[] = {
#include "notes.inc"
};

inline constexpr int kFontHeight = -12;  // 9 points at 96 dots an inch
inline constexpr int kStrip = 18;        // pixels; height of the title strip
inline constexpr int kLead = 32;         // where the title begins

inline HFONT font(int weight) {
    return CreateFontW(kFontHeight, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Segoe UI");
}

inline void fill(HDC dc, const RECT& area, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(dc, &area, brush);
    DeleteObject(brush);
}

inline void text(HDC dc, HFONT font, const wchar_t* words, RECT area, UINT format) {
    const HGDIOBJ before = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, words, -1, &area, format | DT_NOPREFIX);
    SelectObject(dc, before);
}

inline void registerClass(const wchar_t* name, WNDPROC procedure) {
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof(kind);
    kind.lpfnWndProc = procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.lpszClassName = name;
    RegisterClassExW(&kind);
}

/// Attaches its note to a window that is being created.
inline const Note& attachNote(HWND window, LPARAM creation) {
    const auto* note =
        static_cast<const Note*>(reinterpret_cast<const CREATESTRUCTW*>(creation)->lpCreateParams);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(note));
    return *note;
}

/// The note that a window was made from.
inline const Note& noteOf(HWND window) {
    return *reinterpret_cast<const Note*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

/// Handles messages until the program has to end.
inline void runMessages() {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}
