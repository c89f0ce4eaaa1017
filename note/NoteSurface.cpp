#include "note/NoteSurface.h"

#include "note/fpost.h"
#include "support/BufferedPaint.h"

NotePainter NoteSurface::painter() const {
    return {*note_.host->look, shown_, note_.record.iconized, active_};
}

void NoteSurface::color(Rgb color) {
    if (shown_ == color) return;
    shown_ = color;
    repaint();
}

void NoteSurface::repaint() const {
    if (!note_.visible()) return;
    RedrawWindow(note_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_FRAME);
}

HBRUSH NoteSurface::editorColors(HDC dc) const {
    const Rgb ground = editorGround(shown_);
    SetTextColor(dc, inkOn(ground));
    SetBkColor(dc, ground);
    SetDCBrushColor(dc, ground);
    return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
}

// --- Painting ---------------------------------------------------------------------------------------------

// Each part is drawn off screen and copied at once, or drawn in a single call, so that nothing flickers.

void NoteSurface::paintFrame() const {
    const HDC dc = GetWindowDC(note_.hwnd);
    RECT rect{};
    GetWindowRect(note_.hwnd, &rect);
    OffsetRect(&rect, -rect.left, -rect.top);
    painter().frame(dc, rect);
    ReleaseDC(note_.hwnd, dc);
}

void NoteSurface::showActive(bool on) {
    active_ = on;
    paintFrame();
    RECT client{};
    GetClientRect(note_.hwnd, &client);
    const RECT line = painter().lineUnderTitle(client);
    InvalidateRect(note_.hwnd, &line, FALSE);
}

void NoteSurface::paint() const {
    PAINTSTRUCT area{};
    const HDC dc = BeginPaint(note_.hwnd, &area);
    RECT client{};
    GetClientRect(note_.hwnd, &client);
    painter().sheet(dc, area.rcPaint, client);
    EndPaint(note_.hwnd, &area);
}

void NoteSurface::paintPart(HWND part) const {
    const NotePainter look = painter();
    if (part == note_.pic_time) {
        PAINTSTRUCT area{};
        const HDC dc = BeginPaint(part, &area);
        RECT client{};
        GetClientRect(part, &client);
        look.strip(dc, client, windowText(part));
        EndPaint(part, &area);
        return;
    }
    const BufferedPaint buffer(part, *note_.host->canvas);
    const HDC dc = buffer.dc();
    const RECT& area = buffer.client();
    if (part == note_.lbl) {
        look.title(dc, area, note_.record.Titolo);
    } else if (part == note_.nota) {
        look.body(dc, area, windowText(part));
    } else if (part == note_.lbl2) {
        look.buttons(dc, area);
    } else if (part == note_.pic) {
        look.bin(dc, area);
    } else if (part == note_.pic2) {
        look.grip(dc, area);
    }
}
