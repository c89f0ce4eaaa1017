// Damaged, cut and hostile stores: every start succeeds, and work goes on.
#include <gtest/gtest.h>

#include "tests/storage/Start.h"

namespace {

/// Loads what a start would, then does everything once: no input may crash, hang or fill the disk.
void workThrough(Desk& desk) {
    std::vector<NoteRecord> notes = desk.loadAll();
    if (notes.empty()) notes.resize(1);
    for (std::size_t i = 0; i < notes.size() && i < 3; ++i)
        EXPECT_TRUE(desk.store.set(static_cast<int>(i) + 1, notes[i], everyField()));
    NoteRecord fresh;
    fresh.Titolo = u"fresh";
    fresh.Nota = u"fresh body";
    if (notes.size() < static_cast<std::size_t>(kMaxNotes)) {
        notes.push_back(fresh);
        const int number = static_cast<int>(notes.size());
        EXPECT_TRUE(desk.store.create(number, notes.back()));
        NoteRecord loaded;
        desk.store.load(number, loaded, desk.global);
        EXPECT_EQ(loaded.Nota, u"fresh body");
    }
    notes.erase(notes.begin());
    const std::vector<NoteRecord*> remaining = pointersTo(notes);
    EXPECT_TRUE(desk.store.remove(1, remaining, desk.global));
    EXPECT_LE(desk.file(kMemoFile).size(), 200 * kMemoLength);
}

Desk& seeded(Desk& desk, int count) {
    std::vector<NoteRecord> notes = sampleNotes(count);
    desk.createAll(notes);
    return desk;
}

TEST(HostileFiles, RecordsOfEveryLength) {
    for (std::size_t length = 0; length <= 3 * kRecordLength + 1; ++length) {
        Desk desk(false);
        seeded(desk, 4);
        const std::vector<NoteRecord> whole = desk.loadAll();
        desk.file(kNoteFile).resize(length);
        desk.open(false);
        const std::vector<NoteRecord> loaded = desk.loadAll();
        EXPECT_EQ(loaded.size(), (length + kRecordLength - 1) / kRecordLength);
        for (std::size_t i = 0; (i + 1) * kRecordLength <= length; ++i)
            EXPECT_EQ(loaded[i], whole[i]) << length;
        workThrough(desk);
    }
}

TEST(HostileFiles, BodiesOfEveryLength) {
    for (std::size_t length = 0; length <= 3 * kMemoLength + 1; ++length) {
        Desk desk(false);
        seeded(desk, 3);
        desk.file(kMemoFile).resize(length);
        desk.open(false);
        const std::vector<NoteRecord> loaded = desk.loadAll();
        ASSERT_EQ(loaded.size(), 3U);
        for (std::size_t i = 0; i < 3; ++i) {
            const Text body = u"Body " + decimal(static_cast<int>(i) + 1) + u"\r\nsecond line";
            const std::size_t begin = i * kMemoLength;
            const std::size_t there = length < begin ? 0 : length - begin;
            // What is left of a body is shown, without the blanks at its end.
            EXPECT_EQ(loaded[i].Nota, withoutTrailingBlanks(TextView(body).substr(0, there))) << length;
        }
        if (length % 64 <= 1) workThrough(desk);
    }
}

TEST(HostileFiles, HeadersOfEveryLength) {
    for (std::size_t length = 0; length <= 3 * kHeaderLength + 1; ++length) {
        Desk desk(false);
        seeded(desk, 3);
        std::string& header = desk.file(kHeaderFile);
        header = (header + header + header + header).substr(0, length);
        desk.open(false);
        EXPECT_EQ(desk.headerCount(), length < kHeaderLength ? 1 : 3) << length;
        workThrough(desk);
    }
}

TEST(HostileFiles, RandomBytesInEachFile) {
    Dice dice(51);
    for (int round = 0; round < 1500; ++round) {
        Desk desk(false, dice.coin() ? westernPage() : kanaPage());
        seeded(desk, 1 + static_cast<int>(dice.roll(3)));
        const TextView name = round % 3 == 0 ? kHeaderFile : round % 3 == 1 ? kNoteFile : kMemoFile;
        desk.file(name) = dice.bytes(dice.roll(4000));
        if (name == kHeaderFile && dice.coin()) desk.file(name)[0] = 2;
        desk.open(false, dice.coin() ? westernPage() : utf8Page());
        workThrough(desk);
    }
}

TEST(HostileFiles, RandomBytesInAllFilesAtOnce) {
    Dice dice(52);
    for (int round = 0; round < 500; ++round) {
        Desk desk(false);
        for (const TextView name : {kHeaderFile, kNoteFile, kMemoFile}) {
            desk.file(name) = dice.bytes(dice.roll(3000));
        }
        desk.open(false);
        workThrough(desk);
    }
}

Text wildText(Dice& dice) {
    if (dice.roll(3) == 0) {
        return dice.oneOf({u"",
                           u"-1",
                           u"0",
                           u"99999999999999999999",
                           u"-2147483648",
                           u"1e308",
                           u"1e999",
                           u"0x10",
                           u"   7",
                           u"True",
                           u"FALSO",
                           u"s\u00ec",
                           u"*",
                           u"**/**/****",
                           u"31/02/2025",
                           u"99:99:99",
                           u"eachday",
                           u"eachyear",
                           u"/",
                           u"\u0131"});
    }
    Text text;
    const std::uint32_t length = dice.roll(40);
    for (std::uint32_t i = 0; i < length; ++i)
        text += static_cast<char16_t>(dice.roll(65536));
    return text;
}

TEST(HostileRegistry, RandomTextsInEveryValue) {
    Dice dice(53);
    for (int start = 0; start < 5000; ++start) {
        Desk desk(true);
        const RegistryNotes store = desk.sections();
        for (const NoteFieldRow& row : noteFields()) {
            if (dice.roll(4) != 0) desk.settings.put(u"kardel-1", store.keyOf(row.field), wildText(dice));
        }
        desk.settings.put(u"setting", u"count", wildText(dice));
        desk.settings.put(u"setting", u"UseRegistry", wildText(dice));
        const Text size = wildText(dice);
        rowOf(Setting::DefaultWidth).read(desk.global, size);
        NoteRecord note;
        ASSERT_TRUE(desk.store.load(1, note, desk.global));
        EXPECT_GE(note.alarmweekday, 0);
        EXPECT_LE(note.alarmweekday, 8);
        EXPECT_EQ(note.Titolo, store.settings.get(u"kardel-1", u"Titolo").text);
        // What was read is written in its canonical form, and does not change after that.
        ASSERT_TRUE(desk.store.set(1, note, everyField()));
        NoteRecord once;
        ASSERT_TRUE(desk.store.load(1, once, desk.global));
        ASSERT_TRUE(desk.store.set(1, once, everyField()));
        NoteRecord twice;
        ASSERT_TRUE(desk.store.load(1, twice, desk.global));
        EXPECT_EQ(twice, once);
        if (start % 50 != 0) continue;
        desk.open(false);
        static_cast<void>(desk.import(leadingInt32(desk.settings.text(u"setting", u"count"))));
        workThrough(desk);
    }
}

/// Texts that a user, another program or a damaged disk may leave in any value.
Text hostileText(Dice& dice) {
    const std::uint32_t kind = dice.roll(4);
    if (kind == 0)
        return dice.oneOf({u"", u"True", u"-1", u"0", u"1e999", u"-1e999", u"99999999999999999999"});
    if (kind == 1) return decimal(dice.number());
    Text text;
    for (std::uint32_t i = dice.roll(40); i > 0; --i)
        text += static_cast<char16_t>(dice.roll(65535) + 1);
    if (kind == 3 && dice.roll(20) == 0) text = Text(100000, u'9');
    return text;
}

TEST(HostileStores, LetFiveThousandStartsSettleOnSomethingUsable) {
    Dice dice(20260101);
    for (int round = 0; round < 5000; ++round) {
        Start start;
        for (const TextView key :
             {u"AlignAll", u"EasyAlign", u"RestoreWhenPlay", u"DontDeleteWhenPlay", u"UseRegistry", u"count",
              u"ImportDAT", u"defaultwidth", u"defaultheight"}) {
            if (dice.coin()) start.set(key, hostileText(dice));
        }
        for (int number = 1; number <= 3; ++number) {
            for (const NoteFieldRow& row : noteFields()) {
                if (row.key != nullptr && dice.coin()) {
                    start.desk.settings.put(noteSection(number), row.key, hostileText(dice));
                }
            }
        }
        for (const TextView name : {kHeaderFile, kNoteFile, kMemoFile}) {
            if (dice.roll(3) == 0) start.desk.file(name) = dice.bytes(dice.roll(2500));
        }
        start.answerDelete = dice.coin();
        start.run();
        ASSERT_GE(start.state.Count, 1);
        ASSERT_LE(start.state.Count, kMaxNotes);
        if (!start.state.usable) continue;
        for (int number = 1; number <= start.state.Count; ++number) {
            NoteRecord note;
            start.desk.store.load(number, note, start.settings);
            ASSERT_LE(note.Titolo.size(), 100000U);
        }
    }
}

}  // namespace
