// Records the commands of the tray's menu, and what else is asked of a collection, instead of carrying them
// out.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/TrayMenu.h"

/// `Commands` is TrayCommands, or an interface that asks for more.
template <class Commands>
struct RecordedTray : Commands {
    std::vector<std::string> calls;
    std::function<void(const std::string& call)> instead;  ///< called instead of recording the call

    void newNote() override { note("new"); }
    void hideAll(bool hidden) override { note(hidden ? "hide all" : "show all"); }
    void iconizeAll(bool iconized) override { note(iconized ? "iconize all" : "restore all"); }
    void toggleAlignAll() override { note("align all"); }
    void toggleEasyAlign() override { note("easy align"); }
    void switchStore() override { note("switch store"); }
    void about() override { note("about"); }
    void exitProgram() override { note("exit"); }
    void openNote(int slot) override { note("open " + std::to_string(slot)); }

protected:
    void note(const std::string& call) {
        if (instead) {
            instead(call);
        } else {
            calls.push_back(call);
        }
    }
};

struct FakeTray final : RecordedTray<TrayCommands> {};
