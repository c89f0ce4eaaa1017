// Short notations for the tests of a note's fields and drafts in its store.
#pragma once

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"
#include "tests/support/StoreName.h"

struct EitherStore : testing::TestWithParam<bool> {
    Desk desk{GetParam()};
    bool inRegistry() const { return GetParam(); }

    NoteRecord load(int number) {
        NoteRecord note;
        EXPECT_TRUE(desk.store.load(number, note, desk.global));
        return storeFree(note);
    }
    void restart() { desk.open(inRegistry()); }
};

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
