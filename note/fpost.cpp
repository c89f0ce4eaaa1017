#include "note/fpost.h"

#include <string_view>
#include <vector>

#include "storage/bas_LogError.h"
#include "support/Messages.h"

namespace {

constexpr const char16_t* kNoteClass = u"fpost";

Rgb systemColor(int index) {
    return GetSysColor(index);
}

}  // namespace

void registerNoteClasses() {
    registerClass(kNoteClass, formProc<fpost>, 0);
    registerClass(kPartClass, fpost::partProc, CS_DBLCLKS);
}

LRESULT CALLBACK fpost::partProc(HWND part, UINT message, WPARAM wp, LPARAM lp) noexcept {
    fpost* const note = formOf<fpost>(GetParent(part));
    if (note == nullptr) return DefWindowProcW(part, message, wp, lp);
    try {
        return note->onPart(part, message, wp, lp);
    } catch (...) {
        onEscaped(message);
        return 0;
    }
}

void fpost::onEscaped(UINT message) noexcept {
    WriteLog(u"fpost", u"An error escaped a message handler.", message);
}

// --- Creation and destruction ---------------------------------------------------------------------------

fpost* fpost::open(NoteHost& host, int number, const NoteRecord& stored) {
    bool freed = false;
    auto* note = new fpost;
    note->host = &host;
    note->kept.store = host.store;
    note->number = number;
    note->freed = &freed;
    note->take(stored);
    // Created at its final place and size, so that fifty notes at log-on are each laid out once and not
    // twice. A tool window has neither a button in the task bar nor a place in Alt+Tab and needs no owner for
    // that. With a common owner, a click on one note would bring all of them in front of other programs.
    const PxRect at = note->place.place();
    const HWND window = CreateWindowExW(WS_EX_TOOLWINDOW, wide(kNoteClass), wide(stored.Titolo),
                                        WS_POPUP | WS_CLIPCHILDREN, at.left, at.top, at.width(), at.height(),
                                        nullptr, nullptr, GetModuleHandleW(nullptr), note);
    if (window == nullptr) {
        WriteLog(u"fpost", u"A note window could not be created.", static_cast<std::int64_t>(GetLastError()));
        if (!freed) delete note;
        return nullptr;
    }
    note->freed = nullptr;
    return note;
}

void fpost::destroyAll(const NoteHost& host) {
    struct Search {
        const NoteHost* host;
        std::vector<HWND> windows;

        static BOOL CALLBACK add(HWND window, LPARAM param) noexcept {
            auto& found = *reinterpret_cast<Search*>(param);
            wchar_t kind[16]{};
            GetClassNameW(window, kind, static_cast<int>(std::size(kind)));
            const bool isNote = std::wstring_view(kind) == wide(kNoteClass);
            if (isNote && formOf<fpost>(window)->host == found.host) found.windows.push_back(window);
            return TRUE;
        }
    } search{&host, {}};
    EnumThreadWindows(GetCurrentThreadId(), Search::add, reinterpret_cast<LPARAM>(&search));
    for (const HWND window : search.windows)
        DestroyWindow(window);
}

bool fpost::createParts() {
    if (!parts.create()) return false;
    tBackColor(Backcol());
    if (record.topmost) place.applyTopmost();
    return true;
}

void fpost::unload() {
    PostMessageW(hwnd, posted::kUnload, 0, 0);
}

void fpost::leave() {
    beingDeleted = true;
    hide();
    unload();
}

// --- What is stored and what is shown -------------------------------------------------------------------

void fpost::take(const NoteRecord& stored) {
    record = stored;
    if (!record.backcolor) record.backcolor = kDesignColor;
    alarm.rule = ruleFromRecord(record);
}

bool fpost::refusesChange() const {
    if (!record.readOnly) return false;
    host->ask(u"This note cannot be read at this moment. It comes back by itself as soon as it can.",
              MB_ICONERROR, u"Kardel");
    return true;
}

void fpost::Titolo(const Text& title) {
    record.Titolo = title;
    setWindowText(hwnd, title);
    parts.showTitle();
}

Rgb fpost::Backcol() const {
    return shownColor(record.backcolor.value_or(kDesignColor), systemColor);
}

void fpost::Backcol(std::int32_t color) {
    record.backcolor = color;
    tBackColor(Backcol());
}

// --- Geometry -------------------------------------------------------------------------------------------

int fpost::pWidth() const {
    return shownWidth(record.width, host->settings->DefaultWidth).n;
}

int fpost::pHeight() const {
    return shownHeight(record.height, host->settings->DefaultHeight).n;
}

void fpost::pWidth(int twips) {
    record.width = twips;
    place.fitWindow(Along::Width);
}

void fpost::pHeight(int twips) {
    record.height = twips;
    // The window of an iconized note keeps the strip's height until it is restored.
    if (!record.iconized) place.fitWindow(Along::Height);
}

void fpost::onSize(WPARAM kind) {
    if (kind == SIZE_MINIMIZED) {
        // Not from inside the minimising itself, in the middle of which it would run the layout.
        PostMessageW(hwnd, posted::kRestore, 0, 0);
        return;
    }
    if (!parts.fit()) return;
    surface.repaint();
    // A note that is shown smaller where it can be reached counts as not resized, so the others stay where
    // they are.
    if (!record.iconized && visible() && !place.isPlacing()) host->realign();
}

void fpost::restoreIfMinimized() {
    if (IsIconic(hwnd) != FALSE) ShowWindow(hwnd, SW_SHOWNOACTIVATE);
}

void fpost::show(bool activate) {
    ShowWindow(hwnd, SW_SHOWNOACTIVATE);
    place.applyTopmost();
    if (!activate || GetForegroundWindow() == hwnd) return;
    // First to the front, then the keyboard. On a Wine desktop, a note that is raised while it is active, or
    // becomes active by being raised, is handed to the window manager, below the notes that the manager does
    // not know.
    SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetForegroundWindow(hwnd);
}

void fpost::hide() {
    ShowWindow(hwnd, SW_HIDE);
}

bool fpost::visible() const {
    return IsWindowVisible(hwnd) != FALSE;
}

// --- Edits ------------------------------------------------------------------------------------------------

void fpost::EditForm() {
    if (!record.iconized) editing.open(Edited::Body);
}

void fpost::CommitEdits() {
    place.mover.settle(GetTickCount64());
    editing.commit();
}
