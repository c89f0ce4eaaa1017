#include "note/StoredNote.h"

#include <algorithm>

bool StoredNote::saved(std::span<const NoteField> fields) {
    if (record_.readOnly) return false;
    for (const NoteField field : fields) {
        if (!owes(field)) owed_.push_back(field);
    }
    const bool done = store->set(number_, record_, owed_);
    if (done) owed_.clear();
    return done;
}

void StoredNote::oweEverything() {
    owed_ = everyField();
}

bool StoredNote::owes(NoteField field) const {
    return std::find(owed_.begin(), owed_.end(), field) != owed_.end();
}

void StoredNote::saveAgain() {
    if (!owed_.empty()) save({});
}

bool StoredNote::refreshed(std::initializer_list<NoteField> fields) {
    std::vector<NoteField> wanted;
    for (const NoteField field : fields) {
        if (!owes(field)) wanted.push_back(field);
    }
    return !record_.readOnly && store->refresh(number_, record_, wanted);
}
