// What a screen reader hears of the program's boxes, and what Tab reaches in them.
#include "resources/resource.h"
#include "tests/window/AccessibleDesk.h"

namespace {

TEST_F(AccessibleDialog, EveryBoxCanBeReadAndAnswered) {
    for (const long buttons :
         {long{MB_OK}, long{MB_OKCANCEL} | MB_ICONERROR, long{MB_YESNO} | MB_ICONQUESTION,
          long{MB_RETRYCANCEL} | MB_ICONEXCLAMATION, long{MB_YESNO} | MB_DEFBUTTON2}) {
        Script script(dialog);
        script.when(ready("Delete"), [this, buttons] {
            checkFace();
            EXPECT_EQ(text(ID_LBLMSG), "Sure?");
            EXPECT_EQ(text(ID_MICON).empty(), (buttons & MB_ICONMASK) == 0);
            closeBox();
        });
        dialog.MsgBoxExt(u"Sure?", buttons, u"Delete");
    }
}

TEST_F(AccessibleDialog, TheAboutBoxNamesItsLinks) {
    Script script(dialog);
    script.when(ready("About"), [this] {
        checkFace();
        EXPECT_GE(tabStops().size(), 2U);
        closeBox();
    });
    dialog.about();
}

}  // namespace
