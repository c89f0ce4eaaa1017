// Counts what is changed in the stores of a test, and lets one change fail or end the program.
#pragma once

#include <functional>
#include <memory>

/// Thrown where the program ends in the middle of its work: the change at hand does not happen any more.
struct ProgramEnd {};

struct Changes {
    int made = 0;
    int endAt = -1;   ///< number of the change (from 0) at which the program ends
    int failAt = -1;  ///< number of the change that fails
    bool allFail = false;
    std::function<void()> before = [] {};  ///< looks at the stores as they stand ahead of each change

    /// Called before every change: false when it fails.
    bool next() {
        before();
        if (made == endAt) throw ProgramEnd();
        return made++ != failAt && !allFail;
    }
};
using SharedChanges = std::shared_ptr<Changes>;
