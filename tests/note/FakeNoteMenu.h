// Records the commands of a note's menu instead of carrying them out.
#pragma once

#include <string>
#include <vector>

#include "note/NoteMenu.h"

struct FakeNoteMenu final : NoteMenuFace {
    std::vector<std::string> calls;

    void mnuNew() override { calls.emplace_back("new"); }
    void mnuEdit() override { calls.emplace_back("edit"); }
    void mnuColor() override { calls.emplace_back("color"); }
    void mnuAlarm() override { calls.emplace_back("alarm"); }
    void mnuRewhenplay() override { calls.emplace_back("restore when elapsed"); }
    void mnuClose() override { calls.emplace_back("close"); }
    void mnuDelete() override { calls.emplace_back("delete"); }
    void mnuDontDelete() override { calls.emplace_back("don't delete"); }
    void mnuTopmost() override { calls.emplace_back("topmost"); }
    void mnuResize() override { calls.emplace_back("resize"); }
    void mnuIconize(bool iconized) override { calls.emplace_back(iconized ? "iconize" : "restore"); }
    void mnuHideAll(bool hidden) override { calls.emplace_back(hidden ? "hide all" : "show all"); }
    void mnuIconizeAll(bool iconized) override {
        calls.emplace_back(iconized ? "iconize all" : "restore all");
    }
    void mnuExit() override { calls.emplace_back("exit"); }
};
