// What the project window's tree shows, built from the project alone: the tree holds no
// data of its own, and a node is told from another by its place and its text.
#pragma once

#include <string>
#include <vector>

#include "model/QuilletDoc.h"

struct TreeNode {
    std::string text;
    std::vector<TreeNode> children;
    bool is_record = false;        // a record of the project, not a fixed node or folder
    bool sorted_children = false;  // the children stand in tree order, not a fixed order
};

// Tree order: letters compared without regard to case (ASCII only), ties by bytes.
bool TreeTextLess(const std::string& a, const std::string& b);

// The top-level nodes of the project window, in their fixed order, with every record of the
// project below them: pages in their folders with their regions, fonts, movies, objects by
// kind, and the menus with their paths and pieces.
std::vector<TreeNode> BuildWorkspaceTree(const CQuilletDoc& project);

// "Dimensions: %dx%d"
std::string DimensionsText(const QLT_FILE& qlt_file);
