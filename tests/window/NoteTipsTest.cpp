// What the tooltips over a note's pictures say.
#include <gtest/gtest.h>

#include "tests/support/Plain.h"
#include "tests/window/TestNotes.h"
// Needs windows.h before it.
#include <commctrl.h>

namespace {

/// The tooltips of a note, once the mouse has been over a picture.
HWND tipsOf(const fpost& note) {
    SendMessageW(note.pic, WM_SETCURSOR, reinterpret_cast<WPARAM>(note.pic),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    struct Search {
        HWND owner;
        HWND found = nullptr;
        static BOOL CALLBACK look(HWND window, LPARAM param) noexcept {
            auto& search = *reinterpret_cast<Search*>(param);
            if (GetWindow(window, GW_OWNER) == search.owner) search.found = window;
            return search.found == nullptr ? TRUE : FALSE;
        }
    } search{note.hwnd};
    EnumThreadWindows(GetCurrentThreadId(), Search::look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

/// What is said at a place of a part, in twips. Empty where there is no tooltip.
std::string tipAt(const TestNotes& desk, const fpost& note, HWND part, int x, int y) {
    const NoteLook& look = desk.desk->look;
    const POINT at{look.px(Twips{x}), look.px(Twips{y})};
    const HWND tips = tipsOf(note);
    TOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    for (WPARAM i = 0; SendMessageW(tips, TTM_ENUMTOOLSW, i, reinterpret_cast<LPARAM>(&tool)) != 0; ++i) {
        if (tool.hwnd != part || PtInRect(&tool.rect, at) == FALSE) continue;
        wchar_t text[256]{};
        tool.lpszText = text;
        SendMessageW(tips, TTM_GETTEXTW, std::size(text), reinterpret_cast<LPARAM>(&tool));
        return plain(Text(reinterpret_cast<const char16_t*>(text)));
    }
    return {};
}

TEST(Tips, SayWhatAPressOnEachPictureDoes) {
    TestNotes desk(true, {plainNote(u"a")});
    const fpost& note = desk.note(1);
    EXPECT_EQ(tipAt(desk, note, note.lbl2, 100, 120), "Iconize");
    EXPECT_EQ(tipAt(desk, note, note.lbl2, 350, 120), "Close");
    EXPECT_EQ(tipAt(desk, note, note.lbl2, 230, 120), "") << "between the two";
    EXPECT_EQ(tipAt(desk, note, note.pic, 130, 120), "Delete");
    EXPECT_EQ(tipAt(desk, note, note.pic2, 190, 60), "Wider; with Shift or the right button narrower");
    EXPECT_EQ(tipAt(desk, note, note.pic2, 60, 170), "Taller; with Shift or the right button shorter");
}

TEST(Tips, OfAnIconizedNoteOfferToRestoreItAndNoHeight) {
    TestNotes desk(true, {with(plainNote(u"a"), &NoteRecord::iconized)});
    const fpost& note = desk.note(1);
    EXPECT_EQ(tipAt(desk, note, note.lbl2, 100, 120), "Restore");
    EXPECT_EQ(tipAt(desk, note, note.pic2, 190, 60), "Wider; with Shift or the right button narrower");
    EXPECT_EQ(tipAt(desk, note, note.pic2, 60, 170), "");
}

}  // namespace
