// Notes as sections "kardel-1" .. "kardel-50" of the settings store, one per note, read and written whole or
// field by field.
#pragma once

#include <array>
#include <span>

#include "storage/NoteFields.h"
#include "storage/Settings.h"

/// Section of note `number` (1..50).
Text noteSection(int number);

/// Whether a section is that of a note, of any number, so that stale ones are found, too.
bool isNoteSection(TextView section);

/// Name of the value in a note's section that holds the text of its open editor.
inline constexpr TextView kDraftKey = u"draft";

struct RegistryNotes {
    Settings settings;
    /// Keys of the seven weekday flags: "w." and the locale's short name of the day, Monday first.
    std::array<Text, kWeekdays> weekdayKeys;

    /// Name of the value that holds a field.
    Text keyOf(NoteField field) const;

    /// Fills `record` from the section of slot 0..49. A missing key takes its default, a missing section
    /// is an empty note of the default size (given in twips). Failed, also when a field is there but cannot
    /// be read: `record` is untouched.
    [[nodiscard]] IoStatus LoadNoteFromRegistry(int slot, NoteRecord& record, std::int32_t defaultWidth,
                                                std::int32_t defaultHeight) const;
    /// Writes the whole record into the section of note `number`, in the store's fixed order.
    [[nodiscard]] bool SaveNoteToRegistry(int number, const NoteRecord& record) const;
    /// The same for a section that may hold anything: only the record is left in it, and with `keepDraft` the
    /// draft of an open edit.
    [[nodiscard]] bool replaceNote(int number, const NoteRecord& record, bool keepDraft) const;
    /// Writes single fields. A date that is not a pattern also removes the pattern's values.
    [[nodiscard]] bool set(int number, const NoteRecord& record, std::span<const NoteField> fields) const;
    /// Moves the note of section `from`, and `withDraft` the draft of an open edit, to section `to`, whose
    /// own note goes.
    [[nodiscard]] bool moveNote(int from, int to, const NoteRecord& record, bool withDraft) const;
    /// Copies a section value by value, for a note that could not be read.
    [[nodiscard]] bool copySection(int from, int to, bool withDraft) const;
    /// Removes the section of a note.
    [[nodiscard]] bool removeNote(int number) const;
    /// Removes every note section with a number above `count`.
    [[nodiscard]] bool removeBeyond(int count) const;
};
