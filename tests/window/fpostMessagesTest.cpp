// What the system asks of a note by messages, and how the note answers.
#include "tests/window/TestNotes.h"

namespace {

class NoteMessages : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, NoteMessages, testing::Bool(), storeName);

TEST_P(NoteMessages, MinimisedByTheSystemIsRestoredAtOnce) {
    const auto desk = run({plainNote(u"a")});
    const HWND window = desk->note(1).hwnd;
    const RECT before = rectOf(window);
    ShowWindow(window, SW_MINIMIZE);
    pumpPending();
    EXPECT_FALSE(IsIconic(window));
    const RECT after = rectOf(window);
    EXPECT_TRUE(EqualRect(&before, &after));
    SendMessageW(window, WM_SYSCOMMAND, SC_MINIMIZE, 0);
    EXPECT_FALSE(IsIconic(window));
}

TEST_P(NoteMessages, CloseMessageIsIgnored) {
    const auto desk = run({plainNote(u"a")});
    SendMessageW(desk->note(1).hwnd, WM_CLOSE, 0, 0);
    EXPECT_TRUE(desk->note(1).visible());
    EXPECT_FALSE(desk->stored(1).closed);
}

TEST_P(NoteMessages, APenHeldOnTheGripIsNoRightClick) {
    const auto desk = run({plainNote(u"a")});
    constexpr UINT kQueryGestures = 0x02CC;
    constexpr LRESULT kNoPressAndHold = 1;
    const fpost& note = desk->note(1);
    EXPECT_EQ(SendMessageW(note.pic2, kQueryGestures, 0, 0), kNoPressAndHold);
    for (const HWND part : {note.lbl, note.lbl2, note.pic, note.nota})
        EXPECT_EQ(SendMessageW(part, kQueryGestures, 0, 0), 0) << GetDlgCtrlID(part);
}

}  // namespace
