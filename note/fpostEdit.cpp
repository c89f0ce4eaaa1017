// Editing in place: a native edit control laid over the label, body or title, and what ends it.
#include <algorithm>
#include <utility>

#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Number.h"

namespace {

constexpr WPARAM kSelectAll = 1;   // the character that Ctrl+A types
constexpr WPARAM kNewNote = 14;    // and Ctrl+N
constexpr WPARAM kLineFeed = 10;   // Ctrl+Enter
constexpr UINT kDraftDelay = 400;  // ms from a key to the draft: no more than that is typed in vain

/// Width in pixels of a text on one line.
int textWidth(HFONT font, TextView text) {
    const WindowDc screen(nullptr);
    const Selected selected(screen, font);
    SIZE size{};
    GetTextExtentPoint32W(screen, wideData(text), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

void putCaretAtEnd(HWND editor) {
    const int length = GetWindowTextLengthW(editor);
    SendMessageW(editor, EM_SETSEL, static_cast<WPARAM>(length), length);
    SendMessageW(editor, EM_SCROLLCARET, 0, 0);
}

void insertAtCaret(HWND editor, const Text& text) {
    constexpr WPARAM kCanUndo = TRUE;
    SendMessageW(editor, EM_REPLACESEL, kCanUndo, reinterpret_cast<LPARAM>(wide(text)));
}

}  // namespace

// --- Begin and end --------------------------------------------------------------------------------------

void fpost::EditForm() {
    if (Help || bodyBeingEdited || record.iconized || record.readOnly) return;
    CommitEdits();
    setResizeMode(false);
    lastGoodEdit = withLineBreaks(record.Nota);
    setStoreLimit(txtNota, NoteField::Nota);
    SetWindowTextW(txtNota, wide(lastGoodEdit));
    SendMessageW(txtNota, EM_EMPTYUNDOBUFFER, 0, 0);
    bodyBeingEdited = true;
    oneShot = OneShotKey::None;
    ShowWindow(txtNota, SW_SHOW);
    ShowAlarmStrip();
    putCaretAtEnd(txtNota);
    SetForegroundWindow(hwnd);
    SetFocus(txtNota);
}

void fpost::endBodyEdit() {
    // The flag first: hiding the control takes the focus from it, and losing the focus saves.
    bodyBeingEdited = false;
    editEnded = host->uptime();
    oneShot = OneShotKey::None;
    const bool focused = GetFocus() == txtNota;
    ShowWindow(txtNota, SW_HIDE);
    SetWindowTextW(txtNota, L"");
    if (focused) SetFocus(hwnd);
    ShowAlarmStrip();
}

void fpost::SaveNote() {
    if (!bodyBeingEdited) return;
    bodyBeingEdited = false;
    const Text edited = windowText(txtNota);
    // A body from elsewhere may hold other line breaks than the editor's: only what was edited is written.
    const bool refused = std::find(unsaved.begin(), unsaved.end(), NoteField::Nota) != unsaved.end();
    const bool changed = edited != withLineBreaks(record.Nota);
    if (changed) record.Nota = edited;
    // Stored first: the text does not wait for the screen. What the store refuses stays in the draft.
    const bool kept = (!changed && !refused) || store({NoteField::Nota});
    setWindowText(nota, withLineBreaks(record.Nota));
    endBodyEdit();
    if (kept) dropDraft();
}

void fpost::CancelNote() {
    endBodyEdit();
    dropDraft();
}

void fpost::EditCaption() {
    if (Help || titleBeingEdited || record.readOnly) return;
    CommitEdits();
    setResizeMode(false);
    lastGoodEdit = record.Titolo;
    setStoreLimit(txtTitle, NoteField::Titolo);
    SetWindowTextW(txtTitle, wide(record.Titolo));
    SendMessageW(txtTitle, EM_EMPTYUNDOBUFFER, 0, 0);
    titleBeingEdited = true;
    oneShot = OneShotKey::None;
    for (const HWND picture : {lbl2, pic})
        ShowWindow(picture, SW_HIDE);
    if (record.iconized) ShowWindow(pic2, SW_HIDE);
    ShowWindow(txtTitle, SW_SHOW);
    putCaretAtEnd(txtTitle);
    SetForegroundWindow(hwnd);
    SetFocus(txtTitle);
}

void fpost::SaveCaption(bool Apply) {
    if (!titleBeingEdited) return;
    titleBeingEdited = false;
    editEnded = host->uptime();
    oneShot = OneShotKey::None;
    const Text edited = windowText(txtTitle);
    const bool focused = GetFocus() == txtTitle;
    ShowWindow(txtTitle, SW_HIDE);
    for (const HWND picture : {lbl2, pic, pic2})
        ShowWindow(picture, SW_SHOWNA);
    if (focused) SetFocus(hwnd);
    if (!Apply) {
        dropDraft();
        return;
    }
    if (storeTitle(edited)) dropDraft();
    host->notesChanged();
}

void fpost::CommitEdits() {
    mover.settle(hwnd);
    SaveNote();
    SaveCaption(true);
}

// --- The draft --------------------------------------------------------------------------------------------

void fpost::draftSoon() {
    if (drafting || (!bodyBeingEdited && !titleBeingEdited)) return;
    drafting = SetTimer(hwnd, IDT_DRAFT, kDraftDelay, nullptr) != 0;
}

void fpost::draftNow() {
    if (drafting) KillTimer(hwnd, IDT_DRAFT);
    drafting = false;
    if (!bodyBeingEdited && !titleBeingEdited) return;
    host->store->saveDraft(number, titleBeingEdited, windowText(titleBeingEdited ? txtTitle : txtNota));
}

void fpost::dropDraft() {
    if (drafting) KillTimer(hwnd, IDT_DRAFT);
    drafting = false;
    host->store->dropDraft(number);
}

bool fpost::finishEdit(bool title, const Text& text) {
    if (title) return storeTitle(text);
    record.Nota = text;
    setWindowText(nota, withLineBreaks(text));
    return store({NoteField::Nota});
}

// --- What the store can keep ------------------------------------------------------------------------------

void fpost::setStoreLimit(HWND editor, NoteField field) const {
    // 0 lifts the control's own limit of 32 K characters.
    SendMessageW(editor, EM_SETLIMITTEXT, host->store->limit(field), 0);
}

void fpost::keepWithinStore(HWND editor) {
    const bool open = editor == txtNota ? bodyBeingEdited : titleBeingEdited;
    if (!open) return;
    const NoteField field = editor == txtNota ? NoteField::Nota : NoteField::Titolo;
    const Text text = windowText(editor);
    // A text that was too long when the editor opened may get shorter, step by step.
    if (host->store->fits(field, text) || text.size() < lastGoodEdit.size()) {
        lastGoodEdit = text;
        return;
    }
    // Fewer characters than the control's limit, but more bytes than the record's field: what cannot be kept
    // cannot be typed.
    DWORD caret = 0;
    SendMessageW(editor, EM_GETSEL, reinterpret_cast<WPARAM>(&caret), 0);
    SetWindowTextW(editor, wide(lastGoodEdit));
    const auto at = std::min<std::size_t>(caret > 0 ? caret - 1 : 0, lastGoodEdit.size());
    SendMessageW(editor, EM_SETSEL, at, static_cast<LPARAM>(at));
    MessageBeep(MB_OK);
}

// --- Keys -------------------------------------------------------------------------------------------------

LRESULT fpost::onEditor(HWND editor, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_GETOBJECT:
            nameControl(editor, editor == txtNota ? u"Text" : u"Title");
            break;
        case WM_DESTROY:
            forgetName(editor);
            break;
        case WM_KEYDOWN:
            if (wp == VK_PROCESSKEY) break;  // Enter and Esc of an input method belong to its composition
            if (onKeyDown(wp) || onEditorKey(editor, wp)) return 0;
            break;
        case WM_SYSKEYDOWN:
            if (onSystemKeyDown(wp)) return 0;
            break;
        case WM_KEYUP:
            oneShot = OneShotKey::None;
            break;
        case WM_CHAR:
            if (onEditorCharacter(editor, wp)) return 0;
            break;
        case WM_KILLFOCUS: {
            const LRESULT result = passToControl(editor, message, wp, lp);
            if (editor == txtNota) {
                SaveNote();
            } else {
                SaveCaption(true);
            }
            return result;
        }
        default:
            break;
    }
    return passToControl(editor, message, wp, lp);
}

bool fpost::onEditorKey(HWND editor, WPARAM key) {
    oneShot = OneShotKey::None;
    if (key == VK_ESCAPE) oneShot = OneShotKey::Cancel;
    if (key == VK_RETURN) {
        const bool shift = GetKeyState(VK_SHIFT) < 0;
        const bool control = GetKeyState(VK_CONTROL) < 0;
        oneShot = OneShotKey::Save;
        if (editor == txtNota && control) {
            oneShot = OneShotKey::BlankLine;
        } else if (editor == txtNota && shift) {
            oneShot = OneShotKey::NewLine;
        }
    }
    return oneShot != OneShotKey::None;
}

bool fpost::onEditorCharacter(HWND editor, WPARAM character) {
    const OneShotKey key = oneShot;
    oneShot = OneShotKey::None;
    const bool body = editor == txtNota;
    switch (character) {
        case VK_RETURN:
        case kLineFeed:
            if (key == OneShotKey::NewLine) {
                insertAtCaret(editor, u"\r\n");
            } else if (key == OneShotKey::BlankLine) {
                insertAtCaret(editor, u"\r\n\r\n");
            } else if (key == OneShotKey::Save && body) {
                SaveNote();
            } else if (!body && (key == OneShotKey::Save || character == VK_RETURN)) {
                SaveCaption(true);  // also for a character that no key typed
            }
            return true;
        case VK_ESCAPE:
            if (!body) {
                SaveCaption(false);
            } else if (key == OneShotKey::Cancel) {
                CancelNote();
            }
            return true;
        case kSelectAll:
            SendMessageW(editor, EM_SETSEL, 0, -1);
            return true;
        case kNewNote:
            return true;
        default:
            return false;
    }
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
    const int around = windowRect().width() - room;
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
    if (wanted <= windowRect().width()) return;
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
    // The control itself says where it breaks; it has the label's width and font.
    const Text before = windowText(txtNota);
    SetWindowTextW(txtNota, wide(withLineBreaks(record.Nota)));
    const auto lines = static_cast<int>(SendMessageW(txtNota, EM_GETLINECOUNT, 0, 0));
    Text wrapped;
    for (int line = 0; line < lines; ++line) {
        const LRESULT start = SendMessageW(txtNota, EM_LINEINDEX, static_cast<WPARAM>(line), 0);
        const auto length =
            static_cast<std::size_t>(SendMessageW(txtNota, EM_LINELENGTH, static_cast<WPARAM>(start), 0));
        Text text(length + 1, u'\0');
        text[0] = static_cast<char16_t>(text.size());  // the control wants the room in the first character
        const LRESULT copied = SendMessageW(txtNota, EM_GETLINE, static_cast<WPARAM>(line),
                                            reinterpret_cast<LPARAM>(wideBuffer(text)));
        if (line > 0) wrapped += u"\r\n";
        wrapped += text.substr(0, static_cast<std::size_t>(copied));
    }
    SetWindowTextW(txtNota, wide(before));
    return wrapped;
}
