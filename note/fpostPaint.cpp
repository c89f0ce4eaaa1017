// What a note shows. Each part is drawn off screen and copied at once, or drawn in a single call, so that
// nothing flickers.
#include "note/NotePainter.h"
#include "note/fpost.h"
#include "support/BufferedPaint.h"

NotePainter fpost::painter() const {
    return {*host->look, shownBack, record.iconized, active};
}

void fpost::paintFrame() {
    const HDC dc = GetWindowDC(hwnd);
    RECT rect{};
    GetWindowRect(hwnd, &rect);
    OffsetRect(&rect, -rect.left, -rect.top);
    painter().frame(dc, rect);
    ReleaseDC(hwnd, dc);
}

void fpost::showActive(bool on) {
    active = on;
    paintFrame();
    RECT client{};
    GetClientRect(hwnd, &client);
    const RECT line = painter().lineUnderTitle(client);
    InvalidateRect(hwnd, &line, FALSE);
}

void fpost::paint() {
    PAINTSTRUCT area{};
    const HDC dc = BeginPaint(hwnd, &area);
    RECT client{};
    GetClientRect(hwnd, &client);
    painter().sheet(dc, area.rcPaint, client);
    EndPaint(hwnd, &area);
}

void fpost::paintPart(HWND part) {
    const NotePainter look = painter();
    if (part == pic_time) {
        PAINTSTRUCT area{};
        const HDC dc = BeginPaint(part, &area);
        RECT client{};
        GetClientRect(part, &client);
        look.strip(dc, client, windowText(part));
        EndPaint(part, &area);
        return;
    }
    const BufferedPaint buffer(part, *host->canvas);
    const HDC dc = buffer.dc();
    const RECT& area = buffer.client();
    if (part == lbl) {
        look.title(dc, area, record.Titolo);
    } else if (part == nota) {
        look.body(dc, area, windowText(part));
    } else if (part == lbl2) {
        look.buttons(dc, area);
    } else if (part == pic) {
        look.bin(dc, area);
    } else if (part == pic2) {
        look.grip(dc, area);
    }
}
