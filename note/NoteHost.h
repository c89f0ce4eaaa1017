// What a note may ask of the desk it lies on. The collection fills this in; a note never looks further up.
#pragma once

#include <functional>
#include <vector>

#include "note/Monitors.h"
#include "storage/NoteStore.h"
#include "support/DateTime.h"

class Canvas;
struct fmsg;
struct fpost;
struct NoteLook;

struct NoteHost {
    NoteStore* store = nullptr;
    GlobalSettings* settings = nullptr;
    fmsg* dialog = nullptr;
    const NoteLook* look = nullptr;
    Canvas* canvas = nullptr;                    ///< every part of every note is drawn through it
    const std::vector<fpost*>* Notes = nullptr;  ///< in the order of their numbers

    std::function<bool()> newNote;                  ///< makes and shows a note; false at the limit
    std::function<void(bool hidden)> hideAll;       ///< Hide All, or Show All when false
    std::function<void(bool iconized)> iconizeAll;  ///< Iconize All, or Restore All when false
    std::function<void()> exitProgram;
    std::function<void()> realign;  ///< automatic position, when it is on and no bulk command runs
    std::function<void()>
        notesChanged;  ///< a title, a closed or an iconized state changed: lists and captions follow
    std::function<void(fpost&)> remove;     ///< takes the note out of collection and store, and renumbers
    std::function<void()> countingChanged;  ///< a note began or ended to count down: the ticks follow
    std::function<void()> commitEdits;      ///< ends every open edit, keeping its text
    std::function<bool()> allHidden;
    std::function<bool()> allIconized;
    std::function<void()> noteShown;                        ///< a note that rings came to sight
    std::function<void(Setting)> storeSetting;              ///< stores one of the settings
    std::function<const std::vector<Monitor>&()> monitors;  ///< read once a command on all notes
    std::function<Now()> now;
    std::function<std::uint64_t()> uptime;  ///< ms, which nobody can set; it runs on while the machine sleeps
    std::function<void()> startSound;       ///< the alarm sound, from its beginning
    std::function<void()> stopSound;

    /// "Are you sure"-type questions and messages; the answer is the platform's code. Defaults: the program's
    /// box.
    std::function<int(const Text& prompt, long buttons, const Text& title)> ask;
};
