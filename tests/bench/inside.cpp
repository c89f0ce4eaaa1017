// Times single steps of Kardel and their bare counterparts, with the real collection, notes, registry and
// files: kardel_bench_inside FOLDER\ ROUNDS. Prints one line per sample: name, then microseconds of the bare
// step and of Kardel's. It fills the user's registry with notes, so it needs a session of its own, and
// refuses to start where there are notes.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>

#include "core/basPost.h"
#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"
#include "support/Number.h"
#include "support/Window.h"
#include "tests/bench/bare.h"

namespace {

struct Sample {
    int x, y, width, height;  // pixels
    std::int32_t color;
    const wchar_t* title;
    const wchar_t* body;
};

constexpr Sample kNotes[] = {
#include "notes.inc"
};

constexpr int kMoves = 40;  // per sample: so few that the system rarely switches to another program
constexpr int kEdits = 8;   // per sample
constexpr const char16_t* kBareFile = u"BARE";
constexpr const char16_t* kBareValue = u"Bare";

[[noreturn]] void fail(const char* what) {
    std::printf("failed: %s\n", what);
    std::exit(1);
}

void check(bool held, const char* what) {
    if (!held) fail(what);
}

/// Microseconds.
double clockNow() {
    LARGE_INTEGER frequency{};
    LARGE_INTEGER ticks{};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&ticks);
    constexpr double kMicroseconds = 1e6;
    return static_cast<double>(ticks.QuadPart) * kMicroseconds / static_cast<double>(frequency.QuadPart);
}

/// Runs a step and adds the time that it took, in microseconds.
template <class Step>
void timed(double& sum, Step step) {
    const double begun = clockNow();
    step();
    sum += clockNow() - begun;
}

struct Pair {
    double bare = 0;  ///< microseconds, of all steps
    double ours = 0;

    void print(const char* name, int steps) const {
        std::printf("%s %.3f %.3f\n", name, bare / steps, ours / steps);
        std::fflush(stdout);
    }
};

NoteRecord recordOf(const Sample& sample) {
    NoteRecord record;
    record.Titolo = fromWide(sample.title);
    record.Nota = fromWide(sample.body);
    record.backcolor = sample.color;
    const auto twips = [](int pixels) { return toTwips(Px{pixels}, USER_DEFAULT_SCREEN_DPI).n; };
    record.x = twips(sample.x);
    record.y = twips(sample.y);
    record.width = twips(sample.width);
    record.height = twips(sample.height);
    return record;
}

/// Kardel's notes on the screen, from a store that is removed at the end.
class Desk {
public:
    Desk(const Text& folder, bool useRegistry, int count, bool armed) : folder_(folder) {
        desk.look = loadNoteLook();
        desk.settings.EasyAlign = true;
        desk.settings.UseRegistry = useRegistry;
        StoreParts parts{userSettings(), {}, folderFiles(folder), systemCodePage()};
        for (int day = 0; day < kWeekdays; ++day)
            parts.weekdayKeys[static_cast<std::size_t>(day)] = u"w." + weekdayName(day);
        check(parts.settings.sections().names.empty(), "there are notes of a user");
        settings_ = parts.settings;
        files_ = parts.files;
        // Notes the moment at which a body is in the store.
        parts.settings.set = [this](TextView section, std::span<const KeyText> values) {
            const bool done = settings_.set(section, values);
            storedAt = clockNow();
            return done;
        };
        parts.files.write = [this](TextView file, std::uint64_t offset, std::string_view bytes) {
            const bool done = files_.write(file, offset, bytes);
            if (file == kMemoFile) storedAt = clockNow();
            return done;
        };
        desk.store.connect(parts);
        desk.store.begin(useRegistry ? StoreKind::Registry : StoreKind::Files);
        desk.host.now = [this] { return clock; };
        for (int number = 1; number <= count; ++number) {
            NoteRecord record = recordOf(kNotes[number - 1]);
            if (armed) {
                record.alarmdate = dateText({2026, 6, 18});
                record.alarmtime = u"12:00:00";
            }
            check(desk.store.create(number, record), "a note could not be stored");
        }
        check(desk.createTray() && desk.LoadNotes(count), "the notes could not be shown");
        pumpPending();
    }
    ~Desk() {
        desk.Teardown();
        for (const Text& section : settings_.sections().names)
            static_cast<void>(settings_.removeSection(section));
        for (const TextView name :
             {TextView(kNoteFile), TextView(kMemoFile), TextView(kHeaderFile), TextView(kBareFile)})
            static_cast<void>(files_.remove(name));
    }
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    fpost& note(int number) { return *desk.Notes[static_cast<std::size_t>(number - 1)]; }
    const Files& files() const { return files_; }

    /// When a body was last written. Nobody has to wait for what Kardel does after that.
    double storedAt = 0;

    basPost desk;
    Now clock{instantOf({2026, 6, 15}, {12, 0, 0}), 0};

private:
    Text folder_;
    Settings settings_;
    Files files_;
};

// --- Moving ------------------------------------------------------------------------------------------------

/// What is run inside the drag of a note.
struct Drag {
    static inline Drag* running = nullptr;
    HWND bare;
    HWND note;
    const char* name;
    int rounds;
    bool done = false;

    void measure() {
        RECT edge = placeAt(1, 300);
        check(SendMessageW(note, WM_MOVING, 0, reinterpret_cast<LPARAM>(&edge)) == TRUE && edge.left == 0,
              "the dragged note does not snap");
        const RECT open = openPlace();
        for (int round = -1; round < rounds; ++round) {
            Pair pair;
            timed(pair.bare, [&] { move(bare, open); });
            timed(pair.ours, [&] { move(note, open); });
            if (round >= 0) pair.print(name, kMoves);
        }
        done = true;
    }

    static void move(HWND window, const RECT& to) {
        for (int i = 0; i < kMoves; ++i) {
            RECT rect = to;
            SendMessageW(window, WM_MOVING, 0, reinterpret_cast<LPARAM>(&rect));
        }
    }

    /// The note's rectangle with its corner there.
    RECT placeAt(LONG left, LONG top) const {
        RECT rect{};
        GetWindowRect(note, &rect);
        OffsetRect(&rect, left - rect.left, top - rect.top);
        return rect;
    }

    /// A place at which nothing snaps, so that every other note has to be looked at.
    RECT openPlace() const {
        for (LONG at = 100; at < 900; ++at) {
            const RECT place = placeAt(at, at / 2);
            RECT rect = place;
            if (SendMessageW(note, WM_MOVING, 0, reinterpret_cast<LPARAM>(&rect)) == FALSE) return place;
        }
        fail("a note snaps everywhere");
    }

    static void CALLBACK begin(HWND, UINT, UINT_PTR timer, DWORD) {
        KillTimer(nullptr, timer);
        running->measure();
        PostMessageW(running->note, WM_LBUTTONUP, 0, 0);
    }
};

void measureMoving(const Text& folder, int count, const char* name, int rounds) {
    Desk desk(folder, true, count, false);
    const BareNote bare({300, 300, 500, 450});
    fpost& note = desk.note(1);
    Drag drag{bare.hwnd, note.hwnd, name, rounds};
    Drag::running = &drag;
    BYTE keys[256] = {};
    keys[VK_LBUTTON] = 0x80;
    SetKeyboardState(keys);
    SetTimer(nullptr, 0, 1, Drag::begin);
    note.DragWindow();
    keys[VK_LBUTTON] = 0;
    SetKeyboardState(keys);
    check(drag.done, "no drag began");
}

// --- Saving ------------------------------------------------------------------------------------------------

void pressEnter(HWND editor) {
    SendMessageW(editor, WM_KEYDOWN, VK_RETURN, 1);
    SendMessageW(editor, WM_CHAR, VK_RETURN, 1);
}

void measureSaving(const Text& folder, bool useRegistry, const char* name, int rounds) {
    constexpr auto kCount = static_cast<int>(std::size(kNotes));
    Desk desk(folder, useRegistry, kCount, false);
    check(desk.files().write(kBareFile, 0, std::string(kCount * kMemoLength, ' ')), "no file to write to");
    const BareNote bare({300, 300, 500, 450});
    const Text section = u"Software\\VB and VBA Program Settings\\Kardel\\" + noteSection(1);
    const auto bareSave = [&](int number) {
        const Text text = bare.take();
        if (useRegistry) return writeBareValue(section, kBareValue, text);
        const std::string bytes = encodeField(systemCodePage(), text, kMemoLength).bytes;
        return writeBareBytes(folder + kBareFile, (number - 1LL) * static_cast<long long>(kMemoLength),
                              bytes);
    };
    int edits = 0;
    for (int round = -1; round < rounds; ++round) {
        Pair pair;
        for (int i = 0; i < kEdits; ++i) {
            const int number = ++edits % kCount + 1;
            fpost& note = desk.note(number);
            const Text text = Text(fromWide(kNotes[number - 1].body)) + decimal(edits);

            bare.edit(text);
            pumpPending();
            bool written = false;
            timed(pair.bare, [&] { written = bareSave(number); });
            check(written, "the bare bytes were not written");

            note.EditForm();
            SetWindowTextW(note.editing.txtNota(), wide(text));
            pumpPending();
            desk.storedAt = 0;
            const double begun = clockNow();
            pressEnter(note.editing.txtNota());
            check(desk.storedAt > begun, "Enter wrote nothing");
            pair.ours += desk.storedAt - begun;
            NoteRecord stored;
            check(desk.desk.store.load(number, stored, desk.desk.settings) && stored.Nota == text,
                  "Enter did not store the text");
        }
        if (round >= 0) pair.print(name, kEdits);
    }
}

// --- Countdown ---------------------------------------------------------------------------------------------

void measureTicks(const Text& folder, int rounds) {
    constexpr auto kCount = static_cast<int>(std::size(kNotes));
    Desk desk(folder, true, kCount, true);
    std::vector<std::unique_ptr<BareNote>> bare;
    for (const Sample& sample : kNotes) {
        // As large as a time strip.
        bare.push_back(std::make_unique<BareNote>(RECT{sample.x, sample.y, sample.x + 170, sample.y + 36}));
    }
    const auto show = [&](bool ours) {
        for (const auto& note : bare)
            ShowWindow(note->hwnd, ours ? SW_HIDE : SW_SHOWNOACTIVATE);
        for (const fpost* note : desk.desk.Notes)
            ShowWindow(note->hwnd, ours ? SW_SHOWNOACTIVATE : SW_HIDE);
        pumpPending();
    };
    const auto tick = [&] {
        SendMessageW(desk.desk.tray.hwnd, WM_TIMER, IDT_ALARM, 0);
        for (const fpost* note : desk.desk.Notes)
            UpdateWindow(note->pic_time);
    };
    const auto bareTick = [&](const Text& text) {
        for (const auto& note : bare) {
            SetWindowTextW(note->label, wide(text));
            UpdateWindow(note->label);
        }
    };
    const auto bareSame = [&] {
        for (const auto& note : bare)
            SendMessageW(note->hwnd, WM_TIMER, IDT_ALARM, 0);
    };
    for (int round = -1; round < rounds; ++round) {
        Pair changed;
        Pair same;
        show(false);
        const Text text = windowText(desk.note(1).pic_time) + decimal(round % 2);
        timed(changed.bare, [&] { bareTick(text); });
        timed(same.bare, bareSame);
        show(true);
        ++desk.clock.at.seconds;
        const Text before = windowText(desk.note(1).pic_time);
        timed(changed.ours, tick);
        check(windowText(desk.note(1).pic_time) != before, "the countdown stands still");
        timed(same.ours, tick);
        if (round < 0) continue;
        changed.print("tick-changed", kCount);
        same.print("tick-same", kCount);
    }
}

}  // namespace

int main(int count, char** words) {
    if (count != 3) fail("usage: kardel_bench_inside FOLDER\\ ROUNDS");
    const std::string_view path = words[1];
    const Text folder(path.begin(), path.end());  // plain ASCII
    const int rounds = std::atoi(words[2]);
    registerNoteClasses();
    registerDialogClasses();
    // In turn, so that what slows the machine down for a while does not look like growth.
    constexpr int kTurns = 4;
    for (int turn = 0; turn < kTurns; ++turn) {
        measureMoving(folder, 10, "moving-10", rounds / kTurns);
        measureMoving(folder, 25, "moving-25", rounds / kTurns);
        measureMoving(folder, 50, "moving-50", rounds / kTurns);
    }
    measureSaving(folder, true, "saving-registry", rounds);
    measureSaving(folder, false, "saving-files", rounds);
    measureTicks(folder, rounds);
    return 0;
}
