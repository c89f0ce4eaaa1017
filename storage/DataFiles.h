// The three local files: KARDEL.HDR (one header record), KARDEL.DAT (one 215-byte record per note) and MEMO
// (one 1024-byte record per body). All numbers are little-endian, all texts are in the ANSI code page and
// padded with blanks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "resources/version.h"
#include "storage/Files.h"
#include "storage/NoteFields.h"
#include "storage/NoteRecord.h"
#include "storage/RegistryNotes.h"
#include "support/Text.h"

inline constexpr std::u16string_view kHeaderFile = u"KARDEL.HDR";
inline constexpr std::u16string_view kNoteFile = u"KARDEL.DAT";
inline constexpr std::u16string_view kMemoFile = u"MEMO";

/// All of them. The records come first: without them the others hold no note.
inline constexpr std::u16string_view kDataFiles[] = {kNoteFile, kHeaderFile, kMemoFile};

inline constexpr std::size_t kHeaderLength = 10;
inline constexpr std::size_t kRecordLength = 215;
inline constexpr std::size_t kMemoLength = 1024;
inline constexpr std::size_t kMemoNumberAt = 53;  ///< offset of the body's record number in a record

/// The running program's version as a header holds it. Older layouts are recognised by a smaller number, so a
/// program that called itself less than 1.25 would "upgrade" its own files at the next start.
inline constexpr auto kProgramVersion =
    static_cast<float>(KARDEL_VERSION_MAJOR + KARDEL_VERSION_MINOR / 100.0);
static_assert(kProgramVersion >= 1.25F);

struct DataHeader {
    std::int32_t count = 1;  ///< number of note records
    std::int16_t flag = 0;   ///< always stored as 0; the stored value is never used
    float version = kProgramVersion;
};

std::string encodeHeader(const DataHeader& header);
/// False unless `bytes` has all ten bytes of a header, which are not just zeros.
bool decodeHeader(std::string_view bytes, DataHeader& header);

struct EncodedRecord {
    std::string bytes;        ///< kRecordLength bytes
    bool lost = false;        ///< a text was cut or holds characters outside the code page
    bool unmappable = false;  ///< the latter
};
/// The bytes of a record. The body is not part of it.
EncodedRecord encodeRecord(const CodePage& page, const NoteRecord& record);
/// Reads as many fields as `bytes` has; what is missing reads as zero bytes. The body is not part of it.
NoteRecord decodeRecord(const CodePage& page, std::string_view bytes);

/// Puts one field of `record` into the bytes of a record; all others stay as they are. The body has no place
/// in it and is skipped.
void encodeFieldInto(const CodePage& page, const NoteRecord& record, NoteField field, EncodedRecord& into);

/// The number of the body's record, from a record's bytes.
std::int32_t memoNumberOf(std::string_view bytes);
void setMemoNumber(std::string& bytes, std::int32_t number);

/// A new record before any field is set: blank texts, MEMO number 1, the design colour.
void ClearNoteRecord(NoteRecord& record);

struct MemoResult {
    bool done = false;
    bool lost = false;              ///< the body was cut or holds characters outside the code page
    bool unmappable = false;        ///< the latter
    std::int32_t recordNumber = 0;  ///< the record that now holds the body
};

/// Record access to the files. No file stays open between calls.
struct DataFiles {
    Files files;
    CodePage page;

    /// Reads the header. If there is no file, `header` becomes a fresh one: in registry mode in memory only,
    /// with the flag -1; otherwise it is also written, and counts the records of KARDEL.DAT if that exists.
    /// Absent: there was none. Failed, or less than a whole header: `header` is untouched.
    [[nodiscard]] IoStatus ReadHeader(DataHeader& header, bool UseRegistry) const;
    /// Writes the header with the running program's version and the flag 0; on the disk when this returns.
    [[nodiscard]] bool WriteHeader(DataHeader& header) const;

    /// Record numbers begin at 1. A record beyond the end of the file, or of a missing file, reads as zero
    /// bytes with status Absent.
    IoStatus GetNoteRecord(int recordNumber, NoteRecord& record) const;
    /// `lost` says whether a text was cut or holds characters outside the code page.
    [[nodiscard]] bool PutNoteRecord(int recordNumber, const NoteRecord& record, bool* lost = nullptr) const;

    /// The same as bytes, always kRecordLength of them when read, for changes that leave everything else
    /// alone.
    IoStatus GetRecordBytes(int recordNumber, std::string& bytes) const;
    [[nodiscard]] bool PutRecordBytes(int recordNumber, std::string_view bytes) const;

    /// The body without trailing blanks. A number outside the file reads as "" with status Absent.
    IoStatus ReadMemo(std::int32_t recordNumber, Text& body) const;
    /// Writes a body padded or cut to 1024 bytes. A number below 1 or beyond the record after the last
    /// appends a record; the number used is in the result.
    [[nodiscard]] MemoResult WriteMemo(std::int32_t recordNumber, TextView body) const;

    /// Removes KARDEL.DAT and MEMO; the header stays.
    void DeleteDataFiles() const;

    /// Whole records in KARDEL.DAT (a short last one counts) and in MEMO.
    LengthResult noteRecords() const;
    LengthResult memoRecords() const;

    bool exists(TextView name) const;
};

/// Adds one note to the images of both files while they are built: the body goes to the end of `memoImage`,
/// its record number into the record, and the record to the end of `datImage`. True unless text was lost.
[[nodiscard]] bool AppendRecordPair(const CodePage& page, std::string& datImage, std::string& memoImage,
                                    NoteRecord record);

/// Fills a record (and its body, in `Nota`) from the note's section in the settings store. `slot` is 0..49. A
/// missing size is 0; the days of a pattern are kept only if its kind uses them. Failed: `record` is
/// untouched.
IoStatus CopyRegistryNoteToRecord(const RegistryNotes& registry, int slot, NoteRecord& record);
