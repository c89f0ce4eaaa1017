// Resizing a note with real windows: the limits, the keys and the grip.
#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"
#include "tests/window/TestNotes.h"

namespace {

class NoteSize : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, NoteSize, testing::Bool(), storeName);

// --- Limits -----------------------------------------------------------------------------------------------

TEST_P(NoteSize, GrowingStopsFlushWithTheWorkArea) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (int step = 0; step < 150; ++step) {
        note.place.resizer.ResizeWidth(180);
        note.place.resizer.ResizeHeight(180);
    }
    const PxRect work = GetWorkArea();
    EXPECT_EQ(rectOf(note.hwnd).right, work.right);
    EXPECT_EQ(rectOf(note.hwnd).bottom, work.bottom);
    EXPECT_EQ(rectOf(note.hwnd).left, desk->desk->look.px(Twips{1500}));
}

// --- Keys of the resize mode ------------------------------------------------------------------------------

TEST_P(NoteSize, TheArrowsResizeInTheResizeModeAndAreStoredAtOnce) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    typeKey(note.hwnd, VK_RIGHT);
    EXPECT_EQ(note.pWidth(), 3000) << "nothing changes outside the mode";
    SendMessageW(note.hwnd, WM_COMMAND, IDM_RESIZE, 0);
    EXPECT_TRUE(note.commands.input(note.alarm.rule).resizeMode);
    EXPECT_EQ(note.mouse.currentCursor, IDC_RESIZE_WIDTH);
    typeKey(note.hwnd, VK_RIGHT);
    EXPECT_EQ(desk->stored(1).width, 3030);
    typeKey(note.hwnd, VK_DOWN);
    EXPECT_EQ(desk->stored(1).height, 2280);
    EXPECT_EQ(note.mouse.currentCursor, IDC_RESIZE_HEIGHT);
    {
        const HeldKeys held({VK_SHIFT});
        typeKey(note.hwnd, VK_LEFT);
    }
    EXPECT_EQ(desk->stored(1).width, 3000) << "Shift does not change the size of a step";
    {
        const HeldKeys held({VK_CONTROL});
        typeKey(note.hwnd, VK_RIGHT);
        typeKey(note.hwnd, VK_UP);
    }
    EXPECT_EQ(desk->stored(1).width, 3180);
    EXPECT_EQ(desk->stored(1).height, 2100);
    typeKey(note.hwnd, VK_RETURN);
    EXPECT_FALSE(note.place.resizer.isOn() || note.commands.input(note.alarm.rule).resizeMode);
    typeKey(note.hwnd, VK_RIGHT);
    EXPECT_EQ(note.pWidth(), 3180);
}

TEST_P(NoteSize, AnIconizedNoteCannotBeMadeTaller) {
    const auto desk = run({iconizedNote(u"a")});
    fpost& note = desk->note(1);
    const int strip = heightOf(note.hwnd);
    note.place.resizer.setMode(true);
    for (const WPARAM key : {WPARAM{VK_DOWN}, WPARAM{VK_UP}})
        typeKey(note.hwnd, key);
    note.place.resizer.press({Twips{60}, Twips{170}});
    note.place.resizer.ResizeHeight(180);
    EXPECT_EQ(heightOf(note.hwnd), strip);
    EXPECT_EQ(desk->stored(1).height, 2250);
    note.place.resizer.setMode(true);
    typeKey(note.hwnd, VK_RIGHT);
    EXPECT_EQ(desk->stored(1).width, 3030) << "but it can be made wider";
}

// --- The grip ---------------------------------------------------------------------------------------------

/// Makes the system report a mouse button as held while its press waits in the message queue for a note's
/// grip. It is injected as a key, so that the pointer does not move and no window is activated.
class HeldGrip {
public:
    HeldGrip(const TestNotes& desk, const fpost& note, int x, int y, bool right)
        : key_(static_cast<BYTE>(right ? VK_RBUTTON : VK_LBUTTON)) {
        const NoteLook& look = desk.desk->look;
        keybd_event(key_, 0, 0, 0);
        PostMessageW(note.pic2, right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, 0,
                     MAKELPARAM(look.px(Twips{x}), look.px(Twips{y})));
    }
    ~HeldGrip() {
        keybd_event(key_, 0, KEYEVENTF_KEYUP, 0);
        pumpPending();
        // Another window may have the keyboard by now, and this thread would never hear of the release.
        BYTE keys[256]{};
        GetKeyboardState(keys);
        keys[key_] = 0;
        SetKeyboardState(keys);
    }
    HeldGrip(const HeldGrip&) = delete;
    HeldGrip& operator=(const HeldGrip&) = delete;

private:
    BYTE key_;
};

/// Does something once the held grip has resized the note, and waits until the resizing ends. Ends it when
/// nothing else does.
class WhileHeld {
public:
    WhileHeld(fpost& note, std::function<void()> act)
        : note_(&note),
          window_(note.hwnd),
          width_(note.pWidth()),
          height_(note.pHeight()),
          act_(std::move(act)),
          end_(GetTickCount64() + kPatience) {
        running = this;
        const UINT_PTR timer = SetTimer(nullptr, 0, kTick, onTick);
        while (!gaveUp && !(acted && ended()))
            pumpFor(kTick);
        KillTimer(nullptr, timer);
        running = nullptr;
    }
    WhileHeld(const WhileHeld&) = delete;
    WhileHeld& operator=(const WhileHeld&) = delete;

    bool acted = false;
    bool gaveUp = false;

private:
    static constexpr UINT kTick = 10;
    static constexpr ULONGLONG kPatience = 10000;
    static inline WhileHeld* running = nullptr;

    bool ended() const { return IsWindow(window_) == FALSE || !note_->place.resizer.isOn(); }
    static void CALLBACK onTick(HWND, UINT, UINT_PTR, DWORD) {
        if (running != nullptr) running->tick();
    }
    void tick() {
        if (GetTickCount64() > end_) {
            gaveUp = true;
            if (IsWindow(window_) != FALSE) note_->place.resizer.setMode(false);
        } else if (!acted && (note_->pWidth() != width_ || note_->pHeight() != height_)) {
            acted = true;
            act_();
        }
    }

    fpost* note_;
    HWND window_;
    int width_;
    int height_;
    std::function<void()> act_;
    ULONGLONG end_;
};

TEST_P(NoteSize, TheGripResizesUntilItHearsOfTheRelease) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (const bool right : {false, true}) {
        const int before = note.pWidth();
        const HeldGrip held(*desk, note, 190, 60, right);
        // The release is reported while the hardware still says that the button is down.
        const WhileHeld wait(note,
                             [&] { PostMessageW(note.pic2, right ? WM_RBUTTONUP : WM_LBUTTONUP, 0, 0); });
        EXPECT_FALSE(wait.gaveUp) << "the resizing did not end";
        EXPECT_EQ(note.pWidth() < before, right);
        EXPECT_EQ(desk->stored(1).width, note.pWidth());
        EXPECT_NE(GetCapture(), note.pic2);
        EXPECT_EQ(note.pHeight(), 2250);
    }
}

TEST_P(NoteSize, TheReleaseOfTheOtherButtonDoesNotEndTheGrip) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    const HeldGrip held(*desk, note, 60, 170, false);
    bool goesOn = false;
    const WhileHeld wait(note, [&] {
        SendMessageW(note.pic2, WM_RBUTTONUP, 0, 0);
        goesOn = note.place.resizer.isOn();
        SendMessageW(note.pic2, WM_LBUTTONUP, 0, 0);
    });
    EXPECT_TRUE(goesOn);
    EXPECT_GT(desk->stored(1).height, 2250);
}

TEST_P(NoteSize, WhateverTakesTheNoteAwayEndsTheGrip) {
    struct Case {
        const char* name;
        std::function<void(TestNotes&, fpost&)> act;
    };
    const Case cases[] = {
        {"delete", [](TestNotes&, fpost& note) { note.DeleteForm(true); }},
        {"close", [](TestNotes&, fpost& note) { note.CloseForm(); }},
        {"hide all", [](TestNotes& desk, fpost&) { desk.desk->ToggleHideAll(); }},
        {"another window takes the mouse", [](TestNotes&, fpost&) { ReleaseCapture(); }},
        {"a release that only the hardware reports",
         [](TestNotes&, fpost&) { keybd_event(VK_LBUTTON, 0, KEYEVENTF_KEYUP, 0); }},
        {"an answered question deletes it",
         [](TestNotes& desk, fpost& note) {
             desk.desk->host.ask = [](const Text&, long, const Text&) { return IDYES; };
             note.DeleteForm(false);
             pumpPending();
         }},
        {"the window goes at once",
         [](TestNotes& desk, fpost& note) {
             desk.desk->Notes.erase(desk.desk->Notes.begin());
             DestroyWindow(note.hwnd);
         }},
    };
    for (const Case& c : cases) {
        const auto desk = run({plainNote(u"a"), plainNote(u"b", 9000, 9000)});
        fpost& note = desk->note(1);
        const HeldGrip held(*desk, note, 60, 170, false);
        const WhileHeld wait(note, [&] { c.act(*desk, note); });
        EXPECT_FALSE(wait.gaveUp) << c.name;
    }
}

}  // namespace
