// What notes look like on the screen: whatever was drawn before it, and in whatever order, a note looks as if
// it were alone; and a title is cut exactly when there is no room for it.
#include "note/NotePainter.h"

#include <array>
#include <random>

#include "support/BufferedPaint.h"
#include "tests/window/TestNotes.h"

namespace {

struct Picture {
    LONG width = 0;
    LONG height = 0;
    std::vector<std::uint32_t> dots;
    std::uint32_t at(LONG x, LONG y) const { return dots[static_cast<std::size_t>(y * width + x)]; }
    bool operator==(const Picture&) const = default;
};

/// What a window currently shows, including its children.
Picture pictureOf(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof(format.bmiHeader);
    format.bmiHeader.biWidth = client.right;
    format.bmiHeader.biHeight = -client.bottom;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const UniqueBitmap bitmap(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    const UniqueDc memory(CreateCompatibleDC(nullptr));
    const Selected selected(memory.get(), bitmap.get());
    const HDC dc = GetDCEx(window, nullptr, DCX_CACHE);
    BitBlt(memory.get(), 0, 0, client.right, client.bottom, dc, 0, 0, SRCCOPY);
    ReleaseDC(window, dc);
    GdiFlush();
    const auto* const dots = static_cast<const std::uint32_t*>(bits);
    Picture picture{client.right, client.bottom, {dots, dots + client.right * client.bottom}};
    for (std::uint32_t& dot : picture.dots)
        dot &= 0xFFFFFF;
    return picture;
}

void draw(const fpost& note) {
    SendMessageW(note.hwnd, WM_NCACTIVATE, FALSE, 0);  // so that all look alike: the keyboard is elsewhere
    RedrawWindow(note.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

/// Texts that Windows draws in different ways: letter by letter, shaped, reordered, from another font.
constexpr std::array<TextView, 10> kTexts{
    u"milk, bread and butter before the shop closes at seven",
    u"12 €, “quotes”, a dash – and the rest …",
    u"Καλημέρα κόσμε, ένα δύο τρία",
    u"日本語のメモ、買い物リスト",
    u"\u0633\u0644\u0627\u0645 and \u05E9\u05DC\u05D5\u05DD",
    u"\tone\ttab\r\n\ttwo",
    u"e\u0301 a\u0308 \U0001F600 and \U0001F4DD",
    u"Wolkenkratzerfensterputzerleiterwagenverleihstation",
    u"по-русски: молоко, хлеб",
    u"",
};

NoteRecord noteWith(std::size_t kind) {
    const auto at = static_cast<int>(kind);
    NoteRecord note = plainNote(Text(kTexts[kind].substr(0, 12)), 100 + at % 4 * 4500, 100 + at / 4 * 4500);
    note.Nota = kTexts[kind];
    note.backcolor = 0xC0E0FF - at * 0x0A0501;
    note.width = 1500 + at * 275;
    note.height = 3900 - at * 300;
    return note;
}

/// The rectangle around everything in a note's body that is not background, leaving out the grip; empty when
/// there is nothing.
RECT inkOf(const fpost& note, const Picture& picture) {
    RECT ink{picture.width, picture.height, 0, 0};
    const std::uint32_t ground = picture.at(picture.width - 1, picture.height - 1);
    const LONG grip = rectOf(note.pic2).left - rectOf(note.nota).left;
    for (LONG y = 0; y < picture.height; ++y) {
        for (LONG x = 0; x < grip; ++x) {
            if (picture.at(x, y) == ground) continue;
            ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1), y + 1};
        }
    }
    return ink;
}

TEST(NotesSideBySide, EachLooksAsIfItWereAlone) {
    std::vector<NoteRecord> records;
    std::vector<Picture> alone;
    for (std::size_t kind = 0; kind < kTexts.size(); ++kind) {
        records.push_back(noteWith(kind));
        const TestNotes desk(true, {records.back()});
        draw(*desk.desk->Notes.front());
        alone.push_back(pictureOf(desk.desk->Notes.front()->hwnd));
    }
    TestNotes desk(true, records);
    std::vector<std::size_t> order(kTexts.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::mt19937 random(7);
    std::size_t differ = 0;
    // Each after every other one, and then all in shuffled orders.
    for (std::size_t first = 0; first < order.size(); ++first) {
        for (std::size_t second = 0; second < order.size(); ++second) {
            draw(*desk.desk->Notes[first]);
            draw(*desk.desk->Notes[second]);
            differ += pictureOf(desk.desk->Notes[second]->hwnd) == alone[second] ? 0U : 1U;
        }
        std::shuffle(order.begin(), order.end(), random);
        for (const std::size_t at : order)
            draw(*desk.desk->Notes[at]);
        for (const std::size_t at : order)
            EXPECT_TRUE(pictureOf(desk.desk->Notes[at]->hwnd) == alone[at]) << "text " << at;
    }
    EXPECT_EQ(differ, 0U);
}

TEST(NotesSideBySide, EveryKindOfTextIsThere) {
    for (std::size_t kind = 0; kind + 1 < kTexts.size(); ++kind) {
        TestNotes desk(true, {noteWith(kind)});
        const fpost& note = desk.note(1);
        draw(note);
        const Picture body = pictureOf(note.nota);
        const RECT ink = inkOf(note, body);
        EXPECT_GT(ink.right - ink.left, 20) << "text " << kind;
        EXPECT_GT(ink.bottom - ink.top, 6) << "text " << kind;
        EXPECT_LE(ink.right, body.width) << "text " << kind;
    }
}

TEST(NotesSideBySide, ALineThatHasNoRoomIsNotCutInHalf) {
    NoteRecord record = plainNote(u"a");
    record.Nota = u"one\r\ntwo\r\nthree\r\nfour\r\nfive\r\nsix";
    TestNotes desk(true, {record});
    fpost& note = desk.note(1);
    TEXTMETRICW metrics{};
    {
        const WindowDc screen(nullptr);
        const Selected font(screen, desk.desk->look.body.get());
        GetTextMetricsW(screen, &metrics);
    }
    for (int pixels = 0; pixels < metrics.tmHeight; ++pixels) {
        note.pHeight(1200 + desk.desk->look.twips(pixels));
        draw(note);
        const Picture body = pictureOf(note.nota);
        const LONG lines = body.height / metrics.tmHeight;
        EXPECT_LE(inkOf(note, body).bottom, lines * metrics.tmHeight) << body.height;
        EXPECT_GT(inkOf(note, body).bottom, (lines - 1) * metrics.tmHeight) << body.height;
    }
}

// --- What a drawing leaves behind -------------------------------------------------------------------------

TEST(OffScreenPicture, IsUntouchedByTheDrawingBefore) {
    const WindowDc screen(nullptr);
    Canvas canvas;
    const NoteLook look = loadNoteLook();
    const auto drawn = [&] {
        const HDC dc = canvas.begin(screen, 60, 40);
        PatBlt(dc, 0, 0, 60, 40, WHITENESS);
        Rectangle(dc, 5, 5, 55, 35);
        TextOutW(dc, 8, 8, L"Ag", 2);
        std::vector<COLORREF> dots;
        for (int i = 0; i < 60 * 40; ++i)
            dots.push_back(GetPixel(dc, i % 60, i / 60));
        canvas.done();
        return dots;
    };
    const std::vector<COLORREF> clean = drawn();
    for (const bool ended : {true, false}) {
        const HDC dc = canvas.begin(screen, 80, 30);
        IntersectClipRect(dc, 0, 0, 3, 3);
        SetViewportOrgEx(dc, 7, 7, nullptr);
        SelectObject(dc, look.title.get());
        SelectObject(dc, GetStockObject(BLACK_BRUSH));
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, RGB(200, 0, 0));
        SetROP2(dc, R2_NOT);
        SetTextAlign(dc, TA_RIGHT | TA_BOTTOM);
        SaveDC(dc);
        if (ended) canvas.done();
        EXPECT_TRUE(drawn() == clean) << (ended ? "ended" : "broken off");
    }
}

// --- The title --------------------------------------------------------------------------------------------

int widthOf(HFONT font, const Text& text) {
    const WindowDc screen(nullptr);
    const Selected selected(screen, font);
    SIZE size{};
    GetTextExtentPoint32W(screen, wide(text), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

/// A title that is exactly that many pixels wide; empty when no mix of these letters is.
Text titleOfWidth(HFONT font, int wanted) {
    constexpr std::array<char16_t, 4> kLetters{u'W', u'o', u'r', u'i'};
    for (std::size_t mix = 0; mix < 4096; ++mix) {
        Text title(8, u'n');
        for (std::size_t i = 0, rest = mix; i < 6; ++i, rest /= 4)
            title += kLetters[rest % 4];
        while (widthOf(font, title) < wanted)
            title += u'l';
        if (widthOf(font, title) == wanted) return title;
    }
    return {};
}

class TitleOfANote : public InBothStores {};
INSTANTIATE_TEST_SUITE_P(Stores, TitleOfANote, testing::Bool(), storeName);

TEST_P(TitleOfANote, WidensItExactlyWhenItWouldBeCut) {
    for (const bool iconized : {false, true}) {
        NoteRecord narrow = plainNote(u"a");
        narrow.width = 2910;
        narrow.iconized = iconized;
        NoteRecord broad = narrow;
        broad.width = 9000;
        broad.y = 6000;
        const auto desk = run({narrow, broad});
        const NoteLook& look = desk->desk->look;
        fpost& note = desk->note(1);
        RECT client{};
        GetClientRect(note.hwnd, &client);
        const RECT next = rectOf(iconized ? note.pic2 : note.pic);
        const int room = static_cast<int>(next.left - rectOf(note.hwnd).left) - look.px(design::kLeadWidth) -
                         look.px(design::kBorder);
        int tried = 0;
        for (int width = room - 3; width <= room + 4; ++width) {
            const Text title = titleOfWidth(look.title.get(), width);
            if (title.empty()) continue;
            ++tried;
            note.pWidth(2910);
            note.Titolo(title);
            note.CheckTitleWidth();
            EXPECT_EQ(note.pWidth() > 2910, width > room) << width << " in " << room;
            // In either case the whole title is there, as in a note with any amount of room.
            desk->note(2).Titolo(title);
            draw(note);
            draw(desk->note(2));
            const Picture shown = pictureOf(note.lbl);
            const Picture whole = pictureOf(desk->note(2).lbl);
            for (LONG y = 0; y < shown.height; ++y) {
                for (LONG x = look.px(design::kLeadWidth); x < look.px(design::kLeadWidth) + width; ++x) {
                    ASSERT_EQ(shown.at(x, y), whole.at(x, y)) << width << " in " << room << " at " << x;
                }
            }
        }
        EXPECT_GE(tried, 4);
    }
}

}  // namespace
