// Dragging and iconizing.
#include "note/fpost.h"
#include "support/Accessible.h"

// --- Moving -----------------------------------------------------------------------------------------------

void fpost::DragWindow() {
    if (Alarming()) {
        SoundStop();
        return;
    }
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone() || record.readOnly) return;
    place.resizer.setMode(false);
    // A message about an edit that could not be stored may have outlasted the press: the system's move loop
    // would then hold the note until the next click.
    if (GetKeyState(VK_LBUTTON) >= 0) return;

    place.drag();
}

// --- Iconizing --------------------------------------------------------------------------------------------

void fpost::toggleIconized() {
    const NoteWatch watch(*this);
    CommitEdits();
    if (watch.gone() || refusesChange()) return;
    record.iconized = !record.iconized;
    IconizeForm();
    if (beingDeleted) return;  // it rang, and its time being over took it away
    kept.save({NoteField::Iconized});
    host->notesChanged();
    host->realign();
}

void fpost::IconizeForm() {
    if (Alarming() && SoundStop()) return;
    showIconized();
}

void fpost::showIconized() {
    // What the store holds now counts, also when another program put it there; without a usable figure the
    // note keeps the height that it remembers.
    const std::int32_t height = record.height;
    if (!record.iconized && (!kept.refreshed({NoteField::Height}) || record.height <= 0))
        record.height = height;
    place.goHome();
    tellNameChanged(hwnd);
    if (record.iconized) return;
    if (visible()) host->realign();
    ShowAlarmStrip();
}
