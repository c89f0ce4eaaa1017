#include "core/basPost.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core/Columns.h"
#include "core/Prompts.h"
#include "note/bas_DialogColor.h"
#include "note/bas_GetWorkArea.h"
#include "support/Messages.h"

namespace {

/// Cancels the system's own dialog over a note, the choice of a colour. The quit message alone might end it
/// as if the colour had been confirmed.
BOOL CALLBACK cancelSystemDialog(HWND window, LPARAM note) noexcept {
    const bool overNote = GetWindow(window, GW_OWNER) == reinterpret_cast<HWND>(note);
    if (overNote && isSystemDialog(window)) SendMessageW(window, WM_COMMAND, IDCANCEL, 0);
    return TRUE;
}

PxRect workAreaAtMouse() {
    POINT mouse{};
    GetCursorPos(&mouse);
    const int x = static_cast<int>(mouse.x);
    const int y = static_cast<int>(mouse.y);
    return workAreaAt({x, y, x + 1, y + 1});
}

}  // namespace

basPost::basPost() {
    startTimer = [](HWND window, UINT_PTR id, UINT ms) { return SetTimer(window, id, ms, nullptr) != 0; };
    store.saveFailed = [this] { reportSaveFailure(); };
    dialog.noteWindows = [this] {
        std::vector<HWND> windows;
        for (const fpost* note : Notes)
            windows.push_back(note->hwnd);
        return windows;
    };
    dialog.ownerWindow = [this] { return tray.hwnd; };
    dialog.now = [this] { return host.now(); };
}

bool basPost::createTray() {
    return tray.create(trayHost_);
}

// --- Numbers, flags and counts ----------------------------------------------------------------------------

void basPost::Renumber() {
    NoteSlots.fill(nullptr);
    for (std::size_t i = 0; i < Notes.size(); ++i) {
        Notes[i]->number = static_cast<int>(i) + 1;
        NoteSlots[i] = Notes[i];
    }
}

int basPost::ClosedCount() const {
    return static_cast<int>(
        std::count_if(Notes.begin(), Notes.end(), [](const fpost* n) { return n->record.closed; }));
}

int basPost::IconizedCount() const {
    return static_cast<int>(
        std::count_if(Notes.begin(), Notes.end(), [](const fpost* n) { return n->record.iconized; }));
}

DeskCount basPost::counted() const {
    DeskCount now;
    now.notes = Count();
    now.shown = static_cast<int>(
        std::count_if(Notes.begin(), Notes.end(), [](const fpost* n) { return n->visible(); }));
    now.iconized = IconizedCount();
    return now;
}

void basPost::NotesChanged() {
    state.onNoteChanged(counted());
}

const std::vector<Monitor>& basPost::monitors() {
    if (!state.inBulk() || monitors_.empty()) monitors_ = readMonitors();
    return monitors_;
}

bool basPost::holds(const fpost* note) const {
    return std::find(Notes.begin(), Notes.end(), note) != Notes.end();
}

std::vector<NoteRecord*> basPost::records() const {
    std::vector<NoteRecord*> list;
    for (fpost* note : Notes)
        list.push_back(&note->record);
    return list;
}

// --- Start ------------------------------------------------------------------------------------------------

bool basPost::LoadNotes(int count) {
    const NoteStore::Command command(store);
    ticks.begin();  // alarms are armed according to this clock
    if (!openNotes(count)) {
        MsgBoxExt(u"Windows has no room for all notes now. Close some programs and start Kardel again.",
                  MB_ICONERROR);
        return false;
    }
    if (ending()) return false;
    store.settle(records(), settings);
    finishDrafts();
    localFilesMark = store.kind() == StoreKind::Files;
    state.onLoaded(counted());
    ticks.countingChanged();
    if (settings.AlignAll) AutoPosition();
    return true;
}

bool basPost::openNotes(int count) {
    const Bulk bulk(*this);
    for (int number = 1; number <= count; ++number) {
        NoteRecord record;
        store.load(number, record, settings);
        fpost* const note = fpost::open(host, number, record);
        if (note == nullptr) return false;
        Notes.push_back(note);
        NoteSlots[static_cast<std::size_t>(number - 1)] = note;
        note->ArmAfterLoad();
        if (!note->Closed()) note->show(false);
    }
    return true;
}

/// Completes edits that the last run left unfinished. A draft that fits no note is removed.
void basPost::finishDrafts() {
    std::set<int> edited;
    for (const fpost* note : Notes) {
        if (note->editing.isOpen()) edited.insert(note->number);
    }
    const FoundDrafts found = store.takeDrafts(records(), edited);
    for (const Draft& draft : found.drafts) {
        fpost& note = *Notes[static_cast<std::size_t>(draft.number - 1)];
        if (note.editing.finishEdit(draft.title, draft.text)) store.dropDraft(draft.number);
    }
}

// --- New note ---------------------------------------------------------------------------------------------

NoteRecord basPost::freshRecord(int number) const {
    NoteRecord record;
    record.Titolo = numberTitle(number);
    record.backcolor = kDesignColor;
    record.memo = 0;
    const Twips width = shownWidth(0, settings.DefaultWidth);
    const Twips height = shownHeight(0, settings.DefaultHeight);
    const PxRect work = GetWorkArea();
    record.width = std::min(width.n, look.twips(work.width()));
    record.height = std::min(height.n, look.twips(work.height()));
    std::vector<PxCorner> taken;
    for (const fpost* note : Notes)
        taken.push_back({look.px(Twips{note->record.x}), look.px(Twips{note->record.y})});
    const PxCorner at = cascadePlace(number, look.px(width), look.px(height), workAreaAtMouse(), taken);
    record.x = look.twips(at.x);
    record.y = look.twips(at.y);
    return record;
}

bool basPost::NewNote() {
    if (dialog.open()) return false;
    if (Count() >= kMaxNotes) {
        MsgBoxExt(u"You have got the # 50 kardel. To add new other you before need to delete one old.",
                  MB_ICONERROR);
        return false;
    }
    const NoteStore::Command command(store);
    CommitEdits();
    store.refreshDefaultSize(settings);

    const int number = Count() + 1;
    const NoteRecord record = freshRecord(number);
    fpost* const note = fpost::open(host, number, record);
    if (note == nullptr) {
        MsgBoxExt(u"Windows has no room for a new note now. Close some programs and try again.",
                  MB_ICONERROR);
        return false;
    }
    if (!store.create(number, note->record)) note->kept.oweEverything();
    Notes.push_back(note);
    Renumber();
    note->show(true);
    state.onNewNote();
    if (Count() >= 2 && settings.AlignAll) AutoPosition();
    note->kept.save({NoteField::Width, NoteField::Height, NoteField::X, NoteField::Y});
    return true;
}

// --- One note ---------------------------------------------------------------------------------------------

void basPost::OpenNote(int slot) {
    if (slot < 0 || slot >= kMaxNotes) return;
    fpost* const note = NoteSlots[static_cast<std::size_t>(slot)];
    if (note == nullptr) return;
    if (note->record.closed) {
        note->record.closed = false;
        note->kept.save({NoteField::Closed});
    }
    state.onNoteShown();
    note->restoreIfMinimized();
    note->place.goHome();
    note->show(true);
}

void basPost::RemoveNote(fpost& note) {
    const auto found = std::find(Notes.begin(), Notes.end(), &note);
    if (found == Notes.end()) return;
    const int number = note.number;
    Notes.erase(found);
    note.hide();
    const std::vector<NoteRecord*> remaining = records();
    static_cast<void>(store.remove(number, remaining, settings));
    Renumber();
    state.onNoteRemoved(counted());
}

// --- Store switch -----------------------------------------------------------------------------------------

void basPost::SwitchStore() {
    CommitEdits();
    localFilesMark = !localFilesMark;
    constexpr long kButtons = MB_OKCANCEL | MB_ICONERROR | MB_DEFBUTTON2;
    const bool toFiles = localFilesMark;
    const int answer = toFiles ? MsgBoxExt(useLocalFilesPrompt(), kButtons, u"Use the local files?")
                               : MsgBoxExt(useRegistryPrompt(), kButtons, u"Don't use the local files?");
    if (answer != IDOK) {
        // Cancel in the first question leaves the entry checked, and the next click goes by the check mark.
        localFilesMark = true;
        return;
    }
    if (ending()) return;
    const NoteStore::Command command(store);
    // Only now, because notes may have come, changed and gone while the question was open.
    CommitEdits();
    const StoreKind kind = toFiles ? StoreKind::Files : StoreKind::Registry;
    // Refused, nothing has changed, and the next click has to ask for the same again.
    if (store.switchTo(kind, records(), settings) == Switched::Refused) localFilesMark = !toFiles;
}

// --- Messages ---------------------------------------------------------------------------------------------

int basPost::MsgBoxExt(const Text& Prompt, long Buttons, const Text& Title) {
    return dialog.MsgBoxExt(Prompt, Buttons, Title);
}

void basPost::reportSaveFailure() {
    if (failureShown_) return;
    failureShown_ = true;
    if (tray.sessionEnds) {  // a box would hold up the log-off
        tray.failureOwed = true;
        return;
    }
    // Posted, because a save runs inside a focus change, where a box would move the focus and save again.
    PostMessageW(tray.hwnd, posted::kSaveFailed, 0, 0);
}

void basPost::showSaveFailure() {
    if (tray.sessionEnds) {
        tray.failureOwed = true;
        return;
    }
    failureShown_ = false;
    MsgBoxExt(u"An error has occurred on saving the memo, possible data lost.", MB_ICONERROR);
}

void basPost::sayAlreadyRunning() {
    if (runningShown_) {
        dialog.bringForward();
        return;
    }
    runningShown_ = true;
    MsgBoxExt(u"Kardel application is already running.", MB_ICONERROR);
    runningShown_ = false;
}

// --- The end ----------------------------------------------------------------------------------------------

void basPost::CommitEdits() {
    // Until the notes are loaded, the stored ones would seem to have been deleted.
    if (state.loading()) return;
    const NoteStore::Command command(store);
    store.settle(records(), settings);
    forEachNote([](fpost& note) {
        note.CommitEdits();
        note.kept.saveAgain();
    });
}

void basPost::CommitForLogOff() {
    constexpr unsigned kPatience = 500;  // ms; question and end of the session may each take as long
    const NoteStore::Command command(store, kPatience);
    CommitEdits();
}

void basPost::ExitProgram() {
    CommitEdits();
    dialog.unload();
    for (const fpost* note : Notes)
        EnumThreadWindows(GetCurrentThreadId(), cancelSystemDialog, reinterpret_cast<LPARAM>(note->hwnd));
    // Modal loops that are running (a question, a menu, a drag) end with the quit message and unwind; the
    // windows go after the outermost loop. Some loops swallow the message, hence the additional flag.
    state.onExit();
    PostQuitMessage(0);
}

void basPost::EndSession() {
    if (state.loading()) {
        ExitProgram();  // a start that is waiting must neither go on nor take this for an answer
        return;
    }
    CommitForLogOff();
    for (fpost* note : Notes)
        note->alarm.silence();
}

void basPost::Teardown() {
    state.onTeardown();
    Notes.clear();
    NoteSlots.fill(nullptr);
    fpost::destroyAll(host);
    dialog.unload();
    tray.destroy();
}

// --- What the tray shows ----------------------------------------------------------------------------------

std::vector<Text> basPost::titles() const {
    std::vector<Text> list;
    for (const fpost* note : Notes)
        list.push_back(note->Titolo());
    return list;
}

TrayMenuState basPost::trayState() const {
    TrayMenuState menu;
    menu.notes = Count();
    menu.allHidden = AllHidden();
    menu.allIconized = AllIconized();
    menu.alignAll = settings.AlignAll;
    menu.easyAlign = settings.EasyAlign;
    menu.localFiles = localFilesMark;
    // Until the notes are loaded, a command from outside would act on a desk that only seems empty.
    menu.dialogOpen = dialog.open() || state.loading();
    return menu;
}
