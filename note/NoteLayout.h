// Where the parts of a note are: the design data, and the rectangles for a client size.
#pragma once

#include "support/Units.h"

/// A rectangle in pixels; right and bottom are excluded.
struct PxRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    constexpr int width() const { return right - left; }
    constexpr int height() const { return bottom - top; }
    constexpr PxRect shifted(int x, int y) const { return {left + x, top + y, right + x, bottom + y}; }
    bool operator==(const PxRect&) const = default;
};

/// A rectangle in twips, including both ends: a hot area of a part, in the part's own coordinates.
struct HotArea {
    Twips left, top, right, bottom;
    constexpr bool contains(Twips x, Twips y) const {
        return x >= left && x <= right && y >= top && y <= bottom;
    }
};

/// Design data of the note window. The pictures are drawn from the same hot areas that take the clicks, so
/// they coincide at any scaling.
namespace design {
inline constexpr Twips kBorder{15};         ///< line around the note, outside the client area
inline constexpr Twips kStripHeight{270};   ///< title strip
inline constexpr Twips kIconizedExtra{30};  ///< an iconized note is the strip and its two borders
inline constexpr Twips kLeadWidth{480};     ///< room of the buttons: the title begins here
inline constexpr Twips kButtonsWidth{465};  ///< lbl2
inline constexpr Twips kPicWidth{270};
inline constexpr Twips kMargin{60};    ///< nota.Left, and the bottom margin
inline constexpr Twips kNotaTop{315};  ///< below the strip and the line under it
inline constexpr Twips kGripWidth{270};
inline constexpr Twips kGripHeight{255};
inline constexpr Twips kTimeHeight{240};
inline constexpr Twips kTimeText{30};  ///< where the strip's text begins, from left and top
inline constexpr Twips kTitleGap{30};  ///< between the title's editor and the delete picture

inline constexpr HotArea kIconizeButton{Twips{15}, Twips{30}, Twips{195}, Twips{250}};
inline constexpr HotArea kCloseButton{Twips{255}, Twips{30}, Twips{450}, Twips{250}};
inline constexpr HotArea kDeleteButton{Twips{0}, Twips{0}, kPicWidth, Twips{225}};
inline constexpr HotArea kWidthArrow{Twips{120}, Twips{0}, Twips{255}, Twips{120}};
inline constexpr HotArea kHeightArrow{Twips{0}, Twips{105}, Twips{120}, Twips{240}};

// Sizes of the pictures, each in the middle of its hot area.
inline constexpr Twips kSign{120};  ///< of iconizing and closing
inline constexpr Twips kBin{165};
inline constexpr Twips kArrowLength{130};
inline constexpr Twips kArrowBreadth{90};  ///< its heads leave a shaft at every scaling
inline constexpr Twips kLine{15};          ///< how thick the pictures are drawn

inline constexpr Twips kMinWidth{1130};
inline constexpr Twips kMinHeight{705};

inline constexpr int kFontPoints = 9;
inline constexpr const char16_t* kFontName = u"Segoe UI";
}  // namespace design

/// Places of the parts in client coordinates.
struct NoteRects {
    PxRect lbl, lbl2, pic, nota, txtNota, txtTitle, pic2, pic_time;
};

/// Lays the parts out in a client area of `width` x `height` pixels at `dpi`. No rectangle is ever inside
/// out. An iconized note has its grip in the strip, to the left of the delete picture. `titleHeight` is the
/// height in pixels of a line in the title's font, so that the title and its editor are at the same place.
NoteRects layoutNote(int width, int height, bool iconized, int dpi, int titleHeight);

/// Height of an iconized note's window.
inline constexpr Twips kIconizedHeight = design::kStripHeight + design::kIconizedExtra;

/// The size in twips in which a stored size is shown: the default for 0 or less, and at least 1130 x 705
/// twips.
Twips shownWidth(std::int32_t stored, float defaultWidth);
Twips shownHeight(std::int32_t stored, float defaultHeight);

/// The rectangle moved so that the title strip (its first `strip` pixels) can be reached in `work`.
PxRect movedInto(PxRect window, const PxRect& work, int strip);
