// The colours that a note shows: of its surfaces, and of its frame while it has the keyboard.
#include "tests/window/TestNotes.h"

namespace {

Rgb pixelOf(HWND window, int x, int y) {
    UpdateWindow(window);
    const WindowDc dc(window);
    return GetPixel(dc, x, y);
}

TEST(PaintedNote, PaintingSetsAllSevenSurfaces) {
    TestNotes desk(true, {armed(u"a")});
    fpost& note = desk.note(1);
    note.Backcol(0x30C0F0);
    for (const HWND part : {note.nota, note.pic, note.pic2, note.lbl2, note.pic_time}) {
        EXPECT_EQ(pixelOf(part, 0, 0), 0x30C0F0U) << GetDlgCtrlID(part);
    }
    EXPECT_EQ(pixelOf(note.lbl, 150, 0), 0x30C0F0U) << "to the right of the buttons over it";
    EXPECT_EQ(pixelOf(note.hwnd, 1, 60), 0x30C0F0U);
}

TEST(NoteColour, NoteWithoutOneKeepsTheDesignColour) {
    NoteRecord record = plainNote(u"a");
    TestNotes desk(true, {record});
    desk.registry.find(u"kardel-1", u"backcolor")->clear();
    desk.killAndRestart();
    EXPECT_EQ(desk.note(1).Backcol(), static_cast<Rgb>(kDesignColor));
    EXPECT_EQ(pixelOf(desk.note(1).nota, 0, 0), static_cast<Rgb>(kDesignColor));
}

/// Colour of a note's frame, in the middle of its left edge.
COLORREF frameOf(const fpost& note) {
    const HDC dc = GetWindowDC(note.hwnd);
    const RECT rect = rectOf(note.hwnd);
    const COLORREF color = GetPixel(dc, 0, static_cast<int>(rect.bottom - rect.top) / 2);
    ReleaseDC(note.hwnd, dc);
    return color;
}

TEST(PaintedNote, TheNoteThatHasTheKeyboardShowsIt) {
    TestNotes desk(true, {plainNote(u"a"), plainNote(u"b", 6000)});
    for (const int at : {1, 2, 1}) {
        desk.note(at).show(true);
        EXPECT_EQ(frameOf(desk.note(at)), inkOn(kDesignColor)) << at;
        EXPECT_EQ(frameOf(desk.note(3 - at)), frameColor(kDesignColor)) << at;
    }
}

}  // namespace
