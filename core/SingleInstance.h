// One running copy: per session, and per store across all sessions.
#pragma once

#include "support/Handles.h"

/// Held while the program runs.
struct SingleInstance {
    UniqueHandle session;   ///< this session's copy
    UniqueHandle registry;  ///< the user's registry notes, across sessions
    UniqueHandle folder;    ///< the data folder, across sessions
};

/// Takes the session's mutex. False when another copy holds it, even one with more rights.
[[nodiscard]] bool claimSession(SingleInstance& instance);

/// Takes the mutex of a store: of the user's settings, or of the data folder by whatever path. False when a
/// copy in another session holds it.
[[nodiscard]] bool claimStore(SingleInstance& instance, bool useRegistry, const Text& folder);

/// Releases the mutex of a store.
void releaseStore(SingleInstance& instance, bool useRegistry);

/// Finds the running copy's hidden tray window and asks it to show that it is running. True when there was
/// one.
bool wakeRunningCopy();
