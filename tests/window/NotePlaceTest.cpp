// Where a note is and how large, whatever is stored and whatever the system does to its window, and what lies
// above what.
#include "tests/window/AlarmDesk.h"

namespace {

class PlacedNote : public Alarm {};
INSTANTIATE_TEST_SUITE_P(Stores, PlacedNote, testing::Bool(), storeName);

// --- Places and sizes -------------------------------------------------------------------------------------

TEST_P(PlacedNote, SavedWhileMinimisedKeepsItsPlaceAndSize) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    ShowWindow(note.hwnd, SW_MINIMIZE);
    EXPECT_TRUE(desk->desk->store.set(1, note.record, everyField()));
    const NoteRecord stored = desk->stored(1);
    EXPECT_EQ(stored.x, 1500);
    EXPECT_EQ(stored.y, 1500);
    EXPECT_EQ(stored.width, 3000);
    EXPECT_EQ(stored.height, 2250);
}

TEST_P(PlacedNote, SavedWhileIconizedKeepsItsFullSize) {
    NoteRecord iconized = plainNote(u"a");
    iconized.iconized = true;
    const auto desk = run({iconized});
    fpost& note = desk->note(1);
    EXPECT_EQ(rectOf(note.hwnd).bottom - rectOf(note.hwnd).top, desk->desk->look.px(kIconizedHeight));
    EXPECT_TRUE(desk->desk->store.set(1, note.record, everyField()));
    EXPECT_EQ(desk->stored(1).height, 2250);
    EXPECT_EQ(desk->stored(1).width, 3000);
}

TEST_P(PlacedNote, NonsenseSizesAreMadeUsableOnScreenAndStayStored) {
    NoteRecord tiny = plainNote(u"tiny");
    tiny.width = 5;
    tiny.height = 5;
    NoteRecord none = plainNote(u"none");
    none.width = 0;
    none.height = -7;
    NoteRecord huge = plainNote(u"huge");
    huge.width = 2000000000;
    huge.height = 2000000000;
    const auto desk = run({tiny, none, huge});
    EXPECT_EQ(desk->note(1).place.Width(), desk->desk->look.twips(desk->desk->look.px(design::kMinWidth)));
    EXPECT_EQ(desk->note(2).place.Width(), 2910);
    EXPECT_EQ(desk->note(2).place.Height(), 1890);
    EXPECT_LE(rectOf(desk->note(3).hwnd).right - rectOf(desk->note(3).hwnd).left,
              GetSystemMetrics(SM_CXSCREEN));
    EXPECT_EQ(desk->stored(1).width, 5);
    EXPECT_EQ(desk->stored(3).width, 2000000000);
}

TEST_P(PlacedNote, AStepPutsTheOtherSideRightThatSomebodyElseChanged) {
    // A window manager that is late answers with a size from before the note was iconized.
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    const auto sizeTo = [&](int width, int height) {
        SetWindowPos(note.hwnd, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    };
    const PxRect before = note.place.window();
    note.toggleIconized();
    const int strip = heightOf(note.hwnd);
    sizeTo(before.width(), before.height());
    note.place.resizer.ResizeWidth(15);
    EXPECT_EQ(heightOf(note.hwnd), strip);
    note.toggleIconized();
    sizeTo(before.width() + 30, before.height());
    note.place.resizer.ResizeHeight(15);
    EXPECT_EQ(note.place.window().width(), desk->desk->look.px(Twips{3015}));
}

// --- In the stack of windows ------------------------------------------------------------------------------

bool onTop(const fpost& note) {
    return (GetWindowLongPtrW(note.hwnd, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

TEST_P(PlacedNote, ItIsAboveAllOtherNotesAsLongAsItRings) {
    const auto desk = run({every(u"a", u"eachday"), with(every(u"b", u"eachday"), &NoteRecord::topmost),
                           with(plainNote(u"c"), &NoteRecord::topmost)});
    desk->note(3).show(false);
    EXPECT_FALSE(onTop(desk->note(1)));
    desk->clock = {kDue, 0};
    tick(*desk);
    for (int n = 1; n <= 2; ++n) {
        EXPECT_TRUE(onTop(desk->note(n))) << n;
        EXPECT_TRUE(isAbove(desk->note(n).hwnd, desk->note(3).hwnd)) << n;
        press(desk->note(n).pic_time);
    }
    EXPECT_FALSE(onTop(desk->note(1)));
    EXPECT_TRUE(onTop(desk->note(2)));
    EXPECT_FALSE(desk->stored(1).topmost);
    EXPECT_TRUE(desk->stored(2).topmost);
}

TEST_P(PlacedNote, AlwaysOnTopMayBeChosenMeanwhile) {
    const auto desk = ringing({every(u"a", u"eachday")});
    fpost& note = desk->note(1);
    EXPECT_FALSE(note.commands.input(note.alarm.rule).topmost) << "what the user chose";
    note.commands.mnuTopmost();
    press(note.pic_time);
    EXPECT_TRUE(onTop(note));
    desk->clock = {later(kSecondsPerDay), 0};
    tick(*desk);
    note.commands.mnuTopmost();
    EXPECT_TRUE(onTop(note)) << "it rings";
    press(note.pic_time);
    EXPECT_FALSE(onTop(note));
}

}  // namespace
