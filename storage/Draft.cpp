#include "storage/Draft.h"

#include <algorithm>

#include "support/Number.h"

namespace {

// Kind of file and number of entries; for each entry the note number, the editor, the mark of the stored
// note, the number of UTF-16 units, and the units; at the end a checksum of everything. Numbers have 4 bytes,
// little-endian.
constexpr std::string_view kKind = "KTM2";
/// The same with one entry and no number of them, from when all notes shared one draft.
constexpr std::string_view kSingleKind = "KTMP";
constexpr std::size_t kNumberBytes = 4;

constexpr char16_t kTitleEditor = u't';
constexpr char16_t kBodyEditor = u'b';

/// 32-bit FNV-1a.
class Hash {
public:
    void add(unsigned value) { hash_ = (hash_ ^ value) * 16777619U; }
    void add(TextView text) {
        for (const char16_t c : text)
            add(unsigned{c});
        add(0x10000U);  // occurs in no text, so it separates two texts
    }
    std::uint32_t value() const { return hash_; }

private:
    std::uint32_t hash_ = 2166136261U;
};

std::uint32_t checkOf(std::string_view bytes) {
    Hash hash;
    for (const char byte : bytes)
        hash.add(static_cast<unsigned char>(byte));
    return hash.value();
}

void put(std::string& bytes, std::uint32_t value) {
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFF);
}

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = kNumberBytes; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

/// Takes a number off the front; none when there are no bytes left.
std::optional<std::uint32_t> takeNumber(std::string_view& bytes) {
    if (bytes.size() < kNumberBytes) return std::nullopt;
    const std::uint32_t number = numberAt(bytes, 0);
    bytes.remove_prefix(kNumberBytes);
    return number;
}

std::optional<Draft> takeDraft(std::string_view& bytes) {
    const auto number = takeNumber(bytes);
    const auto editor = takeNumber(bytes);
    const auto stored = takeNumber(bytes);
    const auto units = takeNumber(bytes);
    if (!units || *number < 1 || *number > kMaxNotes || *editor > 1) return std::nullopt;
    if (*units > bytes.size() / 2) return std::nullopt;
    Draft draft{static_cast<int>(*number), *editor == 1, Text(*units, u'\0'), *stored};
    for (std::size_t i = 0; i < *units; ++i) {
        const auto low = static_cast<unsigned char>(bytes[2 * i]);
        const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
        draft.text[i] = static_cast<char16_t>(high << 8 | low);
    }
    bytes.remove_prefix(std::size_t{2} * *units);
    return draft;
}

}  // namespace

std::uint32_t storedMark(const NoteRecord& stored) {
    Hash hash;
    // The files do not keep blanks at the end of a text, the registry does.
    hash.add(withoutTrailingBlanks(stored.Titolo));
    hash.add(withoutTrailingBlanks(stored.Nota));
    return hash.value();
}

std::uint32_t draftMark(const Draft& draft) {
    Hash hash;
    hash.add(draft.title ? 1U : 0U);
    hash.add(draft.stored);
    hash.add(draft.text);
    return hash.value();
}

int noteOf(const Draft& draft, std::span<const std::uint32_t> marks) {
    for (int number = std::min(draft.number, static_cast<int>(marks.size())); number >= 1; --number) {
        if (marks[static_cast<std::size_t>(number - 1)] == draft.stored) return number;
    }
    return 0;
}

std::string encodeDrafts(std::span<const Draft> drafts) {
    std::string bytes(kKind);
    put(bytes, static_cast<std::uint32_t>(drafts.size()));
    for (const Draft& draft : drafts) {
        put(bytes, static_cast<std::uint32_t>(draft.number));
        put(bytes, draft.title ? 1 : 0);
        put(bytes, draft.stored);
        put(bytes, static_cast<std::uint32_t>(draft.text.size()));
        for (const char16_t c : draft.text) {
            bytes += static_cast<char>(c & 0xFF);
            bytes += static_cast<char>(c >> 8);
        }
    }
    put(bytes, checkOf(bytes));
    return bytes;
}

std::vector<Draft> decodeDrafts(std::string_view bytes) {
    const bool single = bytes.starts_with(kSingleKind);
    if (bytes.size() < kKind.size() + kNumberBytes || !(single || bytes.starts_with(kKind))) return {};
    const std::size_t checkAt = bytes.size() - kNumberBytes;
    if (numberAt(bytes, checkAt) != checkOf(bytes.substr(0, checkAt))) return {};
    bytes = bytes.substr(kKind.size(), checkAt - kKind.size());
    const auto count = single ? std::optional<std::uint32_t>(1) : takeNumber(bytes);
    if (!count || *count > kMaxNotes) return {};
    std::vector<Draft> drafts;
    for (std::uint32_t i = 0; i < *count; ++i) {
        std::optional<Draft> draft = takeDraft(bytes);
        if (!draft) return {};
        drafts.push_back(std::move(*draft));
    }
    return bytes.empty() ? drafts : std::vector<Draft>();
}

Text draftText(const Draft& draft) {
    Text text(1, draft.title ? kTitleEditor : kBodyEditor);
    text += decimal(draft.stored) + u" ";
    text += draft.text;
    return text;
}

std::optional<Draft> parseDraft(TextView text, int number) {
    const std::size_t blank = text.find(u' ');
    if (blank == TextView::npos || blank < 2) return std::nullopt;
    if (text.front() != kTitleEditor && text.front() != kBodyEditor) return std::nullopt;
    const TextView mark = text.substr(1, blank - 1);
    std::uint64_t stored = 0;
    for (const char16_t digit : mark) {
        if (digit < u'0' || digit > u'9') return std::nullopt;
        stored = stored * 10 + (digit - u'0');
        if (stored > 0xFFFFFFFFU) return std::nullopt;
    }
    return Draft{number, text.front() == kTitleEditor, Text(text.substr(blank + 1)),
                 static_cast<std::uint32_t>(stored)};
}
