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
    for (const std::vector<Draft>& drafts : {three(), {sample()}, {three()[1]}, {}})
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

/// The file with these bytes, numbers of one byte given as such, and a checksum that is right.
std::string withCheck(std::string bytes) {
    std::uint32_t check = 2166136261U;
    for (const char byte : bytes)
        check = (check ^ static_cast<unsigned char>(byte)) * 16777619U;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(check >> shift & 0xFF);
    return bytes;
}

std::string bytesOf(std::initializer_list<unsigned> numbers, const std::string& kind = "KTM2") {
    std::string bytes = kind;
    for (const unsigned number : numbers)
        bytes += std::string(1, static_cast<char>(number)) + std::string(3, '\0');
    return bytes;
}

TEST(Drafts, AreIgnoredIfTheyMakeNoSenseAlthoughNothingIsDamaged) {
    const std::string text("h\0i\0", 4);
    ASSERT_EQ(decodeDrafts(withCheck(bytesOf({1, 7, 1, 9, 2}) + text)),
              (std::vector<Draft>{{7, true, u"hi", 9}}));
    ASSERT_EQ(decodeDrafts(withCheck(bytesOf({7, 0, 9, 2}, "KTMP") + text)),
              (std::vector<Draft>{{7, false, u"hi", 9}}));
    const std::pair<const char*, std::string> rows[] = {
        {"of another kind", bytesOf({1, 7, 1, 9, 2}, "KTM3") + text},
        {"of no kind", ""},
        {"nothing but a kind", bytesOf({})},
        {"an old one of nothing but a kind", bytesOf({}, "KTMP")},
        {"an editor that is none", bytesOf({1, 7, 2, 9, 2}) + text},
        {"more units than bytes", bytesOf({1, 7, 1, 9, 3}) + text},
        {"fewer units than bytes", bytesOf({1, 7, 1, 9, 1}) + text},
        {"half a unit", bytesOf({1, 7, 1, 9, 2}) + text.substr(0, 3)},
        {"more drafts than there are", bytesOf({2, 7, 1, 9, 2}) + text},
        {"fewer drafts than there are", bytesOf({0, 7, 1, 9, 2}) + text},
        {"a draft without its text's length", bytesOf({1, 7, 1, 9})},
        {"two old ones", bytesOf({7, 1, 9, 2}, "KTMP") + text + bytesOf({7, 1, 9, 2}, "") + text},
    };
    for (const auto& [name, bytes] : rows)
        EXPECT_TRUE(decodeDrafts(withCheck(bytes)).empty()) << name;
}

TEST(Drafts, OfMoreThanFiftyNotesAreNone) {
    for (const int count : {kMaxNotes, kMaxNotes + 1}) {
        const std::vector<Draft> drafts(static_cast<std::size_t>(count), sample());
        EXPECT_EQ(decodeDrafts(encodeDrafts(drafts)).size(), count > kMaxNotes ? 0U : 50U);
    }
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
