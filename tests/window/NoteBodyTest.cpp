// The body as its label draws it, beside the same text drawn whole by the editor: not a dot may differ.
#include "note/NoteBody.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>

#include "support/WinText.h"

namespace {

constexpr int kMostWidth = 300;  // pixels
constexpr int kMostHeight = 200;

/// A white picture that is drawn on in black.
class Paper {
public:
    Paper() {
        BITMAPINFO format{};
        format.bmiHeader.biSize = sizeof(format.bmiHeader);
        format.bmiHeader.biWidth = kMostWidth;
        format.bmiHeader.biHeight = -kMostHeight;
        format.bmiHeader.biPlanes = 1;
        format.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_.reset(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
        dots_ = static_cast<const std::uint32_t*>(bits);
        SelectObject(dc_.get(), bitmap_.get());
        PatBlt(dc_.get(), 0, 0, kMostWidth, kMostHeight, WHITENESS);
        SetBkMode(dc_.get(), TRANSPARENT);
        SetTextColor(dc_.get(), RGB(0, 0, 0));
    }
    HDC dc() const { return dc_.get(); }
    std::vector<std::uint32_t> dots() const {
        GdiFlush();
        std::vector<std::uint32_t> all(dots_, dots_ + kMostWidth * kMostHeight);
        for (std::uint32_t& dot : all)
            dot &= 0xFFFFFF;
        return all;
    }

private:
    UniqueBitmap bitmap_;
    UniqueDc dc_{CreateCompatibleDC(nullptr)};
    const std::uint32_t* dots_ = nullptr;
};

class NoteBodyDrawn : public testing::Test {
protected:
    NoteBodyDrawn() {
        for (HWND* editor : {&ours_, &whole_}) {
            *editor = CreateWindowExW(0, L"EDIT", L"", WS_CHILD | ES_MULTILINE | ES_AUTOVSCROLL, 0, 0, 200,
                                      100, parent_, nullptr, GetModuleHandleW(nullptr), nullptr);
            SendMessageW(*editor, WM_SETFONT, reinterpret_cast<WPARAM>(look_.body.get()), FALSE);
            SendMessageW(*editor, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
        }
    }
    ~NoteBodyDrawn() override { DestroyWindow(parent_); }

    void resize(int width, int height) {
        for (const HWND editor : {ours_, whole_})
            SetWindowPos(editor, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    std::vector<std::uint32_t> drawn(const Text& text) {
        const Paper paper;
        body_.draw(paper.dc(), ours_, text, look_);
        return paper.dots();
    }
    std::vector<std::uint32_t> wanted(const Text& text) const {
        const Paper paper;
        SetWindowTextW(whole_, wide(text));
        SendMessageW(whole_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(paper.dc()), PRF_CLIENT);
        return paper.dots();
    }

    NoteLook look_ = loadNoteLook();
    NoteBody body_;
    HWND parent_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, kMostWidth, kMostHeight, nullptr,
                                   nullptr, GetModuleHandleW(nullptr), nullptr);
    HWND ours_ = nullptr;
    HWND whole_ = nullptr;
};

/// Nothing when both are alike; else where and how they differ.
std::string difference(const std::vector<std::uint32_t>& drawn, const std::vector<std::uint32_t>& wanted) {
    int count = 0;
    std::string first;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        if (drawn[i] == wanted[i]) continue;
        if (count++ == 0) {
            char words[100];
            std::snprintf(words, sizeof(words), "dot %d, %d is %06x instead of %06x",
                          static_cast<int>(i % kMostWidth), static_cast<int>(i / kMostWidth), drawn[i],
                          wanted[i]);
            first = words;
        }
    }
    return count == 0 ? "" : first + " and " + std::to_string(count - 1) + " more";
}

bool isBlank(const std::vector<std::uint32_t>& dots) {
    return std::all_of(dots.begin(), dots.end(), [](std::uint32_t dot) { return dot == 0xFFFFFF; });
}

/// Ordinary words for the most part; in some texts also what breaks lines, reorders or shapes letters.
Text randomText(std::mt19937& random) {
    constexpr std::array<const char16_t*, 14> kOrdinary{u"milk ",
                                                        u"and ",
                                                        u"a ",
                                                        u"Straße ",
                                                        u"gjpqy ",
                                                        u"\r\n",
                                                        u"  ",
                                                        u"Wolkenkratzerfensterputzerleiter ",
                                                        u"WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW",
                                                        u"iiiiii ",
                                                        u"żółć ",
                                                        u"1,5 % ",
                                                        u"AVATAR To ",
                                                        u"-"};
    constexpr std::array<const char16_t*, 8> kOther{
        u"\t",     u"e\u0301 ", u"\u05D0\u05D1\u05D2 ",       u"日本語",
        u"\u00A0", u"\u00ADso", u"\u0633\u0644\u0627\u0645 ", u"по-русски "};
    const bool mixed = random() % 3 == 0;
    Text text;
    for (auto left = random() % 60; left > 0; --left) {
        if (mixed && random() % 6 == 0) {
            text += kOther[random() % kOther.size()];
        } else {
            text += kOrdinary[random() % kOrdinary.size()];
        }
    }
    return text;
}

TEST_F(NoteBodyDrawn, IsTheEditorsTextToTheDot) {
    std::mt19937 random(1);
    int withText = 0;
    for (int round = 0; round < 60; ++round) {
        const Text text = randomText(random);
        body_.forget();
        for (int size = 0; size < 3; ++size) {  // the text stays, the note is made larger and smaller
            resize(static_cast<int>(20 + random() % (kMostWidth - 20)),
                   static_cast<int>(random() % kMostHeight));
            const std::vector<std::uint32_t> dots = drawn(text);
            ASSERT_EQ(difference(dots, wanted(text)), "") << "round " << round << ", size " << size;
            withText += isBlank(dots) ? 0 : 1;
        }
    }
    EXPECT_GT(withText, 120);
}

TEST_F(NoteBodyDrawn, IsTheSameAtTheSecondDrawing) {
    resize(200, 100);
    for (const Text text : {u"milk and bread, and a line that wraps over", u"\tmilk and bread"}) {
        body_.forget();
        const std::vector<std::uint32_t> first = drawn(text);
        EXPECT_FALSE(isBlank(first));
        EXPECT_EQ(difference(drawn(text), first), "");
    }
}

TEST_F(NoteBodyDrawn, ShowsMoreOfTheTextWhenTheNoteGrowsHigher) {
    const Text text = u"one\r\ntwo\r\nthree\r\nfour\r\nfive";
    resize(200, 2 * look_.bodyHeight);
    ASSERT_EQ(difference(drawn(text), wanted(text)), "");
    resize(200, 5 * look_.bodyHeight);
    EXPECT_EQ(difference(drawn(text), wanted(text)), "");
}

TEST_F(NoteBodyDrawn, KeepsNothingInTheEditor) {
    resize(200, 100);
    for (const Text text : {u"milk", u"\tmilk"}) {
        body_.forget();
        drawn(text);
        EXPECT_EQ(GetWindowTextLengthW(ours_), 0);
    }
}

}  // namespace
