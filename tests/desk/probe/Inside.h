// Asks what only the program under test itself can see, through the hook that Windows loads into it.
#pragma once

#include <windows.h>

#include "Hook.h"

/// Loads the hook and shares memory with it as long as this object exists. Throws Failure.
class Inside {
public:
    explicit Inside(const HookQuestion& question);
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    ~Inside();

    /// Puts the question to the thread of a window. Null when it does not answer in time or the window goes;
    /// otherwise the answer, which is valid until the next question.
    const void* ask(HWND window);

private:
    HMODULE library = nullptr;
    HOOKPROC hookProc = nullptr;
    HANDLE share = nullptr;
    LONG* done = nullptr;  ///< the beginning of what is shared
    UINT message;
};

/// The same with the answer's own type.
template <class Answer>
const Answer* ask(Inside& inside, HWND window) {
    return static_cast<const Answer*>(inside.ask(window));
}
