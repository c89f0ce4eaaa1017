// Notes as sections "kardel-1" .. "kardel-50" of the settings store.
#pragma once

#include <array>
#include <span>

#include "storage/NoteFields.h"
#include "storage/Settings.h"

/// Section of note `number` (1..50).
Text noteSection(int number);

/// Whether a section holds a note (any number), so that stale ones are found too.
bool isNoteSection(TextView section);

struct RegistryStore {
    Settings settings;
    /// Keys of the seven weekday flags: "w." and the locale's short name of the day, Monday first.
    std::array<Text, kWeekdays> weekdayKeys;

    /// Name of the value that holds a field.
    Text keyOf(NoteField field) const;

    /// Fills `record` from the section of slot 0..49. A missing key takes its default, a missing section
    /// is an empty note of the default size (given in twips). Failed: `record` is untouched.
    IoStatus LoadNoteFromRegistry(int slot, NoteRecord& record, std::int32_t defaultWidth,
                                  std::int32_t defaultHeight) const;
    /// Writes the whole record into the section of note `number`, in the store's fixed order.
    bool SaveNoteToRegistry(int number, const NoteRecord& record) const;
    /// Writes single fields. A date that is no pattern also drops the pattern's own values.
    bool set(int number, const NoteRecord& record, std::span<const NoteField> fields) const;
    /// Copies a section value by value, for a note that could not be read.
    bool copySection(int from, int to) const;
    bool removeNote(int number) const;
    /// Removes every note section with a number above `count`.
    bool removeBeyond(int count) const;
};
