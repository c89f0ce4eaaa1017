// Colour, close and delete.
#include "note/bas_DialogColor.h"
#include "note/fpost.h"

namespace {

constexpr long kDeleteQuestion = MB_YESNO | MB_ICONQUESTION;

}  // namespace

void fpost::mnuColor() {
    const NoteWatch watch(*this);
    if (IsWindowEnabled(hwnd) == FALSE) return;  // its colour dialog or another box is already open
    CommitEdits();
    if (watch.gone() || refusesChange()) return;
    const std::optional<Rgb> chosen = ChooseColorDialog(hwnd, Backcol());
    // An alarm or Exit may have removed the note while the dialog was open.
    if (watch.gone()) return;
    // Black cannot be stored, because 0 means a damaged record.
    if (!chosen || *chosen == kBlack) return;
    Backcol(static_cast<std::int32_t>(*chosen));
    ShowAlarmStrip();
    kept.save({NoteField::Backcolor});
}

void fpost::CloseForm() {
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone()) return;
    if (Alarming() && SoundStop()) return;
    place.resizer.setMode(false);
    record.closed = true;
    hide();
    kept.save({NoteField::Closed});
    host->notesChanged();
    host->realign();
}

void fpost::DeleteForm(bool Silent) {
    const NoteWatch watch(*this);
    // A note that could not be read differs from what is in the store: it is neither written nor deleted.
    if (beingDeleted || record.readOnly) return;
    CommitEdits();
    if (watch.gone()) return;
    if (!Silent) {
        const Text prompt = u"Are you sure you want to delete the kardel titled ''" + record.Titolo + u"'' ?";
        const int answer = host->ask(prompt, kDeleteQuestion, u"Delete");
        if (watch.gone() || answer != IDYES) return;
    }
    // Only the noise is stopped: arming the next occurrence of a note that is being deleted would delete it
    // again.
    beingDeleted = true;
    alarm.silence();
    alarm.stopCountdown();
    host->remove(*this);
    if (!watch.destroyed()) unload();
}
