// The stores at every single change that an operation makes, and what a start over them finds.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "tests/storage/Samples.h"

/// Both stores as they stand at one moment.
struct Image {
    std::map<Text, std::string> files;
    std::vector<MemorySettings::Section> settings;
};

struct Stores {
    MemoryFiles folder;
    MemorySettings registry;
    SharedChanges changes = std::make_shared<Changes>();

    Stores() { share(); }
    explicit Stores(const Image& image) {
        share();
        folder.content = image.files;
        registry.content = image.settings;
    }
    Stores(const Stores&) = delete;
    Stores& operator=(const Stores&) = delete;

    Image image() const { return {folder.content, registry.content}; }

    StoreParts parts() { return {registry.settings(), englishWeekdayKeys(), folder.files(), westernPage()}; }
    void seedNotes(StoreKind kind, std::vector<NoteRecord> notes) {
        NoteStore store(parts());
        store.begin(kind);
        for (std::size_t i = 0; i < notes.size(); ++i)
            EXPECT_TRUE(store.create(static_cast<int>(i) + 1, notes[i]));
    }
    void seedFiles(const std::vector<NoteRecord>& notes) { seedNotes(StoreKind::Files, notes); }
    void seedRegistry(const std::vector<NoteRecord>& notes) { seedNotes(StoreKind::Registry, notes); }
    /// A settled desk of `notes` in one store, as an earlier start left it.
    void seed(bool useRegistry, const std::vector<NoteRecord>& notes);

private:
    void share() {
        folder.changes = changes;
        registry.changes = changes;
    }
};

/// The program over the stores, without its windows.
struct Program {
    Stores& stores;
    NoteStore store;
    GlobalSettings settings;
    StartState state;
    std::vector<NoteRecord> notes;
    int told = 0;   ///< how often the user was told that something could not be saved
    int asked = 0;  ///< how often about left-over files

    explicit Program(Stores& over, bool deleteLeftOver = false) : stores(over) {
        store.connect(stores.parts());
        store.saveFailed = [this] { ++told; };
        StartQuestions questions;
        questions.deleteLocalFiles = [this, deleteLeftOver] {
            ++asked;
            return deleteLeftOver;
        };
        questions.saveFailed = [this] { ++told; };
        questions.cannotRead = [this] { ++told; };
        state = store.start(settings, questions);
        if (!state.usable) return;
        notes.resize(static_cast<std::size_t>(state.Count));
        for (std::size_t i = 0; i < notes.size(); ++i)
            store.load(static_cast<int>(i) + 1, notes[i], settings);
        store.settle(pointersTo(notes), settings);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool set(int number, std::span<const NoteField> fields) {
        return store.set(number, notes[static_cast<std::size_t>(number - 1)], fields);
    }
    bool create(const NoteRecord& note) {
        notes.push_back(note);
        return store.create(static_cast<int>(notes.size()), notes.back());
    }
    bool remove(int number) {
        notes.erase(notes.begin() + (number - 1));
        return store.remove(number, pointersTo(notes), settings);
    }
    bool switchTo(StoreKind kind) {
        return store.switchTo(kind, pointersTo(notes), settings) == Switched::Done;
    }
};

inline void Stores::seed(bool useRegistry, const std::vector<NoteRecord>& notes) {
    registry.put(u"setting", u"UseRegistry", boolText(useRegistry));
    if (useRegistry) {
        seedRegistry(notes);
    } else {
        seedFiles(notes);
    }
    const Program settled(*this);
}

/// The stores ahead of each change that `run` makes, and after the last.
inline std::vector<Image> everyPoint(Changes& changes, const std::function<Image()>& image,
                                     const std::function<void()>& run) {
    std::vector<Image> points;
    changes.before = [&] { points.push_back(image()); };
    run();
    changes.before = [] {};
    points.push_back(image());
    return points;
}

inline std::vector<Image> everyPoint(Stores& stores, const std::function<void()>& run) {
    return everyPoint(
        *stores.changes, [&] { return stores.image(); }, run);
}

inline std::vector<NoteRecord> storeFree(const std::vector<NoteRecord>& notes) {
    std::vector<NoteRecord> result;
    for (const NoteRecord& note : notes)
        result.push_back(storeFree(note));
    return result;
}

/// The notes that a start over an image finds.
inline std::vector<NoteRecord> foundIn(const Image& image, bool deleteLeftOver = false) {
    Stores stores(image);
    const Program program(stores, deleteLeftOver);
    EXPECT_TRUE(program.state.usable);
    EXPECT_EQ(program.told, 0);
    std::vector<NoteRecord> found = storeFree(program.notes);
    // What the first start repaired or finished must not change at the second.
    const Program again(stores, deleteLeftOver);
    EXPECT_EQ(storeFree(again.notes), found);
    return found;
}

struct Tally {
    int killed = 0;
    int failed = 0;
    int lost = 0;
};
inline Tally tally;

/// Prints at the end of the run what was tried.
class Counted : public testing::Environment {
public:
    void TearDown() override {
        if (tally.killed + tally.failed == 0) return;
        std::printf("%d points killed, %d calls failed, %d notes lost\n", tally.killed, tally.failed,
                    tally.lost);
    }
};
inline const testing::Environment* const kCounted = testing::AddGlobalTestEnvironment(new Counted);
