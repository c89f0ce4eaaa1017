// Notes in a store of either kind: what is saved comes back, and what is refused is told.
#include "storage/NoteStore.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/storage/StoreCases.h"

namespace {

INSTANTIATE_TEST_SUITE_P(Stores, EitherStore, testing::Values(true, false), storeName);

TEST_P(EitherStore, FiftyNewNotesComeBackCompletelyAtTheNextStart) {
    Dice dice(21);
    std::vector<NoteRecord> notes;
    for (int i = 0; i < kMaxNotes; ++i)
        notes.push_back(randomNote(dice, westernPage()));
    desk.createAll(notes);
    restart();
    ASSERT_EQ(desk.count(), kMaxNotes);
    for (int n = 1; n <= kMaxNotes; ++n)
        EXPECT_EQ(load(n), storeFree(notes[static_cast<std::size_t>(n - 1)]));
    EXPECT_EQ(desk.told, 0);
}

TEST_P(EitherStore, EachNewNoteHasABodyOfItsOwn) {
    std::vector<NoteRecord> notes = sampleNotes(3);
    desk.createAll(notes);
    for (int n = 1; n <= 3; ++n) {
        NoteRecord& note = notes[static_cast<std::size_t>(n - 1)];
        note.Nota = u"edited " + decimal(n);
        EXPECT_TRUE(desk.store.set(n, note, {kBody}));
    }
    restart();
    for (int n = 1; n <= 3; ++n)
        EXPECT_EQ(load(n).Nota, u"edited " + decimal(n));
}

TEST_P(EitherStore, EverySingleFieldIsStoredAndNothingElse) {
    std::vector<NoteRecord> notes = sampleNotes(3);
    Dice dice(5);
    for (const NoteFieldRow& row : noteFields()) {
        desk.createAll(notes);
        const NoteRecord before = load(2);
        NoteRecord other = randomNote(dice, westernPage());
        other.interval = before.interval;  // the rule's fields belong together
        other.alarmdate = before.alarmdate;
        EXPECT_TRUE(desk.store.set(2, other, {row.field}));
        NoteRecord expected = before;
        row.read(expected, row.write(other));
        EXPECT_EQ(load(2), expected) << static_cast<int>(row.field);
        EXPECT_EQ(load(1), storeFree(notes[0]));
        EXPECT_EQ(load(3), storeFree(notes[2]));
    }
}

TEST_P(EitherStore, ADragDoesNotDisturbTheAlarm) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    NoteRecord dragged = notes[1];
    dragged.interval.clear();  // whatever is in memory
    dragged.alarmdate.clear();
    dragged.x = 77;
    EXPECT_TRUE(desk.store.set(2, dragged, {NoteField::X, NoteField::Y}));
    const NoteRecord stored = load(2);
    EXPECT_EQ(stored.x, 77);
    EXPECT_EQ(stored.interval, u"eachmonth");
    EXPECT_EQ(stored.alarmdate, u"*");
    EXPECT_EQ(stored.alarmday, u"02");
}

TEST_P(EitherStore, AFixedDateEndsThePattern) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    notes[1].alarmdate = u"05/06/2031";
    notes[1].interval.clear();
    notes[1].alarmday.clear();
    EXPECT_TRUE(desk.store.set(2, notes[1], {NoteField::AlarmDate}));
    const NoteRecord stored = load(2);
    EXPECT_EQ(stored.alarmdate, u"05/06/2031");
    EXPECT_EQ(stored.interval, u"");
    EXPECT_EQ(stored.alarmday, u"");
}

TEST_P(EitherStore, SavingStoresEveryField) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    Dice dice(9);
    NoteRecord other = randomNote(dice, westernPage());
    EXPECT_TRUE(desk.store.set(1, other, everyField()));
    EXPECT_EQ(load(1), storeFree(other));
    EXPECT_EQ(load(2), storeFree(notes[1]));
}

TEST_P(EitherStore, AnEmptyStoreIsANoteOfTheDefaultSize) {
    desk.global.DefaultWidth = 3000;
    desk.global.DefaultHeight = 2000;
    const NoteRecord note = load(1);
    EXPECT_EQ(note.width, 3000);
    EXPECT_EQ(note.height, 2000);
    EXPECT_EQ(note.backcolor.value_or(kDesignColor), kDesignColor);
    EXPECT_EQ(note.Titolo + note.Nota, u"");
}

TEST_P(EitherStore, ANoteThatCannotBeReadIsNeverWrittenBack) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    desk.folder.locked.insert(Text(kNoteFile));
    desk.settings.locked.insert(u"kardel-2");
    NoteRecord note;
    EXPECT_FALSE(desk.store.load(2, note, desk.global));
    EXPECT_TRUE(note.readOnly);
    EXPECT_EQ(note.Titolo, u"");
    desk.folder.locked.clear();
    desk.settings.locked.clear();
    const int before = desk.changes->made;
    EXPECT_FALSE(desk.store.set(2, note, {kTitle, kBody}));
    EXPECT_FALSE(desk.store.set(2, note, everyField()));
    EXPECT_EQ(desk.told, 0) << "the caller tells the user";
    EXPECT_EQ(desk.changes->made, before);
    EXPECT_EQ(load(2), storeFree(notes[1]));
}

TEST_P(EitherStore, AFailedSaveIsReportedOnceAndTheNextOneSucceeds) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    notes[0].Nota = u"typed on a full disk";
    desk.changes->allFail = true;
    EXPECT_FALSE(desk.store.set(1, notes[0], {kTitle, kBody, NoteField::X}));
    EXPECT_EQ(desk.told, 1);
    EXPECT_FALSE(desk.store.set(1, notes[0], everyField()));
    EXPECT_EQ(desk.told, 2);
    desk.changes->allFail = false;
    EXPECT_TRUE(desk.store.set(1, notes[0], {kBody}));
    EXPECT_EQ(load(1).Nota, u"typed on a full disk");
    EXPECT_EQ(load(2), storeFree(notes[1]));
    EXPECT_EQ(desk.told, 2);
}

TEST_P(EitherStore, AFailedCreationIsReported) {
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.changes->allFail = true;
    EXPECT_FALSE(desk.store.create(1, notes[0]));
    EXPECT_EQ(desk.told, 1);
}

// --- Drafts ----------------------------------------------------------------------------------------------

TEST_P(EitherStore, TheDefaultSizeIsReadAnewUnlessItCannotBe) {
    for (const auto& [key, wanted] :
         {std::pair{u"defaultwidth", 3000.0F}, std::pair{u"defaultheight", 2000.0F}})
        desk.settings.put(kSettingSection, key, decimal(static_cast<int>(wanted)));
    GlobalSettings settings;
    desk.settings.locked.insert(Text(kSettingSection));
    desk.store.refreshDefaultSize(settings);
    EXPECT_EQ(settings.DefaultWidth, 2910);
    desk.settings.locked.clear();
    desk.store.refreshDefaultSize(settings);
    EXPECT_EQ(settings.DefaultWidth, 3000);
    EXPECT_EQ(settings.DefaultHeight, 2000);
}

// --- What fits -------------------------------------------------------------------------------------------

TEST_P(EitherStore, KnowsWhatItHasRoomFor) {
    const Text cyrillic = u"\u0416";  // not in the code page of the files
    for (const auto& [field, room] : {std::pair{kTitle, 128U}, std::pair{kBody, 1024U}}) {
        EXPECT_TRUE(desk.store.fits(field, Text(room, u'x')));
        EXPECT_EQ(desk.store.fits(field, Text(room + 1, u'x')), inRegistry());
        EXPECT_EQ(desk.store.fits(field, cyrillic), inRegistry());
    }
    EXPECT_TRUE(desk.store.fits(NoteField::X, u"any number"));
}

TEST_P(EitherStore, BesideTheOtherHasRoomForWhatBothHave) {
    std::vector<NoteRecord> notes = sampleNotes(1);
    desk.createAll(notes);
    ASSERT_TRUE(inRegistry() ? desk.toFiles(notes) : desk.toRegistry(notes));
    EXPECT_TRUE(desk.store.fits(kTitle, Text(128, u'x')));
    EXPECT_FALSE(desk.store.fits(kTitle, Text(129, u'x')));
}

// --- Patience --------------------------------------------------------------------------------------------

TEST_P(EitherStore, ACommandOnAllNotesWaitsForFilesOnce) {
    std::vector<NoteRecord> notes = sampleNotes(kMaxNotes);
    desk.createAll(notes);
    desk.folder.waits.clear();
    {
        const NoteStore::Command command(desk.store);
        for (int number = 1; number <= kMaxNotes; ++number) {
            NoteRecord& note = notes[static_cast<std::size_t>(number - 1)];
            note.iconized = true;
            EXPECT_TRUE(desk.store.set(number, note, {NoteField::Iconized}));
        }
        desk.store.settle(pointersTo(notes), desk.global);
    }
    EXPECT_EQ(desk.folder.waits, std::vector<unsigned>{1000});
    EXPECT_TRUE(desk.store.set(1, notes[0], {NoteField::Iconized}));
    EXPECT_EQ(desk.folder.waits.size(), 2U) << "the next command has patience of its own";
}

TEST_P(EitherStore, EveryCommandOfItsOwnHasPatienceEvenAfterTyping) {
    std::vector<NoteRecord> notes = sampleNotes(2);
    desk.createAll(notes);
    constexpr NoteField kPlace[] = {NoteField::X};
    const std::vector<std::function<void()>> commands{
        [&] { EXPECT_TRUE(desk.store.refresh(1, notes[0], kPlace)); },
        [&] { EXPECT_TRUE(desk.store.storeCount(2)); }, [&] { desk.store.dropDraft(2); }};
    for (std::size_t i = 0; i < commands.size(); ++i) {
        desk.store.saveDraft(2, false, u"typed");
        desk.folder.waits.clear();
        commands[i]();
        EXPECT_EQ(desk.folder.waits, std::vector<unsigned>{1000}) << "command " << i;
    }
}

}  // namespace
