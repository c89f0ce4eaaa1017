// The removal of one note, killed at any change if a test wants it, and what the next start finds.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/storage/Samples.h"

inline constexpr int kMostNotes = 6;

/// A desk of notes, one of which is to be removed.
struct Removal {
    Desk desk;
    bool inRegistry;
    int number;
    std::vector<NoteRecord> notes;      ///< as loaded
    std::vector<NoteRecord> remaining;  ///< without the one that is removed

    Removal(bool registry, int total, int which) : desk(registry), inRegistry(registry), number(which) {
        std::vector<NoteRecord> made = sampleNotes(total);
        desk.createAll(made);
        desk.settings.put(u"setting", u"ImportDAT", u"1");
        desk.open(registry);
        notes = desk.loadAll();
        remaining = notes;
        remaining.erase(remaining.begin() + (which - 1));
    }

    bool run() {
        const std::vector<NoteRecord*> pointers = pointersTo(remaining);
        return desk.store.remove(number, pointers, desk.global);
    }

    /// What the next start finds.
    std::vector<NoteRecord> found() {
        desk.open(inRegistry);
        std::vector<NoteRecord> loaded = desk.loadAll();
        for (NoteRecord& note : loaded)
            note = storeFree(note);
        return loaded;
    }

    void expectDense() {
        std::vector<NoteRecord> expected;
        for (const NoteRecord& note : remaining)
            expected.push_back(storeFree(note));
        expectDense(expected);
    }

    void expectDense(const std::vector<NoteRecord>& expected) {
        if (remaining.empty()) {
            EXPECT_FALSE(desk.hasFile(kNoteFile));
            EXPECT_FALSE(desk.hasFile(kMemoFile));
            EXPECT_EQ(desk.settings.find(u"kardel-1"), nullptr);
            return;
        }
        EXPECT_EQ(found(), expected);
        EXPECT_EQ(desk.count(), static_cast<int>(remaining.size()));
        if (inRegistry) {
            EXPECT_EQ(desk.settings.content.size(), remaining.size() + 1);  // and "setting"
            EXPECT_EQ(desk.settings.find(u"setting", u"places"), nullptr);
        } else {
            EXPECT_EQ(desk.file(kNoteFile).size(), remaining.size() * kRecordLength);
            EXPECT_EQ(desk.file(kMemoFile).size(), remaining.size() * kMemoLength);
        }
    }

    void expectNoneLost(const std::string& where) {
        const std::vector<NoteRecord> loaded = found();
        for (const NoteRecord& note : remaining) {
            NoteRecord wanted = storeFree(note);
            wanted.readOnly = false;
            EXPECT_NE(std::find(loaded.begin(), loaded.end(), wanted), loaded.end())
                << where << ": lost the note with x " << note.x;
        }
        EXPECT_LE(loaded.size(), remaining.size() + 1) << where;
    }
};

/// Runs the removal and ends the program at that change. False when it was finished before.
inline bool endedAt(Removal& removal, int at) {
    removal.desk.changes->endAt = at;
    try {
        removal.run();
    } catch (const ProgramEnd&) {
        return true;
    }
    return false;
}
