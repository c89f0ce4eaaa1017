// What a start settles before any window is there: the settings, the store in force, the number of notes.
// Needs no Windows, so that every damaged or hostile store can be tried by the thousand.
#pragma once

#include <functional>
#include <optional>

#include "storage/NoteStore.h"

/// What the user is asked or told while the store is settled. Never null.
struct StartQuestions {
    /// Local files are left over although the registry was chosen: true deletes them. Nothing when the
    /// program ended before somebody answered: both stores and the choice stay as they are.
    std::function<std::optional<bool>()> deleteLocalFiles = [] { return false; };
    /// Another store than the user's choice comes into force: whether no copy in another session uses it.
    std::function<bool(bool useRegistry)> claimStore = [](bool) { return true; };
    /// Notes could not be saved.
    std::function<void()> saveFailed = [] {};
};

/// Prompt of the question about left-over local files; lines are joined by carriage returns.
Text deleteLocalFilesPrompt();

struct StartState {
    bool usable = true;  ///< false: the store cannot or must not be used; the start ends
    int Count = 1;       ///< notes to load, 1..50
};

/// The user's choice of store as it stands in the settings, before anything is written.
bool chosenUseRegistry(const Settings& settings);

/// Reads the settings with every default written back, settles the store in force and the number of notes,
/// copies registry notes into new local files once. `store` must have its files and settings set; its
/// UseRegistry and header are settled here. `settings` receives the settings.
StartState settleStart(NoteStore& store, GlobalSettings& settings, const StartQuestions& questions);
