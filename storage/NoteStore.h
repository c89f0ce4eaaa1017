// The gateway: the rest of the program loads and stores notes here and never learns where they are kept.
// Every operation does all its writes, in an order such that a program that is killed half-way leaves each
// note either as it was or as it should become.
//
// The notes come from one store, which is settled at the start and stays in force until the program ends.
// After a switch the other one is kept, too: every change goes to both, so that either holds the whole desk,
// whatever the next start chooses.
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

/// What the stores are built on. Windows fills it in, or a test.
struct StoreParts {
    Settings settings;
    std::array<Text, kWeekdays> weekdayKeys;
    Files files;
    CodePage page;
};

/// What the user is asked or told while the store is settled. No function is null.
struct StartQuestions {
    /// Local files are left over although the registry was chosen: true deletes them. None: the program is
    /// ending, which is not an answer.
    std::function<std::optional<bool>()> deleteLocalFiles = [] { return false; };
    /// Notes could not be saved.
    std::function<void()> saveFailed = [] {};
    /// The settings or the files cannot be read now; the start ends and has changed no note.
    std::function<void()> cannotRead = [] {};
    /// Damaged files have been copied as they were found; `names` are those of the copies.
    std::function<void(const std::vector<Text>& names)> damaged = [](const std::vector<Text>&) {};
    /// Waits a moment (50 ms) before something is read again.
    std::function<void()> wait = [] {};
};

struct StartState {
    bool usable = true;  ///< false: the store cannot be used and must not be touched; the start ends
    bool busy = false;   ///< why: another session is using it, and the user has been told
    int Count = 1;       ///< notes to load, 1..50
};

enum class Switched {
    Done,
    Refused,  ///< nothing has changed; the user has been told why
};

class NoteStore {
public:
    NoteStore() = default;
    explicit NoteStore(const StoreParts& parts) { connect(parts); }
    /// Sets the stores up over what they are built on; `start` or `begin` then settles which is in force.
    void connect(const StoreParts& parts);

    /// Called when a body or a record could not be stored completely; shows the user the memo message. Never
    /// null.
    std::function<void()> saveFailed = [] {};
    /// Keeps copies in other sessions away from a store until `release`; false when one of them is using it.
    /// Never null, like the next two.
    std::function<bool(StoreKind)> claim = [](StoreKind) { return true; };
    std::function<void(StoreKind)> release = [](StoreKind) {};
    /// Tells the user that a copy in another session is using the store.
    std::function<void()> heldElsewhere = [] {};

    // --- The start (NoteStoreStart.cpp) -------------------------------------------------------------------
    /// Reads the settings and writes missing defaults back, settles the store in force and the number of
    /// notes, and copies registry notes into new local files once. When something cannot be read, nothing is
    /// concluded from that: the start ends and has changed no note.
    [[nodiscard]] StartState start(GlobalSettings& settings, const StartQuestions& questions);
    /// Makes a store the one in force as it is, without any of that. Returns the number of notes in it.
    int begin(StoreKind kind);
    /// The store in force.
    StoreKind kind() const { return inForce_; }

    // --- Notes --------------------------------------------------------------------------------------------
    /// Loads note `number` (1..50). When that fails after retries, `record` is empty and marked as
    /// unreadable, and the result is false.
    bool load(int number, NoteRecord& record, const GlobalSettings& settings);

    /// Takes over fields of a note as they are stored at this moment, even if another program has changed
    /// them; a missing size is 0. False, and `record` untouched, when they cannot be read.
    [[nodiscard]] bool refresh(int number, NoteRecord& record, std::span<const NoteField> fields);

    /// Stores the named fields of a note. When that fails, it tells the user and returns false; a later call
    /// tries again. Nothing of a note that could not be read is written, since the store holds another text;
    /// the caller tells the user.
    [[nodiscard]] bool set(int number, NoteRecord& record, std::span<const NoteField> fields);
    [[nodiscard]] bool set(int number, NoteRecord& record, std::initializer_list<NoteField> fields) {
        return set(number, record, std::span(fields.begin(), fields.size()));
    }

    /// Stores a new note at `number`, which becomes the highest in use, over whatever was there; then the
    /// count.
    [[nodiscard]] bool create(int number, NoteRecord& record);

    /// Takes note `number` out of the store. `remaining` are the notes after the removal in their order (note
    /// 1 first); they keep their contents at every instant, and are stored without gaps in the end. When the
    /// store refuses a step, it tells the user and returns false; the others are then loaded and stored as
    /// before.
    [[nodiscard]] bool remove(int number, NoteList remaining, const GlobalSettings& settings);

    /// Retries what was refused and belongs to no field of a note: removals, the number of notes, settings,
    /// drafts. `notes` are all notes.
    void settle(NoteList notes, const GlobalSettings& settings);

    /// Stores the number of notes, unless the notes themselves show it.
    [[nodiscard]] bool storeCount(int count);

    // --- What fits ----------------------------------------------------------------------------------------
    /// Whether a field can hold the whole text.
    bool fits(NoteField field, TextView text) const;

    // --- Drafts -------------------------------------------------------------------------------------------
    /// Stores the text in the open editor of note `number` in place of an earlier draft. It tries once,
    /// without waiting.
    void saveDraft(int number, bool title, const Text& text);
    /// The edit has ended. A draft that cannot be dropped now is dropped later, and is never used again.
    void dropDraft(int number);
    /// The drafts that an earlier run left, each once. The notes that they belong to, as loaded, have to take
    /// them over, and drop them once they are stored. Those of notes that are being `edited` wait until that
    /// has ended. Failed: there may be others, which cannot be read now; a later call finds them.
    FoundDrafts takeDrafts(NoteList notes, const std::set<int>& edited = {});
    /// Whether `takeDrafts` could not read all of them, or left some waiting.
    bool hasUnreadDrafts() const { return draftsUnread_; }

    // --- Settings -----------------------------------------------------------------------------------------
    /// Stores one setting; when it is refused, `settle` tries again.
    void storeSetting(Setting setting, const GlobalSettings& settings);
    /// Reads the default size of a new note again; when it cannot be read it stays as it is.
    void refreshDefaultSize(GlobalSettings& settings) const;

    // --- The choice of store (NoteStoreSwitch.cpp) --------------------------------------------------------
    /// Copies all notes to a store, makes it the user's choice for the next start, and keeps both stores in
    /// step until the program ends. `settings.UseRegistry` follows when the choice is stored. Refused, after
    /// telling the user, when a note cannot be read, a text would not fit, another session is using the store
    /// or it cannot be written: then the choice stays as it was.
    [[nodiscard]] Switched switchTo(StoreKind kind, NoteList notes, GlobalSettings& settings);

    /// As long as it exists, everything that the program does counts as one command, which waits at most `ms`
    /// altogether for files that other programs hold. Commands may be nested; the outermost counts.
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
    bool isKept(StoreKind kind) const;
    [[nodiscard]] bool write(int number, const std::function<Saved(Store&)>& save);
    void forget(int number);
    void moveDraft(Draft draft, int to);
    [[nodiscard]] bool settleStores();

    // NoteStoreStart.cpp
    [[nodiscard]] bool mayUse(StoreKind kind, bool say);
    void giveBack(StoreKind kind);
    [[nodiscard]] bool readSetting(SectionResult& section, GlobalSettings& settings,
                                   const StartQuestions& questions) const;
    [[nodiscard]] bool lookForFiles(bool& any) const;
    void deleteLocalFiles();
    void removeTemporaries(StoreKind kind);
    void forgetRegistry();
    [[nodiscard]] bool upgrade(const StartQuestions& questions);
    [[nodiscard]] bool importOnce(const SectionResult& section, StartState& state,
                                  const StartQuestions& questions);

    // NoteStoreSwitch.cpp
    [[nodiscard]] bool copyTo(StoreKind kind, NoteList notes, const GlobalSettings& settings);
    [[nodiscard]] bool storeChoice(StoreKind kind, GlobalSettings& settings);

    std::unique_ptr<FileStore> files_;
    std::unique_ptr<RegistryStore> registry_;
    StoreKind inForce_ = StoreKind::Files;
    std::vector<Store*> kept_;  ///< the stores that are currently kept, the one in force first
    std::set<Store*> behind_;   ///< stores that lack what a write that failed should have stored
    std::set<StoreKind> claimed_;
    std::map<int, Draft> drafts_;    ///< of the edits that are open
    std::set<std::uint32_t> taken_;  ///< marks of an earlier run's drafts that the notes have taken over
    std::map<Setting, Text> owedSettings_;
    bool registryVoid_ = false;  ///< its number of notes still has to go, because the files have them all
    bool filesApart_ = false;    ///< the files hold a note that is not on screen, as the copy was refused
    bool draftsUnread_ = false;
    bool droppedListStands_ = false;      ///< section "setting" lists drafts that were dropped
    std::vector<std::uint32_t> dropped_;  ///< marks of drafts that were dropped and may still be stored
    int commands_ = 0;
};
