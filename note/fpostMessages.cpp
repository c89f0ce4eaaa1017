// The messages of a note and its parts, each passed to the member that answers it.
#include <windowsx.h>

#include "note/NoteVoice.h"
#include "note/fpost.h"
#include "resources/resource.h"
#include "support/Messages.h"

namespace {

// WM_TABLET_QUERYSYSTEMGESTURESTATUS and its answer, which the compiler's headers lack.
constexpr UINT kQueryTabletGestures = 0x02CC;
constexpr LRESULT kNoPressAndHold = 1;

}  // namespace

void fpost::leaveBorder(RECT& window) const {
    const int border = host->look->px(design::kBorder);
    InflateRect(&window, -border, -border);
}

LRESULT fpost::onMessage(UINT message, WPARAM wp, LPARAM lp) {
    if (message == WM_NCDESTROY) {
        if (freed != nullptr) *freed = true;
        delete this;
        return 0;
    }
    for (const auto group : {&fpost::onLife, &fpost::onLooks, &fpost::onInput}) {
        if (const std::optional<LRESULT> answer = (this->*group)(message, wp, lp)) return *answer;
    }
    return DefWindowProcW(hwnd, message, wp, lp);
}

std::optional<LRESULT> fpost::onLife(UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_CREATE:
            return createParts() ? 0 : -1;
        case WM_DESTROY:
            alarm.stopCountdown();
            alarm.silence();
            return 0;
        case WM_CLOSE:  // a close message or Alt+F4 must neither lose a note nor mark it closed
            return 0;
        case posted::kUnload:
            if (beingDeleted || Help) DestroyWindow(hwnd);  // another program may have sent it
            return 0;
        case posted::kRestore:
            restoreIfMinimized();
            return 0;
        case WM_GETOBJECT:
            return answerSpoken(*this, hwnd, wp, lp);
        case WM_TIMER:
            if (wp == IDT_MOVED) place.mover.settle(GetTickCount64());
            return 0;
        default:
            return {};
    }
}

std::optional<LRESULT> fpost::onLooks(UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_NCCALCSIZE:  // the first of three rectangles when wp is TRUE
            leaveBorder(*reinterpret_cast<RECT*>(lp));
            return 0;
        case WM_NCPAINT:
            surface.paintFrame();
            return 0;
        case WM_NCACTIVATE:  // there is no caption whose colour would change, but a frame
            surface.showActive(wp != FALSE);
            return TRUE;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            surface.paint();
            return 0;
        case WM_SIZE:
            onSize(wp);
            return 0;
        case WM_WINDOWPOSCHANGED:
            place.onPosition(*reinterpret_cast<const WINDOWPOS*>(lp));
            return {};
        case WM_DISPLAYCHANGE:
        case WM_SETTINGCHANGE:
            // A note whose monitor is gone is shown where it can be reached; its stored place is kept until
            // the monitor is back.
            place.mover.onDeskChanged(GetTickCount64());
            return {};
        case WM_ENTERSIZEMOVE:
            place.mover.begin();
            return 0;
        case WM_EXITSIZEMOVE:
            place.mover.end();
            return 0;
        case WM_SYSCOLORCHANGE:
            if (!Alarming()) tBackColor(Backcol());
            return {};
        case WM_CTLCOLOREDIT:
            return reinterpret_cast<LRESULT>(surface.editorColors(reinterpret_cast<HDC>(wp)));
        default:
            return {};
    }
}

std::optional<LRESULT> fpost::onInput(UINT message, WPARAM wp, LPARAM lp) {
    constexpr WPARAM kCommandBits = 0xFFF0;  // Windows uses the lowest four itself
    switch (message) {
        case WM_SYSCOMMAND:
            if ((wp & kCommandBits) == SC_MINIMIZE || (wp & kCommandBits) == SC_MAXIMIZE) return 0;
            if ((wp & kCommandBits) != SC_KEYMENU || lp != VK_SPACE) return {};
            OpenMenu();  // Alt+Space: a note's own menu
            return 0;
        case WM_SETCURSOR:
            return mouse.onDisabledPress(lp);
        case WM_KEYDOWN:
            if (!commands.onKeyDown(wp, (HIWORD(lp) & KF_REPEAT) != 0)) return {};
            return 0;
        case WM_KEYUP:
        case WM_KILLFOCUS:
            place.mover.endKeys();
            return {};
        case WM_SYSKEYDOWN:
            if (!commands.onSystemKeyDown(wp)) return {};
            return 0;
        case WM_CONTEXTMENU:  // the menu key was answered when it went down
            return 0;
        case WM_COMMAND:
            if (lp != 0) {
                editing.onNotice(HIWORD(wp));
            } else {
                commands.onCommand(LOWORD(wp));
            }
            return 0;
        case posted::kChosen:
            commands.onChosen(LOWORD(wp), lp);
            return 0;
        default:
            return {};
    }
}

LRESULT fpost::onPart(HWND part, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_GETOBJECT:
            return answerSpoken(*this, part, wp, lp);
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            surface.paintPart(part);
            return 0;
        case WM_SETTEXT: {
            const LRESULT result = DefWindowProcW(part, message, wp, lp);
            InvalidateRect(part, nullptr, FALSE);
            return result;
        }
        case WM_SETCURSOR:
            if (part == lbl2 || part == pic || part == pic2) tips.want(*this);
            mouse.setPartCursor(part);
            return TRUE;
        case WM_NOTIFY:
            NoteTips::fill(*this, *reinterpret_cast<NMHDR*>(lp));
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_LBUTTONUP:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_RBUTTONUP:
            mouse.onButton(part, message, GET_X_LPARAM(lp), GET_Y_LPARAM(lp));
            return 0;
        case WM_CONTEXTMENU:
            return 0;
        case kQueryTabletGestures:
            // A finger or pen held on an arrow resizes at once instead of waiting to become a right click.
            if (part == pic2) return kNoPressAndHold;
            return DefWindowProcW(part, message, wp, lp);
        default:
            return DefWindowProcW(part, message, wp, lp);
    }
}
