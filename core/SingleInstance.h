// One running copy a user: in this session, and on one store across sessions.
#pragma once

#include "support/Handles.h"

/// Held while the program runs.
struct SingleInstance {
    UniqueHandle session;   ///< this session's copy
    UniqueHandle registry;  ///< the user's registry notes, across sessions
    UniqueHandle folder;    ///< the data folder, across sessions
};

/// Takes the session's mutex. False when another copy holds it (also one that runs with more rights).
[[nodiscard]] bool claimSession(SingleInstance& instance);

/// Takes the mutex of the store: of the user's settings, or of the data folder, by whatever name it is
/// called. False when a copy in another session holds it.
[[nodiscard]] bool claimStore(SingleInstance& instance, bool useRegistry, const Text& folder);

/// Gives the mutex of a store back.
void releaseStore(SingleInstance& instance, bool useRegistry);

/// Finds the running copy's hidden tray window and asks it to show that it runs. True when there was one.
bool wakeRunningCopy();
