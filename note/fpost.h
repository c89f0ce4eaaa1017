// One note on the desktop: a borderless window, its eight parts, and what is stored of it. Alive from open()
// to WM_NCDESTROY. Geometry in twips unless a name says px.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "alarm/Ringing.h"
#include "note/NoteColor.h"
#include "note/NoteCommands.h"
#include "note/NoteEditor.h"
#include "note/NoteHost.h"
#include "note/NoteLayout.h"
#include "note/NoteLook.h"
#include "note/NotePainter.h"
#include "note/NotePlace.h"
#include "note/NoteRinging.h"
#include "storage/NoteFields.h"
#include "support/Accessible.h"
#include "support/Window.h"

/// ms between two ticks, of the countdown and of the flashing.
inline constexpr UINT kAlarmTick = 500;

struct fpost final : private NoteEditorHost {
    /// Creates the window of note `number`, hidden, with the record's contents. Null when Windows refuses.
    static fpost* open(NoteHost& host, int number, const NoteRecord& stored);
    /// Destroys every note of a desk at once, also those that are on their way out.
    static void destroyAll(const NoteHost& host);

    // --- What the collection does with a note -------------------------------------------------------------
    /// Shows the note where it is. Without activation the keyboard stays where it is.
    void show(bool activate);
    void hide();
    bool visible() const;
    /// Stores fields of the record in the store in force, with those that it refused before.
    bool store(std::span<const NoteField> fields);
    bool store(std::initializer_list<NoteField> fields) {
        return store(std::span(fields.begin(), fields.size()));
    }
    /// The store holds nothing of the note yet: the next save writes all of it.
    void oweEverything();
    /// Tries once more what the store refused.
    void storeUnsaved();
    /// Takes over fields as they are stored now, except those that the store refused: these stand in memory
    /// alone. False when they cannot be read.
    bool refresh(std::span<const NoteField> fields);
    bool refresh(std::initializer_list<NoteField> fields) {
        return refresh(std::span(fields.begin(), fields.size()));
    }
    /// Whether the note could not be read; then nothing of it can be changed, and the user is told so.
    bool refusesChange() const;
    /// Undoes a minimising by the system.
    void restoreIfMinimized();
    /// Destroys the window from a posted message: deletes start inside the note's own handlers.
    void unload();
    /// Goes from the screen, and then altogether: the collection does not hold the note any more.
    void leave();

    // --- Alarm (fpostAlarm.cpp) ---------------------------------------------------------------------------
    bool Alarming() const { return alarm.Alarming; }
    /// Stops the ringing and arms the next occurrence. True when that deleted the note.
    bool SoundStop() { return alarm.SoundStop(host->now()); }
    /// Settles the alarm of a note that was just read; starts the countdown.
    void ArmAfterLoad();
    /// Places and fills the time strip, or hides it when there is nothing to count.
    void ShowAlarmStrip();
    /// A tick of the countdown, which comes every kAlarmTick as long as the alarm wants it.
    void tmr_Timer() { alarm.tick(host->now()); }
    /// Lets the user edit the alarm; what is confirmed is stored. The note may be gone when it returns.
    void mnuAlarm();

    // --- For screen readers (fpostSpeech.cpp) -------------------------------------------------------------
    Spoken spoken() const;
    Spoken spokenPart(HWND part, int element) const;
    /// The answer to WM_GETOBJECT, sent to the note or to one of its parts.
    LRESULT answerSpoken(HWND window, WPARAM wp, LPARAM lp) const;

    /// Shows the menu where the mouse is. The note may be gone when it returns.
    void OpenMenu() { commands.OpenMenu(); }

    // --- Editing (fpostEdit.cpp) --------------------------------------------------------------------------
    /// Opens the editor of the text, or of the title, and gives it the keyboard; any other edit ends. Nothing
    /// on a note that could not be read, nor for the text of an iconized one.
    void EditForm();
    void EditCaption();
    /// Ends the edit of the text and stores it, or drops what was typed.
    void SaveNote();
    void CancelNote();
    /// Ends the edit of the title; without `Apply` what was typed is dropped.
    void SaveCaption(bool Apply);
    /// Ends whichever edit is open, keeping its text.
    void CommitEdits();
    /// Takes the text of an edit that an earlier run did not live to end. False when it could not be stored.
    bool finishEdit(bool title, const Text& text);
    /// What stands in the open editor, if any, goes into the draft before long.
    void draftSoon() { editor.draftSoon(); }
    bool bodyBeingEdited() const { return editor.edits(Edited::Body); }
    bool isEditing() const { return editor.isOpen(); }
    /// Whether an edit ended within the last second.
    bool justEdited() const;
    bool titleBeingEdited() const { return editor.edits(Edited::Title); }
    /// The editors, null while they do not exist.
    HWND txtNota() const { return editor.window(Edited::Body); }
    HWND txtTitle() const { return editor.window(Edited::Title); }
    /// Makes the note as wide as its title needs, at most as the screen, and stores the width.
    void CheckTitleWidth();
    /// The same for the widest line of the text, and for its height.
    void FitWidth();
    void FitHeight();
    /// The text with a line break wherever its label breaks it.
    Text WrappedText() const;

    // --- Moving, resizing, iconizing (fpostMove.cpp) ------------------------------------------------------
    /// Lets the mouse move the note until the button is up, then stores its place. A note that rings is
    /// silenced instead. It may be gone when this returns.
    void DragWindow();
    /// Applies `Iconized` to the window.
    void IconizeForm();
    void toggleIconized();
    void toggleTopmost();
    void applyTopmost() const;
    /// Puts the dialogs that are open back above a note that came to the top of the stack.
    void keepBelowDialogs() const;

    // --- Colour, close, delete (fpostRemove.cpp) ----------------------------------------------------------
    /// Lets the user choose a colour and stores it. The note may be gone when it returns.
    void mnuColor();
    /// Hides the note until it is opened again.
    void CloseForm();
    /// Deletes the note for good, after a question unless `Silent`.
    void DeleteForm(bool Silent);

    // --- Properties ---------------------------------------------------------------------------------------
    /// The full size in twips, also while the note is iconized: the stored one, or the default.
    int pWidth() const;
    void pWidth(int twips);
    int pHeight() const;
    void pHeight(int twips);
    const Text& Titolo() const { return record.Titolo; }
    void Titolo(const Text& title);
    /// The note's own colour; it is set by a stored number, which may stand for one of the system's.
    Rgb Backcol() const;
    void Backcol(std::int32_t color);
    /// The colour that is shown: another one while the note flashes.
    Rgb tBackColor() const { return shownBack; }
    void tBackColor(Rgb color);
    bool Iconized() const { return record.iconized; }
    bool Closed() const { return record.closed; }
    bool TopMost() const { return record.topmost; }

    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    LRESULT onPart(HWND part, UINT message, WPARAM wp, LPARAM lp);
    static void onEscaped(UINT message) noexcept;

    HWND hwnd = nullptr;
    HWND lbl = nullptr, lbl2 = nullptr, pic = nullptr, nota = nullptr, pic2 = nullptr, pic_time = nullptr;

    NoteHost* host = nullptr;
    int number = 0;     ///< N, 1..50; set by the collection alone, never kept across an event
    NoteRecord record;  ///< what is stored; the window only shows it
    NoteRinging ringing{*this};
    Ringing alarm{ringing};
    NotePlace place{*this};
    NoteCommands commands{*this};

    bool Help = false;          ///< shows the built-in help instead of a stored note
    bool beingDeleted = false;  ///< out of the collection; only its window still goes
    int currentCursor = 0;      ///< resource number of the cursor shown, 0 the arrow

private:
    friend class NoteRinging;

    void take(const NoteRecord& stored);
    bool createParts();
    NoteRects partRects();
    void layout();
    void onSize(WPARAM kind);
    void showActive(bool on);
    NotePainter painter() const;
    void paint();
    void paintFrame();
    void paintPart(HWND part);
    void openEditor(Edited what);
    bool keepEdit(Edited what, const Text& text) override;
    void editClosed(Edited what) override;
    bool fits(Edited what, const Text& text) const override;
    bool keyOfNote(UINT message, WPARAM key, LPARAM how) override;
    void saveDraft(Edited what, const Text& text) override;
    void dropDraft() override;
    /// The title and the width that it may need are stored in one go.
    bool storeTitle(const Text& title);
    /// Whether the window had to grow.
    bool widenToTitle();
    /// Takes the note's own border off the window's rectangle.
    void leaveBorder(RECT& window) const;
    HBRUSH editorColours(HDC dc) const;
    // Messages by subject: an answer, or nothing when Windows' own handling is to follow.
    std::optional<LRESULT> onLife(UINT message, WPARAM wp, LPARAM lp);
    std::optional<LRESULT> onLooks(UINT message, WPARAM wp, LPARAM lp);
    std::optional<LRESULT> onInput(UINT message, WPARAM wp, LPARAM lp);
    // Mouse (fpostMouse.cpp)
    /// A button that went down or up on a part, at a place in the part's own coordinates.
    struct Press {
        UINT message = 0;
        Twips x, y;
        bool leftDown = false;  ///< also at the second press of a double click
        bool rightDown = false;
        bool doubled = false;
    };
    void onMouse(HWND part, UINT message, int xPx, int yPx);
    void pressSheet(HWND part, const Press& press);
    void pressButtons(HWND part, const Press& press);
    void pressGrip(const Press& press);
    void pressStrip(const Press& press);
    void setPartCursor(HWND part);
    /// A press on a note that is disabled because a dialog waits for its answer: it ends the ringing.
    std::optional<LRESULT> onDisabledPress(LPARAM hit);
    void repaint() const;
    void wantTips();
    void fillTip(NMHDR& header) const;
    void showIconized();

    LONG laidWidth = 0;  ///< client size in pixels that the parts are laid out for
    LONG laidHeight = 0;
    HWND tips = nullptr;  ///< tooltips of the pictures; owned by the note's window
    Rgb shownBack = kDesignColor;
    NoteEditor editor;
    std::vector<NoteField> unsaved;  ///< what the store refused: the next save tries again
    bool active = false;             ///< has the keyboard: its lines say so
    bool* freed = nullptr;           ///< told when the window goes while it is still being created
    bool swallowDoubleClick = false;
    std::optional<std::uint64_t> editEnded;  ///< when the last edit did, by the desk's uptime
};

/// Looks on while a note calls something that may run messages: the note may have gone when that returns.
class NoteWatch {
public:
    explicit NoteWatch(const fpost& note) : note_(&note), window_(note.hwnd) {}
    /// Its window and object are no more.
    bool destroyed() const { return formOf<fpost>(window_) != note_; }
    /// Destroyed, or out of the collection and about to be: nothing of it may be changed or stored.
    bool gone() const { return destroyed() || note_->beingDeleted; }

private:
    const fpost* note_;
    HWND window_;
};

/// Registers the window classes of the note and its parts.
void registerNoteClasses();
