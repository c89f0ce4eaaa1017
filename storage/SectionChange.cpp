#include "storage/SectionChange.h"

#include <algorithm>
#include <iterator>

#include "support/Number.h"

namespace {

constexpr TextView kPendingKey = u"pending";

/// A text with its length before it.
void append(Text& list, TextView text) {
    list += decimal(static_cast<std::int64_t>(text.size())) + u":";
    list += text;
}

/// Takes a text with its length off the front.
std::optional<Text> take(TextView& list) {
    const std::size_t colon = list.find(u':');
    if (colon == TextView::npos) return std::nullopt;
    const std::int32_t length = leadingInt32(list.substr(0, colon));
    list.remove_prefix(colon + 1);
    if (length < 0 || static_cast<std::size_t>(length) > list.size()) return std::nullopt;
    const Text text(list.substr(0, static_cast<std::size_t>(length)));
    list.remove_prefix(text.size());
    return text;
}

bool isKey(const ValueChange& change, TextView key) {
    return isSameName(change.key, key);
}

/// The earlier changes that the later ones do not override, then the later ones.
std::vector<ValueChange> merged(std::vector<ValueChange> earlier, std::vector<ValueChange> later) {
    std::erase_if(earlier, [&](const ValueChange& change) {
        return std::any_of(later.begin(), later.end(),
                           [&](const ValueChange& other) { return isKey(other, change.key); });
    });
    std::move(later.begin(), later.end(), std::back_inserter(earlier));
    return earlier;
}

void applyTo(SectionResult& section, const std::vector<ValueChange>& changes) {
    for (const ValueChange& change : changes) {
        std::erase_if(section.values, [&](const KeyText& value) { return isKey(change, value.first); });
        std::erase_if(section.unreadable, [&](const Text& key) { return isKey(change, key); });
        if (change.text) section.values.emplace_back(change.key, *change.text);
    }
}

}  // namespace

bool changeSection(const Settings& settings, TextView section, std::vector<ValueChange> changes) {
    const SettingResult left = settings.get(section, kPendingKey);
    if (left.status == IoStatus::Failed) return false;
    if (const auto earlier = parsePending(left.text)) changes = merged(*earlier, std::move(changes));
    const bool listed = changes.size() > 1;
    // First the list, then what it lists, in one opening of the section.
    std::vector<KeyText> written;
    if (listed) written.emplace_back(kPendingKey, pendingText(changes));
    for (const ValueChange& change : changes) {
        if (change.text) written.emplace_back(change.key, *change.text);
    }
    bool done = written.empty() || settings.set(section, written);
    for (const ValueChange& change : changes) {
        if (!change.text) done = dropSetting(settings, section, change.key) && done;
    }
    const bool pending = listed || left.status == IoStatus::Done;
    return done && (!pending || settings.removeValue(section, kPendingKey));
}

SectionResult readChangedSection(const Settings& settings, TextView section) {
    SectionResult result = settings.readSection(section);
    const SettingResult pending = valueOf(result, kPendingKey);
    if (pending.status == IoStatus::Failed) return {};
    if (pending.status == IoStatus::Absent) return result;
    std::erase_if(result.values, [](const KeyText& value) { return isPendingKey(value.first); });
    if (const auto changes = parsePending(pending.text)) applyTo(result, *changes);
    // Refused, it stays pending until the next change.
    static_cast<void>(changeSection(settings, section, {}));
    return result;
}

bool isPendingKey(TextView key) {
    return isSameName(key, kPendingKey);
}

Text pendingText(std::span<const ValueChange> changes) {
    Text list;
    for (const ValueChange& change : changes) {
        append(list, change.key);
        list += change.text ? u'=' : u'-';
        append(list, change.text.value_or(Text()));
    }
    return list;
}

std::optional<std::vector<ValueChange>> parsePending(TextView text) {
    std::vector<ValueChange> changes;
    while (!text.empty()) {
        ValueChange change;
        const std::optional<Text> key = take(text);
        if (!key || key->empty() || text.empty()) return std::nullopt;
        const char16_t kind = text.front();
        text.remove_prefix(1);
        std::optional<Text> value = take(text);
        if (!value || (kind != u'=' && kind != u'-')) return std::nullopt;
        change.key = *key;
        if (kind == u'=') change.text = std::move(value);
        changes.push_back(std::move(change));
    }
    return changes;
}
