#include "note/NoteHome.h"

#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <utility>
#include <vector>

// Found by the test library's printer.
static void PrintTo(const PxRect& r, std::ostream* out) {
    *out << r.left << "," << r.top << " to " << r.right << "," << r.bottom;
}

namespace {

constexpr int kDpi = 96;
/// A task bar below on the primary monitor; the second one is left of it and lower.
const std::vector<Monitor> kMonitors{{{0, 0, 1280, 1024}, {0, 0, 1280, 984}, true},
                                     {{-800, 300, 0, 900}, {-800, 300, 0, 900}, false}};

NoteRecord at(std::int32_t x, std::int32_t y) {
    NoteRecord record;
    record.x = x;
    record.y = y;
    record.width = 3000;
    record.height = 2250;
    return record;
}

PxRect shown(const NoteRecord& record, int dpi = kDpi) {
    return shownPlace(record, Twips{record.width}, Twips{record.height}, dpi, kMonitors);
}

bool home(const NoteRecord& record) {
    return isAtHome(record, Twips{record.width}, kDpi, kMonitors);
}

TEST(NoteHome, IsWhatTheRecordSaysAtAnyScaling) {
    EXPECT_EQ(shown(at(1500, 1500)), (PxRect{100, 100, 300, 250}));
    EXPECT_EQ(shown(at(1500, 1500), 144), (PxRect{150, 150, 450, 375}));
    EXPECT_EQ(shown(at(-7500, 6000)), (PxRect{-500, 400, -300, 550}));
}

TEST(NoteHome, OfAnIconizedNoteIsAsHighAsItsTitle) {
    NoteRecord iconized = at(1500, 1500);
    iconized.iconized = true;
    EXPECT_EQ(shown(iconized), (PxRect{100, 100, 300, 120}));
}

TEST(NoteHome, IsNoLargerThanTheDesktopThatItIsOn) {
    NoteRecord huge = at(0, 0);
    huge.width = huge.height = 2000000000;
    EXPECT_EQ(shown(huge), (PxRect{0, 0, 1280, 984}));
    huge.x = -7500;
    huge.y = 6000;
    EXPECT_EQ(shown(huge), (PxRect{-500, 400, 300, 1000}));
}

TEST(NoteHome, MayReachBeyondTheEdgesAsLongAsTheTitleCanBeSeen) {
    for (const NoteRecord& record : {at(19185, 0), at(15, 14745), at(-2985, -285)}) {
        EXPECT_TRUE(home(record)) << record.x << " " << record.y;
        EXPECT_EQ(shown(record).left, record.x / 15);
        EXPECT_EQ(shown(record).top, record.y / 15);
    }
}

TEST(NoteHome, OfANoteThatIsOutOfSightIsOnTheNearestMonitor) {
    struct Row {
        std::int32_t x, y;
        PxRect expected;
    };
    const Row rows[] = {
        {19200, 1500, {1080, 100, 1280, 250}},   // right of everything
        {1500, 14760, {100, 834, 300, 984}},     // under the task bar
        {1500, -300, {100, 0, 300, 150}},        // above
        {-15000, 6000, {-800, 400, -600, 550}},  // left of the second monitor
        {-9000, 1500, {-600, 300, -400, 450}},   // above the second monitor
    };
    for (const Row& row : rows) {
        EXPECT_FALSE(home(at(row.x, row.y))) << row.x << " " << row.y;
        EXPECT_EQ(shown(at(row.x, row.y)), row.expected) << row.x << " " << row.y;
    }
}

TEST(NoteHome, OfANoteThatNeverHadASizeIsWhereItCanBeUsed) {
    NoteRecord fresh = at(18000, 14000);
    fresh.width = 0;
    fresh.height = -7;
    const auto place = [&] { return shownPlace(fresh, Twips{2910}, Twips{1890}, kDpi, kMonitors); };
    EXPECT_EQ(place().right, 1280);
    fresh.height = 0;
    EXPECT_EQ(place().right, 1280);
    for (const auto& [width, height] : {std::pair{2910, 0}, std::pair{1, 0}, std::pair{0, 1}}) {
        fresh.width = width;
        fresh.height = height;
        EXPECT_EQ(place().left, 1200) << "one that had a size was put there by the user";
    }
}

TEST(NoteHome, IsAlwaysInSightWhateverIsStored) {
    std::mt19937 random(7);
    const auto any = [&random] {
        constexpr std::int32_t kEdges[] = {0, -1, 1, 15, 2147483647, -2147483647 - 1, 1000000, -1000000};
        if (random() % 2 == 0) return kEdges[random() % std::size(kEdges)];
        return static_cast<std::int32_t>(random() % 60000) - 30000;
    };
    for (int round = 0; round < 20000; ++round) {
        NoteRecord record;
        record.x = any();
        record.y = any();
        record.width = any();
        record.height = any();
        record.iconized = random() % 2 == 0;
        const int dpi = random() % 2 == 0 ? 96 : 168;
        const PxRect rect = shownPlace(record, shownWidth(record.width, 2910),
                                       shownHeight(record.height, 1890), dpi, kMonitors);
        const PxRect title{rect.left, rect.top, rect.right, rect.top + toPx(kIconizedHeight, dpi).n};
        ASSERT_TRUE(isInSight(kMonitors, title)) << record.x << " " << record.y << " " << record.width;
        ASSERT_GT(rect.width(), 0);
        ASSERT_GT(rect.height(), 0);
    }
}

}  // namespace
