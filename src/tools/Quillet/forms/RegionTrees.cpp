#include "RegionTrees.h"

#include <algorithm>

namespace {

framework::TreeItem& FoundOrAdded(std::vector<framework::TreeItem>& items,
                                  const std::string& text) {
    framework::TreeItem* found = framework::FindTreeItem(items, text);
    return found != nullptr ? *found : framework::AddTreeItem(items, text);
}

}  // namespace

void AddTextureFolders(std::vector<framework::TreeItem>& items, const std::vector<TPAGE>& pages) {
    for (const TPAGE& page : pages) {
        if (page.folder.empty() || page.regions.empty()) continue;
        framework::TreeItem& folder = FoundOrAdded(items, page.folder);
        framework::TreeItem& node = framework::AddTreeItem(folder.children, page.path);
        for (const TREGION& region : page.regions)
            framework::AddTreeItem(node.children, region.name);
    }
}

void AddMovieFolders(std::vector<framework::TreeItem>& items, const std::vector<FMV_PAGE>& movies) {
    for (const FMV_PAGE& movie : movies) {
        if (movie.folder.empty()) continue;
        framework::AddTreeItem(FoundOrAdded(items, movie.folder).children, movie.identifier);
    }
}

std::optional<LeafPick> PickedLeaf(const framework::Control& tree) {
    const std::vector<std::string>& path = tree.pick;
    if (path.size() < 2) return std::nullopt;
    const std::vector<framework::TreeItem>* level = &tree.items;
    const framework::TreeItem* item = nullptr;
    for (const std::string& text : path) {
        const auto found =
            std::find_if(level->begin(), level->end(),
                         [&](const framework::TreeItem& each) { return each.text == text; });
        if (found == level->end()) return std::nullopt;
        item = &*found;
        level = &item->children;
    }
    if (!item->children.empty()) return std::nullopt;
    return LeafPick{path[path.size() - 2], path.back()};
}
