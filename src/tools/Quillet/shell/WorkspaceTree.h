// What the project window's tree shows, built from the project alone: the tree holds no
// data of its own, and a node is told from another by its place and its text.
#pragma once

#include <string>
#include <vector>

#include "model/QuilletDoc.h"

struct TreeNode {
    std::string text;
    std::vector<TreeNode> children;
    bool is_record = false;  // a record of the project, not a fixed node or folder
};

// The top-level nodes of the project window, in their fixed order, with every record of the
// project below them: pages in their folders with their regions, fonts, movies, objects by
// kind, and the menus with their paths and pieces.
std::vector<TreeNode> BuildWorkspaceTree(const CQuilletDoc& project);

// "Dimensions: %dx%d"
std::string DimensionsText(const QLT_FILE& qlt_file);

// Opens the window of the record a node stands for, given the node's texts from the root
// down: a texture page under "Textures" or a menu under "Menus". False for any other node.
bool OpenWorkspaceItem(CQuilletDoc& project, const std::vector<std::string>& path);
