// Arbitrary bytes as the three data files, the file of an interrupted upgrade, a draft and the registry's
// values: a whole start over them, in either store, with the import, the upgrade and the alarms that they
// lead to.
#include <cstdint>
#include <cstdlib>

#include "alarm/AlarmRule.h"
#include "storage/Draft.h"
#include "storage/NoteStore.h"
#include "tests/storage/MemoryFiles.h"
#include "tests/storage/MemorySettings.h"
#include "tests/support/TestCodePages.h"

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// Takes the input apart; what is missing is zero or empty.
struct Input {
    std::string_view bytes;

    unsigned byte() {
        if (bytes.empty()) return 0;
        const unsigned value = testing_pages::valueOf(bytes.front());
        bytes.remove_prefix(1);
        return value;
    }
    /// A piece of bytes, its length first.
    std::string piece() {
        const std::size_t length = std::min<std::size_t>(byte() * 256 + byte(), bytes.size());
        std::string result(bytes.substr(0, length));
        bytes.remove_prefix(length);
        return result;
    }
    Text text() {
        Text result(byte() % 24, u' ');
        for (char16_t& c : result)
            c = static_cast<char16_t>(byte());
        return result;
    }
};

std::array<Text, kWeekdays> weekdayKeys() {
    return {u"w.Mon", u"w.Tue", u"w.Wed", u"w.Thu", u"w.Fri", u"w.Sat", u"w.Sun"};
}

void loadAll(NoteStore& store, const GlobalSettings& settings, int count) {
    const Now now{instantOf({2026, 6, 15}, {12, 0, 0}), 0};
    for (int number = 1; number <= count; ++number) {
        NoteRecord record;
        store.load(number, record, settings);
        AlarmRule rule = ruleFromRecord(record);
        if (!armAfterLoad(rule, now)) continue;
        storeRule(record, rule);
        require(store.set(number, record, {NoteField::AlarmDate, NoteField::AlarmTime}));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{{reinterpret_cast<const char*>(data), size}};
    MemoryFiles folder;
    MemorySettings registry;
    const unsigned choice = input.byte();
    const unsigned present = input.byte();
    constexpr TextView kNames[] = {kHeaderFile,      kNoteFile,        kMemoFile, u"KARDEL121.DAT",
                                   u"KARDEL122.DAT", u"KARDEL125.DAT", kDraftFile};
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if ((present >> i & 1) != 0) folder.content[Text(kNames[i])] = input.piece();
    }
    const StoreParts parts{registry.settings(), weekdayKeys(), folder.files(),
                           (choice & 1) != 0 ? westernPage() : kanaPage()};
    const RegistryNotes sections{parts.settings, parts.weekdayKeys};
    NoteStore store(parts);
    registry.put(u"setting", u"UseRegistry", (choice & 2) != 0 ? u"True" : u"False");
    for (const TextView key : {u"count", u"ImportDAT", u"defaultwidth", u"AlignAll"}) {
        if ((input.byte() & 1) != 0) registry.put(u"setting", key, input.text());
    }
    for (unsigned values = input.byte() % 60; values > 0 && !input.bytes.empty(); --values) {
        const auto field = static_cast<NoteField>(input.byte() % kNoteFieldCount);
        const Text section = noteSection(1 + static_cast<int>(input.byte() % 4));
        registry.put(section, sections.keyOf(field), input.text());
    }

    StartQuestions questions;
    questions.deleteLocalFiles = [choice] { return (choice & 4) != 0; };
    GlobalSettings settings;
    const auto before = folder.content;
    const StartState first = store.start(settings, questions);
    if (!first.usable) {
        require(folder.content == before);
        return 0;
    }
    require(first.Count >= 1 && first.Count <= kMaxNotes);
    const auto left = folder.content.find(Text(kDraftFile));
    const std::vector<Draft> drafts =
        decodeDrafts(left == folder.content.end() ? std::string() : left->second);
    require(decodeDrafts(encodeDrafts(drafts)) == drafts);
    loadAll(store, settings, first.Count);

    // What the first start settled must last: the second finds as many notes and rewrites no file.
    const auto settled = folder.content;
    NoteStore again(parts);
    const StartState second = again.start(settings, questions);
    require(second.usable);
    require(store.kind() != again.kind() || second.Count == first.Count);
    require(again.kind() == StoreKind::Registry || folder.content == settled);
    return 0;
}
