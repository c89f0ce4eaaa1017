#include "storage/Draft.h"

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"

namespace {

Draft sample() {
    return {7, true, u"half a thought, \u20ac and \U0001F642\r\n", 4711};
}

TEST(DraftFile, ReadsAsItWasWritten) {
    MemoryFiles folder;
    const Files files = folder.files();
    EXPECT_EQ(readDraft(files).status, IoStatus::Absent);
    ASSERT_TRUE(writeDraft(files, sample()));
    const FoundDraft found = readDraft(files);
    ASSERT_TRUE(found.draft.has_value());
    EXPECT_EQ(found.draft->number, 7);
    EXPECT_TRUE(found.draft->title);
    EXPECT_EQ(found.draft->text, sample().text);
    EXPECT_EQ(found.draft->stored, 4711U);
    removeDraft(files);
    EXPECT_TRUE(folder.content.empty());
}

TEST(DraftFile, WithAnyByteChangedIsNone) {
    const std::string whole = encodeDraft(sample());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit);
            EXPECT_FALSE(decodeDraft(damaged).has_value()) << at;
        }
    }
}

TEST(DraftFile, OfAnyOtherLengthIsNone) {
    const std::string whole = encodeDraft(sample());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(decodeDraft(whole.substr(0, length)).has_value()) << length;
    EXPECT_FALSE(decodeDraft(whole + '\0').has_value());
    EXPECT_FALSE(decodeDraft(whole + whole).has_value());
}

TEST(DraftFile, OfANumberThatNoNoteHasIsNone) {
    for (const int number : {0, -1, 51}) {
        Draft draft = sample();
        draft.number = number;
        EXPECT_FALSE(decodeDraft(encodeDraft(draft)).has_value()) << number;
    }
}

TEST(DraftFile, ThatCannotBeReadNowIsNotTakenForNone) {
    MemoryFiles folder;
    writeDraft(folder.files(), sample());
    folder.locked.insert(Text(kDraftFile));
    EXPECT_EQ(readDraft(folder.files()).status, IoStatus::Failed);
}

TEST(DraftFile, MarksANoteByWhatIsStoredOfItsTexts) {
    NoteRecord note;
    note.Titolo = u"ab";
    note.Nota = u"c";
    NoteRecord other;
    other.Titolo = u"a";
    other.Nota = u"bc";
    EXPECT_NE(storedMark(note), storedMark(other));
    other = note;
    other.x = 4711;
    EXPECT_EQ(storedMark(note), storedMark(other));
}

}  // namespace
