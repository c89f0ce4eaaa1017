// Close and delete: what becomes of the note, the other notes, the captions and the store.
#include "resources/resource.h"
#include "tests/window/AlarmDesk.h"
#include "tests/window/MenuDesk.h"

namespace {

class NoteRemoval : public Alarm {
protected:
    /// Answers every question from here on and remembers the last one.
    void answer(TestNotes& desk, int code) {
        desk.desk->host.ask = [this, code](const Text& prompt, long buttons, const Text& title) {
            asked = prompt;
            askedButtons = buttons;
            askedTitle = title;
            ++questions;
            return code;
        };
    }
    Text asked;
    Text askedTitle;
    long askedButtons = 0;
    int questions = 0;
};
INSTANTIATE_TEST_SUITE_P(Stores, NoteRemoval, testing::Bool(), storeName);

std::vector<NoteRecord> fourNotes() {
    return {plainNote(u"one", 1500, 1500), plainNote(u"two", 6000, 1500), plainNote(u"three", 1500, 6000),
            plainNote(u"four", 6000, 6000)};
}

std::vector<Text> storedTitles(TestNotes& desk) {
    std::vector<Text> titles;
    for (int number = 1; number <= desk.desk->Count(); ++number)
        titles.push_back(desk.stored(number).Titolo);
    return titles;
}

/// A note whose one-shot alarm is due ten seconds after the desk's clock.
NoteRecord ringingOnce(TextView title) {
    NoteRecord note = plainNote(title);
    note.alarmdate = u"15/06/2026";
    note.alarmtime = u"12:00:10";
    note.mute = true;
    return note;
}

void letFirstRing(TestNotes& desk) {
    desk.clock.at.seconds += 20;
    desk.note(1).tmr_Timer();
    ASSERT_TRUE(desk.note(1).Alarming());
}

// --- Delete -----------------------------------------------------------------------------------------------

TEST_P(NoteRemoval, AsksWithTheTitleBetweenDoubledApostrophes) {
    const auto desk = run({plainNote(u"one"), plainNote(u"", 6000, 6000)});
    answer(*desk, IDNO);
    desk->note(1).DeleteForm(false);
    EXPECT_EQ(asked, u"Are you sure you want to delete the kardel titled ''one'' ?");
    EXPECT_EQ(askedTitle, u"Delete");
    EXPECT_EQ(askedButtons, 36);
    desk->note(2).DeleteForm(false);
    EXPECT_EQ(asked, u"Are you sure you want to delete the kardel titled '''' ?");
    EXPECT_EQ(questions, 2);
}

TEST_P(NoteRemoval, AnythingButYesLeavesEverythingAsItWas) {
    const auto desk = run(fourNotes());
    const int before = changesOf(*desk);
    for (const int code : {IDNO, 0, IDCANCEL, IDOK}) {
        answer(*desk, code);
        typeKey(desk->note(2).hwnd, VK_DELETE);
        EXPECT_EQ(desk->desk->Count(), 4) << code;
        EXPECT_TRUE(desk->note(2).visible());
    }
    EXPECT_EQ(questions, 4);
    EXPECT_EQ(changesOf(*desk), before);
}

TEST_P(NoteRemoval, TheNotesBehindMoveDownAndGoOnInTheirNewPlaces) {
    const auto desk = run(fourNotes());
    answer(*desk, IDYES);
    fpost& third = desk->note(3);
    fpost& second = desk->note(2);
    const HWND gone = second.hwnd;
    second.DeleteForm(false);
    pumpPending();
    EXPECT_FALSE(IsWindow(gone));
    EXPECT_EQ(storedTitles(*desk), (std::vector<Text>{u"one", u"three", u"four"}));
    EXPECT_EQ(third.number, 2);
    EXPECT_EQ(desk->desk->NoteSlots[1], &third);
    EXPECT_EQ(desk->desk->NoteSlots[3], nullptr);
    EXPECT_EQ(desk->desk->titles(), (std::vector<Text>{u"one", u"three", u"four"}));
    if (GetParam()) {
        EXPECT_EQ(desk->registry.find(u"kardel-4"), nullptr);
        EXPECT_EQ(desk->registry.text(u"setting", u"count"), u"3");
    } else {
        EXPECT_EQ(desk->folder.content[Text(kNoteFile)].size(), 3 * kRecordLength);
    }
    third.EditForm();
    SetWindowTextW(third.editing.txtNota(), L"typed after it moved");
    third.SaveNote();
    EXPECT_EQ(desk->stored(2).Nota, u"typed after it moved");
    EXPECT_EQ(desk->stored(1).Nota, u"body of one");
    EXPECT_EQ(desk->stored(3).Nota, u"body of four");
}

TEST_P(NoteRemoval, OfTheLastNoteLeavesNothingToOpen) {
    const auto desk = run({plainNote(u"one")});
    answer(*desk, IDYES);
    desk->note(1).DeleteForm(false);
    const Menu open = shownNotes(*desk);
    ASSERT_EQ(open.size(), 1U);
    EXPECT_EQ(open[0].caption, u"(none)");
    EXPECT_FALSE(open[0].enabled);
    EXPECT_FALSE(trayAllows(*desk, tray::kHideAll));
    EXPECT_FALSE(desk->desk->AllHidden() || desk->desk->AllIconized()) << "without notes, none is hidden";
    if (GetParam()) {
        EXPECT_EQ(desk->registry.find(u"kardel-1"), nullptr);
        EXPECT_EQ(desk->registry.text(u"setting", u"count"), u"0");
    } else {
        EXPECT_FALSE(desk->folder.content.contains(Text(kNoteFile)));
    }
}

TEST_P(NoteRemoval, WhenOnlyClosedOrIconizedNotesRemainTheyAreOfferedTogether) {
    std::vector<NoteRecord> notes = fourNotes();
    for (std::size_t i = 1; i < notes.size(); ++i) {
        notes[i].closed = true;
        notes[i].iconized = true;
    }
    const auto desk = run(notes);
    EXPECT_FALSE(desk->desk->AllHidden() || desk->desk->AllIconized());
    desk->note(1).DeleteForm(true);
    EXPECT_TRUE(desk->desk->AllHidden() && desk->desk->AllIconized());
    EXPECT_EQ(noteCaption(desk->note(1), IDM_HIDEALL), u"Show All");
}

TEST_P(NoteRemoval, WhatWasTypedIsKeptWhenTheQuestionIsAnsweredWithNo) {
    const auto desk = run({plainNote(u"one")});
    answer(*desk, IDNO);
    desk->note(1).EditCaption();
    SetWindowTextW(desk->note(1).editing.txtTitle(), L"renamed");
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_DELETE, 0);
    EXPECT_EQ(asked, u"Are you sure you want to delete the kardel titled ''renamed'' ?");
    EXPECT_EQ(desk->stored(1).Titolo, u"renamed");
}

TEST_P(NoteRemoval, DeletingANoteThatRingsDeletesOneNote) {
    const auto desk = ringing({every(u"a", u"eachday"), once(u"b"), once(u"c")});
    desk->note(2).DeleteForm(true);
    desk->note(1).DeleteForm(true);
    EXPECT_EQ(desk->silences, 2);
    pumpPending();
    ASSERT_EQ(desk->desk->titles(), (std::vector<Text>{u"c"}));
    EXPECT_EQ(desk->stored(1).Titolo, u"c");
    EXPECT_EQ(desk->stored(1).alarmtime, u"12:00:10");
    EXPECT_TRUE(desk->note(1).Alarming());
}

TEST_P(NoteRemoval, NoteThatCouldNotBeReadIsNotDeletedEither) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b")});
    desk->note(1).record.readOnly = true;
    desk->note(1).DeleteForm(true);
    EXPECT_EQ(desk->desk->Count(), 2);
    EXPECT_EQ(desk->stored(1).Titolo, u"a");
}

// --- A store that refuses, or was left half-way -----------------------------------------------------------

TEST_P(NoteRemoval, ThatTheStoreRefusesTakesTheNoteAwayAndLeavesTheOthersWritable) {
    const auto desk = run(fourNotes());
    {
        const FullDisk full(*desk);
        desk->note(2).DeleteForm(true);
    }
    EXPECT_EQ(desk->desk->Count(), 3);
    fpost& third = desk->note(2);
    third.EditForm();
    SetWindowTextW(third.editing.txtNota(), L"typed afterwards");
    third.SaveNote();
    EXPECT_EQ(desk->stored(2).Nota, u"typed afterwards");
    EXPECT_EQ(desk->stored(3).Nota, u"body of four");
    desk->desk->CommitEdits();  // as Exit does first
    if (GetParam()) {
        EXPECT_EQ(desk->registry.text(u"kardel-2", u"Nota"), u"typed afterwards");
        EXPECT_EQ(desk->registry.text(u"kardel-3", u"Titolo"), u"four");
        EXPECT_EQ(desk->registry.find(u"kardel-4"), nullptr);
        EXPECT_EQ(desk->registry.text(u"setting", u"count"), u"3");
    } else {
        EXPECT_EQ(desk->folder.content[Text(kNoteFile)].size(), 3 * kRecordLength);
        EXPECT_EQ(desk->folder.content[Text(kMemoFile)].size(), 3 * kMemoLength);
    }
    EXPECT_EQ(storedTitles(*desk), (std::vector<Text>{u"one", u"three", u"four"}));
    EXPECT_EQ(desk->stored(2).Nota, u"typed afterwards");
}

TEST_P(NoteRemoval, LetsNoNewNoteTakeAPlaceThatAStartWouldNotReadUntilItIsFinished) {
    std::vector<NoteRecord> notes;
    for (int i = 1; i <= kMaxNotes; ++i)
        notes.push_back(plainNote(u"n" + decimal(i), 150 * i, 150 * i));
    const auto desk = run(std::move(notes));
    auto full = std::make_unique<FullDisk>(*desk);
    desk->note(1).DeleteForm(true);
    EXPECT_EQ(desk->desk->Count(), 49);
    full.reset();
    ASSERT_TRUE(desk->desk->NewNote()) << "the store is writable again, and the deletion is finished first";
    EXPECT_EQ(storedTitles(*desk).back(), u"- 50 -");
    EXPECT_EQ(storedTitles(*desk).front(), u"n2");
}

TEST(NoteRemovalRegistry, AStartEndsADeletionThatWasKilledHalfWay) {
    TestNotes desk(true, {plainNote(u"first", 3000, 3000), plainNote(u"gone"), plainNote(u"third"),
                          plainNote(u"last", 6000, 6000)});
    desk.registry.put(u"setting", u"places", u"4 1 3 4");
    desk.registry.put(u"kardel-2", u"Titolo", u"third, as far as it came");
    desk.killAndRestart();
    EXPECT_EQ(desk.desk->titles(), (std::vector<Text>{u"first", u"third", u"last"}));
    EXPECT_EQ(desk.registry.text(u"kardel-2", u"Titolo"), u"third");
    EXPECT_EQ(desk.registry.text(u"kardel-3", u"Titolo"), u"last");
    EXPECT_EQ(desk.registry.find(u"kardel-4"), nullptr);
    EXPECT_EQ(desk.registry.text(u"setting", u"count"), u"3");
    EXPECT_EQ(desk.desk->NoteSlots[2], &desk.note(3));
}

// --- The end of a ringing one-shot note must not take another note along ----------------------------------

TEST_P(NoteRemoval, ClosingIconizingOrDeletingARingingNoteTakesNoOther) {
    struct Case {
        const char* name;
        void (*act)(fpost&);
    };
    constexpr Case kCases[] = {{"close", [](fpost& note) { note.CloseForm(); }},
                               {"iconize", [](fpost& note) { note.toggleIconized(); }},
                               {"press", [](fpost& note) { note.DragWindow(); }},
                               {"delete", [](fpost& note) { note.DeleteForm(true); }}};
    for (const Case& c : kCases) {
        const auto desk =
            run({ringingOnce(u"rings"), plainNote(u"b", 6000, 1500), plainNote(u"c", 1500, 6000)});
        letFirstRing(*desk);
        c.act(desk->note(1));
        pumpPending();
        EXPECT_EQ(storedTitles(*desk), (std::vector<Text>{u"b", u"c"})) << c.name;
        EXPECT_FALSE(desk->stored(1).iconized || desk->stored(1).closed) << c.name;
    }
}

// --- Close ------------------------------------------------------------------------------------------------

TEST_P(NoteRemoval, ClosingTheLastVisibleNoteChangesEveryNotesHideAll) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000, 6000)});
    SendMessageW(desk->note(1).hwnd, WM_COMMAND, IDM_CLOSE, 0);
    EXPECT_FALSE(desk->note(1).visible());
    EXPECT_TRUE(desk->stored(1).closed);
    EXPECT_EQ(noteCaption(desk->note(2), IDM_HIDEALL), u"Hide All");
    SendMessageW(desk->note(2).hwnd, WM_COMMAND, IDM_CLOSE, 0);
    for (const int number : {1, 2})
        EXPECT_EQ(noteCaption(desk->note(number), IDM_HIDEALL), u"Show All") << number;
    EXPECT_EQ(trayCaption(*desk, tray::kHideAll), u"Show All");
}

TEST_P(NoteRemoval, ClosingAndOpeningAgainCountsEachNoteOnce) {
    const auto desk = run({plainNote(u"a"), plainNote(u"b", 6000, 6000)});
    for (int round = 0; round < 3; ++round) {
        desk->note(1).CloseForm();
        EXPECT_FALSE(desk->desk->AllHidden()) << round;
        desk->desk->OpenNote(0);
    }
    EXPECT_EQ(desk->desk->ClosedCount(), 0);
}

TEST_P(NoteRemoval, ClosingSilencesItAndItComesBackTheNextTime) {
    const auto desk = ringing({every(u"a", u"eachday"), once(u"b")});
    desk->note(1).CloseForm();
    EXPECT_FALSE(desk->note(1).Alarming());
    EXPECT_FALSE(desk->note(1).visible());
    EXPECT_TRUE(desk->stored(1).closed);
    desk->note(2).CloseForm();
    pumpPending();
    ASSERT_EQ(desk->desk->Count(), 1) << "its alarm is over";
    desk->clock = {later(kSecondsPerDay), 1};
    tick(*desk);
    EXPECT_TRUE(desk->note(1).Alarming());
    EXPECT_TRUE(desk->note(1).visible());
}

}  // namespace
