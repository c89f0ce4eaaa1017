// The dialog's message and About faces on a live desktop: what they show, and where.
#include <algorithm>
#include <string>

#include "note/About.h"
#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"
#include "tests/window/DialogTest.h"

namespace {

// --- Message box ------------------------------------------------------------------------------------------

TEST_F(Fmsg, AQuestionShowsYesAndNoAndAnswersSix) {
    Script script(dialog);
    script.when(shown("Delete"), [this] {
        EXPECT_EQ(text(ID_BTN1), "&Yes");
        EXPECT_EQ(text(ID_BTN2), "&No");
        EXPECT_EQ(text(ID_LBLMSG), "Sure?");
        EXPECT_EQ(text(ID_MICON), "Question");
        EXPECT_TRUE(shows(ID_LBLMSG) && shows(ID_MICON) && shows(ID_BTN1) && shows(ID_BTN2) &&
                    shows(ID_FRAMSG));
        EXPECT_FALSE(shows(ID_LBLMAILTO));
        click(ID_BTN1);
    });
    EXPECT_EQ(dialog.MsgBoxExt(u"Sure?", 36, u"Delete"), IDYES);
    EXPECT_FALSE(dialog.open());
    EXPECT_FALSE(IsWindowVisible(dialog.hwnd));
}

TEST_F(Fmsg, ALoneReturnCharacterBreaksTheLine) {
    int oneLine = 0;
    const auto height = [this] {
        RECT rect{};
        GetWindowRect(item(ID_LBLMSG), &rect);
        return static_cast<int>(rect.bottom - rect.top);
    };
    Script script(dialog);
    script.when(shown("One"), [&] {
        oneLine = height();
        click(ID_BTN1);
    });
    script.when(shown("Three"), [&] {
        EXPECT_EQ(height(), 3 * oneLine);
        click(ID_BTN1);
    });
    dialog.MsgBoxExt(u"First", 0, u"One");
    dialog.MsgBoxExt(u"First\r\rthird", 0, u"Three");
}

TEST_F(Fmsg, AnEndlessPromptStaysOnTheScreenWithItsButtons) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] {
        RECT box{};
        RECT button{};
        GetWindowRect(dialog.hwnd, &box);
        GetWindowRect(item(ID_BTN2), &button);
        const PxRect work = workAreaAt(pxRect(box));
        EXPECT_GE(box.left, work.left);
        EXPECT_GE(box.top, work.top);
        EXPECT_LE(box.right, work.right);
        EXPECT_LE(box.bottom, work.bottom);
        EXPECT_LE(box.right - box.left, work.width() / 2 + 100);
        EXPECT_LT(button.bottom, box.bottom);
        EXPECT_LT(button.right, box.right);
        click(ID_BTN2);
    });
    EXPECT_EQ(dialog.MsgBoxExt(Text(20000, u'x'), 36), IDNO);
}

/// How high the ink of the last columns of a label's last line is, in pixels.
int heightOfTheLastInk(HWND label) {
    constexpr int kColumns = 3;
    constexpr int kDark = 3 * 128;
    RECT area{};
    GetClientRect(label, &area);
    const WindowDc dc(label);
    TEXTMETRICW metrics{};
    const Selected font(dc, reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0)));
    GetTextMetricsW(dc, &metrics);
    int highest = 0;
    int columns = 0;
    for (int x = area.right - 1; x >= 0 && columns < kColumns; --x) {
        int first = -1;
        int last = -1;
        for (int y = area.bottom - metrics.tmHeight; y < area.bottom; ++y) {
            const COLORREF color = GetPixel(dc, x, y);
            if (GetRValue(color) + GetGValue(color) + GetBValue(color) >= kDark) continue;
            if (first < 0) first = y;
            last = y;
        }
        if (first < 0) continue;
        highest = std::max(highest, last - first + 1);
        ++columns;
    }
    return highest;
}

TEST_F(Fmsg, APromptTooHighForTheScreenEndsInDots) {
    Script script(dialog);
    script.when(shown("Kardel"), [this] {
        constexpr int kDot = 3;
        UpdateWindow(item(ID_LBLMSG));
        const int height = heightOfTheLastInk(item(ID_LBLMSG));
        EXPECT_GT(height, 0);
        EXPECT_LE(height, kDot);
        click(ID_BTN1);
    });
    Text prompt;
    for (int line = 0; line < 200; ++line)
        prompt += u"line by line\r\n";
    dialog.MsgBoxExt(prompt, 0);
}

// --- About ------------------------------------------------------------------------------------------------

TEST_F(Fmsg, AboutSaysTheVersionAndOffersItsLinks) {
    Script script(dialog);
    script.when(shown("About"), [this] {
        EXPECT_EQ(text(ID_LBLMSG).find("Kardel - version 1.28.0\r\n\r\n"), 0U) << text(ID_LBLMSG);
        EXPECT_EQ(windowText(item(ID_LBLMAILTO)), Text(about::kMail));
        EXPECT_EQ(windowText(item(ID_LBLWEBURL)), Text(about::kSite));
        for (const int link : {ID_LBLMAILTO, ID_LBLWEBURL}) {
            EXPECT_TRUE(shows(link));
            SetCursor(LoadCursorW(nullptr, IDC_ARROW));
            SendMessageW(item(link), WM_SETCURSOR, reinterpret_cast<WPARAM>(item(link)),
                         MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
            EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_HAND));
        }
        click(ID_BTN1);
    });
    dialog.about();
}

TEST_F(Fmsg, TheLinksOfAboutOpenByMouseAndKeyboard) {
    std::vector<Text> opened;
    dialog.openTarget = [&](const Text& target) {
        opened.push_back(target);
        return Text();
    };
    Script script(dialog);
    script.when(focused(ID_BTN1), [this] { key(VK_TAB); });
    script.when(focused(ID_LBLMAILTO), [this] { key(VK_RETURN); });
    script.when([&] { return opened.size() == 1; }, [this] { key(VK_TAB); });
    script.when(focused(ID_LBLWEBURL), [] {
        type(GetFocus(), WM_KEYDOWN, VK_SPACE);
        type(GetFocus(), WM_KEYUP, VK_SPACE);
    });
    script.when([&] { return opened.size() == 2; }, [this] { click(ID_LBLMAILTO); });
    script.when([&] { return opened.size() == 3; },
                [this] {
                    EXPECT_TRUE(dialog.open()) << "a link does not close the box";
                    key(VK_ESCAPE);
                });
    dialog.about();
    const Text mail = u"mailto:" + Text(about::kMail);
    EXPECT_EQ(opened, (std::vector<Text>{mail, Text(about::kSite), mail}));
}

TEST_F(Fmsg, ALinkThatCannotBeOpenedSaysWhyAndGivesAboutBack) {
    dialog.openTarget = [](const Text&) { return shellMessage(31); };
    Script script(dialog);
    script.when(shown("About"), [this] {
        SetFocus(item(ID_LBLWEBURL));
        click(ID_LBLWEBURL);
    });
    script.when(shown("Kardel"), [this] {
        EXPECT_EQ(text(ID_LBLMSG), "Missing association file type.");
        EXPECT_EQ(text(ID_MICON), "Warning");
        EXPECT_FALSE(shows(ID_LBLWEBURL));
        click(ID_BTN1);
    });
    script.when(focused(ID_LBLWEBURL), [this] {
        EXPECT_EQ(title(), "About");
        EXPECT_TRUE(shows(ID_LBLMAILTO));
        closeBox();
    });
    dialog.about();
}

}  // namespace
