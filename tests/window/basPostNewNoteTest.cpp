// New notes on a live desktop, in both stores: where they appear, what is stored, and what they change about
// the other notes and the commands.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "resources/resource.h"
#include "tests/window/CollectionDesk.h"

namespace {

class NewNote : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, NewNote, testing::Bool(), storeName);

/// Closes the next dialog by its close box as soon as the message loop runs, and counts it.
struct DialogCloser {
    static inline fmsg* dialog = nullptr;
    static inline int closed = 0;
    UINT_PTR timer = 0;

    explicit DialogCloser(TestNotes& desk) {
        dialog = &desk.desk->dialog;
        closed = 0;
        timer = SetTimer(nullptr, 0, 20, closeOpenOne);
    }
    ~DialogCloser() {
        KillTimer(nullptr, timer);
        dialog = nullptr;
    }
    DialogCloser(const DialogCloser&) = delete;
    DialogCloser& operator=(const DialogCloser&) = delete;

private:
    static void CALLBACK closeOpenOne(HWND, UINT, UINT_PTR, DWORD) {
        if (dialog == nullptr || !dialog->open()) return;
        ++closed;
        PostMessageW(dialog->hwnd, WM_CLOSE, 0, 0);
    }
};

TEST_P(NewNote, ANewNoteIsStoredAsItStands) {
    const auto desk = run({plainNote(u"a")});
    ASSERT_TRUE(desk->desk->NewNote());
    fpost& note = desk->note(2);
    const NoteRecord stored = desk->stored(2);
    EXPECT_EQ(countedNotes(*desk), 2);
    EXPECT_EQ(stored.Titolo, u"- 2 -");
    EXPECT_EQ(stored.Nota, u"");
    EXPECT_EQ(stored.x, note.place.Left());
    EXPECT_EQ(stored.y, note.place.Top());
    EXPECT_EQ(stored.width, note.place.Width());
    EXPECT_EQ(stored.height, note.place.Height());
    EXPECT_EQ(desk->stored(1).Nota, u"body of a");
    EXPECT_EQ(desk->desk->titles(), (std::vector<Text>{u"a", u"- 2 -"}));
    EXPECT_EQ(desk->desk->NoteSlots[1], &note);
}

/// Makes Windows refuse windows of one class.
class NoRoomFor {
public:
    explicit NoRoomFor(std::wstring kind) {
        kind_ = std::move(kind);
        hook_ = SetWindowsHookExW(WH_CBT, refuse, nullptr, GetCurrentThreadId());
    }
    ~NoRoomFor() { UnhookWindowsHookEx(hook_); }
    NoRoomFor(const NoRoomFor&) = delete;
    NoRoomFor& operator=(const NoRoomFor&) = delete;

private:
    static LRESULT CALLBACK refuse(int code, WPARAM wp, LPARAM lp) {
        wchar_t kind[64]{};
        if (code == HCBT_CREATEWND && GetClassNameW(reinterpret_cast<HWND>(wp), kind, 64) > 0 &&
            kind_ == kind) {
            return 1;
        }
        return CallNextHookEx(nullptr, code, wp, lp);
    }
    static inline std::wstring kind_;
    HHOOK hook_;
};

int noteWindows() {
    int count = 0;
    for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, L"fpost", nullptr)) != nullptr;)
        ++count;
    return count;
}

TEST_P(NewNote, AWindowThatWindowsRefusesIsReportedAndLeavesNothingBehind) {
    const auto desk = run({plainNote(u"a")});
    wchar_t part[64]{};
    GetClassNameW(desk->note(1).lbl, part, 64);
    for (const std::wstring& kind : {std::wstring(L"fpost"), std::wstring(part)}) {
        const int changes = changesOf(*desk);
        DialogCloser closer(*desk);
        {
            const NoRoomFor refusal(kind);
            EXPECT_FALSE(desk->desk->NewNote());
        }
        EXPECT_EQ(closer.closed, 1);
        EXPECT_EQ(desk->desk->Count(), 1);
        EXPECT_EQ(noteWindows(), 1);
        EXPECT_EQ(changesOf(*desk), changes);
    }
    EXPECT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(countedNotes(*desk), 2);
    EXPECT_EQ(desk->stored(2).Titolo, u"- 2 -");
}

TEST_P(NewNote, ANewNoteHasTheSizeThatIsCurrentlySet) {
    const auto desk = run({plainNote(u"a")});
    const Settings settings = desk->registry.settings();
    ASSERT_TRUE(saveSetting(settings, u"setting", u"defaultwidth", u"4500"));
    ASSERT_TRUE(saveSetting(settings, u"setting", u"defaultheight", u"3000.6"));
    ASSERT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(desk->stored(2).width, 4500);
    EXPECT_EQ(desk->note(2).place.Width(), 4500);
    EXPECT_NEAR(desk->note(2).place.Height(), 3000, 15);
}

TEST_P(NewNote, TheFiftyFirstNoteIsRefusedAndNothingIsWritten) {
    const auto desk = run(manyNotes(50));
    const auto files = desk->folder.content;
    const int made = desk->registry.changes ? desk->registry.changes->made : 0;
    const DialogCloser closer(*desk);
    EXPECT_FALSE(desk->desk->NewNote());
    EXPECT_EQ(DialogCloser::closed, 1);
    EXPECT_EQ(desk->desk->Count(), 50);
    EXPECT_EQ(countedNotes(*desk), 50);
    EXPECT_EQ(desk->folder.content, files);
    EXPECT_EQ(desk->registry.changes ? desk->registry.changes->made : 0, made);
}

TEST_P(NewNote, TheFirstNoteAfterAllWereDeletedEnablesTheCommandsAgain) {
    const auto desk = run({plainNote(u"a")});
    desk->note(1).DeleteForm(true);
    pumpPending();
    for (const int command : {tray::kHideAll, tray::kIconizeAll, tray::kAlignAll}) {
        EXPECT_FALSE(trayAllows(*desk, command)) << command;
    }
    EXPECT_FALSE(trayOpens(*desk, 0));
    ASSERT_TRUE(desk->desk->NewNote());
    for (const int command : {tray::kHideAll, tray::kIconizeAll, tray::kAlignAll}) {
        EXPECT_TRUE(trayAllows(*desk, command)) << command;
    }
    EXPECT_TRUE(trayOpens(*desk, 0));
    EXPECT_EQ(desk->stored(1).Titolo, u"- 1 -");
    EXPECT_EQ(desk->stored(1).Nota, u"");
}

TEST_P(NewNote, ANewNoteOnAHiddenDeskChangesTheCaptionsAndLeavesTheOthersHidden) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b")});
    desk->desk->ToggleHideAll();
    ASSERT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Hide All");
    EXPECT_EQ(noteCaption(desk->note(1), IDM_HIDEALL), u"Hide All");
    EXPECT_FALSE(desk->note(1).visible());
    EXPECT_FALSE(desk->note(2).visible());
    EXPECT_TRUE(desk->note(3).visible());
    EXPECT_FALSE(desk->stored(1).closed);
}

TEST_P(NewNote, ANewNoteOnAnIconizedDeskChangesTheCaptions) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b")});
    desk->desk->ToggleIconizeAll();
    ASSERT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(trayCaption(*desk, tray::kIconizeAll), u"Iconize All");
    EXPECT_EQ(noteCaption(desk->note(1), IDM_ICONIZEALL), u"Iconize All");
    EXPECT_TRUE(desk->note(1).Iconized());
    EXPECT_FALSE(desk->note(3).Iconized());
}

TEST_P(NewNote, WithAutomaticPositionASecondNoteGoesUnderTheFirst) {
    GlobalSettings settings;
    settings.AlignAll = true;
    const auto desk = run({plainNote(u"a", 4500, 3000)}, settings);
    ASSERT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(desk->note(2).place.Left(), 4500);
    EXPECT_EQ(desk->note(2).place.Top(), 3000 + 2250);
    EXPECT_EQ(desk->stored(2).x, 4500);
    EXPECT_EQ(desk->stored(2).y, 3000 + 2250);
}

TEST_P(NewNote, NewNotesCascadeInsteadOfCoveringEachOther) {
    const auto desk = run({});
    std::set<std::pair<int, int>> places;
    for (int i = 0; i < 6; ++i) {
        ASSERT_TRUE(desk->desk->NewNote());
        places.insert({desk->note(i + 1).place.Left(), desk->note(i + 1).place.Top()});
    }
    EXPECT_EQ(places.size(), 6U);
}

TEST_P(NewNote, ANewNoteAfterADeletionCoversNoOther) {
    const auto desk = run({});
    ASSERT_TRUE(desk->desk->NewNote());
    ASSERT_TRUE(desk->desk->NewNote());
    desk->note(1).DeleteForm(true);
    ASSERT_TRUE(desk->desk->NewNote());
    EXPECT_NE(desk->note(1).place.Left(), desk->note(2).place.Left());
}

TEST_P(NewNote, ANewNoteEndsTheEditThatIsOpenAndKeepsItsText) {
    const auto desk = run({plainNote(u"a")});
    desk->note(1).EditForm();
    SetWindowTextW(desk->note(1).editing.txtNota(), L"half a thought");
    ASSERT_TRUE(desk->desk->NewNote());
    EXPECT_EQ(desk->stored(1).Nota, u"half a thought");
    EXPECT_FALSE(desk->note(1).editing.bodyBeingEdited());
}

TEST(NewNoteRegistry, ALeftOverSectionLendsNothingToANewNote) {
    TestNotes desk(true, {plainNote(u"a")});
    NoteRecord ghost = plainNote(u"ghost");
    ghost.closed = true;
    ghost.alarmdate = u"*";
    ghost.interval = u"eachday";
    ghost.alarmtime = u"13:00:00";
    const RegistryNotes sections{desk.registry.settings(), englishWeekdayKeys()};
    ASSERT_TRUE(sections.SaveNoteToRegistry(2, ghost));
    ASSERT_TRUE(desk.desk->NewNote());
    const NoteRecord stored = desk.stored(2);
    EXPECT_FALSE(stored.closed);
    EXPECT_EQ(stored.interval, u"");
    EXPECT_EQ(stored.alarmtime, u"");
    EXPECT_EQ(stored.Nota, u"");
}

}  // namespace
