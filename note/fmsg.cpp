// Faces, their modal loops, and what the rest of the program calls.
#include "note/fmsg.h"

#include <algorithm>
#include <utility>

#include "note/About.h"
#include "note/bas_GetWorkArea.h"
#include "support/Clock.h"

namespace {

/// What the close box answers: the same as the second button, or nothing when there is none.
int closeAnswer(const MsgButtons& buttons) {
    return answerOfSecond(buttons.second);
}

bool canTakeFocus(HWND window) {
    return IsWindow(window) != FALSE && IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE;
}

}  // namespace

fmsg::~fmsg() {
    unload();
}

// --- Calls ------------------------------------------------------------------------------------------------

int fmsg::MsgBoxExt(const Text& Prompt, long Buttons, const Text& Title, HWND over) {
    Face face;
    face.Prompt = withLineBreaks(Prompt);
    face.Title = Title;
    face.Buttons = msgButtons(Buttons);
    face.over = over;
    if (face.Buttons.icon != MsgIcon::None) MessageBeep(static_cast<UINT>(Buttons) & MB_ICONMASK);
    run(face);
    return face.Answer;
}

void fmsg::about() {
    const bool shown = std::any_of(faces_.begin(), faces_.end(),
                                   [](const Face* face) { return face->IsAbout && !face->done; });
    if (shown) {
        bringForward();
        return;
    }
    Face face;
    face.IsAbout = true;
    face.Prompt = withLineBreaks(about::kText);
    face.Title = about::kTitle;
    face.Buttons = msgButtons(MB_OK);
    run(face);
}

EditorResult fmsg::editAlarm(const AlarmRule& rule, HWND note, Now at) {
    const bool editing =
        std::any_of(faces_.begin(), faces_.end(), [](const Face* face) { return face->editor != nullptr; });
    if (editing || !createWindow()) return {};

    AlarmFace editor;
    Face face;
    editor.host.needFullDate = [this] {
        MsgBoxExt(u"Need before to set a full date.", MB_ICONEXCLAMATION, u"Date", hwnd);
    };
    editor.host.finished = [this, &face] { finish(face, kAnswerNone); };
    editor.host.resized = [this, &face] {
        keepPlace(face);
        presentEditor(face);
    };
    editor.host.now = [this] { return now ? now() : localNow(); };
    if (!editor.create(hwnd, grid_, rule, at)) return {};

    face.Title = u"Set alarm";
    face.editor = &editor;
    face.note = note;
    face.over = note;
    run(face);
    // The editor is destroyed with its answer, so that one note's values are never offered to the next.
    if (faces_.empty()) unload();
    const bool noteGone = note != nullptr && IsWindow(note) == FALSE;
    return noteGone ? EditorResult{} : editor.result;
}

bool fmsg::open() const {
    return top() != nullptr;
}

void fmsg::unload() {
    finishAll();
    if (hwnd == nullptr) return;
    close();
    DestroyWindow(hwnd);
}

void fmsg::bringForward() {
    if (!open() || hwnd == nullptr) return;
    SetWindowPos(hwnd, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    SetForegroundWindow(hwnd);
}

void fmsg::showCountdown(HWND note, const Text& text) {
    for (const Face* face : faces_) {
        if (face->editor != nullptr && !face->done && face->note == note) face->editor->showCountdown(text);
    }
}

// --- One face after the other ----------------------------------------------------------------------------

fmsg::Face* fmsg::top() const {
    const auto shown =
        std::find_if(faces_.rbegin(), faces_.rend(), [](const Face* face) { return !face->done; });
    return shown == faces_.rend() ? nullptr : *shown;
}

void fmsg::run(Face& face) {
    if (!createWindow()) {
        face.Answer = closeAnswer(face.Buttons);
        return;
    }
    if (open()) {
        rememberPlace();
    } else {
        before_ = GetFocus();
    }
    faces_.push_back(&face);
    present(face);
    loop(face);
    std::erase(faces_, &face);
    Face* const below = top();
    if (below != nullptr && hwnd != nullptr) {
        present(*below);
    } else {
        close();
    }
}

void fmsg::loop(const Face& face) {
    MSG message{};
    while (!face.done) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            // The program is ending, and every loop must see that, including those of the callers.
            if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
            finishAll();
            return;
        }
        if (translate(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

bool fmsg::translate(MSG& message) {
    if (hwnd == nullptr) return false;
    const Face* const face = top();
    const bool ours = message.hwnd == hwnd || IsChild(hwnd, message.hwnd) != FALSE;
    if (message.message == WM_SYSCHAR && ours && face != nullptr && face->editor != nullptr &&
        face->editor->input.accessKey(static_cast<char16_t>(message.wParam))) {
        return true;
    }
    // A letter without Alt is not a command: on a scroll bar, "t" would remove the alarm.
    const bool letter = message.message == WM_CHAR && message.wParam > VK_SPACE;
    if (letter && ours && face != nullptr && face->editor != nullptr) return false;
    const bool handled = IsDialogMessageW(hwnd, &message) != FALSE;
    // Wine removes the mark from the default button when Tab reaches a field that is not a button.
    if (handled && message.message == WM_KEYDOWN && message.wParam == VK_TAB) markDefault(defaultId());
    return handled;
}

void fmsg::finish(Face& face, int answer) {
    if (face.done) return;
    face.Answer = answer;
    face.done = true;
    // The answer may have come in a message sent by another program, after which GetMessage does not return.
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void fmsg::finishAll() {
    for (Face* face : faces_)
        finish(*face, closeAnswer(face->Buttons));
}

void fmsg::onClose() {
    Face* const face = top();
    if (face != nullptr) finish(*face, closeAnswer(face->Buttons));
}

void fmsg::close() {
    // Enabled first, so that the keyboard can go back to a note and not to another program.
    enableNotes();
    const HWND back = std::exchange(before_, nullptr);
    if (hwnd == nullptr || IsWindowVisible(hwnd) == FALSE) return;
    if (GetActiveWindow() == hwnd && canTakeFocus(back)) SetFocus(back);
    ShowWindow(hwnd, SW_HIDE);
}

void fmsg::disableNotes() {
    if (!noteWindows) return;
    for (const HWND window : noteWindows()) {
        // A note that is already disabled is waiting for its colour dialog and goes on waiting.
        if (EnableWindow(window, FALSE) == FALSE) disabled_.push_back(window);
    }
}

void fmsg::enableNotes() {
    for (const HWND window : std::exchange(disabled_, {})) {
        if (IsWindow(window) != FALSE) EnableWindow(window, TRUE);
    }
}

void fmsg::rememberPlace() {
    Face* const covered = top();
    const HWND focus = GetFocus();
    covered->focus = IsChild(hwnd, focus) != FALSE ? focus : focus_;
    keepPlace(*covered);
}

void fmsg::keepPlace(Face& face) const {
    RECT at{};
    GetWindowRect(hwnd, &at);
    face.place = {at.left, at.top};
    face.placed = true;
}

void fmsg::present(Face& face) {
    // A note whose grip is held has captured the mouse and would take the clicks meant for the answer.
    ReleaseCapture();
    disableNotes();
    for (const Face* other : faces_) {
        if (other->editor != nullptr) other->editor->show(other == &face);
    }
    showMessageControls(face.editor == nullptr);
    setWindowText(hwnd, face.Title);
    if (face.editor != nullptr) {
        presentEditor(face);
    } else {
        presentMessage(face);
    }
    // Not ShowWindow, because its first call in a program obeys the shortcut's setting, which may be
    // "minimized".
    SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    bringForward();
    RedrawWindow(hwnd, nullptr, nullptr, RDW_ERASE | RDW_INVALIDATE | RDW_ALLCHILDREN);
    if (canTakeFocus(face.focus)) {
        SetFocus(face.focus);
    } else {
        focusFirst(face);
    }
}

void fmsg::presentEditor(const Face& face) {
    const PxSize client = face.editor->layout(grid_);
    contentHeight_ = face.editor->contentHeight();
    resizeTo(face, client);
}

PxRect fmsg::workArea(const Face& face) const {
    HWND over = face.over;
    if (IsWindow(over) == FALSE) over = GetForegroundWindow();
    RECT rect{};
    if (over == nullptr || GetWindowRect(over, &rect) == FALSE) return GetWorkArea();
    return workAreaAt(pxRect(rect));
}

PxSize fmsg::frame() const {
    RECT rect{};
    AdjustWindowRectEx(&rect, static_cast<DWORD>(GetWindowLongPtrW(hwnd, GWL_STYLE)), FALSE,
                       static_cast<DWORD>(GetWindowLongPtrW(hwnd, GWL_EXSTYLE)));
    return {static_cast<int>(rect.right - rect.left), static_cast<int>(rect.bottom - rect.top)};
}

void fmsg::resizeTo(const Face& face, PxSize client) {
    const PxRect work = workArea(face);
    const int width = client.width + frame().width;
    const int height = client.height + frame().height;
    int left = work.left + (work.width() - width) / 2;
    int top = work.top + (work.height() - height) / 2;
    if (face.placed) {
        left = std::min(static_cast<int>(face.place.x), work.right - width);
        top = std::min(static_cast<int>(face.place.y), work.bottom - height);
    }
    sizing_ = true;
    SetWindowPos(hwnd, nullptr, std::max(left, work.left), std::max(top, work.top), width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    sizing_ = false;
}
