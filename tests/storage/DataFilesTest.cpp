// Header, records and bodies in a data folder that may refuse, and copies from the registry.
#include "storage/DataFiles.h"

#include <gtest/gtest.h>

#include "tests/storage/DataFilesCases.h"

namespace {

using namespace std::string_literals;

// --- Header file -----------------------------------------------------------------------------------------

TEST_F(DataFilesTest, AMissingHeaderInRegistryModeCreatesNoFile) {
    DataHeader header;
    header.count = 9;
    EXPECT_EQ(data.ReadHeader(header, true), IoStatus::Absent);
    EXPECT_EQ(header.count, 1);
    EXPECT_EQ(header.flag, -1);
    EXPECT_TRUE(folder.content.empty());
}

TEST_F(DataFilesTest, AMissingHeaderInFileModeIsCreated) {
    DataHeader header;
    EXPECT_EQ(data.ReadHeader(header, false), IoStatus::Absent);
    EXPECT_EQ(file(kHeaderFile), "\x01\x00\x00\x00\x00\x00\x0A\xD7\xA3\x3F"s);
}

TEST_F(DataFilesTest, ALostHeaderCountsTheRecordsThatAreThere) {
    file(kNoteFile) = std::string(12 * kRecordLength, 'x');
    DataHeader header;
    static_cast<void>(data.ReadHeader(header, false));
    EXPECT_EQ(header.count, 12);
    EXPECT_EQ(file(kHeaderFile)[0], 12);
}

TEST_F(DataFilesTest, NoHeaderIsMadeWhileTheRecordsCannotBeCounted) {
    folder.unseen.insert(Text(kNoteFile));
    DataHeader header;
    header.count = 9;
    EXPECT_EQ(data.ReadHeader(header, false), IoStatus::Failed);
    EXPECT_EQ(header.count, 9);
    EXPECT_FALSE(folder.content.contains(Text(kHeaderFile)));
}

TEST_F(DataFilesTest, AHeaderThatCannotBeReadLeavesTheOneInMemory) {
    for (const std::size_t length : {0U, 9U}) {
        file(kHeaderFile) = std::string(length, '\1');
        DataHeader header;
        header.count = 9;
        EXPECT_EQ(data.ReadHeader(header, false), IoStatus::Failed);
        EXPECT_EQ(header.count, 9);
        EXPECT_EQ(file(kHeaderFile).size(), length);
    }
}

TEST_F(DataFilesTest, WritingTheHeaderStampsTheProgramsVersion) {
    DataHeader header;
    header.count = 3;
    header.version = 1.1F;
    ASSERT_TRUE(data.WriteHeader(header));
    DataHeader read;
    EXPECT_EQ(data.ReadHeader(read, false), IoStatus::Done);
    EXPECT_EQ(read.version, kProgramVersion);
    EXPECT_EQ(read.count, 3);
}

// --- Records ---------------------------------------------------------------------------------------------

TEST_F(DataFilesTest, ARecordBeyondTheEndIsZero) {
    file(kNoteFile) = handWrittenRecord();
    NoteRecord note;
    note.Titolo = u"old";
    EXPECT_EQ(data.GetNoteRecord(2, note), IoStatus::Absent);
    EXPECT_EQ(note.Titolo, u"");
    EXPECT_EQ(note.backcolor, 0);
    EXPECT_EQ(note.width, 0);
    EXPECT_EQ(note.memo, 0);
    EXPECT_FALSE(note.topmost);
}

TEST_F(DataFilesTest, ARecordOfAMissingFileOrABadNumberIsZero) {
    NoteRecord note;
    EXPECT_EQ(data.GetNoteRecord(1, note), IoStatus::Absent);
    EXPECT_EQ(note.backcolor, 0);
    EXPECT_EQ(data.GetNoteRecord(0, note), IoStatus::Absent);
    EXPECT_EQ(data.GetNoteRecord(-5, note), IoStatus::Absent);
    EXPECT_FALSE(data.PutNoteRecord(0, note));
}

TEST_F(DataFilesTest, AFailedReadIsNotData) {
    file(kNoteFile) = handWrittenRecord();
    folder.locked.insert(Text(kNoteFile));
    NoteRecord note;
    note.Titolo = u"kept";
    EXPECT_EQ(data.GetNoteRecord(1, note), IoStatus::Failed);
    EXPECT_EQ(note.Titolo, u"kept");
}

TEST_F(DataFilesTest, RecordTwoIsTheSecondTwoHundredFifteenBytes) {
    ASSERT_TRUE(data.PutNoteRecord(2, handWrittenNote()));
    EXPECT_EQ(file(kNoteFile), std::string(kRecordLength, '\0') + handWrittenRecord());
    NoteRecord note;
    EXPECT_EQ(data.GetNoteRecord(2, note), IoStatus::Done);
    EXPECT_EQ(note, handWrittenNote());
}

TEST_F(DataFilesTest, ARecordCutShortKeepsTheFieldsItHas) {
    file(kNoteFile) = handWrittenRecord().substr(0, 190);
    NoteRecord note;
    EXPECT_EQ(data.GetNoteRecord(1, note), IoStatus::Done);
    EXPECT_EQ(note.Titolo, u"Caf\u00e9");
    EXPECT_EQ(note.width, 0);
}

// --- Bodies ----------------------------------------------------------------------------------------------

TEST_F(DataFilesTest, ABodyWithoutANumberGoesToTheEnd) {
    MemoResult result = data.WriteMemo(0, u"first");
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.recordNumber, 1);
    static_cast<void>(data.WriteMemo(0, u"second"));
    static_cast<void>(data.WriteMemo(-7, u"third"));
    result = data.WriteMemo(0, u"fourth");
    EXPECT_EQ(result.recordNumber, 4);
    EXPECT_EQ(file(kMemoFile).size(), 4 * kMemoLength);
    Text body;
    EXPECT_EQ(data.ReadMemo(3, body), IoStatus::Done);
    EXPECT_EQ(body, u"third");
}

TEST_F(DataFilesTest, AWildNumberNeverMakesAHugeFile) {
    const MemoResult result = data.WriteMemo(2000000000, u"body");
    EXPECT_TRUE(result.done);
    EXPECT_EQ(result.recordNumber, 1);
    EXPECT_EQ(file(kMemoFile).size(), kMemoLength);
}

TEST_F(DataFilesTest, ABodyIsPaddedWithBlanks) {
    static_cast<void>(data.WriteMemo(1, u"caf\u00e9"));
    EXPECT_EQ(file(kMemoFile), "caf\xE9"s + std::string(1020, ' '));
}

TEST_F(DataFilesTest, ABodyOfTheFullLengthSurvivesAndOneMoreCharacterIsLost) {
    const Text full = Text(1023, u'x') + u'z';
    MemoResult result = data.WriteMemo(1, full);
    EXPECT_FALSE(result.lost);
    Text body;
    data.ReadMemo(1, body);
    EXPECT_EQ(body, full);
    result = data.WriteMemo(1, full + u'!');
    EXPECT_TRUE(result.lost);
    EXPECT_FALSE(result.unmappable);
    data.ReadMemo(1, body);
    EXPECT_EQ(body, full);
}

TEST_F(DataFilesTest, BlanksAtTheEndOfABodyAreLostOnReading) {
    static_cast<void>(data.WriteMemo(1, u"  two \r\n lines   "));
    Text body;
    data.ReadMemo(1, body);
    EXPECT_EQ(body, u"  two \r\n lines");
}

TEST_F(DataFilesTest, ABodyNumberOutsideTheFileReadsAsNothing) {
    static_cast<void>(data.WriteMemo(1, u"only"));
    for (const std::int32_t number : {0, -1, 2, 2000000000}) {
        Text body = u"old";
        EXPECT_EQ(data.ReadMemo(number, body), IoStatus::Absent) << number;
        EXPECT_EQ(body, u"");
    }
}

TEST_F(DataFilesTest, ABodyThatCannotBeWrittenIsReported) {
    folder.changes->allFail = true;
    EXPECT_FALSE(data.WriteMemo(1, u"body").done);
    folder.changes->allFail = false;
    folder.unseen.insert(Text(kMemoFile));
    EXPECT_FALSE(data.WriteMemo(1, u"body").done);
}

// --- Files -----------------------------------------------------------------------------------------------

TEST_F(DataFilesTest, DeletingTheDataFilesLeavesTheHeader) {
    file(kHeaderFile) = file(kNoteFile) = file(kMemoFile) = "x";
    data.DeleteDataFiles();
    EXPECT_TRUE(data.exists(kHeaderFile));
    EXPECT_FALSE(data.exists(kNoteFile));
    EXPECT_FALSE(data.exists(kMemoFile));
}

TEST_F(DataFilesTest, AFileThatCannotBeSeenDoesNotCountAsMissing) {
    folder.unseen.insert(Text(kNoteFile));
    EXPECT_TRUE(data.exists(kNoteFile));
}

TEST_F(DataFilesTest, AShortLastRecordCountsAsANoteButNotAsABody) {
    for (std::size_t length = 0; length <= 3 * kRecordLength + 1; ++length) {
        file(kNoteFile) = std::string(length, 'x');
        EXPECT_EQ(data.noteRecords().bytes, (length + 214) / 215);
    }
    for (std::size_t length = 0; length <= 3 * kMemoLength + 1; ++length) {
        file(kMemoFile) = std::string(length, 'x');
        EXPECT_EQ(data.memoRecords().bytes, length / 1024);
    }
}

TEST_F(DataFilesTest, RecordsOfAnImagePointToTheirOwnBodies) {
    std::string dat;
    std::string memo;
    for (NoteRecord note : sampleNotes(3))
        EXPECT_TRUE(AppendRecordPair(westernPage(), dat, memo, note));
    file(kNoteFile) = dat;
    file(kMemoFile) = memo;
    EXPECT_EQ(dat.size(), 3 * kRecordLength);
    EXPECT_EQ(memo.size(), 3 * kMemoLength);
    for (int n = 1; n <= 3; ++n) {
        NoteRecord note;
        data.GetNoteRecord(n, note);
        EXPECT_EQ(note.memo, n);
        data.ReadMemo(note.memo, note.Nota);
        EXPECT_EQ(note.Nota, u"Body " + decimal(n) + u"\r\nsecond line");
    }
}

// --- Copies from the registry ----------------------------------------------------------------------------

struct CopyFromRegistry : testing::Test {
    MemorySettings memory;
    RegistryNotes registry{memory.settings(), englishWeekdayKeys()};

    NoteRecord copied(const Text& interval) {
        memory.put(u"kardel-1", u"alarmdate", interval.empty() ? u"01/02/2030" : u"*");
        memory.put(u"kardel-1", u"interval", interval);
        memory.put(u"kardel-1", u"alarmday", u"09");
        memory.put(u"kardel-1", u"alarmdaymonth", u"24/12");
        NoteRecord note;
        EXPECT_EQ(CopyRegistryNoteToRecord(registry, 0, note), IoStatus::Done);
        EXPECT_EQ(note.interval, interval);
        return note;
    }
};

TEST_F(CopyFromRegistry, KeepsTheDaysThatThePatternUses) {
    EXPECT_EQ(copied(u"eachday").alarmday, u"");
    EXPECT_EQ(copied(u"eachday").alarmdaymonth, u"");
    EXPECT_EQ(copied(u"eachmonth").alarmday, u"09");
    EXPECT_EQ(copied(u"eachmonth").alarmdaymonth, u"");
    EXPECT_EQ(copied(u"eachyear").alarmday, u"");
    EXPECT_EQ(copied(u"eachyear").alarmdaymonth, u"24/12");
    EXPECT_EQ(copied(u"").alarmday, u"");
    EXPECT_EQ(copied(u"").alarmdaymonth, u"");
}

TEST_F(CopyFromRegistry, AMissingSizeOrColourStaysTheDefault) {
    NoteRecord note;
    EXPECT_EQ(CopyRegistryNoteToRecord(registry, 0, note), IoStatus::Absent);
    EXPECT_EQ(note.width, 0);
    EXPECT_EQ(note.height, 0);
    EXPECT_EQ(note.backcolor, kDesignColor);
}

TEST_F(CopyFromRegistry, AFailedReadLeavesTheRecordAlone) {
    memory.locked.insert(u"kardel-1");
    NoteRecord note;
    note.Titolo = u"kept";
    EXPECT_EQ(CopyRegistryNoteToRecord(registry, 0, note), IoStatus::Failed);
    EXPECT_EQ(note.Titolo, u"kept");
}

}  // namespace
