#include "note/NoteColor.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

Rgb fakeSystemColor(int index) {
    return 0x100 + static_cast<Rgb>(index) * 0x10101;
}

TEST(ShownColor, TakesPlainColours) {
    EXPECT_EQ(shownColor(8454143, fakeSystemColor), 0x80FFFFU);
    EXPECT_EQ(shownColor(0, fakeSystemColor), 0U);
    EXPECT_EQ(shownColor(0x7FFFFFFF, fakeSystemColor), 0xFFFFFFU);
}

TEST(ShownColor, LooksNegativeNumbersUpAsSystemColours) {
    EXPECT_EQ(shownColor(-2147483643, fakeSystemColor), 0x050605U);  // 0x80000005
}

double channel(Rgb color, int shift) {
    const double c = static_cast<double>((color >> shift) & 0xFF) / 255;
    return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double luminance(Rgb color) {
    return 0.2126 * channel(color, 0) + 0.7152 * channel(color, 8) + 0.0722 * channel(color, 16);
}

double contrast(Rgb a, Rgb b) {
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

TEST(InkOn, IsLegibleOnEveryColour) {
    for (Rgb red = 0; red < 256; red += 15) {
        for (Rgb green = 0; green < 256; green += 15) {
            for (Rgb blue = 0; blue < 256; blue += 15) {
                const Rgb ground = red | green << 8 | blue << 16;
                ASSERT_GE(contrast(ground, inkOn(ground)), 4.5) << std::hex << ground;
                const Rgb editor = editorGround(ground);
                ASSERT_GE(contrast(editor, inkOn(editor)), 4.5) << std::hex << ground;
                ASSERT_EQ(inkOn(editor), inkOn(ground)) << "text would change colour when an edit starts";
            }
        }
    }
}

TEST(IsLegible, AgreesWithTheMeasureOfContrast) {
    for (Rgb level = 0; level < 256; ++level) {
        for (const Rgb ground : {0xFFFFFFU, 0x000000U, 0x80FFFFU, 0xCC6600U}) {
            for (const Rgb ink : {level * 0x10101U, level, level << 8, level << 16}) {
                const double found = contrast(ink, ground);
                if (found > 4.45 && found < 4.55) continue;
                ASSERT_EQ(isLegible(ink, ground), found > 4.5) << std::hex << ink << " on " << ground;
            }
        }
    }
}

TEST(FrameColor, SeparatesTwoNotesOfOneColour) {
    for (const Rgb ground : {0x80FFFFU, 0x000000U, 0xFFFFFFU, 0x808080U, 0x0000FFU}) {
        EXPECT_GE(contrast(frameColor(ground), ground), 2.0) << std::hex << ground;
    }
}

TEST(NoteColor, AShadeIsTheGroundWithASetShareOfInk) {
    EXPECT_EQ(shaded(0xFFFFFF, 0), 0xFFFFFFU);
    EXPECT_EQ(shaded(0xFFFFFF, 10), 0xE6E6E6U);
    EXPECT_EQ(shaded(0xFFFFFF, 50), 0x808080U);
    EXPECT_EQ(shaded(0xFFFFFF, 100), 0x000000U);
    EXPECT_EQ(shaded(0x000040, 50), 0x8080A0U) << "each channel by itself";
}

TEST(NoteColor, AShadeIsRoundedToTheNearest) {
    for (int level = 128; level < 256; ++level) {  // black is the ink
        for (int percent = 0; percent <= 100; ++percent) {
            const double exact = level * (100 - percent) / 100.0;
            ASSERT_EQ(shaded(static_cast<Rgb>(level) * 0x10101, percent),
                      static_cast<Rgb>(exact + 0.5) * 0x10101)
                << level << " " << percent;
        }
    }
}

TEST(NoteColor, AFrameAndAnEditorAreSetSharesOfTheirColours) {
    EXPECT_EQ(frameColor(0xFFFFFF), 0x595959U) << "65 parts of black";
    EXPECT_EQ(editorGround(0xC8C8C8), 0xE6E6E6U) << "55 parts of white";
}

}  // namespace
