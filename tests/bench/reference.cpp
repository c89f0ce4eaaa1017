// The least that any program must do to show the benchmark's desk: the same 50 windows as Kardel's, each with
// eight children of the same kinds (six of its own class, two edit controls), created where they belong,
// shown and painted straight away. No store, no tray icon, no settings, nothing answered.
#include <windows.h>

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
constexpr int kTitle = 101;
constexpr int kBody = 104;

HFONT bodyFont;
HFONT titleFont;

/// The note that a note window was made from, attached at its creation.
const Note& noteOf(HWND window) {
    return *reinterpret_cast<const Note*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

void fill(HDC dc, const RECT& area, COLORREF color) {
    const HBRUSH brush = CreateSolidBrush(color);
    FillRect(dc, &area, brush);
    DeleteObject(brush);
}

void text(HDC dc, HFONT font, const wchar_t* words, RECT area, UINT format) {
    const HGDIOBJ before = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, words, -1, &area, format | DT_NOPREFIX);
    SelectObject(dc, before);
}

void paintPart(HWND part) {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(part, &paint);
    const Note& note = noteOf(GetParent(part));
    RECT area{};
    GetClientRect(part, &area);
    fill(dc, area, note.color);
    const int id = GetDlgCtrlID(part);
    if (id == kTitle) {
        area.left += kLead;
        text(dc, titleFont, note.title, area, DT_SINGLELINE | DT_END_ELLIPSIS);
    } else if (id == kBody) {
        text(dc, bodyFont, note.body, area, DT_WORDBREAK | DT_EDITCONTROL);
    } else {
        InflateRect(&area, -4, -4);
        FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
    }
    EndPaint(part, &paint);
}

void paintNote(HWND window) {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(window, &paint);
    RECT area{};
    GetClientRect(window, &area);
    fill(dc, area, noteOf(window).color);
    FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
    EndPaint(window, &paint);
}

/// The eight children, in the z order of Kardel's and, like there, three of them hidden.
void createParts(HWND window, const Note& note) {
    const auto child = [&](const wchar_t* kind, DWORD style, int id, const wchar_t* words, RECT at) {
        return CreateWindowExW(0, kind, words, WS_CHILD | WS_CLIPSIBLINGS | style, at.left, at.top,
                               at.right - at.left, at.bottom - at.top, window,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr),
                               nullptr);
    };
    const LONG right = note.width - 1;
    const LONG bottom = note.height - 1;
    const RECT body{5, 22, right - 4, bottom - 4};
    child(L"ReferencePart", WS_VISIBLE, 102, L"Iconize, close", {1, 1, 32, kStrip + 1});
    child(L"ReferencePart", WS_VISIBLE, 103, L"Delete", {right - 18, 1, right, kStrip + 1});
    child(L"ReferencePart", WS_VISIBLE, 107, L"Resize", {right - 18, bottom - 17, right, bottom});
    const HWND title = child(L"EDIT", ES_AUTOHSCROLL, 106, L"", {kLead, 3, right - 20, kStrip});
    SendMessageW(title, WM_SETFONT, reinterpret_cast<WPARAM>(titleFont), FALSE);
    child(L"ReferencePart", WS_VISIBLE, kTitle, note.title, {1, 1, right, kStrip + 1});
    const HWND editor = child(L"EDIT", ES_MULTILINE | ES_AUTOVSCROLL, 105, L"", body);
    SendMessageW(editor, WM_SETFONT, reinterpret_cast<WPARAM>(bodyFont), FALSE);
    child(L"ReferencePart", 0, 108, L"", {1, bottom - 16, right - 18, bottom});
    child(L"ReferencePart", WS_VISIBLE, kBody, note.body, body);
}

LRESULT CALLBACK partProc(HWND part, UINT message, WPARAM wp, LPARAM lp) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(part, message, wp, lp);
    paintPart(part);
    return 0;
}

LRESULT CALLBACK noteProc(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_CREATE: {
            const auto* note =
                static_cast<const Note*>(reinterpret_cast<const CREATESTRUCTW*>(lp)->lpCreateParams);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(note));
            createParts(window, *note);
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paintNote(window);
            return 0;
        default:
            return DefWindowProcW(window, message, wp, lp);
    }
}

void registerClass(const wchar_t* name, WNDPROC procedure) {
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof(kind);
    kind.lpfnWndProc = procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.lpszClassName = name;
    RegisterClassExW(&kind);
}

HFONT font(int weight) {
    return CreateFontW(kFontHeight, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Segoe UI");
}

}  // namespace

int WINAPI WinMain(HINSTANCE program, HINSTANCE, LPSTR, int) {
    bodyFont = font(FW_NORMAL);
    titleFont = font(FW_BOLD);
    registerClass(L"ReferenceNote", noteProc);
    registerClass(L"ReferencePart", partProc);
    const HWND owner =
        CreateWindowExW(0, L"ReferencePart", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, program, nullptr);
    for (const Note& note : kNotes) {
        const HWND window = CreateWindowExW(WS_EX_TOOLWINDOW, L"ReferenceNote", note.title,
                                            WS_POPUP | WS_CLIPCHILDREN, note.x, note.y, note.width,
                                            note.height, owner, nullptr, program, const_cast<Note*>(&note));
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
