// Colours of a note: from stored numbers to RGB values, and inks that are legible on them.
#pragma once

#include <cstdint>

/// 0x00BBGGRR, as Windows and the stores hold colours.
using Rgb = std::uint32_t;

inline constexpr Rgb kWhite = 0xFFFFFF;
inline constexpr Rgb kBlack = 0x000000;

/// The colour that a stored number stands for. A negative number is an index of the system's colours, which
/// old designs stored, and is looked up through `systemColor`.
Rgb shownColor(std::int32_t stored, Rgb (*systemColor)(int index));

/// Whether even weak eyes can read text in this ink on the ground: a contrast of at least 4.5.
bool isLegible(Rgb ink, Rgb ground);

/// Black or white, whichever reads better on the ground.
Rgb inkOn(Rgb ground);

/// The ground with `percent` of its ink mixed in: a line or a shade that is visible on any colour.
Rgb shaded(Rgb ground, int percent);

/// The line around a note: two overlapping notes of one colour can be told apart by it.
Rgb frameColor(Rgb ground);

/// Ground of an open editor: the note's colour, a little nearer to white (or, on a dark note, to black), to
/// show what is being edited.
Rgb editorGround(Rgb ground);
