// Header and records, compared byte for byte with those written by hand.
#include "storage/DataFiles.h"

#include <gtest/gtest.h>

#include "tests/storage/DataFilesCases.h"

namespace {

using namespace std::string_literals;

TEST_F(DataFilesTest, TheHeaderIsTenBytes) {
    DataHeader header;
    header.count = 258;
    header.flag = -1;
    // 1.28 as a 32-bit float is hex 3FA3D70A.
    EXPECT_EQ(encodeHeader(header), "\x02\x01\x00\x00\x00\x00\x0A\xD7\xA3\x3F"s);
}

TEST_F(DataFilesTest, AHeaderIsReadBack) {
    DataHeader header;
    ASSERT_TRUE(decodeHeader("\x0C\x00\x00\x00\xFF\xFF\x00\x00\xA0\x3F"s, header));
    EXPECT_EQ(header.count, 12);
    EXPECT_EQ(header.flag, -1);
    EXPECT_EQ(header.version, 1.25F);
}

TEST_F(DataFilesTest, LessThanAWholeHeaderIsNoHeader) {
    for (std::size_t length = 0; length < kHeaderLength; ++length) {
        DataHeader header;
        header.count = 77;
        EXPECT_FALSE(decodeHeader(std::string(length, '\1'), header));
        EXPECT_EQ(header.count, 77);
    }
}

TEST_F(DataFilesTest, AHeaderOfZerosIsNoHeaderWhateverFollows) {
    DataHeader header;
    EXPECT_FALSE(decodeHeader(std::string(kHeaderLength, '\0') + "rest", header));
    EXPECT_TRUE(decodeHeader(std::string(kHeaderLength - 1, '\0') + "x", header));
}

TEST_F(DataFilesTest, ARecordIsWrittenByteForByte) {
    const EncodedRecord encoded = encodeRecord(westernPage(), handWrittenNote());
    EXPECT_EQ(encoded.bytes, handWrittenRecord());
    EXPECT_EQ(encoded.bytes.size(), 215U);
    EXPECT_FALSE(encoded.lost);
}

TEST_F(DataFilesTest, ARecordIsReadByteForByte) {
    EXPECT_EQ(decodeRecord(westernPage(), handWrittenRecord()), handWrittenNote());
}

TEST_F(DataFilesTest, AFreshRecordIsBlankLightYellowWithBodyOne) {
    NoteRecord note;
    note.Titolo = u"old";
    ClearNoteRecord(note);
    std::string expected = std::string(25, ' ') + "\xFF\xFF\x80\x00"s + std::string(8, '\0') +
                           std::string(10, ' ') + std::string(6, '\0') + "\x01\x00\x00\x00"s +
                           std::string(128, ' ') + std::string(14, '\0') + "  "s + std::string(14, '\0');
    EXPECT_EQ(encodeRecord(westernPage(), note).bytes, expected);
}

TEST_F(DataFilesTest, RandomRecordsComeBackWholeInEveryCodePage) {
    for (const CodePage& page : {westernPage(), kanaPage(), utf8Page()}) {
        Dice dice(7);
        for (int round = 0; round < 300; ++round) {
            NoteRecord note = randomNote(dice, page);
            note.memo = dice.number();
            const EncodedRecord encoded = encodeRecord(page, note);
            EXPECT_FALSE(encoded.lost);
            note.Nota.clear();
            EXPECT_EQ(decodeRecord(page, encoded.bytes), note) << "page " << page.id << " round " << round;
        }
    }
}

TEST_F(DataFilesTest, PuttingOneFieldIntoARecordChangesNoOtherByte) {
    Dice dice(3);
    for (const NoteFieldRow& row : noteFields()) {
        EncodedRecord encoded;
        encoded.bytes = dice.bytes(kRecordLength);
        const std::string before = encoded.bytes;
        encodeFieldInto(westernPage(), handWrittenNote(), row.field, encoded);
        const std::string whole = handWrittenRecord();
        std::string expected = before;
        expected.replace(row.offset, row.width, whole.substr(row.offset, row.width));
        EXPECT_EQ(encoded.bytes, expected) << "offset " << row.offset;
    }
}

TEST_F(DataFilesTest, ATextEndsAtTheFirstZeroByteAndLosesItsBlanks) {
    std::string bytes = handWrittenRecord();
    bytes.replace(57, 8, "Two  \0zz"s);
    EXPECT_EQ(decodeRecord(westernPage(), bytes).Titolo, u"Two");
}

TEST_F(DataFilesTest, TheKindIsFoundAnywhereInTheIntervalField) {
    std::string bytes = handWrittenRecord();
    bytes.replace(37, 10, " eachday  ");
    EXPECT_EQ(decodeRecord(westernPage(), bytes).interval, u"eachday");
}

TEST_F(DataFilesTest, ATitleIsCutAtItsWidthAndThatIsReported) {
    NoteRecord note;
    note.Titolo = Text(128, u'x');
    EXPECT_FALSE(encodeRecord(westernPage(), note).lost);
    note.Titolo += u'y';
    const EncodedRecord cut = encodeRecord(westernPage(), note);
    EXPECT_TRUE(cut.lost);
    EXPECT_FALSE(cut.unmappable);
    EXPECT_EQ(decodeRecord(westernPage(), cut.bytes).Titolo, Text(128, u'x'));
}

TEST_F(DataFilesTest, ADoubleByteCharacterIsNeverCutInHalf) {
    NoteRecord note;
    note.Titolo = u"x" + Text(64, u'\u3042');
    const EncodedRecord cut = encodeRecord(kanaPage(), note);
    EXPECT_EQ(decodeRecord(kanaPage(), cut.bytes).Titolo, u"x" + Text(63, u'\u3042'));
    EXPECT_EQ(cut.bytes[57 + 127], ' ');
}

TEST_F(DataFilesTest, ACharacterOutsideTheCodePageIsReported) {
    NoteRecord note;
    note.Titolo = u"\u0416";
    const EncodedRecord encoded = encodeRecord(westernPage(), note);
    EXPECT_TRUE(encoded.lost);
    EXPECT_TRUE(encoded.unmappable);
    EXPECT_EQ(decodeRecord(westernPage(), encoded.bytes).Titolo, u"?");
}

}  // namespace
