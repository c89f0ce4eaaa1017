// What the tests of the collection's commands look up on a desk.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "support/Number.h"
#include "tests/window/MenuDesk.h"

inline std::vector<NoteRecord> manyNotes(int count) {
    std::vector<NoteRecord> notes;
    for (int i = 1; i <= count; ++i)
        notes.push_back(plainNote(u"n" + decimal(i), 300 * i, 150 * i));
    return notes;
}

/// The number of notes that a start would find.
inline int countedNotes(TestNotes& desk) {
    if (desk.desk->store.kind() == StoreKind::Files) {
        DataHeader header;
        decodeHeader(desk.folder.content[Text(kHeaderFile)], header);
        return header.count;
    }
    const Text* const count = desk.registry.find(u"setting", u"count");
    return count == nullptr ? 0 : static_cast<int>(leadingInt32(*count));
}

/// A desk on which notes 1 and 3 ring, both with an alarm that rings once.
inline std::unique_ptr<TestNotes> ringing(bool useRegistry, bool keepThem) {
    GlobalSettings settings;
    settings.DontDeleteWhenPlay = keepThem;
    std::vector<NoteRecord> notes = manyNotes(4);
    for (const std::size_t at : {std::size_t{0}, std::size_t{2}}) {
        notes[at].alarmdate = u"15/06/2026";
        notes[at].alarmtime = u"12:00:10";
    }
    auto desk = std::make_unique<TestNotes>(useRegistry, std::move(notes), settings);
    desk->clock.at = instantOf({2026, 6, 15}, {12, 0, 11});
    for (const int n : {1, 3})
        desk->note(n).tmr_Timer();
    return desk;
}
