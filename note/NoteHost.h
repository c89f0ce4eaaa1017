// What a note may ask of the desk it lies on. The collection answers; a note never looks further up.
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
    /// Takes the note out of collection and store, and renumbers the others.
    virtual void remove(fpost& note) = 0;
    /// Automatic position, when it is on and no command on all notes runs.
    virtual void realign() = 0;
    /// A note that rings came to sight.
    virtual void noteShown() = 0;
    /// A title, a closed or an iconized state changed: lists and captions follow.
    virtual void notesChanged() = 0;
    /// A note began or ended to count down: the ticks follow.
    virtual void countingChanged() = 0;
    virtual bool allHidden() const = 0;
    virtual bool allIconized() const = 0;
    /// How many notes there are.
    virtual int count() const = 0;
    /// Rectangles of the other visible notes, in the order of their numbers.
    virtual std::vector<PxRect> otherNotes(const fpost& note) const = 0;
    /// The visible note before (step -1) or after (1) a note, in the order of their numbers and round the
    /// end. Null when there is no other.
    virtual fpost* nextVisible(const fpost& note, int step) const = 0;
    /// Stores one of the settings.
    virtual void storeSetting(Setting setting) = 0;
    /// Read once a command on all notes.
    virtual const std::vector<Monitor>& monitors() = 0;

    // What all notes share.
    NoteStore* store = nullptr;
    GlobalSettings* settings = nullptr;
    fmsg* dialog = nullptr;
    const NoteLook* look = nullptr;
    Canvas* canvas = nullptr;  ///< every part of every note is drawn through it

    // The world outside, which a test turns as it likes.
    std::function<Now()> now;
    std::function<std::uint64_t()> uptime;  ///< ms, which nobody can set; it runs on while the machine sleeps
    std::function<void()> startSound;       ///< the alarm sound, from its beginning
    std::function<void()> stopSound;
    /// "Are you sure"-type questions and messages; the answer is the platform's code.
    std::function<int(const Text& prompt, long buttons, const Text& title)> ask;
};
