#include "note/NoteResizer.h"

#include <cmath>

#include "note/KeyNumbers.h"
#include "note/NoteLayout.h"
#include "resources/resource.h"

namespace {

using namespace keys;

constexpr Twips kGripStep{15};   // per turn of a hold
constexpr Twips kKeyStep{30};    // per press of an arrow key
constexpr Twips kWideStep{180};  // with Ctrl

constexpr int cursorOf(Along along) {
    return along == Along::Width ? IDC_RESIZE_WIDTH : IDC_RESIZE_HEIGHT;
}

Twips rounded(float twips) {
    return Twips{static_cast<std::int32_t>(std::lround(twips))};
}

}  // namespace

void NoteResizer::begin(int cursor) {
    cursor_ = cursor;
    note_.showResizeCursor(cursor);
}

void NoteResizer::setMode(bool on) {
    if (on_ == on || (on && note_.refusesResizing())) return;
    on_ = on;
    begin(on ? IDC_RESIZE_WIDTH : 0);
    note_.resizeModeChanged();
}

void NoteResizer::press(const Press& press) {
    if (holding_) return;
    const bool width = design::kWidthArrow.contains(press.x, press.y);
    const bool height = !width && design::kHeightArrow.contains(press.x, press.y) && !note_.isIconized();
    if ((!width && !height) || note_.refusesResizing()) return;

    const Along along = width ? Along::Width : Along::Height;
    const bool smaller = press.rightButton || press.shift;
    const Twips step = smaller ? Twips{} - kGripStep : kGripStep;
    bool changed = false;
    holding_ = true;
    heldByRight_ = press.rightButton;
    setMode(true);
    begin(cursorOf(along));
    note_.holdGrip();
    auto hold = ResizedNote::Hold::GoesOn;
    while (hold == ResizedNote::Hold::GoesOn && on_) {
        changed = change(along, step) || changed;
        hold = note_.waitOnGrip(press.rightButton);
        if (hold == ResizedNote::Hold::Destroyed) return;
    }
    holding_ = false;
    note_.releaseGrip();
    setMode(false);
    if (changed) note_.storeSize();
}

void NoteResizer::release(bool rightButton) {
    if (holding_ && rightButton == heldByRight_) setMode(false);
}

bool NoteResizer::key(unsigned key, bool control) {
    if (!on_) return false;
    const Twips step = control ? kWideStep : kKeyStep;
    bool changed = false;
    switch (key) {
        case kLeft:
        case kRight:
            begin(cursorOf(Along::Width));
            changed = change(Along::Width, key == kLeft ? Twips{} - step : step);
            break;
        case kUp:
        case kDown:
            if (note_.isIconized()) return true;
            begin(cursorOf(Along::Height));
            changed = change(Along::Height, key == kUp ? Twips{} - step : step);
            break;
        case kEnter:
        case kEscape:
            setMode(false);
            return true;
        default:
            return false;
    }
    if (changed) note_.storeSize();
    return true;
}

void NoteResizer::ResizeWidth(float Delta) {
    change(Along::Width, rounded(Delta));
}

void NoteResizer::ResizeHeight(float Delta) {
    change(Along::Height, rounded(Delta));
}

bool NoteResizer::change(Along along, Twips by) {
    if (along == Along::Height && note_.isIconized()) return false;
    const ResizeAxis axis = note_.axis(along);
    const Twips wanted = resized(axis, by);
    if (wanted == axis.size) return false;
    note_.resize(along, wanted);
    return true;
}
