// Windows, their parts and messages, and processes.
#include <windows.h>

#include <tlhelp32.h>  // needs windows.h before it

#include "Commands.h"

namespace {

constexpr UINT kTextWait = 2000;  // ms; a program that hangs must not hang the probe

HWND handle(const Words& words, std::size_t index) {
    auto* hwnd = reinterpret_cast<HWND>(static_cast<INT_PTR>(number(words, index)));
    if (!IsWindow(hwnd)) throw Failure{L"no such window: " + word(words, index)};
    return hwnd;
}

std::int64_t id(HWND hwnd) {
    return reinterpret_cast<INT_PTR>(hwnd);
}

std::wstring className(HWND hwnd) {
    wchar_t name[257];
    return {name, static_cast<std::size_t>(GetClassNameW(hwnd, name, 257))};
}

// GetWindowText would answer with a cached title for another process's window; the message gives the live
// text.
std::wstring textOf(HWND hwnd) {
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(hwnd, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, kTextWait, &length) == 0)
        return {};
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    if (SendMessageTimeoutW(hwnd, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                            SMTO_ABORTIFHUNG, kTextWait, &copied) == 0) {
        return {};
    }
    text.resize(copied < text.size() ? copied : length);
    return text;
}

void add(Json& out, const RECT& rect) {
    out.beginArray().number(rect.left).number(rect.top).number(rect.right - rect.left);
    out.number(rect.bottom - rect.top).endArray();
}

void addRect(Json& out, const char* name, const RECT& rect) {
    add(out.key(name), rect);
}

BOOL CALLBACK addMonitor(HMONITOR, HDC, RECT* rect, LPARAM out) {
    add(*reinterpret_cast<Json*>(out), *rect);
    return TRUE;
}

void add(Json& out, HWND hwnd) {
    RECT rect{};
    RECT client{};
    GetWindowRect(hwnd, &rect);
    GetClientRect(hwnd, &client);
    MapWindowPoints(hwnd, nullptr, reinterpret_cast<POINT*>(&client), 2);
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(hwnd, &process);
    const LONG_PTR exStyle = GetWindowLongPtrW(hwnd, GWL_EXSTYLE);
    out.beginObject().field("hwnd", id(hwnd)).field("class", className(hwnd)).field("text", textOf(hwnd));
    addRect(out, "rect", rect);
    addRect(out, "client", client);
    out.flag("visible", IsWindowVisible(hwnd) != FALSE)
        .flag("enabled", IsWindowEnabled(hwnd) != FALSE)
        .flag("minimised", IsIconic(hwnd) != FALSE)
        .flag("topmost", (exStyle & WS_EX_TOPMOST) != 0)
        .field("style",
               static_cast<std::int64_t>(static_cast<std::uint32_t>(GetWindowLongPtrW(hwnd, GWL_STYLE))))
        .field("exstyle", static_cast<std::int64_t>(static_cast<std::uint32_t>(exStyle)))
        .field("id", GetDlgCtrlID(hwnd))
        .field("owner", id(GetWindow(hwnd, GW_OWNER)))
        .field("parent", id(GetAncestor(hwnd, GA_PARENT)))
        .field("root", id(GetAncestor(hwnd, GA_ROOT)))
        .field("process", process)
        .field("thread", thread)
        // Wine records at every top-level window which window of the X server shows it.
        .field("x11", id(static_cast<HWND>(GetPropW(GetAncestor(hwnd, GA_ROOT), L"__wine_x11_whole_window"))))
        .endObject();
}

BOOL CALLBACK collect(HWND hwnd, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(hwnd);
    return TRUE;
}

}  // namespace

void listWindows(const Words& words, Json& out) {
    std::vector<HWND> found;
    EnumWindows(collect, reinterpret_cast<LPARAM>(&found));
    const std::wstring wanted = words.empty() ? std::wstring() : words[0];
    const std::int64_t wantedProcess = words.size() > 1 ? number(words, 1) : 0;
    out.beginArray();
    for (HWND hwnd : found) {
        DWORD process = 0;
        GetWindowThreadProcessId(hwnd, &process);
        if ((wanted.empty() || className(hwnd) == wanted) &&
            (wantedProcess == 0 || process == wantedProcess)) {
            add(out, hwnd);
        }
    }
    out.endArray();
}

void listChildren(const Words& words, Json& out) {
    std::vector<HWND> found;
    EnumChildWindows(handle(words, 0), collect, reinterpret_cast<LPARAM>(&found));
    out.beginArray();
    for (HWND hwnd : found)
        add(out, hwnd);
    out.endArray();
}

void describeWindow(const Words& words, Json& out) {
    auto* hwnd = reinterpret_cast<HWND>(static_cast<INT_PTR>(number(words, 0)));
    if (IsWindow(hwnd))
        add(out, hwnd);
    else
        out.null();
}

void readText(const Words& words, Json& out) {
    out.text(textOf(handle(words, 0)));
}

void writeText(const Words& words, Json& out) {
    DWORD_PTR result = 0;
    const LRESULT sent =
        SendMessageTimeoutW(handle(words, 0), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(word(words, 1).c_str()),
                            SMTO_ABORTIFHUNG, kTextWait, &result);
    out.truth(sent != 0 && result != 0);
}

void postTo(const Words& words, Json& out) {
    const BOOL posted =
        PostMessageW(handle(words, 0), static_cast<UINT>(number(words, 1)),
                     static_cast<WPARAM>(number(words, 2)), static_cast<LPARAM>(number(words, 3)));
    out.truth(posted != FALSE);
}

void sendTo(const Words& words, Json& out) {
    DWORD_PTR result = 0;
    const LRESULT sent = SendMessageTimeoutW(
        handle(words, 0), static_cast<UINT>(number(words, 1)), static_cast<WPARAM>(number(words, 2)),
        static_cast<LPARAM>(number(words, 3)), SMTO_NORMAL, static_cast<UINT>(number(words, 4)), &result);
    out.beginObject()
        .flag("answered", sent != 0)
        .field("result", static_cast<std::int64_t>(result))
        .endObject();
}

void broadcast(const Words& words, Json& out) {
    const UINT message = RegisterWindowMessageW(word(words, 0).c_str());
    out.truth(SendNotifyMessageW(HWND_BROADCAST, message, 0, 0) != FALSE);
}

void bringForward(const Words& words, Json& out) {
    HWND hwnd = handle(words, 0);
    const BOOL done = SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    out.truth(done != FALSE);
}

void describeFocus(const Words&, Json& out) {
    HWND front = GetForegroundWindow();
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    const DWORD thread = front != nullptr ? GetWindowThreadProcessId(front, nullptr) : 0;
    if (thread != 0) GetGUIThreadInfo(thread, &info);
    out.beginObject().field("foreground", id(front)).field("active", id(info.hwndActive));
    out.field("focus", id(info.hwndFocus)).field("capture", id(info.hwndCapture));
    out.flag("menu", (info.flags & GUI_INMENUMODE) != 0)
        .flag("moving", (info.flags & GUI_INMOVESIZE) != 0)
        .endObject();
}

void describeScreen(const Words&, Json& out) {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    out.beginObject();
    addRect(out, "workarea", work);
    out.field("width", GetSystemMetrics(SM_CXSCREEN)).field("height", GetSystemMetrics(SM_CYSCREEN));
    out.key("monitors").beginArray();
    EnumDisplayMonitors(nullptr, nullptr, addMonitor, reinterpret_cast<LPARAM>(&out));
    out.endArray();
    out.field("dpi", dpi).field("acp", GetACP()).endObject();
}

void listProcesses(const Words& words, Json& out) {
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) throw Failure{L"no list of processes"};
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    out.beginArray();
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        if (lstrcmpiW(entry.szExeFile, word(words, 0).c_str()) == 0) out.number(entry.th32ProcessID);
    }
    out.endArray();
    CloseHandle(snapshot);
}

void processLives(const Words& words, Json& out) {
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(number(words, 0)));
    const bool lives = process != nullptr && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    if (process != nullptr) CloseHandle(process);
    out.truth(lives);
}

void killProcess(const Words& words, Json& out) {
    HANDLE process =
        OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, static_cast<DWORD>(number(words, 0)));
    bool gone = process == nullptr;
    if (process != nullptr) {
        TerminateProcess(process, 1);
        gone = WaitForSingleObject(process, 5000) == WAIT_OBJECT_0;
        CloseHandle(process);
    }
    out.truth(gone);
}

void cursorAt(const Words&, Json& out) {
    POINT point{};
    GetCursorPos(&point);
    out.beginArray().number(point.x).number(point.y).endArray();
}
