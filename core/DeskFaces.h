// What notes, tray and ticks see of the desk, each through an interface of its own.
#pragma once

#include <vector>

#include "core/DeskTicks.h"
#include "core/fTray.h"
#include "note/NoteHost.h"

struct basPost;

class DeskForNotes final : public NoteHost {
public:
    explicit DeskForNotes(basPost& desk);

    void newNote() override;
    void hideAll(bool hidden) override;
    void iconizeAll(bool iconized) override;
    void exitProgram() override;
    void remove(fpost& note) override;
    void realign() override;
    void noteShown() override;
    void notesChanged() override;
    void countingChanged() override;
    bool allHidden() const override;
    bool allIconized() const override;
    int count() const override;
    std::vector<PxRect> otherNotes(const fpost& note) const override;
    fpost* nextVisible(const fpost& note, int step) const override;
    void finishDrafts() override;
    void storeSetting(Setting setting) override;
    const std::vector<Monitor>& monitors() override;

private:
    basPost& desk_;
};

class DeskForTray final : public TrayHost {
public:
    explicit DeskForTray(basPost& desk) : desk_(desk) {}

    TrayMenuState state() const override;
    std::vector<Text> titles() const override;
    HWND openBox() const override;
    void newNote() override;
    void hideAll(bool hidden) override;
    void iconizeAll(bool iconized) override;
    void toggleAlignAll() override;
    void toggleEasyAlign() override;
    void switchStore() override;
    void about() override;
    void exitProgram() override;
    void openNote(int slot) override;
    void defaultAction() override;
    void alreadyRunning() override;
    void commitEdits() override;
    void endSession() override;
    void showSaveFailure() override;
    void tick() override;
    void clockSet() override;

private:
    basPost& desk_;
};

class DeskForTicks final : public TickedDesk {
public:
    explicit DeskForTicks(basPost& desk) : desk_(desk) {}

    Now now() const override;
    std::uint64_t uptime() const override;
    bool isCounting() const override;
    bool isUnread() const override;
    bool mayRead() const override;
    [[nodiscard]] bool startTimer() override;
    void stopTimer() override;
    void tickLater() override;
    void tickNotes() override;
    void followClock(Now now, std::int64_t jump) override;
    void readAgain() override;

private:
    basPost& desk_;
};
