// What a place that keeps notes can do. There are two: the registry and the local files. The gateway
// (storage/NoteStore) walks those that are kept at the moment; nobody else sees them.
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

/// The size in twips of a note that has none of its own.
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

    /// Loads note `number` (1..50). One that is not there, or holds nothing, comes as a fresh one of the
    /// default size. Failed: `record` is untouched.
    [[nodiscard]] virtual IoStatus load(int number, NoteRecord& record, DefaultSize size) const = 0;
    [[nodiscard]] virtual Saved set(int number, NoteRecord& record, std::span<const NoteField> fields) = 0;
    /// A new note at `number`, the highest then in use, over whatever stood there; then the count.
    [[nodiscard]] virtual Saved create(int number, NoteRecord& record) = 0;
    /// Note `number` goes; `remaining` keep their contents at every instant. False when the store refused a
    /// step: the notes are found and stored as before, and `finishRemovals` goes on with it.
    [[nodiscard]] virtual bool remove(int number, NoteList remaining, const GlobalSettings& settings) = 0;
    virtual void finishRemovals(NoteList notes, const GlobalSettings& settings) = 0;
    /// A removal is still to be finished.
    [[nodiscard]] virtual bool isUnfinished() const = 0;
    /// Makes these notes all that the store holds. Whole notes stand in it only when this returns true.
    [[nodiscard]] virtual bool replaceAll(NoteList notes, const GlobalSettings& settings) = 0;
    /// Stores the number of notes where the store keeps it apart from them.
    [[nodiscard]] virtual bool storeCount(int count) = 0;
    /// Writes what was refused before and does not belong to a note's fields: the count, and drafts. False
    /// when something is still owed.
    [[nodiscard]] virtual bool settle() = 0;
    /// No start looks beyond the last place.
    [[nodiscard]] virtual bool hasPlace(int number) const = 0;

    /// Bytes that a field has room for; none: any length.
    [[nodiscard]] virtual std::optional<std::size_t> limit(NoteField field) const = 0;
    /// Bytes that a text takes of them; none when it holds letters that the store has no code for.
    [[nodiscard]] virtual std::optional<std::size_t> sizeOf(TextView text) const = 0;

    /// Keeps what stands in the open editor of a note. One try.
    [[nodiscard]] virtual bool saveDraft(const Draft& draft) = 0;
    /// Drops the draft of a note. False when it may still be there; `settle` tries again.
    [[nodiscard]] virtual bool dropDraft(int number) = 0;
    /// The drafts of notes 1..`count`. Failed: they cannot be read now.
    [[nodiscard]] virtual FoundDrafts drafts(int count) = 0;
};
