#include "core/Columns.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <utility>
#include <vector>

namespace {

constexpr double kTwipsPerPixel = 15;
constexpr PxRect kWorkArea{0, 0, 1280, 1000};  // 15000 twips high

using Place = std::pair<std::int32_t, std::int32_t>;  // left, top

/// Where the notes stand afterwards.
std::vector<Place> desk(const std::vector<ColumnNote>& notes, const PxRect& workArea = kWorkArea,
                        double twipsPerPixel = kTwipsPerPixel) {
    const std::vector<ColumnPlace> places = automaticPosition(notes, workArea, twipsPerPixel);
    EXPECT_EQ(places.size(), notes.size());
    std::vector<Place> shown;
    for (std::size_t i = 0; i < places.size(); ++i) {
        shown.push_back(places[i].moved ? Place{places[i].left, places[i].top}
                                        : Place{notes[i].left, notes[i].top});
    }
    return shown;
}

ColumnNote sized(std::int32_t width, std::int32_t height) {
    return {9000, 9000, width, height, true};
}

TEST(Columns, LeavesAnEmptyDeskAndASingleNoteAlone) {
    EXPECT_TRUE(automaticPosition({}, kWorkArea, kTwipsPerPixel).empty());
    EXPECT_FALSE(automaticPosition({{300, 450, 2910, 1890, true}}, kWorkArea, kTwipsPerPixel)[0].moved);
}

TEST(Columns, PutsTheSecondNoteRightUnderTheFirst) {
    EXPECT_EQ(desk({{300, 450, 2910, 1890, true}, sized(4000, 3000)}),
              (std::vector<Place>{{300, 450}, {300, 450 + 1890}}));
}

TEST(Columns, LeavesNoGapBetweenNotesOfAnySize) {
    EXPECT_EQ(desk({{0, 0, 2910, 1000, true}, sized(1200, 2000), sized(5000, 705), sized(2910, 1890)}),
              (std::vector<Place>{{0, 0}, {0, 1000}, {0, 3000}, {0, 3705}}));
}

TEST(Columns, StartsTheNextColumnBesideTheNoteThatBeganTheLastOne) {
    // The first column is as wide as its first note, not as its widest.
    EXPECT_EQ(desk({{150, 300, 2000, 8000, true}, sized(6000, 8000), sized(3000, 15000), sized(1500, 2000)}),
              (std::vector<Place>{{150, 300}, {150, 8300}, {2150, 300}, {5150, 300}}));
}

TEST(Columns, LetsTheLastNoteOfAColumnReachBelowTheWorkArea) {
    // 14970 + one pixel is less than the 15000 twips of the work area: there is room to begin a note.
    EXPECT_EQ(desk({{0, 0, 2000, 14970, true}, sized(2000, 9000)})[1], (Place{0, 14970}));
}

TEST(Columns, BeginsAColumnWhenOnlyOnePixelIsLeft) {
    EXPECT_EQ(desk({{0, 0, 2000, 14985, true}, sized(2000, 705)})[1], (Place{2000, 0}));
    EXPECT_EQ(desk({{0, 0, 2000, 14984, true}, sized(2000, 705)})[1], (Place{0, 14984}));
}

TEST(Columns, SkipsHiddenNotes) {
    ColumnNote hidden = sized(7000, 9000);
    hidden.visible = false;
    EXPECT_EQ(desk({{0, 0, 2000, 1000, true}, hidden, sized(3000, 2000)}),
              (std::vector<Place>{{0, 0}, {9000, 9000}, {0, 1000}}));
}

TEST(Columns, BeginsAtTheFirstNoteEvenWhenThatIsHidden) {
    EXPECT_EQ(desk({{600, 750, 2000, 1000, false}, sized(3000, 2000)}),
              (std::vector<Place>{{600, 750}, {600, 1750}}));
}

TEST(Columns, MeasuresTheHeightOfTheWorkAreaFromTheTopOfTheScreen) {
    // A task bar at the top: the work area is 970 pixels = 14550 twips high, wherever it begins.
    const PxRect belowBar{0, 30, 1280, 1000};
    EXPECT_EQ(desk({{0, 450, 2000, 14084, true}, sized(2000, 705)}, belowBar)[1], (Place{0, 14534}));
    EXPECT_EQ(desk({{0, 450, 2000, 14085, true}, sized(2000, 705)}, belowBar)[1], (Place{2000, 450}));
}

TEST(Columns, RunsOnBeyondTheRightEdge) {
    std::vector<ColumnNote> notes(40, sized(2910, 14990));
    notes[0].left = 0;
    notes[0].top = 0;
    EXPECT_EQ(desk(notes).back(), (Place{39 * 2910, 0}));
}

TEST(Columns, FollowsTheScaleOfTheScreen) {
    // At 120 dpi a pixel is 12 twips: the same work area is 12000 twips high.
    EXPECT_EQ(desk({{0, 0, 2000, 11987, true}, sized(2000, 705)}, kWorkArea, 12)[1], (Place{0, 11987}));
    EXPECT_EQ(desk({{0, 0, 2000, 11988, true}, sized(2000, 705)}, kWorkArea, 12)[1], (Place{2000, 0}));
}

// --- A second model ---------------------------------------------------------------------------------------

/// A column made in another way: its notes are collected first and placed afterwards.
struct Column {
    std::deque<std::size_t> members;
    double used = 0;  ///< twips from the top of the screen to the end of its last note
};

std::vector<Place> byColumns(const std::vector<ColumnNote>& notes, const PxRect& work, double twipsPerPixel) {
    std::vector<Place> places;
    for (const ColumnNote& note : notes)
        places.emplace_back(note.left, note.top);
    if (notes.empty()) return places;

    const auto start = static_cast<double>(notes.front().top);
    std::vector<Column> columns{{{0}, start + notes.front().height}};
    for (std::size_t i = 1; i < notes.size(); ++i) {
        if (!notes[i].visible) continue;
        const double remaining = (work.bottom - work.top) * twipsPerPixel - columns.back().used;
        if (!(remaining > twipsPerPixel)) columns.push_back({{}, start});
        columns.back().members.push_back(i);
        columns.back().used += notes[i].height;
    }

    std::int32_t x = notes.front().left;
    for (const Column& column : columns) {
        std::int32_t y = notes.front().top;
        for (const std::size_t member : column.members) {
            places[member] = {x, y};
            y += notes[member].height;
        }
        x += notes[column.members.front()].width;
    }
    return places;
}

std::vector<ColumnNote> randomNotes(std::mt19937& random, const PxRect& work, std::int32_t twipsPerPixel) {
    const auto between = [&random](std::int32_t low, std::int32_t high) {
        return std::uniform_int_distribution<std::int32_t>(low, high)(random);
    };
    std::vector<ColumnNote> notes(static_cast<std::size_t>(between(0, 50)));
    const std::int32_t high = work.height() * twipsPerPixel;
    for (ColumnNote& note : notes) {
        note = {between(-5000, 40000), between(-5000, 16000), between(1130, 9000), between(705, 4000),
                between(0, 4) != 0};
        switch (between(0, 9)) {
            case 0:  // iconized: the strip alone
                note.height = 300;
                break;
            case 1:  // taller than the screen
                note.height = high + between(-30, 9000);
                break;
            case 2:  // minimised by the system and just restored, hidden notes included
                note = {between(0, 9000), between(0, 9000), 2910, 1890, between(0, 1) != 0};
                break;
            case 3:  // ends within two pixels of where the room ends
                note.height = std::max(705, high - note.top - between(-2, 2) * twipsPerPixel - between(0, 1));
                break;
            default:
                break;
        }
    }
    return notes;
}

TEST(Columns, AgreesWithTheSecondModelOnTenThousandDesks) {
    std::mt19937 random(20260419);
    std::size_t placed = 0;
    std::size_t columnsBegun = 0;
    for (int round = 0; round < 10000; ++round) {
        const auto any = [&random](int low, int high) {
            return std::uniform_int_distribution<int>(low, high)(random);
        };
        const int left = any(-1, 1) * any(0, 1280);
        const int top = any(0, 1) * any(-900, 60);
        const PxRect work{left, top, left + any(300, 2560), top + any(200, 1600)};
        const std::int32_t twipsPerPixel = std::vector<std::int32_t>{15, 12, 10, 6}[random() % 4];
        const std::vector<ColumnNote> notes = randomNotes(random, work, twipsPerPixel);

        const std::vector<ColumnPlace> places = automaticPosition(notes, work, twipsPerPixel);
        ASSERT_EQ(desk(notes, work, twipsPerPixel), byColumns(notes, work, twipsPerPixel))
            << "desk " << round;
        for (std::size_t i = 0; i < notes.size(); ++i) {
            ASSERT_EQ(places[i].moved, i > 0 && notes[i].visible) << "desk " << round << ", note " << i + 1;
            if (!places[i].moved) continue;
            ++placed;
            if (places[i].left != notes[0].left) ++columnsBegun;
        }
    }
    // The desks must have covered all cases.
    EXPECT_GT(placed, 100000U);
    EXPECT_GT(columnsBegun, 50000U);
}

// --- New notes in a cascade -------------------------------------------------------------------------------

constexpr PxRect kDesk{40, 20, 1000, 520};  // 960 x 500 pixels

/// Where new note `number`, 200 x 140 pixels, begins: 360 / 24 = 15 steps fit.
PxCorner fresh(int number, const std::vector<PxCorner>& taken = {}) {
    return cascadePlace(number, 200, 140, kDesk, taken);
}

TEST(Cascade, EachNoteBeginsAStepFurtherDownAndRight) {
    EXPECT_EQ(fresh(1), (PxCorner{40, 20}));
    EXPECT_EQ(fresh(2), (PxCorner{64, 44}));
    EXPECT_EQ(fresh(15), (PxCorner{40 + 14 * 24, 20 + 14 * 24}));
    EXPECT_EQ(fresh(16), (PxCorner{40, 20})) << "the next one would not be completely on the desk";
}

TEST(Cascade, AStepWithANoteIsSkipped) {
    EXPECT_EQ(fresh(1, {{40, 20}}), (PxCorner{64, 44}));
    EXPECT_EQ(fresh(2, {{64, 44}, {88, 68}}), (PxCorner{112, 92}));
    EXPECT_EQ(fresh(2, {{64, 45}, {63, 44}}), (PxCorner{64, 44})) << "only where it would hide the old note";
    EXPECT_EQ(fresh(15, {{376, 356}}), (PxCorner{40, 20})) << "after the last step comes the first";
}

TEST(Cascade, WithEveryStepTakenTheNumberDecides) {
    std::vector<PxCorner> all;
    for (int step = 0; step < 15; ++step)
        all.push_back({40 + 24 * step, 20 + 24 * step});
    EXPECT_EQ(fresh(4, all), (PxCorner{112, 92}));
    EXPECT_EQ(fresh(19, all), (PxCorner{112, 92}));
}

TEST(Cascade, ANoteLargerThanTheDeskBeginsAtItsCorner) {
    for (const int number : {1, 2, 50}) {
        EXPECT_EQ(cascadePlace(number, 2000, 100, kDesk, {}), (PxCorner{40, 20})) << number;
        EXPECT_EQ(cascadePlace(number, 100, 500, kDesk, {}), (PxCorner{40, 20})) << number;
        EXPECT_EQ(cascadePlace(number, 100, 477, kDesk, {}), (PxCorner{40, 20})) << number;
    }
    EXPECT_EQ(cascadePlace(2, 100, 452, kDesk, {}), (PxCorner{64, 44}));
}

}  // namespace
