// What the tests of what a screen reader hears of the dialog share. Where the system's own accessibility
// library knows too little under Wine, they look at what it goes by for native controls: classes, texts,
// order and Tab stops.
#pragma once

#include <algorithm>
#include <set>
#include <vector>

#include "tests/window/DialogTest.h"
#include "tests/window/Ear.h"

/// The label that Windows' own objects use as a field's name: the nearest static text before it, visible or
/// not, with no other field between them.
inline Text labelOf(HWND field) {
    for (HWND before = GetWindow(field, GW_HWNDPREV); before != nullptr;
         before = GetWindow(before, GW_HWNDPREV)) {
        if ((SendMessageW(before, WM_GETDLGCODE, 0, 0) & DLGC_STATIC) != 0) return windowText(before);
        const LONG_PTR style = GetWindowLongPtrW(before, GWL_STYLE);
        if ((style & static_cast<LONG_PTR>(WS_VISIBLE)) != 0 &&
            (style & static_cast<LONG_PTR>(WS_TABSTOP)) != 0)
            break;
    }
    return {};
}

inline Text classOf(HWND window) {
    wchar_t name[64]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return Text(fromWide(name));
}

/// The field's name, from the program or, for a native control, from Windows.
inline Text nameOf(HWND field) {
    const Text kind = classOf(field);
    if (kind == u"ComboBox") return labelOf(field);
    return Ear(field).name();
}

class AccessibleDialog : public Fmsg {
protected:
    /// Every control that Tab currently reaches, in Tab order.
    std::vector<HWND> tabStops() const {
        std::vector<HWND> stops;
        HWND next = nullptr;
        while ((next = GetNextDlgTabItem(dialog.hwnd, next, FALSE)) != nullptr) {
            if (!stops.empty() && next == stops.front()) break;
            stops.push_back(next);
        }
        return stops;
    }
    /// Whether the dialog is there and has the keyboard, which the window manager gives it a little later.
    Script::Condition ready(const char* caption) {
        return [this, caption] { return shown(caption)() && IsChild(dialog.hwnd, GetFocus()) != FALSE; };
    }
    /// What must hold for every face: each stop has a name, nothing that is only shown is a stop, and the
    /// focus is visible.
    void checkFace() const {
        EXPECT_EQ(Ear(dialog.hwnd).role(), Role::Dialog);
        EXPECT_EQ(Ear(dialog.hwnd).name(), windowText(dialog.hwnd));
        const std::vector<HWND> stops = tabStops();
        EXPECT_FALSE(stops.empty());
        std::set<char16_t> letters;
        for (const HWND stop : stops) {
            const int id = GetDlgCtrlID(stop);
            EXPECT_FALSE(nameOf(stop).empty()) << id;
            EXPECT_NE(plain(classOf(stop)), "Static") << id;
            EXPECT_EQ(SendMessageW(stop, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS, 0) << id;
            const Text caption = windowText(stop);
            const std::size_t mark = caption.find(u'&');
            if (mark != Text::npos) {
                EXPECT_TRUE(letters.insert(caption[mark + 1]).second) << plain(caption);
            }
        }
        EXPECT_NE(std::find(stops.begin(), stops.end(), GetFocus()), stops.end())
            << "the keyboard is in a control that Tab does not reach";
    }
};
