#include "note/NoteEditing.h"

#include <algorithm>

#include "note/EditControl.h"
#include "note/fpost.h"

namespace {

/// The width in pixels of a text on one line.
int textWidth(HFONT font, TextView text) {
    const WindowDc screen(nullptr);
    const Selected selected(screen, font);
    SIZE size{};
    GetTextExtentPoint32W(screen, wideData(text), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

}  // namespace

// --- Begin and end ----------------------------------------------------------------------------------------

void NoteEditing::open(Edited what) {
    const NoteRecord& record = note_.record;
    if (note_.Help || editor_.edits(what) || record.readOnly) return;
    note_.CommitEdits();
    // Otherwise the user would write over what the last run left of this note's text.
    if (note_.host->store->hasUnreadDrafts()) note_.host->finishDrafts();
    note_.place.resizer.setMode(false);
    const NoteLook& look = *note_.host->look;
    const NoteRects at = note_.parts.rects();
    bool opened = false;
    if (what == Edited::Body) {
        ShowWindow(note_.pic_time, SW_HIDE);  // it would cover the last line
        const int underGrip = std::max(0, at.txtNota.bottom - at.pic2.top);
        opened = editor_.open(
            {this, note_.hwnd, what, record.Nota, at.txtNota, look.body.get(), note_.pic2, underGrip});
    } else {
        for (const HWND picture : {note_.lbl2, note_.pic})
            ShowWindow(picture, SW_HIDE);
        if (record.iconized) ShowWindow(note_.pic2, SW_HIDE);
        opened = editor_.open(
            {this, note_.hwnd, what, record.Titolo, at.txtTitle, look.title.get(), note_.pic2, 0});
    }
    if (!opened || !editor_.isOpen()) {
        editClosed(what);
    } else if (what == Edited::Body) {
        note_.ringing.showStrip();  // while it rings there must be something to click
    }
}

void NoteEditing::editClosed(Edited what) {
    ended_ = note_.host->uptime();
    if (what == Edited::Body) {
        note_.ringing.showStrip();
        return;
    }
    for (const HWND picture : {note_.lbl2, note_.pic, note_.pic2})
        ShowWindow(picture, SW_SHOWNA);
}

void NoteEditing::end(Edited what, bool keep) {
    if (editor_.edits(what)) editor_.end(keep);
}

bool NoteEditing::justEnded() const {
    constexpr std::uint64_t kLately = 1000;
    return ended_ && note_.host->uptime() - *ended_ < kLately;
}

void NoteEditing::place(const NoteRects& at) const {
    editor_.place(bodyBeingEdited() ? at.txtNota : at.txtTitle);
}

bool NoteEditing::keepEdit(Edited what, const Text& text) {
    if (what == Edited::Title) {
        const bool kept = storeTitle(text);
        note_.host->notesChanged();
        return kept;
    }
    // A body from elsewhere may have other line breaks than the editor's, so it is only written when it was
    // edited.
    NoteRecord& record = note_.record;
    const bool changed = text != withLineBreaks(record.Nota);
    if (changed) record.Nota = text;
    const NoteWatch watch(note_);
    const bool kept = (!changed && !note_.kept.owes(NoteField::Nota)) || note_.kept.saved({NoteField::Nota});
    if (!watch.destroyed()) setWindowText(note_.nota, withLineBreaks(record.Nota));
    return kept;
}

bool NoteEditing::finishEdit(bool title, const Text& text) {
    if (title) return storeTitle(text);
    note_.record.Nota = text;
    setWindowText(note_.nota, withLineBreaks(text));
    return note_.kept.saved({NoteField::Nota});
}

// --- The draft, and what the store can keep ---------------------------------------------------------------

void NoteEditing::saveDraft(Edited what, const Text& text) {
    note_.host->store->saveDraft(note_.number, what == Edited::Title, text);
}

void NoteEditing::dropDraft() {
    note_.host->store->dropDraft(note_.number);
}

bool NoteEditing::fits(Edited what, const Text& text) const {
    return note_.host->store->fits(what == Edited::Body ? NoteField::Nota : NoteField::Titolo, text);
}

// --- Keys -------------------------------------------------------------------------------------------------

bool NoteEditing::keyOfNote(UINT message, WPARAM key, LPARAM how) {
    return message == WM_SYSKEYDOWN ? note_.commands.onSystemKeyDown(key)
                                    : note_.commands.onKeyDown(key, (HIWORD(how) & KF_REPEAT) != 0);
}

// --- Fitting the window to its text -----------------------------------------------------------------------

void NoteEditing::CheckTitleWidth() {
    if (widenToTitle()) note_.kept.save({NoteField::Width});
}

bool NoteEditing::storeTitle(const Text& title) {
    note_.Titolo(title);
    if (widenToTitle()) return note_.kept.saved({NoteField::Titolo, NoteField::Width});
    return note_.kept.saved({NoteField::Titolo});
}

bool NoteEditing::widenToTitle() {
    const NoteLook& look = *note_.host->look;
    const NotePainter drawn = note_.surface.painter();
    RECT client{};
    GetClientRect(note_.hwnd, &client);
    const int title = drawn.titleWidth(note_.record.Titolo);
    const int room = drawn.titleRoom(static_cast<int>(client.right));
    if (title <= room) return false;
    const int around = note_.place.window().width() - room;
    const int wanted = title + textWidth(look.title.get(), u"X") + around;
    note_.pWidth(look.twips(std::min(wanted, GetSystemMetrics(SM_CXSCREEN))));
    return true;
}

void NoteEditing::FitWidth() {
    const NoteLook& look = *note_.host->look;
    const HFONT font = look.body.get();
    const Text body = withLineBreaks(note_.record.Nota);
    int widest = 0;
    for (std::size_t at = 0; at <= body.size();) {
        const std::size_t end = std::min(body.find(u"\r\n", at), body.size());
        widest = std::max(widest, textWidth(font, TextView(body).substr(at, end - at)));
        at = end + 2;
    }
    const int wanted = widest + textWidth(font, u"X") + 2 * look.px(design::kMargin);
    if (wanted <= note_.place.window().width()) return;
    note_.pWidth(look.twips(std::min(wanted, GetSystemMetrics(SM_CXSCREEN))));
    note_.kept.save({NoteField::Width});
}

void NoteEditing::FitHeight() {
    const NoteLook& look = *note_.host->look;
    const Text wrapped = WrappedText();
    RECT size{0, 0, GetSystemMetrics(SM_CXSCREEN), 0};
    {
        const WindowDc screen(nullptr);
        const Selected font(screen, look.body.get());
        DrawTextW(screen, wideData(wrapped), static_cast<int>(wrapped.size()), &size,
                  DT_CALCRECT | DT_NOPREFIX | DT_EXPANDTABS);
    }
    const int around = look.px(design::kNotaTop) + look.px(design::kMargin) + 2 * look.px(design::kBorder);
    const int wanted = static_cast<int>(size.bottom) + around;
    if (wanted <= look.px(Twips{note_.pHeight()})) return;
    note_.pHeight(look.twips(std::min(wanted, GetSystemMetrics(SM_CYSCREEN))));
    note_.kept.save({NoteField::Height});
}

Text NoteEditing::WrappedText() const {
    const PxRect at = note_.parts.rects().txtNota;
    return wrappedText(note_.hwnd, note_.record.Nota, at, note_.host->look->body.get());
}
