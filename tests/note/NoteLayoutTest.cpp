#include "note/NoteLayout.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

constexpr int kTitle = 15;

TEST(NoteLayout, FollowsTheClientSize) {
    const NoteRects at = layoutNote(200, 150, false, 96, kTitle);
    EXPECT_EQ(at.lbl, (PxRect{0, 0, 200, 18}));
    EXPECT_EQ(at.lbl2, (PxRect{0, 0, toPx(design::kButtonsWidth, 96).n, 18}));
    EXPECT_EQ(at.pic, (PxRect{200 - toPx(design::kPicWidth, 96).n, 0, 200, 18}));
    EXPECT_EQ(at.nota.top, toPx(design::kNotaTop, 96).n);
    EXPECT_EQ(at.nota.left, 4);
    EXPECT_EQ(at.nota.width(), 200 - 2 * 4);
    EXPECT_EQ(at.nota.height(), 150 - at.nota.top - 4);
    EXPECT_EQ(at.txtNota, at.nota) << "text would jump when an edit starts";
    EXPECT_EQ(at.pic2.right, 200);
    EXPECT_EQ(at.pic2.bottom, 150);
    EXPECT_EQ(at.pic_time.bottom, 150);
    EXPECT_EQ(at.pic_time.left + toPx(design::kTimeText, 96).n, at.nota.left) << "both texts are aligned";
    EXPECT_EQ(at.pic_time.right, at.pic2.left);
}

TEST(NoteLayout, DeletePictureStaysAtTheRightEndAtEveryWidth) {
    for (const int dpi : {96, 120, 144, 192}) {
        for (int width = 20; width < 500; ++width) {
            EXPECT_EQ(layoutNote(width, 100, false, dpi, kTitle).pic.right, width);
        }
    }
}

TEST(NoteLayout, NoRectangleIsEverInsideOut) {
    for (const int dpi : {96, 120, 144, 192}) {
        for (int size = 0; size < 60; ++size) {
            for (const bool iconized : {false, true}) {
                const NoteRects at = layoutNote(size, size, iconized, dpi, kTitle);
                for (const PxRect& r :
                     {at.lbl, at.lbl2, at.pic, at.nota, at.txtNota, at.txtTitle, at.pic2, at.pic_time}) {
                    ASSERT_GE(r.width(), 0) << size;
                    ASSERT_GE(r.height(), 0) << size;
                }
                if (size <= 2 * toPx(design::kMargin, dpi).n) {
                    EXPECT_EQ(at.nota.width(), 0) << size << ": there is no room for it";
                    EXPECT_EQ(at.nota.height(), 0) << size;
                }
            }
        }
    }
}

TEST(NoteLayout, IconizedNoteHasItsGripInTheStripLeftOfTheDeletePicture) {
    const NoteRects at = layoutNote(200, 18, true, 96, kTitle);
    EXPECT_EQ(at.pic2.right, at.pic.left);
    EXPECT_EQ(at.pic2.top, 0);
    EXPECT_LE(at.pic2.bottom, 18);
}

TEST(NoteLayout, TitleEditorLeavesButtonsAndDeletePictureFree) {
    const NoteRects at = layoutNote(200, 150, false, 96, kTitle);
    EXPECT_GE(at.txtTitle.left, at.lbl2.right);
    EXPECT_EQ(at.txtTitle.right, at.pic.left - 2);
}

TEST(NoteLayout, TitleEditorIsInTheMiddleOfTheStrip) {
    for (const int dpi : {96, 120, 144, 192}) {
        for (const int line : {8, 15, 16}) {
            const NoteRects at = layoutNote(400, 300, false, dpi, line);
            const int strip = toPx(design::kStripHeight, dpi).n;
            EXPECT_EQ(at.txtTitle.height(), line);
            EXPECT_LE(std::abs(at.txtTitle.top - (strip - at.txtTitle.bottom)), 1) << dpi << " " << line;
        }
    }
}

TEST(NoteLayout, HotAreasLieWithinTheirPartsAtEveryScaling) {
    for (const int dpi : {96, 120, 144, 192}) {
        const NoteRects at = layoutNote(400, 300, false, dpi, kTitle);
        EXPECT_LE(toPx(design::kCloseButton.right, dpi).n, at.lbl2.width());
        EXPECT_LE(toPx(design::kCloseButton.bottom, dpi).n, at.lbl2.height());
        EXPECT_LE(toPx(design::kDeleteButton.bottom, dpi).n, at.pic.height());
        EXPECT_LE(toPx(design::kWidthArrow.right, dpi).n, at.pic2.width());
        EXPECT_LE(toPx(design::kHeightArrow.bottom, dpi).n, at.pic2.height());
    }
}

TEST(HotArea, IncludesItsEdges) {
    EXPECT_TRUE(design::kIconizeButton.contains(Twips{15}, Twips{30}));
    EXPECT_TRUE(design::kIconizeButton.contains(Twips{195}, Twips{250}));
    EXPECT_FALSE(design::kIconizeButton.contains(Twips{14}, Twips{30}));
    EXPECT_FALSE(design::kIconizeButton.contains(Twips{196}, Twips{30}));
    EXPECT_FALSE(design::kIconizeButton.contains(Twips{15}, Twips{251}));
    EXPECT_TRUE(design::kCloseButton.contains(Twips{255}, Twips{100}));
    EXPECT_TRUE(design::kCloseButton.contains(Twips{450}, Twips{100}));
    EXPECT_FALSE(design::kCloseButton.contains(Twips{451}, Twips{100}));
}

TEST(ShownSize, ReplacesMissingSizesAndRaisesTinyOnes) {
    EXPECT_EQ(shownWidth(0, 2910), Twips{2910});
    EXPECT_EQ(shownWidth(-5, 2910), Twips{2910});
    EXPECT_EQ(shownWidth(1129, 2910), Twips{1130});
    EXPECT_EQ(shownWidth(1131, 2910), Twips{1131});
    EXPECT_EQ(shownHeight(1, 1890), Twips{705});
    EXPECT_EQ(shownHeight(0, 1890), Twips{1890});
    EXPECT_EQ(shownHeight(0, 5), Twips{705});
    EXPECT_EQ(shownWidth(2147483647, 2910), Twips{400000});
}

TEST(MovedInto, BringsTheTitleStripIntoTheWorkArea) {
    const PxRect work{0, 30, 1000, 800};
    EXPECT_EQ(movedInto({-500, -200, -300, -50}, work, 20), (PxRect{0, 30, 200, 180}));
    EXPECT_EQ(movedInto({1500, 900, 1700, 1050}, work, 20), (PxRect{800, 650, 1000, 800}));
    EXPECT_EQ(movedInto({100, 100, 300, 250}, work, 20), (PxRect{100, 100, 300, 250}));
    // Larger than the work area: the corner with the title stays in sight.
    EXPECT_EQ(movedInto({-50, -50, 2000, 2000}, work, 20), (PxRect{0, 30, 2050, 2080}));
}

}  // namespace
