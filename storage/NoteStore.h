// The gateway: the rest of the program loads and stores notes here and never learns which store is in force.
// While a switch of the store is pending, every write goes to the store in force and to the coming one.
#pragma once

#include <functional>
#include <initializer_list>
#include <span>
#include <vector>

#include "storage/DataFiles.h"
#include "storage/FileNotes.h"
#include "storage/GlobalSettings.h"
#include "storage/NotePlaces.h"
#include "storage/NoteRecord.h"
#include "storage/RegistryStore.h"

struct NoteStore {
    bool UseRegistry = false;  ///< the store in force during this run, settled at start-up
    RegistryStore registry;
    DataFiles files;
    DataHeader header;  ///< of the local files, as last read or written
    /// Called when a body or a record could not be kept whole; shows the user the memo message. Never null.
    std::function<void()> saveFailed = [] {};

    /// Loads note `number` (1..50). A record that is absent or all zero bytes comes as a fresh one of the
    /// default size (twips). Failed after retries: `record` is empty, marked read-only. Answers false then.
    bool load(int number, NoteRecord& record, const GlobalSettings& settings);

    /// Stores the named fields of a note. False, after telling the user, when it could not; a later call
    /// tries again. A read-only note is left alone.
    bool set(int number, NoteRecord& record, std::span<const NoteField> fields);
    bool set(int number, NoteRecord& record, std::initializer_list<NoteField> fields) {
        return set(number, record, std::span(fields.begin(), fields.size()));
    }

    /// Stores a new note at `number`, the highest then in use, over whatever stood there; then the count.
    bool create(int number, NoteRecord& record);

    /// Takes note `number` out of the store. `remaining` are the notes after the removal in their order
    /// (note 1 first); they keep their contents at every instant, and the store ends dense. False, after
    /// telling the user, when the store refused a step: then the others are loaded and stored as before.
    bool remove(int number, std::span<NoteRecord* const> remaining, const GlobalSettings& settings);

    /// Goes on with the removals that the store refused. `notes` are all there are.
    void finishRemovals(std::span<NoteRecord* const> notes, const GlobalSettings& settings);

    /// Registry only: takes up a removal that the last run did not live to end. Answers the number of notes
    /// that stay, out of the `count` that the registry says; `finishRemovals` does the rest once they are
    /// loaded.
    int resumeRemoval(int count);

    /// Registry only: stores "count"; the files keep theirs in the header.
    bool storeCount(int count);

    /// Copies all notes to the other store and, until the program ends, keeps both in step. False when a
    /// text would not fit (the user is told) or the copy failed; sections are kept then.
    bool switchToFiles(std::span<NoteRecord* const> notes);
    bool switchToRegistry(std::span<NoteRecord* const> notes, const GlobalSettings& settings);

    /// Copies the registry's notes (at most 50) into the local files, behind a first note that is not empty.
    /// Sets the header's count. True only when everything has been read back from the files.
    bool importRegistryNotes(int registryCount);

    bool switchPending = false;
    /// The number of notes that a failed creation left unwritten; the next save that works writes it. 0:
    /// none.
    int countPending = 0;

    NotePlaces sectionPlaces;  ///< of the notes in the registry
    NotePlaces recordPlaces;   ///< of the notes in KARDEL.DAT

private:
    /// Writes to the store in force, and to the coming one too; tells the user when it could not be kept
    /// whole.
    bool write(int number, const std::function<FileSave()>& toFiles, const std::function<bool()>& toRegistry);
    /// No start looks beyond the last place.
    bool hasPlace(int number) const;
    bool settleSections(std::span<NoteRecord* const> notes, const GlobalSettings& settings, bool useRegistry);
    bool settleRecords(std::span<NoteRecord* const> notes);
    bool loadFromRegistry(int number, NoteRecord& record, std::int32_t width, std::int32_t height) const;
    bool loadFromFiles(int number, NoteRecord& record, std::int32_t width, std::int32_t height) const;
    /// Writes the count that a failed creation still owes.
    void settleCount();
    bool returnToRegistry(std::span<NoteRecord* const> notes, const GlobalSettings& settings);
    bool copyToRegistry(std::span<NoteRecord* const> notes, const GlobalSettings& settings);
};
