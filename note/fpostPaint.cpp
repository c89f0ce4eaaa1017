// How a note looks. Every part is drawn off screen and copied at once, or in a single call, so nothing
// flickers; pictures are drawn from the hot areas that take the clicks.
#include <algorithm>

#include "note/fpost.h"
#include "support/BufferedPaint.h"

namespace {

constexpr int kStripLinePercent = 22;  // the line under the title
constexpr int kActivePercent = 100;    // that line and the frame, where the keyboard is
constexpr int kPicturePercent = 70;

// Sizes of the pictures in twips.
constexpr int kSign = 120;
constexpr int kBin = 165;
constexpr int kArrowLength = 130;
constexpr int kArrowBreadth =
    90;  // the heads take two thirds of the length: a shaft is left at every scaling

/// A rectangle of `width` x `height` twips in the middle of a hot area.
RECT centred(const HotArea& area, int width, int height, const NoteLook& look) {
    const RECT room = look.px(area);
    const LONG across = look.px(Twips{width});
    const LONG down = look.px(Twips{height});
    const LONG left = (room.left + room.right - across) / 2;
    const LONG top = (room.top + room.bottom - down) / 2;
    return {left, top, left + across, top + down};
}

/// Draws pictures in one ink, with lines that grow with the screen's scaling.
class Pencil {
public:
    Pencil(HDC dc, const NoteLook& look, Rgb ink)
        : dc_(dc), thick_(std::max(1, look.px(Twips{15}))), brush_(CreateSolidBrush(ink)) {}

    int thick() const { return thick_; }
    void bar(LONG left, LONG top, LONG right, LONG bottom) const {
        const RECT rect{left, top, right, bottom};
        FillRect(dc_, &rect, brush_.get());
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
    UniqueBrush brush_;
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

void drawIconizeButton(const Pencil& pencil, const NoteLook& look, bool iconized) {
    const RECT r = centred(design::kIconizeButton, kSign, kSign, look);
    if (iconized) {
        pencil.box(r);
    } else {
        pencil.bar(r.left, r.bottom - 2 * pencil.thick(), r.right, r.bottom);
    }
}

/// A waste bin: lid with handle, body with two slits.
void drawDeleteButton(const Pencil& pencil, const NoteLook& look) {
    const RECT r = centred(design::kDeleteButton, kBin, kBin, look);
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

void fpost::paintFrame() {
    const HDC dc = GetWindowDC(hwnd);
    RECT rect{};
    GetWindowRect(hwnd, &rect);
    OffsetRect(&rect, -rect.left, -rect.top);
    const UniqueBrush line(
        CreateSolidBrush(active ? shaded(shownBack, kActivePercent) : frameColor(shownBack)));
    for (int i = host->look->px(design::kBorder); i > 0; --i) {
        FrameRect(dc, &rect, line.get());
        InflateRect(&rect, -1, -1);
    }
    ReleaseDC(hwnd, dc);
}

void fpost::showActive(bool on) {
    active = on;
    paintFrame();
    const RECT line = lineUnderTitle();
    InvalidateRect(hwnd, &line, FALSE);
}

RECT fpost::lineUnderTitle() const {
    RECT line{};
    GetClientRect(hwnd, &line);
    line.top = host->look->px(design::kStripHeight);
    line.bottom = line.top + host->look->px(design::kBorder);
    return line;
}

void fpost::paint() {
    PAINTSTRUCT area{};
    const HDC dc = BeginPaint(hwnd, &area);
    FillRect(dc, &area.rcPaint, backBrush.get());
    const RECT line = lineUnderTitle();
    const UniqueBrush brush(CreateSolidBrush(shaded(shownBack, active ? kActivePercent : kStripLinePercent)));
    FillRect(dc, &line, brush.get());
    EndPaint(hwnd, &area);
}

void fpost::paintPart(HWND part) {
    if (part == pic_time) {
        PAINTSTRUCT area{};
        paintStrip(BeginPaint(part, &area));
        EndPaint(part, &area);
        return;
    }
    const BufferedPaint buffer(part, *host->canvas);
    const HDC dc = buffer.dc();
    FillRect(dc, &buffer.client(), backBrush.get());
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, inkOn(shownBack));
    const Pencil pencil(dc, *host->look, shaded(shownBack, kPicturePercent));
    if (part == lbl) {
        paintTitle(dc, buffer.client());
    } else if (part == nota) {
        // While it is edited, the editor lies over all of it.
        if (!bodyBeingEdited) shownBody.draw(dc, txtNota, windowText(nota), *host->look);
    } else if (part == lbl2) {
        drawIconizeButton(pencil, *host->look, record.iconized);
        pencil.cross(centred(design::kCloseButton, kSign, kSign, *host->look));
    } else if (part == pic) {
        drawDeleteButton(pencil, *host->look);
    } else if (part == pic2) {
        const NoteLook& look = *host->look;
        drawArrow(pencil, centred(design::kWidthArrow, kArrowLength, kArrowBreadth, look), true);
        if (!record.iconized) {
            drawArrow(pencil, centred(design::kHeightArrow, kArrowBreadth, kArrowLength, look), false);
        }
    }
}

void fpost::paintTitle(HDC dc, const RECT& area) const {
    // Exactly where the title's editor has its text, so that nothing jumps when it opens.
    RECT inner{};
    SendMessageW(txtTitle, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&inner));
    RECT rect = area;
    rect.left = host->look->px(design::kLeadWidth) + inner.left;
    rect.top = (area.bottom - host->look->titleHeight) / 2 + inner.top;
    rect.right -=
        host->look->px(design::kPicWidth) + (record.iconized ? host->look->px(design::kGripWidth) : 0);
    const Selected font(dc, host->look->title.get());
    DrawTextW(dc, wideData(record.Titolo), static_cast<int>(record.Titolo.size()), &rect,
              DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS | DT_EXPANDTABS);
}

void fpost::paintStrip(HDC dc) const {
    // Ground and text in one call: that needs no off-screen picture, and this is drawn every second.
    RECT area{};
    GetClientRect(pic_time, &area);
    const int indent = host->look->px(design::kTimeText);
    const Text text = windowText(pic_time);
    const Selected font(dc, host->look->body.get());
    SetTextColor(dc, inkOn(shownBack));
    SetBkColor(dc, shownBack);
    SIZE extent{};
    GetTextExtentPoint32W(dc, wideData(text), static_cast<int>(text.size()), &extent);
    const bool fits = indent + extent.cx <= area.right;
    ExtTextOutW(dc, indent, indent, ETO_OPAQUE | ETO_CLIPPED, &area, wideData(text),
                fits ? static_cast<UINT>(text.size()) : 0, nullptr);
    if (fits) return;
    // A narrow note cuts it short, and dots say so: "12 d   5" would be read as five hours.
    area.left = indent;
    area.top = indent;
    DrawTextW(dc, wideData(text), static_cast<int>(text.size()), &area,
              DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}
