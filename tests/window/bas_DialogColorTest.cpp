// The system's colour dialog over a note: where it is, what it begins with, and what becomes of the answer.
#include <functional>
#include <utility>

#include "resources/resource.h"
#include "tests/window/TestNotes.h"

namespace {

class ColourOfANote : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, ColourOfANote, testing::Bool(), storeName);

/// Presses a button of the system's colour dialog as soon as it appears.
struct ColourAnswer {
    static inline WPARAM button = 0;
    static inline int seen = 0;
    static inline HWND owner = nullptr;
    static inline std::function<void(HWND dialog)> look;  ///< called once, before the answer
    UINT_PTR timer = 0;

    explicit ColourAnswer(WPARAM press) {
        button = press;
        seen = 0;
        look = {};
        timer = SetTimer(nullptr, 0, 20, onTick);
    }
    ~ColourAnswer() { KillTimer(nullptr, timer); }
    ColourAnswer(const ColourAnswer&) = delete;
    ColourAnswer& operator=(const ColourAnswer&) = delete;

    static void CALLBACK onTick(HWND, UINT, UINT_PTR, DWORD) {
        const HWND dialog = FindWindowW(L"#32770", L"Color");
        if (dialog == nullptr || IsWindowVisible(dialog) == FALSE) return;
        ++seen;
        owner = GetWindow(dialog, GW_OWNER);
        if (const auto once = std::exchange(look, {})) once(dialog);
        PostMessageW(dialog, WM_COMMAND, button, 0);
    }
};

TEST_P(ColourOfANote, ACancelledColourLeavesEverythingAsItWas) {
    const auto desk = run({plainNote(u"a")});
    const int before = changesOf(*desk);
    const ColourAnswer answering(IDCANCEL);
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_COLOR, 0);
    EXPECT_GE(ColourAnswer::seen, 1) << "with the caption Color";
    EXPECT_EQ(ColourAnswer::owner, desk->note(1).hwnd);
    EXPECT_EQ(changesOf(*desk), before);
    EXPECT_EQ(desk->note(1).Backcol(), static_cast<Rgb>(kDesignColor));
}

TEST_P(ColourOfANote, TheColourDialogStaysAboveEveryNote) {
    const auto desk = run({plainNote(u"a"), with(plainNote(u"b"), &NoteRecord::topmost)});
    bool atOnce = false;
    bool afterOpening = false;
    ColourAnswer answering(IDCANCEL);
    ColourAnswer::look = [&](HWND dialog) {
        atOnce = isAbove(dialog, desk->note(2).hwnd);
        desk->desk->OpenNote(1);
        afterOpening = isAbove(dialog, desk->note(2).hwnd);
    };
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_COLOR, 0);
    EXPECT_GE(ColourAnswer::seen, 1);
    EXPECT_TRUE(atOnce) << "the other note is always on top";
    EXPECT_TRUE(afterOpening);
}

TEST_P(ColourOfANote, TheColourDialogBeginsWithTheNotesOwnColour) {
    NoteRecord green = plainNote(u"a");
    green.backcolor = 0x80FF80;
    const auto desk = run({green});
    const ColourAnswer answering(IDOK);
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_COLOR, 0);
    EXPECT_GE(ColourAnswer::seen, 1);
    EXPECT_EQ(desk->note(1).Backcol(), 0x80FF80U);
    EXPECT_EQ(desk->stored(1).backcolor, 0x80FF80);
}

TEST_P(ColourOfANote, BlackCannotBeChosen) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.Backcol(0);  // as from a damaged record
    const int before = changesOf(*desk);
    const ColourAnswer answering(IDOK);
    note.commands.mnuColor();
    EXPECT_GE(ColourAnswer::seen, 1);
    EXPECT_EQ(changesOf(*desk), before);
}

}  // namespace
