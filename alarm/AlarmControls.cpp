#include "alarm/AlarmControls.h"

#include <algorithm>

#include "resources/resource.h"
#include "support/Accessible.h"
#include "support/Window.h"

namespace {

LRESULT CALLBACK cueProc(HWND list, UINT message, WPARAM wp, LPARAM lp) noexcept {
    const auto* const cue = reinterpret_cast<const CueList*>(GetWindowLongPtrW(list, GWLP_USERDATA));
    const WNDPROC before = cue->before;
    if (message == WM_GETTEXT || message == WM_GETTEXTLENGTH) {
        const auto chosen = static_cast<int>(CallWindowProcW(before, list, CB_GETCURSEL, 0, 0));
        if (chosen == cue->at && !cue->cue.empty()) {
            const std::size_t length = cue->cue.size();
            if (message == WM_GETTEXTLENGTH) return static_cast<LRESULT>(length);
            if (wp == 0) return 0;
            const std::size_t copied = std::min<std::size_t>(length, wp - 1);
            auto* const room = reinterpret_cast<char16_t*>(lp);
            std::copy_n(cue->cue.data(), copied, room);
            room[copied] = u'\0';
            return static_cast<LRESULT>(copied);
        }
    }
    if (message == WM_NCDESTROY) {
        replaceProcedure(list, before);
    }
    return CallWindowProcW(before, list, message, wp, lp);
}

/// Windows would report a bar in percent, but what matters is the date or time that it sets.
Spoken sayBar(HWND bar, int) {
    const int shownBy = GetDlgCtrlID(bar) == ID_HDATE ? ID_DATA : ID_LBLTIME;
    Spoken said;
    said.name = windowText(bar);
    said.value = windowText(GetDlgItem(GetParent(bar), shownBy));
    return said;
}

constexpr Voice kBarVoice{0, sayBar};

constexpr const wchar_t* kDrawing = L"Kardel.drawing";

bool draws(UINT message) {
    return message == WM_PAINT || message == WM_PRINTCLIENT || message == WM_ENABLE ||
           message == BM_SETSTATE || message == BM_SETCHECK;
}

// The button draws the letter after the mark underlined; everything else gets the caption without the mark.
LRESULT CALLBACK markedProc(HWND button, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (draws(message)) {
        SetPropW(button, kDrawing, button);
        const LRESULT result = passToControl(button, message, wp, lp);
        RemovePropW(button, kDrawing);
        return result;
    }
    const bool asked = message == WM_GETTEXT || message == WM_GETTEXTLENGTH;
    if (!asked || GetPropW(button, kDrawing) != nullptr) return passToControl(button, message, wp, lp);
    char16_t marked[16]{};  // more than any of these captions
    passToControl(button, WM_GETTEXT, std::size(marked), reinterpret_cast<LPARAM>(marked));
    TextView caption = marked;
    const std::size_t mark = std::min(caption.find(u'&'), caption.size());
    char16_t* const end =
        std::copy(marked + mark + (mark < caption.size() ? 1 : 0), marked + caption.size(), marked + mark);
    caption = TextView(marked, static_cast<std::size_t>(end - marked));
    if (message == WM_GETTEXTLENGTH) return static_cast<LRESULT>(caption.size());
    if (wp == 0) return 0;
    auto* const room = reinterpret_cast<char16_t*>(lp);
    const std::size_t copied = caption.copy(room, wp - 1);
    room[copied] = u'\0';
    return static_cast<LRESULT>(copied);
}

LRESULT CALLBACK barProc(HWND bar, UINT message, WPARAM wp, LPARAM lp) noexcept {
    if (message == WM_GETOBJECT && static_cast<LONG>(lp) == OBJID_CLIENT) {
        return answerAccessible(bar, wp, lp, kBarVoice);
    }
    return passToControl(bar, message, wp, lp);
}

}  // namespace

void makeCueList(HWND list, CueList& cue) {
    SetWindowLongPtrW(list, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&cue));
    cue.before = replaceProcedure(list, cueProc);
}

void fillList(HWND list, std::span<const TextView> entries, int chosen) {
    SendMessageW(list, CB_RESETCONTENT, 0, 0);
    for (const TextView entry : entries) {
        SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide(Text(entry))));
    }
    SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(chosen), 0);
}

void hideMark(HWND button) {
    extendControl(button, markedProc);
}

void makeSpokenBar(HWND bar) {
    extendControl(bar, barProc);
}

void drawEntry(const DRAWITEMSTRUCT& drawn) {
    const bool inField = (drawn.itemState & ODS_COMBOBOXEDIT) != 0;
    const bool marked = (drawn.itemState & ODS_SELECTED) != 0;
    Text text;
    if (inField) {
        text = windowText(drawn.hwndItem);
    } else if (drawn.itemID != static_cast<UINT>(-1)) {
        const LRESULT length = SendMessageW(drawn.hwndItem, CB_GETLBTEXTLEN, drawn.itemID, 0);
        text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
        SendMessageW(drawn.hwndItem, CB_GETLBTEXT, drawn.itemID, reinterpret_cast<LPARAM>(wideBuffer(text)));
    }
    // What is shown for the empty entry is not a choice; it says what can be chosen.
    const bool cue = inField && drawn.itemID == 0;
    RECT area = drawn.rcItem;
    FillRect(drawn.hDC, &area, GetSysColorBrush(marked ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    SetBkMode(drawn.hDC, TRANSPARENT);
    const int ink = marked ? COLOR_HIGHLIGHTTEXT : (cue ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT);
    SetTextColor(drawn.hDC, GetSysColor(ink));
    area.left += 3;
    DrawTextW(drawn.hDC, wideData(text), static_cast<int>(text.size()), &area,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    if ((drawn.itemState & ODS_FOCUS) != 0) DrawFocusRect(drawn.hDC, &drawn.rcItem);
}

void drawLabel(const DRAWITEMSTRUCT& drawn) {
    RECT area = drawn.rcItem;
    FillRect(drawn.hDC, &area, GetSysColorBrush(COLOR_WINDOW));
    SetBkMode(drawn.hDC, TRANSPARENT);
    SetTextColor(drawn.hDC, GetSysColor(COLOR_WINDOWTEXT));
    const Text text = u"&" + windowText(drawn.hwndItem);
    DrawTextW(drawn.hDC, wideData(text), static_cast<int>(text.size()), &area, DT_SINGLELINE | DT_VCENTER);
}

void drawFrame(const DRAWITEMSTRUCT& drawn) {
    FillRect(drawn.hDC, &drawn.rcItem, GetSysColorBrush(COLOR_WINDOW));
    FrameRect(drawn.hDC, &drawn.rcItem, GetSysColorBrush(COLOR_3DSHADOW));
}
