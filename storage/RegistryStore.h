// The registry as a store: each note has a section. Section "setting" has their number and, during a removal,
// the list of the sections that still hold notes.
#pragma once

#include <set>

#include "storage/NotePlaces.h"
#include "storage/RegistryNotes.h"
#include "storage/Store.h"

class RegistryStore final : public Store {
public:
    RegistryStore(const Settings& settings, const std::array<Text, kWeekdays>& weekdayKeys)
        : notes_{settings, weekdayKeys} {}

    /// Takes the number of notes (at least 1) from section "setting", which was just read, and resumes a
    /// removal that the last run left unfinished. Failed: `count` is untouched. Writes nothing.
    [[nodiscard]] IoStatus readCount(const SectionResult& setting, int& count);
    /// Removes a list of sections that belongs to no unfinished removal. When that is refused, it is tried
    /// again before the next count is stored.
    void dropStaleList();
    /// The same when the registry is not the store in force, where any list is void.
    void forgetList();
    /// Removes the count, after which the registry holds no notes.
    [[nodiscard]] bool removeCount();

    const RegistryNotes& notes() const { return notes_; }
    /// The section that holds note `number`.
    int placeOf(int number) const { return places_.of(number); }

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
    std::optional<std::size_t> limit(NoteField) const override { return std::nullopt; }
    std::optional<std::size_t> sizeOf(TextView text) const override { return text.size(); }
    [[nodiscard]] bool saveDraft(const Draft& draft) override;
    [[nodiscard]] bool dropDraft(int number) override;
    [[nodiscard]] FoundDrafts drafts(int count) override;

private:
    [[nodiscard]] bool makeDense(NoteList notes, const GlobalSettings& settings);
    [[nodiscard]] bool moveSections(NoteList notes);
    [[nodiscard]] bool replaceNotes(NoteList notes, bool keepDrafts);
    [[nodiscard]] bool clearOthers(int count);
    [[nodiscard]] bool writeList(const NotePlaces& known, int counted);
    [[nodiscard]] bool storePlaces(int count);
    [[nodiscard]] bool dropList();
    [[nodiscard]] bool writeSetting(const GlobalSettings& settings, int count);

    RegistryNotes notes_;
    NotePlaces places_;           ///< of the notes in the sections
    bool listStands_ = false;     ///< section "setting" holds a list of places, or may do so
    int countOwed_ = 0;           ///< a number of notes that could not be stored; 0: none
    std::set<int> draftsOwed_;    ///< sections whose draft could not be dropped
    std::set<int> draftsUnread_;  ///< sections whose draft could not be read
};
