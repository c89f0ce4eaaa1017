#include "support/Window.h"

#include "support/Handles.h"
#include "support/Units.h"

void registerClass(const char16_t* name, WNDPROC procedure, UINT style) {
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof(kind);
    kind.style = style;
    kind.lpfnWndProc = procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    kind.lpszClassName = wide(name);
    RegisterClassExW(&kind);
}

WNDPROC replaceProcedure(HWND window, WNDPROC procedure) {
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

void extendControl(HWND control, WNDPROC procedure) {
    SetWindowLongPtrW(control, GWLP_USERDATA, GetWindowLongPtrW(control, GWLP_WNDPROC));
    replaceProcedure(control, procedure);
}

LRESULT passToControl(HWND control, UINT message, WPARAM wp, LPARAM lp) {
    const auto before = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(control, GWLP_USERDATA));
    return CallWindowProcW(before, control, message, wp, lp);
}

int screenDpi() {
    const WindowDc screen(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
}

bool pumpPending() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return true;
}

bool endOpenMenu() {
    GUITHREADINFO thread{};
    thread.cbSize = sizeof(thread);
    constexpr DWORD kMenuOpen = GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE;
    if (GetGUIThreadInfo(GetCurrentThreadId(), &thread) == FALSE) return false;
    if ((thread.flags & kMenuOpen) == 0) return false;
    EndMenu();
    return true;
}

bool pumpFor(DWORD ms) {
    const ULONGLONG end = GetTickCount64() + ms;
    for (;;) {
        if (!pumpPending()) return false;
        const ULONGLONG now = GetTickCount64();
        if (now >= end) return true;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(end - now), QS_ALLINPUT);
    }
}
