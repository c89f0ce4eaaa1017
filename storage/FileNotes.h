// The notes in the local files: a record each in KARDEL.DAT, which points to the body's record in MEMO. At
// every instant each record points to its own note's body, whatever is ended or refused half-way.
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

/// A record that holds nothing at all: the file ends before it, or only zero bytes stand there.
bool isZeroRecord(std::string_view bytes);

/// The MEMO numbers of all notes; empty when they cannot be read.
std::optional<std::vector<std::int32_t>> storedMemoNumbers(const DataFiles& data);

struct Saved {
    bool done = false;
    bool unmappable = false;  ///< some letters have no place in the code page
};

/// Writes fields of a note into record `number` (from 1). What the record holds beside them stays as it is,
/// byte for byte. `record.memo` follows.
[[nodiscard]] Saved setInFiles(const DataFiles& data, int number, NoteRecord& record,
                               std::span<const NoteField> fields);

/// Writes a note with a body of its own behind the others, as record `number`.
[[nodiscard]] Saved createInFiles(const DataFiles& data, int number, NoteRecord& record);

/// Brings KARDEL.DAT to the notes that remain, in one step: those that it still holds as they stand there,
/// any other one from memory. False when something is left to do; the notes are found through `places` all
/// the same.
[[nodiscard]] bool makeRecordsDense(const DataFiles& data, std::span<NoteRecord* const> notes,
                                    NotePlaces& places);

/// Leaves no record in MEMO that no note points to: the last one moves into a free place, then the file is
/// cut. At every instant each note points to its own body; what is left undone is done the next time.
void compactMemo(const DataFiles& data, std::span<NoteRecord* const> notes);
