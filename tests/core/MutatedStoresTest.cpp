// A hundred thousand whole stores with something wrong in them: every start succeeds, and what was not
// damaged is shown and kept as it was.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "alarm/AlarmRule.h"
#include "tests/core/EveryPoint.h"

namespace {

constexpr int kNotes = 4;

/// How many stores are tried; the environment can set another number.
int rounds() {
    constexpr int kUsually = 100000;
    const char* const wanted = std::getenv("KARDEL_STORES");
    return wanted == nullptr ? kUsually : std::atoi(wanted);
}

/// Notes with all kinds of texts and rules, made once.
const std::vector<NoteRecord>& variety() {
    static const std::vector<NoteRecord> notes = [] {
        Dice dice(61);
        std::vector<NoteRecord> made;
        for (int i = 0; i < 64; ++i) {
            made.push_back(randomNote(dice, westernPage()));
            // Long bodies are the expensive part of a store, and no more likely to be read wrongly than short
            // ones.
            if (i % 8 != 0) made.back().Nota = withoutTrailingBlanks(made.back().Nota.substr(0, 40));
        }
        return made;
    }();
    return notes;
}

/// Damages bytes somewhere. An empty file stays empty or grows.
void mutate(Dice& dice, std::string& bytes) {
    const std::size_t at = bytes.empty() ? 0 : dice.roll(static_cast<std::uint32_t>(bytes.size()));
    const std::size_t length = std::min<std::size_t>(1 + dice.roll(40), bytes.size() - at);
    switch (dice.roll(8)) {
        case 0:
        case 1:
            if (!bytes.empty()) bytes[at] = testing_pages::byteOf(dice.roll(256));
            break;
        case 2:
            if (!bytes.empty()) bytes[at] = static_cast<char>(bytes[at] ^ 1 << dice.roll(8));
            break;
        case 3:
            bytes.replace(at, length, dice.bytes(length));
            break;
        case 4:
            bytes.replace(at, length, length, dice.coin() ? '\0' : '\xFF');
            break;
        case 5:
            bytes.resize(at);
            break;
        case 6:
            bytes += dice.bytes(dice.roll(300));
            break;
        default:
            bytes.insert(at, bytes.substr(at, length));
            break;
    }
}

/// What a start does with the notes after reading them: their rules move on to their next occurrences.
void arm(Program& program) {
    const Now now{instantOf({2026, 6, 15}, {12, 0, 0}), 0};
    for (NoteRecord& note : program.notes) {
        AlarmRule rule = ruleFromRecord(note);
        if (armAfterLoad(rule, now)) storeRule(note, rule);
    }
}

/// Fails when the work since then took over a second.
struct Stopwatch {
    std::clock_t begun = std::clock();
    ~Stopwatch() { EXPECT_LT(std::clock() - begun, CLOCKS_PER_SEC); }
};

std::string recordOf(const std::string& file, int number, std::size_t length) {
    const std::size_t at = static_cast<std::size_t>(number - 1) * length;
    return at >= file.size() ? std::string() : file.substr(at, length);
}

int tried = 0;

class CountedStores : public testing::Environment {
public:
    void TearDown() override {
        if (tried > 0) std::printf("%d mutated stores tried\n", tried);
    }
};
const testing::Environment* const kCountedStores = testing::AddGlobalTestEnvironment(new CountedStores);

TEST(MutatedStores, LocalFiles) {
    Dice dice(62);
    for (int round = 0; round < rounds() / 2; ++round, ++tried) {
        SCOPED_TRACE(round);
        const Stopwatch watch;
        Stores stores;
        stores.registry.put(u"setting", u"UseRegistry", u"False");
        std::string dat;
        std::string memo;
        std::vector<NoteRecord> whole;
        for (int i = 0; i < kNotes; ++i) {
            whole.push_back(variety()[dice.roll(64)]);
            EXPECT_TRUE(AppendRecordPair(westernPage(), dat, memo, whole.back()));
        }
        const std::string header = encodeHeader({kNotes, 0, kProgramVersion});
        auto& content = stores.folder.content;
        content = {{Text(kHeaderFile), header}, {Text(kNoteFile), dat}, {Text(kMemoFile), memo}};
        for (std::uint32_t i = 0; i <= dice.roll(3); ++i) {
            const Text name(dice.roll(8) == 0 ? kHeaderFile : dice.coin() ? kNoteFile : kMemoFile);
            if (dice.roll(50) == 0) {
                content.erase(name);
            } else if (content.contains(name)) {
                mutate(dice, content[name]);
            }
        }
        std::string& records = content[Text(kNoteFile)];
        if (dice.roll(8) == 0 && records.size() >= kRecordLength) {
            // One note points to another one's body, to no body or to one beyond the last.
            std::string first = records.substr(0, kRecordLength);
            setMemoNumber(first, static_cast<std::int32_t>(dice.roll(kNotes + 3)));
            records.replace(0, kRecordLength, first);
        }
        const auto damaged = content;
        const auto part = [](const auto& files, TextView name, int number, std::size_t length) {
            const auto found = files.find(Text(name));
            return found == files.end() ? std::string() : recordOf(found->second, number, length);
        };
        // If the header is whole, whole records are read as they are, whatever is around them.
        const auto found = damaged.find(Text(kHeaderFile));
        const bool counted = found != damaged.end() && found->second.starts_with(header);
        const auto isFine = [&](int number) {
            return counted &&
                   part(damaged, kNoteFile, number, kRecordLength) == recordOf(dat, number, kRecordLength) &&
                   part(damaged, kMemoFile, number, kMemoLength) == recordOf(memo, number, kMemoLength);
        };

        Program program(stores);
        if (!program.state.usable) {
            EXPECT_EQ(content, damaged) << "what cannot be used is left alone";
            continue;
        }
        for (int number = 1; number <= kNotes; ++number) {
            if (!isFine(number)) continue;
            ASSERT_GE(program.state.Count, number);
            EXPECT_EQ(storeFree(program.notes[static_cast<std::size_t>(number - 1)]),
                      storeFree(whole[static_cast<std::size_t>(number - 1)]));
        }
        arm(program);
        // Work on one note, even a damaged one, leaves all other sound ones alone.
        const int edited = 1 + static_cast<int>(dice.roll(static_cast<std::uint32_t>(program.state.Count)));
        program.notes[static_cast<std::size_t>(edited - 1)].Nota = u"edited";
        const std::vector<NoteField> body{NoteField::Nota};
        program.set(edited, body);
        for (int number = 1; number <= kNotes; ++number) {
            if (!isFine(number) || number == edited) continue;
            EXPECT_EQ(part(content, kNoteFile, number, kRecordLength), recordOf(dat, number, kRecordLength));
            EXPECT_EQ(part(content, kMemoFile, number, kMemoLength), recordOf(memo, number, kMemoLength));
        }
        NoteRecord note;
        program.store.load(edited, note, program.settings);
        EXPECT_EQ(note.Nota, u"edited");
    }
}

TEST(MutatedStores, FilesOfOlderReleases) {
    Dice dice(63);
    for (int round = 0; round < rounds() / 10; ++round, ++tried) {
        SCOPED_TRACE(round);
        const Stopwatch watch;
        Stores stores;
        stores.registry.put(u"setting", u"UseRegistry", u"False");
        constexpr std::pair<float, std::size_t> kLayouts[] = {{1.2F, 195}, {1.21F, 197}, {1.22F, 201}};
        const auto& [version, length] = kLayouts[dice.roll(3)];
        std::string dat;
        std::string memo;
        for (int i = 0; i < kNotes; ++i)
            EXPECT_TRUE(AppendRecordPair(westernPage(), dat, memo, variety()[dice.roll(64)]));
        std::string old;
        for (int number = 1; number <= kNotes; ++number)
            old += recordOf(dat, number, kRecordLength).substr(0, length);
        auto& content = stores.folder.content;
        content = {{Text(kHeaderFile), encodeHeader({kNotes, 0, version})},
                   {Text(kNoteFile), old},
                   {Text(kMemoFile), memo}};
        const bool headerWhole = dice.roll(4) != 0;
        if (!headerWhole) mutate(dice, content[Text(kHeaderFile)]);
        if (dice.coin()) mutate(dice, content[Text(kNoteFile)]);
        if (dice.roll(10) == 0) content[Text(u"KARDEL121.DAT")] = dice.bytes(dice.roll(5) * kRecordLength);
        const auto damaged = content;

        Program program(stores);
        EXPECT_EQ(content[Text(kMemoFile)], memo);
        if (!program.state.usable) {
            EXPECT_EQ(content, damaged) << "what cannot be used is left alone";
            continue;
        }
        arm(program);
        const std::string& mutated = damaged.at(Text(kNoteFile));
        // A file that happens to hold whole records of the present layout counts as one.
        if (!headerWhole || mutated.size() % kRecordLength == 0) continue;
        for (int number = 1; number <= kNotes; ++number) {
            if (recordOf(mutated, number, length) != recordOf(old, number, length)) continue;
            EXPECT_EQ(recordOf(content[Text(kNoteFile)], number, kRecordLength).substr(0, length),
                      recordOf(old, number, length));
        }
    }
}

Text mutated(Dice& dice, Text text) {
    const std::size_t at = text.empty() ? 0 : dice.roll(static_cast<std::uint32_t>(text.size()));
    switch (dice.roll(6)) {
        case 0:
            return {};
        case 1:
            return text.substr(0, at);
        case 2:
            return text + static_cast<char16_t>(1 + dice.roll(65535));
        case 3:
            if (!text.empty()) text[at] = static_cast<char16_t>(1 + dice.roll(65535));
            return text;
        case 4:
            return dice.oneOf(
                {u"-1", u"99999999999999999999", u"1e999", u"True", u"*", u"**/**/****", u"-2147483648"});
        default:
            return Text(dice.roll(200), static_cast<char16_t>(1 + dice.roll(300)));
    }
}

TEST(MutatedStores, Registry) {
    Dice dice(64);
    Stores seeded;
    std::vector<NoteRecord> whole;
    for (int i = 0; i < kNotes; ++i)
        whole.push_back(variety()[static_cast<std::size_t>(7 * i + 1)]);
    seeded.seed(true, whole);
    const Image fine = seeded.image();
    for (int round = 0; round < rounds() * 4 / 10; ++round, ++tried) {
        SCOPED_TRACE(round);
        const Stopwatch watch;
        Stores stores(fine);
        std::set<Text> touched;
        for (std::uint32_t i = 0; i <= dice.roll(4); ++i) {
            auto& sections = stores.registry.content;
            auto& section = sections[dice.roll(static_cast<std::uint32_t>(sections.size()))];
            touched.insert(section.name);
            if (section.values.empty()) continue;
            const std::size_t at = dice.roll(static_cast<std::uint32_t>(section.values.size()));
            const bool store = section.name == u"setting" && section.values[at].first == u"UseRegistry";
            if (store) continue;  // the other store belongs to another test
            if (dice.roll(10) == 0) {
                section.values.erase(section.values.begin() + static_cast<std::ptrdiff_t>(at));
            } else {
                section.values[at].second = mutated(dice, section.values[at].second);
            }
        }
        const std::vector<MemorySettings::Section> damaged = stores.registry.content;
        Program program(stores);
        ASSERT_TRUE(program.state.usable);
        EXPECT_TRUE(touched.contains(u"setting") || program.state.Count == kNotes);
        for (int number = 1; number <= std::min(program.state.Count, kNotes); ++number) {
            if (touched.contains(noteSection(number))) continue;
            EXPECT_EQ(program.notes[static_cast<std::size_t>(number - 1)],
                      whole[static_cast<std::size_t>(number - 1)]);
        }
        arm(program);
        const int edited = 1 + static_cast<int>(dice.roll(static_cast<std::uint32_t>(program.state.Count)));
        program.notes[static_cast<std::size_t>(edited - 1)].Nota = u"edited";
        const std::vector<NoteField> body{NoteField::Nota};
        EXPECT_TRUE(program.set(edited, body));
        for (const MemorySettings::Section& section : damaged) {
            if (section.name == u"setting" || section.name == noteSection(edited)) continue;
            // Neither the start nor the edit of another note wrote anything here.
            EXPECT_EQ(stores.registry.find(section.name)->values, section.values);
        }
    }
}

}  // namespace
