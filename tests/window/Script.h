// Plays a user of the program's dialog while the dialog's own loop runs: steps on a timer, each as soon as
// the window is ready for it.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <utility>

#include "note/fmsg.h"

/// Steps that each wait for a condition, whichever modal loop is running.
class Script {
public:
    using Condition = std::function<bool()>;
    using Action = std::function<void()>;

    explicit Script(fmsg& dialog) : dialog_(dialog), end_(GetTickCount64() + kPatience) {
        running = this;
        timer_ = SetTimer(nullptr, 0, kTick, onTick);
    }
    ~Script() {
        KillTimer(nullptr, timer_);
        running = nullptr;
        EXPECT_TRUE(steps_.empty()) << "the dialog was answered before the script was finished";
    }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    void when(Condition ready, Action act) { steps_.push_back({std::move(ready), std::move(act)}); }

private:
    struct Step {
        Condition ready;
        Action act;
    };
    static constexpr UINT kTick = 10;
    static constexpr ULONGLONG kPatience = 20000;

    static void CALLBACK onTick(HWND, UINT, UINT_PTR, DWORD) {
        if (running != nullptr) running->tick();
    }
    void tick() {
        if (steps_.empty()) return;
        if (GetTickCount64() > end_) {
            ADD_FAILURE() << steps_.size() << " steps were never reached";
            steps_.clear();
            dialog_.unload();
            return;
        }
        if (!steps_.front().ready()) return;
        const Action act = std::move(steps_.front().act);
        steps_.pop_front();
        act();
    }

    static inline Script* running = nullptr;
    fmsg& dialog_;
    std::deque<Step> steps_;
    ULONGLONG end_;
    UINT_PTR timer_ = 0;
};
