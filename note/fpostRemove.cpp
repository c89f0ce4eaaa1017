// Colour, close and delete.
#include "note/bas_DialogColor.h"
#include "note/fpost.h"

namespace {

constexpr long kDeleteQuestion = MB_YESNO | MB_ICONQUESTION;

}  // namespace

void fpost::mnuColor() {
    const HWND window = hwnd;
    if (IsWindowEnabled(window) == FALSE) return;  // its own colour dialog or another box is open already
    CommitEdits();
    if (formOf<fpost>(window) != this || beingDeleted) return;
    const std::optional<Rgb> chosen = ChooseColorDialog(window, Backcol());
    // An alarm or Exit may have taken the note while the dialog was open.
    if (formOf<fpost>(window) != this || beingDeleted) return;
    if (!chosen || *chosen == kBlack)
        return;  // black is no colour to be stored: 0 stands for a damaged record
    Backcol(static_cast<std::int32_t>(*chosen));
    ShowAlarmStrip();
    store({NoteField::Backcolor});
}

void fpost::CloseForm() {
    const HWND window = hwnd;
    CommitEdits();
    if (formOf<fpost>(window) != this || beingDeleted) return;
    if (Alarming && SoundStop()) return;
    setResizeMode(false);
    record.closed = true;
    hide();
    store({NoteField::Closed});
    host->notesChanged();
    host->realign();
}

void fpost::DeleteForm(bool Silent) {
    const HWND window = hwnd;
    // A note that could not be read is not what stands in the store: it is neither written nor deleted.
    if (beingDeleted || record.readOnly) return;
    CommitEdits();
    if (formOf<fpost>(window) != this || beingDeleted) return;
    if (!Silent) {
        const Text prompt = u"Are you sure you want to delete the kardel titled ''" + record.Titolo + u"'' ?";
        const int answer = host->ask(prompt, kDeleteQuestion, u"Delete");
        if (formOf<fpost>(window) != this || beingDeleted || answer != IDYES) return;
    }
    // Only the noise ends: arming the next occurrence of a note that goes would delete it a second time.
    beingDeleted = true;
    StopRinging();
    stopCountdown();
    host->remove(*this);
    if (formOf<fpost>(window) == this) unload();
}
