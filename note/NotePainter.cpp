#include "note/NotePainter.h"

#include <algorithm>

namespace {

constexpr int kStripLinePercent = 22;  // the line under the title
constexpr int kActivePercent = 100;    // that line and the frame of the note that has the keyboard
constexpr int kPicturePercent = 70;
constexpr UINT kTitleFormat = DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS | DT_EXPANDTABS;
// Lines and tabs as in a multi-line editor of the same width.
constexpr UINT kBodyFormat = DT_EDITCONTROL | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

void fill(HDC dc, const RECT& area, Rgb color) {
    SetDCBrushColor(dc, color);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void write(HDC dc, TextView text, RECT area, UINT format) {
    DrawTextW(dc, wideData(text), static_cast<int>(text.size()), &area, format);
}

/// As much of a very long text as there can be room for, because Windows would measure all of it.
TextView seenOf(TextView text, const RECT& area) {
    constexpr LONG kAlways = 4096;  // letters
    constexpr LONG kFewest = 16;    // square pixels of a letter
    const LONG most = std::max((area.right - area.left) * (area.bottom - area.top) / kFewest, kAlways);
    return clipped(text, static_cast<std::size_t>(most));
}

/// A rectangle of this size in the middle of a hot area.
RECT centred(const HotArea& area, Twips width, Twips height, const NoteLook& look) {
    const RECT room = look.px(area);
    const LONG across = look.px(width);
    const LONG down = look.px(height);
    const LONG left = (room.left + room.right - across) / 2;
    const LONG top = (room.top + room.bottom - down) / 2;
    return {left, top, left + across, top + down};
}

/// Draws pictures in one ink, with lines that grow with the screen's scaling.
class Pencil {
public:
    Pencil(HDC dc, const NoteLook& look, Rgb ink)
        : dc_(dc), thick_(std::max(1, look.px(design::kLine))), ink_(ink) {}

    int thick() const { return thick_; }
    void bar(LONG left, LONG top, LONG right, LONG bottom) const {
        fill(dc_, {left, top, right, bottom}, ink_);
    }
    void box(const RECT& r) const {
        bar(r.left, r.top, r.right, r.top + 2 * thick_);
        bar(r.left, r.bottom - thick_, r.right, r.bottom);
        bar(r.left, r.top, r.left + thick_, r.bottom);
        bar(r.right - thick_, r.top, r.right, r.bottom);
    }
    /// Two crossing diagonals, each row two lines thick.
    void cross(const RECT& r) const {
        const LONG side = r.right - r.left;
        const LONG wide = 2 * thick_;
        for (LONG i = 0; i < side; ++i) {
            const LONG from = std::clamp<LONG>(i - wide / 2, 0, side - wide);
            bar(r.left + from, r.top + i, r.left + from + wide, r.top + i + 1);
            bar(r.right - from - wide, r.top + i, r.right - from, r.top + i + 1);
        }
    }

private:
    HDC dc_;
    int thick_;
    Rgb ink_;
};

/// A double arrow of filled triangles along one axis of `r`.
void drawArrow(const Pencil& pencil, const RECT& r, bool horizontal) {
    const LONG middleX = (r.left + r.right) / 2;
    const LONG middleY = (r.top + r.bottom) / 2;
    const LONG half = horizontal ? (r.bottom - r.top) / 2 : (r.right - r.left) / 2;
    const int thick = pencil.thick();
    for (LONG i = 0; i < half; ++i) {  // row by row: whole pixels, no fringe
        if (horizontal) {
            pencil.bar(r.left + i, middleY - i, r.left + i + 1, middleY + i + 1);
            pencil.bar(r.right - i - 1, middleY - i, r.right - i, middleY + i + 1);
        } else {
            pencil.bar(middleX - i, r.top + i, middleX + i + 1, r.top + i + 1);
            pencil.bar(middleX - i, r.bottom - i - 1, middleX + i + 1, r.bottom - i);
        }
    }
    if (horizontal) {
        pencil.bar(r.left + half, middleY - thick / 2, r.right - half, middleY - thick / 2 + thick);
    } else {
        pencil.bar(middleX - thick / 2, r.top + half, middleX - thick / 2 + thick, r.bottom - half);
    }
}

/// A waste bin: lid with handle, body with two slits.
void drawBin(const Pencil& pencil, const NoteLook& look) {
    const RECT r = centred(design::kDeleteButton, design::kBin, design::kBin, look);
    const LONG t = pencil.thick();
    const LONG middle = (r.left + r.right) / 2;
    pencil.bar(middle - 2 * t, r.top, middle + 2 * t, r.top + t);
    pencil.bar(r.left, r.top + t, r.right, r.top + 2 * t);
    const RECT body{r.left + t, r.top + 3 * t, r.right - t, r.bottom};
    pencil.bar(body.left, body.top, body.left + t, body.bottom);
    pencil.bar(body.right - t, body.top, body.right, body.bottom);
    pencil.bar(body.left, body.bottom - t, body.right, body.bottom);
    const LONG third = (body.right - body.left) / 3;
    pencil.bar(body.left + third, body.top, body.left + third + t, body.bottom - 2 * t);
    pencil.bar(body.right - third - t, body.top, body.right - third, body.bottom - 2 * t);
}

}  // namespace

void NotePainter::frame(HDC dc, RECT window) const {
    const Rgb line = active ? shaded(back, kActivePercent) : frameColor(back);
    SetDCBrushColor(dc, line);
    for (int i = look.px(design::kBorder); i > 0; --i) {
        FrameRect(dc, &window, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
        InflateRect(&window, -1, -1);
    }
}

RECT NotePainter::lineUnderTitle(const RECT& client) const {
    const int top = look.px(design::kStripHeight);
    return {client.left, top, client.right, top + look.px(design::kBorder)};
}

void NotePainter::sheet(HDC dc, const RECT& area, const RECT& client) const {
    fill(dc, area, back);
    fill(dc, lineUnderTitle(client), shaded(back, active ? kActivePercent : kStripLinePercent));
}

void NotePainter::title(HDC dc, const RECT& area, TextView text) const {
    fill(dc, area, back);
    RECT rect = area;
    rect.left = look.px(design::kLeadWidth);
    rect.top = (area.bottom - look.titleHeight) / 2;
    rect.right = rect.left + titleRoom(area.right);
    prepareText(dc);
    const Selected font(dc, look.title.get());
    write(dc, text, rect, kTitleFormat);
}

int NotePainter::titleRoom(int clientWidth) const {
    const int grip = iconized ? look.px(design::kGripWidth) : 0;
    return clientWidth - look.px(design::kLeadWidth) - look.px(design::kPicWidth) - grip;
}

int NotePainter::titleWidth(TextView text) const {
    const WindowDc screen(nullptr);
    const Selected font(screen, look.title.get());
    RECT needed{};
    // Measured as it is drawn, including tabs, so that a note is only widened for a title that would be cut.
    DrawTextW(screen, wideData(text), static_cast<int>(text.size()), &needed,
              (kTitleFormat & ~UINT{DT_END_ELLIPSIS}) | DT_CALCRECT);
    return static_cast<int>(needed.right);
}

void NotePainter::body(HDC dc, const RECT& area, TextView text) const {
    fill(dc, area, back);
    prepareText(dc);
    const Selected font(dc, look.body.get());
    RECT lines = area;  // as in an editor, no line is cut in half, and at least one is shown
    lines.bottom = area.top + std::max(1L, (area.bottom - area.top) / look.bodyHeight) * look.bodyHeight;
    write(dc, seenOf(text, area), lines, kBodyFormat);
}

void NotePainter::buttons(HDC dc, const RECT& area) const {
    fill(dc, area, back);
    const Pencil pencil(dc, look, shaded(back, kPicturePercent));
    const RECT r = centred(design::kIconizeButton, design::kSign, design::kSign, look);
    if (iconized) {
        pencil.box(r);
    } else {
        pencil.bar(r.left, r.bottom - 2 * pencil.thick(), r.right, r.bottom);
    }
    pencil.cross(centred(design::kCloseButton, design::kSign, design::kSign, look));
}

void NotePainter::bin(HDC dc, const RECT& area) const {
    fill(dc, area, back);
    drawBin(Pencil(dc, look, shaded(back, kPicturePercent)), look);
}

void NotePainter::grip(HDC dc, const RECT& area) const {
    fill(dc, area, back);
    const Pencil pencil(dc, look, shaded(back, kPicturePercent));
    drawArrow(pencil, centred(design::kWidthArrow, design::kArrowLength, design::kArrowBreadth, look), true);
    if (iconized) return;  // it is as high as the title strip and stays so
    drawArrow(pencil, centred(design::kHeightArrow, design::kArrowBreadth, design::kArrowLength, look),
              false);
}

void NotePainter::strip(HDC dc, const RECT& area, TextView text) const {
    // Background and text in one call, which needs no off-screen picture; this is drawn every second.
    const int indent = look.px(design::kTimeText);
    const Selected font(dc, look.body.get());
    SetTextColor(dc, inkOn(back));
    SetBkColor(dc, back);
    SIZE extent{};
    GetTextExtentPoint32W(dc, wideData(text), static_cast<int>(text.size()), &extent);
    const bool fits = indent + extent.cx <= area.right;
    ExtTextOutW(dc, indent, indent, ETO_OPAQUE | ETO_CLIPPED, &area, wideData(text),
                fits ? static_cast<UINT>(text.size()) : 0, nullptr);
    if (fits) return;
    // On a narrow note it is cut and ends in dots, since "12 d   5" would be read as five hours.
    write(dc, text, {indent, indent, area.right, area.bottom}, DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void NotePainter::prepareText(HDC dc) const {
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, inkOn(back));
}
