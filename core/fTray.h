// The hidden window behind the tray icon: the icon's clicks, the menu, a second start, the end of the
// session. It owns the dialog, which is why that has no button in the task bar.
#pragma once

#include <vector>

#include "core/TrayMenu.h"
#include "core/WinVersion.h"
#include "support/Window.h"

/// Lets a message through to a window even if its sender has fewer rights.
void allowFromBelow(HWND window, UINT message);

/// What the tray asks of the collection.
class TrayHost : public TrayCommands {
public:
    virtual TrayMenuState state() const = 0;
    /// The titles of all notes, in the order of their numbers.
    virtual std::vector<Text> titles() const = 0;
    /// The box that gets the keyboard back when the menu has gone, or null.
    virtual HWND openBox() const = 0;
    /// Sets Windows' message filter; a test can watch.
    virtual void letThrough(HWND window, UINT message) { allowFromBelow(window, message); }

    /// A click on the icon: ends an open dialog, then Hide All / Show All.
    virtual void defaultAction() = 0;
    /// A second start while the icon is there.
    virtual void alreadyRunning() = 0;
    /// The session may be about to end: nothing typed may be lost.
    virtual void commitEdits() = 0;
    /// The session is ending.
    virtual void endSession() = 0;
    /// Answers posted::kSaveFailed.
    virtual void showSaveFailure() = 0;
    /// A tick for the notes that count down.
    virtual void tick() = 0;
    /// The clock was set.
    virtual void clockSet() = 0;
};

struct fTray {
    fTray() = default;
    ~fTray() { destroy(); }
    fTray(const fTray&) = delete;
    fTray& operator=(const fTray&) = delete;

    /// Creates the hidden window, still without icon and title; `desk` must outlive it. False when Windows
    /// refuses twice; the log says why.
    [[nodiscard]] bool create(TrayHost& desk);
    /// Adds the icon and, the first time, replaces the window procedure and sets the title by which a second
    /// start finds this copy. False while the shell is not ready.
    [[nodiscard]] bool addIcon();
    /// Removes icon and window. Harmless without them.
    void destroy();

    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    static void onEscaped(UINT message) noexcept;

    HWND hwnd = nullptr;
    bool sessionEnds = false;  ///< Windows has asked whether it may end, and has not called it off
    bool failureOwed = false;  ///< a save failed meanwhile: the user is told if the session goes on
    TrayHost* host = nullptr;  ///< set by create()
    WinClass windows;          ///< decides which click counts; known once the icon is there

private:
    static LRESULT CALLBACK trayProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept;
    LRESULT onTrayMessage(UINT message, WPARAM wp, LPARAM lp);
    [[nodiscard]] bool TrayHook(HWND tray);
    void TrayUnhook(HWND tray);
    void onIcon(UINT mouseMessage);
    void onSecondStart();
    void ensureIcon();
    bool waitsForMenu(UINT message, WPARAM wp, LPARAM lp) const;
    /// Runs a command as the menu put it when the user read it.
    void onCommand(unsigned id, const TrayMenuState& read);
    /// The commands of the menu, by their place (0..13), as the menu that was `read` said them, and by the
    /// note's slot (0..49). What is greyed, hidden or not in the menu does nothing.
    void mnuDyn_Click(int Index, const TrayMenuState& read);
    void mnuDyn2_Click(int Index);
    void popUp();

    WNDPROC savedProcedure_ = nullptr;  ///< null when none is replaced
    UINT taskbarCreated_ = 0;           ///< what a new task bar broadcasts
    bool swallowUp_ = false;            ///< the next release of the button belongs to a double click
};
