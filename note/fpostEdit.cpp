// Editing in place: the note's own part of it. The edit itself is NoteEditor's.
#include <algorithm>

#include "note/fpost.h"

namespace {

/// Width in pixels of a text on one line.
int textWidth(HFONT font, TextView text) {
    const WindowDc screen(nullptr);
    const Selected selected(screen, font);
    SIZE size{};
    GetTextExtentPoint32W(screen, wideData(text), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

}  // namespace

// --- Begin and end --------------------------------------------------------------------------------------

void fpost::openEditor(Edited what) {
    if (Help || editor.edits(what) || record.readOnly) return;
    CommitEdits();
    place.resizer.setMode(false);
    const NoteLook& look = *host->look;
    const NoteRects at = partRects();
    if (what == Edited::Body) {
        ShowWindow(pic_time, SW_HIDE);  // it would cover the last line
        const int underGrip = std::max(0, at.txtNota.bottom - at.pic2.top);
        editor.open({this, hwnd, what, record.Nota, at.txtNota, look.body.get(), pic2, underGrip});
    } else {
        for (const HWND picture : {lbl2, pic})
            ShowWindow(picture, SW_HIDE);
        if (record.iconized) ShowWindow(pic2, SW_HIDE);
        editor.open({this, hwnd, what, record.Titolo, at.txtTitle, look.title.get(), pic2, 0});
    }
    if (!editor.isOpen()) {
        editClosed(what);
    } else if (what == Edited::Body) {
        ShowAlarmStrip();  // while it rings there must be something to click
    }
}

void fpost::editClosed(Edited what) {
    editEnded = host->uptime();
    if (what == Edited::Body) {
        ShowAlarmStrip();
        return;
    }
    for (const HWND picture : {lbl2, pic, pic2})
        ShowWindow(picture, SW_SHOWNA);
}

void fpost::EditForm() {
    if (!record.iconized) openEditor(Edited::Body);
}

void fpost::EditCaption() {
    openEditor(Edited::Title);
}

void fpost::SaveNote() {
    if (bodyBeingEdited()) editor.end(true);
}

void fpost::CancelNote() {
    if (bodyBeingEdited()) editor.end(false);
}

void fpost::SaveCaption(bool Apply) {
    if (titleBeingEdited()) editor.end(Apply);
}

void fpost::CommitEdits() {
    place.mover.settle(hwnd);
    editor.end(true);
}

bool fpost::justEdited() const {
    constexpr std::uint64_t kLately = 1000;
    return editEnded && host->uptime() - *editEnded < kLately;
}

bool fpost::keepEdit(Edited what, const Text& text) {
    if (what == Edited::Title) {
        const bool kept = storeTitle(text);
        host->notesChanged();
        return kept;
    }
    // A body from elsewhere may hold other line breaks than the editor's: only what was edited is written.
    const bool refused = std::find(unsaved.begin(), unsaved.end(), NoteField::Nota) != unsaved.end();
    const bool changed = text != withLineBreaks(record.Nota);
    if (changed) record.Nota = text;
    const NoteWatch watch(*this);
    const bool kept = (!changed && !refused) || store({NoteField::Nota});
    if (!watch.destroyed()) setWindowText(nota, withLineBreaks(record.Nota));
    return kept;
}

bool fpost::finishEdit(bool title, const Text& text) {
    if (title) return storeTitle(text);
    record.Nota = text;
    setWindowText(nota, withLineBreaks(text));
    return store({NoteField::Nota});
}

// --- The draft, and what the store can keep ---------------------------------------------------------------

void fpost::saveDraft(Edited what, const Text& text) {
    host->store->saveDraft(number, what == Edited::Title, text);
}

void fpost::dropDraft() {
    host->store->dropDraft(number);
}

bool fpost::fits(Edited what, const Text& text) const {
    return host->store->fits(what == Edited::Body ? NoteField::Nota : NoteField::Titolo, text);
}

// --- Keys -------------------------------------------------------------------------------------------------

bool fpost::keyOfNote(UINT message, WPARAM key, LPARAM how) {
    return message == WM_SYSKEYDOWN ? commands.onSystemKeyDown(key)
                                    : commands.onKeyDown(key, (HIWORD(how) & KF_REPEAT) != 0);
}

// --- Fitting the window to its text -----------------------------------------------------------------------

void fpost::CheckTitleWidth() {
    if (widenToTitle()) store({NoteField::Width});
}

bool fpost::storeTitle(const Text& title) {
    Titolo(title);
    return widenToTitle() ? store({NoteField::Titolo, NoteField::Width}) : store({NoteField::Titolo});
}

bool fpost::widenToTitle() {
    const NoteLook& look = *host->look;
    const NotePainter drawn = painter();
    RECT client{};
    GetClientRect(hwnd, &client);
    const int title = drawn.titleWidth(record.Titolo);
    const int room = drawn.titleRoom(static_cast<int>(client.right));
    if (title <= room) return false;
    const int around = place.window().width() - room;
    const int wanted = title + textWidth(look.title.get(), u"X") + around;
    pWidth(look.twips(std::min(wanted, GetSystemMetrics(SM_CXSCREEN))));
    return true;
}

void fpost::FitWidth() {
    const NoteLook& look = *host->look;
    const HFONT font = look.body.get();
    const Text body = withLineBreaks(record.Nota);
    int widest = 0;
    for (std::size_t at = 0; at <= body.size();) {
        const std::size_t end = std::min(body.find(u"\r\n", at), body.size());
        widest = std::max(widest, textWidth(font, TextView(body).substr(at, end - at)));
        at = end + 2;
    }
    const int wanted = widest + textWidth(font, u"X") + 2 * look.px(design::kMargin);
    if (wanted <= place.window().width()) return;
    pWidth(look.twips(std::min(wanted, GetSystemMetrics(SM_CXSCREEN))));
    store({NoteField::Width});
}

void fpost::FitHeight() {
    const NoteLook& look = *host->look;
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
    if (wanted <= look.px(Twips{pHeight()})) return;
    pHeight(look.twips(std::min(wanted, GetSystemMetrics(SM_CYSCREEN))));
    store({NoteField::Height});
}

Text fpost::WrappedText() const {
    const NoteRects at =
        layoutNote(laidWidth, laidHeight, record.iconized, host->look->dpi, host->look->titleHeight);
    return wrappedText(hwnd, record.Nota, at.txtNota, host->look->body.get());
}
