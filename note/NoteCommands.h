// What the menu and the keys of a note do.
#pragma once

#include "alarm/AlarmRule.h"
#include "note/NoteMenu.h"
#include "storage/GlobalSettings.h"
#include "support/WinText.h"

struct fpost;

class NoteCommands final : public NoteMenuFace {
public:
    explicit NoteCommands(fpost& note) : note_(note) {}

    /// What the menu depends on, with `rule` as the note's alarm.
    NoteMenuInput input(const AlarmRule& rule) const;
    /// The alarm as the store currently holds it, or the one in memory if that cannot be read.
    AlarmRule storedAlarm() const;
    /// Shows the menu where the mouse is. The note may be gone when it returns.
    void OpenMenu();
    /// Runs a command of the menu as the menu is now.
    void run(unsigned id);
    /// A command sent by another program or by a part of the note. It waits until an open menu is gone.
    void onCommand(unsigned id);
    /// A command that was chosen from the menu; `said`: what the menu said about note and desk.
    void onChosen(unsigned id, std::intptr_t said);
    /// A key on the note or one of its editors; `repeated`: it is held down. True when the note has handled
    /// it.
    bool onKeyDown(WPARAM key, bool repeated = false);
    /// The same for F10 and keys pressed with Alt, which Windows reports separately.
    bool onSystemKeyDown(WPARAM key);
    /// Switches the strip between the time left and the time when the alarm rings.
    void swapStrip();

    void mnuNew() override;
    void mnuEdit() override;
    /// Lets the user choose a colour and stores it. The note may be gone when it returns.
    void mnuColor() override;
    /// Lets the user edit the alarm; what is confirmed is stored. The note may be gone when it returns.
    void mnuAlarm() override;
    void mnuRewhenplay() override;
    void mnuClose() override;
    void mnuDelete() override;
    void mnuDontDelete() override;
    void mnuTopmost() override;
    void mnuResize() override;
    void mnuIconize(bool iconized) override;
    void mnuHideAll(bool hidden) override;
    void mnuIconizeAll(bool iconized) override;
    void mnuExit() override;

private:
    void run(unsigned id, const NoteMenuInput& read);
    /// Toggles a setting of all notes and stores it.
    void toggleSetting(bool GlobalSettings::*flag, Setting setting);
    /// Gives the keyboard to the next visible note in the order of their numbers, or to the previous one.
    void goToNote(int step);

    fpost& note_;
};
