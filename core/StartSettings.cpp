#include "core/StartSettings.h"

#include <algorithm>

#include "storage/Upgrade.h"
#include "support/Number.h"

namespace {

/// Reads one flag; a missing key gets "False".
bool readFlag(const Settings& settings, TextView key) {
    const SettingResult stored = settings.get(kSettingSection, key);
    if (stored.text.empty() && stored.status != IoStatus::Failed) {
        saveSetting(settings, kSettingSection, key, boolText(false));
    }
    return ParseBool(stored.text.empty() ? u"0" : TextView(stored.text));
}

/// Reads one default size; a missing one and 0 are replaced by the built-in size.
float readSize(const Settings& settings, TextView key, float builtIn) {
    const SettingResult stored = settings.get(kSettingSection, key);
    if (stored.status != IoStatus::Failed && leadingNumber(stored.text) == 0) {
        saveSetting(settings, kSettingSection, key, decimal(static_cast<std::int64_t>(builtIn)));
    }
    return defaultSize(stored.text, builtIn);
}

bool anyLocalFile(const DataFiles& files) {
    return files.exists(kNoteFile) || files.exists(kHeaderFile) || files.exists(kMemoFile);
}

/// Brings older data files up to date. False, after telling the user, when they must be left alone.
bool upgraded(const DataFiles& files, const StartQuestions& questions) {
    if (UpgradeDataFiles(files) != Upgraded::Failed) return true;
    questions.saveFailed();
    return false;
}

/// Left-over local files while the registry is chosen: they go, or the choice does.
bool settleLeftOverFiles(NoteStore& store, GlobalSettings& settings, const StartQuestions& questions,
                         IoStatus& headerRead) {
    if (!settings.UseRegistry || !anyLocalFile(store.files)) return true;
    const std::optional<bool> deleteThem = questions.deleteLocalFiles();
    if (!deleteThem) return false;
    if (*deleteThem) {
        for (const TextView name : {kNoteFile, kHeaderFile, kMemoFile}) {
            if (store.files.exists(name)) static_cast<void>(store.files.files.remove(name));
        }
        return true;
    }
    if (!questions.claimStore(false) || !upgraded(store.files, questions)) return false;
    settings.UseRegistry = false;
    bool existed = false;
    headerRead = store.files.ReadHeader(store.header, false, existed);
    // A header that cannot be read says nothing about the number of notes; a wrong one would hide them.
    if (headerRead != IoStatus::Failed) store.files.WriteHeader(store.header);
    saveSetting(store.registry.settings, kSettingSection, u"UseRegistry", boolText(false));
    return true;
}

/// Notes in the local files: what the header says, but never more than there are records.
int fileCount(NoteStore& store, IoStatus headerRead) {
    const LengthResult records = store.files.noteRecords();
    if (records.status == IoStatus::Absent) {
        store.header.count = 1;
        return 1;
    }
    int count = headerRead == IoStatus::Failed ? kMaxNotes : store.header.count;
    if (records.status == IoStatus::Done) {
        const auto held = std::min<std::uint64_t>(records.bytes, kMaxNotes);
        count = std::min(count, static_cast<int>(held));
    }
    store.header.count = std::max(count, 1);
    return store.header.count;
}

/// The registry's notes go into local files that hold no more than one note, once. When that fails the
/// registry stays the store of this run: its notes must not be cut off.
void importOnce(NoteStore& store, StartState& state, const StartQuestions& questions) {
    const Settings& settings = store.registry.settings;
    const int registryCount = std::min(storedCount(settings), kMaxNotes);
    const bool imported = ParseBool(settingOr(settings, kSettingSection, u"ImportDAT", u""));
    if (registryCount >= 1 && state.Count == 1 && !imported) {
        if (!store.importRegistryNotes(registryCount)) {
            state.usable = questions.claimStore(true);
            if (!state.usable) return;
            store.UseRegistry = true;
            state.Count = registryCount;
            questions.saveFailed();
            return;
        }
        state.Count = store.header.count;
        saveSetting(settings, kSettingSection, u"ImportDAT", u"1");
    }
    if (settings.get(kSettingSection, kCountKey).status == IoStatus::Done)
        settings.removeValue(kSettingSection, kCountKey);
}

/// The very first note of new local files.
void createFirstNote(NoteStore& store, const StartQuestions& questions) {
    NoteRecord first;
    ClearNoteRecord(first);
    const MemoResult body = store.files.WriteMemo(1, u"");
    if (!body.done || !store.files.PutNoteRecord(1, first)) questions.saveFailed();
}

}  // namespace

Text deleteLocalFilesPrompt() {
    return u"You have changed the saving mode from ''local files mode''  to  ''use registry mode''.\r"
           u"Current set of memo files KARDEL.HDR, KARDEL.DAT and MEMO will be lost.\r"
           u"\r"
           u"Are you sure you want to delete the local files?";
}

bool chosenUseRegistry(const Settings& settings) {
    return ParseBool(settingOr(settings, kSettingSection, u"UseRegistry", u"0"));
}

StartState settleStart(NoteStore& store, GlobalSettings& settings, const StartQuestions& questions) {
    const Settings& stored = store.registry.settings;
    StartState state;

    settings.AlignAll = readFlag(stored, u"AlignAll");
    settings.EasyAlign = readFlag(stored, u"EasyAlign");
    settings.RestoreWhenPlay = readFlag(stored, u"RestoreWhenPlay");
    settings.DontDeleteWhenPlay = readFlag(stored, u"DontDeleteWhenPlay");

    // Files that are not in use wait: whether they come into use, the user decides further down.
    settings.UseRegistry = chosenUseRegistry(stored);
    state.usable = settings.UseRegistry || upgraded(store.files, questions);
    if (!state.usable) return state;
    bool headerExisted = false;
    IoStatus headerRead = store.files.ReadHeader(store.header, settings.UseRegistry, headerExisted);
    store.header.flag = settings.UseRegistry ? -1 : 0;
    if (stored.get(kSettingSection, u"UseRegistry").status == IoStatus::Absent) {
        saveSetting(stored, kSettingSection, u"UseRegistry", boolText(settings.UseRegistry));
    }
    state.usable = settleLeftOverFiles(store, settings, questions, headerRead);
    if (!state.usable) return state;

    store.UseRegistry = settings.UseRegistry;
    if (store.UseRegistry) {
        state.Count = store.resumeRemoval(std::max(storedCount(stored), 1));
    } else {
        state.Count = fileCount(store, headerRead);
        importOnce(store, state, questions);
        if (!state.usable) return state;
    }

    settings.DefaultWidth = readSize(stored, u"defaultwidth", kDefaultWidth);
    settings.DefaultHeight = readSize(stored, u"defaultheight", kDefaultHeight);

    state.Count = std::min(state.Count, kMaxNotes);
    if (!store.UseRegistry && state.Count == 1 && !store.files.exists(kNoteFile)) {
        createFirstNote(store, questions);
    }
    return state;
}
