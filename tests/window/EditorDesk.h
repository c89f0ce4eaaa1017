// What the tests of the editor share: the editor, over a window that is not a note, and the clipboard.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "note/NoteEditor.h"
#include "note/NoteLook.h"
#include "support/Window.h"
#include "tests/support/TestCodePages.h"
#include "tests/window/TypedKeys.h"
// Needs windows.h before it.
#include <commctrl.h>

inline constexpr WPARAM kCtrlBackspace = 0x7F;

/// A note that accepts any text up to a number of bytes in a double-byte code page.
class FakeNote final : public NoteEditorHost {
public:
    bool fits(Edited, const Text& text) const override { return encodedLength(kanaPage(), text) <= bytes; }
    bool keepEdit(Edited, const Text& text) override {
        kept = text;
        return stores;
    }
    void editClosed(Edited) override { ++closed; }
    bool keyOfNote(UINT, WPARAM key, LPARAM) override { return key == VK_F2; }
    void saveDraft(Edited, const Text& text) override {
        drafts.push_back(text);
        draftTimes.push_back(GetTickCount64());
    }
    void dropDraft() override { ++dropped; }

    std::size_t bytes = 1024;
    bool stores = true;
    std::optional<Text> kept;
    std::vector<Text> drafts;
    std::vector<ULONGLONG> draftTimes;
    int closed = 0;
    int dropped = 0;
};

inline LRESULT CALLBACK parentProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    auto* const editor = reinterpret_cast<NoteEditor*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message == WM_COMMAND && lp != 0 && editor != nullptr) editor->onNotice(HIWORD(wp));
    return DefWindowProcW(window, message, wp, lp);
}

inline int balloons = 0;
inline Text balloonText;
inline WNDPROC editorsOwn = nullptr;

/// Counts the balloons that the editor is asked to show.
inline LRESULT CALLBACK balloonEar(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (message == EM_SHOWBALLOONTIP) {
        ++balloons;
        balloonText = fromWide(reinterpret_cast<const EDITBALLOONTIP*>(lp)->pszText);
        return TRUE;
    }
    return CallWindowProcW(editorsOwn, window, message, wp, lp);
}

class Editing : public testing::Test {
protected:
    Editing() {
        registerClass(u"EditorTestNote", parentProc, 0);
        parent = CreateWindowExW(WS_EX_TOOLWINDOW, L"EditorTestNote", L"", WS_POPUP | WS_VISIBLE, 100, 100,
                                 220, 160, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        SetWindowLongPtrW(parent, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&editor));
        balloons = 0;
    }
    ~Editing() override {
        SetWindowLongPtrW(parent, GWLP_USERDATA, 0);
        DestroyWindow(parent);
    }

    /// Opens the editor with this text and this selection.
    void open(const Text& text, std::size_t from, std::size_t to, Edited what = Edited::Body) {
        ASSERT_TRUE(
            editor.open({&note, parent, what, text, {4, 21, 200, 121}, look.body.get(), HWND_TOP, 0}));
        SendMessageW(control(), EM_SETSEL, from, static_cast<LPARAM>(to));
    }
    void openAtEnd(const Text& text, Edited what = Edited::Body) {
        open(text, text.size(), text.size(), what);
    }
    HWND control() const {
        const HWND body = editor.window(Edited::Body);
        return body != nullptr ? body : editor.window(Edited::Title);
    }
    void character(WPARAM c) const { SendMessageW(control(), WM_CHAR, c, 1); }
    void type(TextView text) const {
        for (const char16_t c : text)
            character(c);
    }
    void key(WPARAM key, WPARAM typed, int held = 0) const {
        BYTE before[256]{};
        GetKeyboardState(before);
        BYTE now[256];
        std::copy(std::begin(before), std::end(before), now);
        if (held != 0) now[held] = 0x80;
        SetKeyboardState(now);
        const HWND window = control();
        SendMessageW(window, WM_KEYDOWN, key, 1);
        SendMessageW(window, WM_CHAR, typed, 1);
        if (IsWindow(window) != FALSE) SendMessageW(window, WM_KEYUP, key, 1);
        SetKeyboardState(before);
    }
    Text text() const { return windowText(control()); }
    TextRange selection() const {
        DWORD from = 0;
        DWORD to = 0;
        SendMessageW(control(), EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
        return {from, to};
    }
    bool canUndo() const { return SendMessageW(control(), EM_CANUNDO, 0, 0) != FALSE; }
    void undo() const { SendMessageW(control(), EM_UNDO, 0, 0); }
    void listenForBalloons() const { editorsOwn = replaceProcedure(control(), balloonEar); }
    void stopListening() const { replaceProcedure(control(), editorsOwn); }

    FakeNote note;
    NoteEditor editor;
    NoteLook look = loadNoteLook();
    HWND parent = nullptr;
};

/// Puts data on the clipboard in several formats.
inline void copy(std::initializer_list<std::pair<UINT, std::string>> forms) {
    for (int tries = 0; tries < 50 && OpenClipboard(nullptr) == FALSE; ++tries)
        pumpFor(20);
    EmptyClipboard();
    for (const auto& [form, bytes] : forms) {
        const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
        std::copy(bytes.begin(), bytes.end(), static_cast<char*>(GlobalLock(memory)));
        GlobalUnlock(memory);
        SetClipboardData(form, memory);
    }
    CloseClipboard();
}

inline std::string unitsOf(const Text& text) {
    return {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(char16_t)};
}

inline void copyText(const Text& text) {
    copy({{CF_UNICODETEXT, unitsOf(text)}});
}
