// What a press on each part of a note does, and the pointer's shape over it.
#include "note/fpost.h"
#include "resources/resource.h"

void fpost::onMouse(HWND part, UINT message, int xPx, int yPx) {
    Press press;
    press.message = message;
    press.x = Twips{host->look->twips(xPx)};
    press.y = Twips{host->look->twips(yPx)};
    press.doubled = message == WM_LBUTTONDBLCLK;
    press.leftDown = message == WM_LBUTTONDOWN || press.doubled;
    press.rightDown = message == WM_RBUTTONDOWN || message == WM_RBUTTONDBLCLK;
    if (press.leftDown || press.rightDown) {
        // A label does not take the focus by itself; an open edit ends before the press does anything.
        const NoteWatch watch(*this);
        SetFocus(hwnd);
        CommitEdits();
        if (watch.destroyed()) return;
    }
    if (message == WM_LBUTTONDOWN) swallowDoubleClick = false;
    if (press.doubled && swallowDoubleClick) {  // its first half silenced the alarm and means nothing more
        swallowDoubleClick = false;
        return;
    }
    if (part == lbl || part == nota) pressSheet(part, press);
    if (part == lbl2 || part == pic) pressButtons(part, press);
    if (part == pic2) pressGrip(press);
    if (part == pic_time) pressStrip(press);
}

void fpost::pressSheet(HWND part, const Press& press) {
    const bool plain =
        GetKeyState(VK_SHIFT) >= 0 && GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_MENU) >= 0;
    if (press.doubled) {
        if (part == lbl) {
            toggleIconized();
        } else if (!Help) {
            EditForm();
        }
    } else if (press.leftDown && plain) {
        swallowDoubleClick = Alarming();
        DragWindow();
    } else if (press.message == WM_RBUTTONUP) {
        if (part == nota || record.iconized) {
            OpenMenu();
        } else {
            EditCaption();
        }
    }
}

void fpost::pressButtons(HWND part, const Press& press) {
    if (press.message == WM_RBUTTONUP) {
        OpenMenu();
    } else if (press.leftDown && part == pic && design::kDeleteButton.contains(press.x, press.y)) {
        DeleteForm(false);
    } else if (press.leftDown && part == lbl2 && design::kIconizeButton.contains(press.x, press.y)) {
        toggleIconized();
    } else if (press.leftDown && part == lbl2 && design::kCloseButton.contains(press.x, press.y)) {
        CloseForm();
    }
}

void fpost::pressGrip(const Press& press) {
    if (press.leftDown || press.rightDown) {
        place.resizer.press({press.x, press.y, press.rightDown, GetKeyState(VK_SHIFT) < 0});
    } else {
        place.resizer.release(press.message == WM_RBUTTONUP);
    }
}

void fpost::pressStrip(const Press& press) {
    if (press.leftDown && Alarming()) {
        SoundStop();
    } else if (press.leftDown) {
        DragWindow();
    } else if (press.rightDown) {
        commands.swapStrip();
    }
}

std::optional<LRESULT> fpost::onDisabledPress(LPARAM hit) {
    // The one message that such a window gets for the press.
    const bool disabled = static_cast<short>(LOWORD(hit)) == HTERROR;
    if (!disabled || HIWORD(hit) != WM_LBUTTONDOWN || !Alarming()) return {};
    SoundStop();
    return TRUE;
}

void fpost::setPartCursor(HWND part) {
    POINT at{};
    GetCursorPos(&at);
    ScreenToClient(part, &at);
    const Twips x{host->look->twips(at.x)};
    const Twips y{host->look->twips(at.y)};
    currentCursor = 0;
    if (part == lbl2 && (design::kIconizeButton.contains(x, y) || design::kCloseButton.contains(x, y))) {
        currentCursor = IDC_BUTTON;
    } else if (part == pic && design::kDeleteButton.contains(x, y)) {
        currentCursor = IDC_BUTTON;
    } else if (part == pic2 && design::kWidthArrow.contains(x, y)) {
        currentCursor = IDC_RESIZE_WIDTH;
    } else if (part == pic2 && design::kHeightArrow.contains(x, y) && !record.iconized) {
        currentCursor = IDC_RESIZE_HEIGHT;
    } else if (place.resizer.isOn()) {
        currentCursor = place.resizer.cursor();
    }
    SetCursor(host->look->cursor(currentCursor));
}
