#include "../model/ProjectFixture.h"
#include "shell/WorkspaceTree.h"

namespace {

// The tree as indented text, one node a line.
void Print(const std::vector<TreeNode>& nodes, int depth, std::string& out) {
    for (const TreeNode& node : nodes) {
        out += std::string(static_cast<size_t>(depth) * 2, ' ') + node.text + "\n";
        Print(node.children, depth + 1, out);
    }
}

using WorkspaceTreeTest = ProjectFixture;

TEST_F(WorkspaceTreeTest, FixedNodesInTheirOrder) {
    Start();
    CQuilletDoc* project = Open("ui.qlt", ProjectOfWidth(1024));
    project->qlt_file().common_fmv_paths.push_back("movies");
    std::string text;
    Print(BuildWorkspaceTree(*project), 0, text);
    EXPECT_EQ(text,
              "Textures\nFonts\nFMVs\n"
              "UI Objects\n  Art\n  Button\n    Push\n    Toggle\n  Slider\n  Scroll Box\n"
              "Layouts\n  Dimensions: 1024x600\n  Pieces file\n    No file\n    No file\n"
              "  Common Paths\n    Textures\n    FMVs\n      movies\n  Menus\n");
}

TEST_F(WorkspaceTreeTest, RecordsStandInFoldersAndSortedOrder) {
    Start();
    CQuilletDoc* project =
        Open("ui.qlt",
             "<texture>zeta.tga\n<region>b\n<left>0</left>\n<top>0</top>\n<right>1</right>\n"
             "<bottom>1</bottom>\n</region>\n</texture>\n"
             "<texture>alpha.tga\n<path>Menus</path>\n</texture>\n"
             "<font>f.bgf\n<identifier>body</identifier>\n<lf_height>1</lf_height>\n</font>\n"
             "<UI object>Quit\n<type>push_button</type>\n</UI object>\n"
             "<UI object>bar\n<type>UI_H_Slider</type>\n</UI object>\n"
             "<layout>\n<layout_width>800</layout_width>\n<layout_height>600</layout_height>\n"
             "<piece_types_fname></piece_types_fname>\n<piece_texts_fname></piece_texts_fname>\n"
             "<lpage>Main\n<texture_path>Menus</texture_path>\n</lpage>\n</layout>\n");
    ASSERT_NE(project, nullptr);
    std::string text;
    Print(BuildWorkspaceTree(*project), 0, text);
    const std::string zeta = dir.File("zeta.tga");
    EXPECT_EQ(
        text,
        // Page nodes are their paths: '/' sorts before the folder's letters.
        "Textures\n  " + zeta + "\n    b\n  Menus\n    " + dir.File("alpha.tga") +
            "\n"
            "Fonts\n  body\nFMVs\n"
            "UI Objects\n  Art\n  Button\n    Push\n      Quit\n    Toggle\n  Slider\n    bar\n"
            "  Scroll Box\n"
            "Layouts\n  Dimensions: 800x600\n  Pieces file\n    No file\n    No file\n"
            "  Common Paths\n    Textures\n    FMVs\n  Menus\n    Main\n      Paths\n"
            "        Textures\n          Menus\n        FMVs\n      Pieces\n");
}

}  // namespace
