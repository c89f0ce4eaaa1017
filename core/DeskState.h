// The state of the desk as a whole: hidden, iconized, in a command on all notes, loading, ending. There is
// one function per event; the captions of all menus, and when notes may be re-aligned, follow from this
// state.
#pragma once

/// The notes, counted at the moment of an event.
struct DeskCount {
    int notes = 0;
    int shown = 0;  ///< on screen: neither closed nor hidden
    int iconized = 0;
};

class DeskState {
public:
    /// No note is visible: the menus offer "Show All".
    bool allHidden() const { return hidden_; }
    /// All notes are title strips: the menus offer "Restore All".
    bool allIconized() const { return iconized_; }
    /// The collection is not complete yet, or no longer: commands from outside would act on half of it.
    bool loading() const { return loading_; }
    /// Exit was chosen.
    bool ending() const { return ending_; }
    /// Whether the change of a single note may now re-align the others.
    bool mayRealign() const { return !loading_ && bulk_ == 0; }
    bool inBulk() const { return bulk_ > 0; }

    void onLoaded(const DeskCount& now);
    /// A note was made. Hidden notes stay hidden until the next command.
    void onNewNote();
    /// One note appeared by itself: it was opened, or it rings.
    void onNoteShown();
    /// One note was closed, iconized, restored or renamed. During a command on all notes this waits for its
    /// end.
    void onNoteChanged(const DeskCount& now);
    void onNoteRemoved(const DeskCount& now);
    /// A command on all notes has been carried out. What single notes did meanwhile (one may have rung and
    /// gone with its alarm) was judged half-way and does not count.
    void onAllHidden(bool hidden, const DeskCount& now);
    void onAllIconized(bool iconized, const DeskCount& now);
    /// A command on all notes begins, and ends. True for the outermost one.
    bool beginBulk() { return bulk_++ == 0; }
    void endBulk() { --bulk_; }
    void onExit() { ending_ = true; }
    void onTeardown() { loading_ = true; }

private:
    bool hidden_ = false;
    bool iconized_ = false;
    bool loading_ = true;
    bool ending_ = false;
    int bulk_ = 0;
};
