// What the native edit control does for a note: where its lines break, and which text it takes from the
// clipboard.
#include "tests/window/EditorDesk.h"
#include "tests/window/TestNotes.h"

namespace {

class WrappedText : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, WrappedText, testing::Bool(), storeName);

TEST_P(WrappedText, WrappedTextBreaksWhereTheNoteDoes) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    note.record.Nota = u"some words that do not fit on one line of this narrow note\r\nend";
    const Text wrapped = note.editing.WrappedText();
    EXPECT_NE(wrapped.find(u"\r\n"), wrapped.rfind(u"\r\n"));
    EXPECT_EQ(replaced(replaced(wrapped, u"\r\n", u""), u" ", u""),
              replaced(replaced(note.record.Nota, u"\r\n", u""), u" ", u""));
    note.record.Nota.clear();
    EXPECT_EQ(note.editing.WrappedText(), u"");
}

TEST_F(Editing, PastesTheTextOfWhatWasCopiedWithFormatting) {
    const UINT rich = RegisterClipboardFormatW(L"Rich Text Format");
    const UINT html = RegisterClipboardFormatW(L"HTML Format");
    copy({{rich, "{\\rtf1\\b bold\\b0}"}, {html, "<b>bold</b>"}, {CF_UNICODETEXT, unitsOf(u"bold")}});
    openAtEnd(u"");
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"bold");
    copy({{rich, "{\\rtf1 only looks}"}});
    SendMessageW(control(), WM_PASTE, 0, 0);
    EXPECT_EQ(text(), u"bold") << "there was nothing to paste";
}

}  // namespace
