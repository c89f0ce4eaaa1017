#include "support/Text.h"

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <locale.h>
#include <wctype.h>
#endif

#include "tests/support/TestCodePages.h"

namespace {

/// A code page like that of old Japanese systems: ASCII in one byte, U+3042 in the two bytes 0x82 0xA0.
std::string encodeDouble(unsigned, TextView text, bool& lost) {
    std::string bytes;
    for (const char16_t c : text) {
        if (c == u'\u3042') {
            bytes += "\x82\xA0";
        } else if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else {
            bytes += '?';
            lost = true;
        }
    }
    return bytes;
}

Text decodeDouble(unsigned, std::string_view bytes) {
    Text text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const bool lead = static_cast<unsigned char>(bytes[i]) == 0x82;
        text += lead ? u'\u3042' : static_cast<char16_t>(bytes[i]);
        if (lead) ++i;
    }
    return text;
}

constexpr CodePage kDouble{932, encodeDouble, decodeDouble};

TEST(EncodeField, PadsWithBlanks) {
    const EncodedField field = encodeField(kDouble, u"ab", 5);
    EXPECT_EQ(field.bytes, "ab   ");
    EXPECT_FALSE(field.cut);
    EXPECT_FALSE(field.unmappable);
}

TEST(EncodeField, CutsLongTextAtTheWidth) {
    const EncodedField field = encodeField(kDouble, u"abcdef", 4);
    EXPECT_EQ(field.bytes, "abcd");
    EXPECT_TRUE(field.cut);
}

TEST(EncodeField, NeverCutsBetweenTheBytesOfOneCharacter) {
    const EncodedField field = encodeField(kDouble, u"abc\u3042", 4);
    EXPECT_EQ(field.bytes, "abc ");
    EXPECT_TRUE(field.cut);
    EXPECT_EQ(decodeField(kDouble, field.bytes), u"abc");
}

TEST(EncodeField, CutsBesideAHalfPairThatIsFollowedByAnotherLetter) {
    // The first code unit beyond the second halves of pairs belongs to no pair.
    EXPECT_NE(encodeField(utf8Page(), u"ab\xD83D\uE000", 5).bytes, "ab   ") << "the half alone has room";
    EXPECT_EQ(encodeField(utf8Page(), u"ab\xD83D\xDFFF", 5).bytes, "ab   ");
}

TEST(EncodeField, CutsBehindAPairThatHasRoom) {
    EXPECT_EQ(encodeField(utf8Page(), u"\U0001F600bc", 4).bytes, "\xF0\x9F\x98\x80");
    EXPECT_EQ(encodeField(utf8Page(), u"\U0001F600bc", 5).bytes,
              "\xF0\x9F\x98\x80"
              "b");
}

TEST(EncodeField, LooksNoFurtherThanTheTextThatItIsGiven) {
    const TextView whole = u"abc\U0001F600";
    EXPECT_EQ(encodeField(utf8Page(), whole.substr(0, 4), 5).bytes, "abc  ") << "half of a pair has no room";
}

TEST(EncodeField, ReportsCharactersOutsideTheCodePage) {
    EXPECT_TRUE(encodeField(kDouble, u"a\u03B1", 4).unmappable);
    EXPECT_FALSE(encodeField(kDouble, u"a\u3042", 4).unmappable);
}

TEST(EncodeField, ReportsThemInWhatIsKeptOfALongText) {
    EXPECT_TRUE(encodeField(kDouble, u"\u03B1bcdef", 4).unmappable);
    EXPECT_TRUE(encodeField(kDouble, u"abc\u03B1ef", 4).unmappable);
}

TEST(EncodeField, DoesNotCallWhatIsCutOffUnmappable) {
    const EncodedField field = encodeField(kDouble, u"abcd\u03B1", 4);
    EXPECT_FALSE(field.unmappable);
    EXPECT_TRUE(field.cut);
}

TEST(DecodeField, EndsAtTheFirstZeroByteAndLosesTrailingBlanks) {
    EXPECT_EQ(decodeField(kDouble, std::string_view("ab \0cd", 6)), u"ab");
    EXPECT_EQ(decodeField(kDouble, " a b  "), u" a b");
    EXPECT_EQ(decodeField(kDouble, std::string_view("\0\0\0", 3)), u"");
    EXPECT_EQ(decodeField(kDouble, "     "), u"");
    EXPECT_EQ(decodeField(kDouble, ""), u"");
}

TEST(EncodedLength, CountsBytes) {
    EXPECT_EQ(encodedLength(kDouble, u"a\u3042"), 3U);
}

TEST(Lowered, IsTheSameUnderEveryLocale) {
    EXPECT_EQ(lowered(u"SI VERO \u00CC"), u"si vero \u00EC");
    EXPECT_EQ(lowered(u"\u00D7 123"), u"\u00D7 123");
    // The first and the last letter of each alphabet, and their neighbours.
    EXPECT_EQ(lowered(u"@AZ[`az{"), u"@az[`az{");
    EXPECT_EQ(lowered(u"\u00BF\u00C0\u00D6\u00D8\u00DE\u00DF\u00FF"),
              u"\u00BF\u00E0\u00F6\u00F8\u00FE\u00DF\u00FF");
    EXPECT_EQ(lowered(u"I\u0130 i\u0131"), u"i\u0130 i\u0131") << "unlike a Turkish system would";
}

TEST(Lowered, KnowsTheLettersOfEveryScriptThatHasTwoOfEach) {
    struct Case {
        TextView capitals, smalls;
    };
    for (const Case& c : {
             Case{u"\u041F\u041D \u0412\u0421 \u0401\u040E\u0410\u042F",
                  u"\u043F\u043D \u0432\u0441 \u0451\u045E\u0430\u044F"},
             Case{u"\u0394\u0395\u03A5 \u0386\u038F\u03A9", u"\u03B4\u03B5\u03C5 \u03AC\u03CE\u03C9"},
             Case{u"\u0531\u0556", u"\u0561\u0586"},
             Case{u"\u015E\u011E\u00C7\u0178\u017D\u0141\u0147\u018F",
                  u"\u015F\u011F\u00E7\u00FF\u017E\u0142\u0148\u0259"},
             Case{u"\u1EA4\u1EF4\u1E00", u"\u1EA5\u1EF5\u1E01"},
             Case{u"\u1F08\u1FFA", u"\u1F00\u1F7C"},
             Case{u"\uFF21\uFF3A", u"\uFF41\uFF5A"},
         }) {
        EXPECT_EQ(lowered(c.capitals), c.smalls);
        EXPECT_EQ(lowered(c.smalls), c.smalls);
    }
    EXPECT_EQ(lowered(u"\u03A3\u03C2\u03C3"), u"\u03C3\u03C3\u03C3") << "whichever sigma ends a word";
    constexpr TextView kWithout = u"\u6708\u066A\u05D0\u0E08\U0001F600\uFFFF\u0139\u1E9E\u212A";
    EXPECT_EQ(lowered(kWithout), u"\u6708\u066A\u05D0\u0E08\U0001F600\uFFFF\u013A\u1E9E\u212A");
}

TEST(Lowered, PairsEveryLetterWithOneThatItLeavesAlone) {
    for (unsigned c = 0; c < 0x10000; ++c) {
        const Text one(1, static_cast<char16_t>(c));
        const Text small = lowered(one);
        ASSERT_EQ(small.size(), 1U);
        ASSERT_EQ(lowered(small), small) << std::hex << c;
    }
}

#ifdef __GLIBC__
TEST(Lowered, AgreesWithAnotherLibraryAboutEveryLetter) {
    const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    ASSERT_NE(unicode, nullptr);
    constexpr TextView kOfThree = u"\u01C5\u01C8\u01CB\u01F2\u03C2";  // they share their capital with another
    for (unsigned c = 1; c < 0x10000; ++c) {
        const auto letter = static_cast<char16_t>(c);
        const wint_t small = towlower_l(c, unicode);
        const bool pair = small < 0x10000 && towupper_l(small, unicode) == c;
        const bool ofThree = kOfThree.find(letter) != TextView::npos;
        const wint_t wanted = ofThree ? towlower_l(towupper_l(c, unicode), unicode) : pair ? small : c;
        EXPECT_EQ(lowered(Text(1, letter)), Text(1, static_cast<char16_t>(wanted))) << std::hex << c;
    }
    freelocale(unicode);
}
#endif

TEST(WithLineBreaks, TurnsEveryLoneBreakIntoAPair) {
    EXPECT_EQ(withLineBreaks(u"a\nb\rc\r\nd"), u"a\r\nb\r\nc\r\nd");
    EXPECT_EQ(withLineBreaks(u"\n\r"), u"\r\n\r\n");
    EXPECT_EQ(withLineBreaks(u""), u"");
    EXPECT_EQ(withLineBreaks(u"a\r\n"), u"a\r\n");
}

TEST(Replaced, ReplacesEveryOccurrence) {
    EXPECT_EQ(replaced(u"R&D & co", u"&", u"&&"), u"R&&D && co");
    EXPECT_EQ(replaced(u"abc", u"x", u"y"), u"abc");
    EXPECT_EQ(replaced(u"aa", u"a", u""), u"");
}

TEST(Clipped, KeepsPairsWhole) {
    EXPECT_EQ(clipped(u"abc", 5), u"abc");
    EXPECT_EQ(clipped(u"abc", 2), u"ab");
    EXPECT_EQ(clipped(u"\U0001F600b", 1), u"");
    EXPECT_EQ(clipped(u"a\U0001F600b", 2), u"a");
    const TextView half = TextView(u"a\U0001F600b").substr(0, 2);
    EXPECT_EQ(clipped(half, 2), half) << "a half that is the text's end stays";
    EXPECT_EQ(clipped(u"a\U0001F600b", 3), u"a\U0001F600");
}

TEST(WithoutTrailingBlanks, LeavesTheRest) {
    EXPECT_EQ(withoutTrailingBlanks(u" a b  "), u" a b");
    EXPECT_EQ(withoutTrailingBlanks(u"   "), u"");
}

}  // namespace
