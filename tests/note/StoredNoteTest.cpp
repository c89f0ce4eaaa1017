// What a note saves, still has to save, and reads again, with a store in memory.
#include "note/StoredNote.h"

#include <gtest/gtest.h>

#include "tests/storage/Samples.h"

namespace {

class NoteInStore : public testing::Test {
protected:
    void SetUp() override {
        store.connect({registry.settings(), englishWeekdayKeys(), folder.files(), westernPage()});
        static_cast<void>(store.begin(StoreKind::Registry));
        record.Titolo = u"Milk";
        record.x = 1500;
        ASSERT_TRUE(store.create(number, record));
        kept.store = &store;
    }
    void refuse(bool on) { registry.changes->allFail = on; }
    Text stored(TextView key) { return registry.text(u"kardel-1", key); }

    MemorySettings registry;
    MemoryFiles folder;
    NoteStore store;
    int number = 1;
    NoteRecord record;
    StoredNote kept{record, number};
};

TEST_F(NoteInStore, SavesTheGivenFieldsAndNoOthers) {
    record.Titolo = u"Tea";
    record.x = 3000;
    EXPECT_TRUE(kept.saved({NoteField::Titolo}));
    EXPECT_EQ(stored(u"Titolo"), u"Tea");
    EXPECT_EQ(stored(u"x"), u"1500");
}

TEST_F(NoteInStore, WhatWasRefusedIsSavedWithTheNext) {
    record.Titolo = u"Tea";
    refuse(true);
    EXPECT_FALSE(kept.saved({NoteField::Titolo}));
    EXPECT_TRUE(kept.owes(NoteField::Titolo));
    EXPECT_FALSE(kept.owes(NoteField::X));
    refuse(false);
    record.x = 3000;
    kept.save({NoteField::X});
    EXPECT_EQ(stored(u"Titolo"), u"Tea");
    EXPECT_EQ(stored(u"x"), u"3000");
    EXPECT_FALSE(kept.owes(NoteField::Titolo));
}

TEST_F(NoteInStore, SavingAgainTriesOnlyWhatWasRefused) {
    record.Titolo = u"Tea";
    kept.saveAgain();
    EXPECT_EQ(stored(u"Titolo"), u"Milk") << "nothing was refused";
    refuse(true);
    kept.save({NoteField::Titolo});
    refuse(false);
    kept.saveAgain();
    EXPECT_EQ(stored(u"Titolo"), u"Tea");
}

TEST_F(NoteInStore, OwingEverythingSavesEverythingNext) {
    record.Titolo = u"Tea";
    record.x = 3000;
    kept.oweEverything();
    EXPECT_TRUE(kept.owes(NoteField::Nota));
    kept.saveAgain();
    EXPECT_EQ(stored(u"Titolo"), u"Tea");
    EXPECT_EQ(stored(u"x"), u"3000");
}

TEST_F(NoteInStore, TakesBackWhatIsStoredExceptWhatItStillOwes) {
    record.Titolo = u"Tea";
    refuse(true);
    kept.save({NoteField::Titolo});
    refuse(false);
    registry.put(u"kardel-1", u"x", u"4500");
    EXPECT_TRUE(kept.refreshed({NoteField::Titolo, NoteField::X}));
    EXPECT_EQ(record.Titolo, u"Tea") << "only in memory";
    EXPECT_EQ(record.x, 4500);
}

TEST_F(NoteInStore, WhatCannotBeReadStaysAsItWas) {
    registry.put(u"kardel-1", u"x", u"4500");
    registry.locked.insert(u"kardel-1");
    EXPECT_FALSE(kept.refreshed({NoteField::X}));
    EXPECT_EQ(record.x, 1500);
}

TEST_F(NoteInStore, ANoteThatCouldNotBeReadIsNeitherWrittenNorRefreshed) {
    record.readOnly = true;
    record.Titolo = u"blank stand-in";
    EXPECT_FALSE(kept.saved({NoteField::Titolo}));
    kept.saveAgain();
    EXPECT_EQ(stored(u"Titolo"), u"Milk");
    EXPECT_FALSE(kept.refreshed({NoteField::Titolo}));
    EXPECT_EQ(record.Titolo, u"blank stand-in");
}

TEST_F(NoteInStore, FollowsItsNumber) {
    NoteRecord second;
    second.Titolo = u"Second";
    ASSERT_TRUE(store.create(2, second));
    number = 2;
    record.Titolo = u"Tea";
    kept.save({NoteField::Titolo});
    EXPECT_EQ(stored(u"Titolo"), u"Milk");
    EXPECT_EQ(registry.text(u"kardel-2", u"Titolo"), u"Tea");
}

}  // namespace
