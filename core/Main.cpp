// The start, step by step: one copy, no temporary folder, start at log-on, settings and store, tray, notes.
// This is the only place that knows all parts. Afterwards the program lives in its windows until Exit.
#include "core/ProgramFolder.h"
#include "core/Prompts.h"
#include "core/SingleInstance.h"
#include "core/StartPlace.h"
#include "core/basPost.h"
#include "note/fmsg.h"
#include "note/fpost.h"
#include "storage/bas_RegistryKey.h"
#include "support/Window.h"

namespace {

constexpr DWORD kTrayRetry = 250;  // ms between two tries for the icon while the shell is not ready
constexpr const char16_t* kLogOnKey = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

/// The program's folder, ending in "\".
Text programFolder(const Text& path) {
    return path.substr(0, path.find_last_of(u'\\') + 1);
}

/// The value that starts the program at log-on always names the copy that was started last.
void registerLogOnStart(const Text& path) {
    if (GetRegValue(HKEY_CURRENT_USER, kLogOnKey, u"Kardel") == path) return;
    SaveRegValue(HKEY_CURRENT_USER, kLogOnKey, u"Kardel", REG_SZ, path);
}

/// No library is looked for in the current folder.
void closeSearchPath() {
    SetDllDirectoryW(L"");
    SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT);
}

constexpr DWORD kReadAgain = 50;  // ms between two tries to read the settings

StartQuestions questionsOf(basPost& desk) {
    StartQuestions questions;
    questions.deleteLocalFiles = [&desk]() -> std::optional<bool> {
        constexpr long kButtons = MB_YESNO | MB_ICONERROR | MB_DEFBUTTON2;
        const int answer = desk.MsgBoxExt(deleteLocalFilesPrompt(), kButtons);
        if (desk.ending()) return std::nullopt;  // the box closed because the program is ending
        return answer == IDYES;
    };
    questions.saveFailed = [&desk] { desk.showSaveFailure(); };
    questions.cannotRead = [&desk] { desk.MsgBoxExt(cannotReadPrompt(), MB_ICONERROR); };
    questions.damaged = [&desk](const std::vector<Text>& names) {
        desk.MsgBoxExt(damagedFilesPrompt(names), MB_ICONWARNING);
    };
    questions.wait = [] { Sleep(kReadAgain); };
    return questions;
}

void connectStore(basPost& desk, SingleInstance& instance, const Text& folder) {
    StoreParts parts{userSettings(), {}, folderFiles(folder), systemCodePage()};
    for (int day = 0; day < kWeekdays; ++day)
        parts.weekdayKeys[static_cast<std::size_t>(day)] = u"w." + weekdayName(day);
    desk.store.connect(parts);
    desk.store.claim = [&instance, folder](StoreKind kind) {
        return claimStore(instance, kind == StoreKind::Registry, folder);
    };
    desk.store.release = [&instance](StoreKind kind) { releaseStore(instance, kind == StoreKind::Registry); };
    desk.store.heldElsewhere = [&desk] { desk.sayAlreadyRunning(); };
}

/// Waits for the shell's notification area, for example at log-on. False when the session ends meanwhile.
bool waitForTray(basPost& desk) {
    while (!desk.tray.addIcon()) {
        if (!pumpFor(kTrayRetry)) return false;
    }
    return true;
}

void runMessages(const basPost& desk) {
    MSG message{};
    while (!desk.ending() && GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

int start() {
    const Text path = programPath();
    const Text AppFolder = programFolder(path);

    SingleInstance instance;
    const bool firstCopy = claimSession(instance);
    const bool woken = wakeRunningCopy();
    if (!firstCopy || woken) return 0;
    registerDialogClasses();
    if (isTemporaryFolder(AppFolder)) {
        instance = {};  // an extracted copy may start while this one is still explaining itself
        fmsg().MsgBoxExt(startedFromZipPrompt(), MB_ICONEXCLAMATION);
        return 0;
    }
    registerLogOnStart(path);

    registerNoteClasses();
    basPost desk;
    desk.look = loadNoteLook();
    connectStore(desk, instance, AppFolder);
    if (!desk.createTray()) return 1;
    const StartState state = desk.store.start(desk.settings, questionsOf(desk));
    const bool goesOn = state.usable && !desk.ending();
    if (goesOn && waitForTray(desk) && desk.LoadNotes(state.Count)) runMessages(desk);
    desk.Teardown();
    return state.usable || state.busy || desk.ending() ? 0 : 1;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    closeSearchPath();
    return start();
}
