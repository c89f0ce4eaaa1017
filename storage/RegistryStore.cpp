#include "storage/RegistryStore.h"

#include <algorithm>
#include <utility>

#include "storage/SectionChange.h"
#include "support/Number.h"

namespace {

constexpr TextView kPlacesKey = u"places";  ///< only while a removal is under way

}  // namespace

// --- The number of notes ----------------------------------------------------------------------------------

IoStatus RegistryStore::readCount(const SectionResult& setting, int& count) {
    const SettingResult stored = valueOf(setting, kCountKey);
    const SettingResult list = valueOf(setting, kPlacesKey);
    if (stored.status == IoStatus::Failed || list.status == IoStatus::Failed) return IoStatus::Failed;
    count = std::max(leadingInt32(stored.text), 1);
    listStands_ = list.status == IoStatus::Done;
    if (const std::optional<NotePlaces> places = parsePlaces(list.text, count)) {
        places_ = *places;
        count = static_cast<int>(places->moved.size());
    }
    return stored.status;
}

void RegistryStore::dropStaleList() {
    if (!places_.unfinished) static_cast<void>(dropList());
}

void RegistryStore::forgetList() {
    places_.settled();
    static_cast<void>(dropList());
}

bool RegistryStore::removeCount() {
    countOwed_ = 0;
    return dropSetting(notes_.settings, kSettingSection, kCountKey);
}

bool RegistryStore::storeCount(int count) {
    countOwed_ = count;
    if (places_.unfinished) {
        if (!storePlaces(count)) return false;
    } else {
        // A list that was written for another number of notes must not be used for this one.
        if (!dropList()) return false;
        if (!saveSetting(notes_.settings, kSettingSection, kCountKey, decimal(count))) return false;
    }
    countOwed_ = 0;
    return true;
}

/// Stores where the notes are while a removal is unfinished. Without the list, a start would take the place
/// of a removed note for a note. The list fits the stored count at every instant: it counts with more notes
/// than stay, or when a new note has made the two equal, the count changes after it.
bool RegistryStore::storePlaces(int count) {
    const SettingResult stored = notes_.settings.get(kSettingSection, kCountKey);
    if (stored.status == IoStatus::Failed) return false;
    const int counted = leadingInt32(stored.text);
    places_.name(count);
    if (counted > count) return writeList(places_, counted);
    const int last = count > 0 ? places_.of(count) : 0;
    return writeList(places_, last) &&
           saveSetting(notes_.settings, kSettingSection, kCountKey, decimal(last));
}

bool RegistryStore::writeList(const NotePlaces& known, int counted) {
    listStands_ = true;
    return saveSetting(notes_.settings, kSettingSection, kPlacesKey, placesText(known, counted));
}

bool RegistryStore::dropList() {
    if (!listStands_) return true;
    listStands_ = !dropSetting(notes_.settings, kSettingSection, kPlacesKey);
    return !listStands_;
}

bool RegistryStore::writeSetting(const GlobalSettings& settings, int count) {
    std::vector<KeyText> values = settingValues(settings);
    values.insert(values.begin(), {Text(kCountKey), decimal(count)});
    countOwed_ = count;
    if (!notes_.settings.set(kSettingSection, values)) return false;
    countOwed_ = 0;
    return true;
}

// --- Notes ------------------------------------------------------------------------------------------------

IoStatus RegistryStore::load(int number, NoteRecord& record, DefaultSize size) const {
    return notes_.LoadNoteFromRegistry(places_.of(number) - 1, record, size.width, size.height);
}

Saved RegistryStore::set(int number, NoteRecord& record, std::span<const NoteField> fields) {
    return {notes_.set(places_.of(number), record, fields), false};
}

Saved RegistryStore::create(int number, NoteRecord& record) {
    // A left-over section with that number would give the new note its alarm, or hide it.
    const int place = places_.of(number);
    const bool cleared = notes_.removeNote(place);
    if (cleared) draftsOwed_.erase(place);
    const bool saved = notes_.SaveNoteToRegistry(place, record);
    return {storeCount(number) && saved && cleared, false};
}

bool RegistryStore::remove(int number, NoteList remaining, const GlobalSettings& settings) {
    places_.remove(number, static_cast<int>(remaining.size()));
    return makeDense(remaining, settings);
}

void RegistryStore::finishRemovals(NoteList notes, const GlobalSettings& settings) {
    if (places_.unfinished) static_cast<void>(makeDense(notes, settings));
}

/// Note by note, so that each one is complete in at least one section at every instant: the section that a
/// note moves into holds a removed note, or one that has already been moved. Where each note is gets stored
/// before its former section is written over, so that a start can resume. A note that cannot be moved stops
/// this, since the next step would overwrite that note's only section.
bool RegistryStore::moveSections(NoteList notes) {
    const int left = static_cast<int>(notes.size());
    const auto noteAt = [notes](int at) -> const NoteRecord& {
        return *notes[static_cast<std::size_t>(at - 1)];
    };
    for (int to = 1; to <= left; ++to) {
        if (!noteAt(to).readOnly || places_.of(to) == to) continue;
        const SectionResult section = notes_.settings.readSection(noteSection(places_.of(to)));
        if (section.status == IoStatus::Failed) return false;
    }
    places_.name(left);
    const SettingResult stored = notes_.settings.get(kSettingSection, kCountKey);
    if (stored.status == IoStatus::Failed) return false;
    const int counted = leadingInt32(stored.text);
    // An older list must not remain beside the number of notes that is written next.
    bool told = false;
    if (listStands_) {
        if (!writeList(places_, counted)) return false;
        told = true;
    }
    for (int to = 1; to <= left; ++to) {
        const int from = places_.of(to);
        if (from == to) continue;
        told = told || writeList(places_, counted);
        const bool withDraft = !draftsOwed_.contains(from);
        const bool moved = told && (noteAt(to).readOnly ? notes_.copySection(from, to, withDraft)
                                                        : notes_.moveNote(from, to, noteAt(to), withDraft));
        NotePlaces next = places_;
        next.moved[static_cast<std::size_t>(to - 1)] = to;
        // Its new place could not be stored, so the note stays in its former section, where the next start
        // would look for it.
        if (!moved || !writeList(next, counted)) return false;
        places_ = std::move(next);
        draftsOwed_.erase(from);
        draftsOwed_.erase(to);  // the note that was there is written over
    }
    places_.moved.clear();
    return true;
}

bool RegistryStore::makeDense(NoteList notes, const GlobalSettings& settings) {
    if (!moveSections(notes)) return false;
    const int left = static_cast<int>(notes.size());
    // As long as the count is the old one, the last section must stay, or an empty note would appear there.
    if (!writeSetting(settings, left) || !dropList()) return false;
    const bool removed = notes_.removeNote(left + 1);
    if (!notes_.removeBeyond(left) || !removed) return false;
    places_.settled();
    return true;
}

bool RegistryStore::replaceAll(NoteList notes, const GlobalSettings& settings) {
    const int count = static_cast<int>(notes.size());
    // Without a count no section is taken for a note: after an interrupted copy there are none.
    if (!removeCount() || !dropList()) return false;
    places_.settled();
    draftsOwed_.clear();
    return replaceNotes(notes, false) && clearOthers(count) && writeSetting(settings, count) &&
           notes_.removeBeyond(count);
}

bool RegistryStore::writeAll(NoteList notes, const GlobalSettings& settings) {
    finishRemovals(notes, settings);
    if (places_.unfinished) return false;
    const int count = static_cast<int>(notes.size());
    return replaceNotes(notes, true) && writeSetting(settings, count) && notes_.removeBeyond(count);
}

bool RegistryStore::replaceNotes(NoteList notes, bool keepDrafts) {
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (!notes_.replaceNote(static_cast<int>(i) + 1, *notes[i], keepDrafts)) return false;
    }
    return true;
}

/// Removes everything from the application's key except the settings, the list of dropped drafts, which the
/// files may still hold, and notes 1..`count`.
bool RegistryStore::clearOthers(int count) {
    const Settings& store = notes_.settings;
    std::set<Text> kept{Text(kSettingSection)};
    for (int number = 1; number <= count; ++number)
        kept.insert(noteSection(number));
    const SectionNames sections = store.sections();
    const SectionResult setting = store.readSection(kSettingSection);
    if (sections.status == IoStatus::Failed || setting.status == IoStatus::Failed) return false;
    for (const Text& section : sections.names) {
        if (!kept.contains(lowered(section)) && !store.removeSection(section)) return false;
    }
    const auto isSetting = [](TextView key) {
        const std::span<const SettingRow> rows = settingRows();
        return isSameName(key, kDroppedKey) ||
               std::any_of(rows.begin(), rows.end(),
                           [key](const SettingRow& row) { return isSameName(row.key, key); });
    };
    for (const auto& [key, text] : setting.values) {
        if (!isSetting(key) && !store.removeValue(kSettingSection, key)) return false;
    }
    return true;
}

bool RegistryStore::settle() {
    const bool counted = countOwed_ == 0 || storeCount(countOwed_);
    std::erase_if(draftsOwed_,
                  [this](int place) { return dropSetting(notes_.settings, noteSection(place), kDraftKey); });
    return counted && draftsOwed_.empty();
}

// --- Drafts -----------------------------------------------------------------------------------------------

bool RegistryStore::saveDraft(const Draft& draft) {
    const int place = places_.of(draft.number);
    // One that an earlier run left is nowhere else.
    if (draftsUnread_.contains(place)) {
        if (notes_.settings.get(noteSection(place), kDraftKey).status == IoStatus::Failed) return false;
        draftsUnread_.erase(place);
    }
    draftsOwed_.erase(place);
    return saveSetting(notes_.settings, noteSection(place), kDraftKey, draftText(draft));
}

bool RegistryStore::dropDraft(int number) {
    const int place = places_.of(number);
    if (dropSetting(notes_.settings, noteSection(place), kDraftKey)) return true;
    draftsOwed_.insert(place);
    return false;
}

FoundDrafts RegistryStore::drafts(int count) {
    FoundDrafts found{IoStatus::Done, {}};
    for (int number = 1; number <= count; ++number) {
        const int place = places_.of(number);
        const SettingResult value = notes_.settings.get(noteSection(place), kDraftKey);
        draftsUnread_.erase(place);
        if (value.status == IoStatus::Failed) {
            draftsUnread_.insert(place);
            found.status = IoStatus::Failed;
        }
        if (value.status != IoStatus::Done) continue;
        if (std::optional<Draft> draft = parseDraft(value.text, number)) {
            found.drafts.push_back(std::move(*draft));
        } else {
            static_cast<void>(dropDraft(number));
        }
    }
    return found;
}
