// The date of the alarm editor: a label whose day, month and year are at fixed places and can be clicked.
#pragma once

#include <functional>

#include "alarm/AlarmEditorRules.h"
#include "support/BufferedPaint.h"

/// Must exist at least as long as its window. The window's text is the date, followed by the time if there is
/// one; it is drawn with its parts in the areas of kDatePartAreas. By keyboard, Left and Right choose a part
/// and Space clicks it.
struct DateLabel {
    std::function<void(DatePart)> clicked;
    std::function<void(bool)> hovered;  ///< the mouse came or went

    /// The room in pixels for the date alone, and for a time after it in `font`.
    int width(HFONT font) const;
    /// The left edge of the digits, in pixels.
    int digitsLeft() const { return px(kDatePartAreas.front().left); }

    /// The name of the part that the keyboard is on.
    TextView chosenPart() const;

    LRESULT onMessage(UINT message, WPARAM wp, LPARAM lp);
    static void onEscaped(UINT message) noexcept;

    HWND hwnd = nullptr;
    int dpi = 96;  ///< of the screen, asked for once

private:
    int px(Twips twips) const;
    /// The place of a part of the date, down to `height`.
    RECT areaOf(int index, int height) const;
    int timeLeft() const;
    /// Whether the digits of a font fit their places.
    bool fits(HFONT font) const;
    void paint();
    bool onKey(WPARAM key);
    void onMouseMove();
    void setFont(HFONT font);

    HFONT font_ = nullptr;  ///< of the dialog
    UniqueFont fitted_;     ///< the same with digits that fill their places; empty: it fits as it is
    Canvas canvas_;
    int chosen_ = 0;       ///< part that the keyboard is on
    bool inside_ = false;  ///< the mouse is over the label
};

void registerDateLabel();

/// Creates the window of a label. Null when Windows refuses.
HWND createDateLabel(DateLabel& label, HWND form, int id, HFONT font);
