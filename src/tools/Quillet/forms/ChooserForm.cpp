#include "ChooserForm.h"

#include <optional>
#include <vector>

#include "RegionTrees.h"
#include "framework/UserInterface.h"
#include "model/QuilletDoc.h"

namespace {

// A root and, once each, the non-empty folders of `records`.
template <typename Record>
void AddFolders(std::vector<framework::TreeItem>& items, const char* root,
                const std::vector<Record>& records) {
    std::vector<framework::TreeItem>& folders = framework::AddTreeItem(items, root).children;
    for (const Record& record : records) {
        if (!record.folder.empty() && framework::FindTreeItem(folders, record.folder) == nullptr)
            framework::AddTreeItem(folders, record.folder);
    }
}

}  // namespace

ChooserForm::ChooserForm(const CQuilletDoc& project, Mode mode)
    : Form(mode == Mode::Paths ? "Available Paths" : "Available Regions"),
      project_(&project),
      mode_(mode) {
    Add({.id = kTree, .kind = framework::ControlKind::Tree, .cell = {0, 0}});
}

void ChooserForm::Fill() {
    framework::Control& tree = Mutable(kTree);
    tree.items.clear();
    tree.pick.clear();
    const ProjectRecords& records = project_->records();
    if (mode_ == Mode::Paths) {
        AddFolders(tree.items, "Textures", records.texture_pages);
        AddFolders(tree.items, "FMVs", records.fmv_pages);
        return;
    }
    for (const TPAGE& page : records.texture_pages) {
        if (page.regions.empty()) continue;
        framework::TreeItem& node = framework::AddTreeItem(tree.items, page.path);
        for (const TREGION& region : page.regions)
            framework::AddTreeItem(node.children, region.name);
    }
}

bool ChooserForm::Choose(framework::UserInterface& ui, std::string& first, std::string& second) {
    first_pick_.clear();
    second_pick_.clear();
    Fill();
    if (!ui.RunForm(*this) || second_pick_.empty()) return false;
    first = first_pick_;
    second = second_pick_;
    return true;
}

void ChooserForm::OnChanged(int id, framework::UserInterface& /*ui*/) {
    if (id != kTree) return;
    const std::optional<LeafPick> pick = PickedLeaf(At(kTree));
    first_pick_ = pick ? pick->parent : std::string();
    second_pick_ = pick ? pick->leaf : std::string();
}

bool ChooserForm::OnPressed(int id, framework::UserInterface& /*ui*/) {
    return id == kTree && !second_pick_.empty();
}
