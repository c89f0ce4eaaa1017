#include "note/NoteVoice.h"

#include "note/NoteSpeech.h"
#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Accessible.h"

namespace {

constexpr int kButtonsOfStrip = 2;

Spoken spoken(const fpost& note) {
    NoteSpeechInput input{note.record.Titolo};
    input.ringing = note.Alarming();
    input.armed = note.alarm.isCounting();
    input.iconized = note.record.iconized;
    input.topmost = note.record.topmost;
    input.resizeMode = note.place.resizer.isOn();
    return {spokenNote(input), note.record.Nota};
}

Spoken spokenPart(const fpost& note, HWND part, int element) {
    Spoken said;
    if (part == note.lbl2 && element == 0) {
        said.role = Role::Toolbar;
    } else if (part == note.lbl2) {
        const bool first = element == 1;
        said.role = Role::PushButton;
        said.name = first ? (note.record.iconized ? u"Restore" : u"Iconize") : u"Close";
        said.press = first ? IDM_ICONIZE : IDM_CLOSE;
        said.area = note.host->look->px(first ? design::kIconizeButton : design::kCloseButton);
    } else if (part == note.pic) {
        said.role = Role::PushButton;
        said.press = IDM_DELETE;
    } else if (part == note.pic2) {
        said.role = Role::Grip;
        said.press = IDM_RESIZE;
    } else if (part == note.lbl) {
        said.role = Role::StaticText;
        said.name = spokenTitle(note.record.Titolo);
    } else if (part == note.nota) {
        said.role = Role::StaticText;
        said.press = IDM_EDIT;
        if (note.record.Nota.empty()) said.name = u"No text";
    } else if (part == note.pic_time) {
        said.role = Role::StaticText;
        if (note.Alarming()) said.name = u"The alarm rings";
    }
    return said;
}

Spoken sayNote(HWND window, int) {
    const fpost* const note = formOf<fpost>(window);
    return note == nullptr ? Spoken{} : spoken(*note);
}

Spoken sayPart(HWND part, int element) {
    const fpost* const note = formOf<fpost>(GetParent(part));
    return note == nullptr ? Spoken{} : spokenPart(*note, part, element);
}

constexpr Voice kNoteVoice{0, sayNote};
constexpr Voice kPartVoice{0, sayPart};
constexpr Voice kStripVoice{kButtonsOfStrip, sayPart};

}  // namespace

LRESULT answerSpoken(const fpost& note, HWND window, WPARAM wp, LPARAM lp) {
    if (window == note.hwnd) return answerAccessible(window, wp, lp, kNoteVoice);
    return answerAccessible(window, wp, lp, window == note.lbl2 ? kStripVoice : kPartVoice);
}
