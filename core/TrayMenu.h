// The tray's menu as data: computed from the collection at the moment of use, so that what is greyed or
// hidden can neither be chosen nor sent.
#pragma once

#include <cstddef>
#include <vector>

#include "support/Text.h"

inline constexpr int kTrayItems = 14;

/// Places of the commands in the menu; the numbers between are separators.
namespace tray {
inline constexpr int kNew = 0;
inline constexpr int kHideAll = 2;
inline constexpr int kIconizeAll = 3;
inline constexpr int kAlignAll = 5;
inline constexpr int kEasyAlign = 6;
inline constexpr int kLocalFiles = 8;
inline constexpr int kQuickHelp = 10;
inline constexpr int kAbout = 11;
inline constexpr int kExit = 13;
}  // namespace tray

/// What the menu depends on.
struct TrayMenuState {
    int notes = 0;
    bool allHidden = false;
    bool allIconized = false;
    bool alignAll = false;
    bool easyAlign = false;
    bool localFiles = false;  ///< check mark of "Use local files"
    bool dialogOpen = false;  ///< a question, message or editor waits for the user
};

struct TrayMenuItem {
    unsigned id = 0;  ///< command id; separators have one too, which does nothing
    Text caption;
    bool separator = false;  ///< its caption is "-"; a note may be titled so too
    bool visible = true;
    bool enabled = true;
    bool checked = false;
    bool isDefault = false;  ///< drawn bold: what a click on the icon does
};

/// The commands in their order, item i with the id IDM_DYN + i.
std::vector<TrayMenuItem> trayMenu(const TrayMenuState& state);

/// Whether command `index` may run now. False for separators and anything outside the menu.
bool trayCommandAllowed(const TrayMenuState& state, int index);

/// The "Open" submenu: an entry a note, in the order of their numbers, with the ids IDM_DYN2 and up; without
/// notes a grey "(none)".
std::vector<TrayMenuItem> openMenu(const std::vector<Text>& titles, const TrayMenuState& state);

/// Whether the note of `slot` may be opened now. False for a slot without a note.
bool openAllowed(const TrayMenuState& state, int slot);

/// What a note is called by its number: "- 7 -".
Text numberTitle(int number);

/// A title as a menu caption: one line, at most `kCaptionLength` characters, "&" shown as such. A title
/// without anything to see is that of the number.
Text openCaption(TextView title, int number);
inline constexpr std::size_t kCaptionLength = 80;
