// The ticks of the desk: what they let count down, how they follow the clock, and how notes that could not be
// read come back.
#include <string>

#include "resources/resource.h"
#include "tests/window/AlarmDesk.h"
#include "tests/window/Script.h"

namespace {

class Ticks : public Alarm {};
INSTANTIATE_TEST_SUITE_P(Stores, Ticks, testing::Bool(), storeName);

// --- The timer --------------------------------------------------------------------------------------------

/// Whether the program's own timer makes a strip show this text.
bool comesTo(const fpost& note, const std::string& text) {
    const ULONGLONG end = GetTickCount64() + 20000;
    while (strip(note) != text && GetTickCount64() < end && pumpFor(5)) {
    }
    return strip(note) == text;
}

TEST(DeskTimer, EveryNoteCountsDownByItselfAlsoAfterOthersHaveEnded) {
    TestNotes desk(true, {once(u"a"), once(u"b"), plainNote(u"c")});
    desk.clock = {later(-9), 0};
    EXPECT_TRUE(comesTo(desk.note(1), "0:00:09"));
    EXPECT_TRUE(comesTo(desk.note(2), "0:00:09"));
    desk.note(1).alarm.clear();
    desk.clock = {later(-8), 0};
    EXPECT_TRUE(comesTo(desk.note(2), "0:00:08"));
    desk.note(2).alarm.clear();
    desk.note(3).alarm.rule = ruleFromRecord(once(u"c"));
    desk.note(3).ArmAfterLoad();
    desk.clock = {later(-7), 0};
    EXPECT_TRUE(comesTo(desk.note(3), "0:00:07"));
    desk.note(3).alarm.clear();
    EXPECT_FALSE(KillTimer(desk.desk->tray.hwnd, IDT_ALARM)) << "an idle desk wakes nobody";
}

TEST(DeskTimer, RefusedByWindowsTheTicksComeAllTheSame) {
    GlobalSettings keeping;
    keeping.DontDeleteWhenPlay = true;
    TestNotes desk(true, {plainNote(u"a")}, keeping);
    int refused = 0;
    desk.desk->startTimer = [&](HWND, UINT_PTR, UINT) {
        ++refused;
        return false;
    };
    fpost& note = desk.note(1);
    note.alarm.rule = ruleFromRecord(once(u"a"));
    note.ArmAfterLoad();
    desk.clock = {later(-7), 0};
    EXPECT_TRUE(comesTo(note, "0:00:07"));
    desk.clock = {kDue, 0};
    const ULONGLONG end = GetTickCount64() + 20000;
    while (!note.Alarming() && GetTickCount64() < end && pumpFor(5)) {
    }
    EXPECT_TRUE(note.Alarming());
    EXPECT_GE(refused, 2) << "it asks again and again";
    EXPECT_LT(refused, 40) << "once per tick";
    note.SoundStop();
}

// --- The clock --------------------------------------------------------------------------------------------

TEST_P(Ticks, WhatAClockSetFarForwardSkippedDoesNotRing) {
    const auto desk = run({every(u"a", u"eachday"), weekly(u"b", 1), once(u"c")});
    for (const bool tickFirst : {false, true}) {
        desk->setClock({desk->clock.at.seconds + 8 * kSecondsPerDay + 4 * 3600});
        if (tickFirst) desk->desk->Tick();
        SendMessageW(desk->desk->tray.hwnd, WM_TIMECHANGE, 0, 0);
        desk->desk->Tick();
        EXPECT_FALSE(desk->note(1).Alarming() || desk->note(2).Alarming()) << tickFirst;
        EXPECT_LT(desk->clock.at, *desk->note(2).alarm.rule.due) << tickFirst;
        EXPECT_TRUE(desk->note(3).Alarming()) << "it would have rung only once";
    }
}

// --- Notes that could not be read -------------------------------------------------------------------------

TEST_P(Ticks, NotesThatCouldNotBeReadAppearOnceTheyCan) {
    std::vector<NoteRecord> notes{plainNote(u"a"), plainNote(u"b", 4500, 4500), plainNote(u"c")};
    notes[1].alarmdate = u"16/06/2026";
    notes[1].alarmtime = u"12:00:00";
    notes[2].closed = true;
    const auto desk = run(notes);
    const auto lock = [&](bool on) {
        for (const TextView section : {u"kardel-1", u"kardel-2", u"kardel-3"}) {
            if (on) desk->registry.locked.insert(Text(section));
        }
        if (on) desk->folder.locked.insert(Text(kNoteFile));
        if (!on) desk->registry.locked.clear();
        if (!on) desk->folder.locked.clear();
    };
    const auto ticks = [&](int count) {
        for (int i = 0; i < count; ++i)
            desk->desk->Tick();
        pumpPending();
    };
    lock(true);
    desk->killAndRestart();
    ticks(100);
    ASSERT_EQ(desk->desk->Count(), 3);
    EXPECT_TRUE(desk->note(2).record.readOnly);
    lock(false);
    ticks(200);
    ASSERT_EQ(desk->desk->Count(), 3);
    for (int number = 1; number <= 3; ++number)
        EXPECT_EQ(storeFree(desk->note(number).record),
                  storeFree(notes[static_cast<std::size_t>(number) - 1]));
    EXPECT_EQ(windowText(desk->note(2).nota), u"body of b");
    EXPECT_EQ(desk->note(2).place.Left(), 4500);
    EXPECT_TRUE(desk->note(2).alarm.isCounting());
    EXPECT_TRUE(desk->note(1).visible() && desk->note(2).visible());
    EXPECT_FALSE(desk->note(3).visible());
    desk->note(1).place.moveTo(Twips{6000}, Twips{6000});
    desk->note(1).kept.save({NoteField::X});
    EXPECT_EQ(desk->stored(1).x, 6000);
}

/// A desk of which the last run left a draft that could not be read at the start.
std::unique_ptr<TestNotes> withUnreadDraft() {
    auto desk = std::make_unique<TestNotes>(
        false, std::vector<NoteRecord>{plainNote(u"a"), plainNote(u"b", 4500, 4500)});
    desk->desk->store.saveDraft(2, false, u"typed before the kill");
    desk->folder.locked.insert(Text(kDraftFile));
    desk->killAndRestart();
    EXPECT_EQ(windowText(desk->note(2).nota), u"body of b");
    return desk;
}

/// Ticks, by the desk's own timer and besides, until the draft has been taken over. False when it never is.
bool takesDraft(TestNotes& desk) {
    const ULONGLONG end = GetTickCount64() + 20000;
    while (windowText(desk.note(2).nota) == u"body of b" && GetTickCount64() < end) {
        pumpFor(50);  // the timer runs for the drafts alone
        for (int i = 0; i < 10; ++i)
            desk.desk->Tick();
    }
    EXPECT_EQ(windowText(desk.note(2).nota), u"typed before the kill");
    return desk.stored(2).Nota == u"typed before the kill" && !desk.folder.content.contains(Text(kDraftFile));
}

TEST(DeskDrafts, ThatCouldNotBeReadAreTakenUpOnceTheyCan) {
    const auto desk = withUnreadDraft();
    for (int i = 0; i < 100; ++i)
        desk->desk->Tick();
    EXPECT_EQ(windowText(desk->note(2).nota), u"body of b");
    desk->folder.locked.clear();
    EXPECT_TRUE(takesDraft(*desk));
}

TEST(DeskDrafts, WaitUntilABoxIsAnswered) {
    const auto desk = withUnreadDraft();
    desk->folder.locked.clear();
    fmsg& dialog = desk->desk->dialog;
    Script script(dialog);
    script.when([&] { return dialog.hwnd != nullptr && IsWindowVisible(dialog.hwnd) != FALSE; },
                [&] {
                    for (int i = 0; i < 100; ++i)
                        desk->desk->Tick();
                    EXPECT_EQ(windowText(desk->note(2).nota), u"body of b");
                    PostMessageW(dialog.hwnd, WM_CLOSE, 0, 0);
                });
    dialog.MsgBoxExt(u"Sure?", MB_YESNO);
    EXPECT_TRUE(takesDraft(*desk));
}

TEST(DeskDrafts, WaitForTheEndOfAnEditThatBeganBeforeThem) {
    constexpr WPARAM kEnds[] = {VK_ESCAPE, VK_RETURN};
    for (const WPARAM key : kEnds) {
        const auto desk = withUnreadDraft();
        fpost& note = desk->note(2);
        note.EditForm();
        desk->folder.locked.clear();
        for (int i = 0; i < 100; ++i)
            desk->desk->Tick();
        ASSERT_TRUE(note.editing.isOpen());
        EXPECT_EQ(windowText(note.editing.txtNota()), u"body of b");
        typeKey(note.editing.txtNota(), key, key);
        ASSERT_FALSE(note.editing.isOpen());
        EXPECT_TRUE(takesDraft(*desk)) << key;
    }
}

TEST(DeskDrafts, AreTakenUpBeforeAnEditWouldWriteOverThem) {
    const auto desk = withUnreadDraft();
    desk->folder.locked.clear();
    desk->note(2).EditForm();
    EXPECT_EQ(windowText(desk->note(2).editing.txtNota()), u"typed before the kill");
}

}  // namespace
