// A whole desk inside the test's own process: the real collection, notes and hidden tray window, over stores
// in memory and with a clock that stands still until the test moves it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <vector>

#include "core/basPost.h"
#include "tests/storage/Samples.h"
#include "tests/support/StoreName.h"
#include "tests/window/TypedKeys.h"

struct TestNotes {
    MemoryFiles folder;
    MemorySettings registry;
    Now clock{instantOf({2026, 6, 15}, {12, 0, 0}), 0};  // a Monday
    std::int64_t set = 0;                                ///< seconds that the clock was set by
    int sounds = 0;                                      ///< how often the alarm sound began
    int silences = 0;                                    ///< how often it was stopped
    std::unique_ptr<basPost> desk = std::make_unique<basPost>();

    explicit TestNotes(bool useRegistry, std::vector<NoteRecord> notes, const GlobalSettings& settings = {}) {
        registerNoteClasses();
        registerDialogClasses();
        static_cast<void>(prepare(useRegistry, settings));
        for (std::size_t i = 0; i < notes.size(); ++i) {
            EXPECT_TRUE(desk->store.create(static_cast<int>(i) + 1, notes[i]));
        }
        EXPECT_TRUE(desk->createTray());
        open(static_cast<int>(notes.size()));
    }
    ~TestNotes() { desk->Teardown(); }
    TestNotes(const TestNotes&) = delete;
    TestNotes& operator=(const TestNotes&) = delete;

    /// Ends the program without a warning and starts a new one over the same stores.
    void killAndRestart() { open(killAndWait()); }

    /// The same, but the new one has got no further than its tray window. Returns how many notes it would
    /// load.
    int killAndWait() {
        const bool useRegistry = desk->store.kind() == StoreKind::Registry;
        const GlobalSettings settings = desk->settings;
        {
            const std::map<Text, std::string> files = folder.content;
            const std::vector<MemorySettings::Section> sections = registry.content;
            desk->Teardown();
            folder.content = files;
            registry.content = sections;
        }
        desk = std::make_unique<basPost>();
        const int count = prepare(useRegistry, settings);
        EXPECT_TRUE(desk->createTray());
        return count;
    }

    /// Sets the clock; no time passes.
    void setClock(Instant to) {
        set += to.seconds - clock.at.seconds;
        clock.at = to;
    }

    fpost& note(int number) { return *desk->Notes[static_cast<std::size_t>(number - 1)]; }

    /// What a start would now read for a note.
    NoteRecord stored(int number) {
        NoteRecord record;
        desk->store.load(number, record, desk->settings);
        return record;
    }

private:
    /// Returns the number of notes that the store holds.
    int prepare(bool useRegistry, const GlobalSettings& settings) {
        desk->look = loadNoteLook();
        desk->settings = settings;
        desk->settings.UseRegistry = useRegistry;
        desk->store.connect({registry.settings(), englishWeekdayKeys(), folder.files(), westernPage()});
        desk->host.now = [this] { return clock; };
        desk->host.uptime = [this] {
            return static_cast<std::uint64_t>((clock.at.seconds - set) * 1000 + clock.ms);
        };
        desk->host.startSound = [this] { ++sounds; };
        desk->host.stopSound = [this] { ++silences; };
        return desk->store.begin(useRegistry ? StoreKind::Registry : StoreKind::Files);
    }
    void open(int count) {
        EXPECT_TRUE(desk->LoadNotes(count));
        pumpPending();
    }
};

/// Refuses every change of both stores as long as it exists.
class FullDisk {
public:
    explicit FullDisk(TestNotes& desk)
        : desk_(desk), files_(desk.folder.changes), registry_(desk.registry.changes) {
        const auto refusing = std::make_shared<Changes>();
        refusing->allFail = true;
        desk_.folder.changes = refusing;
        desk_.registry.changes = refusing;
    }
    ~FullDisk() {
        desk_.folder.changes = files_;
        desk_.registry.changes = registry_;
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    TestNotes& desk_;
    SharedChanges files_;
    SharedChanges registry_;
};

/// Makes note 1 unreadable in either store.
inline void lockStores(TestNotes& desk) {
    desk.folder.locked.insert(Text(kNoteFile));
    desk.registry.locked.insert(u"kardel-1");
}

/// A note of ordinary size, at a place in twips.
inline NoteRecord plainNote(TextView title, int x = 1500, int y = 1500) {
    NoteRecord note;
    note.Titolo = title;
    note.Nota = u"body of " + Text(title);
    note.backcolor = kDesignColor;
    note.x = x;
    note.y = y;
    note.width = 3000;
    note.height = 2250;
    return note;
}

/// A note that is due once, five seconds after the desk's start.
inline NoteRecord armed(TextView title) {
    NoteRecord note = plainNote(title);
    note.alarmdate = u"15/06/2026";
    note.alarmtime = u"12:00:05";
    return note;
}

inline NoteRecord with(NoteRecord note, bool NoteRecord::*flag) {
    note.*flag = true;
    return note;
}

inline NoteRecord iconizedNote(TextView title) {
    NoteRecord note = plainNote(title);
    note.iconized = true;
    return note;
}

inline RECT rectOf(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

inline int heightOf(HWND window) {
    return static_cast<int>(rectOf(window).bottom - rectOf(window).top);
}

/// Whether one window lies above another.
inline bool isAbove(HWND upper, HWND lower) {
    for (HWND at = GetWindow(lower, GW_HWNDPREV); at != nullptr; at = GetWindow(at, GW_HWNDPREV)) {
        if (at == upper) return true;
    }
    return false;
}

/// Behaviour that must be the same in both stores; the parameter is true for the registry.
class InBothStores : public testing::TestWithParam<bool> {
protected:
    static std::unique_ptr<TestNotes> run(std::vector<NoteRecord> notes,
                                          const GlobalSettings& settings = {}) {
        return std::make_unique<TestNotes>(GetParam(), std::move(notes), settings);
    }
};

/// How often either store was changed so far.
inline int changesOf(const TestNotes& desk) {
    return desk.folder.changes->made + desk.registry.changes->made;
}

/// Makes this thread see some keys held down as long as it exists.
class HeldKeys {
public:
    explicit HeldKeys(std::initializer_list<int> keys) {
        GetKeyboardState(before_);
        BYTE now[256];
        std::copy(std::begin(before_), std::end(before_), now);
        for (const int key : keys)
            now[key] = 0x80;
        SetKeyboardState(now);
    }
    ~HeldKeys() { SetKeyboardState(before_); }
    HeldKeys(const HeldKeys&) = delete;
    HeldKeys& operator=(const HeldKeys&) = delete;

private:
    BYTE before_[256]{};
};

/// Sends a key and the character that it types (0: none) as they reach a window.
inline void typeKey(HWND window, WPARAM key, WPARAM character = 0) {
    SendMessageW(window, WM_KEYDOWN, key, 0);
    if (character != 0) SendMessageW(window, WM_CHAR, character, 0);
    SendMessageW(window, WM_KEYUP, key, 0);
}

/// Sends a key that goes down `times` times, like one that is held, and then up.
inline void hold(HWND window, WPARAM key, int times, std::initializer_list<int> with = {VK_CONTROL}) {
    const HeldKeys held(with);
    for (int i = 0; i < times; ++i)
        SendMessageW(window, WM_KEYDOWN, key, 0);
    SendMessageW(window, WM_KEYUP, key, 0);
}

/// Presses and releases the left button on a part of a note, at a place in twips of the part.
inline void click(const TestNotes& desk, HWND part, int x, int y) {
    const NoteLook& look = desk.desk->look;
    const LPARAM at = MAKELPARAM(look.px(Twips{x}), look.px(Twips{y}));
    SendMessageW(part, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageW(part, WM_LBUTTONUP, 0, at);
}
