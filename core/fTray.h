// The hidden window behind the tray icon: the icon's clicks, the menu, a second start, the end of the
// session. It owns the dialog, which has no button in the task bar for that.
#pragma once

#include <vector>

#include "core/TrayMenu.h"
#include "core/WinVersion.h"
#include "support/Window.h"

/// Lets a message through to a window of a program that runs with more rights than its sender.
void allowFromBelow(HWND window, UINT message);

/// What the tray asks of the collection.
class TrayHost : public TrayCommands {
public:
    virtual TrayMenuState state() const = 0;
    /// Of every note, in the order of their numbers.
    virtual std::vector<Text> titles() const = 0;
    /// What takes the keyboard when the menu has gone. Null: nothing does.
    virtual HWND openBox() const = 0;
    /// Windows' own filter of messages; a test looks on.
    virtual void letThrough(HWND window, UINT message) { allowFromBelow(window, message); }

    /// A click on the icon: ends an open dialog, then Hide All / Show All.
    virtual void defaultAction() = 0;
    /// A second start while the icon is there.
    virtual void alreadyRunning() = 0;
    /// The session may end: nothing typed may be lost.
    virtual void commitEdits() = 0;
    /// The session ends.
    virtual void endSession() = 0;
    /// Answers a posted posted::kSaveFailed.
    virtual void showSaveFailure() = 0;
    /// Of the notes that count down.
    virtual void tick() = 0;
    /// The clock shows another time than it ran to.
    virtual void clockSet() = 0;
};

struct fTray {
    fTray() = default;
    ~fTray() { destroy(); }
    fTray(const fTray&) = delete;
    fTray& operator=(const fTray&) = delete;

    /// Creates the hidden window, without icon and title yet; `desk` outlives it. False when Windows refuses
    /// twice; the log says why.
    [[nodiscard]] bool create(TrayHost& desk);
    /// Adds the icon and, the first time, takes the window procedure over and sets the title by which a
    /// second start finds this copy. False while the shell is not ready.
    [[nodiscard]] bool addIcon();
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
    TrayHost* host = nullptr;  ///< known from create() on
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
    void popUp();

    WNDPROC savedProcedure_ = nullptr;  ///< null when none is replaced
    UINT taskbarCreated_ = 0;           ///< what a new task bar broadcasts
    bool swallowUp_ = false;            ///< the next button release belongs to a double click
};
