// What a press on each part of a note does, and where it does nothing.
#include <utility>

#include "tests/window/AlarmDesk.h"
#include "tests/window/Script.h"

namespace {

class PressedNote : public Alarm {};
INSTANTIATE_TEST_SUITE_P(Stores, PressedNote, testing::Bool(), storeName);

// --- The pictures -----------------------------------------------------------------------------------------

/// Presses the left button on a part, at a place in twips.
void press(const TestNotes& desk, HWND part, int x, int y) {
    const NoteLook& look = desk.desk->look;
    SendMessageW(part, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(look.px(Twips{x}), look.px(Twips{y})));
}

TEST_P(PressedNote, TheIconizeAndCloseButtonsTakeThePressAtEveryCornerAndNotBesideIt) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (const auto& [x, y] : {std::pair{15, 30}, {195, 30}, {15, 240}, {195, 240}}) {
        const bool before = note.Iconized();
        press(*desk, note.lbl2, x, y);
        EXPECT_NE(note.Iconized(), before) << x << ", " << y;
        EXPECT_EQ(desk->stored(1).iconized, note.Iconized()) << x << ", " << y;
    }
    for (const auto& [x, y] :
         {std::pair{0, 30}, {210, 30}, {15, 15}, {15, 255}, {240, 120}, {255, 255}, {450, 15}}) {
        press(*desk, note.lbl2, x, y);
        EXPECT_FALSE(note.Iconized()) << x << ", " << y;
        EXPECT_TRUE(note.visible()) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair{255, 30}, {450, 30}, {255, 240}, {450, 240}}) {
        desk->desk->OpenNote(0);
        press(*desk, note.lbl2, x, y);
        EXPECT_FALSE(note.visible()) << x << ", " << y;
        EXPECT_TRUE(desk->stored(1).closed) << x << ", " << y;
    }
}

TEST_P(PressedNote, TheDeletePictureAsksInItsUpperPartOnly) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    int asked = 0;
    desk->desk->host.ask = [&asked](const Text&, long, const Text&) { return ++asked, IDNO; };
    for (const auto& [x, y] : {std::pair{0, 0}, {255, 0}, {0, 225}, {255, 225}})
        press(*desk, note.pic, x, y);
    EXPECT_EQ(asked, 4);
    for (const int x : {0, 135, 255})
        press(*desk, note.pic, x, 240);
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(desk->desk->Count(), 1);
}

TEST_P(PressedNote, ThePicturesOfTheStripActOnlyWhereTheyAreDrawn) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000, 6000)});
    fpost& note = desk->note(1);
    int questions = 0;
    desk->desk->host.ask = [&](const Text&, long, const Text&) {
        ++questions;
        return IDNO;
    };
    for (const auto& [x, y] : {std::pair{225, 120}, std::pair{105, 15}, std::pair{105, 262}})
        click(*desk, note.lbl2, x, y);
    click(*desk, note.pic, 135, 250);
    EXPECT_FALSE(note.record.iconized || note.record.closed);
    EXPECT_EQ(questions, 0);
    click(*desk, note.pic, 135, 120);
    EXPECT_EQ(questions, 1);
    click(*desk, note.lbl2, 105, 120);
    EXPECT_TRUE(desk->stored(1).iconized);
    click(*desk, note.lbl2, 105, 120);
    EXPECT_FALSE(desk->stored(1).iconized);
    click(*desk, note.lbl2, 345, 120);
    EXPECT_TRUE(desk->stored(1).closed);
    EXPECT_FALSE(note.visible());
}

// --- What a press ends ------------------------------------------------------------------------------------

TEST_P(PressedNote, APressOnAnyPartKeepsWhatIsBeingEditedBeforeItDoesAnythingElse) {
    const auto desk = run({armed(u"a")});
    fpost& note = desk->note(1);
    int round = 0;
    for (const HWND part : {note.lbl, note.lbl2, note.pic, note.pic2, note.pic_time}) {
        const Text typed = u"typed " + decimal(++round);
        note.EditForm();
        setWindowText(note.editing.txtNota(), typed);
        click(*desk, part, 225, 255);  // outside every hot area
        EXPECT_EQ(desk->stored(1).Nota, typed) << GetDlgCtrlID(part);
        EXPECT_FALSE(note.editing.bodyBeingEdited() || IsWindowVisible(note.editing.txtNota()))
            << GetDlgCtrlID(part);
    }
    for (const HWND part : {note.lbl, note.nota, note.pic2, note.pic_time}) {
        const Text typed = u"title " + decimal(++round);
        note.EditCaption();
        setWindowText(note.editing.txtTitle(), typed);
        click(*desk, part, 225, 255);
        EXPECT_EQ(desk->stored(1).Titolo, typed) << GetDlgCtrlID(part);
        EXPECT_FALSE(note.editing.titleBeingEdited() || IsWindowVisible(note.editing.txtTitle()))
            << GetDlgCtrlID(part);
    }
}

TEST_P(PressedNote, AClickOnTitleOrTextLeavesTheResizeMode) {
    const auto desk = run({plainNote(u"a")});
    fpost& note = desk->note(1);
    for (const HWND part : {note.lbl, note.nota}) {
        note.place.resizer.setMode(true);
        click(*desk, part, 900, 100);
        EXPECT_FALSE(note.place.resizer.isOn()) << GetDlgCtrlID(part);
    }
}

// --- The strip --------------------------------------------------------------------------------------------

TEST_P(PressedNote, ARightClickShowsWhenItIsDueAndTheNextOneCountsAgain) {
    const auto desk = run({once(u"a")});
    const fpost& note = desk->note(1);
    press(note.pic_time, WM_RBUTTONDOWN);
    EXPECT_EQ(strip(note), "15/06/2026 12:00  h.");
    desk->clock = {later(-5), 0};
    tick(*desk);
    EXPECT_EQ(strip(note), "15/06/2026 12:00  h.");
    press(note.pic_time, WM_RBUTTONDOWN);
    tick(*desk);
    EXPECT_EQ(strip(note), "0:00:05");
}

TEST_P(PressedNote, ALeftClickOnTheStripOfAnArmedNoteChangesNothing) {
    const auto desk = run({once(u"a")});
    press(desk->note(1).pic_time);
    EXPECT_EQ(desk->note(1).alarm.rule.due, kDue);
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
}

TEST_P(PressedNote, ARightClickWhileItRingsOnlyChangesWhatTheStripShows) {
    const auto desk = ringing({once(u"a")});
    fpost& note = desk->note(1);
    EXPECT_EQ(strip(note), "0:00:00");
    press(note.pic_time, WM_RBUTTONDOWN);
    EXPECT_EQ(strip(note), "15/06/2026 12:00  h.");
    EXPECT_TRUE(note.Alarming());
    EXPECT_NE(note.alarm.pTimerProc, 0U);
    EXPECT_EQ(desk->silences, 0);
    note.alarm.flashTick();
    EXPECT_EQ(note.tBackColor(), note.Backcol());
    press(note.pic_time, WM_RBUTTONDOWN);
    EXPECT_EQ(strip(note), "0:00:00");
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
}

// --- A note that waits for a dialog -----------------------------------------------------------------------

TEST_P(PressedNote, WhileADialogIsOpenItLiesBelowAndAPressSilencesIt) {
    const auto desk = run({with(with(every(u"a", u"eachday"), &NoteRecord::closed), &NoteRecord::topmost),
                           once(u"b"), plainNote(u"c")});
    Script script(desk->desk->dialog);
    const auto shown = [&] {
        const HWND box = desk->desk->dialog.hwnd;
        return box != nullptr && IsWindowVisible(box) != FALSE;
    };
    script.when(shown, [&] {
        const HWND box = desk->desk->dialog.hwnd;
        const auto pressed = [&](int n, int hit, UINT message) {
            const HWND window = desk->note(n).hwnd;
            SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), MAKELPARAM(hit, message));
        };
        pressed(2, HTERROR, WM_LBUTTONDOWN);  // nothing rings yet
        desk->clock = {kDue, 0};
        tick(*desk);
        for (int n = 1; n <= 2; ++n) {
            EXPECT_TRUE(isAbove(box, desk->note(n).hwnd)) << n;
            EXPECT_FALSE(IsWindowEnabled(desk->note(n).hwnd)) << n;
            pressed(n, HTERROR, WM_MOUSEMOVE);
            pressed(n, HTERROR, WM_RBUTTONDOWN);
            pressed(n, HTCLIENT, WM_LBUTTONDOWN);
            EXPECT_TRUE(desk->note(n).Alarming()) << n;
        }
        pressed(2, HTERROR, WM_LBUTTONDOWN);
        pressed(1, HTERROR, WM_LBUTTONDOWN);
        EXPECT_FALSE(desk->note(1).Alarming());
        EXPECT_EQ(desk->desk->titles(), (std::vector<Text>{u"a", u"c"}));
        EXPECT_TRUE(desk->desk->dialog.open());
        PostMessageW(box, WM_CLOSE, 0, 0);
    });
    desk->desk->dialog.about();
    EXPECT_TRUE(IsWindowEnabled(desk->note(1).hwnd));
}

}  // namespace
