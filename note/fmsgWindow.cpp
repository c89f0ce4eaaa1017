// The dialog's window: its class, its messages, focus and the default button.
#include "support/WinText.h"

#include <windowsx.h>

#include "note/About.h"
#include "note/fmsg.h"
#include "resources/resource.h"
#include "storage/bas_LogError.h"
#include "support/Accessible.h"

namespace {

constexpr const char16_t* kClass = u"fmsg";

bool isLink(int id) {
    return id == ID_LBLMAILTO || id == ID_LBLWEBURL;
}

bool isPushButton(HWND control) {
    const LRESULT code = SendMessageW(control, WM_GETDLGCODE, 0, 0);
    return (code & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

/// A dialog, so that screen readers read all of it aloud.
Spoken sayDialog(HWND, int) {
    Spoken said;
    said.role = Role::Dialog;
    return said;
}

constexpr Voice kVoice{0, sayDialog};

/// A dialog can be moved and closed, nothing else.
void trimSystemMenu(HWND window) {
    const HMENU menu = GetSystemMenu(window, FALSE);
    for (const UINT command : {UINT{SC_RESTORE}, UINT{SC_SIZE}, UINT{SC_MINIMIZE}, UINT{SC_MAXIMIZE}}) {
        DeleteMenu(menu, command, MF_BYCOMMAND);
    }
}

}  // namespace

void registerDialogClasses() {
    registerClass(kClass, formProc<fmsg>, CS_DBLCLKS);
    registerAlarmClasses();
}

bool fmsg::createWindow() {
    if (hwnd != nullptr) return true;
    const HWND owner = ownerWindow ? ownerWindow() : nullptr;
    CreateWindowExW(WS_EX_DLGMODALFRAME | WS_EX_TOPMOST | WS_EX_CONTROLPARENT, wide(kClass), L"",
                    WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN, 0, 0, 0, 0, owner, nullptr,
                    GetModuleHandleW(nullptr), this);
    if (hwnd == nullptr) return false;
    grid_ = loadDialogGrid();
    trimSystemMenu(hwnd);
    createMessageControls();
    return true;
}

LRESULT fmsg::onMessage(UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_GETOBJECT:
            return answerAccessible(hwnd, wp, lp, kVoice);
        case WM_COMMAND:
            onCommand(LOWORD(wp), HIWORD(wp));
            return 0;
        case WM_CLOSE:
            onClose();
            return 0;
        case WM_WINDOWPOSCHANGING:
            // A tool that arranges windows, or a window manager that lags behind, would cut off its contents.
            if (!sizing_) reinterpret_cast<WINDOWPOS*>(lp)->flags |= SWP_NOSIZE;
            break;
        case WM_ACTIVATE:
            onActivate(LOWORD(wp) != WA_INACTIVE);
            return 0;
        case DM_GETDEFID:
            return MAKELRESULT(defaultId(), DC_HASDEFID);
        case WM_NEXTDLGCTL: {  // an arrow key, or another program that moves the focus
            const bool named = LOWORD(lp) != 0;
            const HWND next = named ? reinterpret_cast<HWND>(wp)
                                    : GetNextDlgTabItem(hwnd, GetFocus(), wp != 0 ? TRUE : FALSE);
            if (next != nullptr) SetFocus(next);
            return 0;
        }
        case WM_ERASEBKGND:
            eraseTo(reinterpret_cast<HDC>(wp));
            return 1;
        case WM_CTLCOLORSTATIC:
            return reinterpret_cast<LRESULT>(colorOf(reinterpret_cast<HDC>(wp), reinterpret_cast<HWND>(lp)));
        case WM_DRAWITEM:
            drawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lp));
            return TRUE;
        case WM_SETCURSOR:
            if (onSetCursor(reinterpret_cast<HWND>(wp))) return TRUE;
            break;
        case WM_HSCROLL:
        case WM_MOUSEWHEEL: {
            const Face* const face = top();
            if (face == nullptr || face->editor == nullptr) break;
            if (message == WM_HSCROLL) {
                const auto position = static_cast<std::int16_t>(HIWORD(wp));  // may be negative
                face->editor->input.onScroll(reinterpret_cast<HWND>(lp), LOWORD(wp), position);
            } else {
                face->editor->input.onWheel(GET_WHEEL_DELTA_WPARAM(wp), {GET_X_LPARAM(lp), GET_Y_LPARAM(lp)});
            }
            return 0;
        }
        case WM_NCDESTROY: {
            const HWND gone = std::exchange(hwnd, nullptr);
            focus_ = nullptr;
            finishAll();  // nobody can answer any more
            return DefWindowProcW(gone, message, wp, lp);
        }
        default:
            break;
    }
    return DefWindowProcW(hwnd, message, wp, lp);
}

void fmsg::onEscaped(UINT message) noexcept {
    WriteLog(u"fmsg", u"message failed", static_cast<std::int64_t>(message));
}

void fmsg::onCommand(int id, int code) {
    Face* const face = top();
    if (face == nullptr) return;
    if (code == BN_SETFOCUS || code == BN_KILLFOCUS) {
        // Enter presses the button that has the focus, and the thick border says so.
        if (isPushButton(item(id))) markDefault(code == BN_SETFOCUS ? id : defaultId());
        if (isLink(id)) InvalidateRect(item(id), nullptr, FALSE);
    }
    if (id == IDCANCEL) {
        onClose();
    } else if (face->editor != nullptr) {
        face->editor->input.onCommand(id, code);
    } else if (code == BN_CLICKED) {
        switch (id) {
            case ID_BTN1:
                finish(*face, answerOfFirst(windowText(item(id))));
                break;
            case ID_BTN2:
                if (!face->Buttons.second.empty()) finish(*face, answerOfSecond(windowText(item(id))));
                break;
            case ID_LBLMAILTO:
                if (face->IsAbout) openLink(u"mailto:" + Text(about::kMail));
                break;
            case ID_LBLWEBURL:
                if (face->IsAbout) openLink(Text(about::kSite));
                break;
            default:
                break;
        }
    }
}

// --- Focus and default button ----------------------------------------------------------------------------

void fmsg::onActivate(bool active) {
    const HWND focus = GetFocus();
    if (!active) {
        if (IsChild(hwnd, focus) != FALSE) focus_ = focus;
        return;
    }
    const Face* const face = top();
    if (IsWindow(focus_) != FALSE && IsWindowVisible(focus_) != FALSE) {
        SetFocus(focus_);
    } else if (face != nullptr) {
        focusFirst(*face);
    }
}

void fmsg::focusFirst(const Face& face) const {
    if (face.editor != nullptr) {
        SetFocus(face.editor->firstControl());
    } else {
        SetFocus(item(face.Buttons.secondIsDefault ? ID_BTN2 : ID_BTN1));
    }
    markDefault(defaultId());
}

/// Id of the button that Enter presses: the one with the focus, otherwise the face's default.
int fmsg::defaultId() const {
    const HWND focus = GetFocus();
    const int id = GetDlgCtrlID(focus);
    if (IsChild(hwnd, focus) != FALSE && (isLink(id) || isPushButton(focus))) return id;
    const Face* const face = top();
    if (face == nullptr) return 0;
    if (face->editor != nullptr) return ID_BTNOK;
    return face->Buttons.secondIsDefault ? ID_BTN2 : ID_BTN1;
}

void fmsg::markDefault(int id) const {
    for (const int button : {ID_BTN1, ID_BTN2, ID_BTNOK, ID_BTNCANCEL}) {
        if (item(button) == nullptr) continue;
        SendMessageW(item(button), BM_SETSTYLE, button == id ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
    }
}

// --- Looks ------------------------------------------------------------------------------------------------

void fmsg::eraseTo(HDC dc) const {
    RECT area{};
    GetClientRect(hwnd, &area);
    RECT content = area;
    content.bottom = contentHeight_;
    FillRect(dc, &content, GetSysColorBrush(COLOR_WINDOW));
    area.top = contentHeight_;
    FillRect(dc, &area, GetSysColorBrush(COLOR_BTNFACE));
}

HBRUSH fmsg::colorOf(HDC dc, HWND control) const {
    const Face* const face = top();
    const bool hint = face != nullptr && face->editor != nullptr && face->editor->isHint(control);
    SetTextColor(dc, GetSysColor(hint ? COLOR_INFOTEXT : COLOR_WINDOWTEXT));
    SetBkColor(dc, GetSysColor(hint ? COLOR_INFOBK : COLOR_WINDOW));
    return GetSysColorBrush(hint ? COLOR_INFOBK : COLOR_WINDOW);
}

void fmsg::drawItem(const DRAWITEMSTRUCT& drawn) const {
    const int id = static_cast<int>(drawn.CtlID);
    if (isLink(id)) {
        drawLink(drawn);
    } else if (id == ID_LBLMSG) {
        drawText(drawn);
    } else if (id == ID_MICON) {
        FillRect(drawn.hDC, &drawn.rcItem, GetSysColorBrush(COLOR_WINDOW));
        DrawIconEx(drawn.hDC, 0, 0, icon_, static_cast<int>(drawn.rcItem.right),
                   static_cast<int>(drawn.rcItem.bottom), 0, nullptr, DI_NORMAL);
    } else {
        AlarmFace::draw(drawn);
    }
}

bool fmsg::onSetCursor(HWND control) const {
    if (!isLink(GetDlgCtrlID(control)) || GetParent(control) != hwnd) return false;
    SetCursor(LoadCursorW(nullptr, IDC_HAND));
    return true;
}
