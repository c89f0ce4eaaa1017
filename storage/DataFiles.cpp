#include "storage/DataFiles.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "support/Number.h"

namespace {

// Bytes are put together by hand, because records have odd offsets, no padding, and a byte order that does
// not depend on the machine.
template <class Unsigned>
void putNumber(std::string& bytes, std::size_t at, Unsigned number) {
    for (std::size_t i = 0; i < sizeof(number); ++i) {
        bytes[at + i] = static_cast<char>(static_cast<unsigned char>(number >> (8 * i)));
    }
}

template <class Unsigned>
Unsigned getNumber(std::string_view bytes, std::size_t at) {
    Unsigned number = 0;
    for (std::size_t i = 0; i < sizeof(number); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[at + i]);
        number = static_cast<Unsigned>(number | static_cast<Unsigned>(Unsigned{byte} << (8 * i)));
    }
    return number;
}

std::int16_t getInt16(std::string_view bytes, std::size_t at) {
    return static_cast<std::int16_t>(getNumber<std::uint16_t>(bytes, at));
}

std::int32_t getInt32(std::string_view bytes, std::size_t at) {
    return static_cast<std::int32_t>(getNumber<std::uint32_t>(bytes, at));
}

std::string bodyBytes(const CodePage& page, TextView body, MemoResult& result) {
    EncodedField field = encodeField(page, body, kMemoLength);
    result.unmappable = field.unmappable;
    result.lost = field.unmappable || field.cut;
    return std::move(field.bytes);
}

std::uint64_t offsetOf(std::int32_t recordNumber, std::size_t length) {
    return static_cast<std::uint64_t>(recordNumber - 1) * length;
}

}  // namespace

// --- Bytes ------------------------------------------------------------------------------------------------

std::string encodeHeader(const DataHeader& header) {
    static_assert(sizeof(header.version) == 4 && std::numeric_limits<float>::is_iec559);
    std::string bytes(kHeaderLength, '\0');
    putNumber(bytes, 0, static_cast<std::uint32_t>(header.count));
    // The two bytes of the flag are always stored as 0.
    putNumber(bytes, 6, std::bit_cast<std::uint32_t>(header.version));
    return bytes;
}

bool decodeHeader(std::string_view bytes, DataHeader& header) {
    if (bytes.size() < kHeaderLength) return false;
    // What a power cut may leave of a file that has just been made.
    if (bytes.find_first_not_of('\0') >= kHeaderLength) return false;
    header.count = getInt32(bytes, 0);
    header.flag = getInt16(bytes, 4);
    header.version = std::bit_cast<float>(getNumber<std::uint32_t>(bytes, 6));
    return true;
}

void encodeFieldInto(const CodePage& page, const NoteRecord& record, NoteField field, EncodedRecord& into) {
    const NoteFieldRow& row = rowOf(field);
    const Text stored = row.write(record);
    switch (row.kind) {
        case FieldKind::Words: {
            const EncodedField encoded = encodeField(page, stored, row.width);
            into.bytes.replace(row.offset, row.width, encoded.bytes);
            into.unmappable = into.unmappable || encoded.unmappable;
            into.lost = into.lost || encoded.unmappable || encoded.cut;
            break;
        }
        case FieldKind::Int32:
            putNumber(into.bytes, row.offset, static_cast<std::uint32_t>(leadingInt32(stored)));
            break;
        case FieldKind::Int16:
            putNumber(into.bytes, row.offset, static_cast<std::uint16_t>(leadingInt16(stored)));
            break;
        case FieldKind::Flag:
            putNumber(into.bytes, row.offset, static_cast<std::uint16_t>(ParseBool(stored) ? -1 : 0));
            break;
        case FieldKind::Body:
            break;
    }
}

EncodedRecord encodeRecord(const CodePage& page, const NoteRecord& record) {
    EncodedRecord encoded;
    encoded.bytes.assign(kRecordLength, '\0');
    for (const NoteFieldRow& row : noteFields())
        encodeFieldInto(page, record, row.field, encoded);
    setMemoNumber(encoded.bytes, record.memo);
    return encoded;
}

NoteRecord decodeRecord(const CodePage& page, std::string_view bytes) {
    std::string whole(bytes.substr(0, kRecordLength));
    whole.resize(kRecordLength, '\0');
    NoteRecord record;
    for (const NoteFieldRow& row : noteFields()) {
        switch (row.kind) {
            case FieldKind::Words:
                row.read(record, decodeField(page, std::string_view(whole).substr(row.offset, row.width)));
                break;
            case FieldKind::Int32:
                row.read(record, decimal(getInt32(whole, row.offset)));
                break;
            case FieldKind::Int16:
                row.read(record, decimal(getInt16(whole, row.offset)));
                break;
            case FieldKind::Flag:
                row.read(record, boolText(getInt16(whole, row.offset) != 0));
                break;
            case FieldKind::Body:
                break;
        }
    }
    const TextView kind = intervalKind(record.interval);
    if (!kind.empty()) record.interval = kind;
    record.memo = memoNumberOf(whole);
    return record;
}

std::int32_t memoNumberOf(std::string_view bytes) {
    return getInt32(bytes, kMemoNumberAt);
}

void setMemoNumber(std::string& bytes, std::int32_t number) {
    putNumber(bytes, kMemoNumberAt, static_cast<std::uint32_t>(number));
}

void ClearNoteRecord(NoteRecord& record) {
    record = NoteRecord();
    record.backcolor = kDesignColor;
    record.memo = 1;
}

// --- Header -----------------------------------------------------------------------------------------------

IoStatus DataFiles::ReadHeader(DataHeader& header, bool UseRegistry) const {
    const ReadResult read = files.read(kHeaderFile, 0, kHeaderLength);
    if (read.status != IoStatus::Absent) {
        const bool whole = read.status == IoStatus::Done && decodeHeader(read.bytes, header);
        return whole ? IoStatus::Done : IoStatus::Failed;
    }
    DataHeader fresh;
    if (UseRegistry) {
        fresh.flag = -1;
        header = fresh;
        return IoStatus::Absent;
    }
    const LengthResult notes = files.length(kNoteFile);
    // A header that counts too few would hide notes for good, so none is written on a guess.
    if (notes.status == IoStatus::Failed) return IoStatus::Failed;
    constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
    fresh.count = static_cast<std::int32_t>(std::clamp<std::uint64_t>(notes.bytes / kRecordLength, 1, kMost));
    header = fresh;
    // When this fails, the header is written with the next change of the number of notes.
    static_cast<void>(WriteHeader(header));
    return IoStatus::Absent;
}

bool DataFiles::WriteHeader(DataHeader& header) const {
    header.version = kProgramVersion;
    return files.write(kHeaderFile, 0, encodeHeader(header)) && files.flush(kHeaderFile);
}

// --- Records ----------------------------------------------------------------------------------------------

IoStatus DataFiles::GetRecordBytes(int recordNumber, std::string& bytes) const {
    bytes.assign(kRecordLength, '\0');
    if (recordNumber < 1) return IoStatus::Absent;
    ReadResult read = files.read(kNoteFile, offsetOf(recordNumber, kRecordLength), kRecordLength);
    if (read.status != IoStatus::Done) return read.status;
    if (read.bytes.empty()) return IoStatus::Absent;
    bytes = std::move(read.bytes);
    bytes.resize(kRecordLength, '\0');
    return IoStatus::Done;
}

bool DataFiles::PutRecordBytes(int recordNumber, std::string_view bytes) const {
    return recordNumber >= 1 && files.write(kNoteFile, offsetOf(recordNumber, kRecordLength), bytes);
}

IoStatus DataFiles::GetNoteRecord(int recordNumber, NoteRecord& record) const {
    std::string bytes;
    const IoStatus status = GetRecordBytes(recordNumber, bytes);
    if (status != IoStatus::Failed) record = decodeRecord(page, bytes);
    return status;
}

bool DataFiles::PutNoteRecord(int recordNumber, const NoteRecord& record, bool* lost) const {
    const EncodedRecord encoded = encodeRecord(page, record);
    if (lost != nullptr) *lost = encoded.lost;
    return PutRecordBytes(recordNumber, encoded.bytes);
}

// --- Bodies -----------------------------------------------------------------------------------------------

IoStatus DataFiles::ReadMemo(std::int32_t recordNumber, Text& body) const {
    body.clear();
    if (recordNumber < 1) return IoStatus::Absent;
    const ReadResult read = files.read(kMemoFile, offsetOf(recordNumber, kMemoLength), kMemoLength);
    if (read.status != IoStatus::Done) return read.status;
    if (read.bytes.empty()) return IoStatus::Absent;
    body = decodeField(page, read.bytes);
    return IoStatus::Done;
}

MemoResult DataFiles::WriteMemo(std::int32_t recordNumber, TextView body) const {
    MemoResult result;
    const LengthResult memos = memoRecords();
    if (memos.status == IoStatus::Failed) return result;
    const auto next = static_cast<std::int64_t>(memos.bytes) + 1;
    const std::int64_t number = recordNumber < 1 || recordNumber > next ? next : recordNumber;
    if (number > std::numeric_limits<std::int32_t>::max()) return result;
    result.recordNumber = static_cast<std::int32_t>(number);
    const std::string bytes = bodyBytes(page, body, result);
    result.done = files.write(kMemoFile, offsetOf(result.recordNumber, kMemoLength), bytes);
    return result;
}

// --- Files ------------------------------------------------------------------------------------------------

void DataFiles::DeleteDataFiles() const {
    static_cast<void>(files.remove(kNoteFile));
    static_cast<void>(files.remove(kMemoFile));
}

LengthResult DataFiles::noteRecords() const {
    LengthResult length = files.length(kNoteFile);
    length.bytes = (length.bytes + kRecordLength - 1) / kRecordLength;
    return length;
}

LengthResult DataFiles::memoRecords() const {
    LengthResult length = files.length(kMemoFile);
    length.bytes /= kMemoLength;
    return length;
}

bool DataFiles::exists(TextView name) const {
    return files.length(name).status != IoStatus::Absent;
}

// --- Copies between the stores ---------------------------------------------------------------------------

bool AppendRecordPair(const CodePage& page, std::string& datImage, std::string& memoImage,
                      NoteRecord record) {
    MemoResult body;
    const std::string bytes = bodyBytes(page, record.Nota, body);
    record.memo = static_cast<std::int32_t>(memoImage.size() / kMemoLength) + 1;
    const EncodedRecord encoded = encodeRecord(page, record);
    memoImage += bytes;
    datImage += encoded.bytes;
    return !body.lost && !encoded.lost;
}

IoStatus CopyRegistryNoteToRecord(const RegistryNotes& registry, int slot, NoteRecord& record) {
    NoteRecord copy;
    const IoStatus status = registry.LoadNoteFromRegistry(slot, copy, 0, 0);
    if (status == IoStatus::Failed) return status;
    if (!copy.backcolor) copy.backcolor = kDesignColor;
    if (copy.interval != kEachMonth) copy.alarmday.clear();
    if (copy.interval != kEachYear) copy.alarmdaymonth.clear();
    record = copy;
    return status;
}
