// The note's own part in editing its text and title: what is shown meanwhile, what becomes of the text, and
// how the window fits it. The edit itself is in NoteEditor.
#pragma once

#include <cstdint>
#include <optional>

#include "note/NoteEditor.h"

struct fpost;

class NoteEditing final : public NoteEditorHost {
public:
    explicit NoteEditing(fpost& note) : note_(note) {}

    /// Opens the editor and gives it the keyboard; any other edit ends. Does nothing on a note that could not
    /// be read.
    void open(Edited what);
    /// Ends the edit of this, if it is open. The note may be gone when it returns.
    void end(Edited what, bool keep);
    /// Ends whichever edit is open, keeping its text.
    void commit() { editor_.end(true); }
    bool isOpen() const { return editor_.isOpen(); }
    bool bodyBeingEdited() const { return editor_.edits(Edited::Body); }
    bool titleBeingEdited() const { return editor_.edits(Edited::Title); }
    /// Whether an edit ended within the last second.
    bool justEnded() const;
    /// The editors; null when they do not exist.
    HWND txtNota() const { return editor_.window(Edited::Body); }
    HWND txtTitle() const { return editor_.window(Edited::Title); }
    /// Puts the open editor where the note's parts leave room for it.
    void place(const NoteRects& at) const;
    /// Handles the WM_COMMAND notifications of the open editor.
    void onNotice(unsigned code) { editor_.onNotice(code); }

    /// Completes an edit that the last run left unfinished. False when its text could not be stored.
    [[nodiscard]] bool finishEdit(bool title, const Text& text);

    /// Makes the note as wide as its title needs, but no wider than the screen, and stores the width.
    void CheckTitleWidth();
    /// The same for the widest line of the text, and for its height.
    void FitWidth();
    void FitHeight();
    /// The text with a line break wherever its label breaks a line.
    Text WrappedText() const;

    bool fits(Edited what, const Text& text) const override;
    [[nodiscard]] bool keepEdit(Edited what, const Text& text) override;
    void editClosed(Edited what) override;
    bool keyOfNote(UINT message, WPARAM key, LPARAM how) override;
    void saveDraft(Edited what, const Text& text) override;
    void dropDraft() override;

private:
    /// Stores the title and the width that it may need in one go.
    [[nodiscard]] bool storeTitle(const Text& title);
    /// Widens the window for its title. True when it had to grow.
    bool widenToTitle();

    fpost& note_;
    NoteEditor editor_;
    std::optional<std::uint64_t> ended_;  ///< when the last edit did, by the desk's uptime
};
