// The stores before every single change that an operation makes, and what a start over them finds.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <functional>
#include <optional>
#include <set>

#include "tests/storage/Samples.h"

/// Both stores at one moment.
struct Image {
    std::map<Text, std::string> files;
    std::vector<MemorySettings::Section> settings;

    bool operator==(const Image&) const = default;
};

/// Counts reads or flushes, and lets one of them fail.
struct Attempts {
    int made = 0;
    int failAt = -1;

    bool next() { return made++ != failAt; }
};

struct Stores {
    MemoryFiles folder;
    MemorySettings registry;
    SharedChanges changes = std::make_shared<Changes>();
    Attempts reads;
    Attempts flushes;

    Stores() { share(); }
    explicit Stores(const Image& image) {
        share();
        folder.content = image.files;
        registry.content = image.settings;
        folder.flushAll();
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
    /// A desk of `notes` in one store, as an earlier start left it.
    void seed(bool useRegistry, const std::vector<NoteRecord>& notes);

private:
    void share() {
        folder.changes = changes;
        registry.changes = changes;
        folder.mayRead = [this](TextView) { return reads.next(); };
        registry.mayRead = folder.mayRead;
        folder.mayFlush = [this](TextView) { return flushes.next(); };
    }
};

/// The program over these stores, without its windows.
struct Program {
    Stores& stores;
    NoteStore store;
    GlobalSettings settings;
    StartState state;
    std::vector<NoteRecord> notes;
    int told = 0;   ///< how often the user was told that something could not be saved
    int asked = 0;  ///< how often the user was asked about left-over files

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
        fitLists();
        for (std::size_t i = 0; i < notes.size(); ++i)
            store.load(static_cast<int>(i) + 1, notes[i], settings);
        store.settle(pointersTo(notes), settings);
        finishDrafts();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    // What the user does, in the way the notes on the desk pass it on.

    bool set(int number, std::span<const NoteField> fields) {
        std::set<NoteField>& owed = at(unsaved, number);
        owed.insert(fields.begin(), fields.end());
        const std::vector<NoteField> all(owed.begin(), owed.end());
        const bool done = store.set(number, at(notes, number), all);
        if (done) owed.clear();
        return done;
    }
    bool edit(int number, const Text& body) {
        at(notes, number).Nota = body;
        return set(number, kBody);
    }
    /// The end of a drag: in the registry it also stores the number of notes.
    bool drag(int number, std::int32_t x) {
        at(notes, number).x = x;
        const bool counted = store.storeCount(static_cast<int>(notes.size()));
        return set(number, kPlace) && counted;
    }
    bool create(const NoteRecord& note) {
        notes.push_back(note);
        fitLists();
        const bool done = store.create(static_cast<int>(notes.size()), notes.back());
        if (!done) {
            const std::vector<NoteField> all = everyField();
            unsaved.back().insert(all.begin(), all.end());
        }
        return done;
    }
    bool remove(int number) {
        notes.erase(notes.begin() + (number - 1));
        typed.erase(typed.begin() + (number - 1));
        unsaved.erase(unsaved.begin() + (number - 1));
        return store.remove(number, pointersTo(notes), settings);
    }
    bool switchTo(StoreKind kind) {
        return store.switchTo(kind, pointersTo(notes), settings) == Switched::Done;
    }
    /// The same while a copy in another session is using that store.
    void switchToHeld(StoreKind kind) {
        store.claim = [](StoreKind) { return false; };
        EXPECT_FALSE(switchTo(kind));
        store.claim = [](StoreKind) { return true; };
    }
    /// The text in the open editor of a body.
    void type(int number, const Text& text) {
        at(typed, number) = text;
        store.saveDraft(number, false, text);
    }
    void escape(int number) {
        at(typed, number).reset();
        store.dropDraft(number);
    }
    void enter(int number) {
        const Text text = at(typed, number).value();
        at(typed, number).reset();
        if (edit(number, text)) store.dropDraft(number);
    }
    /// What every command, and Exit, does first.
    void commit() {
        store.settle(pointersTo(notes), settings);
        for (int number = 1; number <= static_cast<int>(notes.size()); ++number) {
            if (at(typed, number)) enter(number);
            if (!at(unsaved, number).empty()) set(number, {});
        }
    }
    /// What happens after a while: notes that could not be read are read again.
    void readAgain() {
        for (int number = 1; number <= static_cast<int>(notes.size()); ++number) {
            if (at(notes, number).readOnly) store.load(number, at(notes, number), settings);
        }
        finishDrafts();
    }

    /// The notes that a start has to find: those on screen, with the texts in open editors.
    std::vector<NoteRecord> wanted() const {
        std::vector<NoteRecord> result;
        for (std::size_t i = 0; i < notes.size(); ++i) {
            result.push_back(storeFree(notes[i]));
            if (typed[i]) result.back().Nota = *typed[i];
        }
        return result;
    }

private:
    static constexpr NoteField kBody[] = {NoteField::Nota};
    static constexpr NoteField kPlace[] = {NoteField::X, NoteField::Y};

    template <class Item>
    static Item& at(std::vector<Item>& list, int number) {
        return list[static_cast<std::size_t>(number - 1)];
    }
    void fitLists() {
        typed.resize(notes.size());
        unsaved.resize(notes.size());
    }
    void finishDrafts() {
        for (const Draft& draft : store.takeDrafts(pointersTo(notes)).drafts) {
            NoteRecord& note = at(notes, draft.number);
            (draft.title ? note.Titolo : note.Nota) = draft.text;
            const NoteField field = draft.title ? NoteField::Titolo : NoteField::Nota;
            if (set(draft.number, std::span(&field, 1))) store.dropDraft(draft.number);
        }
    }

    std::vector<std::optional<Text>> typed;    ///< by note
    std::vector<std::set<NoteField>> unsaved;  ///< by note
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

/// The stores before each change that `run` makes, and after the last one.
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

/// Images that have been tried already, with what a start finds there for either answer about left-over
/// files. Many points of an operation have the same image.
class Finds {
public:
    const std::vector<NoteRecord>& in(const Image& image, bool deleteLeftOver) {
        const auto known = std::find_if(finds_.begin(), finds_.end(), [&](const Find& find) {
            return find.deleteLeftOver == deleteLeftOver && find.image == image;
        });
        if (known != finds_.end()) return known->notes;
        finds_.push_back({image, deleteLeftOver, foundIn(image, deleteLeftOver)});
        return finds_.back().notes;
    }

private:
    struct Find {
        Image image;
        bool deleteLeftOver;
        std::vector<NoteRecord> notes;
    };
    std::deque<Find> finds_;
};

struct Tally {
    int killed = 0;
    int failed = 0;
    int unread = 0;
    int powerCuts = 0;
    int lost = 0;
};
inline Tally tally;

/// A kind of call, one of which fails.
struct Failing {
    const char* name;
    std::function<void(Stores&, int number)> fail;  ///< lets that call, counted from now on, fail
    std::function<bool(Stores&)> end;               ///< stops that; returns whether the call was made
    int Tally::*tried;
};

inline const Failing kFailingWrite{
    "write", [](Stores& stores, int number) { stores.changes->failAt = stores.changes->made + number; },
    [](Stores& stores) { return stores.changes->made > std::exchange(stores.changes->failAt, -1); },
    &Tally::failed};
inline const Failing kFailingFlush{
    "flush", [](Stores& stores, int number) { stores.flushes.failAt = stores.flushes.made + number; },
    [](Stores& stores) { return stores.flushes.made > std::exchange(stores.flushes.failAt, -1); },
    &Tally::failed};
inline const Failing kFailingRead{
    "read", [](Stores& stores, int number) { stores.reads.failAt = stores.reads.made + number; },
    [](Stores& stores) { return stores.reads.made > std::exchange(stores.reads.failAt, -1); },
    &Tally::unread};

/// What a power cut at any moment of `run` may leave, each image once.
inline std::vector<Image> everyPowerCut(Stores& stores, const std::function<void()>& run) {
    std::vector<Image> images;
    const auto look = [&] {
        for (std::map<Text, std::string>& files : stores.folder.afterPowerCut()) {
            Image image{std::move(files), stores.registry.content};
            if (std::find(images.begin(), images.end(), image) == images.end())
                images.push_back(std::move(image));
        }
    };
    stores.changes->before = look;
    stores.folder.beforeFlush = look;
    run();
    look();
    stores.changes->before = [] {};
    stores.folder.beforeFlush = [] {};
    return images;
}

/// Prints at the end of the run how much was tried.
class Counted : public testing::Environment {
public:
    void TearDown() override {
        if (tally.killed + tally.failed + tally.unread + tally.powerCuts == 0) return;
        std::printf("%d points killed, %d writes and %d reads failed, %d power cuts, %d notes lost\n",
                    tally.killed, tally.failed, tally.unread, tally.powerCuts, tally.lost);
    }
};
inline const testing::Environment* const kCounted = testing::AddGlobalTestEnvironment(new Counted);
