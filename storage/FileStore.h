// The local files as a store: the notes, their number in the header, and their drafts in a separate file.
#pragma once

#include "storage/NotePlaces.h"
#include "storage/Store.h"

class FileStore final : public Store {
public:
    FileStore(const Files& files, const CodePage& page) : data_{files, page} {}

    /// Reads the header at a start; see DataFiles::ReadHeader. Failed, or shorter than a header: the number
    /// of notes is unknown.
    [[nodiscard]] IoStatus readHeader(bool useRegistry);
    /// The number of notes: the header's, but no more than there are records. At least 1. Failed: `count` is
    /// untouched.
    [[nodiscard]] IoStatus readCount(IoStatus headerRead, int& count);
    /// Creates the very first note if there is no KARDEL.DAT. False when it could not be written.
    [[nodiscard]] bool createFirst();
    /// Writes the header with the known count; when it is refused, it is written later.
    [[nodiscard]] bool writeHeader();
    /// Sets the number of notes, without writing it.
    void count(int notes) { header_.count = notes; }

    /// The files themselves.
    const DataFiles& data() const { return data_; }
    /// The header as it is known, which the disk may not have yet.
    DataHeader& header() { return header_; }

    [[nodiscard]] IoStatus load(int number, NoteRecord& record, DefaultSize size) const override;
    [[nodiscard]] Saved set(int number, NoteRecord& record, std::span<const NoteField> fields) override;
    [[nodiscard]] Saved create(int number, NoteRecord& record) override;
    [[nodiscard]] bool remove(int number, NoteList remaining, const GlobalSettings& settings) override;
    void finishRemovals(NoteList notes, const GlobalSettings& settings) override;
    bool isUnfinished() const override { return places_.unfinished; }
    [[nodiscard]] bool replaceAll(NoteList notes, const GlobalSettings& settings) override;
    [[nodiscard]] bool writeAll(NoteList notes, const GlobalSettings& settings) override;
    [[nodiscard]] bool storeCount(int count) override;
    [[nodiscard]] bool settle() override;
    bool hasPlace(int number) const override { return places_.of(number) <= kMaxNotes; }
    std::optional<std::size_t> limit(NoteField field) const override;
    std::optional<std::size_t> sizeOf(TextView text) const override;
    [[nodiscard]] bool saveDraft(const Draft& draft) override;
    [[nodiscard]] bool dropDraft(int number) override;
    [[nodiscard]] FoundDrafts drafts(int count) override;

private:
    [[nodiscard]] bool makeDense(NoteList notes);
    [[nodiscard]] bool readDrafts();
    [[nodiscard]] bool writeDrafts(Flush flush);

    DataFiles data_;
    DataHeader header_;
    NotePlaces places_;        ///< of the notes in KARDEL.DAT
    bool headerOwed_ = false;  ///< the header on the disk differs from `header_`
    std::vector<Draft> drafts_;
    bool draftsRead_ = false;        ///< `drafts_` has those of their file, too
    std::vector<int> removedSince_;  ///< numbers of the notes that went while their file could not be read
    bool draftsOwed_ = false;        ///< their file differs from `drafts_`
    bool flushNextDraft_ = true;
};
