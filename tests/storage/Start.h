// What the tests of a start share: the start, with what it asks and tells the user, and a settled desk.
#pragma once

#include <functional>
#include <optional>
#include <set>

#include "tests/storage/Samples.h"

/// A start over stores in memory.
struct Start {
    Desk desk{false};
    std::optional<bool> answerDelete = false;
    std::set<StoreKind> heldElsewhere;  ///< stores that another session is using
    std::set<StoreKind> held;           ///< those that this one keeps to itself
    std::function<void()> wait = [] {};
    int questions = 0;
    int failures = 0;
    int refusals = 0;          ///< how often the user was told that another session is using a store
    int unreadable = 0;        ///< how often the user was told that something cannot be read
    std::vector<Text> copies;  ///< of damaged files
    GlobalSettings settings;
    StartState state;

    void set(TextView key, const Text& text) { desk.settings.put(u"setting", key, text); }
    Text stored(TextView key) { return desk.settings.text(u"setting", key); }

    void run() {
        desk.store = NoteStore(desk.parts());
        held.clear();
        desk.store.claim = [this](StoreKind kind) {
            return !heldElsewhere.contains(kind) && held.insert(kind).second;
        };
        desk.store.release = [this](StoreKind kind) { held.erase(kind); };
        desk.store.heldElsewhere = [this] { ++refusals; };
        settings = GlobalSettings();
        StartQuestions asked;
        asked.deleteLocalFiles = [this] {
            ++questions;
            return answerDelete;
        };
        asked.saveFailed = [this] { ++failures; };
        asked.cannotRead = [this] { ++unreadable; };
        asked.wait = [this] { wait(); };
        asked.damaged = [this](const std::vector<Text>& names) { copies = names; };
        state = desk.store.start(settings, asked);
    }
    bool inRegistry() const { return desk.store.kind() == StoreKind::Registry; }

    /// The local files as left by a program with these notes.
    void seedFiles(std::vector<NoteRecord> notes) {
        desk.open(false);
        desk.createAll(notes);
    }

    void seedRegistry(std::vector<NoteRecord> notes) {
        desk.store.begin(StoreKind::Registry);
        desk.createAll(notes);
    }

    Start() { desk.folder.content.clear(); }
};

/// A desk of three notes that has been started before.
inline void seedSettled(Start& start, bool useRegistry) {
    if (useRegistry) {
        start.set(u"UseRegistry", u"True");
        start.seedRegistry(sampleNotes(3));
    } else {
        start.seedFiles(sampleNotes(3));
    }
    start.run();
}
