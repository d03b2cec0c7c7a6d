// The layout page window's logic driven as the window drives it: selection, dragging,
// resizing, the band, the keys, the tools and the right button, over a recording canvas.
#include <gtest/gtest.h>

#include "LayoutViewFixture.h"
#include "shell/CommandIds.h"

namespace {

constexpr int kLeft = 37;
constexpr int kUp = 38;
constexpr int kRight = 39;
constexpr int kDelete = 46;

using LayoutViewTest = LayoutViewFixture;

TEST_F(LayoutViewTest, ADragMovesThePieceOnlyWhenTheButtonGoesUp) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + Box("b", 40, 10));
    EXPECT_EQ(canvas.frame, (PageSize{kPageWidth, kPageHeight}));
    const size_t depth = UndoDepth();

    page.OnLButtonDown({15, 15}, false);
    EXPECT_TRUE(canvas.captured);
    EXPECT_TRUE(page.IsDragging());
    EXPECT_EQ(Selected(), std::vector<std::string>{"a"});
    EXPECT_EQ(LastStatus(), "Dragging piece(s)");

    const int rebuilds = canvas.rebuilds_posted;
    const int full_redraws = canvas.invalidate_all;
    canvas.invalidated.clear();
    page.OnMouseMove({25, 18});
    EXPECT_EQ(Corner("a"), (Point{10, 10}));
    EXPECT_EQ(LastStatus(), "\"a\": (20, 13) -> (30, 23) = (10 x 10)");
    // A drag step redraws two outlines, strip by strip, and leaves the page alone.
    EXPECT_EQ(canvas.invalidated.size(), 8u);
    EXPECT_EQ(canvas.invalidated[4], (PageRect{19, 13, 21, 23})) << "left edge of the new place";
    EXPECT_EQ(canvas.rebuilds_posted, rebuilds);
    EXPECT_EQ(canvas.invalidate_all, full_redraws);
    const std::vector<LayoutOutline> dragged = page.Outlines();
    ASSERT_EQ(dragged.size(), 1u);
    EXPECT_TRUE(dragged[0].blue);
    EXPECT_EQ(dragged[0].path[0], (Point{20, 13}));
    EXPECT_EQ(dragged[0].path[2], (Point{29, 22}));

    page.OnLButtonUp({25, 18});
    EXPECT_FALSE(canvas.captured);
    EXPECT_FALSE(page.IsDragging());
    EXPECT_TRUE(page.HasSelection());
    EXPECT_EQ(Corner("a"), (Point{20, 13}));
    EXPECT_EQ(UndoDepth(), depth + 1);
    EXPECT_FALSE(page.Outlines()[0].blue);

    // Undo brings the piece back; the selection keeps its name.
    project->OnEditUndo();
    EXPECT_EQ(Corner("a"), (Point{10, 10}));
    EXPECT_EQ(Selected(), std::vector<std::string>{"a"});
}

// A box that opens while the page is drawn takes the button's release: the drag ends there.
TEST_F(LayoutViewTest, ABoxWhileDrawingEndsTheDragUnderWay) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10));
    page.OnLButtonDown({15, 15}, false);
    ASSERT_TRUE(page.IsDragging());
    auto ghost = std::make_unique<UI_ART>("ghost");
    ghost->regions.push_back({"art", page_path, "no_such_region"});
    project->AddObject(std::move(ghost));
    UI_PIECE piece;
    piece.name = "g";
    piece.object_id = "ghost";
    document->AddPiece(piece);
    page.RebuildIfNeeded();
    ASSERT_FALSE(ui.boxes.empty());
    EXPECT_FALSE(page.IsDragging());
    EXPECT_FALSE(canvas.captured);
    page.OnMouseMove({40, 40});
    EXPECT_EQ(Corner("a"), (Point{10, 10}));
}

TEST_F(LayoutViewTest, OutlinesAreInWindowCoordinates) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10));
    Click({15, 15});
    page.OnCommand(commands::kMagnify);
    canvas.scroll = {4, 6};
    const std::vector<LayoutOutline> outlines = page.Outlines();
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(outlines[0].path[0], (Point{16, 14}));
    EXPECT_EQ(outlines[0].path[2], (Point{35, 33})) << "one device pixel inside, at any zoom";
}

TEST_F(LayoutViewTest, TheBandTakesUnlockedPiecesItTouches) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10) + Box("locked", 30, 10, kLocked) + Box("b", 50, 10));
    // A press on a locked piece with nothing under it starts a band.
    page.OnLButtonDown({35, 15}, false);
    EXPECT_TRUE(page.IsRubberBanding());
    EXPECT_FALSE(page.IsDragging());
    EXPECT_EQ(LastStatus(), "Ready");
    page.OnMouseMove({55, 12});
    const std::vector<LayoutOutline> band = page.Outlines();
    ASSERT_EQ(band.size(), 1u);
    EXPECT_FALSE(band[0].blue);
    page.OnLButtonUp({55, 12});
    EXPECT_FALSE(page.IsRubberBanding());
    EXPECT_EQ(Selected(), std::vector<std::string>{"b"}) << "touched, not enclosed; lock passed";
    EXPECT_TRUE(page.HasSelection());

    // A band from right to left over both takes them topmost first.
    Drag({100, 50}, {5, 12});
    EXPECT_EQ(Selected(), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(LastStatus(), "Ready") << "a band leaves the status line alone";

    // A band of no size selects nothing.
    Click({100, 50});
    EXPECT_TRUE(Selected().empty());
    EXPECT_FALSE(page.HasSelection());
}

TEST_F(LayoutViewTest, ControlClicksToggleAndPlainClicksNarrow) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + Box("b", 40, 10) + Box("c", 70, 10));
    Select({"a", "b", "c"});
    Click({45, 15}, true);
    EXPECT_EQ(Selected(), (std::vector<std::string>{"a", "c"}));
    Click({15, 15});
    EXPECT_EQ(Selected(), std::vector<std::string>{"a"});
    EXPECT_EQ(LastStatus(), "\"a\": (10, 10) -> (20, 20) = (10 x 10)");

    // Control on empty page drags the selection from there.
    Select({"a", "b"});
    Drag({100, 50}, {105, 52}, true);
    EXPECT_EQ(Corner("a"), (Point{15, 12}));
    EXPECT_EQ(Corner("b"), (Point{45, 12}));
    EXPECT_EQ(Selected(), (std::vector<std::string>{"a", "b"}));

    // Without Control a click on empty page clears the selection.
    Click({100, 50});
    EXPECT_TRUE(Selected().empty());
    page.OnKeyDown(kRight);
    EXPECT_EQ(Corner("a"), (Point{15, 12})) << "nothing selected, nothing nudged";
}

TEST_F(LayoutViewTest, TheRightButtonSelectsUnlockedAndMenusTheTopmost) {
    CLayoutPageView& page = OpenView(Box("under", 10, 10) + Box("locked", 12, 12, kLocked));
    page.OnRButtonDown({15, 15});
    EXPECT_EQ(Selected(), std::vector<std::string>{"under"});
    EXPECT_TRUE(page.HasSelection());
    EXPECT_FALSE(page.IsDragging()) << "no drag starts with the right button";
    page.OnRButtonUp({15, 15});
    EXPECT_EQ(page.ContextPiece(), "locked");
    ASSERT_EQ(canvas.menus.size(), 1u);
    EXPECT_EQ(canvas.menus[0], (Point{15, 15}));
    EXPECT_EQ(canvas.activations, 1);
    EXPECT_FALSE(canvas.captured);

    // The menu stays shut off any piece, and under the other tools.
    page.OnRButtonDown({150, 80});
    page.OnRButtonUp({150, 80});
    EXPECT_EQ(page.ContextPiece(), "");
    EXPECT_TRUE(Selected().empty());
    page.OnCommand(commands::kSelectByGroup);
    page.OnRButtonDown({15, 15});
    EXPECT_TRUE(Selected().empty());
    page.OnRButtonUp({15, 15});
    EXPECT_EQ(page.ContextPiece(), "locked");
    EXPECT_EQ(canvas.menus.size(), 1u);
}

TEST_F(LayoutViewTest, HandlesAreTheThreePixelsInsideTheEdges) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + PieceText("s", "vslider", 50, 10, 16, 40));
    Click({15, 15});
    const auto cursor_at = [&](Point p) {
        page.OnMouseMove(p);
        return page.Cursor();
    };
    EXPECT_EQ(cursor_at({10, 15}), LayoutCursor::SizeWE);
    EXPECT_TRUE(page.IsResizing());
    EXPECT_EQ(cursor_at({12, 15}), LayoutCursor::SizeWE);
    EXPECT_EQ(cursor_at({13, 15}), LayoutCursor::Move);
    EXPECT_FALSE(page.IsResizing());
    EXPECT_EQ(cursor_at({9, 15}), LayoutCursor::Move) << "outside the piece";
    EXPECT_EQ(cursor_at({20, 15}), LayoutCursor::SizeWE) << "the right edge counts as inside";
    EXPECT_EQ(cursor_at({15, 11}), LayoutCursor::SizeNS);
    EXPECT_EQ(cursor_at({11, 11}), LayoutCursor::SizeNWSE);
    EXPECT_EQ(cursor_at({19, 11}), LayoutCursor::SizeNESW);
    EXPECT_EQ(cursor_at({19, 19}), LayoutCursor::SizeNWSE);
    EXPECT_EQ(cursor_at({11, 19}), LayoutCursor::SizeNESW);
    page.OnSetCursor();
    EXPECT_EQ(canvas.cursor, LayoutCursor::SizeNESW);

    // A vertical slider offers its top and bottom only.
    Click({58, 30});
    EXPECT_EQ(cursor_at({50, 30}), LayoutCursor::Move);
    EXPECT_EQ(cursor_at({51, 11}), LayoutCursor::SizeNS) << "no corner";
    EXPECT_EQ(cursor_at({58, 49}), LayoutCursor::SizeNS);

    // Two selected pieces show no handles.
    Click({15, 15}, true);
    EXPECT_EQ(cursor_at({10, 15}), LayoutCursor::Move);
}

TEST_F(LayoutViewTest, AResizeWorksFromTheStartingRectangle) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + PieceText("s", "vslider", 50, 10, 16, 40));
    Click({15, 15});
    page.OnMouseMove({20, 15});
    page.OnLButtonDown({20, 15}, false);
    EXPECT_TRUE(page.IsResizing());
    page.OnMouseMove({30, 15});
    page.OnMouseMove({25, 15});
    EXPECT_EQ(page.Selection().live_rect, (PageRect{10, 10, 25, 20}));
    EXPECT_EQ(LastStatus(), "\"a\": (10, 10) -> (25, 20) = (15 x 10)");
    ASSERT_EQ(page.Outlines().size(), 1u);
    EXPECT_EQ(page.Outlines()[0].path[2], (Point{24, 19}));
    EXPECT_EQ(RectOf("a"), (PageRect{10, 10, 20, 20}));
    const size_t depth = UndoDepth();
    page.OnLButtonUp({25, 15});
    EXPECT_EQ(RectOf("a"), (PageRect{10, 10, 25, 20}));
    EXPECT_FLOAT_EQ(Piece("a").scale_x, 1.5f);
    EXPECT_EQ(UndoDepth(), depth + 2) << "the move and the rescale are a step each";
    EXPECT_FALSE(page.IsResizing());

    // A left handle dragged past the right edge stops at the minimum width; the right edge
    // stays and the piece never flips.
    page.OnMouseMove({10, 15});
    page.OnLButtonDown({10, 15}, false);
    page.OnMouseMove({60, 15});
    EXPECT_EQ(page.Selection().live_rect, (PageRect{21, 10, 25, 20}));
    page.OnLButtonUp({60, 15});
    EXPECT_EQ(RectOf("a"), (PageRect{21, 10, 25, 20}));

    // The lower edge stops one pixel inside the page.
    page.OnMouseMove({23, 20});
    page.OnLButtonDown({23, 20}, false);
    page.OnMouseMove({23, 300});
    EXPECT_EQ(page.Selection().live_rect, (PageRect{21, 10, 25, kPageHeight - 1}));
    page.OnLButtonUp({23, 20});

    // A slider never shrinks below its natural length.
    Click({58, 30});
    page.OnMouseMove({58, 50});
    Drag({58, 50}, {58, 20});
    EXPECT_EQ(RectOf("s"), (PageRect{50, 10, 66, 50}));
}

TEST_F(LayoutViewTest, MovesAreClampedAsOneBlock) {
    CLayoutPageView& page =
        OpenView(PieceText("huge", "wide", 5, 5, 300, 150) + Box("a", 170, 10) + Box("b", 185, 10));
    Select({"a", "b"});
    Drag({172, 12}, {250, 12});
    EXPECT_EQ(Corner("a"), (Point{174, 10}));
    EXPECT_EQ(Corner("b"), (Point{189, 10})) << "the spacing stays";
    EXPECT_EQ(RectOf("b").right, kPageWidth - 1);

    // The axis tools drop the other coordinate.
    Click({177, 13});
    page.OnCommand(commands::kMoveHorizontal);
    Drag({177, 13}, {167, 40});
    EXPECT_EQ(Corner("a"), (Point{164, 10}));
    page.OnCommand(commands::kMoveVertical);
    Drag({167, 13}, {177, 40});
    EXPECT_EQ(Corner("a"), (Point{164, 37}));

    // A selection larger than the page pins its top-left corner.
    page.OnCommand(commands::kSelectAndMove);
    Click({100, 80});
    EXPECT_EQ(Selected(), std::vector<std::string>{"huge"});
    Drag({100, 80}, {110, 90});
    EXPECT_EQ(Corner("huge"), (Point{0, 0}));
}

TEST_F(LayoutViewTest, ArrowsNudgeOnePixelAndDeleteRemovesTheSelection) {
    CLayoutPageView& page = OpenView(Box("a", 188, 10) + Box("b", 10, 10));
    Click({193, 15});
    const size_t depth = UndoDepth();
    page.OnKeyDown(kRight);
    EXPECT_EQ(Corner("a"), (Point{189, 10}));
    page.OnKeyDown(kRight);
    EXPECT_EQ(Corner("a"), (Point{189, 10})) << "the right side stops at the page width - 1";
    EXPECT_EQ(UndoDepth(), depth + 2) << "each nudge is a step";
    EXPECT_EQ(LastStatus(), "\"a\": (189, 10) -> (199, 20) = (10 x 10)");
    page.OnCommand(commands::kMoveHorizontal);
    page.OnKeyDown(kUp);
    EXPECT_EQ(Corner("a"), (Point{189, 10}));
    page.OnKeyDown(kLeft);
    EXPECT_EQ(Corner("a"), (Point{188, 10}));

    // An arrow during a drag commits one pixel; the drag goes on from its anchor.
    page.OnLButtonDown({193, 15}, false);
    page.OnMouseMove({188, 15});
    page.OnKeyDown(kLeft);
    EXPECT_EQ(Corner("a"), (Point{187, 10}));
    EXPECT_TRUE(page.IsDragging());
    EXPECT_EQ(page.Selection().live_rect, PageRect{});
    page.OnLButtonUp({188, 15});
    EXPECT_EQ(Corner("a"), (Point{182, 10}));

    // Delete is one step for the whole selection.
    Select({"a", "b"});
    page.OnKeyDown(kDelete);
    EXPECT_TRUE(document->Page()->pieces.empty());
    EXPECT_FALSE(page.HasSelection());
    EXPECT_EQ(LastStatus(), "Ready");
    project->OnEditUndo();
    EXPECT_EQ(document->Page()->pieces.size(), 2u);
}

TEST_F(LayoutViewTest, MagnifyKeepsTheClickedPixelUnderThePointer) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10));
    Click({15, 15});
    page.OnCommand(commands::kMagnifyArea);
    EXPECT_TRUE(Selected().empty());
    EXPECT_FALSE(page.HasSelection());
    EXPECT_EQ(page.Cursor(), LayoutCursor::Magnify);

    page.OnLButtonDown({30, 20}, false);
    page.OnLButtonUp({30, 20});
    EXPECT_EQ(page.Zoom(), 2);
    EXPECT_EQ(page.DeviceToPage({30, 20}, canvas.scroll), (Point{30, 20}));
    page.OnLButtonDblClk({30, 20});
    EXPECT_EQ(page.Zoom(), 4);
    EXPECT_EQ(page.DeviceToPage({30, 20}, canvas.scroll), (Point{30, 20}));
    page.OnRButtonDown({30, 20});
    page.OnRButtonUp({30, 20});
    EXPECT_EQ(page.Zoom(), 2);
    EXPECT_EQ(page.DeviceToPage({30, 20}, canvas.scroll), (Point{30, 20}));
    page.OnRButtonDblClk({30, 20});
    EXPECT_EQ(page.Zoom(), 1);
    EXPECT_TRUE(canvas.menus.empty());

    // The commands step about the window's corner.
    page.OnCommand(commands::kMagnify);
    EXPECT_EQ(page.Zoom(), 2);
    page.OnCommand(commands::kReduce);
    EXPECT_EQ(page.Zoom(), 1);
    EXPECT_TRUE(Selected().empty()) << "the magnifier never selects";
}

TEST_F(LayoutViewTest, SelectByGroupTakesTheWholeEditGroup) {
    CLayoutPageView& page =
        OpenView(Box("a", 10, 10, "", EditGroup("g")) + Box("b", 40, 10) +
                 Box("c", 70, 10, "<group_id>radio</group_id>\n" + kLocked, EditGroup("g")));
    EXPECT_EQ(page.EditGroupIds(), std::vector<std::string>{"g"});
    EXPECT_EQ(page.GroupIds(), std::vector<std::string>{"radio"});
    Click({15, 15});
    page.OnCommand(commands::kSelectByGroup);
    EXPECT_EQ(Selected(), (std::vector<std::string>{"c", "a"})) << "from the top, locked too";
    EXPECT_EQ(page.Cursor(), LayoutCursor::Move);

    // A press on a piece of a group takes the group, and a drag moves all of it.
    Click({45, 15});
    EXPECT_EQ(Selected(), std::vector<std::string>{"b"});
    Drag({15, 15}, {15, 25});
    EXPECT_EQ(Corner("a"), (Point{10, 20}));
    EXPECT_EQ(Corner("c"), (Point{70, 20}));
    EXPECT_EQ(Corner("b"), (Point{40, 10}));
}

TEST_F(LayoutViewTest, PiecesGoneFromThePageLeaveTheSelection) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + Box("b", 40, 10));
    Select({"a", "b"});
    page.OnRButtonDown({45, 15});
    page.OnRButtonUp({45, 15});
    EXPECT_EQ(page.ContextPiece(), "b");
    Select({"a", "b"});
    page.OnLButtonDown({15, 15}, false);
    page.OnMouseMove({20, 12});
    project->RemovePieceFromPage("Main", "b");
    EXPECT_EQ(Selected(), std::vector<std::string>{"a"});
    EXPECT_EQ(page.ContextPiece(), "");
    EXPECT_FALSE(page.IsDragging());
    page.OnLButtonUp({20, 12});
    EXPECT_EQ(Corner("a"), (Point{10, 10})) << "the drag ended with the piece";
}

TEST_F(LayoutViewTest, ZSortOpensOneListAndClosesWithTheView) {
    CLayoutPageView& page = OpenView(Box("a", 10, 10) + Box("b", 40, 10));
    Click({15, 15});
    page.OnCommand(commands::kZSort);
    EXPECT_TRUE(page.IsZSortOpen());
    EXPECT_EQ(canvas.z_sort_names, (std::vector<std::string>{"a", "b"}));
    EXPECT_FALSE(page.HasSelection());
    EXPECT_EQ(Selected(), std::vector<std::string>{"a"}) << "only the flags go";
    EXPECT_EQ(LastStatus(), "Ready");
    canvas.z_sort_names.clear();
    page.OnCommand(commands::kZSort);
    EXPECT_TRUE(canvas.z_sort_names.empty()) << "one dialog per view";
    page.OnZSortClosed();
    EXPECT_FALSE(page.IsZSortOpen());

    canvas.z_sort_opens = false;
    page.OnCommand(commands::kZSort);
    EXPECT_FALSE(page.IsZSortOpen());
    canvas.z_sort_opens = true;
    page.OnCommand(commands::kZSort);
    view.reset();
    EXPECT_EQ(canvas.z_sort_closes, 1);
}

}  // namespace
