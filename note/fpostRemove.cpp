// Close and delete.
#include "note/fpost.h"

namespace {

constexpr long kDeleteQuestion = MB_YESNO | MB_ICONQUESTION;

}  // namespace

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
