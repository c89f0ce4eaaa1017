#include "alarm/AlarmFaceInput.h"

#include <span>
#include <utility>

#include "resources/resource.h"

namespace {

/// Letters that reach a control with Alt; labels and buttons show them underlined.
struct AccessKey {
    char16_t letter;
    int id;
};
constexpr AccessKey kAccessKeys[] = {{u'd', ID_DATA},    {u'h', ID_HORE},  {u'r', ID_CBOREPEAT},
                                     {u'm', ID_CHKMUTE}, {u's', ID_BTNOK}, {u't', ID_BTNCANCEL}};

constexpr std::pair<int, BarMove> kMoves[] = {{SB_LINELEFT, BarMove::LineLeft},
                                              {SB_LINERIGHT, BarMove::LineRight},
                                              {SB_PAGELEFT, BarMove::PageLeft},
                                              {SB_PAGERIGHT, BarMove::PageRight},
                                              {SB_LEFT, BarMove::Left},
                                              {SB_RIGHT, BarMove::Right},
                                              {SB_THUMBTRACK, BarMove::ThumbTrack},
                                              {SB_THUMBPOSITION, BarMove::ThumbPosition},
                                              {SB_ENDSCROLL, BarMove::EndScroll}};

constexpr std::pair<int, EditorBar> kBars[] = {{ID_HDATE, EditorBar::Date},
                                               {ID_HORE, EditorBar::Hours},
                                               {ID_HMIN, EditorBar::Minutes},
                                               {ID_HSEC, EditorBar::Seconds}};

/// What a table has for one of Windows' numbers, if anything.
template <class T>
std::optional<T> found(std::span<const std::pair<int, T>> table, int number) {
    for (const auto& [known, meaning] : table) {
        if (known == number) return meaning;
    }
    return {};
}

}  // namespace

void AlarmFaceInput::onCommand(int id, int code) {
    if (id == ID_CBOREPEAT || id == ID_CBODAY) {
        onList(id, code);
    } else if (id == ID_BTNOK && code == BN_CLICKED) {
        editor_.onStart();
    } else if (id == ID_BTNCANCEL && code == BN_CLICKED) {
        editor_.onStop();
    }
}

// What the keyboard passes in an open list is not chosen yet; the choice counts once the list is closed.
void AlarmFaceInput::onList(int id, int code) {
    const HWND list = item(id);
    if (code == CBN_CLOSEUP) {
        // Windows may still be accepting or cancelling the choice.
        PostMessageW(GetParent(list), WM_COMMAND, static_cast<WPARAM>(MAKELONG(id, CBN_SELCHANGE)),
                     reinterpret_cast<LPARAM>(list));
    } else if (code == CBN_SELCHANGE && SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) == FALSE) {
        if (id == ID_CBOREPEAT) {
            editor_.onRepeat();
        } else {
            editor_.onDay();
        }
    }
}

std::optional<EditorBar> AlarmFaceInput::barOf(HWND control) const {
    const int id = GetDlgCtrlID(control);
    if (control == nullptr || item(id) != control) return {};
    return found<EditorBar>(kBars, id);
}

void AlarmFaceInput::onScroll(HWND control, int code, int trackPosition) {
    const std::optional<EditorBar> bar = barOf(control);
    const std::optional<BarMove> move = found<BarMove>(kMoves, code);
    if (bar && move) editor_.onScroll(*bar, *move, trackPosition);
}

void AlarmFaceInput::onWheel(int delta, POINT at) {
    const std::optional<EditorBar> under = barOf(WindowFromPoint(at));
    editor_.onWheel(under ? under : barOf(GetFocus()), delta);
}

bool AlarmFaceInput::accessKey(char16_t letter) const {
    const Text small = lowered(TextView(&letter, 1));
    for (const AccessKey& key : kAccessKeys) {
        if (key.letter != small.front()) continue;
        SetFocus(item(key.id));
        const bool isButton = key.id == ID_CHKMUTE || key.id == ID_BTNOK || key.id == ID_BTNCANCEL;
        if (isButton) SendMessageW(item(key.id), BM_CLICK, 0, 0);
        return true;
    }
    return false;
}
