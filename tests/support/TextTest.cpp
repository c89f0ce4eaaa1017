#include "support/Text.h"

#include <gtest/gtest.h>

namespace {

/// A code page as old Japanese systems have: ASCII in one byte, U+3042 in the two bytes 0x82 0xA0.
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

TEST(EncodeField, TellsOfCharactersOutsideTheCodePage) {
    EXPECT_TRUE(encodeField(kDouble, u"a\u03B1", 4).unmappable);
    EXPECT_FALSE(encodeField(kDouble, u"a\u3042", 4).unmappable);
}

TEST(EncodeField, WhatIsCutOffIsNotCalledUnmappable) {
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
}

TEST(WithLineBreaks, MakesEveryLoneBreakAPair) {
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
    EXPECT_EQ(clipped(u"a\U0001F600b", 2), u"a");
    EXPECT_EQ(clipped(u"a\U0001F600b", 3), u"a\U0001F600");
}

TEST(WithoutTrailingBlanks, LeavesTheRest) {
    EXPECT_EQ(withoutTrailingBlanks(u" a b  "), u" a b");
    EXPECT_EQ(withoutTrailingBlanks(u"   "), u"");
}

}  // namespace
