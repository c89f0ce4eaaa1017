#include "note/NoteEditor.h"

#include <algorithm>
#include <utility>

#include "note/EditControl.h"
#include "resources/resource.h"
#include "storage/bas_LogError.h"
#include "support/Accessible.h"
#include "support/Window.h"
// Need windows.h before them.
#include <commctrl.h>
#include <imm.h>

namespace {

constexpr WPARAM kSelectAll = 1;      // the character that Ctrl+A types
constexpr WPARAM kNewNote = 14;       // and Ctrl+N
constexpr WPARAM kLineFeed = 10;      // Ctrl+Enter
constexpr WPARAM kPaste = 22;         // Ctrl+V
constexpr WPARAM kDeleteWord = 0x7F;  // Ctrl+Backspace
constexpr UINT kDraftDelay = 1000;    // ms from a key to the draft: so much typing may be lost
constexpr WPARAM kCanUndo = TRUE;
constexpr Text::value_type kCutTitle[] = u"Not all of it was pasted";
constexpr Text::value_type kCutText[] = u"The note can hold no more text.";

Text composed(HIMC context) {
    const LONG bytes = ImmGetCompositionStringW(context, GCS_COMPSTR, nullptr, 0);
    if (bytes <= 0) return {};
    Text text(static_cast<std::size_t>(bytes) / sizeof(char16_t), u'\0');
    ImmGetCompositionStringW(context, GCS_COMPSTR, text.data(), static_cast<DWORD>(bytes));
    return text;
}

}  // namespace

// --- Begin and end --------------------------------------------------------------------------------------

NoteEditor::~NoteEditor() {
    if (window_ != nullptr) detach(window_);
}

bool NoteEditor::open(Opening opening) {
    at_ = std::move(opening);
    const Text text = at_.what == Edited::Body ? withLineBreaks(at_.text) : at_.text;
    window_ = createEditor(at_.note, at_.what == Edited::Body, text, at_.place, at_.font);
    if (window_ == nullptr) return false;
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    control_ = replaceProcedure(window_, procedure);
    open_ = true;
    oneShot_ = OneShotKey::None;
    typed_ = {};
    wheel_ = {};
    keepTextFree();
    pass(EM_SETSEL, text.size(), static_cast<LPARAM>(text.size()));
    SetWindowPos(window_, at_.under, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    pass(EM_SCROLLCARET, 0, 0);
    SetForegroundWindow(at_.note);
    SetFocus(window_);
    return true;
}

void NoteEditor::end(bool keep) {
    if (!open_) return;
    if (keep) takeComposition();
    open_ = false;  // before anything takes the focus, since losing it ends the edit
    const HWND window = window_;
    // Stored first, so that the text does not wait for the screen. What the store refuses stays in the draft.
    const bool settled = !keep || at_.host->keepEdit(at_.what, windowText(window));
    if (IsWindow(window) == FALSE) return;  // the host has destroyed the note
    const Edited what = at_.what;
    NoteEditorHost* const host = at_.host;
    close();
    if (settled) host->dropDraft();
    host->editClosed(what);
}

void NoteEditor::close() {
    if (GetFocus() == window_) SetFocus(at_.note);
    const HWND window = std::exchange(window_, nullptr);
    drafting_ = false;  // its timer goes with the window
    detach(window);
    if (*inside_ == 0) {
        DestroyWindow(window);
        return;
    }
    // Its context menu is open inside its own procedure, so the control goes once that has returned.
    SetWindowLongPtrW(window, GWLP_ID, 0);
    ShowWindow(window, SW_HIDE);
    endOpenMenu();
    PostMessageW(window, WM_CLOSE, 0, 0);
}

void NoteEditor::detach(HWND window) const {
    forgetName(window);
    replaceProcedure(window, control_);
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
}

void NoteEditor::place(const PxRect& at) const {
    if (window_ == nullptr) return;
    SetWindowPos(window_, nullptr, at.left, at.top, at.width(), at.height(), SWP_NOZORDER | SWP_NOACTIVATE);
    keepTextFree();
}

void NoteEditor::keepTextFree() const {
    if (at_.freeBelow == 0 || at_.what == Edited::Title) return;
    RECT area{};
    GetClientRect(window_, &area);
    area.bottom = std::max<LONG>(area.bottom - at_.freeBelow, lineHeight(window_));
    pass(EM_SETRECT, 0, reinterpret_cast<LPARAM>(&area));
}

// --- The draft --------------------------------------------------------------------------------------------

void NoteEditor::onNotice(unsigned code) {
    if (code == EN_CHANGE) draftSoon();
}

void NoteEditor::draftSoon() {
    if (drafting_ || !open_) return;
    drafting_ = SetTimer(window_, IDT_DRAFT, kDraftDelay, nullptr) != 0;
}

void NoteEditor::writeDraft() {
    if (!drafting_) return;
    KillTimer(window_, IDT_DRAFT);
    drafting_ = false;
    if (open_) at_.host->saveDraft(at_.what, windowText(window_));
}

// --- Messages ---------------------------------------------------------------------------------------------

LRESULT CALLBACK NoteEditor::procedure(HWND editor, UINT message, WPARAM wp, LPARAM lp) noexcept {
    auto* const self = reinterpret_cast<NoteEditor*>(GetWindowLongPtrW(editor, GWLP_USERDATA));
    if (self == nullptr) return DefWindowProcW(editor, message, wp, lp);
    try {
        return self->onMessage(message, wp, lp);
    } catch (...) {
        WriteLog(u"NoteEditor", u"An error escaped a message handler.", message);
        return 0;
    }
}

LRESULT NoteEditor::pass(UINT message, WPARAM wp, LPARAM lp) const {
    const std::shared_ptr<int> inside = inside_;
    ++*inside;
    const LRESULT result = CallWindowProcW(control_, window_, message, wp, lp);
    --*inside;
    return result;
}

LRESULT NoteEditor::onMessage(UINT message, WPARAM wp, LPARAM lp) {
    const HWND window = window_;
    switch (message) {
        case WM_GETOBJECT:
            nameControl(window_, at_.what == Edited::Body ? u"Text" : u"Title");
            break;
        case WM_DESTROY:
            forgetName(window_);
            break;
        case WM_KEYDOWN:
            if (wp == VK_PROCESSKEY) break;  // Enter and Esc of an input method belong to its composition
            if (at_.host->keyOfNote(message, wp, lp) || onKey(wp)) return 0;
            break;
        case WM_SYSKEYDOWN:
            if (at_.host->keyOfNote(message, wp, lp)) return 0;
            break;
        case WM_KEYUP:
            oneShot_ = OneShotKey::None;
            break;
        case WM_CHAR:
            if (onCharacter(static_cast<char16_t>(wp))) return 0;
            break;
        case WM_PASTE:
            paste();
            return 0;
        case EM_REPLACESEL:
            return replaceSelection(wp, lp);
        case WM_SETTEXT:
            return replaceAll(lp);
        case WM_IME_COMPOSITION:
            return onComposition(wp, lp);
        case WM_MOUSEWHEEL:
            if (at_.what == Edited::Title) break;
            turnWheel(GET_WHEEL_DELTA_WPARAM(wp));
            return 0;
        case WM_TIMER:
            if (wp != IDT_DRAFT) break;
            writeDraft();
            return 0;
        case WM_KILLFOCUS: {
            const LRESULT result = pass(message, wp, lp);
            if (IsWindow(window) != FALSE && window == window_) end(true);
            return result;
        }
        case WM_NCDESTROY: {
            const LRESULT result = pass(message, wp, lp);
            window_ = nullptr;  // the control goes with its note
            open_ = false;
            return result;
        }
        default:
            break;
    }
    return pass(message, wp, lp);
}

// --- Keys -------------------------------------------------------------------------------------------------

bool NoteEditor::onKey(WPARAM key) {
    oneShot_ = OneShotKey::None;
    if (key == VK_ESCAPE) oneShot_ = OneShotKey::Cancel;
    if (key == VK_RETURN) {
        const bool body = at_.what == Edited::Body;
        oneShot_ = OneShotKey::Save;
        if (body && GetKeyState(VK_CONTROL) < 0) {
            oneShot_ = OneShotKey::BlankLine;
        } else if (body && GetKeyState(VK_SHIFT) < 0) {
            oneShot_ = OneShotKey::NewLine;
        }
    }
    return oneShot_ != OneShotKey::None;
}

bool NoteEditor::onCharacter(char16_t character) {
    const OneShotKey key = std::exchange(oneShot_, OneShotKey::None);
    switch (character) {
        case VK_RETURN:
        case kLineFeed:
            if (endsByBreak(key, character)) {
                end(true);
            } else if (key == OneShotKey::NewLine) {
                insert(u"\r\n");
            } else if (key == OneShotKey::BlankLine) {
                insert(u"\r\n\r\n");
            } else if (key == OneShotKey::None && at_.what == Edited::Body) {
                // No key typed it: it comes from dictation or a text expander and stands for a line break.
                const Text lineBreak = typed_.next(character);
                if (!lineBreak.empty()) insert(lineBreak);
            }
            return true;
        case VK_ESCAPE:
            if (at_.what == Edited::Title || key == OneShotKey::Cancel) end(false);
            return true;
        case kSelectAll:
            pass(EM_SETSEL, 0, -1);
            return true;
        case kNewNote:
            return true;
        case kPaste:
            paste();
            return true;
        case kDeleteWord:
            deleteWord();
            return true;
        default:
            return onOrdinaryCharacter(character);
    }
}

bool NoteEditor::endsByBreak(OneShotKey key, char16_t character) const {
    if (key == OneShotKey::Save) return true;
    // A title has no second line, so even a line break that no key typed ends it.
    return at_.what == Edited::Title && character == VK_RETURN;
}

bool NoteEditor::onOrdinaryCharacter(char16_t character) {
    if (character < u' ' && character != u'\t') return false;  // Ctrl+C, Backspace and the like
    const Text letter = typed_.next(character);
    if (letter.size() != 1) {
        if (!letter.empty()) insert(letter);
        return true;
    }
    const Text text = windowText(window_);
    if (fitting(text, selection(), letter).size() == letter.size()) return false;
    MessageBeep(MB_OK);
    return true;
}

void NoteEditor::deleteWord() {
    const TextRange selected = selection();
    if (selected.from == selected.to) {
        const std::size_t from = wordStart(windowText(window_), selected.from);
        pass(EM_SETSEL, from, static_cast<LPARAM>(selected.from));
    }
    pass(EM_REPLACESEL, kCanUndo, reinterpret_cast<LPARAM>(L""));
}

// --- What gets into the editor ----------------------------------------------------------------------------

TextRange NoteEditor::selection() const {
    DWORD from = 0;
    DWORD to = 0;
    pass(EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    return {from, to};
}

TextView NoteEditor::fitting(const Text& text, TextRange selected, const Text& inserted) const {
    return fittingPart(text, selected, inserted,
                       [this](const Text& whole) { return at_.host->fits(at_.what, whole); });
}

void NoteEditor::insert(const Text& text) {
    if (fitting(windowText(window_), selection(), text).size() < text.size()) {
        MessageBeep(MB_OK);
        return;
    }
    pass(EM_REPLACESEL, kCanUndo, reinterpret_cast<LPARAM>(wide(text)));
}

void NoteEditor::paste() {
    const Text whole = pastedText(clipboardText(window_), at_.what == Edited::Title);
    if (whole.empty()) return;
    const Text part(fitting(windowText(window_), selection(), whole));
    if (!part.empty()) pass(EM_REPLACESEL, kCanUndo, reinterpret_cast<LPARAM>(wide(part)));
    if (part.size() == whole.size()) return;
    EDITBALLOONTIP tip{};
    tip.cbStruct = sizeof(tip);
    tip.pszTitle = wide(kCutTitle);
    tip.pszText = wide(kCutText);
    tip.ttiIcon = TTI_WARNING;
    if (SendMessageW(window_, EM_SHOWBALLOONTIP, 0, reinterpret_cast<LPARAM>(&tip)) == FALSE) {
        MessageBeep(MB_OK);
    }
}

LRESULT NoteEditor::replaceSelection(WPARAM canUndo, LPARAM text) {
    // From another program, such as one that completes words.
    const auto* const words = reinterpret_cast<LPCWSTR>(text);
    if (words == nullptr) return 0;
    const Text whole = at_.what == Edited::Body ? withLineBreaks(fromWide(words)) : Text(fromWide(words));
    const Text part(fitting(windowText(window_), selection(), whole));
    if (part.size() < whole.size()) MessageBeep(MB_OK);
    if (part.empty() && !whole.empty()) return 0;
    return pass(EM_REPLACESEL, canUndo, reinterpret_cast<LPARAM>(wide(part)));
}

LRESULT NoteEditor::replaceAll(LPARAM text) {
    const auto* const words = reinterpret_cast<LPCWSTR>(text);
    const TextView given = words == nullptr ? TextView() : fromWide(words);
    const Text whole = at_.what == Edited::Body ? withLineBreaks(given) : Text(given);
    const Text part(fitting({}, {}, whole));
    return pass(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide(part)));
}

// --- Input methods ----------------------------------------------------------------------------------------

LRESULT NoteEditor::onComposition(WPARAM wp, LPARAM lp) {
    if ((lp & GCS_RESULTSTR) == 0) return pass(WM_IME_COMPOSITION, wp, lp);
    // Some edit controls insert the result without typing it: what does not fit is removed at once.
    const HWND window = window_;
    const Text before = windowText(window);
    const TextRange selected = selection();
    const LRESULT result = pass(WM_IME_COMPOSITION, wp, lp);
    if (IsWindow(window) == FALSE || window != window_) return result;
    if (windowText(window) == before || at_.host->fits(at_.what, windowText(window))) return result;
    pass(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wide(before)));
    pass(EM_SETSEL, selected.from, static_cast<LPARAM>(selected.to));
    MessageBeep(MB_OK);
    return result;
}

void NoteEditor::takeComposition() {
    const HIMC context = ImmGetContext(window_);
    if (context == nullptr) return;
    const Text pending = composed(context);
    if (!pending.empty()) {
        const Text before = windowText(window_);
        const bool shown = standsAt(before, selection(), pending);
        ImmNotifyIME(context, NI_COMPOSITIONSTR, CPS_COMPLETE, 0);
        // Not every editor inserts it at once, and one that showed it as part of its text may remove it
        // first.
        const Text after = windowText(window_);
        const bool same = after == before && !shown;
        const bool takenOut = shown && after.size() + pending.size() == before.size();
        if (same || takenOut) insert(pending);
    }
    ImmReleaseContext(window_, context);
}

// --- The wheel --------------------------------------------------------------------------------------------

void NoteEditor::turnWheel(int delta) {
    UINT perNotch = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &perNotch, 0);
    RECT area{};
    pass(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
    const int onPage = static_cast<int>(area.bottom - area.top) / lineHeight(window_);
    const int notch = perNotch == WHEEL_PAGESCROLL ? std::max(1, onPage - 1) : static_cast<int>(perNotch);
    const auto first = static_cast<int>(pass(EM_GETFIRSTVISIBLELINE, 0, 0));
    const auto lines = static_cast<int>(pass(EM_GETLINECOUNT, 0, 0));
    const int to = scrolledTo(first, wheel_.turned(delta, notch), lines, onPage);
    if (to != first) pass(EM_LINESCROLL, 0, to - first);
}
