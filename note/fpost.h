// One note on the desktop: its window, the parts and the messages of it, and the operations and properties by
// which everybody addresses a note. What these do stands in the members. Alive from open() to WM_NCDESTROY;
// geometry in twips unless a name says px.
#pragma once

#include <cstdint>
#include <optional>

#include "alarm/Ringing.h"
#include "note/NoteColor.h"
#include "note/NoteCommands.h"
#include "note/NoteEditing.h"
#include "note/NoteHost.h"
#include "note/NoteLayout.h"
#include "note/NoteLook.h"
#include "note/NoteMouse.h"
#include "note/NoteParts.h"
#include "note/NotePlace.h"
#include "note/NoteRinging.h"
#include "note/NoteSurface.h"
#include "note/NoteTips.h"
#include "note/StoredNote.h"
#include "storage/NoteFields.h"
#include "support/Window.h"

/// ms between two ticks, of the countdown and of the flashing.
inline constexpr UINT kAlarmTick = 500;

struct fpost final {
    /// Creates the window of note `number`, hidden, with the record's contents. Null when Windows refuses.
    [[nodiscard]] static fpost* open(NoteHost& host, int number, const NoteRecord& stored);
    /// Destroys every note of a desk at once, including those that are already being removed.
    static void destroyAll(const NoteHost& host);
    /// Destroys the window from a posted message, because deletes start inside the note's own handlers.
    void unload();
    /// Leaves the screen and then ends: the collection no longer holds the note.
    void leave();

    /// Shows the note at its place. Without activation the keyboard stays where it is.
    void show(bool activate);
    void hide();
    bool visible() const;
    /// Restores the window if the system has minimised it.
    void restoreIfMinimized();
    /// Whether the note could not be read. If so, nothing of it can be changed, and the user is told.
    [[nodiscard]] bool refusesChange() const;

    // --- Alarm --------------------------------------------------------------------------------------------
    bool Alarming() const { return alarm.Alarming; }
    /// Stops the ringing and arms the next occurrence. True when this deleted the note.
    bool SoundStop() { return alarm.SoundStop(host->now()); }
    /// Settles the alarm of a note that was just read; starts the countdown.
    void ArmAfterLoad() {
        if (!Help) alarm.armAfterLoad(host->now());
    }
    /// A tick of the countdown, every kAlarmTick as long as the alarm wants ticks.
    void tmr_Timer() { alarm.tick(host->now()); }

    // --- Menu and editing ---------------------------------------------------------------------------------
    /// Shows the menu where the mouse is. The note may be gone when it returns.
    void OpenMenu() { commands.OpenMenu(); }
    /// Opens the editor of the text or of the title and gives it the keyboard; any other edit ends. Does
    /// nothing on a note that could not be read, or for the text of an iconized note.
    void EditForm();
    void EditCaption() { editing.open(Edited::Title); }
    /// Ends the edit of the text and stores it, or drops what was typed.
    void SaveNote() { editing.end(Edited::Body, true); }
    void CancelNote() { editing.end(Edited::Body, false); }
    /// Ends the edit of the title; without `Apply` what was typed is dropped.
    void SaveCaption(bool Apply) { editing.end(Edited::Title, Apply); }
    /// Ends whichever edit is open, keeping its text.
    void CommitEdits();
    void CheckTitleWidth() { editing.CheckTitleWidth(); }

    // --- Moving and iconizing (fpostMove.cpp) -------------------------------------------------------------
    /// Lets the mouse move the note until the button is up, then stores its place. A ringing note is silenced
    /// instead. The note may be gone when this returns.
    void DragWindow();
    /// Applies `Iconized` to the window.
    void IconizeForm();
    void toggleIconized();

    // --- Close, delete (fpostRemove.cpp) ------------------------------------------------------------------
    /// Hides the note until it is opened again.
    void CloseForm();
    /// Deletes the note for good, after a question unless `Silent`.
    void DeleteForm(bool Silent);

    // --- Properties ---------------------------------------------------------------------------------------
    /// The full size in twips, even while the note is iconized: the stored one, or the default.
    int pWidth() const;
    void pWidth(int twips);
    int pHeight() const;
    void pHeight(int twips);
    const Text& Titolo() const { return record.Titolo; }
    void Titolo(const Text& title);
    /// The note's own colour; it is set from a stored number, which may stand for a system colour.
    Rgb Backcol() const;
    void Backcol(std::int32_t color);
    /// The colour that is shown, which differs while the note flashes.
    Rgb tBackColor() const { return surface.color(); }
    void tBackColor(Rgb color) { surface.color(color); }
    bool Iconized() const { return record.iconized; }
    bool Closed() const { return record.closed; }
    bool TopMost() const { return record.topmost; }

    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    static void onEscaped(UINT message) noexcept;

    HWND hwnd = nullptr;
    HWND lbl = nullptr, lbl2 = nullptr, pic = nullptr, nota = nullptr, pic2 = nullptr, pic_time = nullptr;

    NoteHost* host = nullptr;
    int number = 0;     ///< N, 1..50; only set by the collection, and not to be kept across events
    NoteRecord record;  ///< what is stored; the window only shows it
    StoredNote kept{record, number};
    NoteRinging ringing{*this};
    Ringing alarm{ringing};
    NoteParts parts{*this};
    NoteSurface surface{*this};
    NotePlace place{*this};
    NoteEditing editing{*this};
    NoteCommands commands{*this};
    NoteMouse mouse{*this};
    NoteTips tips;

    bool Help = false;          ///< shows the built-in help rather than a stored note
    bool beingDeleted = false;  ///< no longer in the collection; only its window is still there

private:
    friend class NoteRinging;
    friend void registerNoteClasses();

    void take(const NoteRecord& stored);
    bool createParts();
    void onSize(WPARAM kind);
    void showIconized();
    /// Subtracts the note's own border from the window's rectangle.
    void leaveBorder(RECT& window) const;
    static LRESULT CALLBACK partProc(HWND part, UINT message, WPARAM wp, LPARAM lp) noexcept;
    LRESULT onPart(HWND part, UINT message, WPARAM wp, LPARAM lp);
    // Messages by subject: an answer, or nothing when Windows has to handle the message.
    std::optional<LRESULT> onLife(UINT message, WPARAM wp, LPARAM lp);
    std::optional<LRESULT> onLooks(UINT message, WPARAM wp, LPARAM lp);
    std::optional<LRESULT> onInput(UINT message, WPARAM wp, LPARAM lp);

    bool* freed = nullptr;  ///< set when the window is destroyed while it is still being created
};

/// Watches a note while something that may process messages is called: the note may have gone when that
/// returns.
class NoteWatch {
public:
    explicit NoteWatch(const fpost& note) : note_(&note), window_(note.hwnd) {}
    /// Whether its window and object no longer exist.
    bool destroyed() const { return formOf<fpost>(window_) != note_; }
    /// Whether it is destroyed, or removed and about to be: nothing of it may be changed or stored.
    bool gone() const { return destroyed() || note_->beingDeleted; }

private:
    const fpost* note_;
    HWND window_;
};

/// Registers the window classes of the note and its parts.
void registerNoteClasses();
