// The way from note to note by keyboard: which one follows, and what becomes of an open edit.
#include "tests/window/TestNotes.h"

namespace {

class FromNoteToNote : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, FromNoteToNote, testing::Bool(), storeName);

TEST_P(FromNoteToNote, CtrlTabAndF6GoRoundTheVisibleNotes) {
    NoteRecord closed = plainNote(u"closed");
    closed.closed = true;
    const auto desk = run({plainNote(u"a"), closed, plainNote(u"c"), plainNote(u"d")});
    desk->note(1).show(true);
    struct Press {
        WPARAM key;
        std::initializer_list<int> with;
        int arrives;
    };
    int at = 1;
    const Press presses[] = {{VK_TAB, {VK_CONTROL}, 3},
                             {VK_F6, {}, 4},
                             {VK_TAB, {VK_CONTROL}, 1},
                             {VK_TAB, {VK_CONTROL, VK_SHIFT}, 4},
                             {VK_F6, {VK_SHIFT}, 3}};
    for (const Press& press : presses) {
        hold(desk->note(at).hwnd, press.key, 1, press.with);
        at = press.arrives;
        EXPECT_EQ(GetForegroundWindow(), desk->note(at).hwnd) << at;
        EXPECT_EQ(GetFocus(), desk->note(at).hwnd) << at;
    }
    EXPECT_FALSE(desk->note(2).visible());
}

TEST_P(FromNoteToNote, GoingToAnotherNoteKeepsWhatWasTyped) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b")});
    desk->note(1).show(true);
    desk->note(1).EditForm();
    SetWindowTextW(desk->note(1).editing.txtNota(), L"typed");
    hold(desk->note(1).editing.txtNota(), VK_TAB, 1);
    EXPECT_FALSE(desk->note(1).editing.bodyBeingEdited());
    EXPECT_EQ(desk->stored(1).Nota, u"typed");
    EXPECT_EQ(GetFocus(), desk->note(2).hwnd);
}

TEST_P(FromNoteToNote, TheOnlyNoteStaysWhereItIs) {
    const auto desk = run({plainNote(u"a")});
    desk->note(1).show(true);
    hold(desk->note(1).hwnd, VK_F6, 1, {});
    EXPECT_EQ(GetFocus(), desk->note(1).hwnd);
}

}  // namespace
