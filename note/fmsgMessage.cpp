// The message face and the About face: their controls, sizes and links.
#include <algorithm>

#include "note/About.h"
#include "note/NoteColor.h"
#include "note/ShellExecuteExt.h"
#include "note/fmsg.h"
#include "resources/resource.h"

namespace {

// Dialog units.
constexpr int kMargin = 7;
constexpr int kGap = 4;
constexpr int kLinkGap = 3;
constexpr int kButtonWidth = 50;
constexpr int kButtonHeight = 14;
constexpr int kLeastWidth = 100;

constexpr int kOverhang = 48;  // part of a line's width

constexpr int kLinks[] = {ID_LBLMAILTO, ID_LBLWEBURL};

struct SystemIcon {
    MsgIcon icon;
    LPCWSTR resource;
    const char16_t* name;  ///< for screen readers
};

const SystemIcon kIcons[] = {
    {MsgIcon::Critical, IDI_ERROR, u"Error"},
    {MsgIcon::Question, IDI_QUESTION, u"Question"},
    {MsgIcon::Exclamation, IDI_WARNING, u"Warning"},
    {MsgIcon::Information, IDI_INFORMATION, u"Information"},
};

HICON loadIcon(HINSTANCE module, LPCWSTR resource) {
    return static_cast<HICON>(LoadImageW(module, resource, IMAGE_ICON, GetSystemMetrics(SM_CXICON),
                                         GetSystemMetrics(SM_CYICON), LR_SHARED));
}

/// The system's colour for links, or the first of two others that is readable on the system's background.
COLORREF linkColor() {
    constexpr COLORREF kBlue = RGB(0, 102, 204);
    const COLORREF paper = GetSysColor(COLOR_WINDOW);
    for (const COLORREF color : {GetSysColor(COLOR_HOTLIGHT), kBlue}) {
        if (isLegible(color, paper)) return color;
    }
    return GetSysColor(COLOR_WINDOWTEXT);
}

UniqueFont underlined(HFONT font) {
    LOGFONTW face{};
    if (font == nullptr || GetObjectW(font, sizeof(face), &face) == 0) return nullptr;
    face.lfUnderline = TRUE;
    return UniqueFont(CreateFontIndirectW(&face));
}

}  // namespace

// Their order is the Tab order; the frame comes last, so that it is below what it contains.
void fmsg::createMessageControls() {
    constexpr DWORD kButton = WS_TABSTOP | BS_NOTIFY;
    grid_.add(hwnd, L"STATIC", {}, SS_OWNERDRAW | SS_NOPREFIX, ID_LBLMSG);
    grid_.add(hwnd, L"STATIC", {}, SS_OWNERDRAW, ID_MICON);
    grid_.add(hwnd, L"BUTTON", {}, kButton | WS_GROUP, ID_BTN1);
    grid_.add(hwnd, L"BUTTON", {}, kButton, ID_BTN2);
    grid_.add(hwnd, L"BUTTON", Text(about::kMail), kButton | BS_OWNERDRAW, ID_LBLMAILTO);
    grid_.add(hwnd, L"BUTTON", Text(about::kSite), kButton | BS_OWNERDRAW, ID_LBLWEBURL);
    grid_.add(hwnd, L"STATIC", {}, 0, ID_FRAMSG);
    linkFont_ = underlined(grid_.font.get());
    for (const int link : kLinks) {
        if (linkFont_) SendMessageW(item(link), WM_SETFONT, reinterpret_cast<WPARAM>(linkFont_.get()), FALSE);
    }
}

void fmsg::showMessageControls(bool shown) const {
    for (const int id : {ID_LBLMSG, ID_MICON, ID_BTN1, ID_BTN2, ID_LBLMAILTO, ID_LBLWEBURL, ID_FRAMSG}) {
        ShowWindow(item(id), shown ? SW_SHOWNA : SW_HIDE);
    }
}

void fmsg::presentMessage(const Face& face) {
    const MsgButtons& buttons = face.Buttons;
    setWindowText(item(ID_LBLMSG), face.Prompt);
    // The answer is read from the captions, so one from an earlier question must not stay on a hidden button.
    setWindowText(item(ID_BTN1), buttons.first);
    setWindowText(item(ID_BTN2), buttons.second);
    if (buttons.secondIsDefault) {
        SetWindowPos(item(ID_BTN1), item(ID_BTN2), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    } else {
        SetWindowPos(item(ID_BTN2), item(ID_BTN1), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }

    icon_ = nullptr;
    Text iconName;
    for (const SystemIcon& row : kIcons) {
        if (row.icon != buttons.icon) continue;
        icon_ = loadIcon(nullptr, row.resource);
        iconName = row.name;
    }
    if (face.IsAbout) {
        icon_ = loadIcon(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_KARDEL));
        iconName = u"Kardel";
    }
    setWindowText(item(ID_MICON), iconName);

    ShowWindow(item(ID_BTN2), buttons.second.empty() ? SW_HIDE : SW_SHOWNA);
    ShowWindow(item(ID_MICON), icon_ == nullptr ? SW_HIDE : SW_SHOWNA);
    for (const int link : kLinks) {
        const bool shown = face.IsAbout && GetWindowTextLengthW(item(link)) > 0;
        ShowWindow(item(link), shown ? SW_SHOWNA : SW_HIDE);
    }
    layoutMessage(face);
}

// Icon and text side by side on the frame, links below the text, buttons right-aligned at the foot. The text
// wraps at half the work area; what is higher than the work area is cut after a whole line, and the buttons
// always stay.
void fmsg::layoutMessage(const Face& face) {
    const PxRect work = workArea(face);
    const int marginX = grid_.x(kMargin);
    const int marginY = grid_.y(kMargin);
    const PxSize icon =
        icon_ == nullptr ? PxSize{} : PxSize{GetSystemMetrics(SM_CXICON), GetSystemMetrics(SM_CYICON)};
    const int textLeft = icon.width == 0 ? marginX : 2 * marginX + icon.width;

    const int footer = 2 * marginY + grid_.y(kButtonHeight);
    const int linksHeight = placeLinks(textLeft, 0);
    const int mostTextHeight = work.height() - frame().height - footer - 2 * marginY - linksHeight;
    PxSize text =
        grid_.textSize(face.Prompt, std::max(work.width() / 2 - textLeft - marginX, grid_.x(kLeastWidth)));
    textWidth_ = text.width;
    // Some fonts are drawn a little wider than they measure, which must not cut the ends of the lines.
    text.width += grid_.x(1) + text.width / kOverhang;
    if (text.height > mostTextHeight) text.height = mostTextHeight - mostTextHeight % grid_.baseY;

    const int captionWidth =
        std::min(grid_.textSize(face.Title).width + 3 * GetSystemMetrics(SM_CXSIZE), work.width() / 2);
    int linkWidth = 0;
    for (const int link : kLinks) {
        if (linksHeight > 0) linkWidth = std::max(linkWidth, grid_.textSize(windowText(item(link))).width);
    }
    const int width = std::max({textLeft + std::max(text.width, linkWidth) + marginX, captionWidth,
                                buttonsWidth() + 2 * marginX, grid_.x(kLeastWidth)});
    const int column = text.height + linksHeight;
    contentHeight_ = std::max(column, icon.height) + 2 * marginY;

    // A single line is centred beside the icon.
    const int textTop = marginY + std::max(0, (icon.height - column) / 2);
    placeControl(item(ID_MICON), marginX, marginY, icon.width, icon.height);
    placeControl(item(ID_LBLMSG), textLeft, textTop, width - textLeft - marginX, text.height);
    placeLinks(textLeft, textTop + text.height);
    placeControl(item(ID_FRAMSG), 0, 0, width, contentHeight_);
    placeButtons(width, contentHeight_);
    resizeTo(face, {width, contentHeight_ + footer});
}

/// Places the shown links one below the other and returns the height that they take.
int fmsg::placeLinks(int left, int top) const {
    int height = 0;
    for (const int link : kLinks) {
        if ((GetWindowLongPtrW(item(link), GWL_STYLE) & static_cast<LONG_PTR>(WS_VISIBLE)) == 0) continue;
        const PxSize size = grid_.textSize(windowText(item(link)));
        height += grid_.y(height == 0 ? 2 * kLinkGap : kLinkGap);
        placeControl(item(link), left, top + height, size.width, size.height);
        height += size.height;
    }
    return height;
}

int fmsg::buttonsWidth() const {
    const bool two = GetWindowTextLengthW(item(ID_BTN2)) > 0;
    return two ? grid_.x(2 * kButtonWidth + kGap) : grid_.x(kButtonWidth);
}

void fmsg::placeButtons(int width, int footerTop) const {
    const int top = footerTop + grid_.y(kMargin);
    const int step = grid_.x(kButtonWidth + kGap);
    int left = width - grid_.x(kMargin) - buttonsWidth();
    for (const int id : {ID_BTN1, ID_BTN2}) {
        placeControl(item(id), left, top, grid_.x(kButtonWidth), grid_.y(kButtonHeight));
        left += step;
    }
}

void fmsg::openLink(const Text& target) {
    const Text failure = openTarget ? openTarget(target) : ShellExecuteExt(target);
    if (!failure.empty()) MsgBoxExt(failure, MB_ICONEXCLAMATION, u"Kardel", hwnd);
}

void fmsg::drawText(const DRAWITEMSTRUCT& drawn) const {
    RECT area = drawn.rcItem;
    FillRect(drawn.hDC, &area, GetSysColorBrush(COLOR_WINDOW));
    SetBkMode(drawn.hDC, TRANSPARENT);
    SetTextColor(drawn.hDC, GetSysColor(COLOR_WINDOWTEXT));
    const Text text = windowText(drawn.hwndItem);
    area.right = textWidth_;  // breaks the lines where they were measured
    // Clipped only by the control; a text too high for the screen ends in dots.
    const bool cut = grid_.textSize(text, textWidth_).height > area.bottom - area.top;
    DrawTextW(
        drawn.hDC, wideData(text), static_cast<int>(text.size()), &area,
        DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS | (cut ? DT_END_ELLIPSIS : DT_NOCLIP));
}

void fmsg::drawLink(const DRAWITEMSTRUCT& drawn) const {
    RECT area = drawn.rcItem;
    FillRect(drawn.hDC, &area, GetSysColorBrush(COLOR_WINDOW));
    SetBkMode(drawn.hDC, TRANSPARENT);
    SetTextColor(drawn.hDC, linkColor());
    const Text text = windowText(drawn.hwndItem);
    DrawTextW(drawn.hDC, wideData(text), static_cast<int>(text.size()), &area, DT_SINGLELINE | DT_NOPREFIX);
    if ((drawn.itemState & ODS_FOCUS) != 0) DrawFocusRect(drawn.hDC, &drawn.rcItem);
}
