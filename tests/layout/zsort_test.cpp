// Z sort: where a dragged row lands, and what OK makes of the page in a real project.
#include <gtest/gtest.h>

#include "layout/ZSortList.h"
#include "model/ProjectFixture.h"

namespace {

using Names = std::vector<std::string>;

Names Moved(size_t source, size_t target, Names names = {"a", "b", "c", "d"}) {
    ZSortList list("Main", std::move(names));
    list.MoveRow(source, target);
    return list.Names();
}

TEST(ZSortListTest, ARowGoesBeforeATargetAboveAndAfterOneBelow) {
    EXPECT_EQ(Moved(3, 0), (Names{"d", "a", "b", "c"}));
    EXPECT_EQ(Moved(0, 3), (Names{"b", "c", "d", "a"}));
    EXPECT_EQ(Moved(3, 1), (Names{"a", "d", "b", "c"}));
    EXPECT_EQ(Moved(0, 2), (Names{"b", "c", "a", "d"}));
    // Neighbours swap whichever way the drag went.
    EXPECT_EQ(Moved(1, 2), (Names{"a", "c", "b", "d"}));
    EXPECT_EQ(Moved(2, 1), (Names{"a", "c", "b", "d"}));
}

TEST(ZSortListTest, ADropOnItselfOrOutsideTheRowsChangesNothing) {
    EXPECT_EQ(Moved(2, 2), (Names{"a", "b", "c", "d"}));
    EXPECT_EQ(Moved(4, 0), (Names{"a", "b", "c", "d"}));
    EXPECT_EQ(Moved(0, 4), (Names{"a", "b", "c", "d"}));
    EXPECT_EQ(Moved(0, 0, {}), Names{});
}

std::string Piece(const std::string& name, bool locked) {
    return "<UI piece>" + name +
           "\n<identifier>button</identifier>\n<Parameters>\n<x>10</x>\n<y>20</y>\n"
           "<width>64</width>\n<height>64</height>\n<locked>" +
           (locked ? "true" : "false") +
           "</locked>\n</Parameters>\n<object_data></object_data>\n"
           "<object_id>empty_art</object_id>\n</UI piece>\n";
}

// "Main" holds a, b (locked) and c, lowest first; "Other" holds one piece named a too.
const std::string kProject =
    "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
    "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
    "<lpage>Main\n" +
    Piece("a", false) + Piece("b", true) + Piece("c", false) + "</lpage>\n<lpage>Other\n" +
    Piece("a", false) + "</lpage>\n<lpage>Empty\n</lpage>\n</layout>\n";

class ZSortApplyTest : public ProjectFixture {
protected:
    CQuilletDoc* project = nullptr;

    void SetUp() override {
        Start();
        project = Open("ui.qlt", kProject);
        ASSERT_NE(project, nullptr);
    }

    Names Order(const std::string& page) {
        Names names;
        for (const UI_PIECE& piece : project->qlt_file().FindPage(page).pieces)
            names.push_back(piece.name);
        return names;
    }
};

TEST_F(ZSortApplyTest, OkGivesThePageTheRowsOrderAsOneUndoStep) {
    CountingView tree;
    project->AddView(tree);
    CLayoutPageDoc* other = OpenLayoutPage("Other");
    CountingView other_view;
    other->AddView(other_view);
    CLayoutPageDoc* main = OpenLayoutPage("Main");
    CountingView main_view;
    main->AddView(main_view);
    const size_t steps = project->undo_list.size();

    ZSortList list("Main", Order("Main"));
    list.MoveRow(2, 0);
    list.MoveRow(1, 2);
    list.Apply();
    EXPECT_EQ(Order("Main"), (Names{"c", "b", "a"}));
    EXPECT_TRUE(project->qlt_file().FindPage("Main").FindPiece("b").locked);
    EXPECT_EQ(Order("Other"), Names{"a"});
    EXPECT_EQ(project->undo_list.size(), steps + 1);
    EXPECT_TRUE(project->IsModified());
    // Only the sorted page's window draws anew.
    EXPECT_GE(main_view.updates, 1);
    EXPECT_EQ(other_view.updates, 0);
    EXPECT_TRUE(ui.boxes.empty());

    project->OnEditUndo();
    EXPECT_EQ(Order("Main"), (Names{"a", "b", "c"}));
}

TEST_F(ZSortApplyTest, OkWithNothingMovedStillRecordsAnUndoStep) {
    const size_t steps = project->undo_list.size();
    ZSortList("Main", Order("Main")).Apply();
    EXPECT_EQ(Order("Main"), (Names{"a", "b", "c"}));
    EXPECT_EQ(project->undo_list.size(), steps + 1);

    ZSortList("Empty", {}).Apply();
    EXPECT_EQ(Order("Empty"), Names{});
    EXPECT_EQ(project->undo_list.size(), steps + 2);
    EXPECT_TRUE(ui.boxes.empty());
}

// A piece deleted while the dialog was open: told once, the others still sorted.
TEST_F(ZSortApplyTest, ANameThePageLostIsReportedOnceAndSkipped) {
    ZSortList list("Main", {"c", "gone", "a"});
    list.Apply();
    EXPECT_EQ(Order("Main"), (Names{"b", "c", "a"}));
    ASSERT_EQ(ui.boxes.size(), 1u);
    EXPECT_EQ(ui.boxes[0].text, "Piece not found");
    EXPECT_EQ(ui.boxes[0].caption, "Error");
}

}  // namespace
