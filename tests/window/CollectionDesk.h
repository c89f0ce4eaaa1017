// What the tests of the collection's commands look up on a desk.
#pragma once

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
