// The commands on all notes, and automatic position.
#include "core/Columns.h"
#include "core/basPost.h"
#include "note/bas_GetWorkArea.h"

template <class Act>
void basPost::onAllNotes(Act act) {
    CommitEdits();
    const Bulk bulk(*this);
    forEachNote(act);
}

void basPost::HideAll(bool hidden) {
    if (Notes.empty()) return;
    const NoteStore::Command command(store);
    onAllNotes([this, hidden](fpost& note) {
        if (note.Alarming() && note.SoundStop()) return;
        if (hidden) {
            note.hide();
        } else {
            reopen(note);
        }
    });
    state.onAllHidden(hidden, counted());
    if (!AllHidden() && settings.AlignAll) AutoPosition();
}

void basPost::reopen(fpost& note) {
    if (note.record.closed) {
        note.record.closed = false;
        note.kept.save({NoteField::Closed});
    }
    // Place, size and z-order come from the store, where another program may have changed them meanwhile.
    // What cannot be read stays as it was last known.
    static_cast<void>(
        note.kept.refreshed({NoteField::Topmost, NoteField::X, NoteField::Y, NoteField::Width}));
    if (!note.record.iconized) static_cast<void>(note.kept.refreshed({NoteField::Height}));
    note.restoreIfMinimized();
    note.place.goHome();
    note.show(false);
}

void basPost::IconizeAll(bool iconized) {
    if (Notes.empty()) return;
    const NoteStore::Command command(store);
    onAllNotes([this, iconized](fpost& note) {
        note.restoreIfMinimized();
        if (note.record.iconized == iconized) return;
        note.record.iconized = iconized;
        note.IconizeForm();
        if (holds(&note)) note.kept.save({NoteField::Iconized});
    });
    state.onAllIconized(iconized, counted());
    if (settings.AlignAll) AutoPosition();
}

void basPost::Realign() {
    if (state.mayRealign() && settings.AlignAll) AutoPosition();
}

void basPost::AutoPosition() {
    const NoteStore::Command command(store);
    for (fpost* note : placeInColumns())
        note->kept.save({NoteField::X, NoteField::Y});
}

std::vector<fpost*> basPost::placeInColumns() {
    const Bulk bulk(*this);  // placing notes must not cause another re-alignment
    std::vector<ColumnNote> before;
    for (fpost* note : Notes) {
        note->restoreIfMinimized();
        const PxRect at = note->place.area();
        before.push_back({look.twips(at.left), look.twips(at.top), look.twips(at.width()),
                          look.twips(at.height()), note->visible()});
    }
    const double twipsPerPixel = static_cast<double>(kTwipsPerInch) / look.dpi;
    const std::vector<ColumnPlace> after = automaticPosition(before, GetWorkArea(), twipsPerPixel);
    std::vector<fpost*> moved;
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (!after[i].moved) continue;
        fpost& note = *Notes[i];
        if (note.record.x != after[i].left || note.record.y != after[i].top) moved.push_back(&note);
        note.place.moveTo(Twips{after[i].left}, Twips{after[i].top});
    }
    return moved;
}

void basPost::ToggleAlignAll() {
    const NoteStore::Command command(store);
    settings.AlignAll = !settings.AlignAll;
    store.storeSetting(Setting::AlignAll, settings);
    if (settings.AlignAll) {
        settings.EasyAlign = false;  // for this run: its key keeps what it holds
        placeInColumns();
    }
    for (fpost* note : Notes)
        note->kept.save({NoteField::X, NoteField::Y});
}

void basPost::ToggleEasyAlign() {
    settings.EasyAlign = !settings.EasyAlign;
    store.storeSetting(Setting::EasyAlign, settings);
    if (settings.EasyAlign) settings.AlignAll = false;  // for this run: its key keeps what it holds
}
