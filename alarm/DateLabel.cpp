#include "alarm/DateLabel.h"

#include <windowsx.h>

#include "storage/bas_LogError.h"
#include "support/Accessible.h"
#include "support/Window.h"

namespace {

constexpr const char16_t* kClass = u"fmsgDate";
constexpr Twips kTimeGap{90};  // between the year's place and the time

constexpr int kParts = static_cast<int>(kDatePartAreas.size());

/// The width in pixels of a text in the font of a device context.
int extentOf(HDC dc, TextView text) {
    SIZE extent{};
    GetTextExtentPoint32W(dc, wideData(text), static_cast<int>(text.size()), &extent);
    return static_cast<int>(extent.cx);
}

int widthIn(HFONT font, TextView text) {
    const WindowDc screen(nullptr);
    const Selected selected(screen, font);
    return extentOf(screen, text);
}

/// The current date, and which part of it the keyboard is on.
Spoken sayDate(HWND window, int) {
    Spoken said;
    said.role = Role::SpinButton;
    said.name = u"Date";
    const auto* const label = formOf<DateLabel>(window);
    if (label != nullptr) said.value = windowText(window).append(u", ").append(label->chosenPart());
    return said;
}

constexpr Voice kVoice{0, sayDate};

void draw(HDC dc, TextView text, RECT area, UINT align) {
    DrawTextW(dc, wideData(text), static_cast<int>(text.size()), &area,
              align | DT_SINGLELINE | DT_VCENTER | DT_NOCLIP | DT_NOPREFIX);
}

}  // namespace

void registerDateLabel() {
    registerClass(kClass, formProc<DateLabel>, 0);
}

HWND createDateLabel(DateLabel& label, HWND form, int id, HFONT font) {
    label.dpi = screenDpi();
    const auto menu = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
    const HWND window =
        CreateWindowExW(0, wide(kClass), L"", WS_CHILD | WS_CLIPSIBLINGS | WS_TABSTOP | WS_BORDER, 0, 0, 0, 0,
                        form, menu, GetModuleHandleW(nullptr), &label);
    SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return window;
}

int DateLabel::width(HFONT font) const {
    return timeLeft() + widthIn(font, u"00:00:00") + px(kTimeGap);
}

int DateLabel::px(Twips twips) const {
    return toPx(twips, dpi).n;
}

RECT DateLabel::areaOf(int index, int height) const {
    const DatePartArea& area = kDatePartAreas[static_cast<std::size_t>(index)];
    return {px(area.left), 0, px(area.right), height};
}

int DateLabel::timeLeft() const {
    return px(kDatePartAreas.back().right + kTimeGap);
}

bool DateLabel::fits(HFONT font) const {
    const RECT day = areaOf(0, 0);
    const RECT year = areaOf(2, 0);
    return widthIn(font, u"00") <= day.right - day.left && widthIn(font, u"0000") <= year.right - year.left;
}

LRESULT DateLabel::onMessage(UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_GETOBJECT:
            return answerAccessible(hwnd, wp, lp, kVoice);
        case WM_PAINT:
            paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SETFONT:
            setFont(reinterpret_cast<HFONT>(wp));
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(font_);
        case WM_SETTEXT: {
            const LRESULT set = DefWindowProcW(hwnd, message, wp, lp);
            InvalidateRect(hwnd, nullptr, FALSE);
            tellValueChanged(hwnd);
            return set;
        }
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
            InvalidateRect(hwnd, nullptr, FALSE);
            return 0;
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS |
                   DLGC_WANTCHARS;  // Space is a click here, not a letter that looks for a mnemonic
        case WM_KEYDOWN:
            if (onKey(wp)) return 0;
            break;
        case WM_LBUTTONDOWN: {
            SetFocus(hwnd);
            if ((wp & (MK_SHIFT | MK_CONTROL)) != 0 || GetKeyState(VK_MENU) < 0) return 0;
            const int x = GET_X_LPARAM(lp);
            if (const auto part = datePartAt(toTwips(Px{x}, dpi))) {
                chosen_ = static_cast<int>(*part);
                clicked(*part);
            }
            return 0;
        }
        case WM_MOUSEMOVE:
            onMouseMove();
            return 0;
        case WM_MOUSELEAVE:
            inside_ = false;
            hovered(false);
            return 0;
        case WM_NCDESTROY: {
            const HWND gone = std::exchange(hwnd, nullptr);
            return DefWindowProcW(gone, message, wp, lp);
        }
        default:
            break;
    }
    return DefWindowProcW(hwnd, message, wp, lp);
}

void DateLabel::onEscaped(UINT message) noexcept {
    WriteLog(u"DateLabel", u"message failed", static_cast<std::int64_t>(message));
}

TextView DateLabel::chosenPart() const {
    switch (kDatePartAreas[static_cast<std::size_t>(chosen_)].part) {
        case DatePart::Day:
            return u"day";
        case DatePart::Month:
            return u"month";
        case DatePart::Year:
            return u"year";
    }
    return {};
}

bool DateLabel::onKey(WPARAM key) {
    switch (key) {
        case VK_LEFT:
        case VK_RIGHT:
            chosen_ = (chosen_ + (key == VK_LEFT ? kParts - 1 : 1)) % kParts;
            InvalidateRect(hwnd, nullptr, FALSE);
            tellValueChanged(hwnd);
            return true;
        case VK_SPACE:
            clicked(kDatePartAreas[static_cast<std::size_t>(chosen_)].part);
            return true;
        default:
            return false;
    }
}

void DateLabel::onMouseMove() {
    if (inside_) return;
    inside_ = true;
    TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, hwnd, 0};
    TrackMouseEvent(&track);
    hovered(true);
}

// The places of the digits are fixed but the dialog's font is not, so the nearest size that fills them is
// used.
void DateLabel::setFont(HFONT font) {
    font_ = font;
    LOGFONTW face{};
    if (GetObjectW(font, sizeof(face), &face) == 0 || face.lfHeight >= 0) return;
    const LONG most = face.lfHeight + face.lfHeight / 3;
    const LONG step = fits(font) ? -1 : 1;
    for (face.lfHeight += step; face.lfHeight < 0 && face.lfHeight >= most; face.lfHeight += step) {
        UniqueFont next(CreateFontIndirectW(&face));
        if (!next || (step < 0 && !fits(next.get()))) return;
        fitted_ = std::move(next);
        if (step > 0 && fits(fitted_.get())) return;
    }
}

void DateLabel::paint() {
    const BufferedPaint paint(hwnd, canvas_);
    const HDC dc = paint.dc();
    const RECT& client = paint.client();
    FillRect(dc, &client, GetSysColorBrush(COLOR_WINDOW));
    const Selected digits(dc, fitted_ ? fitted_.get() : font_);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));

    const Text label = windowText(hwnd);
    const Text date = datePart(label);
    const int height = static_cast<int>(client.bottom);
    if (date.size() == 10) {  // "dd/mm/yyyy"
        const TextView text = date;
        const TextView parts[] = {text.substr(0, 2), text.substr(3, 2), text.substr(6)};
        // In their places but close together, since a gap beside a slash would tear the date apart.
        RECT between{};
        for (int i = 0; i < kParts; ++i) {
            RECT place = areaOf(i, height);
            const int length = extentOf(dc, parts[i]);
            if (i == 0) place.left = place.right - length;
            draw(dc, parts[i], place, DT_LEFT);
            between.right = place.left;
            if (i > 0) draw(dc, u"/", between, DT_CENTER);
            between = {place.left + length, 0, 0, height};
        }
        const std::size_t end = label.find(date) + date.size();
        RECT rest = client;
        rest.left = timeLeft();
        const Text time =
            label.substr(label.find_first_not_of(u' ', end) == Text::npos ? label.size() : end + 1);
        const Selected plain(dc, font_);
        SetTextColor(dc, GetSysColor(COLOR_GRAYTEXT));
        draw(dc, time, rest, DT_LEFT);
    } else {
        RECT all = client;
        all.left = areaOf(0, height).left;
        draw(dc, label, all, DT_LEFT);
    }
    if (GetFocus() == hwnd) {
        RECT focus = areaOf(chosen_, height);
        InflateRect(&focus, 1, -px(Twips{30}));
        SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
        DrawFocusRect(dc, &focus);
    }
}
