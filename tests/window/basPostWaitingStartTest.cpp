// A start that is waiting for the notification area, for example at log-on: its notes are not loaded yet, and
// whatever ends it then leaves the stores as they are.
#include "resources/resource.h"
#include "tests/window/TestNotes.h"

namespace {

/// Four registry notes, the second of which is being deleted: the last run was ended before it had finished.
class WaitingStart : public testing::Test {
protected:
    void SetUp() override {
        notes.registry.put(u"setting", u"count", u"4");
        notes.registry.put(u"setting", u"places", u"4 1 3 4");
        toLoad = notes.killAndWait();
        before = notes.registry.content;
    }
    void send(UINT message, WPARAM wp = 0, LPARAM lp = 0) {
        SendMessageW(notes.desk->tray.hwnd, message, wp, lp);
    }
    bool untouched() { return notes.registry.content == before && notes.folder.content.empty(); }

    TestNotes notes{true, {plainNote(u"a"), plainNote(u"b"), plainNote(u"c"), plainNote(u"d")}};
    std::vector<MemorySettings::Section> before;
    int toLoad = 0;
};

TEST_F(WaitingStart, LosesNothingWhenTheSessionMayEnd) {
    send(WM_QUERYENDSESSION);
    EXPECT_TRUE(untouched());
    send(WM_ENDSESSION, FALSE);  // another program has refused
    EXPECT_FALSE(notes.desk->ending());
    ASSERT_TRUE(notes.desk->LoadNotes(toLoad));
    EXPECT_EQ(notes.desk->Count(), 3);
}

TEST_F(WaitingStart, EndsWithTheSessionAndChangesNothing) {
    send(WM_QUERYENDSESSION);
    send(WM_ENDSESSION, TRUE);
    EXPECT_TRUE(notes.desk->ending());
    EXPECT_FALSE(pumpFor(10)) << "the wait must end";
    notes.desk->Teardown();
    EXPECT_TRUE(untouched());
}

TEST_F(WaitingStart, EndsByCommandAndByAPoliteKillAndChangesNothing) {
    for (const bool command : {true, false}) {
        notes.desk->state = {};
        command ? send(WM_COMMAND, IDM_DYN_LAST) : send(WM_CLOSE);
        EXPECT_TRUE(notes.desk->ending());
        EXPECT_FALSE(pumpFor(10)) << "the wait must end";
        EXPECT_TRUE(untouched());
        MSG message{};
        PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE);
    }
}

}  // namespace
