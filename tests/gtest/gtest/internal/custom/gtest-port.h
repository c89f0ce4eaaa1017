// GoogleTest's place for what a system is without: a thread model that needs no thread library has no
// std::condition_variable.
#pragma once

#include <atomic>
#include <cstddef>

#if defined(__MINGW32__) && !defined(_GLIBCXX_HAS_GTHREADS)
#define GTEST_HAS_NOTIFICATION_ 1

namespace testing::internal {

/// A word from one thread to another. Only GoogleTest's tests of itself wait for one.
class Notification {
public:
    void Notify() { given_ = true; }
    void WaitForNotification() const {
        while (!given_) {
        }
    }

private:
    std::atomic<bool> given_ = false;
};

}  // namespace testing::internal
#endif
