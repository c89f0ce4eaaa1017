#include "note/NoteMouse.h"

#include "note/fpost.h"
#include "resources/resource.h"

void NoteMouse::onButton(HWND part, UINT message, int xPx, int yPx) {
    Press press;
    press.message = message;
    press.x = Twips{note_.host->look->twips(xPx)};
    press.y = Twips{note_.host->look->twips(yPx)};
    press.doubled = message == WM_LBUTTONDBLCLK;
    press.leftDown = message == WM_LBUTTONDOWN || press.doubled;
    press.rightDown = message == WM_RBUTTONDOWN || message == WM_RBUTTONDBLCLK;
    if (press.leftDown || press.rightDown) {
        // A label does not take the focus by itself, so an open edit is ended before the press does anything.
        const NoteWatch watch(note_);
        SetFocus(note_.hwnd);
        note_.CommitEdits();
        if (watch.destroyed()) return;
    }
    if (message == WM_LBUTTONDOWN) swallowDoubleClick_ = false;
    if (press.doubled && swallowDoubleClick_) {  // its first half silenced the alarm, and that is all
        swallowDoubleClick_ = false;
        return;
    }
    // Each may destroy the note.
    if (part == note_.lbl || part == note_.nota) {
        pressSheet(part, press);
    } else if (part == note_.lbl2 || part == note_.pic) {
        pressButtons(part, press);
    } else if (part == note_.pic2) {
        pressGrip(press);
    } else if (part == note_.pic_time) {
        pressStrip(press);
    }
}

void NoteMouse::pressSheet(HWND part, const Press& press) {
    const bool plain =
        GetKeyState(VK_SHIFT) >= 0 && GetKeyState(VK_CONTROL) >= 0 && GetKeyState(VK_MENU) >= 0;
    if (press.doubled) {
        if (part == note_.lbl) {
            note_.toggleIconized();
        } else if (!note_.Help) {
            note_.EditForm();
        }
    } else if (press.leftDown && plain) {
        swallowDoubleClick_ = note_.Alarming();
        note_.DragWindow();
    } else if (press.message == WM_RBUTTONUP) {
        if (part == note_.nota || note_.record.iconized) {
            note_.OpenMenu();
        } else {
            note_.EditCaption();
        }
    }
}

void NoteMouse::pressButtons(HWND part, const Press& press) const {
    if (press.message == WM_RBUTTONUP) {
        note_.OpenMenu();
    } else if (press.leftDown && part == note_.pic && design::kDeleteButton.contains(press.x, press.y)) {
        note_.DeleteForm(false);
    } else if (press.leftDown && part == note_.lbl2 && design::kIconizeButton.contains(press.x, press.y)) {
        note_.toggleIconized();
    } else if (press.leftDown && part == note_.lbl2 && design::kCloseButton.contains(press.x, press.y)) {
        note_.CloseForm();
    }
}

void NoteMouse::pressGrip(const Press& press) const {
    if (press.leftDown || press.rightDown) {
        note_.place.resizer.press({press.x, press.y, press.rightDown, GetKeyState(VK_SHIFT) < 0});
    } else {
        note_.place.resizer.release(press.message == WM_RBUTTONUP);
    }
}

void NoteMouse::pressStrip(const Press& press) const {
    if (press.leftDown && note_.Alarming()) {
        note_.SoundStop();
    } else if (press.leftDown) {
        note_.DragWindow();
    } else if (press.rightDown) {
        note_.commands.swapStrip();
    }
}

std::optional<LRESULT> NoteMouse::onDisabledPress(LPARAM hit) const {
    // The only message that a disabled window gets for the press.
    const bool disabled = static_cast<short>(LOWORD(hit)) == HTERROR;
    if (!disabled || HIWORD(hit) != WM_LBUTTONDOWN || !note_.Alarming()) return {};
    note_.SoundStop();
    return TRUE;
}

int NoteMouse::cursorOver(HWND part) const {
    POINT at{};
    GetCursorPos(&at);
    ScreenToClient(part, &at);
    const Twips x{note_.host->look->twips(at.x)};
    const Twips y{note_.host->look->twips(at.y)};
    const bool onStrip = design::kIconizeButton.contains(x, y) || design::kCloseButton.contains(x, y);
    if (part == note_.lbl2 && onStrip) return IDC_BUTTON;
    if (part == note_.pic && design::kDeleteButton.contains(x, y)) return IDC_BUTTON;
    if (part == note_.pic2 && design::kWidthArrow.contains(x, y)) return IDC_RESIZE_WIDTH;
    const bool hasHeight = part == note_.pic2 && !note_.record.iconized;
    if (hasHeight && design::kHeightArrow.contains(x, y)) return IDC_RESIZE_HEIGHT;
    return note_.place.resizer.cursor();
}

void NoteMouse::setPartCursor(HWND part) {
    showCursor(cursorOver(part));
}

void NoteMouse::showCursor(int cursor) {
    currentCursor = cursor;
    SetCursor(note_.host->look->cursor(cursor));
}
