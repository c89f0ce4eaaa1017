// The least that shows the benchmark's desk at all: the same 50 borderless windows without any children, each
// painted in one go with its title and its body. There is no store, tray icon or command.
#include <windows.h>

#include <algorithm>
#include <iterator>

namespace {

struct Note {
    int x, y, width, height;  // pixels
    COLORREF color;
    const wchar_t* title;
    const wchar_t* body;
};

constexpr Note kNotes[] = {
#include "notes.inc"
};

constexpr int kFontHeight = -12;  // 9 points at 96 dots an inch
constexpr int kStrip = 18;        // pixels; height of the title strip
constexpr int kLead = 32;         // where the title begins
constexpr int kMargin = 4;

HFONT bodyFont;
HFONT titleFont;

void text(HDC dc, HFONT font, const wchar_t* words, RECT area, UINT format) {
    const HGDIOBJ before = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, words, -1, &area, format | DT_NOPREFIX);
    SelectObject(dc, before);
}

void paint(HWND window, const Note& note) {
    PAINTSTRUCT area{};
    const HDC dc = BeginPaint(window, &area);
    RECT client{};
    GetClientRect(window, &client);
    const HBRUSH brush = CreateSolidBrush(note.color);
    FillRect(dc, &client, brush);
    DeleteObject(brush);
    text(dc, titleFont, note.title, {kLead, 0, client.right, kStrip}, DT_SINGLELINE | DT_END_ELLIPSIS);
    text(dc, bodyFont, note.body,
         {kMargin, kStrip + kMargin, client.right - kMargin, client.bottom - kMargin},
         DT_WORDBREAK | DT_EDITCONTROL);
    EndPaint(window, &area);
}

LRESULT CALLBACK noteProc(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_CREATE: {
            const auto* const made = reinterpret_cast<const CREATESTRUCTW*>(lp);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made->lpCreateParams));
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paint(window, *reinterpret_cast<const Note*>(GetWindowLongPtrW(window, GWLP_USERDATA)));
            return 0;
        default:
            return DefWindowProcW(window, message, wp, lp);
    }
}

HFONT font(int weight) {
    return CreateFontW(kFontHeight, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Segoe UI");
}

}  // namespace

int WINAPI WinMain(HINSTANCE program, HINSTANCE, LPSTR, int) {
    bodyFont = font(FW_NORMAL);
    titleFont = font(FW_BOLD);
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof(kind);
    kind.lpfnWndProc = noteProc;
    kind.hInstance = program;
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.lpszClassName = L"BareNote";
    RegisterClassExW(&kind);
    for (const Note& note : kNotes) {
        const HWND window =
            CreateWindowExW(WS_EX_TOOLWINDOW, L"BareNote", note.title, WS_POPUP, note.x, note.y, note.width,
                            note.height, nullptr, nullptr, program, const_cast<Note*>(&note));
        if (window == nullptr) return 1;
        ShowWindow(window, SW_SHOWNOACTIVATE);
    }
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}
