// The choice of store: the copy of all notes from one to the other, and what makes the next start take it.
#include <algorithm>

#include "storage/NoteStore.h"
#include "support/Number.h"

Switched NoteStore::switchTo(StoreKind kind, NoteList notes, GlobalSettings& settings) {
    const Command command(*this);
    if (filesApart_ && kind == StoreKind::Files) {
        // A switch would replace the note that is there. The next start copies the others behind it.
        saveFailed();
        return Switched::Refused;
    }
    const bool hadIt = claimed_.contains(kind);
    if (!mayUse(kind, true)) return Switched::Refused;
    if (copyTo(kind, notes, settings) && storeChoice(kind, settings)) return Switched::Done;
    if (!hadIt && !isKept(kind)) giveBack(kind);
    saveFailed();
    return Switched::Refused;
}

bool NoteStore::isKept(StoreKind kind) const {
    return std::find(kept_.begin(), kept_.end(), &storeOf(kind)) != kept_.end();
}

bool NoteStore::copyTo(StoreKind kind, NoteList notes, const GlobalSettings& settings) {
    Store& target = storeOf(kind);
    const bool wasKept = isKept(kind);
    if (kind == StoreKind::Registry) registryVoid_ = false;
    std::vector<NoteRecord> copies;
    copies.reserve(notes.size());
    for (std::size_t i = 0; i < notes.size(); ++i) {
        copies.push_back(*notes[i]);
        if (copies.back().readOnly && !load(static_cast<int>(i) + 1, copies.back(), settings)) return false;
    }
    std::vector<NoteRecord*> all;
    all.reserve(copies.size());
    for (NoteRecord& copy : copies)
        all.push_back(&copy);
    const bool chosen = settings.UseRegistry == (kind == StoreKind::Registry);
    if (!wasKept && kind == StoreKind::Files) {
        // When the program is killed on the way, the next start finds files beside the registry and may be
        // told to use them. Until the records are complete, which is the last step, it then has to copy the
        // registry's notes again.
        if (!dropSetting(registry_->notes().settings, kSettingSection, kImportedKey)) return false;
    }
    if (!wasKept || chosen || behind_.contains(&target)) {
        // A store that is kept may be the only complete one, so it is never taken down to be built anew.
        const bool done = wasKept ? target.writeAll(all, settings) : target.replaceAll(all, settings);
        if (!done) return false;
        behind_.erase(&target);
        for (std::size_t i = 0; i < notes.size(); ++i)
            notes[i]->memo = copies[i].memo;
    } else {
        // Both are in step already: what was refused meanwhile is written, and a store that still lacks
        // something is not chosen.
        target.finishRemovals(all, settings);
        if (target.isUnfinished() || !target.storeCount(static_cast<int>(notes.size()))) return false;
    }
    if (!wasKept) {
        kept_.push_back(&target);
        // It must have the drafts of the open edits, too.
        for (const auto& [number, draft] : drafts_)
            static_cast<void>(target.saveDraft(draft));
    }
    return true;
}

bool NoteStore::storeChoice(StoreKind kind, GlobalSettings& settings) {
    const Settings& stored = registry_->notes().settings;
    GlobalSettings chosen = settings;
    chosen.UseRegistry = kind == StoreKind::Registry;
    if (kind == StoreKind::Files) {
        // The files hold everything, so the next start must not copy the registry's notes again.
        if (!saveSetting(stored, kSettingSection, kImportedKey, u"1")) return false;
    } else if (kept_.size() > 1) {
        // Only for the version in it. Files that cannot be written keep nobody from choosing the registry.
        static_cast<void>(files_->writeHeader());
    }
    // A single value, written last: at every instant one choice or the other is stored, and both stores hold
    // every note.
    const SettingRow& row = rowOf(Setting::UseRegistry);
    if (!saveSetting(stored, kSettingSection, row.key, row.write(chosen))) return false;
    owedSettings_.erase(Setting::UseRegistry);
    settings.UseRegistry = chosen.UseRegistry;
    return true;
}
