// Snapping over one move, with the monitors and notes of a desk.
#include "note/Snapping.h"

#include <gtest/gtest.h>

#include <new>

namespace {

constexpr PxRect kStart{300, 300, 500, 450};
/// The task bar is at the left of the primary monitor; the second one is right of it and a bit higher.
const std::vector<Monitor> kMonitors{{{1280, -100, 2560, 924}, {1280, -100, 2560, 884}, false},
                                     {{0, 0, 1280, 1024}, {50, 0, 1280, 1024}, true}};

class Moving : public testing::Test {
protected:
    SnapRules rules{true, 75, 47, [this] {
                        ++asked;
                        return others;
                    }};
    std::vector<PxRect> others;
    int asked = 0;
    PxRect to(const Snapping& snapping, int left, int top) const {
        return snapping.moved({left, top, left + kStart.width(), top + kStart.height()});
    }
};

TEST_F(Moving, AsksForTheOtherNotesAtEveryStep) {
    const Snapping snapping(kStart, rules, kMonitors);
    EXPECT_EQ(to(snapping, 701, 320).left, 701);
    others = {{600, 300, 700, 400}};
    EXPECT_EQ(to(snapping, 701, 320).left, 700);
    EXPECT_EQ(asked, 2);
}

TEST_F(Moving, FarFromEverythingGoesWhereItIsMoved) {
    others = {{600, 300, 700, 400}};
    const Snapping snapping(kStart, rules, kMonitors);
    EXPECT_EQ(to(snapping, 250, 430), (PxRect{250, 430, 450, 580}));
}

TEST_F(Moving, NeverBecomesSmallerStepByStep) {
    const Snapping snapping(kStart, rules, kMonitors);
    PxRect rect{-30, 200, 170, 350};
    for (int step = 0; step < 100; ++step)
        rect = snapping.moved(rect.shifted(-60, 0));
    EXPECT_EQ(rect.left, 50);
    EXPECT_EQ(rect.width(), 150) << "shrunk by the work area's offset, once";
    EXPECT_EQ(rect.height(), 150);
}

TEST_F(Moving, KeepsTheLeastSizeAndNeverGrows) {
    const std::vector<Monitor> wideBar{{{0, 0, 1280, 1024}, {180, 130, 1280, 1024}, true}};
    const PxRect rect = to(Snapping(kStart, rules, wideBar), 0, 0);
    EXPECT_EQ(rect, (PxRect{180, 130, 255, 177}));
    const PxRect small{300, 300, 340, 330};  // a note that is smaller than that stays so
    const PxRect moved = Snapping(small, rules, wideBar).moved({0, 0, 40, 30});
    EXPECT_EQ(moved.width(), 40);
    EXPECT_EQ(moved.height(), 30);
}

TEST_F(Moving, UsesTheMonitorThatTheNoteIsOn) {
    const Snapping snapping(kStart, rules, kMonitors);
    EXPECT_EQ(to(snapping, 1281, 300).left, 1280);
    EXPECT_EQ(to(snapping, 2359, 300).right, 2560);
    EXPECT_EQ(to(snapping, 1500, 733).bottom, 884) << "its own task bar";
    EXPECT_EQ(to(snapping, 600, 873).bottom, 1024) << "the other one has none there";
    EXPECT_EQ(to(snapping, 1100, 300).right, 1280) << "more of it is on the first one";
    EXPECT_EQ(to(snapping, 600, 1).top, 0);
    EXPECT_EQ(to(snapping, 600, 2).top, 2) << "not near enough to its upper edge";
    EXPECT_EQ(to(snapping, 2, 300).left, 2);
}

TEST_F(Moving, FollowsMonitorsThatChangeMeanwhile) {
    Snapping snapping(kStart, rules, kMonitors);
    snapping.setMonitors(
        {{{0, 0, 800, 600}, {0, 0, 800, 560}, true}, {{800, 0, 1600, 600}, {800, 0, 1600, 560}, false}});
    EXPECT_EQ(to(snapping, 1399, 100).right, 1600);
    EXPECT_EQ(to(snapping, 1000, 409).bottom, 560);
}

TEST_F(Moving, StillSnapsToTheScreenWhenTheNotesCannotBeListed) {
    rules.others = []() -> std::vector<PxRect> { throw std::bad_alloc(); };
    EXPECT_EQ(to(Snapping(kStart, rules, kMonitors), 600, 873).bottom, 1024);
}

TEST_F(Moving, AMonitorWithoutAPrimaryIsEnough) {
    const std::vector<Monitor> one{{{0, 0, 800, 600}, {0, 0, 800, 560}, false}};
    EXPECT_EQ(to(Snapping(kStart, rules, one), 300, 409).bottom, 560);
}

}  // namespace
