// The start, in its order: one copy, no temporary folder, log-on start, settings and store, tray, notes. The
// only place that knows everybody. Afterwards the program lives in its windows until Exit.
#include "core/ProgramFolder.h"
#include "core/SingleInstance.h"
#include "core/StartPlace.h"
#include "core/StartSettings.h"
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

/// The value that starts the program at log-on always names the copy that ran last.
void registerLogOnStart(const Text& path) {
    if (GetRegValue(HKEY_CURRENT_USER, kLogOnKey, u"Kardel") == path) return;
    SaveRegValue(HKEY_CURRENT_USER, kLogOnKey, u"Kardel", REG_SZ, path);
}

/// No library is searched in the current folder.
void closeSearchPath() {
    SetDllDirectoryW(L"");
    SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT);
}

StartQuestions questionsOf(basPost& desk, SingleInstance& instance, const Text& folder) {
    StartQuestions questions;
    questions.claimStore = [&desk, &instance, &folder](bool useRegistry) {
        const bool claimed = claimStore(instance, useRegistry, folder);
        if (!claimed) desk.sayAlreadyRunning();
        return claimed;
    };
    questions.deleteLocalFiles = [&desk]() -> std::optional<bool> {
        constexpr long kButtons = MB_YESNO | MB_ICONERROR | MB_DEFBUTTON2;
        const bool yes = desk.MsgBoxExt(deleteLocalFilesPrompt(), kButtons) == IDYES;
        if (desk.ending()) return {};
        return yes;
    };
    questions.saveFailed = [&desk] { desk.showSaveFailure(); };
    return questions;
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
        instance = {};  // the copy that is extracted now may start while this one still explains itself
        fmsg().MsgBoxExt(startedFromZipPrompt(), MB_ICONEXCLAMATION);
        return 0;
    }
    registerLogOnStart(path);

    registerNoteClasses();
    basPost desk;
    desk.look = loadNoteLook();
    desk.store.files = {folderFiles(AppFolder), systemCodePage()};
    desk.store.registry.settings = userSettings();
    for (int day = 0; day < kWeekdays; ++day) {
        desk.store.registry.weekdayKeys[static_cast<std::size_t>(day)] = u"w." + weekdayName(day);
    }
    if (!desk.createTray()) return 1;
    const StartQuestions questions = questionsOf(desk, instance, AppFolder);
    if (!questions.claimStore(chosenUseRegistry(desk.store.registry.settings))) return 0;

    const StartState state = settleStart(desk.store, desk.settings, questions);
    const bool goesOn = state.usable && !desk.ending();
    if (goesOn && waitForTray(desk) && desk.LoadNotes(state.Count)) runMessages(desk);
    desk.Teardown();
    return state.usable || desk.ending() ? 0 : 1;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    closeSearchPath();
    return start();
}
