// The icon in the notification area, over a fake collection.
#include "tests/window/TrayDesk.h"

namespace {

TEST_F(Tray, TheStartCountsAnIconThatIsThereAsAdded) {
    EXPECT_FALSE(TrayIconAdd(tray.hwnd));
    EXPECT_TRUE(tray.addIcon());
    mouse({WM_LBUTTONDOWN, WM_LBUTTONUP});  // still answered once, not once per try
    EXPECT_EQ(desk.calls, Calls{"default"});
}

}  // namespace
