// What the desk as a whole is in: hidden, iconized, within a command on all notes, loading, ending. One
// function for each thing that happens; the captions of all menus and the times of re-alignment follow from
// it.
#pragma once

/// The notes, counted at the moment of an event.
struct DeskCount {
    int notes = 0;
    int shown = 0;  ///< on the screen: neither closed nor hidden
    int iconized = 0;
};

class DeskState {
public:
    /// No note is in sight: the menus offer "Show All".
    bool allHidden() const { return hidden_; }
    /// All notes are title strips: the menus offer "Restore All".
    bool allIconized() const { return iconized_; }
    /// The collection is not whole yet, or not any more: commands from outside would act on half of it.
    bool loading() const { return loading_; }
    /// Exit was chosen.
    bool ending() const { return ending_; }
    /// Whether a single note that changed may re-align the others now.
    bool mayRealign() const { return !loading_ && bulk_ == 0; }
    bool inBulk() const { return bulk_ > 0; }

    void onLoaded(const DeskCount& now);
    /// A note was made. Those that were hidden stay so until the next command.
    void onNewNote();
    /// One note came to sight by itself: it was opened, or it rings.
    void onNoteShown();
    /// One note was closed, iconized, restored or renamed. Waits for the end of a command on all notes.
    void onNoteChanged(const DeskCount& now);
    void onNoteRemoved(const DeskCount& now);
    /// A command on all notes has been carried out. What single notes did meanwhile, one that rang and went
    /// with its alarm for example, was judged half-way and does not count.
    void onAllHidden(bool hidden, const DeskCount& now);
    void onAllIconized(bool iconized, const DeskCount& now);
    /// A command that walks all notes begins, and ends. True for the outermost one.
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
