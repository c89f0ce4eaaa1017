// What all notes share for drawing: the screen's scaling, fonts and cursors.
#pragma once

#include <array>

#include "note/NoteLayout.h"
#include "support/Handles.h"

struct NoteLook {
    int dpi = USER_DEFAULT_SCREEN_DPI;
    UniqueFont body;
    UniqueFont title;
    int titleHeight = 0;               ///< of a line in the title font, pixels
    int bodyHeight = 1;                ///< of a line in the body font, pixels; at least 1
    std::array<HCURSOR, 4> cursors{};  ///< resources 101 to 104; shared, never destroyed
    HCURSOR arrow = nullptr;

    int px(Twips t) const { return toPx(t, dpi).n; }
    RECT px(const HotArea& area) const {
        return {px(area.left), px(area.top), px(area.right), px(area.bottom)};
    }
    int twips(int pixels) const { return toTwips(Px{pixels}, dpi).n; }
    /// The cursor with a resource number; the arrow for 0, or if it could not be loaded.
    HCURSOR cursor(int number) const;
};

/// Fonts and cursors for the screen's scaling.
NoteLook loadNoteLook();
