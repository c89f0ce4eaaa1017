// The note window itself: creation, properties, geometry, and the plumbing from messages to methods. What the
// user does with it stands in fpostMouse, fpostEdit, fpostMove, fpostMenu, fpostAlarm and fpostRemove, its
// looks in fpostPaint.
#include "note/fpost.h"

#include <windowsx.h>

#include <algorithm>
#include <string>

#include "note/bas_GetWorkArea.h"
#include "resources/resource.h"
#include "storage/bas_LogError.h"
#include "support/Messages.h"

namespace {

constexpr const char16_t* kNoteClass = u"fpost";
constexpr const char16_t* kPartClass = u"KardelPart";
constexpr Text::value_type kTitleLead[] = u"     ";

// WM_TABLET_QUERYSYSTEMGESTURESTATUS and its answer, which the compiler's headers lack.
constexpr UINT kQueryTabletGestures = 0x02CC;
constexpr LRESULT kNoPressAndHold = 1;

LRESULT CALLBACK partProc(HWND part, UINT message, WPARAM wp, LPARAM lp) noexcept {
    fpost* const note = formOf<fpost>(GetParent(part));
    if (note == nullptr) return DefWindowProcW(part, message, wp, lp);
    try {
        return note->onPart(part, message, wp, lp);
    } catch (...) {
        fpost::onEscaped(message);
        return 0;
    }
}

Rgb systemColor(int index) {
    return GetSysColor(index);
}

}  // namespace

void registerNoteClasses() {
    registerClass(kNoteClass, formProc<fpost>, 0);
    registerClass(kPartClass, partProc, CS_DBLCLKS);
}

void fpost::onEscaped(UINT message) noexcept {
    WriteLog(u"fpost", u"An error escaped a message handler.", message);
}

// --- Creation and destruction ---------------------------------------------------------------------------

fpost* fpost::open(NoteHost& host, int number, const NoteRecord& stored) {
    bool freed = false;
    auto* note = new fpost;
    note->host = &host;
    note->number = number;
    note->freed = &freed;
    note->take(stored);
    // Made where and as it will be seen: fifty notes at log-on are laid out once each, not twice. A tool
    // window has neither a button in the task bar nor a place in Alt+Tab, and needs no owner for that. With a
    // common owner a click on one note would bring all of them in front of other programs.
    const PxRect at = note->place.place();
    const HWND window = CreateWindowExW(WS_EX_TOOLWINDOW, wide(kNoteClass), wide(stored.Titolo),
                                        WS_POPUP | WS_CLIPCHILDREN, at.left, at.top, at.width(), at.height(),
                                        nullptr, nullptr, GetModuleHandleW(nullptr), note);
    if (window == nullptr) {
        WriteLog(u"fpost", u"A note window could not be created.", static_cast<std::int64_t>(GetLastError()));
        if (!freed) delete note;
        return nullptr;
    }
    note->freed = nullptr;
    return note;
}

void fpost::destroyAll(const NoteHost& host) {
    struct Search {
        const NoteHost* host;
        std::vector<HWND> windows;

        static BOOL CALLBACK add(HWND window, LPARAM param) noexcept {
            auto& found = *reinterpret_cast<Search*>(param);
            wchar_t kind[16]{};
            GetClassNameW(window, kind, static_cast<int>(std::size(kind)));
            const bool isNote = std::wstring_view(kind) == wide(kNoteClass);
            if (isNote && formOf<fpost>(window)->host == found.host) found.windows.push_back(window);
            return TRUE;
        }
    } search{&host, {}};
    EnumThreadWindows(GetCurrentThreadId(), Search::add, reinterpret_cast<LPARAM>(&search));
    for (const HWND window : search.windows)
        DestroyWindow(window);
}

bool fpost::createParts() {
    const HINSTANCE program = GetModuleHandleW(nullptr);
    const NoteRects at = partRects();
    const auto child = [&](LPCWSTR kind, DWORD style, int id, const Text& text, const PxRect& rect) {
        return CreateWindowExW(0, kind, wide(text), WS_CHILD | WS_CLIPSIBLINGS | style, rect.left, rect.top,
                               rect.width(), rect.height(), hwnd,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), program, nullptr);
    };
    const LPCWSTR part = wide(kPartClass);
    // Made from the top of the z order down: who is made first gets the press where parts overlap.
    lbl2 = child(part, WS_VISIBLE, ID_LBL2, u"Iconize, close", at.lbl2);
    pic = child(part, WS_VISIBLE, ID_PIC, u"Delete", at.pic);
    pic2 = child(part, WS_VISIBLE, ID_PIC2, u"Resize", at.pic2);
    lbl = child(part, WS_VISIBLE, ID_LBL, kTitleLead + record.Titolo, at.lbl);
    pic_time = child(part, 0, ID_PIC_TIME, u"", at.pic_time);
    const DWORD bodyShown = record.iconized ? 0 : WS_VISIBLE;
    nota = child(part, bodyShown, ID_NOTA, withLineBreaks(record.Nota), at.nota);
    const auto parts = {lbl, lbl2, pic, nota, pic2, pic_time};
    if (std::any_of(parts.begin(), parts.end(), [](HWND window) { return window == nullptr; })) return false;
    tBackColor(Backcol());
    if (record.topmost) applyTopmost();
    return true;
}

void fpost::unload() {
    PostMessageW(hwnd, posted::kUnload, 0, 0);
}

void fpost::leave() {
    beingDeleted = true;
    hide();
    unload();
}

// --- What is stored and what is shown -------------------------------------------------------------------

void fpost::take(const NoteRecord& stored) {
    record = stored;
    if (!record.backcolor) record.backcolor = kDesignColor;
    alarm.rule = ruleFromRecord(record);
}

bool fpost::store(std::span<const NoteField> fields) {
    if (record.readOnly) return false;
    for (const NoteField field : fields) {
        if (std::find(unsaved.begin(), unsaved.end(), field) == unsaved.end()) unsaved.push_back(field);
    }
    const bool done = host->store->set(number, record, unsaved);
    if (done) unsaved.clear();
    return done;
}

bool fpost::refresh(std::span<const NoteField> fields) {
    std::vector<NoteField> wanted;
    for (const NoteField field : fields) {
        if (std::find(unsaved.begin(), unsaved.end(), field) == unsaved.end()) wanted.push_back(field);
    }
    return !record.readOnly && host->store->refresh(number, record, wanted);
}

bool fpost::refusesChange() const {
    if (!record.readOnly) return false;
    host->ask(u"This note cannot be read at this moment. It comes back by itself as soon as it can.",
              MB_ICONERROR, u"Kardel");
    return true;
}

void fpost::oweEverything() {
    unsaved = everyField();
}

void fpost::storeUnsaved() {
    if (!unsaved.empty()) store({});
}

void fpost::Titolo(const Text& title) {
    record.Titolo = title;
    setWindowText(hwnd, title);
    setWindowText(lbl, kTitleLead + title);
}

Rgb fpost::Backcol() const {
    return shownColor(record.backcolor.value_or(kDesignColor), systemColor);
}

void fpost::Backcol(std::int32_t color) {
    record.backcolor = color;
    tBackColor(Backcol());
}

void fpost::tBackColor(Rgb color) {
    if (shownBack == color) return;
    shownBack = color;
    repaint();
}

void fpost::repaint() const {
    if (!visible()) return;
    RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_FRAME);
}

// --- Geometry -------------------------------------------------------------------------------------------

int fpost::pWidth() const {
    return shownWidth(record.width, host->settings->DefaultWidth).n;
}

int fpost::pHeight() const {
    return shownHeight(record.height, host->settings->DefaultHeight).n;
}

void fpost::pWidth(int twips) {
    record.width = twips;
    place.fitWindow(Along::Width);
}

void fpost::pHeight(int twips) {
    record.height = twips;
    // The window of an iconized note is as high as the strip until it is restored.
    if (!record.iconized) place.fitWindow(Along::Height);
}

NoteRects fpost::partRects() {
    RECT client{};
    GetClientRect(hwnd, &client);
    laidWidth = client.right;
    laidHeight = client.bottom;
    return layoutNote(client.right, client.bottom, record.iconized, host->look->dpi, host->look->titleHeight);
}

void fpost::layout() {
    const NoteRects at = partRects();
    const std::pair<HWND, const PxRect*> places[] = {{lbl, &at.lbl},   {lbl2, &at.lbl2},
                                                     {pic, &at.pic},   {nota, &at.nota},
                                                     {pic2, &at.pic2}, {pic_time, &at.pic_time}};
    HDWP batch = BeginDeferWindowPos(static_cast<int>(std::size(places)));
    for (const auto& [part, rect] : places) {
        if (batch == nullptr) break;  // out of memory: the parts stay where they were
        batch = DeferWindowPos(batch, part, nullptr, rect->left, rect->top, rect->width(), rect->height(),
                               SWP_NOZORDER | SWP_NOACTIVATE);
    }
    if (batch != nullptr) EndDeferWindowPos(batch);
    editor.place(bodyBeingEdited() ? at.txtNota : at.txtTitle);
    ShowWindow(nota, record.iconized ? SW_HIDE : SW_SHOWNA);
    if (record.iconized) ShowWindow(pic_time, SW_HIDE);
}

void fpost::onSize(WPARAM kind) {
    if (kind == SIZE_MINIMIZED) {
        // Not from inside the minimising itself: that would run the layout in the middle of it.
        PostMessageW(hwnd, posted::kRestore, 0, 0);
        return;
    }
    RECT client{};
    GetClientRect(hwnd, &client);
    if (client.right == laidWidth && client.bottom == laidHeight) return;
    layout();
    repaint();
    // A note that is shown smaller where it can be reached is not resized: the others stay where they are.
    if (!record.iconized && visible() && !place.isPlacing()) host->realign();
}

void fpost::restoreIfMinimized() {
    if (IsIconic(hwnd) != FALSE) ShowWindow(hwnd, SW_SHOWNOACTIVATE);
}

void fpost::show(bool activate) {
    ShowWindow(hwnd, SW_SHOWNOACTIVATE);
    applyTopmost();
    if (!activate || GetForegroundWindow() == hwnd) return;
    // To the front first, then the keyboard. A note that is raised while it is active, or becomes active by
    // being raised, is handed to the window manager on a Wine desktop, below the notes that the manager does
    // not know.
    SetWindowPos(hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetForegroundWindow(hwnd);
}

void fpost::hide() {
    ShowWindow(hwnd, SW_HIDE);
}

bool fpost::visible() const {
    return IsWindowVisible(hwnd) != FALSE;
}

// --- Messages -------------------------------------------------------------------------------------------

void fpost::leaveBorder(RECT& window) const {
    const int border = host->look->px(design::kBorder);
    InflateRect(&window, -border, -border);
}

HBRUSH fpost::editorColours(HDC dc) const {
    const Rgb ground = editorGround(shownBack);
    SetTextColor(dc, inkOn(ground));
    SetBkColor(dc, ground);
    SetDCBrushColor(dc, ground);
    return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
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
        case WM_CLOSE:  // a polite kill or Alt+F4 must neither lose a note nor mark it closed
            return 0;
        case posted::kUnload:
            if (beingDeleted || Help) DestroyWindow(hwnd);  // another program may have sent it
            return 0;
        case posted::kRestore:
            restoreIfMinimized();
            return 0;
        case WM_GETOBJECT:
            return answerSpoken(hwnd, wp, lp);
        case WM_TIMER:
            if (wp == IDT_MOVED) place.mover.settle(hwnd);
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
            paintFrame();
            return 0;
        case WM_NCACTIVATE:  // no caption whose colour would change, but a frame
            showActive(wp != FALSE);
            return TRUE;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paint();
            return 0;
        case WM_SIZE:
            onSize(wp);
            return 0;
        case WM_WINDOWPOSCHANGED:
            if ((reinterpret_cast<const WINDOWPOS*>(lp)->flags & SWP_NOZORDER) == 0) keepBelowDialogs();
            place.onPosition(*reinterpret_cast<const WINDOWPOS*>(lp));
            return {};
        case WM_DISPLAYCHANGE:
        case WM_SETTINGCHANGE:
            // A note whose monitor went is shown where it can be reached; its stored place waits for the
            // monitor to come back.
            place.mover.onDeskChanged(hwnd, GetTickCount64());
            return {};
        case WM_ENTERSIZEMOVE:
            place.mover.begin(hwnd);
            return 0;
        case WM_EXITSIZEMOVE:
            place.mover.end(hwnd);
            return 0;
        case WM_SYSCOLORCHANGE:
            if (!Alarming()) tBackColor(Backcol());
            return {};
        case WM_CTLCOLOREDIT:
            return reinterpret_cast<LRESULT>(editorColours(reinterpret_cast<HDC>(wp)));
        default:
            return {};
    }
}

std::optional<LRESULT> fpost::onInput(UINT message, WPARAM wp, LPARAM lp) {
    constexpr WPARAM kCommandBits = 0xFFF0;  // Windows keeps the lowest four for itself
    switch (message) {
        case WM_SYSCOMMAND:
            if ((wp & kCommandBits) == SC_MINIMIZE || (wp & kCommandBits) == SC_MAXIMIZE) return 0;
            if ((wp & kCommandBits) != SC_KEYMENU || lp != VK_SPACE) return {};
            OpenMenu();  // Alt+Space: a note's own menu
            return 0;
        case WM_SETCURSOR:
            return onDisabledPress(lp);
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
                editor.onNotice(HIWORD(wp));
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
            return answerSpoken(part, wp, lp);
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paintPart(part);
            return 0;
        case WM_SETTEXT: {
            const LRESULT result = DefWindowProcW(part, message, wp, lp);
            InvalidateRect(part, nullptr, FALSE);
            return result;
        }
        case WM_SETCURSOR:
            if (part == lbl2 || part == pic || part == pic2) wantTips();
            setPartCursor(part);
            return TRUE;
        case WM_NOTIFY:
            fillTip(*reinterpret_cast<NMHDR*>(lp));
            return 0;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_LBUTTONUP:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
        case WM_RBUTTONUP:
            onMouse(part, message, GET_X_LPARAM(lp), GET_Y_LPARAM(lp));
            return 0;
        case WM_CONTEXTMENU:
            return 0;
        case kQueryTabletGestures:
            // A finger or pen that rests on an arrow resizes; it must not wait to become a right click.
            if (part == pic2) return kNoPressAndHold;
            return DefWindowProcW(part, message, wp, lp);
        default:
            return DefWindowProcW(part, message, wp, lp);
    }
}
