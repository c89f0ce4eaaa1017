// Counts the changes in a test's stores, and lets one of them fail or end the program.
#pragma once

#include <functional>
#include <memory>

/// Thrown where the program ends in the middle of its work, before the change is made.
struct ProgramEnd {};

struct Changes {
    int made = 0;
    int endAt = -1;   ///< number of the change (from 0) at which the program ends
    int failAt = -1;  ///< number of the change that fails
    bool allFail = false;
    std::function<void()> before = [] {};  ///< looks at the stores before each change

    /// Called before every change; false when it has to fail.
    bool next() {
        before();
        if (made == endAt) throw ProgramEnd();
        return made++ != failAt && !allFail;
    }
};
using SharedChanges = std::shared_ptr<Changes>;

/// For a store of which nothing can be changed.
inline SharedChanges refusing() {
    auto changes = std::make_shared<Changes>();
    changes->allFail = true;
    return changes;
}
