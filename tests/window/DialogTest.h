// What the tests of the program's dialog share: the dialog, over a few plain windows that stand for notes.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "note/fmsg.h"
#include "support/WinText.h"
#include "support/Window.h"
#include "tests/support/Plain.h"
#include "tests/window/Script.h"

inline constexpr const char16_t* kNoteClass = u"DialogTestNote";

inline LRESULT CALLBACK plainProc(HWND hwnd, UINT message, WPARAM wp, LPARAM lp) noexcept {
    return DefWindowProcW(hwnd, message, wp, lp);
}

/// 15 June 2026, a Monday, 10:20:30.
inline Now someMonday() {
    return {instantOf({2026, 6, 15}, {10, 20, 30}), 0};
}

class Fmsg : public testing::Test {
protected:
    void SetUp() override {
        registerDialogClasses();
        registerClass(kNoteClass, plainProc, 0);
        owner = makeWindow(0, nullptr);
        dialog.ownerWindow = [this] { return owner; };
        dialog.noteWindows = [this] { return notes; };
        dialog.now = [] { return someMonday(); };
    }
    void TearDown() override {
        dialog.unload();
        for (const HWND note : notes)
            DestroyWindow(note);
        DestroyWindow(owner);
    }

    static HWND makeWindow(DWORD exStyle, HWND ownedBy) {
        return CreateWindowExW(exStyle, wide(kNoteClass), L"", WS_POPUP, 40, 40, 200, 150, ownedBy, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
    }
    HWND addNote(DWORD exStyle = 0) {
        notes.push_back(makeWindow(exStyle, owner));
        ShowWindow(notes.back(), SW_SHOW);
        return notes.back();
    }

    HWND item(int id) const { return GetDlgItem(dialog.hwnd, id); }
    std::string text(int id) const { return plain(windowText(item(id))); }
    std::string title() const { return plain(windowText(dialog.hwnd)); }
    bool shows(int id) const { return IsWindowVisible(item(id)) != FALSE; }
    void click(int id) const { PostMessageW(item(id), BM_CLICK, 0, 0); }
    void key(WPARAM vk) const { PostMessageW(GetFocus(), WM_KEYDOWN, vk, 0); }
    void closeBox() const { PostMessageW(dialog.hwnd, WM_CLOSE, 0, 0); }
    static void type(HWND window, UINT message, WPARAM wp) { PostMessageW(window, message, wp, 0); }

    Script::Condition shown(const char* caption) {
        return [this, caption] {
            return dialog.hwnd != nullptr && IsWindowVisible(dialog.hwnd) != FALSE && title() == caption;
        };
    }
    /// Whether the dialog has the keyboard, in this control.
    Script::Condition focused(int id) {
        return [this, id] { return dialog.hwnd != nullptr && item(id) != nullptr && GetFocus() == item(id); };
    }

    fmsg dialog;
    HWND owner = nullptr;
    std::vector<HWND> notes;
};
