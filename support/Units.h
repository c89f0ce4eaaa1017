// Twips and pixels as different types, and the only conversion between them.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>

/// 1/1440 inch: the unit of everything stored and of the note window's own layout.
struct Twips {
    std::int32_t n = 0;
    auto operator<=>(const Twips&) const = default;
};
constexpr Twips operator+(Twips a, Twips b) {
    return {a.n + b.n};
}
constexpr Twips operator-(Twips a, Twips b) {
    return {a.n - b.n};
}

/// One dot of the screen: the unit of everything that is passed to Windows.
struct Px {
    std::int32_t n = 0;
    auto operator<=>(const Px&) const = default;
};
constexpr Px operator+(Px a, Px b) {
    return {a.n + b.n};
}
constexpr Px operator-(Px a, Px b) {
    return {a.n - b.n};
}

inline constexpr int kTwipsPerInch = 1440;

/// n * to / from, rounded half away from zero and held within 32 bits.
constexpr std::int32_t scaled(std::int64_t n, std::int64_t to, std::int64_t from) {
    const std::int64_t value = (n * to + (n < 0 ? -from / 2 : from / 2)) / from;
    constexpr std::int64_t low = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t high = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value < low ? low : (value > high ? high : value));
}

/// Conversions at `dpi` dots per inch. At 96 to 192 dpi pixels -> twips -> pixels is the identity, so a note
/// does not creep from run to run.
constexpr Px toPx(Twips t, int dpi) {
    return {scaled(t.n, dpi, kTwipsPerInch)};
}
constexpr Twips toTwips(Px p, int dpi) {
    return {scaled(p.n, kTwipsPerInch, dpi)};
}
static_assert(toPx(Twips{15}, 96) == Px{1} && toPx(Twips{-30}, 96) == Px{-2});
