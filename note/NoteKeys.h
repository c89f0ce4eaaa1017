// What a key does on a note, apart from the resize mode's arrows: one row per key.
#pragma once

/// A key that went down, and what was held meanwhile. Key numbers are those of Windows.
struct NoteKey {
    unsigned key = 0;
    bool shift = false;
    bool control = false;
    bool alt = false;
    bool repeated = false;  ///< it is being held down, and the keyboard repeats it
};

/// What the answer depends on.
struct NoteKeyInput {
    bool editing = false;  ///< the title or the text: the editor gets letters, arrows and Esc first
    bool ringing = false;
    bool resizing = false;    ///< the arrow keys resize: a key beside them must do nothing
    bool justEdited = false;  ///< an edit ended so recently that the key may have been meant for it
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
    Silence,    ///< stops the ringing, which may delete the note
    NextNote,
    PreviousNote,
    MoveLeft,
    MoveUp,
    MoveRight,
    MoveDown,
};

NoteAction noteAction(const NoteKey& pressed, const NoteKeyInput& input);
