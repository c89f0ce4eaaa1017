#include "core/DeskFaces.h"

#include <algorithm>
#include <utility>

#include "alarm/bas_PlaySound.h"
#include "core/basPost.h"
#include "note/bas_DialogColor.h"
#include "resources/resource.h"
#include "support/Clock.h"

namespace {

BOOL CALLBACK findSystemDialog(HWND window, LPARAM found) noexcept {
    if (!isSystemDialog(window) || IsWindowVisible(window) == FALSE) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// Whether a note stands for one that could not be read.
bool isBlank(const fpost* note) {
    return note->record.readOnly;
}

}  // namespace

// --- For the notes ----------------------------------------------------------------------------------------

DeskForNotes::DeskForNotes(basPost& desk) : desk_(desk) {
    store = &desk.store;
    settings = &desk.settings;
    dialog = &desk.dialog;
    look = &desk.look;
    canvas = &desk.canvas;
    now = localNow;
    uptime = [] { return std::uint64_t{GetTickCount64()}; };
    startSound = [] { PlayAlarmSound(IDW_ALARM, true); };
    stopSound = StopAlarmSound;
    ask = [&desk](const Text& prompt, long buttons, const Text& title) {
        return desk.MsgBoxExt(prompt, buttons, title);
    };
}

void DeskForNotes::newNote() {
    static_cast<void>(desk_.NewNote());
}

void DeskForNotes::hideAll(bool hidden) {
    desk_.HideAll(hidden);
}

void DeskForNotes::iconizeAll(bool iconized) {
    desk_.IconizeAll(iconized);
}

void DeskForNotes::exitProgram() {
    desk_.ExitProgram();
}

void DeskForNotes::remove(fpost& note) {
    desk_.RemoveNote(note);
}

void DeskForNotes::realign() {
    desk_.Realign();
}

void DeskForNotes::noteShown() {
    desk_.state.onNoteShown();
}

void DeskForNotes::notesChanged() {
    desk_.NotesChanged();
}

void DeskForNotes::countingChanged() {
    desk_.ticks.countingChanged();
}

bool DeskForNotes::allHidden() const {
    return desk_.AllHidden();
}

bool DeskForNotes::allIconized() const {
    return desk_.AllIconized();
}

int DeskForNotes::count() const {
    return desk_.Count();
}

std::vector<PxRect> DeskForNotes::otherNotes(const fpost& note) const {
    std::vector<PxRect> rects;
    rects.reserve(desk_.Notes.size());
    for (const fpost* other : desk_.Notes) {
        if (other != &note && other->visible()) rects.push_back(other->place.window());
    }
    return rects;
}

fpost* DeskForNotes::nextVisible(const fpost& note, int step) const {
    const int count = desk_.Count();
    int at = note.number - 1;
    for (int seen = 1; seen < count; ++seen) {
        at = (at + step + count) % count;
        fpost* const next = desk_.Notes[static_cast<std::size_t>(at)];
        if (next->visible()) return next;
    }
    return nullptr;
}

void DeskForNotes::finishDrafts() {
    desk_.finishDrafts();
}

void DeskForNotes::storeSetting(Setting setting) {
    desk_.store.storeSetting(setting, desk_.settings);
}

const std::vector<Monitor>& DeskForNotes::monitors() {
    return desk_.monitors();
}

// --- For the tray -----------------------------------------------------------------------------------------

TrayMenuState DeskForTray::state() const {
    return desk_.trayState();
}

std::vector<Text> DeskForTray::titles() const {
    return desk_.titles();
}

HWND DeskForTray::openBox() const {
    if (desk_.dialog.open()) return desk_.dialog.hwnd;
    HWND box = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), findSystemDialog, reinterpret_cast<LPARAM>(&box));
    return box;
}

void DeskForTray::newNote() {
    static_cast<void>(desk_.NewNote());
}

void DeskForTray::hideAll(bool hidden) {
    desk_.HideAll(hidden);
}

void DeskForTray::iconizeAll(bool iconized) {
    desk_.IconizeAll(iconized);
}

void DeskForTray::toggleAlignAll() {
    desk_.ToggleAlignAll();
}

void DeskForTray::toggleEasyAlign() {
    desk_.ToggleEasyAlign();
}

void DeskForTray::switchStore() {
    desk_.SwitchStore();
}

void DeskForTray::about() {
    desk_.dialog.about();
}

void DeskForTray::exitProgram() {
    desk_.ExitProgram();
}

void DeskForTray::openNote(int slot) {
    desk_.OpenNote(slot);
}

void DeskForTray::defaultAction() {
    desk_.dialog.unload();
    desk_.ToggleHideAll();
}

void DeskForTray::alreadyRunning() {
    desk_.sayAlreadyRunning();
}

void DeskForTray::commitEdits() {
    desk_.CommitForLogOff();
}

void DeskForTray::endSession() {
    desk_.EndSession();
}

void DeskForTray::showSaveFailure() {
    desk_.showSaveFailure();
}

void DeskForTray::tick() {
    desk_.Tick();
}

void DeskForTray::clockSet() {
    desk_.ClockSet();
}

// --- For the ticks ----------------------------------------------------------------------------------------

Now DeskForTicks::now() const {
    return desk_.host.now();
}

std::uint64_t DeskForTicks::uptime() const {
    return desk_.host.uptime();
}

bool DeskForTicks::isCounting() const {
    return std::any_of(desk_.Notes.begin(), desk_.Notes.end(),
                       [](const fpost* note) { return note->alarm.wantsTicks(); });
}

bool DeskForTicks::isUnread() const {
    return desk_.store.hasUnreadDrafts() || std::any_of(desk_.Notes.begin(), desk_.Notes.end(), isBlank);
}

bool DeskForTicks::mayRead() const {
    return !desk_.dialog.open();
}

bool DeskForTicks::startTimer() {
    return desk_.startTimer(desk_.tray.hwnd, IDT_ALARM, kAlarmTick);
}

void DeskForTicks::stopTimer() {
    KillTimer(desk_.tray.hwnd, IDT_ALARM);
}

void DeskForTicks::tickLater() {
    postLater(desk_.tray.hwnd, WM_TIMER, IDT_ALARM, kAlarmTick);
}

void DeskForTicks::tickNotes() {
    desk_.forEachNote([](fpost& note) {
        try {
            note.tmr_Timer();
        } catch (...) {
            fpost::onEscaped(WM_TIMER);
        }
    });
}

void DeskForTicks::followClock(Now now, std::int64_t jump) {
    desk_.forEachNote([now, jump](fpost& note) {
        try {
            note.alarm.clockSet(now, jump);
        } catch (...) {
            fpost::onEscaped(WM_TIMECHANGE);
        }
    });
}

/// Replaces the blank stand-ins of notes that another program held at the start, if they can be read now, and
/// takes over drafts that it held.
void DeskForTicks::readAgain() {
    for (fpost*& note : desk_.Notes) {
        if (!isBlank(note)) continue;
        NoteRecord record;
        if (!desk_.store.load(note->number, record, desk_.settings)) return;
        fpost* const whole = fpost::open(desk_.host, note->number, record);
        if (whole == nullptr) return;
        std::exchange(note, whole)->leave();
        desk_.Renumber();
        whole->ArmAfterLoad();
        if (!whole->Closed() && !desk_.AllHidden()) whole->show(false);
    }
    desk_.finishDrafts();
    desk_.NotesChanged();
    desk_.ticks.countingChanged();
    desk_.Realign();
}
