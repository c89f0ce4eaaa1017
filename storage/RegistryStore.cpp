#include "storage/RegistryStore.h"

#include <algorithm>
#include <vector>

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

KeyText valueOf(const RegistryStore& store, const NoteRecord& record, NoteField field) {
    return {store.keyOf(field), rowOf(field).write(record)};
}

bool dropPatternValues(const Settings& settings, TextView section) {
    const bool day = dropSetting(settings, section, rowOf(NoteField::AlarmDay).key);
    const bool dayMonth = dropSetting(settings, section, rowOf(NoteField::AlarmDayMonth).key);
    return day && dayMonth;
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
    const SectionResult section = settings.readSection(noteSection(slot + 1));
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
    const Text section = noteSection(number);
    std::vector<KeyText> values;
    const auto add = [&](std::initializer_list<NoteField> fields) {
        for (const NoteField field : fields)
            values.push_back(valueOf(*this, record, field));
    };
    add({NoteField::X, NoteField::Y, NoteField::Width, NoteField::Height, NoteField::Nota, NoteField::Topmost,
         NoteField::Titolo, NoteField::Iconized, NoteField::Closed});
    const Text dateKey = keyOf(NoteField::AlarmDate);
    const Text intervalKey = keyOf(NoteField::Interval);
    bool done = true;
    if (recursByPattern(record)) {
        values.emplace_back(dateKey, kPatternDate);
        const TextView kind = intervalKind(record.interval);
        // A weekly rule has no kind of its own: what stands in its section stays.
        if (!kind.empty() || record.alarmweekday < 1) {
            values.emplace_back(intervalKey, kind.empty() ? kEachDay : kind);
        }
        add({NoteField::AlarmDay, NoteField::AlarmDayMonth});
    } else {
        values.emplace_back(dateKey, record.alarmdate);
        values.emplace_back(intervalKey, Text());
        done = settings.set(section, values);
        values.clear();
        done = dropPatternValues(settings, section) && done;
    }
    add({NoteField::AlarmTime, NoteField::AlarmWeekday, NoteField::AlarmRepeatNumber,
         NoteField::AlarmRepeatEvery, NoteField::Backcolor, NoteField::Mute, NoteField::Weekday0,
         NoteField::Weekday1, NoteField::Weekday2, NoteField::Weekday3, NoteField::Weekday4,
         NoteField::Weekday5, NoteField::Weekday6});
    return settings.set(section, values) && done;
}

bool RegistryStore::set(int number, const NoteRecord& record, std::span<const NoteField> fields) const {
    const Text section = noteSection(number);
    const bool pattern = recursByPattern(record);
    std::vector<KeyText> values;
    bool fixedDate = false;
    bool done = true;
    for (const NoteField field : fields) {
        KeyText value = valueOf(*this, record, field);
        if (field == NoteField::AlarmDate) {
            fixedDate = !pattern;
            if (pattern) value.second = kPatternDate;
        }
        const bool patternDay = field == NoteField::AlarmDay || field == NoteField::AlarmDayMonth;
        if (patternDay && value.second.empty()) {
            done = dropSetting(settings, section, value.first) && done;
            continue;
        }
        values.push_back(std::move(value));
    }
    if (fixedDate) values.emplace_back(keyOf(NoteField::Interval), Text());
    if (!values.empty()) done = settings.set(section, values) && done;
    if (fixedDate) done = dropPatternValues(settings, section) && done;
    return done;
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
