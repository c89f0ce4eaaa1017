// Saves and reads a note's fields. A field that the store refused is saved again with the next one.
#pragma once

#include <initializer_list>
#include <span>
#include <vector>

#include "storage/NoteStore.h"

class StoredNote {
public:
    /// `record` and `number` are the note's own and must exist as long as this.
    StoredNote(NoteRecord& record, const int& number) : record_(record), number_(number) {}
    StoredNote(const StoredNote&) = delete;
    StoredNote& operator=(const StoredNote&) = delete;

    /// Saves fields of the record, together with those that were refused before. True when the store took
    /// them all. A note that could not be read is never written.
    [[nodiscard]] bool saved(std::span<const NoteField> fields);
    [[nodiscard]] bool saved(std::initializer_list<NoteField> fields) {
        return saved(std::span(fields.begin(), fields.size()));
    }
    /// The same when nothing depends on the result: what is refused stays in memory, and the user is told.
    void save(std::span<const NoteField> fields) { static_cast<void>(saved(fields)); }
    void save(std::initializer_list<NoteField> fields) { static_cast<void>(saved(fields)); }
    /// The store holds nothing of the note yet, so the next save writes all of it.
    void oweEverything();
    /// Whether the store has refused a field, which still has to be saved.
    bool owes(NoteField field) const;
    /// Tries again to store what the store refused.
    void saveAgain();
    /// Takes over fields as they are stored now, except those that the store refused, which are only in
    /// memory. False when they cannot be read.
    [[nodiscard]] bool refreshed(std::initializer_list<NoteField> fields);

    NoteStore* store = nullptr;

private:
    NoteRecord& record_;
    const int& number_;
    std::vector<NoteField> owed_;
};
