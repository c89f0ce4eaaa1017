#include "note/Snap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <ostream>
#include <random>
#include <vector>

// Found by the test library's printer.
static void PrintTo(const PxRect& r, std::ostream* out) {
    *out << r.left << "," << r.top << " to " << r.right << "," << r.bottom;
}

namespace {

constexpr SnapScreen kPlainScreen{0, 0, {0, 0, 1280, 994}};  // task bar below
constexpr SnapScreen kBarsLeftAndTop{0, 0, {50, 30, 1280, 1024}};
constexpr SnapScreen kSecondScreen{
    1280, -100, {1280, -100, 2560, 884}};  // right of the primary, a bit higher

struct EdgeCase {
    const char* name;
    SnapScreen screen;
    PxRect moving;
    PxRect expected;
};

TEST(Snap, ScreenEdges) {
    constexpr EdgeCase kCases[] = {
        {"FarFromEveryEdge", kPlainScreen, {300, 300, 500, 400}, {300, 300, 500, 400}},
        {"LeftWithinTolerance", kPlainScreen, {1, 300, 201, 400}, {0, 300, 200, 400}},
        {"LeftJustOutside", kPlainScreen, {2, 300, 202, 400}, {2, 300, 202, 400}},
        {"LeftBeyondTheEdge", kPlainScreen, {-80, 300, 120, 400}, {0, 300, 200, 400}},
        {"TopWithinTolerance", kPlainScreen, {300, 1, 500, 101}, {300, 0, 500, 100}},
        {"TopJustOutside", kPlainScreen, {300, 2, 500, 102}, {300, 2, 500, 102}},
        {"TopBeyondTheEdge", kPlainScreen, {300, -40, 500, 60}, {300, 0, 500, 100}},
        {"RightWithinTolerance", kPlainScreen, {1079, 300, 1279, 400}, {1080, 300, 1280, 400}},
        {"RightJustOutside", kPlainScreen, {1078, 300, 1278, 400}, {1078, 300, 1278, 400}},
        {"RightBeyondTheEdge", kPlainScreen, {1200, 300, 1400, 400}, {1080, 300, 1280, 400}},
        {"BottomWithinTolerance", kPlainScreen, {300, 893, 500, 993}, {300, 894, 500, 994}},
        {"BottomJustOutside", kPlainScreen, {300, 892, 500, 992}, {300, 892, 500, 992}},
        {"BottomBehindTheTaskBar", kPlainScreen, {300, 920, 500, 1020}, {300, 894, 500, 994}},
        {"Corner", kPlainScreen, {-5, 950, 195, 1050}, {0, 894, 200, 994}},
        // The right-hand rule sees the result of the left-hand rule: a note wider than the screen ends at its
        // right edge.
        {"WiderThanTheScreen", kPlainScreen, {-5, 300, 1395, 400}, {-120, 300, 1280, 400}},
        // A work area further in: the edge is the screen's, the landing place is the work area's, and the
        // note is made smaller by the difference.
        {"BarAtTheLeft", kBarsLeftAndTop, {1, 300, 201, 400}, {50, 300, 200, 400}},
        {"BarAtTheLeftNotTouched", kBarsLeftAndTop, {20, 300, 220, 400}, {20, 300, 220, 400}},
        {"BarAtTheTop", kBarsLeftAndTop, {300, -7, 500, 93}, {300, 30, 500, 100}},
        // Another monitor counts from its own corner.
        {"SecondScreenLeft", kSecondScreen, {1281, 300, 1481, 400}, {1280, 300, 1480, 400}},
        {"SecondScreenTop", kSecondScreen, {1500, -99, 1700, 1}, {1500, -100, 1700, 0}},
        {"SecondScreenRight", kSecondScreen, {2400, 300, 2600, 400}, {2360, 300, 2560, 400}},
        {"SecondScreenBottom", kSecondScreen, {1500, 783, 1700, 883}, {1500, 784, 1700, 884}},
        {"SecondScreenInside", kSecondScreen, {1600, -50, 1800, 50}, {1600, -50, 1800, 50}},
    };
    for (const EdgeCase& c : kCases) {
        PxRect moving = c.moving;
        const bool moved = snap(moving, c.screen, {});
        EXPECT_EQ(moving, c.expected) << c.name;
        EXPECT_EQ(moved, c.expected != c.moving) << c.name;
    }
}

struct NoteCase {
    const char* name;
    PxRect moving;
    PxRect expected;
    bool moved;
};

TEST(Snap, FacingEdgesOfAnotherNote) {
    constexpr PxRect kNote{400, 300, 600, 500};
    constexpr NoteCase kCases[] = {
        {"LeftToRightFromOutside", {602, 350, 702, 450}, {600, 350, 700, 450}, true},
        {"LeftToRightFromInside", {598, 350, 698, 450}, {600, 350, 700, 450}, true},
        {"LeftToRightTooFar", {603, 350, 703, 450}, {603, 350, 703, 450}, false},
        {"LeftToRightTooDeep", {597, 350, 697, 450}, {597, 350, 697, 450}, false},
        {"RightToLeftFromOutside", {298, 350, 398, 450}, {300, 350, 400, 450}, true},
        {"RightToLeftFromInside", {302, 350, 402, 450}, {300, 350, 400, 450}, true},
        {"RightToLeftTooFar", {297, 350, 397, 450}, {297, 350, 397, 450}, false},
        {"TopToBottomFromOutside", {450, 502, 550, 602}, {450, 500, 550, 600}, true},
        {"TopToBottomFromInside", {450, 498, 550, 598}, {450, 500, 550, 600}, true},
        {"TopToBottomTooFar", {450, 503, 550, 603}, {450, 503, 550, 603}, false},
        {"BottomToTopFromOutside", {450, 198, 550, 298}, {450, 200, 550, 300}, true},
        {"BottomToTopFromInside", {450, 202, 550, 302}, {450, 200, 550, 300}, true},
        {"BottomToTopTooFar", {450, 197, 550, 297}, {450, 197, 550, 297}, false},
        // The notes must face each other, two pixels of gap included.
        {"BesideWithSmallestOverlap", {602, 502, 702, 602}, {600, 502, 700, 602}, true},
        {"BesideButPastIt", {602, 503, 702, 603}, {602, 503, 702, 603}, false},
        {"BesideButAboveIt", {602, 197, 702, 297}, {602, 197, 702, 297}, false},
        {"BelowButPastIt", {603, 502, 703, 602}, {603, 502, 703, 602}, false},
        {"BelowButBeforeIt", {297, 502, 397, 602}, {297, 502, 397, 602}, false},
        // Edges on the same side are never aligned.
        {"SameLeftEdges", {401, 350, 501, 450}, {401, 350, 501, 450}, false},
        {"SameTopEdges", {450, 301, 550, 401}, {450, 301, 550, 401}, false},
        // Touching already: nothing to move, but it counts as held.
        {"TouchingAlready", {600, 350, 700, 450}, {600, 350, 700, 450}, true},
        // At a corner the side-by-side rule comes first, and only one rule applies.
        {"CornerTakesTheFirstRule", {601, 501, 701, 601}, {600, 501, 700, 601}, true},
    };
    for (const NoteCase& c : kCases) {
        PxRect moving = c.moving;
        EXPECT_EQ(snap(moving, kPlainScreen, std::array{kNote}), c.moved) << c.name;
        EXPECT_EQ(moving, c.expected) << c.name;
    }
}

TEST(Snap, TheFirstNoteInOrderWins) {
    constexpr PxRect kFirst{400, 300, 601, 500};
    constexpr PxRect kSecond{400, 300, 599, 500};
    PxRect moving{600, 350, 700, 450};
    EXPECT_TRUE(snap(moving, kPlainScreen, std::array{kFirst, kSecond}));
    EXPECT_EQ(moving, (PxRect{601, 350, 701, 450}));
    moving = {600, 350, 700, 450};
    EXPECT_TRUE(snap(moving, kPlainScreen, std::array{kSecond, kFirst}));
    EXPECT_EQ(moving, (PxRect{599, 350, 699, 450}));
}

TEST(Snap, NotesAreLookedAtFromWhereTheScreenPutTheRectangle) {
    // Two pixels above the lower screen edge it would miss the note; on the edge its top touches it.
    constexpr PxRect kNote{300, 700, 500, 892};
    PxRect moving{350, 897, 450, 997};
    EXPECT_TRUE(snap(moving, kPlainScreen, std::array{kNote}));
    EXPECT_EQ(moving, (PxRect{350, 892, 450, 992}));
}

// --- A second model, from positions and lengths on one axis at a time -------------------------------------

struct Axis {
    int at;
    int length;
};

struct ModelResult {
    PxRect rect;
    bool moved;
    int rule;  // which of the eight rules applied last: 1..4 screen, 5..8 notes, 0 none
};

/// Near and far screen edge on one axis, in the monitor's own coordinates; 0, 1 or 2 says which held last.
int toScreen(Axis& a, int workStart, int workEnd) {
    int rule = 0;
    if (a.at <= 1) {
        const int shrunk = a.at + a.length - a.at - workStart;
        a = {workStart, shrunk};
        rule = 1;
    }
    if (workEnd - (a.at + a.length) < 2) {
        a.at = workEnd - a.length;
        rule = 2;
    }
    return rule;
}

bool meet(const Axis& a, const Axis& b) {
    const int gap = std::max(a.at, b.at) - std::min(a.at + a.length, b.at + b.length);
    return gap <= 2;
}

std::optional<int> besideEdge(const Axis& a, const Axis& b, int& rule) {
    const int behind = b.at + b.length;
    if (std::abs(a.at - behind) <= 2) {
        rule = 1;
        return behind;
    }
    if (std::abs(a.at + a.length - b.at) <= 2) {
        rule = 2;
        return b.at - a.length;
    }
    return std::nullopt;
}

ModelResult model(const PxRect& moving, const SnapScreen& screen, const std::vector<PxRect>& notes) {
    Axis x{moving.left - screen.left, moving.right - moving.left};
    Axis y{moving.top - screen.top, moving.bottom - moving.top};
    int rule = toScreen(x, screen.work.left - screen.left, screen.work.right - screen.left);
    if (const int v = toScreen(y, screen.work.top - screen.top, screen.work.bottom - screen.top); v != 0) {
        rule = 2 + v;
    }
    x.at += screen.left;
    y.at += screen.top;
    const auto rect = [&] { return PxRect{x.at, y.at, x.at + x.length, y.at + y.length}; };
    for (const PxRect& n : notes) {
        const Axis nx{n.left, n.right - n.left};
        const Axis ny{n.top, n.bottom - n.top};
        int which = 0;
        if (meet(y, ny)) {
            if (const auto at = besideEdge(x, nx, which)) {
                x.at = *at;
                return {rect(), true, 4 + which};
            }
        }
        if (meet(x, nx)) {
            if (const auto at = besideEdge(y, ny, which)) {
                y.at = *at;
                return {rect(), true, 6 + which};
            }
        }
    }
    return {rect(), !(rect() == moving), rule};
}

TEST(Snap, AgreesWithTheSecondModelOnRandomDesks) {
    std::mt19937 random(20240229);  // fixed, so that a failure can be reproduced
    const auto between = [&](int low, int high) { return std::uniform_int_distribution(low, high)(random); };
    std::array<int, 9> seen{};
    for (int desk = 0; desk < 10000; ++desk) {
        SnapScreen screen;
        screen.left = between(0, 3) == 0 ? between(-300, 300) : 0;
        screen.top = between(0, 3) == 0 ? between(-300, 300) : 0;
        const int barLeft = between(0, 3) == 0 ? between(1, 20) : 0;
        const int barTop = between(0, 3) == 0 ? between(1, 20) : 0;
        screen.work = {screen.left + barLeft, screen.top + barTop, screen.left + between(120, 300),
                       screen.top + between(120, 300)};
        // Crowded on purpose, so that every rule applies often.
        const auto anyRect = [&](int least) {
            const int left = screen.left + between(-8, 280);
            const int top = screen.top + between(-8, 280);
            return PxRect{left, top, left + between(least, 80), top + between(least, 80)};
        };
        std::vector<PxRect> notes(static_cast<std::size_t>(between(0, 12)));
        std::generate(notes.begin(), notes.end(), [&] { return anyRect(1); });
        const PxRect moving = anyRect(30);

        PxRect snapped = moving;
        const bool moved = snap(snapped, screen, notes);
        const ModelResult expected = model(moving, screen, notes);
        ASSERT_EQ(snapped, expected.rect) << "desk " << desk;
        ASSERT_EQ(moved, expected.moved) << "desk " << desk;
        ++seen[static_cast<std::size_t>(expected.rule)];
    }
    for (std::size_t rule = 0; rule < seen.size(); ++rule) {
        EXPECT_GT(seen[rule], 100) << "rule " << rule << " was hardly put to the test";
    }
}

}  // namespace
