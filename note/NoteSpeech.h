// What a screen reader says about a note that gets the keyboard.
#pragma once

#include "support/Text.h"

/// What it depends on.
struct NoteSpeechInput {
    TextView title;
    bool ringing = false;
    bool armed = false;  ///< it is waiting for its alarm
    bool iconized = false;
    bool topmost = false;
    bool resizeMode = false;
};

/// The title, or words that say that there is none, since nothing on screen may be without a name.
Text spokenTitle(TextView title);

/// The title, followed by whatever is special about the note at this moment.
Text spokenNote(const NoteSpeechInput& input);
