// The edit of a text or a title, from its opening to its end. The editor is a native edit control over the
// label that exists only during the edit, since at most one of fifty notes is edited at a time.
#pragma once

#include <memory>

#include "note/EditRules.h"
#include "note/NoteLayout.h"
#include "support/WinText.h"

enum class Edited : unsigned char { Body, Title };

/// What an edit needs from the note that it belongs to.
class NoteEditorHost {
public:
    /// Whether the store can hold this whole text.
    virtual bool fits(Edited what, const Text& text) const = 0;
    /// Stores and shows the text of a finished edit. False when the store refused it.
    [[nodiscard]] virtual bool keepEdit(Edited what, const Text& text) = 0;
    /// The editor is gone, whether its text was kept or not.
    virtual void editClosed(Edited what) = 0;
    /// A key that goes down in the editor is offered to the note first; true when the note has handled it.
    /// The note may be gone then.
    virtual bool keyOfNote(UINT message, WPARAM key, LPARAM how) = 0;
    /// Stores the editor's text in case the program dies, or drops it when it is no longer needed.
    virtual void saveDraft(Edited what, const Text& text) = 0;
    virtual void dropDraft() = 0;

protected:
    ~NoteEditorHost() = default;
};

class NoteEditor {
public:
    NoteEditor() = default;
    NoteEditor(const NoteEditor&) = delete;
    NoteEditor& operator=(const NoteEditor&) = delete;
    ~NoteEditor();

    struct Opening {
        NoteEditorHost* host = nullptr;
        HWND note = nullptr;
        Edited what = Edited::Body;
        Text text;
        PxRect place;  ///< in the note's client area
        HFONT font = nullptr;
        HWND under = nullptr;  ///< the sibling right above it
        int freeBelow = 0;     ///< pixels at its lower edge that no text may reach, as the grip is there
    };
    /// Makes the editor, with the caret at the end of the text and the keyboard. False when Windows refuses.
    /// No other edit of the note may be open.
    [[nodiscard]] bool open(Opening opening);
    /// Closes the editor. Its text is kept, including what an input method is still composing, or dropped.
    /// The host may destroy the note, and this with it.
    void end(bool keep);

    bool edits(Edited what) const { return open_ && at_.what == what; }
    bool isOpen() const { return open_; }
    /// The control while it edits this, otherwise null.
    HWND window(Edited what) const { return at_.what == what ? window_ : nullptr; }
    void place(const PxRect& at) const;
    /// Handles the control's WM_COMMAND notifications to its parent.
    void onNotice(unsigned code);

private:
    /// Writes the editor's text to the draft before long, from a message of its own.
    void draftSoon();
    enum class OneShotKey : unsigned char { None, Save, NewLine, BlankLine, Cancel };

    static LRESULT CALLBACK procedure(HWND editor, UINT message, WPARAM wp, LPARAM lp) noexcept;
    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    /// The control's own handling. The note, and this with it, may be gone when it returns.
    LRESULT pass(UINT message, WPARAM wp, LPARAM lp) const;
    bool onKey(WPARAM key);
    bool onCharacter(char16_t character);
    bool onOrdinaryCharacter(char16_t character);
    bool endsByBreak(OneShotKey key, char16_t character) const;
    void paste();
    void deleteWord();
    void turnWheel(int delta);
    LRESULT onComposition(WPARAM wp, LPARAM lp);
    void takeComposition();
    TextRange selection() const;
    TextView fitting(const Text& text, TextRange selected, const Text& inserted) const;
    /// Inserts a text in place of the selection: all of it or, with a beep, nothing.
    void insert(const Text& text);
    LRESULT replaceSelection(WPARAM canUndo, LPARAM text);
    LRESULT replaceAll(LPARAM text);
    void writeDraft();
    void keepTextFree() const;
    void close();
    void detach(HWND window) const;

    Opening at_;
    HWND window_ = nullptr;
    WNDPROC control_ = nullptr;  ///< the edit control's own procedure
    bool open_ = false;
    bool drafting_ = false;  ///< the timer that writes the draft runs
    OneShotKey oneShot_ = OneShotKey::None;
    TypedText typed_;
    WheelLines wheel_;
    /// How many calls into the control are running; it must not be destroyed inside one.
    std::shared_ptr<int> inside_ = std::make_shared<int>(0);
};
