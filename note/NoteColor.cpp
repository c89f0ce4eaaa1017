#include "note/NoteColor.h"

#include <algorithm>

namespace {

struct Channels {
    std::uint32_t red, green, blue;
};

constexpr Channels channelsOf(Rgb color) {
    return {color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF};
}

constexpr std::uint32_t mixed(std::uint32_t from, std::uint32_t to, std::uint32_t percent) {
    return (from * (100 - percent) + to * percent + 50) / 100;
}

Rgb mixedColor(Rgb ground, Rgb other, int percent) {
    const auto share = static_cast<std::uint32_t>(percent);
    const Channels from = channelsOf(ground);
    const Channels to = channelsOf(other);
    return mixed(from.red, to.red, share) | mixed(from.green, to.green, share) << 8 |
           mixed(from.blue, to.blue, share) << 16;
}

/// The brightness, from 0 to 1, of a channel from 0 to 255: the screen's curve.
constexpr double channelLight(std::uint32_t channel) {
    const double c = channel / 255.0;
    return c * (c * (c * 0.3053 + 0.6822) + 0.0125);
}

double lightOf(Rgb color) {
    const Channels c = channelsOf(color);
    return 0.2126 * channelLight(c.red) + 0.7152 * channelLight(c.green) + 0.0722 * channelLight(c.blue);
}

}  // namespace

Rgb shownColor(std::int32_t stored, Rgb (*systemColor)(int index)) {
    const auto bits = static_cast<std::uint32_t>(stored);
    return stored < 0 ? systemColor(static_cast<int>(bits & 0xFF)) : bits & 0xFFFFFF;
}

bool isLegible(Rgb ink, Rgb ground) {
    constexpr double kLeast = 4.5;
    constexpr double kGlare = 0.05;  // light that falls on any screen
    const double one = lightOf(ink) + kGlare;
    const double other = lightOf(ground) + kGlare;
    return std::max(one, other) >= kLeast * std::min(one, other);
}

Rgb inkOn(Rgb ground) {
    constexpr double kMiddle = 0.179;  // where black and white read equally well
    return lightOf(ground) < kMiddle ? kWhite : kBlack;
}

Rgb shaded(Rgb ground, int percent) {
    return mixedColor(ground, inkOn(ground), percent);
}

Rgb frameColor(Rgb ground) {
    constexpr int kShare = 65;
    return shaded(ground, kShare);
}

Rgb editorGround(Rgb ground) {
    constexpr int kShare = 55;
    return mixedColor(ground, inkOn(ground) == kBlack ? kWhite : kBlack, kShare);
}
