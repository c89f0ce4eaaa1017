// Short notations for the tests of a note's fields and drafts in its store.
#pragma once

#include "tests/storage/Samples.h"

inline constexpr NoteField kTitle = NoteField::Titolo;
inline constexpr NoteField kBody = NoteField::Nota;

/// The typed text that a start finds.
inline std::vector<Text> typedIn(Desk& desk, bool useRegistry) {
    desk.open(useRegistry);
    std::vector<NoteRecord> notes = desk.loadAll();
    std::vector<Text> typed;
    for (const Draft& draft : desk.store.takeDrafts(pointersTo(notes)).drafts)
        typed.push_back(draft.text);
    return typed;
}
