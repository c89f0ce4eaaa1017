#include "note/NoteColor.h"

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

}  // namespace

Rgb shownColor(std::int32_t stored, Rgb (*systemColor)(int index)) {
    const auto bits = static_cast<std::uint32_t>(stored);
    return stored < 0 ? systemColor(static_cast<int>(bits & 0xFF)) : bits & 0xFFFFFF;
}

Rgb inkOn(Rgb ground) {
    const Channels c = channelsOf(ground);
    // Light that reaches the eye: its weights for red, green and blue, with the screen's gamma of about 2.
    // At 18 of 100 black and white read equally well.
    const std::uint32_t light =
        (c.red * c.red * 2126 + c.green * c.green * 7152 + c.blue * c.blue * 722) / 10000;
    constexpr std::uint32_t kFull = 255 * 255;
    return light * 100 < kFull * 18 ? kWhite : kBlack;
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
