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
    /// The alarm as the store holds it at this moment; the one in memory when it cannot be read.
    AlarmRule storedAlarm() const;
    /// Shows the menu where the mouse is. The note may be gone when it returns.
    void OpenMenu();
    /// Runs a command of the menu as the menu is now.
    void run(unsigned id);
    /// A command that another program sent, or a part of the note. It waits for a menu that is open.
    void onCommand(unsigned id);
    /// A command that was chosen from the menu, which `said` so and so of note and desk.
    void onChosen(unsigned id, std::intptr_t said);
    /// A key on the note or one of its editors, `repeated` by the keyboard as long as it is held. True when
    /// it was the note's.
    bool onKeyDown(WPARAM key, bool repeated = false);
    /// The same for F10 and keys that go with Alt, which Windows tells apart.
    bool onSystemKeyDown(WPARAM key);
    /// Shows when the alarm rings instead of the time left, or the other way round.
    void swapStrip();

    void mnuNew() override;
    void mnuEdit() override;
    void mnuColor() override;
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
    /// Turns a flag of all notes over and stores it.
    void toggleSetting(bool GlobalSettings::*flag, Setting setting);
    /// Gives the keyboard to the next visible note, in the order of their numbers, or to the one before.
    void goToNote(int step);

    fpost& note_;
};
