#include "ProjectFixture.h"
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

}  // namespace
