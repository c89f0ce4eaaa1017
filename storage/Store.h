// A place that keeps notes: the registry or the local files. The gateway (storage/NoteStore) uses those that
// are currently kept; nothing else sees them.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "storage/Draft.h"
#include "storage/FileNotes.h"
#include "storage/GlobalSettings.h"
#include "storage/NoteRecord.h"

enum class StoreKind : unsigned char { Files, Registry };

/// The size, in twips, of a note without one of its own.
struct DefaultSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// All notes of the program in their order, note 1 first.
using NoteList = std::span<NoteRecord* const>;

class Store {
public:
    Store() = default;
    virtual ~Store() = default;
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    /// Loads note `number` (1..50). A note that is missing or empty is loaded as a fresh one of the default
    /// size. Failed: `record` is untouched.
    [[nodiscard]] virtual IoStatus load(int number, NoteRecord& record, DefaultSize size) const = 0;
    [[nodiscard]] virtual Saved set(int number, NoteRecord& record, std::span<const NoteField> fields) = 0;
    /// Stores a new note at `number`, which becomes the highest in use, over whatever was there; then the
    /// count.
    [[nodiscard]] virtual Saved create(int number, NoteRecord& record) = 0;
    /// Removes note `number`; `remaining` keep their contents at every instant. False when the store refused
    /// a step: the notes are still found and stored, and `finishRemovals` goes on with the removal.
    [[nodiscard]] virtual bool remove(int number, NoteList remaining, const GlobalSettings& settings) = 0;
    virtual void finishRemovals(NoteList notes, const GlobalSettings& settings) = 0;
    /// Whether a removal still has to be finished.
    [[nodiscard]] virtual bool isUnfinished() const = 0;
    /// Makes these notes the only ones in a store that holds none of them. They are only complete there when
    /// this returns true.
    [[nodiscard]] virtual bool replaceAll(NoteList notes, const GlobalSettings& settings) = 0;
    /// Writes each note over itself in a store that is kept, and may be the only one that holds them all:
    /// nothing is removed first, and each note is whole at every instant. Refused, and nothing written, when
    /// a text does not fit.
    [[nodiscard]] virtual bool writeAll(NoteList notes, const GlobalSettings& settings) = 0;
    /// Stores the number of notes, if the store keeps it apart from them.
    [[nodiscard]] virtual bool storeCount(int count) = 0;
    /// Retries what was refused before and does not belong to a note's fields: the count, and drafts. False
    /// when something is still refused.
    [[nodiscard]] virtual bool settle() = 0;
    /// Whether note `number` would have a place that a start reads.
    [[nodiscard]] virtual bool hasPlace(int number) const = 0;

    /// The bytes that a field has room for; none: any length.
    [[nodiscard]] virtual std::optional<std::size_t> limit(NoteField field) const = 0;
    /// The bytes of these that a text takes; none when it has letters that the store cannot hold.
    [[nodiscard]] virtual std::optional<std::size_t> sizeOf(TextView text) const = 0;

    /// Stores the text in the open editor of a note. It tries once.
    [[nodiscard]] virtual bool saveDraft(const Draft& draft) = 0;
    /// Drops the draft of a note. False when it may still be there; `settle` tries again.
    [[nodiscard]] virtual bool dropDraft(int number) = 0;
    /// The drafts of notes 1..`count`. Failed: they cannot be read now.
    [[nodiscard]] virtual FoundDrafts drafts(int count) = 0;
};
