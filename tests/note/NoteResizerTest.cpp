// The grip and the keys of the resize mode, on a note without a window.
#include "note/NoteResizer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "resources/resource.h"

namespace {

using Hold = ResizedNote::Hold;

constexpr unsigned kEnter = 13;
constexpr unsigned kEsc = 27;
constexpr unsigned kLeft = 37;
constexpr unsigned kUp = 38;
constexpr unsigned kRight = 39;
constexpr unsigned kDown = 40;

/// A note of 3000 x 2000 twips at 1000, 500 on a desktop of 9000 x 6000.
struct FakeNote : ResizedNote {
    std::unique_ptr<NoteResizer> resizer = std::make_unique<NoteResizer>(*this);
    Twips width{3000};
    Twips height{2000};
    bool iconized = false;
    bool readOnly = false;
    int refusals = 0;
    int cursor = 0;
    int modeChanges = 0;
    std::vector<Twips> storedWidths;
    std::vector<Twips> storedHeights;
    bool held = false;  ///< the grip has the mouse
    bool heldRight = false;
    int turns = 0;  ///< steps of the hold so far
    /// What happens in a turn; a hold of three turns unless a test has another one.
    std::function<Hold()> turn = [this] { return turns < 3 ? Hold::GoesOn : Hold::Over; };

    ResizeAxis axis(Along along) override {
        if (along == Along::Width) return {Twips{1000}, width, Twips{9000}, Twips{1130}};
        return {Twips{500}, height, Twips{6000}, Twips{705}};
    }
    void resize(Along along, Twips size) override { (along == Along::Width ? width : height) = size; }
    void storeSize() override {
        storedWidths.push_back(width);
        storedHeights.push_back(height);
    }
    bool isIconized() const override { return iconized; }
    bool refusesResizing() override {
        refusals += readOnly ? 1 : 0;
        return readOnly;
    }
    void showResizeCursor(int shown) override { cursor = shown; }
    void resizeModeChanged() override { ++modeChanges; }
    void holdGrip() override { held = true; }
    Hold waitOnGrip(bool rightButton) override {
        heldRight = rightButton;
        ++turns;
        return turn();
    }
    void releaseGrip() override { held = false; }
};

constexpr NoteResizer::Press onWidth(bool right = false, bool shift = false) {
    return {Twips{190}, Twips{60}, right, shift};
}

constexpr NoteResizer::Press onHeight(bool right = false, bool shift = false) {
    return {Twips{60}, Twips{170}, right, shift};
}

// --- The grip ---------------------------------------------------------------------------------------------

TEST(GripHold, TakesAStepATurnAndStoresOnce) {
    struct Case {
        const char* name;
        NoteResizer::Press press;
        int wider, taller;
    };
    const Case cases[] = {
        {"width", onWidth(), 45, 0},
        {"width, Shift", onWidth(false, true), -45, 0},
        {"width, right button", onWidth(true), -45, 0},
        {"width, both", onWidth(true, true), -45, 0},
        {"height", onHeight(), 0, 45},
        {"height, Shift", onHeight(false, true), 0, -45},
        {"height, right button", onHeight(true), 0, -45},
    };
    for (const Case& c : cases) {
        FakeNote note;
        int cursorMeanwhile = 0;
        note.turn = [&] {
            cursorMeanwhile = note.cursor;
            EXPECT_TRUE(note.held && note.resizer->isOn() && note.storedWidths.empty()) << c.name;
            return note.turns < 3 ? Hold::GoesOn : Hold::Over;
        };
        note.resizer->press(c.press);
        EXPECT_EQ(note.width, (Twips{3000 + c.wider})) << c.name;
        EXPECT_EQ(note.height, (Twips{2000 + c.taller})) << c.name;
        EXPECT_EQ(note.storedWidths, std::vector<Twips>{note.width}) << c.name;
        EXPECT_EQ(note.storedHeights, std::vector<Twips>{note.height}) << c.name;
        EXPECT_EQ(cursorMeanwhile, c.taller == 0 ? IDC_RESIZE_WIDTH : IDC_RESIZE_HEIGHT) << c.name;
        EXPECT_EQ(note.heldRight, c.press.rightButton) << c.name;
        EXPECT_FALSE(note.held || note.resizer->isOn()) << c.name;
        EXPECT_EQ(note.cursor, 0) << c.name;
        EXPECT_EQ(note.modeChanges, 2) << c.name;
    }
}

TEST(GripHold, ActsOnTheArrowsAlone) {
    constexpr std::pair<int, int> kBeside[] = {{119, 60}, {256, 60},  {190, 121},
                                               {60, 104}, {121, 170}, {60, 241}};
    for (const auto& [x, y] : kBeside) {
        FakeNote note;
        note.resizer->press({Twips{x}, Twips{y}});
        EXPECT_EQ(note.turns, 0) << x << ", " << y;
    }
    constexpr std::pair<int, int> kOn[] = {{120, 0}, {255, 120}, {0, 105}, {120, 240}};
    for (const auto& [x, y] : kOn) {
        FakeNote note;
        note.resizer->press({Twips{x}, Twips{y}});
        EXPECT_EQ(note.turns, 3) << x << ", " << y;
    }
}

TEST(GripHold, AnIconizedNoteHasNoArrowForItsHeight) {
    FakeNote note;
    note.iconized = true;
    note.resizer->press(onHeight());
    EXPECT_EQ(note.turns, 0);
    note.resizer->press(onWidth());
    EXPECT_EQ(note.width, Twips{3045});
    note.resizer->ResizeHeight(90);
    EXPECT_EQ(note.height, Twips{2000});
}

TEST(GripHold, EndsWithTheReleaseOfItsOwnButton) {
    for (const bool right : {false, true}) {
        FakeNote note;
        note.turn = [&] {
            note.resizer->release(note.turns == 4 ? right : !right);
            return Hold::GoesOn;
        };
        note.resizer->press(onWidth(right));
        EXPECT_EQ(note.turns, 4) << right;
        EXPECT_EQ(note.storedWidths.size(), 1U) << right;
    }
}

TEST(GripHold, AReleaseWithoutAHoldLeavesTheModeAsItIs) {
    FakeNote note;
    note.resizer->setMode(true);
    note.resizer->release(false);
    EXPECT_TRUE(note.resizer->isOn());
}

TEST(GripHold, EndsWithTheMode) {
    FakeNote note;
    note.turn = [&] {
        if (note.turns == 2) note.resizer->setMode(false);
        return Hold::GoesOn;
    };
    note.resizer->press(onWidth());
    EXPECT_EQ(note.turns, 2);
    EXPECT_EQ(note.storedWidths, std::vector<Twips>{Twips{3030}});
    EXPECT_FALSE(note.held);
}

TEST(GripHold, GoesOnAlongTheStripWhenTheNoteIsIconizedMeanwhile) {
    FakeNote note;
    note.turn = [&] {
        note.iconized = true;
        return note.turns < 3 ? Hold::GoesOn : Hold::Over;
    };
    note.resizer->press(onHeight());
    EXPECT_EQ(note.height, Twips{2015}) << "the height that it will have again";
    EXPECT_EQ(note.storedHeights, std::vector<Twips>{Twips{2015}});
}

TEST(GripHold, NoSecondOneBeginsInsideIt) {
    FakeNote note;
    note.turn = [&] {
        note.resizer->press(onHeight(true));
        return note.turns < 3 ? Hold::GoesOn : Hold::Over;
    };
    note.resizer->press(onWidth());
    EXPECT_EQ(note.height, Twips{2000});
    EXPECT_EQ(note.turns, 3);
    note.turns = 0;
    note.turn = [] { return Hold::Over; };
    note.resizer->press(onHeight());
    EXPECT_EQ(note.height, Twips{2015}) << "but afterwards";
}

TEST(GripHold, ANoteThatIsDestroyedMeanwhileIsNotTouchedAgain) {
    FakeNote note;
    note.turn = [&] {
        note.resizer.reset();  // read after that, the sanitizer ends the test
        return Hold::Destroyed;
    };
    note.resizer->press(onWidth());
    EXPECT_TRUE(note.storedWidths.empty());
}

TEST(GripHold, StoresNothingThatDidNotChange) {
    FakeNote note;
    note.width = Twips{1135};
    note.resizer->press(onWidth(true));
    EXPECT_EQ(note.width, Twips{1135});
    EXPECT_TRUE(note.storedWidths.empty());
}

TEST(GripHold, KeepsWhatItHadChangedWhenTheLastTurnsChangeNothing) {
    FakeNote note;
    note.width = Twips{7990};
    note.turn = [&] { return note.turns < 9 ? Hold::GoesOn : Hold::Over; };
    note.resizer->press(onWidth());
    EXPECT_EQ(note.storedWidths, std::vector<Twips>{Twips{8000}}) << "flush with the desktop";
}

TEST(GripHold, ANoteThatCannotBeReadSaysSoOnce) {
    FakeNote note;
    note.readOnly = true;
    note.resizer->press(onWidth());
    EXPECT_EQ(note.turns, 0);
    EXPECT_EQ(note.refusals, 1);
    EXPECT_FALSE(note.resizer->isOn());
}

// --- The keys ---------------------------------------------------------------------------------------------

TEST(ResizeKeys, StepAndStoreInTheModeAlone) {
    struct Case {
        unsigned key;
        bool control;
        int wider, taller;
    };
    constexpr Case kCases[] = {{kLeft, false, -30, 0}, {kRight, false, 30, 0}, {kUp, false, 0, -30},
                               {kDown, false, 0, 30},  {kLeft, true, -180, 0}, {kRight, true, 180, 0},
                               {kUp, true, 0, -180},   {kDown, true, 0, 180}};
    for (const Case& c : kCases) {
        FakeNote note;
        EXPECT_FALSE(note.resizer->key(c.key, c.control)) << "not outside the mode";
        EXPECT_TRUE(note.storedWidths.empty());
        note.resizer->setMode(true);
        EXPECT_EQ(note.cursor, IDC_RESIZE_WIDTH);
        EXPECT_TRUE(note.resizer->key(c.key, c.control));
        EXPECT_EQ(note.width, Twips{3000 + c.wider}) << c.key;
        EXPECT_EQ(note.height, Twips{2000 + c.taller}) << c.key;
        EXPECT_EQ(note.storedWidths.size(), 1U) << c.key;
        EXPECT_EQ(note.cursor, c.taller == 0 ? IDC_RESIZE_WIDTH : IDC_RESIZE_HEIGHT) << c.key;
        EXPECT_EQ(note.resizer->cursor(), note.cursor);
    }
}

TEST(ResizeKeys, EnterAndEscLeaveTheMode) {
    for (const unsigned key : {kEnter, kEsc}) {
        FakeNote note;
        note.resizer->setMode(true);
        EXPECT_TRUE(note.resizer->key(key, false));
        EXPECT_FALSE(note.resizer->isOn());
        EXPECT_EQ(note.cursor, 0);
        EXPECT_EQ(note.modeChanges, 2);
        EXPECT_FALSE(note.resizer->key(key, false)) << "and mean something else then";
    }
}

TEST(ResizeKeys, OtherKeysAreNotTheModes) {
    FakeNote note;
    note.resizer->setMode(true);
    for (const unsigned key : {9U, 32U, 36U, 41U, 46U, 113U})
        EXPECT_FALSE(note.resizer->key(key, false)) << key;
    EXPECT_TRUE(note.resizer->isOn());
}

TEST(ResizeKeys, UpAndDownDoNothingOnAnIconizedNote) {
    FakeNote note;
    note.iconized = true;
    note.resizer->setMode(true);
    for (const unsigned key : {kUp, kDown})
        EXPECT_TRUE(note.resizer->key(key, true));
    EXPECT_EQ(note.height, Twips{2000});
    EXPECT_EQ(note.cursor, IDC_RESIZE_WIDTH);
    EXPECT_TRUE(note.storedWidths.empty());
}

TEST(ResizeKeys, AStepThatIsRefusedStoresNothing) {
    FakeNote note;
    note.width = Twips{1150};
    note.resizer->setMode(true);
    EXPECT_TRUE(note.resizer->key(kLeft, false));
    EXPECT_EQ(note.width, Twips{1150});
    EXPECT_TRUE(note.storedWidths.empty());
}

TEST(ResizeMode, BeginsAndEndsOnceAndNotOnANoteThatCannotBeRead) {
    FakeNote note;
    note.resizer->setMode(false);
    EXPECT_EQ(note.modeChanges, 0);
    note.resizer->setMode(true);
    note.resizer->setMode(true);
    EXPECT_EQ(note.modeChanges, 1);
    note.readOnly = true;
    note.resizer->setMode(false);
    EXPECT_EQ(note.refusals, 0) << "leaving it is always allowed";
    note.resizer->setMode(true);
    EXPECT_FALSE(note.resizer->isOn());
    EXPECT_EQ(note.refusals, 1);
}

TEST(ResizeMode, AnAmountIsRoundedToWholeTwips) {
    FakeNote note;
    note.resizer->ResizeWidth(10.5F);
    EXPECT_EQ(note.width, Twips{3011});
    note.resizer->ResizeHeight(-10.4F);
    EXPECT_EQ(note.height, Twips{1990});
    EXPECT_TRUE(note.storedWidths.empty());
}

}  // namespace
