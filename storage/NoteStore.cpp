#include "storage/NoteStore.h"

#include <algorithm>
#include <utility>

#include "support/Number.h"

namespace {

DefaultSize sizeOf(const GlobalSettings& settings) {
    return {wholeTwips(settings.DefaultWidth), wholeTwips(settings.DefaultHeight)};
}

Text marksText(const std::vector<std::uint32_t>& marks) {
    Text text;
    for (const std::uint32_t mark : marks)
        text += decimal(mark) + u" ";
    return text;
}

std::vector<std::uint32_t> marksIn(TextView list) {
    std::vector<std::uint32_t> marks;
    std::uint32_t mark = 0;
    for (const char16_t c : list) {
        if (c == u' ') {
            marks.push_back(std::exchange(mark, 0U));
        } else {
            mark = mark * 10 + static_cast<std::uint32_t>(c) - u'0';
        }
    }
    return marks;
}

}  // namespace

void NoteStore::connect(const StoreParts& parts) {
    files_ = std::make_unique<FileStore>(parts.files, parts.page);
    registry_ = std::make_unique<RegistryStore>(parts.settings, parts.weekdayKeys);
    take(StoreKind::Files);
}

void NoteStore::take(StoreKind kind) {
    inForce_ = kind;
    kept_ = {&storeOf(kind)};
}

int NoteStore::begin(StoreKind kind) {
    take(kind);
    int count = 1;
    if (kind == StoreKind::Files) {
        static_cast<void>(files_->readCount(files_->readHeader(false), count));
    } else {
        const SectionResult section = registry_->notes().settings.readSection(kSettingSection);
        static_cast<void>(registry_->readCount(section, count));
    }
    return count;
}

Store& NoteStore::storeOf(StoreKind kind) const {
    if (kind == StoreKind::Registry) return *registry_;
    return *files_;
}

NoteStore::Command::Command(NoteStore& store, unsigned ms) : store_(store) {
    if (store_.commands_++ == 0) store_.files_->data().files.mayWait(ms);
}

NoteStore::Command::~Command() {
    --store_.commands_;
}

// --- Notes ------------------------------------------------------------------------------------------------

bool NoteStore::load(int number, NoteRecord& record, const GlobalSettings& settings) {
    const Command command(*this);
    NoteRecord loaded;
    const bool done = storeOf(inForce_).load(number, loaded, sizeOf(settings)) != IoStatus::Failed;
    if (!done) {
        loaded = NoteRecord();
        loaded.readOnly = true;
    }
    record = loaded;
    return done;
}

bool NoteStore::refresh(int number, NoteRecord& record, std::span<const NoteField> fields) {
    const Command command(*this);
    NoteRecord stored;
    if (storeOf(inForce_).load(number, stored, {}) == IoStatus::Failed) return false;
    for (const NoteField field : fields)
        rowOf(field).read(record, rowOf(field).write(stored));
    return true;
}

bool NoteStore::write(int number, const std::function<Saved(Store&)>& save) {
    const Command command(*this);
    const bool placed =
        std::all_of(kept_.begin(), kept_.end(), [number](Store* store) { return store->hasPlace(number); });
    if (!placed) {
        saveFailed();
        return false;
    }
    bool done = true;
    bool unmappable = false;
    for (Store* const store : kept_) {
        const Saved saved = save(*store);
        if (!saved.done) behind_.insert(store);
        done = saved.done && done;
        unmappable = saved.unmappable || unmappable;
    }
    if (!done || unmappable) saveFailed();
    return done;
}

bool NoteStore::set(int number, NoteRecord& record, std::span<const NoteField> fields) {
    if (record.readOnly) return false;
    const bool done = write(number, [&](Store& store) { return store.set(number, record, fields); });
    // A new note that has finally been stored would still be missing at the next start until it is counted.
    if (done) static_cast<void>(settleStores());
    return done;
}

bool NoteStore::create(int number, NoteRecord& record) {
    return write(number, [&](Store& store) { return store.create(number, record); });
}

bool NoteStore::remove(int number, NoteList remaining, const GlobalSettings& settings) {
    const Command command(*this);
    forget(number);
    bool done = true;
    for (Store* const store : kept_)
        done = store->remove(number, remaining, settings) && done;
    if (!done) saveFailed();
    return done;
}

/// Gives the drafts of the notes behind a removed one their new numbers.
void NoteStore::forget(int number) {
    std::map<int, Draft> left;
    for (auto& [at, draft] : drafts_) {
        if (at == number) continue;
        draft.number = at > number ? at - 1 : at;
        left.emplace(draft.number, std::move(draft));
    }
    drafts_ = std::move(left);
}

void NoteStore::settle(NoteList notes, const GlobalSettings& settings) {
    const Command command(*this);
    for (Store* const store : kept_)
        store->finishRemovals(notes, settings);
    const bool done = settleStores();
    const Settings& stored = registry_->notes().settings;
    std::erase_if(owedSettings_, [&](const auto& owed) {
        return saveSetting(stored, kSettingSection, rowOf(owed.first).key, owed.second);
    });
    forgetRegistry();
    if (done && droppedListStands_ && !draftsUnread_) {
        dropped_.clear();
        droppedListStands_ = !dropSetting(stored, kSettingSection, kDroppedKey);
    }
}

bool NoteStore::settleStores() {
    bool done = true;
    for (Store* const store : kept_)
        done = store->settle() && done;
    return done;
}

bool NoteStore::storeCount(int count) {
    const Command command(*this);
    bool done = true;
    for (Store* const store : kept_)
        done = store->storeCount(count) && done;
    return done;
}

// --- What fits --------------------------------------------------------------------------------------------

bool NoteStore::fits(NoteField field, TextView text) const {
    return std::all_of(kept_.begin(), kept_.end(), [&](const Store* store) {
        const std::optional<std::size_t> limit = store->limit(field);
        const std::optional<std::size_t> size = store->sizeOf(text);
        return !limit || (size && *size <= *limit);
    });
}

// --- Drafts -----------------------------------------------------------------------------------------------

void NoteStore::saveDraft(int number, bool title, const Text& text) {
    const Command command(*this, 0);
    NoteRecord stored;
    if (storeOf(inForce_).load(number, stored, {}) == IoStatus::Failed) return;
    const Draft draft{number, title, text, storedMark(stored)};
    drafts_[number] = draft;
    for (Store* const store : kept_)
        static_cast<void>(store->saveDraft(draft));
}

void NoteStore::dropDraft(int number) {
    const auto found = drafts_.find(number);
    if (found == drafts_.end()) return;
    const Command command(*this);
    const Draft draft = found->second;
    drafts_.erase(found);
    bool done = true;
    for (Store* const store : kept_)
        done = store->dropDraft(number) && done;
    if (done) return;
    // Until the store can remove it, the settings say that it is void.
    dropped_.push_back(draftMark(draft));
    droppedListStands_ = true;
    static_cast<void>(
        saveSetting(registry_->notes().settings, kSettingSection, kDroppedKey, marksText(dropped_)));
}

FoundDrafts NoteStore::takeDrafts(NoteList notes, const std::set<int>& edited) {
    const Command command(*this);
    FoundDrafts found = storeOf(inForce_).drafts(static_cast<int>(notes.size()));
    const SettingResult dropped = registry_->notes().settings.get(kSettingSection, kDroppedKey);
    draftsUnread_ = found.status == IoStatus::Failed || dropped.status == IoStatus::Failed;
    if (dropped.status == IoStatus::Failed) return {IoStatus::Failed, {}};
    // Those that are still stored must stay void when the list is written again.
    const auto isDropped = [this](std::uint32_t mark) {
        return std::find(dropped_.begin(), dropped_.end(), mark) != dropped_.end();
    };
    for (const std::uint32_t mark : marksIn(dropped.text)) {
        if (!isDropped(mark)) dropped_.push_back(mark);
    }
    std::vector<std::uint32_t> marks;
    for (const NoteRecord* note : notes)
        marks.push_back(note->readOnly ? 0 : storedMark(*note));
    std::vector<Draft> wanted;
    // A draft moves to a lower number, whose own draft has then moved already.
    std::sort(found.drafts.begin(), found.drafts.end(),
              [](const Draft& one, const Draft& two) { return one.number < two.number; });
    for (const Draft& draft : found.drafts) {
        if (edited.contains(draft.number)) {
            // Unless it is that edit's own, it must not be dropped when the edit ends.
            draftsUnread_ = draftsUnread_ || !drafts_.contains(draft.number);
            continue;
        }
        drafts_.emplace(draft.number, draft);  // so that it can be dropped
        if (taken_.contains(draftMark(draft))) continue;
        const bool unread = draft.number <= static_cast<int>(notes.size()) &&
                            notes[static_cast<std::size_t>(draft.number - 1)]->readOnly;
        if (unread) continue;  // it waits until the note can be read
        const int number = isDropped(draftMark(draft)) ? 0 : noteOf(draft, marks);
        if (number == 0) {
            dropDraft(draft.number);
            continue;
        }
        taken_.insert(draftMark(draft));
        wanted.push_back(draft);
        wanted.back().number = number;
        if (number != draft.number) moveDraft(draft, number);
    }
    if (dropped.status == IoStatus::Done) droppedListStands_ = true;
    // A list that is damaged or fits no draft is removed at once.
    if (found.status == IoStatus::Done) static_cast<void>(settleStores());
    return {found.status, std::move(wanted)};
}

/// Gives a draft the number that its note got in a deletion, which was killed before the draft followed.
void NoteStore::moveDraft(Draft draft, int to) {
    const int from = std::exchange(draft.number, to);
    if (!drafts_.emplace(to, draft).second) return;  // the draft of a note that is exactly alike
    drafts_.erase(from);
    for (Store* const store : kept_) {
        static_cast<void>(store->saveDraft(draft));
        static_cast<void>(store->dropDraft(from));
    }
}

// --- Settings ---------------------------------------------------------------------------------------------

void NoteStore::storeSetting(Setting setting, const GlobalSettings& settings) {
    const SettingRow& row = rowOf(setting);
    const Text text = row.write(settings);
    owedSettings_.erase(setting);
    if (!saveSetting(registry_->notes().settings, kSettingSection, row.key, text))
        owedSettings_[setting] = text;
}

void NoteStore::refreshDefaultSize(GlobalSettings& settings) const {
    for (const Setting setting : {Setting::DefaultWidth, Setting::DefaultHeight}) {
        const SettingRow& row = rowOf(setting);
        const SettingResult stored = registry_->notes().settings.get(kSettingSection, row.key);
        if (stored.status != IoStatus::Failed) row.read(settings, stored.text);
    }
}
