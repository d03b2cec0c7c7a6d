// The trees that the object dialogs and the choosers pick regions and paths from. Their
// items carry only texts, in the order of the project's records: an item is told by its
// place and its text, and a leaf's parent names what the leaf belongs to.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/Form.h"
#include "model/qlt_types.h"

// For each page that has a folder and at least one region: the folder (found among `items`
// by its text, or added), the page's path under it, and its regions under the page.
void AddTextureFolders(std::vector<framework::TreeItem>& items, const std::vector<TPAGE>& pages);
// For each movie that has a folder: the folder, found or added, and the movie's identifier
// under it.
void AddMovieFolders(std::vector<framework::TreeItem>& items, const std::vector<FMV_PAGE>& movies);

// A leaf picked in a tree: its parent's text and its own.
struct LeafPick {
    std::string parent;
    std::string leaf;
};

// The pick of `tree` when it names an item that has a parent and no children; nothing for a
// node with children, a top-level item, or a path the tree does not hold.
std::optional<LeafPick> PickedLeaf(const framework::Control& tree);
