#include "storage/RegistryStore.h"

#include <algorithm>
#include <vector>

#include "storage/SectionChange.h"
#include "support/Number.h"

namespace {

constexpr TextView kSectionPrefix = u"kardel-";

/// The note number of a section, or 0 when it is no note's.
std::int32_t numberOf(TextView section) {
    if (lowered(section.substr(0, kSectionPrefix.size())) != kSectionPrefix) return 0;
    const TextView digits = section.substr(kSectionPrefix.size());
    if (digits.empty() || digits.front() == u'0') return 0;
    const auto isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    return std::all_of(digits.begin(), digits.end(), isDigit) ? leadingInt32(digits) : 0;
}

ValueChange changeOf(const RegistryStore& store, const NoteRecord& record, NoteField field) {
    return {store.keyOf(field), rowOf(field).write(record)};
}

/// A date that is no pattern leaves none of the pattern's values.
void dropPattern(const RegistryStore& store, std::vector<ValueChange>& changes) {
    changes.push_back({store.keyOf(NoteField::AlarmDay), std::nullopt});
    changes.push_back({store.keyOf(NoteField::AlarmDayMonth), std::nullopt});
}

}  // namespace

Text noteSection(int number) {
    return Text(kSectionPrefix) + decimal(number);
}

bool isNoteSection(TextView section) {
    return numberOf(section) > 0;
}

Text RegistryStore::keyOf(NoteField field) const {
    const NoteFieldRow& row = rowOf(field);
    if (row.key != nullptr) return row.key;
    const auto day = static_cast<std::size_t>(field) - static_cast<std::size_t>(NoteField::Weekday0);
    return weekdayKeys[day];
}

IoStatus RegistryStore::LoadNoteFromRegistry(int slot, NoteRecord& record, std::int32_t defaultWidth,
                                             std::int32_t defaultHeight) const {
    const SectionResult section = readChangedSection(settings, noteSection(slot + 1));
    if (section.status == IoStatus::Failed) return section.status;
    NoteRecord loaded;
    loaded.width = defaultWidth;
    loaded.height = defaultHeight;
    for (const NoteFieldRow& row : noteFields()) {
        const Text key = lowered(keyOf(row.field));
        const auto found = std::find_if(section.values.begin(), section.values.end(),
                                        [&](const KeyText& value) { return lowered(value.first) == key; });
        if (found != section.values.end()) row.read(loaded, found->second);
    }
    record = loaded;
    return section.status;
}

bool RegistryStore::SaveNoteToRegistry(int number, const NoteRecord& record) const {
    std::vector<ValueChange> changes;
    const auto add = [&](std::initializer_list<NoteField> fields) {
        for (const NoteField field : fields)
            changes.push_back(changeOf(*this, record, field));
    };
    add({NoteField::X, NoteField::Y, NoteField::Width, NoteField::Height, NoteField::Nota, NoteField::Topmost,
         NoteField::Titolo, NoteField::Iconized, NoteField::Closed});
    const Text dateKey = keyOf(NoteField::AlarmDate);
    const Text intervalKey = keyOf(NoteField::Interval);
    if (recursByPattern(record)) {
        changes.push_back({dateKey, Text(kPatternDate)});
        const TextView kind = intervalKind(record.interval);
        // A weekly rule has no kind of its own: what stands in its section stays.
        if (!kind.empty() || record.alarmweekday < 1) {
            changes.push_back({intervalKey, Text(kind.empty() ? kEachDay : kind)});
        }
        add({NoteField::AlarmDay, NoteField::AlarmDayMonth});
    } else {
        changes.push_back({dateKey, record.alarmdate});
        changes.push_back({intervalKey, Text()});
        dropPattern(*this, changes);
    }
    add({NoteField::AlarmTime, NoteField::AlarmWeekday, NoteField::AlarmRepeatNumber,
         NoteField::AlarmRepeatEvery, NoteField::Backcolor, NoteField::Mute, NoteField::Weekday0,
         NoteField::Weekday1, NoteField::Weekday2, NoteField::Weekday3, NoteField::Weekday4,
         NoteField::Weekday5, NoteField::Weekday6});
    return changeSection(settings, noteSection(number), std::move(changes));
}

bool RegistryStore::set(int number, const NoteRecord& record, std::span<const NoteField> fields) const {
    const bool pattern = recursByPattern(record);
    std::vector<ValueChange> changes;
    bool fixedDate = false;
    for (const NoteField field : fields) {
        ValueChange change = changeOf(*this, record, field);
        if (field == NoteField::AlarmDate) {
            fixedDate = !pattern;
            if (pattern) change.text = Text(kPatternDate);
        }
        const bool patternDay = field == NoteField::AlarmDay || field == NoteField::AlarmDayMonth;
        if (patternDay && change.text->empty()) change.text.reset();
        changes.push_back(std::move(change));
    }
    if (fixedDate) {
        changes.push_back({keyOf(NoteField::Interval), Text()});
        dropPattern(*this, changes);
    }
    return changeSection(settings, noteSection(number), std::move(changes));
}

bool RegistryStore::copySection(int from, int to) const {
    const SectionResult section = settings.readSection(noteSection(from));
    if (section.status == IoStatus::Failed) return false;
    if (!settings.removeSection(noteSection(to))) return false;
    return section.values.empty() || settings.set(noteSection(to), section.values);
}

bool RegistryStore::removeNote(int number) const {
    return settings.removeSection(noteSection(number));
}

bool RegistryStore::removeBeyond(int count) const {
    bool done = true;
    for (const Text& section : settings.sections()) {
        if (numberOf(section) > count) done = settings.removeSection(section) && done;
    }
    return done;
}
