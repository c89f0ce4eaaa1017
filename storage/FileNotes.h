// The notes in the local files: a record each in KARDEL.DAT, which points to the body's record in MEMO. At
// every instant each record points to its own note's body, whatever is ended or refused half-way.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "storage/DataFiles.h"
#include "storage/NoteFields.h"
#include "storage/NotePlaces.h"

/// A record that holds nothing at all: the file ends before it, or only zero bytes stand there.
bool isZeroRecord(std::string_view bytes);

/// The note with its rule as both stores keep it: "*" for a pattern, and no pattern beside a fixed date.
NoteRecord withStoredRule(NoteRecord record);

/// The MEMO numbers of all notes; empty when they cannot be read.
std::optional<std::vector<std::int32_t>> storedMemoNumbers(const DataFiles& data);

struct FileSave {
    bool done = false;
    bool unmappable = false;  ///< some letters have no place in the code page
};

/// Writes fields of a note into record `number` (from 1). What the record holds beside them stays as it is,
/// byte for byte. `record.memo` follows.
FileSave setInFiles(const DataFiles& data, int number, NoteRecord& record, std::span<const NoteField> fields);

/// Writes a note with a body of its own behind the others, as record `number`, and the header last.
FileSave createInFiles(const DataFiles& data, int number, NoteRecord& record, DataHeader& header);

/// Brings KARDEL.DAT to the notes that remain, in one step, then the header and the bodies. False when
/// something is left to do; the notes are found through `places` all the same.
bool makeRecordsDense(const DataFiles& data, std::span<NoteRecord* const> notes, NotePlaces& places,
                      DataHeader& header);
