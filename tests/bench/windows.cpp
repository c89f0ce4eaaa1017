// The least that shows the benchmark's desk at all: the same 50 borderless windows without any children, each
// painted in one go with its title and its body. There is no store, tray icon or command.
#include "BareDesk.h"

namespace {

constexpr int kMargin = 4;

HFONT bodyFont;
HFONT titleFont;

void paint(HWND window, const Note& note) {
    PAINTSTRUCT area{};
    const HDC dc = BeginPaint(window, &area);
    RECT client{};
    GetClientRect(window, &client);
    fill(dc, client, note.color);
    text(dc, titleFont, note.title, {kLead, 0, client.right, kStrip}, DT_SINGLELINE | DT_END_ELLIPSIS);
    text(dc, bodyFont, note.body,
         {kMargin, kStrip + kMargin, client.right - kMargin, client.bottom - kMargin},
         DT_WORDBREAK | DT_EDITCONTROL);
    EndPaint(window, &area);
}

LRESULT CALLBACK noteProc(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_CREATE:
            attachNote(window, lp);
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paint(window, noteOf(window));
            return 0;
        default:
            return DefWindowProcW(window, message, wp, lp);
    }
}

}  // namespace

int WINAPI WinMain(HINSTANCE program, HINSTANCE, LPSTR, int) {
    bodyFont = font(FW_NORMAL);
    titleFont = font(FW_BOLD);
    registerClass(L"BareNote", noteProc);
    for (const Note& note : kNotes) {
        const HWND window =
            CreateWindowExW(WS_EX_TOOLWINDOW, L"BareNote", note.title, WS_POPUP, note.x, note.y, note.width,
                            note.height, nullptr, nullptr, program, const_cast<Note*>(&note));
        if (window == nullptr) return 1;
        ShowWindow(window, SW_SHOWNOACTIVATE);
    }
    runMessages();
    return 0;
}
