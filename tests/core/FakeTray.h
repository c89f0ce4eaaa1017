// Records the commands of the tray's menu instead of carrying them out.
#pragma once

#include <string>
#include <vector>

#include "core/TrayMenu.h"

struct FakeTray final : TrayCommands {
    std::vector<std::string> calls;

    void newNote() override { calls.emplace_back("new"); }
    void hideAll(bool hidden) override { calls.emplace_back(hidden ? "hide all" : "show all"); }
    void iconizeAll(bool iconized) override { calls.emplace_back(iconized ? "iconize all" : "restore all"); }
    void toggleAlignAll() override { calls.emplace_back("align all"); }
    void toggleEasyAlign() override { calls.emplace_back("easy align"); }
    void switchStore() override { calls.emplace_back("switch store"); }
    void about() override { calls.emplace_back("about"); }
    void exitProgram() override { calls.emplace_back("exit"); }
    void openNote(int slot) override { calls.push_back("open " + std::to_string(slot)); }
};
