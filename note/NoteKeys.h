// What a key does on a note, beside the size that the resize mode changes: one row per key.
#pragma once

/// A key that went down, with what was held. The numbers of the keys are Windows' own.
struct NoteKey {
    unsigned key = 0;
    bool shift = false;
    bool control = false;
    bool alt = false;
    bool repeated = false;  ///< it has been down for a while: the keyboard repeats it
};

/// What the answer depends on.
struct NoteKeyInput {
    bool editing = false;  ///< title or text: its editor has the first say on letters, arrows and Esc
    bool ringing = false;
    bool resizing = false;    ///< the keyboard changes the size: no slip beside the arrows does anything else
    bool justEdited = false;  ///< an edit ended so lately that the key may have been meant for it
};

enum class NoteAction : unsigned char {
    None,
    Delete,
    New,
    OpenMenu,
    Edit,       ///< the text; on a note that is shrunk to its title, the title
    EditTitle,  ///< the title, also on a normal note
    Alarm,
    SwapStrip,  ///< the time strip shows when it rings instead of the time left, or the other way round
    Silence,    ///< stops the ringing, which may delete the note: never by a key that was meant for an edit
    NextNote,
    PreviousNote,
    MoveLeft,
    MoveUp,
    MoveRight,
    MoveDown,
};

NoteAction noteAction(const NoteKey& pressed, const NoteKeyInput& input);
