// An edit that is open when the program dies: its text is in the draft, and the next start completes the
// edit.
#include <gtest/gtest.h>

#include "storage/Draft.h"
#include "tests/core/EveryPoint.h"
#include "tests/window/TestNotes.h"

namespace {

constexpr DWORD kLongEnough = 1500;  // ms from the last key to the draft

/// Processes messages until the condition holds; a busy machine may take longer than any user would see.
template <class Condition>
bool comes(Condition condition) {
    constexpr int kTries = 100;
    for (int tries = 0; tries < kTries && !condition(); ++tries)
        pumpFor(kLongEnough / 20);
    return condition();
}

struct OpenEdit : testing::TestWithParam<bool> {
    TestNotes desk{GetParam(), {plainNote(u"a"), plainNote(u"b", 6000)}};

    /// The draft of a note, in the store that holds the notes.
    std::optional<Draft> draft(int number) {
        if (GetParam()) return parseDraft(desk.registry.text(noteSection(number), kDraftKey), number);
        const auto file = desk.folder.content.find(Text(kDraftFile));
        if (file == desk.folder.content.end()) return std::nullopt;
        for (const Draft& one : decodeDrafts(file->second)) {
            if (one.number == number) return one;
        }
        return std::nullopt;
    }
    bool hasDraft() {
        if (!GetParam()) return desk.folder.content.contains(Text(kDraftFile));
        EXPECT_FALSE(desk.folder.content.contains(Text(kDraftFile)));
        for (int number = 1; number <= 3; ++number) {
            if (desk.registry.find(noteSection(number), kDraftKey) != nullptr) return true;
        }
        return false;
    }
    /// Stores a draft as another run left it.
    void leave(const Draft& left) {
        if (GetParam()) {
            desk.registry.put(noteSection(left.number), kDraftKey, draftText(left));
        } else {
            desk.folder.content[Text(kDraftFile)] = encodeDrafts(std::vector{left});
        }
    }

    /// Types at the end of an editor's text and waits until the draft is written.
    void type(HWND editor, const char16_t* text) {
        SendMessageW(editor, EM_SETSEL, 0x7FFFFFFF, 0x7FFFFFFF);
        SendMessageW(editor, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
        ASSERT_TRUE(comes([this] { return hasDraft(); }));
    }
    void typeInBody(int number) {
        desk.note(number).EditForm();
        type(desk.note(number).editing.txtNota(), u", and more");
    }

    Image image() const { return {desk.folder.content, desk.registry.content}; }
    void restartOver(const Image& stores) {
        desk.folder.content = stores.files;
        desk.registry.content = stores.settings;
        desk.killAndRestart();
    }
    /// Both stores as they were before each change of `run`, and after the last.
    std::vector<Image> everyPointOf(const std::function<void()>& run) {
        const auto changes = std::make_shared<Changes>();
        desk.folder.changes = changes;
        desk.registry.changes = changes;
        return everyPoint(
            *changes, [this] { return image(); }, run);
    }
    /// Checks that after a start over each of them what was typed in note 2 is there, and everything else as
    /// it was.
    void expectTypedIn(const std::vector<Image>& points) {
        for (std::size_t at = 0; at < points.size(); ++at) {
            SCOPED_TRACE("ended ahead of change " + std::to_string(at));
            restartOver(points[at]);
            EXPECT_EQ(desk.desk->titles(), (std::vector<Text>{u"a", u"b"}));
            EXPECT_EQ(desk.stored(1).Nota, u"body of a");
            EXPECT_EQ(desk.stored(2).Nota, u"body of b, and more");
            EXPECT_FALSE(hasDraft());
            ++tally.killed;
        }
    }
};
INSTANTIATE_TEST_SUITE_P(Stores, OpenEdit, testing::Bool(), storeName);

TEST_P(OpenEdit, OfABodySurvivesTheProgram) {
    typeInBody(2);
    EXPECT_EQ(desk.stored(2).Nota, u"body of b") << "an open edit is not stored";
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(2).Nota, u"body of b, and more");
    EXPECT_EQ(windowText(desk.note(2).nota), u"body of b, and more");
    EXPECT_EQ(desk.stored(1).Nota, u"body of a");
    EXPECT_FALSE(hasDraft());
}

TEST_P(OpenEdit, OfATitleSurvivesTheProgram) {
    desk.note(1).EditCaption();
    type(desk.note(1).editing.txtTitle(), u" new");
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(1).Titolo, u"a new");
    EXPECT_EQ(desk.note(1).Titolo(), u"a new");
    EXPECT_EQ(desk.stored(1).Nota, u"body of a");
    EXPECT_FALSE(hasDraft());
}

TEST_P(OpenEdit, LeavesNoDraftWhenItEndsEitherWay) {
    typeInBody(1);
    EXPECT_TRUE(hasDraft());
    desk.note(1).SaveNote();
    EXPECT_FALSE(hasDraft());
    typeInBody(1);
    desk.note(1).CancelNote();
    EXPECT_FALSE(hasDraft());
    pumpFor(kLongEnough);
    EXPECT_FALSE(hasDraft()) << "no draft may come later";
    for (const bool apply : {true, false}) {
        desk.note(1).EditCaption();
        type(desk.note(1).editing.txtTitle(), u"!");
        EXPECT_TRUE(hasDraft());
        desk.note(1).SaveCaption(apply);
        EXPECT_FALSE(hasDraft());
    }
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(1).Nota, u"body of a, and more");
    EXPECT_EQ(desk.stored(1).Titolo, u"a!");
}

TEST_P(OpenEdit, IsWholeWhereverItsEndIsKilled) {
    typeInBody(2);
    const std::vector<Image> points = everyPointOf([this] { desk.note(2).SaveNote(); });
    EXPECT_GE(points.size(), 3U) << "the text is stored, then the draft goes";
    expectTypedIn(points);
}

TEST_P(OpenEdit, IsCompletedByTheNextStartWhereverOneIsKilled) {
    typeInBody(2);
    const Image killed = image();
    const std::vector<Image> points = everyPointOf([&] { restartOver(killed); });
    EXPECT_GE(points.size(), 3U) << "the text is stored, then the draft goes";
    expectTypedIn(points);
}

TEST_P(OpenEdit, StoresNothingOrIsKeptWhenItsCancellingIsKilled) {
    typeInBody(2);
    const std::vector<Image> points = everyPointOf([this] { desk.note(2).CancelNote(); });
    ASSERT_EQ(points.size(), 2U);
    restartOver(points.back());
    EXPECT_EQ(desk.stored(2).Nota, u"body of b");
    expectTypedIn({points.front()});
}

TEST_P(OpenEdit, StaysInTheDraftWhenTheStoreRefusedIt) {
    typeInBody(1);
    const SharedChanges refusing = std::make_shared<Changes>();
    refusing->failAt = 0;
    desk.folder.changes = refusing;
    desk.registry.changes = refusing;
    desk.note(1).SaveNote();
    EXPECT_EQ(desk.stored(1).Nota, u"body of a");
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(1).Nota, u"body of a, and more");
    EXPECT_FALSE(hasDraft());
}

TEST_P(OpenEdit, FollowsItsNoteToAnotherNumber) {
    typeInBody(2);
    desk.note(1).DeleteForm(true);
    EXPECT_TRUE(draft(1).has_value());
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(1).Titolo, u"b");
    EXPECT_EQ(desk.stored(1).Nota, u"body of b, and more");
}

TEST_P(OpenEdit, IsIgnoredAndRemovedWhenItsDraftIsDamaged) {
    typeInBody(1);
    if (GetParam()) {
        desk.registry.put(u"kardel-1", kDraftKey, u"b12x and more");
    } else {
        desk.folder.content[Text(kDraftFile)].back() ^= 1;
    }
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(1).Nota, u"body of a");
    EXPECT_FALSE(hasDraft());
}

TEST_P(OpenEdit, OfANoteThatIsGoneOrReplacedIsIgnored) {
    for (const int number : {1, 3}) {
        leave({number, false, u"of another note", 4711});
        desk.killAndRestart();
        EXPECT_EQ(desk.stored(1).Nota, u"body of a");
        EXPECT_EQ(desk.stored(2).Nota, u"body of b");
        // What is left in a section that no longer belongs to a note does no harm, and goes with the section.
        EXPECT_TRUE(!hasDraft() || (GetParam() && number == 3));
    }
}

TEST_P(OpenEdit, WaitsForANoteThatCannotBeReadNow) {
    typeInBody(1);
    desk.folder.locked.insert(Text(kNoteFile));
    desk.registry.locked.insert(u"kardel-1");
    desk.killAndRestart();
    EXPECT_TRUE(hasDraft());
    desk.folder.locked.clear();
    desk.registry.locked.clear();
    desk.killAndRestart();
    EXPECT_EQ(desk.stored(1).Nota, u"body of a, and more");
}

}  // namespace
