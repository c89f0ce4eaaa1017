// The parts of a note: their ids and texts, and where they stand in a note of any width.
#include <utility>

#include "resources/resource.h"
#include "tests/window/TestNotes.h"

namespace {

TEST(PartsOfANote, DeletePictureNeverLeavesTheNote) {
    TestNotes desk(true, {plainNote(u"a")});
    fpost& note = desk.note(1);
    for (int width = 3000; width >= 1130; width -= 10) {
        note.pWidth(width);
        RECT client{};
        GetClientRect(note.hwnd, &client);
        RECT picture = rectOf(note.pic);
        MapWindowPoints(nullptr, note.hwnd, reinterpret_cast<POINT*>(&picture), 2);
        ASSERT_EQ(picture.right, client.right) << width;
        ASSERT_GE(picture.left, 0) << width;
    }
}

TEST(PartsOfANote, PartsHaveTheirIdsAndTexts) {
    TestNotes desk(true, {plainNote(u"title")});
    fpost& note = desk.note(1);
    EXPECT_EQ(note.editing.txtNota(), nullptr);
    EXPECT_EQ(note.editing.txtTitle(), nullptr);
    note.EditForm();
    EXPECT_EQ(GetDlgItem(note.hwnd, ID_TXTNOTA), note.editing.txtNota());
    EXPECT_NE(note.editing.txtNota(), nullptr);
    EXPECT_EQ(note.editing.txtTitle(), nullptr);
    note.EditCaption();
    EXPECT_EQ(GetDlgItem(note.hwnd, ID_TXTTITLE), note.editing.txtTitle());
    EXPECT_NE(note.editing.txtTitle(), nullptr);
    EXPECT_EQ(note.editing.txtNota(), nullptr);
    note.SaveCaption(false);
    EXPECT_EQ(GetDlgItem(note.hwnd, ID_TXTTITLE), nullptr);
    const std::pair<HWND, int> parts[] = {{note.lbl, ID_LBL},   {note.lbl2, ID_LBL2},
                                          {note.pic, ID_PIC},   {note.nota, ID_NOTA},
                                          {note.pic2, ID_PIC2}, {note.pic_time, ID_PIC_TIME}};
    for (const auto& [window, id] : parts) {
        EXPECT_EQ(GetDlgCtrlID(window), id);
        EXPECT_EQ(GetParent(window), note.hwnd);
    }
    EXPECT_EQ(windowText(note.lbl), u"     title");
    EXPECT_EQ(windowText(note.nota), u"body of title");
}

}  // namespace
