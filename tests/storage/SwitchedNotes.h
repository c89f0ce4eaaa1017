// Whole desks of notes, to be compared when they have been copied from one store to the other.
#pragma once

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"

inline std::vector<NoteRecord> storeFree(std::vector<NoteRecord> notes) {
    for (NoteRecord& note : notes)
        note = storeFree(note);
    return notes;
}

inline std::vector<NoteRecord> randomNotes(int count, unsigned seed) {
    Dice dice(seed);
    std::vector<NoteRecord> notes;
    for (int i = 0; i < count; ++i)
        notes.push_back(randomNote(dice, westernPage()));
    return notes;
}

/// Switches the store there and back, so that both are kept in step.
inline void switchThereAndBack(Desk& desk, std::vector<NoteRecord>& notes, bool useRegistry) {
    ASSERT_TRUE(useRegistry ? desk.toFiles(notes) : desk.toRegistry(notes));
    ASSERT_TRUE(useRegistry ? desk.toRegistry(notes) : desk.toFiles(notes));
}

/// What the user does between the switch and the restart: edits, a new note, a deletion.
inline void live(Desk& desk, std::vector<NoteRecord>& notes) {
    notes[0].Nota = u"edited after the switch";
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::Nota}));
    notes[1].x = 4711;
    EXPECT_TRUE(desk.store.set(2, notes[1], {NoteField::X}));
    NoteRecord fresh;
    fresh.Titolo = u"made after the switch";
    fresh.backcolor = kDesignColor;
    notes.push_back(fresh);
    EXPECT_TRUE(desk.store.create(static_cast<int>(notes.size()), notes.back()));
    notes.erase(notes.begin() + 2);
    const std::vector<NoteRecord*> remaining = pointersTo(notes);
    EXPECT_TRUE(desk.store.remove(3, remaining, desk.global));
}
