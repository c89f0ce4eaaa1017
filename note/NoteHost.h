// What a note may ask of the desk. The collection implements it; a note knows nothing else about it.
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

class NoteHost {
public:
    NoteHost() = default;
    NoteHost(const NoteHost&) = delete;
    NoteHost& operator=(const NoteHost&) = delete;
    virtual ~NoteHost() = default;

    /// Makes and shows a note, unless there are as many as there can be: the user is told so.
    virtual void newNote() = 0;
    /// Hide All, or Show All when false.
    virtual void hideAll(bool hidden) = 0;
    /// Iconize All, or Restore All when false.
    virtual void iconizeAll(bool iconized) = 0;
    virtual void exitProgram() = 0;
    /// Removes the note from collection and store, and renumbers the others.
    virtual void remove(fpost& note) = 0;
    /// Lays the notes out again if automatic position is on and no command on all notes is running.
    virtual void realign() = 0;
    /// A ringing note has appeared.
    virtual void noteShown() = 0;
    /// A title, a closed or an iconized state has changed: lists and captions are updated.
    virtual void notesChanged() = 0;
    /// A note has begun or stopped counting down: the ticks start or stop.
    virtual void countingChanged() = 0;
    virtual bool allHidden() const = 0;
    virtual bool allIconized() const = 0;
    /// How many notes there are.
    virtual int count() const = 0;
    /// Rectangles of the other visible notes, in the order of their numbers.
    virtual std::vector<PxRect> otherNotes(const fpost& note) const = 0;
    /// The visible note before (step -1) or after (1) a note, in the order of their numbers and wrapping
    /// around. Null when there is no other.
    virtual fpost* nextVisible(const fpost& note, int step) const = 0;
    /// Completes edits that the last run left unfinished and whose drafts could not be read until now.
    virtual void finishDrafts() = 0;
    /// Stores one of the settings.
    virtual void storeSetting(Setting setting) = 0;
    /// Read only once during a command on all notes.
    virtual const std::vector<Monitor>& monitors() = 0;

    // What all notes share.
    NoteStore* store = nullptr;
    GlobalSettings* settings = nullptr;
    fmsg* dialog = nullptr;
    const NoteLook* look = nullptr;
    Canvas* canvas = nullptr;  ///< used to draw every part of every note

    // The outside world, which a test can replace.
    std::function<Now()> now;
    std::function<std::uint64_t()> uptime;  ///< ms; cannot be set, and runs on while the machine sleeps
    std::function<void()> startSound;       ///< the alarm sound, from its beginning
    std::function<void()> stopSound;
    /// "Are you sure"-type questions and messages; the answer is the platform's code.
    std::function<int(const Text& prompt, long buttons, const Text& title)> ask;
};
