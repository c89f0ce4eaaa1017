// A menu at the mouse, tried on that of the tray: what it shows, and what becomes of an entry that is chosen.
#include <vector>

#include "tests/window/PopupDesk.h"

namespace {

TEST_F(TrayPopup, ShowsTheCommandsInOrder) {
    std::vector<Text> captions;
    for (const Entry& entry : open().commands)
        captions.push_back(entry.caption);
    const std::vector<Text> expected = {u"Open",
                                        u"New Kardel",
                                        u"-",
                                        u"Hide All",
                                        u"Iconize All",
                                        u"-",
                                        u"Automatic position",
                                        u"Easy alignment",
                                        u"-",
                                        u"Use local files",
                                        u"-",
                                        u"About...",
                                        u"-",
                                        u"Exit"};
    EXPECT_EQ(captions, expected);
}

TEST_F(TrayPopup, EscapeChoosesNothingAndTheNextPopupStaysOpen) {
    EXPECT_FALSE(open().commands.empty());
    EXPECT_FALSE(open().commands.empty());
    EXPECT_EQ(desk.calls, Calls{});
}

TEST_F(TrayPopup, RunsTheEntryThatIsChosen) {
    open({VK_UP, VK_RETURN});  // the last one
    EXPECT_EQ(desk.calls, Calls{"exit"});
}

TEST_F(TrayPopup, OpensTheNoteThatIsChosen) {
    open({VK_DOWN, VK_RIGHT, VK_DOWN, VK_RETURN});
    EXPECT_EQ(desk.calls, Calls{"open 1"});
}

TEST_F(TrayPopup, DoesWhatItsEntrySaidEvenIfTheDeskHasChangedMeanwhile) {
    // A note that rings while the menu is open comes back, so not all notes are hidden any more.
    desk.shown.allHidden = true;
    open({VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, [this] { desk.shown.allHidden = false; });
    EXPECT_EQ(desk.calls, Calls{"show all"});
    desk.calls.clear();
    desk.shown.allIconized = true;
    open({VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RETURN}, [this] { desk.shown.allIconized = false; });
    EXPECT_EQ(desk.calls, Calls{"restore all"});
}

}  // namespace
