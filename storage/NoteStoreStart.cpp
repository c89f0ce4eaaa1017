// What a start settles before any note is loaded: the settings, the store in force, the number of notes.
#include <algorithm>

#include "storage/Import.h"
#include "storage/NoteStore.h"
#include "storage/Upgrade.h"
#include "support/Number.h"

namespace {

constexpr int kTries = 20;  // with a moment between two: about a second

bool isFailed(const SectionResult& section, TextView key) {
    return valueOf(section, key).status == IoStatus::Failed;
}

/// Tries for about a second, until it succeeds.
bool comesToPass(const std::function<bool()>& attempt, const StartQuestions& questions) {
    for (int tries = 1; tries < kTries; ++tries) {
        if (attempt()) return true;
        questions.wait();
    }
    return attempt();
}

}  // namespace

bool NoteStore::mayUse(StoreKind kind, bool say) {
    if (claimed_.contains(kind)) return true;
    if (claim(kind)) {
        claimed_.insert(kind);
        return true;
    }
    if (say) heldElsewhere();
    return false;
}

void NoteStore::giveBack(StoreKind kind) {
    claimed_.erase(kind);
    release(kind);
}

StartState NoteStore::start(GlobalSettings& settings, const StartQuestions& questions) {
    const Command command(*this);
    constexpr StartState kEnds{false, false, 1};
    constexpr StartState kBusy{false, true, 1};
    SectionResult section;
    GlobalSettings stored;
    if (!readSetting(section, stored, questions)) {
        questions.cannotRead();
        return kEnds;
    }
    StoreKind kind = stored.UseRegistry ? StoreKind::Registry : StoreKind::Files;
    if (!mayUse(kind, true)) return kBusy;
    bool leftOver = false;
    if (!comesToPass([&] { return lookForFiles(leftOver); }, questions)) {
        questions.cannotRead();
        return kEnds;
    }
    settings = stored;
    if (kind == StoreKind::Registry && leftOver) {
        const std::optional<bool> deletes = questions.deleteLocalFiles();
        if (!deletes) return kEnds;
        if (!mayUse(StoreKind::Files, true)) return kBusy;
        if (*deletes) {
            deleteLocalFiles();
            giveBack(StoreKind::Files);
        } else {
            kind = StoreKind::Files;
        }
    }
    removeTemporaries(kind);
    if (kind == StoreKind::Files && !upgrade(questions)) return kEnds;
    StartState state;
    IoStatus headerRead = IoStatus::Absent;
    const auto countNotes = [&] {
        headerRead = files_->readHeader(kind == StoreKind::Registry);
        const IoStatus counted = kind == StoreKind::Registry ? registry_->readCount(section, state.Count)
                                                             : files_->readCount(headerRead, state.Count);
        return counted != IoStatus::Failed;
    };
    if (!comesToPass(countNotes, questions)) {
        questions.cannotRead();
        return kEnds;
    }
    writeMissingSettings(registry_->notes().settings, section, stored);
    take(kind);

    if (kind == StoreKind::Registry) {
        registry_->dropStaleList();
    } else {
        if (stored.UseRegistry) {
            // A header that cannot be read says nothing about the number of notes, and a wrong number would
            // hide some.
            if (headerRead != IoStatus::Failed) static_cast<void>(files_->writeHeader());
            settings.UseRegistry = false;
            storeSetting(Setting::UseRegistry, settings);
        }
        if (!importOnce(section, state, questions)) return kBusy;
    }
    state.Count = std::min(state.Count, kMaxNotes);
    if (inForce_ == StoreKind::Files && state.Count == 1 && !files_->data().exists(kNoteFile)) {
        if (!files_->createFirst()) questions.saveFailed();
    }
    return state;
}

/// Reads section "setting". False when something in it that matters cannot be read.
bool NoteStore::readSetting(SectionResult& section, GlobalSettings& settings,
                            const StartQuestions& questions) const {
    const auto read = [&] {
        section = registry_->notes().settings.readSection(kSettingSection);
        int count = 1;
        return section.status != IoStatus::Failed && readSettings(section, settings) &&
               registry_->readCount(section, count) != IoStatus::Failed && !isFailed(section, kImportedKey);
    };
    return comesToPass(read, questions);
}

/// Checks whether any of the files is there. False when that is uncertain for one of them.
bool NoteStore::lookForFiles(bool& any) const {
    any = false;
    for (const TextView name : kDataFiles) {
        const IoStatus status = files_->data().files.length(name).status;
        if (status == IoStatus::Failed) return false;
        any = any || status == IoStatus::Done;
    }
    return true;
}

/// A start that finds them half deleted may be told to keep them after all: then they no longer hold what the
/// registry holds, and its notes have to be copied into them.
void NoteStore::deleteLocalFiles() {
    static_cast<void>(dropSetting(registry_->notes().settings, kSettingSection, kImportedKey));
    const DataFiles& data = files_->data();
    for (const TextView name : kDataFiles) {
        const bool gone = !data.exists(name) || data.files.remove(name);
        if (!gone && name == kNoteFile) return;  // without their bodies the records would be blank notes
    }
    if (data.exists(kDraftFile)) static_cast<void>(data.files.remove(kDraftFile));
}

/// Removes what interrupted writes have left in the folder.
void NoteStore::removeTemporaries(StoreKind kind) {
    const bool ours = kind == StoreKind::Files;
    const Files& files = files_->data().files;
    const auto isLeft = [&](TextView name) {
        return files.length(temporaryName(name)).status == IoStatus::Done;
    };
    std::vector<Text> replaced = upgradeFiles(files);
    replaced.insert(replaced.end(), std::begin(kDataFiles), std::end(kDataFiles));
    replaced.emplace_back(kDraftFile);
    if (std::none_of(replaced.begin(), replaced.end(), isLeft)) return;
    if (!mayUse(StoreKind::Files, false)) return;  // another session may be writing them
    for (const Text& name : replaced) {
        if (isLeft(name)) static_cast<void>(files.remove(temporaryName(name)));
    }
    if (!ours) giveBack(StoreKind::Files);
}

/// Brings older data files up to date. False, after telling the user, when they must be left alone.
bool NoteStore::upgrade(const StartQuestions& questions) {
    std::vector<Text> copies;
    Upgraded upgraded = Upgraded::Unreadable;
    const auto attempt = [&] {
        upgraded = UpgradeDataFiles(files_->data(), copies);
        return upgraded != Upgraded::Unreadable;
    };
    const bool read = comesToPass(attempt, questions);
    if (!copies.empty()) questions.damaged(copies);
    if (!read) {
        questions.cannotRead();
        return false;
    }
    if (upgraded != Upgraded::Failed) return true;
    questions.saveFailed();
    return false;
}

/// Copies the registry's notes, once, into local files with no more than one note. When that fails, or the
/// files cannot hold them all as they are, the registry stays the store of this run, so that its notes can
/// still be reached.
bool NoteStore::importOnce(const SectionResult& section, StartState& state, const StartQuestions& questions) {
    const SettingResult counted = valueOf(section, kCountKey);
    int registryCount = 0;
    static_cast<void>(registry_->readCount(section, registryCount));
    if (leadingInt32(counted.text) < 1) registryCount = 0;
    // Without its records the folder holds nothing, whatever was copied into it once.
    const bool imported = ParseBool(valueOf(section, kImportedKey).text) && files_->data().exists(kNoteFile);
    const Settings& settings = registry_->notes().settings;
    if (registryCount >= 1 && state.Count == 1 && !imported) {
        const Imported done = importRegistryNotes(*files_, *registry_, registryCount);
        if (done == Imported::Refused) {
            filesApart_ = mayHoldNote(files_->data());
            if (!mayUse(StoreKind::Registry, true)) return false;
            take(StoreKind::Registry);
            static_cast<void>(registry_->readCount(section, state.Count));
            questions.saveFailed();
            return true;
        }
        state.Count = files_->header().count;
        static_cast<void>(saveSetting(settings, kSettingSection, kImportedKey, u"1"));
    }
    registryVoid_ = true;
    forgetRegistry();
    return true;
}

/// Once the next start is sure to use the files, the registry's notes are none any more. Until then it may be
/// told to use the registry, and has to find them.
void NoteStore::forgetRegistry() {
    if (!registryVoid_ || owedSettings_.contains(Setting::UseRegistry)) return;
    registryVoid_ = !registry_->removeCount();
    registry_->forgetList();
}
