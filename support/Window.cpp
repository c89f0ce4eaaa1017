#include "support/Window.h"

#include <cstdint>
#include <memory>

#include "support/Handles.h"
#include "support/Units.h"

namespace {

// Versions before Windows 10 do not know this kind of timer and refuse to make one.
constexpr DWORD kHighResolution = 0x00000002;
constexpr std::int64_t kUsPerMs = 1000;
constexpr std::int64_t kTimerUnitsPerUs = 10;
constexpr std::int64_t kCoarseWaitUs = 20000;  // a wait with a time limit is late by less than this

class Stopwatch {
public:
    Stopwatch() {
        QueryPerformanceFrequency(&perSecond_);
        QueryPerformanceCounter(&start_);
    }
    std::int64_t microseconds() const {
        LARGE_INTEGER now{};
        QueryPerformanceCounter(&now);
        return (now.QuadPart - start_.QuadPart) * 1000 * kUsPerMs / perSecond_.QuadPart;
    }

private:
    LARGE_INTEGER perSecond_{};
    LARGE_INTEGER start_{};
};

struct Posting {
    HWND window;
    UINT message;
    WPARAM wp;
    DWORD ms;
};

DWORD WINAPI postWhenDue(void* given) noexcept {
    const std::unique_ptr<Posting> posting(static_cast<Posting*>(given));
    Sleep(posting->ms);
    PostMessageW(posting->window, posting->message, posting->wp, 0);
    return 0;
}

}  // namespace

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

bool isTopmost(HWND window) {
    return (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
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

void postLater(HWND window, UINT message, WPARAM wp, DWORD ms) {
    auto posting = std::make_unique<Posting>(Posting{window, message, wp, ms});
    if (QueueUserWorkItem(postWhenDue, posting.get(), WT_EXECUTELONGFUNCTION) != FALSE) {
        static_cast<void>(posting.release());
    } else {
        PostMessageW(window, message, wp, 0);  // too soon is better than never
    }
}

bool pumpFor(DWORD ms) {
    // The tick count moves in steps of up to 16 ms, and so do waits with a time limit.
    const Stopwatch watch;
    const UniqueHandle timer(CreateWaitableTimerExW(nullptr, nullptr, kHighResolution, TIMER_ALL_ACCESS));
    for (;;) {
        if (!pumpPending()) return false;
        const std::int64_t left = std::int64_t{ms} * kUsPerMs - watch.microseconds();
        if (left <= 0) return true;
        LARGE_INTEGER due{};
        due.QuadPart = -left * kTimerUnitsPerUs;
        HANDLE alarm = timer.get();
        if (alarm != nullptr && SetWaitableTimer(alarm, &due, 0, nullptr, nullptr, FALSE) != FALSE) {
            MsgWaitForMultipleObjects(1, &alarm, FALSE, INFINITE, QS_ALLINPUT);
        } else if (left > kCoarseWaitUs) {
            const auto wait = static_cast<DWORD>((left - kCoarseWaitUs) / kUsPerMs);
            MsgWaitForMultipleObjects(0, nullptr, FALSE, wait, QS_ALLINPUT);
        } else {
            SwitchToThread();
        }
    }
}
