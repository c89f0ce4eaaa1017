#include "note/NoteSpeech.h"

#include <utility>

Text spokenTitle(TextView title) {
    const bool blank = title.find_first_not_of(u" \t\r\n") == TextView::npos;
    return Text(blank ? TextView(u"Untitled") : title);
}

Text spokenNote(const NoteSpeechInput& input) {
    const std::pair<bool, TextView> states[] = {{input.ringing, u"alarm rings"},
                                                {input.armed && !input.ringing, u"alarm set"},
                                                {input.iconized, u"iconized"},
                                                {input.topmost, u"always on top"},
                                                {input.resizeMode, u"being resized"}};
    Text spoken = spokenTitle(input.title);
    for (const auto& [holds, words] : states) {
        if (holds) spoken.append(u", ").append(words);
    }
    return spoken;
}
