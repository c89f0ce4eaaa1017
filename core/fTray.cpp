#include "core/fTray.h"

#include <utility>

#include "core/basTrayIcon.h"
#include "core/bas_WinVersion.h"
#include "resources/resource.h"
#include "storage/NoteRecord.h"
#include "storage/bas_LogError.h"
#include "support/Messages.h"
#include "support/PopupMenu.h"
#include "support/SystemLibrary.h"

static_assert(IDM_DYN2_LAST - IDM_DYN2 + 1 == kMaxNotes);

namespace {

constexpr const char16_t* kClass = u"ThunderRT6FormDC";
constexpr const char16_t* kTitle = u"kardel:trayicon";

constexpr UINT kIconRetry = 250;  // ms between two tries for the icon

constexpr LPARAM kAfterMenu = 1;  ///< second parameter of a message that has waited for a menu to close

}  // namespace

void allowFromBelow(HWND window, UINT message) {
    using ChangeFilter = BOOL(WINAPI*)(HWND, UINT, DWORD, void*);
    constexpr DWORD kAllow = 1;
    const auto change =
        systemFunction<ChangeFilter>(GetModuleHandleW(L"user32.dll"), "ChangeWindowMessageFilterEx");
    if (change != nullptr) change(window, message, kAllow, nullptr);
}

// --- The window -------------------------------------------------------------------------------------------

bool fTray::create(TrayHost& desk) {
    host = &desk;
    taskbarCreated_ = RegisterWindowMessageW(L"TaskbarCreated");
    registerClass(kClass, formProc<fTray>, 0);
    // An ordinary top-level window that is never shown. A message-only window would neither be told of a new
    // task bar nor of the end of the session, and no second start would find it.
    constexpr int kTries = 2;
    for (int tries = 0; tries < kTries; ++tries) {
        if (CreateWindowExW(WS_EX_TOOLWINDOW, wide(kClass), L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                            GetModuleHandleW(nullptr), this) != nullptr) {
            return true;
        }
        WriteLog(u"fTray", u"The tray window could not be created.", GetLastError());
    }
    return false;
}

bool fTray::addIcon() {
    if (!TrayIconEnsure(hwnd)) return false;
    const bool TrayReady = TrayHook(hwnd);
    SetWindowTextW(hwnd, wide(kTitle));
    return TrayReady;
}

void fTray::destroy() {
    if (hwnd == nullptr) return;
    TrayUnhook(hwnd);
    TrayIconDelete(hwnd);
    DestroyWindow(hwnd);
}

bool fTray::TrayHook(HWND tray) {
    windows = QueryWinVersion();
    if (savedProcedure_ != nullptr) return true;
    for (const UINT message : {static_cast<UINT>(WM_SECONDSTART), taskbarCreated_}) {
        host->letThrough(tray, message);
    }
    savedProcedure_ = replaceProcedure(tray, trayProc);
    return savedProcedure_ != nullptr;
}

void fTray::TrayUnhook(HWND tray) {
    if (savedProcedure_ == nullptr) return;
    replaceProcedure(tray, std::exchange(savedProcedure_, nullptr));
}

LRESULT CALLBACK fTray::trayProc(HWND window, UINT message, WPARAM wp, LPARAM lp) noexcept {
    fTray* const form = formOf<fTray>(window);
    if (form == nullptr) return DefWindowProcW(window, message, wp, lp);
    try {
        return form->onTrayMessage(message, wp, lp);
    } catch (...) {
        onEscaped(message);
        return 0;
    }
}

void fTray::onEscaped(UINT message) noexcept {
    WriteLog(u"fTray", u"An error escaped a message handler.", message);
}

// --- Messages ---------------------------------------------------------------------------------------------

LRESULT fTray::onTrayMessage(UINT message, WPARAM wp, LPARAM lp) {
    const HWND window = hwnd;  // a handler may end the program
    const WNDPROC saved = savedProcedure_;
    if (message == WM_SYSCOMMAND) return DefWindowProcW(window, message, wp, lp);
    if (message == WM_SECONDSTART) {
        const LRESULT result = DefWindowProcW(window, message, wp, lp);
        onSecondStart();
        return result;
    }
    if (message == WM_TRAYICON && wp == TRAYICON_ID) {
        onIcon(static_cast<UINT>(lp));
        return DefWindowProcW(window, message, wp, lp);
    }
    if (message == taskbarCreated_ && taskbarCreated_ != 0) ensureIcon();
    return CallWindowProcW(saved, window, message, wp, lp);
}

/// A new task bar may announce itself before it takes icons: then adding the icon is tried until it works.
void fTray::ensureIcon() {
    if (TrayIconEnsure(hwnd)) {
        KillTimer(hwnd, IDT_ICON);
    } else {
        SetTimer(hwnd, IDT_ICON, kIconRetry, nullptr);
    }
}

bool fTray::waitsForMenu(UINT message, WPARAM wp, LPARAM lp) const {
    if (lp == kAfterMenu || !endOpenMenu()) return false;
    PostMessageW(hwnd, message, wp, kAfterMenu);
    return true;
}

LRESULT fTray::onMessage(UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        // These may open a box or end the program. Inside the loop of an open menu, the menu would stay in
        // front of the box and keep the mouse, and the program would go on running until somebody closed the
        // menu.
        case WM_COMMAND:
        case WM_CLOSE:
        case posted::kSaveFailed:
        case posted::kRunning:
            if (waitsForMenu(message, wp, lp)) return 0;
            break;
        default:
            break;
    }
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wp), host->state());
            return 0;
        case posted::kChosen:
            onCommand(LOWORD(wp), asSaid(host->state(), lp));
            return 0;
        case posted::kSaveFailed:
            host->showSaveFailure();
            return 0;
        case posted::kRunning:
            host->alreadyRunning();
            return 0;
        case WM_TIMER:
            if (wp == IDT_ALARM) host->tick();
            if (wp == IDT_ICON) ensureIcon();
            return 0;
        case WM_TIMECHANGE:
            host->clockSet();
            return 0;
        case WM_CLOSE:
            host->exitProgram();
            return 0;
        case WM_QUERYENDSESSION:
            sessionEnds = true;
            host->commitEdits();
            return TRUE;
        case WM_ENDSESSION:
            sessionEnds = wp != FALSE;
            if (sessionEnds) {
                host->endSession();
                KillTimer(hwnd, IDT_ICON);
                TrayIconDelete(hwnd);
                // An installer that wants to replace the program's file waits until the program has ended.
                if ((lp & ENDSESSION_CLOSEAPP) != 0) PostMessageW(hwnd, WM_CLOSE, 0, 0);
            } else if (std::exchange(failureOwed, false)) {
                PostMessageW(hwnd, posted::kSaveFailed, 0, 0);
            }
            return 0;
        case WM_NCDESTROY: {
            const LRESULT result = DefWindowProcW(hwnd, message, wp, lp);
            hwnd = nullptr;
            return result;
        }
        default:
            return DefWindowProcW(hwnd, message, wp, lp);
    }
}

void fTray::onIcon(UINT mouseMessage) {
    switch (mouseMessage) {
        case WM_LBUTTONDOWN:
            swallowUp_ = false;
            break;
        case WM_LBUTTONUP:
            // A double click arrives as release, double click, release: the second release is not another
            // click.
            if (!std::exchange(swallowUp_, false) && actsOnClick(windows)) host->defaultAction();
            break;
        case WM_LBUTTONDBLCLK:
            swallowUp_ = true;
            if (actsOnDoubleClick(windows)) host->defaultAction();
            break;
        case WM_RBUTTONUP:
            popUp();
            break;
        default:
            break;
    }
}

void fTray::onSecondStart() {
    // Posted, so that the other copy can end now and not only when the box has been answered.
    if (!TrayIconAdd(hwnd)) PostMessageW(hwnd, posted::kRunning, 0, 0);
}

// --- The menu ---------------------------------------------------------------------------------------------

void fTray::popUp() {
    const TrayMenuState state = host->state();
    Menu mnupop = {{.caption = u"Open", .items = openMenu(host->titles(), state, *host)}};
    for (MenuRow& row : trayMenu(state, *host))
        mnupop.push_back(std::move(row));
    const HWND window = hwnd;
    trackMenu(window, mnupop, said(state));
    // A user who closes the menu by a click elsewhere has chosen where to go on; anyone else returns to the
    // question.
    const HWND box = host->openBox();
    if (box != nullptr && GetForegroundWindow() == window) SetForegroundWindow(box);
}

void fTray::onCommand(unsigned id, const TrayMenuState& read) {
    if (id >= IDM_DYN && id <= IDM_DYN_LAST) mnuDyn_Click(static_cast<int>(id - IDM_DYN), read);
    if (id >= IDM_DYN2 && id <= IDM_DYN2_LAST) mnuDyn2_Click(static_cast<int>(id - IDM_DYN2));
}

void fTray::mnuDyn_Click(int Index, const TrayMenuState& read) {
    answer(trayMenu(host->state(), *host), trayMenu(read, *host), IDM_DYN + static_cast<unsigned>(Index));
}

void fTray::mnuDyn2_Click(int Index) {
    const Menu open = openMenu(host->titles(), host->state(), *host);
    answer(open, open, IDM_DYN2 + static_cast<unsigned>(Index));
}
