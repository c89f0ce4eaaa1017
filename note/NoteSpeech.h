// What a screen reader says of a note when the keyboard comes to it.
#pragma once

#include "support/Text.h"

/// What it depends on.
struct NoteSpeechInput {
    TextView title;
    bool ringing = false;
    bool armed = false;  ///< it waits for its alarm
    bool iconized = false;
    bool topmost = false;
    bool resizeMode = false;
};

/// The title; for a note without one, words that say so: nothing on screen may be without a name.
Text spokenTitle(TextView title);

/// The title, and behind it what is particular about the note at this moment.
Text spokenNote(const NoteSpeechInput& input);
