#include "tests/bench/bare.h"

#include "support/Handles.h"
#include "support/Window.h"

namespace {

constexpr const char16_t* kNoteClass = u"BareNote";
constexpr const char16_t* kLabelClass = u"BareLabel";

LRESULT CALLBACK noteProc(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    return DefWindowProcW(window, message, wp, lp);
}

LRESULT CALLBACK labelProc(HWND label, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_SETTEXT: {
            const LRESULT result = DefWindowProcW(label, message, wp, lp);
            InvalidateRect(label, nullptr, FALSE);
            return result;
        }
        case WM_PAINT: {
            PAINTSTRUCT paint{};
            const HDC dc = BeginPaint(label, &paint);
            RECT area{};
            GetClientRect(label, &area);
            FillRect(dc, &area, GetSysColorBrush(COLOR_WINDOW));
            const Text text = windowText(label);
            DrawTextW(dc, wideData(text), static_cast<int>(text.size()), &area, DT_NOPREFIX);
            EndPaint(label, &paint);
            return 0;
        }
        default:
            return DefWindowProcW(label, message, wp, lp);
    }
}

}  // namespace

BareNote::BareNote(const RECT& at) {
    registerClass(kNoteClass, noteProc, 0);
    registerClass(kLabelClass, labelProc, 0);
    const LONG width = at.right - at.left;
    const LONG height = at.bottom - at.top;
    hwnd = CreateWindowExW(WS_EX_TOOLWINDOW, wide(kNoteClass), L"", WS_POPUP | WS_CLIPCHILDREN, at.left,
                           at.top, width, height, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    const auto child = [&](const wchar_t* kind, DWORD style, LONG top) {
        return CreateWindowExW(0, kind, L"", WS_CHILD | WS_CLIPSIBLINGS | style, 0, top, width, height - top,
                               hwnd, nullptr, GetModuleHandleW(nullptr), nullptr);
    };
    editor = child(L"EDIT", ES_MULTILINE | ES_AUTOVSCROLL, 20);
    label = child(wide(kLabelClass), WS_VISIBLE, 20);
    ShowWindow(hwnd, SW_SHOWNOACTIVATE);
}

BareNote::~BareNote() {
    DestroyWindow(hwnd);
}

void BareNote::edit(const Text& text) const {
    SetWindowTextW(editor, wide(text));
    ShowWindow(editor, SW_SHOW);
    SetForegroundWindow(hwnd);
    SetFocus(editor);
}

Text BareNote::take() const {
    Text text = windowText(editor);
    ShowWindow(editor, SW_HIDE);
    SetFocus(hwnd);
    SetWindowTextW(label, wide(text));
    return text;
}

bool writeBareValue(const Text& path, const Text& name, const Text& text) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, wide(path), 0, KEY_SET_VALUE, &opened) != ERROR_SUCCESS)
        return false;
    const UniqueKey key(opened);
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(char16_t));
    return RegSetValueExW(key.get(), wide(name), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                          bytes) == ERROR_SUCCESS;
}

bool writeBareBytes(const Text& path, long long offset, const std::string& bytes) {
    const HANDLE file = CreateFileW(wide(path), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const UniqueHandle owner(file);
    LARGE_INTEGER at{};
    at.QuadPart = offset;
    DWORD written = 0;
    return SetFilePointerEx(file, at, nullptr, FILE_BEGIN) != FALSE &&
           WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
           written == bytes.size();
}
