#include "note/NoteKeys.h"

#include <algorithm>
#include <iterator>

#include "note/KeyNumbers.h"

namespace {

using namespace keys;

// Exactly these are held, since AltGr is Ctrl+Alt and types letters on many keyboards.
enum class Held : unsigned char { Nothing, Shift, Ctrl, CtrlShift, Any };

enum class When : unsigned char { Always, NotResizing, NotEditing, Ringing };

struct Row {
    unsigned key;
    Held held;
    When when;
    NoteAction action;
};

constexpr Row kRows[] = {
    {kDelete, Held::Nothing, When::NotEditing, NoteAction::Delete},
    {'N', Held::Ctrl, When::NotResizing, NoteAction::New},
    {kMenuKey, Held::Any, When::Always, NoteAction::OpenMenu},
    {kF2, Held::Nothing, When::NotResizing, NoteAction::Edit},
    {kF2, Held::Shift, When::NotResizing, NoteAction::EditTitle},
    {kF4, Held::Nothing, When::NotResizing, NoteAction::Alarm},
    {kF4, Held::Shift, When::Always, NoteAction::SwapStrip},
    {kEscape, Held::Nothing, When::Ringing, NoteAction::Silence},
    {kF6, Held::Nothing, When::Always, NoteAction::NextNote},
    {kF6, Held::Shift, When::Always, NoteAction::PreviousNote},
    {kTab, Held::Ctrl, When::Always, NoteAction::NextNote},
    {kTab, Held::CtrlShift, When::Always, NoteAction::PreviousNote},
    {kLeft, Held::Ctrl, When::NotEditing, NoteAction::MoveLeft},
    {kUp, Held::Ctrl, When::NotEditing, NoteAction::MoveUp},
    {kRight, Held::Ctrl, When::NotEditing, NoteAction::MoveRight},
    {kDown, Held::Ctrl, When::NotEditing, NoteAction::MoveDown},
};

bool fits(Held held, const NoteKey& pressed) {
    if (held == Held::Any) return true;
    const bool shift = held == Held::Shift || held == Held::CtrlShift;
    const bool control = held == Held::Ctrl || held == Held::CtrlShift;
    return pressed.shift == shift && pressed.control == control && !pressed.alt;
}

bool fits(When when, const NoteKey& pressed, const NoteKeyInput& input) {
    switch (when) {
        case When::Always:
            return true;
        case When::NotResizing:
            return !input.resizing;
        case When::NotEditing:
            return !input.editing && !input.resizing;
        case When::Ringing:
            return !input.editing && input.ringing && !pressed.repeated && !input.justEdited;
    }
    return false;
}

}  // namespace

NoteAction noteAction(const NoteKey& pressed, const NoteKeyInput& input) {
    const auto* const row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) {
        return r.key == pressed.key && fits(r.held, pressed) && fits(r.when, pressed, input);
    });
    return row == std::end(kRows) ? NoteAction::None : row->action;
}
