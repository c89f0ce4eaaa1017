// The menu of the tray icon: one row per command, with its state computed from the collection at the moment
// of use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/Menu.h"

inline constexpr int kTrayItems = 14;

/// What the menu depends on.
struct TrayMenuState {
    int notes = 0;
    bool allHidden = false;
    bool allIconized = false;
    bool alignAll = false;
    bool easyAlign = false;
    bool localFiles = false;  ///< check mark of "Use local files"
    bool dialogOpen = false;  ///< a question, message or editor is waiting for the user
};

/// What the commands do.
class TrayCommands {
public:
    virtual ~TrayCommands() = default;
    virtual void newNote() = 0;
    /// Hide All, or Show All when false.
    virtual void hideAll(bool hidden) = 0;
    /// Iconize All, or Restore All when false.
    virtual void iconizeAll(bool iconized) = 0;
    virtual void toggleAlignAll() = 0;
    virtual void toggleEasyAlign() = 0;
    virtual void switchStore() = 0;
    virtual void about() = 0;
    virtual void exitProgram() = 0;
    /// `slot` 0..49, only of a note that exists.
    virtual void openNote(int slot) = 0;
};

/// The commands in order, including separators; row i has the id IDM_DYN + i. `desk` must exist as long as
/// they are used.
Menu trayMenu(const TrayMenuState& state, TrayCommands& desk);

/// The "Open" submenu: an entry per note, in the order of their numbers, with the ids IDM_DYN2 and up;
/// without notes a grey "(none)".
Menu openMenu(const std::vector<Text>& titles, const TrayMenuState& state, TrayCommands& desk);

/// What the menu says about things that may change while it is open, as a number that fits in a message; and
/// back, the state of a menu that says so.
std::intptr_t said(const TrayMenuState& state);
TrayMenuState asSaid(const TrayMenuState& now, std::intptr_t said);

/// What a note is called by its number: "- 7 -".
Text numberTitle(int number);

/// A title as a menu caption: one line of at most `kCaptionLength` characters, with "&" shown as such. A
/// title without anything visible is replaced by the name made of the number.
Text openCaption(TextView title, int number);
inline constexpr std::size_t kCaptionLength = 80;
