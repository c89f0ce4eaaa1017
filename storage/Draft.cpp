#include "storage/Draft.h"

#include <array>

namespace {

// Kind of file, note number, editor, mark of the stored note, number of UTF-16 units, the units; last a check
// over all of it. Numbers of 4 bytes, little-endian.
constexpr std::string_view kKind = "KTMP";
constexpr std::size_t kNumberBytes = 4;
constexpr std::size_t kTextAt = kKind.size() + 4 * kNumberBytes;
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

/// 32-bit FNV-1a.
class Hash {
public:
    void add(unsigned value) { hash_ = (hash_ ^ value) * 16777619U; }
    void add(TextView text) {
        for (const char16_t c : text)
            add(unsigned{c});
        add(0x10000U);  // no text has it: where one ends and the next begins
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

}  // namespace

std::uint32_t storedMark(const NoteRecord& stored) {
    Hash hash;
    hash.add(stored.Titolo);
    hash.add(stored.Nota);
    return hash.value();
}

std::string encodeDraft(const Draft& draft) {
    std::string bytes(kKind);
    put(bytes, static_cast<std::uint32_t>(draft.number));
    put(bytes, draft.title ? 1 : 0);
    put(bytes, draft.stored);
    put(bytes, static_cast<std::uint32_t>(draft.text.size()));
    for (const char16_t c : draft.text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    put(bytes, checkOf(bytes));
    return bytes;
}

std::optional<Draft> decodeDraft(std::string_view bytes) {
    if (bytes.size() < kTextAt + kNumberBytes || !bytes.starts_with(kKind)) return std::nullopt;
    const std::size_t checkAt = bytes.size() - kNumberBytes;
    std::array<std::uint32_t, 4> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = numberAt(bytes, kKind.size() + i * kNumberBytes);
    const auto [number, editor, stored, units] = numbers;
    const bool whole = checkAt - kTextAt == std::size_t{2} * units &&
                       numberAt(bytes, checkAt) == checkOf(bytes.substr(0, checkAt));
    if (!whole || number < 1 || number > kMaxNotes || editor > 1) return std::nullopt;
    Draft draft{static_cast<int>(number), editor == 1, Text(units, u'\0'), stored};
    for (std::size_t i = 0; i < units; ++i) {
        const auto low = static_cast<unsigned char>(bytes[kTextAt + 2 * i]);
        const auto high = static_cast<unsigned char>(bytes[kTextAt + 2 * i + 1]);
        draft.text[i] = static_cast<char16_t>(high << 8 | low);
    }
    return draft;
}

bool writeDraft(const Files& files, const Draft& draft) {
    return files.replace(kDraftFile, encodeDraft(draft));
}

FoundDraft readDraft(const Files& files) {
    const ReadResult read = files.read(kDraftFile, 0, kMostBytes);
    if (read.status != IoStatus::Done) return {read.status, {}};
    return {IoStatus::Done, decodeDraft(read.bytes)};
}

void removeDraft(const Files& files) {
    static_cast<void>(files.remove(kDraftFile));
}
