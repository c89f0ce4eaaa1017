// Colours of a note: stored numbers to RGB values, and inks that stay legible on them.
#pragma once

#include <cstdint>

/// 0x00BBGGRR, as Windows and the stores hold colours.
using Rgb = std::uint32_t;

inline constexpr Rgb kWhite = 0xFFFFFF;
inline constexpr Rgb kBlack = 0x000000;

/// The colour that a stored number means. A negative one is an index of the system's colours (old designs
/// stored those) and is looked up through `systemColor`.
Rgb shownColor(std::int32_t stored, Rgb (*systemColor)(int index));

/// Whether text in this ink can be read on the ground also by weak eyes: a contrast of at least 4.5.
bool isLegible(Rgb ink, Rgb ground);

/// Black or white, whichever reads better on the ground.
Rgb inkOn(Rgb ground);

/// The ground with `percent` of its ink mixed in: a line or a shade that can be seen on any colour.
Rgb shaded(Rgb ground, int percent);

/// The line around a note: two overlapping notes of one colour can be told apart by it.
Rgb frameColor(Rgb ground);

/// Ground of an open editor: the note's colour, a little nearer to paper (or to night, on a dark note), so
/// that one sees what is being edited.
Rgb editorGround(Rgb ground);
