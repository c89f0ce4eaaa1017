#include "storage/RegistryNotes.h"

#include <algorithm>
#include <vector>

#include "storage/SectionChange.h"
#include "support/Number.h"

namespace {

constexpr TextView kSectionPrefix = u"kardel-";

/// The note number of a section, or 0 when it is not that of a note.
std::int32_t numberOf(TextView section) {
    if (!isSameName(section.substr(0, kSectionPrefix.size()), kSectionPrefix)) return 0;
    const TextView digits = section.substr(kSectionPrefix.size());
    if (digits.empty() || digits.front() == u'0') return 0;
    const auto isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    return std::all_of(digits.begin(), digits.end(), isDigit) ? leadingInt32(digits) : 0;
}

bool isPatternDay(NoteField field) {
    return field == NoteField::AlarmDay || field == NoteField::AlarmDayMonth;
}

ValueChange changeOf(const RegistryNotes& notes, const NoteRecord& record, NoteField field) {
    return {notes.keyOf(field), rowOf(field).write(record)};
}

/// Every field of a note as its section holds it. `weeklyInterval`: a weekly rule has no interval kind, and
/// the one in its section stays unless this replaces it.
std::vector<ValueChange> wholeNote(const RegistryNotes& notes, const NoteRecord& record,
                                   bool weeklyInterval) {
    const NoteRecord stored = withStoredRule(record);
    const bool pattern = recursByPattern(record);
    const TextView kind = intervalKind(record.interval);
    std::vector<ValueChange> changes;
    for (const NoteFieldRow& row : noteFields()) {
        ValueChange change = changeOf(notes, stored, row.field);
        if (row.field == NoteField::Interval && pattern) {
            const bool weekly = kind.empty() && record.alarmweekday >= 1;
            if (weekly && !weeklyInterval) continue;
            if (!weekly) change.text = Text(kind.empty() ? kEachDay : kind);
        }
        if (isPatternDay(row.field) && !pattern) change.text.reset();
        changes.push_back(std::move(change));
    }
    return changes;
}

}  // namespace

Text noteSection(int number) {
    return Text(kSectionPrefix) + decimal(number);
}

bool isNoteSection(TextView section) {
    return numberOf(section) > 0;
}

Text RegistryNotes::keyOf(NoteField field) const {
    const NoteFieldRow& row = rowOf(field);
    if (row.key != nullptr) return row.key;
    const auto day = static_cast<std::size_t>(field) - static_cast<std::size_t>(NoteField::Weekday0);
    return weekdayKeys[day];
}

IoStatus RegistryNotes::LoadNoteFromRegistry(int slot, NoteRecord& record, std::int32_t defaultWidth,
                                             std::int32_t defaultHeight) const {
    const SectionResult section = readChangedSection(settings, noteSection(slot + 1));
    if (section.status == IoStatus::Failed) return section.status;
    NoteRecord loaded;
    loaded.width = defaultWidth;
    loaded.height = defaultHeight;
    for (const NoteFieldRow& row : noteFields()) {
        const SettingResult value = valueOf(section, keyOf(row.field));
        if (value.status == IoStatus::Failed) return IoStatus::Failed;
        if (value.status == IoStatus::Done) row.read(loaded, value.text);
    }
    record = loaded;
    return section.status;
}

bool RegistryNotes::SaveNoteToRegistry(int number, const NoteRecord& record) const {
    return changeSection(settings, noteSection(number), wholeNote(*this, record, false));
}

bool RegistryNotes::replaceNote(int number, const NoteRecord& record, bool keepDraft) const {
    std::vector<ValueChange> changes = wholeNote(*this, record, true);
    const SectionResult section = settings.readSection(noteSection(number));
    if (section.status == IoStatus::Failed) return false;
    const auto isOurs = [&](TextView key) {
        return std::any_of(changes.begin(), changes.end(),
                           [key](const ValueChange& change) { return isSameName(change.key, key); });
    };
    const auto stays = [&](TextView key) {
        return isOurs(key) || isPendingKey(key) || (keepDraft && isSameName(key, kDraftKey));
    };
    std::vector<Text> keys = section.unreadable;
    for (const auto& [key, text] : section.values)
        keys.push_back(key);
    for (const Text& key : keys) {
        if (!stays(key)) changes.push_back({key, std::nullopt});
    }
    return changeSection(settings, noteSection(number), std::move(changes));
}

bool RegistryNotes::set(int number, const NoteRecord& record, std::span<const NoteField> fields) const {
    const NoteRecord stored = withStoredRule(record);
    std::vector<ValueChange> changes;
    for (const NoteField field : storedTogether(record, fields)) {
        ValueChange change = changeOf(*this, stored, field);
        if (isPatternDay(field) && change.text->empty()) change.text.reset();
        changes.push_back(std::move(change));
    }
    return changeSection(settings, noteSection(number), std::move(changes));
}

bool RegistryNotes::moveNote(int from, int to, const NoteRecord& record, bool withDraft) const {
    const SettingResult draft = settings.get(noteSection(from), kDraftKey);
    if (draft.status == IoStatus::Failed || !removeNote(to)) return false;
    std::vector<ValueChange> changes = wholeNote(*this, record, false);
    if (withDraft && draft.status == IoStatus::Done) changes.push_back({Text(kDraftKey), draft.text});
    return changeSection(settings, noteSection(to), std::move(changes));
}

bool RegistryNotes::copySection(int from, int to, bool withDraft) const {
    SectionResult section = settings.readSection(noteSection(from));
    if (section.status == IoStatus::Failed) return false;
    if (!section.unreadable.empty() || !settings.removeSection(noteSection(to))) return false;
    if (!withDraft) {
        std::erase_if(section.values,
                      [](const KeyText& value) { return isSameName(value.first, kDraftKey); });
    }
    return section.values.empty() || settings.set(noteSection(to), section.values);
}

bool RegistryNotes::removeNote(int number) const {
    return settings.removeSection(noteSection(number));
}

bool RegistryNotes::removeBeyond(int count) const {
    const SectionNames names = settings.sections();
    bool done = names.status != IoStatus::Failed;
    for (const Text& section : names.names) {
        if (numberOf(section) > count) done = settings.removeSection(section) && done;
    }
    return done;
}
