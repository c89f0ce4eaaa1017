// The least that a program must do to show the benchmark's desk: the same 50 windows as Kardel's, each with
// eight children of the same kinds (six of its own class, two edit controls), created where they belong,
// shown and painted straight away, and the commands on all of them as plain window calls. It has no store,
// tray icon or settings, and answers no other message.
#include <algorithm>
#include <iterator>

#include "BareDesk.h"
#include "resource.h"

namespace {

constexpr int kIconized = 20;  // pixels; height of a note that is shrunk to its strip
constexpr int kParts = 8;

HFONT bodyFont;
HFONT titleFont;

HWND notes[std::size(kNotes)];
LONG laidHeight[std::size(kNotes)];  // pixels; what the parts of each are laid out for
bool hidden = false;
bool iconized = false;

void paintPart(HWND part) {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(part, &paint);
    const Note& note = noteOf(GetParent(part));
    RECT area{};
    GetClientRect(part, &area);
    fill(dc, area, note.color);
    const int id = GetDlgCtrlID(part);
    if (id == ID_LBL) {
        area.left += kLead;
        text(dc, titleFont, note.title, area, DT_SINGLELINE | DT_END_ELLIPSIS);
    } else if (id == ID_NOTA) {
        text(dc, bodyFont, note.body, area, DT_WORDBREAK | DT_EDITCONTROL);
    } else {
        InflateRect(&area, -4, -4);
        FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
    }
    EndPaint(part, &paint);
}

void paintNote(HWND window) {
    PAINTSTRUCT paint{};
    const HDC dc = BeginPaint(window, &paint);
    RECT area{};
    GetClientRect(window, &area);
    fill(dc, area, noteOf(window).color);
    FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
    EndPaint(window, &paint);
}

struct Part {
    int id;
    RECT at;
};

/// Where the eight children stand in a note of this size, in the same z order as Kardel's.
void placeParts(LONG width, LONG height, Part (&parts)[kParts]) {
    const LONG right = width - 1;
    const LONG bottom = height - 1;
    const RECT body{5, 22, std::max(right - 4, 5L), std::max(bottom - 4, 22L)};
    const RECT grip =
        iconized ? RECT{right - 36, 1, right - 18, 18} : RECT{right - 18, bottom - 17, right, bottom};
    const Part places[kParts] = {{ID_LBL2, {1, 1, 32, kStrip + 1}},
                                 {ID_PIC, {right - 18, 1, right, kStrip + 1}},
                                 {ID_PIC2, grip},
                                 {ID_TXTTITLE, {kLead, 3, right - 20, kStrip}},
                                 {ID_LBL, {1, 1, right, kStrip + 1}},
                                 {ID_TXTNOTA, body},
                                 {ID_PIC_TIME, {1, bottom - 16, right - 18, bottom}},
                                 {ID_NOTA, body}};
    std::copy_n(places, kParts, parts);
}

/// Like Kardel's, three of them are hidden.
void createParts(HWND window, const Note& note) {
    laidHeight[&note - kNotes] = note.height;
    Part parts[kParts];
    placeParts(note.width, note.height, parts);
    for (const auto& [id, at] : parts) {
        const bool isEditor = id == ID_TXTTITLE || id == ID_TXTNOTA;
        const DWORD style = id == ID_TXTTITLE   ? ES_AUTOHSCROLL
                            : id == ID_TXTNOTA  ? ES_MULTILINE | ES_AUTOVSCROLL
                            : id == ID_PIC_TIME ? 0
                                                : WS_VISIBLE;
        const HWND part = CreateWindowExW(
            0, isEditor ? L"EDIT" : L"ReferencePart",
            id == ID_LBL    ? note.title
            : id == ID_NOTA ? note.body
                            : L"",
            WS_CHILD | WS_CLIPSIBLINGS | style, at.left, at.top, at.right - at.left, at.bottom - at.top,
            window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
        const HFONT font = id == ID_TXTTITLE ? titleFont : bodyFont;
        if (isEditor) SendMessageW(part, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    }
}

void onSize(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    LONG& laid = laidHeight[&noteOf(window) - kNotes];
    if (client.bottom == laid) return;
    laid = client.bottom;
    Part parts[kParts];
    placeParts(client.right, client.bottom, parts);
    HDWP batch = BeginDeferWindowPos(kParts);
    for (const auto& [id, at] : parts) {
        batch = DeferWindowPos(batch, GetDlgItem(window, id), nullptr, at.left, at.top, at.right - at.left,
                               at.bottom - at.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
    EndDeferWindowPos(batch);
    ShowWindow(GetDlgItem(window, ID_NOTA), iconized ? SW_HIDE : SW_SHOWNA);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN);
}

// --- The commands on all notes -----------------------------------------------------------------------------

void toggleHideAll() {
    hidden = !hidden;
    for (const HWND note : notes)
        ShowWindow(note, hidden ? SW_HIDE : SW_SHOWNOACTIVATE);
}

void toggleIconizeAll() {
    iconized = !iconized;
    for (const HWND note : notes) {
        SetWindowPos(note, nullptr, 0, 0, noteOf(note).width, iconized ? kIconized : noteOf(note).height,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

/// Columns from the first note's place. A note that would stand beside the screen is moved to its right edge.
void autoPosition() {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    RECT before{};
    GetWindowRect(notes[0], &before);
    const LONG top = before.top;
    LONG columnLeft = before.left;
    LONG columnWidth = before.right - before.left;
    for (std::size_t i = 1; i < std::size(notes); ++i) {
        RECT rect{};
        GetWindowRect(notes[i], &rect);
        const LONG width = rect.right - rect.left;
        const LONG height = rect.bottom - rect.top;
        LONG y = before.bottom;
        if (y + 1 >= work.bottom - work.top) {
            y = top;
            columnLeft += columnWidth;
            columnWidth = width;
        }
        const bool beside = columnLeft >= GetSystemMetrics(SM_CXSCREEN);
        SetWindowPos(notes[i], nullptr, beside ? work.right - width : columnLeft,
                     beside ? std::min(y, work.bottom - height) : y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        before = {columnLeft, y, columnLeft + width, y + height};
    }
}

void onCommand(unsigned id) {
    if (id == IDM_DYN + 2) toggleHideAll();
    if (id == IDM_DYN + 3) toggleIconizeAll();
    if (id == IDM_DYN + 5) autoPosition();
}

// --- Windows -----------------------------------------------------------------------------------------------

LRESULT CALLBACK partProc(HWND part, UINT message, WPARAM wp, LPARAM lp) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(part, message, wp, lp);
    paintPart(part);
    return 0;
}

LRESULT CALLBACK noteProc(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    switch (message) {
        case WM_CREATE:
            createParts(window, attachNote(window, lp));
            return 0;
        case WM_SIZE:
            onSize(window);
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT:
            paintNote(window);
            return 0;
        default:
            return DefWindowProcW(window, message, wp, lp);
    }
}

/// The owner of all notes, never shown.
LRESULT CALLBACK deskProc(HWND window, UINT message, WPARAM wp, LPARAM lp) {
    if (message == WM_COMMAND) onCommand(LOWORD(wp));
    return DefWindowProcW(window, message, wp, lp);
}

}  // namespace

int WINAPI WinMain(HINSTANCE program, HINSTANCE, LPSTR, int) {
    bodyFont = font(FW_NORMAL);
    titleFont = font(FW_BOLD);
    registerClass(L"ReferenceNote", noteProc);
    registerClass(L"ReferencePart", partProc);
    registerClass(L"ReferenceDesk", deskProc);
    const HWND owner =
        CreateWindowExW(0, L"ReferenceDesk", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, program, nullptr);
    for (std::size_t i = 0; i < std::size(notes); ++i) {
        const Note& note = kNotes[i];
        const HWND window = CreateWindowExW(WS_EX_TOOLWINDOW, L"ReferenceNote", note.title,
                                            WS_POPUP | WS_CLIPCHILDREN, note.x, note.y, note.width,
                                            note.height, owner, nullptr, program, const_cast<Note*>(&note));
        if (window == nullptr) return 1;
        notes[i] = window;
        ShowWindow(window, SW_SHOWNOACTIVATE);
    }
    runMessages();
    return 0;
}
