// The drag, iconizing, and the place in the stack of windows.
#include "note/bas_DialogColor.h"
#include "note/fmsg.h"
#include "note/fpost.h"

namespace {

bool isTopmost(HWND window) {
    return (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

}  // namespace

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
    store({NoteField::Iconized});
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
    if (!record.iconized && (!refresh({NoteField::Height}) || record.height <= 0)) record.height = height;
    place.goHome();
    tellNameChanged(hwnd);
    if (record.iconized) return;
    if (visible()) host->realign();
    ShowAlarmStrip();
}

// --- Always on top ----------------------------------------------------------------------------------------

void fpost::toggleTopmost() {
    if (refusesChange()) return;
    record.topmost = !record.topmost;
    applyTopmost();
    tellNameChanged(hwnd);
    store({NoteField::Topmost});
}

void fpost::applyTopmost() const {
    // A note that is not on top and is not to be stays where it is among the others.
    // One that rings is above the others until it is silent.
    const bool wanted = record.topmost || Alarming();
    if (!wanted && !isTopmost(hwnd)) return;
    // The keyboard stays where the user has it.
    SetWindowPos(hwnd, wanted ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void fpost::keepBelowDialogs() const {
    if (!isTopmost(hwnd)) return;  // every dialog is
    struct Search {
        HWND message;
        std::vector<HWND> dialogs;  // from the front to the back

        static BOOL CALLBACK add(HWND window, LPARAM param) noexcept {
            auto& found = *reinterpret_cast<Search*>(param);
            const bool isDialog = window == found.message || isSystemDialog(window);
            if (isDialog && IsWindowVisible(window) != FALSE) found.dialogs.push_back(window);
            return TRUE;
        }
    } search{host->dialog->hwnd, {}};
    EnumThreadWindows(GetCurrentThreadId(), Search::add, reinterpret_cast<LPARAM>(&search));
    for (auto dialog = search.dialogs.rbegin(); dialog != search.dialogs.rend(); ++dialog) {
        SetWindowPos(*dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    }
}
