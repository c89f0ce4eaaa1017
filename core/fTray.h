// The hidden window behind the tray icon: the icon's clicks, the menu, a second start, the end of the
// session. It owns the dialog, which has no button in the task bar for that.
#pragma once

#include <functional>
#include <vector>

#include "core/TrayMenu.h"
#include "core/WinVersion.h"
#include "support/Window.h"

/// Lets a message through to a window of a program that runs with more rights than its sender.
void allowFromBelow(HWND window, UINT message);

/// What the tray asks of the collection. All set before create().
struct TrayHost {
    std::function<TrayMenuState()> state;       ///< `dialogOpen` comes from the function below
    std::function<std::vector<Text>()> titles;  ///< of every note, in the order of their numbers
    std::function<bool()> dialogOpen;
    std::function<HWND()> openBox;  ///< what takes the keyboard when the menu has gone; null: nothing does
    std::function<void(HWND window, UINT message)> letThrough = allowFromBelow;

    std::function<void()> newNote;
    std::function<void(bool hidden)> hideAll;       ///< Hide All, or Show All when false
    std::function<void(bool iconized)> iconizeAll;  ///< Iconize All, or Restore All when false
    std::function<void()> toggleAlignAll;
    std::function<void()> toggleEasyAlign;
    std::function<void()> switchStore;
    std::function<void()> about;
    std::function<void()> exitProgram;
    std::function<void(int slot)> openNote;  ///< slot 0..49, only for a note that exists

    std::function<void()>
        defaultAction;  ///< a click on the icon: ends an open dialog, then Hide All / Show All
    std::function<void()> alreadyRunning;   ///< a second start while the icon is there
    std::function<void()> commitEdits;      ///< the session may end: nothing typed may be lost
    std::function<void()> endSession;       ///< the session ends
    std::function<void()> showSaveFailure;  ///< answers a posted kSaveFailed
    std::function<void()> tick;             ///< of the notes that count down
    std::function<void()> clockSet;         ///< the clock shows another time than it ran to
};

struct fTray {
    /// Posted by the collection to itself: a save failed inside a handler that must end first.
    static constexpr UINT kSaveFailed = WM_APP + 1;
    /// Posted by the tray to itself: a second start found this copy, and its icon in place.
    static constexpr UINT kRunning = WM_APP + 2;
    /// Posted by the tray to itself: the command wp was chosen from its menu, which said lp of the desk.
    static constexpr UINT kChosen = WM_APP + 3;

    fTray() = default;
    ~fTray() { destroy(); }
    fTray(const fTray&) = delete;
    fTray& operator=(const fTray&) = delete;

    /// Creates the hidden window, without icon and title yet. False when Windows refuses twice; the log says
    /// why.
    bool create(TrayHost functions);
    /// Adds the icon and, the first time, takes the window procedure over and sets the title by which a
    /// second start finds this copy. False while the shell is not ready.
    bool addIcon();
    /// Removes icon and window. Harmless without them.
    void destroy();

    /// The commands of the menu, by their place (0..13) and by the note's slot (0..49). What is greyed,
    /// hidden or not in the menu does nothing.
    void mnuDyn_Click(int Index);
    void mnuDyn2_Click(int Index);

    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    static void onEscaped(UINT message) noexcept;

    HWND hwnd = nullptr;
    bool sessionEnds = false;  ///< Windows has asked whether it may, and has not said that it does not
    bool failureOwed = false;  ///< a save failed meanwhile: told when the session goes on
    TrayHost host;
    WinClass windows;  ///< decides which click counts; known once the icon is there

private:
    static LRESULT CALLBACK trayProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept;
    LRESULT onTrayMessage(UINT message, WPARAM wp, LPARAM lp);
    bool TrayHook(HWND tray);
    void TrayUnhook(HWND tray);
    void onIcon(UINT mouseMessage);
    void onSecondStart();
    void ensureIcon();
    bool waitsForMenu(UINT message, WPARAM wp, LPARAM lp) const;
    void onCommand(unsigned id, const TrayMenuState& said);
    void run(int Index, const TrayMenuState& said);
    void popUp();
    TrayMenuState menuState() const;

    WNDPROC savedProcedure_ = nullptr;  ///< null when none is replaced
    UINT taskbarCreated_ = 0;           ///< what a new task bar broadcasts
    bool swallowUp_ = false;            ///< the next button release belongs to a double click
};
