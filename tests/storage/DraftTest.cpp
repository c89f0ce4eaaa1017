#include "storage/Draft.h"

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"

namespace {

Draft sample() {
    return {7, true, u"half a thought, \u20ac and \U0001F642\r\n", 4711};
}

std::vector<Draft> three() {
    return {sample(), {1, false, u"", 0}, {50, false, u"\u65e5\u672c ;=\n 7", 0xFFFFFFFFU}};
}

TEST(Drafts, ReadAsTheyWereWritten) {
    for (const std::vector<Draft>& drafts : {three(), {sample()}, {}})
        EXPECT_EQ(decodeDrafts(encodeDrafts(drafts)), drafts);
}

TEST(Drafts, AreIgnoredWithAnyByteChanged) {
    const std::string whole = encodeDrafts(three());
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit);
            EXPECT_TRUE(decodeDrafts(damaged).empty()) << at;
        }
    }
}

TEST(Drafts, OfAnEarlierBuildAreRead) {
    constexpr char kOld[] = "KTMP\7\0\0\0\1\0\0\0\x67\x12\0\0\3\0\0\0h\0a\0l\0\106\145\205\056";
    const std::string old(kOld, sizeof(kOld) - 1);
    EXPECT_EQ(decodeDrafts(old), (std::vector<Draft>{{7, true, u"hal", 4711}}));
    EXPECT_TRUE(decodeDrafts(old + old).empty());
}

TEST(Drafts, AreIgnoredWithAnyOtherLength) {
    const std::string whole = encodeDrafts(three());
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_TRUE(decodeDrafts(whole.substr(0, length)).empty()) << length;
    EXPECT_TRUE(decodeDrafts(whole + '\0').empty());
    EXPECT_TRUE(decodeDrafts(whole + whole).empty());
}

TEST(Drafts, AreIgnoredWithANumberThatNoNoteHas) {
    for (const int number : {0, -1, 51}) {
        Draft draft = sample();
        draft.number = number;
        EXPECT_TRUE(decodeDrafts(encodeDrafts(std::vector{draft})).empty()) << number;
    }
}

TEST(DraftText, ReadsAsItWasWritten) {
    for (const Draft& draft : three()) {
        const std::optional<Draft> read = parseDraft(draftText(draft), draft.number);
        ASSERT_TRUE(read.has_value());
        EXPECT_EQ(*read, draft);
    }
}

TEST(DraftText, IsIgnoredWhenDamaged) {
    for (const TextView text : {u"", u"t", u"t ", u"t12", u"x12 text", u"t-1 text", u"t4294967296 text",
                                u"t1a text", u"12 text", u" t12 text"}) {
        EXPECT_FALSE(parseDraft(text, 1).has_value()) << std::string(text.begin(), text.end());
    }
    EXPECT_TRUE(parseDraft(u"b4294967295 ", 1).has_value());
}

TEST(Draft, MarksANoteByItsStoredTexts) {
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

TEST(Draft, MarksANoteWithoutTheBlanksThatTheFilesDoNotKeep) {
    NoteRecord note;
    note.Titolo = u"title";
    note.Nota = u"body";
    NoteRecord other = note;
    other.Titolo += u"  ";
    other.Nota += u" ";
    EXPECT_EQ(storedMark(note), storedMark(other));
}

TEST(Draft, DiffersFromAnotherByItsText) {
    Draft other = sample();
    EXPECT_EQ(draftMark(other), draftMark(sample()));
    other.text += u"!";
    EXPECT_NE(draftMark(other), draftMark(sample()));
    other = sample();
    other.title = false;
    EXPECT_NE(draftMark(other), draftMark(sample()));
}

TEST(Draft, BelongsToItsNoteEvenAfterADeletionHasMovedIt) {
    Draft draft = sample();
    draft.number = 3;
    draft.stored = 30;
    const auto owner = [&](std::vector<std::uint32_t> marks) { return noteOf(draft, marks); };
    EXPECT_EQ(owner({10, 20, 30, 40}), 3);
    EXPECT_EQ(owner({20, 30, 40}), 2) << "note 1 was deleted";
    EXPECT_EQ(owner({10, 30}), 2) << "it is the last one now";
    EXPECT_EQ(owner({30, 30, 30, 30}), 3) << "of identical notes, the one with its number";
    EXPECT_EQ(owner({10, 20, 31, 30}), 0) << "no deletion moves a note back";
    EXPECT_EQ(owner({}), 0);
}

}  // namespace
