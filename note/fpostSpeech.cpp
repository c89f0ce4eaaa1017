// What a screen reader hears of a note and of its parts, which are drawn by the note itself.
#include "note/NoteSpeech.h"
#include "note/fpost.h"
#include "resources/resource.h"

namespace {

constexpr int kButtonsOfStrip = 2;

Spoken sayNote(HWND window, int) {
    const fpost* const note = formOf<fpost>(window);
    return note == nullptr ? Spoken{} : note->spoken();
}

Spoken sayPart(HWND part, int element) {
    const fpost* const note = formOf<fpost>(GetParent(part));
    return note == nullptr ? Spoken{} : note->spokenPart(part, element);
}

constexpr Voice kNoteVoice{0, sayNote};
constexpr Voice kPartVoice{0, sayPart};
constexpr Voice kStripVoice{kButtonsOfStrip, sayPart};

}  // namespace

LRESULT fpost::answerSpoken(HWND window, WPARAM wp, LPARAM lp) const {
    if (window == hwnd) return answerAccessible(window, wp, lp, kNoteVoice);
    return answerAccessible(window, wp, lp, window == lbl2 ? kStripVoice : kPartVoice);
}

Spoken fpost::spoken() const {
    NoteSpeechInput input{record.Titolo};
    input.ringing = Alarming();
    input.armed = alarm.isCounting();
    input.iconized = record.iconized;
    input.topmost = record.topmost;
    input.resizeMode = place.resizer.isOn();
    return {spokenNote(input), record.Nota};
}

Spoken fpost::spokenPart(HWND part, int element) const {
    Spoken said;
    if (part == lbl2 && element == 0) {
        said.role = Role::Toolbar;
    } else if (part == lbl2) {
        const bool first = element == 1;
        said.role = Role::PushButton;
        said.name = first ? (record.iconized ? u"Restore" : u"Iconize") : u"Close";
        said.press = first ? IDM_ICONIZE : IDM_CLOSE;
        said.area = host->look->px(first ? design::kIconizeButton : design::kCloseButton);
    } else if (part == pic) {
        said.role = Role::PushButton;
        said.press = IDM_DELETE;
    } else if (part == pic2) {
        said.role = Role::Grip;
        said.press = IDM_RESIZE;
    } else if (part == lbl) {
        said.role = Role::StaticText;
        said.name = spokenTitle(record.Titolo);
    } else if (part == nota) {
        said.role = Role::StaticText;
        said.press = IDM_EDIT;
        if (record.Nota.empty()) said.name = u"No text";
    } else if (part == pic_time) {
        said.role = Role::StaticText;
        if (Alarming()) said.name = u"The alarm rings";
    }
    return said;
}
