// The notes in the local files: each has a record in KARDEL.DAT, which points to the body's record in MEMO.
// Each record points to its own note's body at every instant, whatever is interrupted or refused half-way.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "storage/DataFiles.h"
#include "storage/NoteFields.h"
#include "storage/NotePlaces.h"

/// Both files as they are when they hold certain notes and nothing else.
struct FileImages {
    std::string dat;
    std::string memo;
    bool lost = false;  ///< a text was cut or holds characters outside the code page
};
FileImages imagesOf(const CodePage& page, std::span<NoteRecord* const> notes);

/// Whether a record holds nothing at all: the file ends before it, or there are only zero bytes.
bool isZeroRecord(std::string_view bytes);

/// The MEMO numbers of all notes; empty when they cannot be read.
std::optional<std::vector<std::int32_t>> storedMemoNumbers(const DataFiles& data);

struct Saved {
    bool done = false;
    bool unmappable = false;  ///< some letters are not in the code page
};

/// Writes fields of a note into record `number` (from 1). Everything else in the record stays as it is, byte
/// for byte. `record.memo` is updated.
[[nodiscard]] Saved setInFiles(const DataFiles& data, int number, NoteRecord& record,
                               std::span<const NoteField> fields);

/// Writes a note as record `number`, with a body of its own after all others.
[[nodiscard]] Saved createInFiles(const DataFiles& data, int number, NoteRecord& record);

/// Reduces KARDEL.DAT to the remaining notes in one step: those that it still holds are taken from there, any
/// others from memory. False when something is left to do; the notes are still found through `places`.
[[nodiscard]] bool makeRecordsDense(const DataFiles& data, std::span<NoteRecord* const> notes,
                                    NotePlaces& places);

/// Removes the records of MEMO that no note points to: the last record moves into a free place, then the file
/// is cut. Each note points to its own body at every instant; what is left undone is done the next time.
void compactMemo(const DataFiles& data, std::span<NoteRecord* const> notes);
