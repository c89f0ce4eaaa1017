// The alarm editor's own kinds of controls: buttons that underline their letters.
#include <vector>

#include "tests/window/AlarmFaceDesk.h"

namespace {

/// What a control draws, as pixels.
std::vector<COLORREF> pictureOf(HWND control) {
    RECT client{};
    GetClientRect(control, &client);
    const WindowDc screen(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    const HBITMAP sheet = CreateCompatibleBitmap(screen, client.right, client.bottom);
    const HGDIOBJ before = SelectObject(dc, sheet);
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    SendMessageW(control, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x)
            pixels.push_back(GetPixel(dc, x, y));
    }
    SelectObject(dc, before);
    DeleteObject(sheet);
    DeleteDC(dc);
    return pixels;
}

TEST_F(Editor, ItsButtonsUnderlineTheLettersThatReachThem) {
    Script script(dialog);
    script.when(shown("Set alarm"), [this] {
        struct Row {
            int id;
            const wchar_t* drawn;
            const char* read;
        };
        for (const Row& row : {Row{ID_CHKMUTE, L"&Mute", "Mute"}, Row{ID_BTNOK, L"Re&start", "Restart"},
                               Row{ID_BTNCANCEL, L"S&top", "Stop"}}) {
            const HWND button = item(row.id);
            EXPECT_EQ(text(row.id), row.read);
            wchar_t part[3]{};
            EXPECT_EQ(GetWindowTextW(button, part, 3), 2) << row.read;
            RECT at{};
            GetClientRect(button, &at);
            const auto like = [&](const wchar_t* caption) {
                const auto style = static_cast<DWORD>(GetWindowLongPtrW(button, GWL_STYLE));
                const HWND plainOne = CreateWindowExW(0, L"BUTTON", caption, style, 0, 0, at.right, at.bottom,
                                                      dialog.hwnd, nullptr, nullptr, nullptr);
                SendMessageW(plainOne, WM_SETFONT,
                             static_cast<WPARAM>(SendMessageW(button, WM_GETFONT, 0, 0)), 0);
                const std::vector<COLORREF> picture = pictureOf(plainOne);
                DestroyWindow(plainOne);
                return picture;
            };
            const Text caption = windowText(button);
            EXPECT_EQ(pictureOf(button), like(row.drawn)) << row.read;
            EXPECT_NE(pictureOf(button), like(wide(caption))) << row.read;
        }
        closeBox();
    });
    edit(ruleAt(u"16/06/2026", u"12:00:00"));
}

}  // namespace
