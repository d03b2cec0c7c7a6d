// The commands over a selection: each works to the average rectangle or to the page, and is
// one step of undo (snapping: one per piece).
#include <gtest/gtest.h>

#include "LayoutViewFixture.h"
#include "shell/CommandIds.h"

namespace {

using namespace commands;

class LayoutCommandsTest : public LayoutViewFixture {
protected:
    // Three pieces whose average rectangle is (30, 20) - (50, 36): corners average to 30, 20,
    // widths 10, 20 and 30 to 20, heights 10, 10 and 30 to 16.
    CLayoutPageView& OpenThree() {
        CLayoutPageView& page = OpenView(Box("a", 10, 10) + PieceText("b", "wide", 30, 20, 20, 10) +
                                         PieceText("c", "box", 50, 30, 30, 30));
        Select({"a", "b", "c"});
        return page;
    }

    std::vector<Point> Corners() { return {Corner("a"), Corner("b"), Corner("c")}; }

    // Runs the command, expecting it to be one step of undo, and undoes it.
    std::vector<Point> RunAndUndo(int command) {
        const std::vector<Point> before = Corners();
        const size_t depth = UndoDepth();
        view->OnCommand(command);
        EXPECT_EQ(UndoDepth(), depth + 1) << command;
        const std::vector<Point> after = Corners();
        project->OnEditUndo();
        EXPECT_EQ(Corners(), before) << command;
        return after;
    }
};

TEST_F(LayoutCommandsTest, AlignWorksToTheAverageRectangle) {
    OpenThree();
    EXPECT_EQ(RunAndUndo(kAlignLeft), (std::vector<Point>{{30, 10}, {30, 20}, {30, 30}}));
    EXPECT_EQ(RunAndUndo(kAlignHorizontalCentre),
              (std::vector<Point>{{35, 10}, {30, 20}, {25, 30}}));
    EXPECT_EQ(RunAndUndo(kAlignRight), (std::vector<Point>{{40, 10}, {30, 20}, {20, 30}}));
    EXPECT_EQ(RunAndUndo(kAlignTop), (std::vector<Point>{{10, 20}, {30, 20}, {50, 20}}));
    // Halving a negative difference truncates toward zero: (16 - 30) / 2 is -7.
    EXPECT_EQ(RunAndUndo(kAlignVerticalCentre), (std::vector<Point>{{10, 23}, {30, 23}, {50, 13}}));
    EXPECT_EQ(RunAndUndo(kAlignBottom), (std::vector<Point>{{10, 26}, {30, 26}, {50, 6}}));
    EXPECT_EQ(Selected(), (std::vector<std::string>{"a", "b", "c"})) << "the selection stays";
}

TEST_F(LayoutCommandsTest, AlignClampsOnePixelShortOfTheFarEdges) {
    CLayoutPageView& page = OpenView(Box("edge", 195, 95) + Box("left", -5, 40));
    Select({"edge"});
    page.OnCommand(kAlignRight);
    EXPECT_EQ(Corner("edge"), (Point{188, 88})) << "both axes, whatever the kind";
    EXPECT_EQ(RectOf("edge").right, kPageWidth - 2);
    Click({100, 60});
    Select({"left"});
    page.OnCommand(kAlignTop);
    EXPECT_EQ(Corner("left"), (Point{0, 40}));
}

TEST_F(LayoutCommandsTest, CentringPutsEachPieceOnTheCentreLine) {
    CLayoutPageView& page =
        OpenView(PieceText("huge", "wide", 0, 0, 300, 10) + Box("a", 3, 7) + Box("b", 150, 60));
    Select({"a", "b"});
    const size_t depth = UndoDepth();
    page.OnCommand(kCentreHorizontally);
    EXPECT_EQ(Corner("a"), (Point{95, 7}));
    EXPECT_EQ(Corner("b"), (Point{95, 60}));
    page.OnCommand(kCentreVertically);
    EXPECT_EQ(Corner("a"), (Point{95, 45}));
    EXPECT_EQ(UndoDepth(), depth + 2);

    // No clamp: a piece wider than the page goes left of it.
    Click({150, 90});
    Select({"huge"});
    page.OnCommand(kCentreHorizontally);
    EXPECT_EQ(Corner("huge"), (Point{-50, 0}));
}

TEST_F(LayoutCommandsTest, SameSizeScalesAndSparesASlidersThinAxis) {
    CLayoutPageView& page = OpenView(PieceText("art", "box", 10, 10, 10, 20) +
                                     PieceText("s", "vslider", 50, 10, 16, 80) +
                                     PieceText("short", "vslider", 100, 10, 16, 40));
    Select({"art", "s"});
    const size_t depth = UndoDepth();
    page.OnCommand(kSameWidth);
    EXPECT_EQ(RectOf("art"), (PageRect{10, 10, 23, 30})) << "widths average to 13";
    EXPECT_EQ(RectOf("s"), (PageRect{50, 10, 66, 90})) << "a vertical slider keeps its width";
    page.OnCommand(kSameHeight);
    EXPECT_EQ(RectOf("art"), (PageRect{10, 10, 23, 60}));
    EXPECT_EQ(RectOf("s"), (PageRect{50, 10, 66, 60}));
    EXPECT_EQ(UndoDepth(), depth + 2);
    project->OnEditUndo();
    EXPECT_EQ(RectOf("s"), (PageRect{50, 10, 66, 90}));

    // The minimum size overrules the average: a slider never gets shorter than its parts.
    Select({"art", "short"});
    page.OnCommand(kSameHeight);
    EXPECT_EQ(RectOf("art"), (PageRect{10, 10, 23, 40}));
    EXPECT_EQ(RectOf("short"), (PageRect{100, 10, 116, 50}));
    Select({"art"});
    page.OnCommand(kSameSize);
    EXPECT_EQ(RectOf("art"), (PageRect{10, 10, 23, 40})) << "one piece is its own average";
}

TEST_F(LayoutCommandsTest, SpacingEvensTheCentresAlongTheFirstOnesLine) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10) + Box("b", 51, 30) + PieceText("c", "wide", 21, 60, 20, 10));
    // Two pieces: none moves along the axis; the second joins the first's line.
    Select({"b", "a"});
    page.OnCommand(kSpaceEvenlyAcross);
    EXPECT_EQ(Corner("a"), (Point{10, 10}));
    EXPECT_EQ(Corner("b"), (Point{51, 10}));

    // Sorted by corner, spaced by centre: centres 15, 31 and 56 step by 20, and the last
    // falls a pixel short of where it was.
    Select({"b", "a", "c"});
    const size_t depth = UndoDepth();
    page.OnCommand(kSpaceEvenlyAcross);
    EXPECT_EQ(UndoDepth(), depth + 1);
    EXPECT_EQ(Corner("a"), (Point{10, 10}));
    EXPECT_EQ(Corner("c"), (Point{25, 10}));
    EXPECT_EQ(Corner("b"), (Point{50, 10}));
    // Equal corners keep the selection's order: b comes first and gives the column.
    page.OnCommand(kSpaceEvenlyDown);
    EXPECT_EQ(Corner("a"), (Point{50, 10}));
    EXPECT_EQ(Corner("c"), (Point{45, 10}));

    // One piece: nothing to divide by, so nothing happens.
    Click({150, 90});
    Select({"c"});
    const size_t single = UndoDepth();
    page.OnCommand(kSpaceEvenlyAcross);
    page.OnCommand(kSpaceEvenlyDown);
    EXPECT_EQ(UndoDepth(), single);
}

TEST_F(LayoutCommandsTest, SnapJoinsCentresUpToFourApartOnePieceAtATime) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10) + Box("near", 14, 40) + Box("far", 60, 15) + Box("row", 80, 11));
    Select({"a", "near", "far", "row"});
    const size_t depth = UndoDepth();
    page.OnCommand(kSnapCentres);
    EXPECT_EQ(Corner("near"), (Point{10, 40})) << "4 apart joins the column";
    EXPECT_EQ(Corner("far"), (Point{60, 15})) << "5 apart stays";
    EXPECT_EQ(Corner("row"), (Point{80, 10})) << "joins the first row, not the column";
    EXPECT_GT(UndoDepth(), depth + 1);
    project->OnEditUndo();
    EXPECT_EQ(Corner("row"), (Point{80, 11})) << "the last piece alone comes back";
    EXPECT_EQ(Corner("near"), (Point{10, 40}));
}

TEST_F(LayoutCommandsTest, NothingSelectedNothingDone) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10));
    const size_t depth = UndoDepth();
    for (const int command :
         {kAlignLeft, kAlignHorizontalCentre, kAlignRight, kAlignTop, kAlignVerticalCentre,
          kAlignBottom, kSpaceEvenlyAcross, kSpaceEvenlyDown, kSameWidth, kSameHeight, kSameSize,
          kCentreHorizontally, kCentreVertically, kSnapCentres}) {
        EXPECT_TRUE(page.OnCommand(command));
        EXPECT_EQ(UndoDepth(), depth) << command;
    }
    EXPECT_EQ(Corner("a"), (Point{10, 10}));
    EXPECT_FALSE(page.OnCommand(kFileOpen));
}

}  // namespace
