// The collection of notes and the commands that act on all of them. It owns the settings, the store and
// everything that the notes share, and exists from the start to Exit.
#pragma once

#include <array>
#include <vector>

#include "core/DeskFaces.h"
#include "core/DeskState.h"
#include "core/DeskTicks.h"
#include "core/TrayMenu.h"
#include "core/fTray.h"
#include "note/NoteHost.h"
#include "note/NoteLook.h"
#include "note/fmsg.h"
#include "note/fpost.h"
#include "storage/NoteStore.h"
#include "support/BufferedPaint.h"

struct basPost {
    basPost();

    /// Makes note `Count` + 1, stores and shows it. False at the limit, when Windows refuses the window (the
    /// user is told of both), and while a dialog is open.
    [[nodiscard]] bool NewNote();
    /// "Hide All" / "Show All". Showing also reopens closed notes.
    void ToggleHideAll() { HideAll(!AllHidden()); }
    void HideAll(bool hidden);
    /// "Iconize All" / "Restore All".
    void ToggleIconizeAll() { IconizeAll(!AllIconized()); }
    void IconizeAll(bool iconized);
    /// Lays the visible notes out in columns and stores those that moved.
    void AutoPosition();
    void ToggleAlignAll();
    void ToggleEasyAlign();
    /// The tray's "Use local files": asks, copies every note to the other store, and keeps both in step until
    /// the program ends.
    void SwitchStore();
    /// Shows the note of a slot (0..49) in front, reopening it. An empty slot is ignored.
    void OpenNote(int slot);
    void Tick() { ticks.tick(); }
    void ClockSet() { ticks.clockSet(); }
    /// Removes a note from collection and store and renumbers the rest. Its window destroys itself.
    void RemoveNote(fpost& note);
    /// Ends every open edit, keeping its text.
    void CommitEdits();
    /// The same while the session may be ending: it waits half as long for files that other programs hold.
    void CommitForLogOff();
    /// Ends the program: open edits are kept, and the message loop ends, whatever runs inside it.
    void ExitProgram();
    /// The session is ending: nothing may ask or wait.
    void EndSession();

    /// Creates the hidden tray window, which owns the dialog. The icon comes later.
    [[nodiscard]] bool createTray();
    /// Creates the windows of notes 1..`count` from the store and shows those that are not closed. False when
    /// the program ends meanwhile and, after telling the user, when Windows cannot create them all: with only
    /// some of them, the next new note would overwrite one that is not there.
    [[nodiscard]] bool LoadNotes(int count);
    /// Destroys every window of the program, including those of notes that were just deleted.
    void Teardown();

    int Count() const { return static_cast<int>(Notes.size()); }
    int ClosedCount() const;
    int IconizedCount() const;
    bool AllHidden() const { return state.allHidden(); }
    bool AllIconized() const { return state.allIconized(); }
    /// Whether Exit was chosen: the message loop ends at its next turn.
    bool ending() const { return state.ending(); }

    int MsgBoxExt(const Text& Prompt, long Buttons, const Text& Title = u"Kardel");
    /// Shows "An error has occurred on saving the memo" once, after the handler in which it happened has
    /// ended. Nothing is shown while the session is ending.
    void reportSaveFailure();
    void showSaveFailure();
    /// A second start found this copy, whose icon is still there.
    void sayAlreadyRunning();

    TrayMenuState trayState() const;
    std::vector<Text> titles() const;

    GlobalSettings settings;
    NoteStore store;
    NoteLook look;
    Canvas canvas;
    fmsg dialog;
    fTray tray;
    /// Starts a timer of a window: Windows' own, unless a test has another. False when Windows refuses.
    std::function<bool(HWND, UINT_PTR, UINT)> startTimer;
    DeskForNotes host{*this};
    DeskTicks ticks{ticksHost_};

    std::vector<fpost*> Notes;                  ///< note n is Notes[n - 1]
    std::array<fpost*, kMaxNotes> NoteSlots{};  ///< the same, slot n - 1; null beyond the last note
    DeskState state;
    bool localFilesMark = true;  ///< check mark of "Use local files", which is not always the store in force

private:
    friend DeskForNotes;
    friend DeskForTicks;

    /// A command on all notes: ends open edits, and re-aligns none meanwhile.
    template <class Act>
    void onAllNotes(Act act);
    void Renumber();
    DeskCount counted() const;
    /// Updates captions and flags after a note's title, closed or iconized state changed.
    void NotesChanged();
    void Realign();
    bool holds(const fpost* note) const;
    /// Does something with each note. An earlier one may take later ones out of the collection: those are
    /// skipped.
    template <class Act>
    void forEachNote(Act act) {
        const std::vector<fpost*> walk = Notes;
        for (fpost* note : walk) {
            if (holds(note)) act(*note);
        }
    }
    /// Returns those whose place now differs from the stored one.
    std::vector<fpost*> placeInColumns();
    NoteRecord freshRecord(int number) const;
    /// False when Windows refuses one.
    [[nodiscard]] bool openNotes(int count);
    void finishDrafts();
    /// Shows a note as the store has it; a closed one is closed no longer.
    void reopen(fpost& note);
    std::vector<NoteRecord*> records() const;

    DeskForTray trayHost_{*this};
    DeskForTicks ticksHost_{*this};
    std::vector<Monitor> monitors_;
    bool failureShown_ = false;
    bool runningShown_ = false;

    /// The current ones; during a command on all notes, as they were at its beginning.
    const std::vector<Monitor>& monitors();

    struct Bulk {
        explicit Bulk(basPost& desk) : desk_(desk), command_(desk.store) {
            if (desk_.state.beginBulk()) desk_.monitors_.clear();
        }
        ~Bulk() { desk_.state.endBulk(); }
        Bulk(const Bulk&) = delete;
        Bulk& operator=(const Bulk&) = delete;
        basPost& desk_;
        NoteStore::Command command_;  ///< fifty notes wait only once for a locked file
    };
};
