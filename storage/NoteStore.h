// The gateway: the rest of the program loads and stores notes here and never learns where they are kept.
// Every operation does all of its writes, in an order in which a program that ends half-way leaves each note
// as it was or as it was to be.
//
// The notes come from one store, which is settled at the start and stays in force until the program ends.
// From a switch on the other one is kept, too: every change goes to both, so that either of them holds the
// desk whatever the next start chooses.
#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <vector>

#include "storage/FileStore.h"
#include "storage/RegistryStore.h"

/// What the stores stand on. Windows fills it in, or a test.
struct StoreParts {
    Settings settings;
    std::array<Text, kWeekdays> weekdayKeys;
    Files files;
    CodePage page;
};

/// What the user is asked or told while the store is settled. Never null.
struct StartQuestions {
    /// Local files are left over although the registry was chosen: true deletes them. None: the program is to
    /// end, which is no answer.
    std::function<std::optional<bool>()> deleteLocalFiles = [] { return false; };
    /// Notes could not be saved.
    std::function<void()> saveFailed = [] {};
    /// The settings or the files cannot be read now; the start ends and has written nothing.
    std::function<void()> cannotRead = [] {};
    /// Files that were damaged have been copied as they were found; `names` are those of the copies.
    std::function<void(const std::vector<Text>& names)> damaged = [](const std::vector<Text>&) {};
    /// Waits a moment (50 ms) before something is read once more.
    std::function<void()> wait = [] {};
};

struct StartState {
    bool usable = true;  ///< false: the store cannot be used and must not be touched; the start ends
    bool busy = false;   ///< the reason: another session works on it, and the user was told
    int Count = 1;       ///< notes to load, 1..50
};

enum class Switched {
    Done,
    Refused,  ///< nothing has changed; the user was told why
};

class NoteStore {
public:
    NoteStore() = default;
    explicit NoteStore(const StoreParts& parts) { connect(parts); }
    void connect(const StoreParts& parts);

    /// Called when a body or a record could not be kept whole; shows the user the memo message. Never null.
    std::function<void()> saveFailed = [] {};
    /// Keeps copies in other sessions off a store until `release`; false when one of them works on it. Never
    /// null, like the next two.
    std::function<bool(StoreKind)> claim = [](StoreKind) { return true; };
    std::function<void(StoreKind)> release = [](StoreKind) {};
    /// Tells the user that a copy in another session holds the store.
    std::function<void()> heldElsewhere = [] {};

    // --- The start (NoteStoreStart.cpp) -------------------------------------------------------------------
    /// Reads the settings with every default written back, settles the store in force and the number of
    /// notes, copies registry notes into new local files once. What cannot be read is no answer: the start
    /// then ends and has written nothing.
    [[nodiscard]] StartState start(GlobalSettings& settings, const StartQuestions& questions);
    /// Takes a store as the one in force as it stands, without any of that. Answers the number of notes in
    /// it.
    int begin(StoreKind kind);
    StoreKind kind() const { return inForce_; }

    // --- Notes --------------------------------------------------------------------------------------------
    /// Loads note `number` (1..50). Failed after retries: `record` is empty, marked read-only, and false.
    bool load(int number, NoteRecord& record, const GlobalSettings& settings);

    /// Takes over fields of a note as they are stored at this moment, also when another program put them
    /// there; a size that is missing is 0. False when they cannot be read; `record` is untouched then.
    [[nodiscard]] bool refresh(int number, NoteRecord& record, std::span<const NoteField> fields) const;

    /// Stores the named fields of a note. False when it could not, after telling the user; a later call tries
    /// again. A note that could not be read is not what stands in the store: nothing of it is written, and
    /// the caller says so.
    [[nodiscard]] bool set(int number, NoteRecord& record, std::span<const NoteField> fields);
    [[nodiscard]] bool set(int number, NoteRecord& record, std::initializer_list<NoteField> fields) {
        return set(number, record, std::span(fields.begin(), fields.size()));
    }

    /// Stores a new note at `number`, the highest then in use, over whatever stood there; then the count.
    [[nodiscard]] bool create(int number, NoteRecord& record);

    /// Takes note `number` out of the store. `remaining` are the notes after the removal in their order
    /// (note 1 first); they keep their contents at every instant, and the store ends dense. False, after
    /// telling the user, when the store refused a step: then the others are loaded and stored as before.
    [[nodiscard]] bool remove(int number, NoteList remaining, const GlobalSettings& settings);

    /// Goes on with what was refused and belongs to no field of a note: removals, the number of notes,
    /// settings, drafts. `notes` are all there are.
    void settle(NoteList notes, const GlobalSettings& settings);

    /// Stores the number of notes where the notes themselves do not show it.
    [[nodiscard]] bool storeCount(int count);

    // --- What fits ----------------------------------------------------------------------------------------
    /// Whether a text can be kept whole in a field.
    bool fits(NoteField field, TextView text) const;
    /// Characters that a field has room for at most; 0: any number.
    std::size_t limit(NoteField field) const;

    // --- Drafts -------------------------------------------------------------------------------------------
    /// Keeps what stands in the open editor of note `number`, in place of an earlier draft. One try, without
    /// waiting.
    void saveDraft(int number, bool title, const Text& text);
    /// The edit has ended. A draft that cannot be dropped now is dropped later, and never comes back.
    void dropDraft(int number);
    /// The drafts that an earlier run left, each once: the notes that they belong to, as they were loaded,
    /// are to take them over and to drop them when they are stored. Failed: not now.
    FoundDrafts takeDrafts(NoteList notes);

    // --- Settings -----------------------------------------------------------------------------------------
    /// Stores one setting; what is refused is tried again by `settle`.
    void storeSetting(Setting setting, const GlobalSettings& settings);
    /// Reads the default size of a new note anew; it stays when it cannot be read.
    void refreshDefaultSize(GlobalSettings& settings) const;

    // --- The choice of store (NoteStoreSwitch.cpp) --------------------------------------------------------
    /// Copies all notes to a store, makes it the user's choice for the next start, and keeps both stores in
    /// step until the program ends. `settings.UseRegistry` follows when the choice is stored. Refused, after
    /// telling the user, when a note cannot be read, a text would not be kept whole, another session holds
    /// the store or it cannot be written: then nothing is chosen.
    [[nodiscard]] Switched switchTo(StoreKind kind, NoteList notes, GlobalSettings& settings);

    /// While it lives, what the program does counts as one command, which waits at most `ms` in all for files
    /// that other programs hold. Commands may lie within each other; the outermost counts.
    class Command {
    public:
        static constexpr unsigned kUsual = 1000;
        explicit Command(NoteStore& store, unsigned ms = kUsual);
        ~Command();
        Command(const Command&) = delete;
        Command& operator=(const Command&) = delete;

    private:
        NoteStore& store_;
    };

private:
    friend class Command;

    Store& storeOf(StoreKind kind) const;
    void take(StoreKind kind);
    [[nodiscard]] bool write(int number, const std::function<Saved(Store&)>& save);
    void forget(int number);
    [[nodiscard]] bool settleStores();

    // NoteStoreStart.cpp
    [[nodiscard]] bool mayUse(StoreKind kind, bool say);
    void giveBack(StoreKind kind);
    [[nodiscard]] bool readSetting(SectionResult& section, GlobalSettings& settings,
                                   const StartQuestions& questions) const;
    [[nodiscard]] bool lookForFiles(bool& any) const;
    void deleteLocalFiles();
    void removeTemporaries(StoreKind kind);
    [[nodiscard]] bool upgrade(const StartQuestions& questions);
    [[nodiscard]] bool importOnce(const SectionResult& section, StartState& state,
                                  const StartQuestions& questions);

    // NoteStoreSwitch.cpp
    [[nodiscard]] bool copyTo(StoreKind kind, NoteList notes, const GlobalSettings& settings);
    [[nodiscard]] bool storeChoice(StoreKind kind, GlobalSettings& settings);

    std::unique_ptr<FileStore> files_;
    std::unique_ptr<RegistryStore> registry_;
    StoreKind inForce_ = StoreKind::Files;
    std::vector<Store*> kept_;  ///< the stores that are kept now, the one in force first
    std::set<Store*> behind_;   ///< a write of a note failed there: not all of it is what is on screen
    std::set<StoreKind> claimed_;
    std::map<int, Draft> drafts_;    ///< of the edits that are open
    std::set<std::uint32_t> taken_;  ///< marks of drafts of an earlier run that the notes have
    std::map<Setting, Text> owedSettings_;
    bool droppedListStands_ = false;      ///< section "setting" names drafts that were dropped
    std::vector<std::uint32_t> dropped_;  ///< marks of drafts that were dropped and may still be stored
    int commands_ = 0;
};
