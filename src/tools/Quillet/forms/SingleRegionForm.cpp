#include "SingleRegionForm.h"

#include <algorithm>
#include <optional>

#include "RegionTrees.h"
#include "model/QuilletDoc.h"

namespace {

constexpr const char* kTexturesRoot = "Textures";
constexpr const char* kMoviesRoot = "FMVs";

}  // namespace

SingleRegionForm::SingleRegionForm(const CQuilletDoc& project, const ObjectFormStart& start,
                                   const Kind& kind)
    : ObjectForm(project, start, kind.name_field, kind.add_caption, kind.edit_caption),
      kind_(&kind) {
    using framework::ControlKind;
    framework::Control& tree = Add({.id = kind.tree,
                                    .kind = ControlKind::Tree,
                                    .label = "Available Regions:",
                                    .cell = {0, 0, 3, 1}});
    const ProjectRecords& records = Project().records();
    AddTextureFolders(framework::AddTreeItem(tree.items, kTexturesRoot).children,
                      records.texture_pages);
    if (kind.movies)
        AddMovieFolders(framework::AddTreeItem(tree.items, kMoviesRoot).children,
                        records.fmv_pages);
    AddNameField({0, 1, 1, 2});
    Add({.id = kind.pick, .kind = ControlKind::Button, .label = "->", .cell = {1, 1}});
    Add({.id = kind.region, .kind = ControlKind::ReadOnly, .label = "Region:", .cell = {1, 2}});
    Add({.id = kind.page, .kind = ControlKind::ReadOnly, .label = "Page:", .cell = {2, 2}});

    if (start.existing == nullptr) return;
    const std::vector<UI_REGION>* regions = start.existing->Regions();
    if (regions == nullptr || regions->empty()) return;
    Mutable(kind.region).text = regions->front().region;
    Mutable(kind.page).text = regions->front().page;
}

bool SingleRegionForm::OnPressed(int id, framework::UserInterface& /*ui*/) {
    // The "->" button and a double click on a leaf take the pick alike.
    if (id != kind_->pick && id != kind_->tree) return false;
    const framework::Control& tree = At(kind_->tree);
    const std::optional<LeafPick> pick = PickedLeaf(tree);
    if (!pick) return false;
    std::string page = pick->parent;
    if (tree.pick.front() == kMoviesRoot) {
        // A movie stands by its identifier in its folder; the object names its file.
        const std::vector<FMV_PAGE>& movies = Project().records().fmv_pages;
        const auto movie = std::find_if(movies.begin(), movies.end(), [&](const FMV_PAGE& each) {
            return each.folder == pick->parent && each.identifier == pick->leaf;
        });
        if (movie == movies.end()) return false;
        page = movie->path;
    }
    Mutable(kind_->region).text = pick->leaf;
    Mutable(kind_->page).text = page;
    ProposeName(pick->leaf);
    return false;
}

std::unique_ptr<UI_OBJECT> SingleRegionForm::Build() const {
    if (RegionName().empty() || PageName().empty()) return nullptr;
    std::unique_ptr<UI_REGION_OBJECT> object = kind_->make(Name());
    object->regions.push_back({kind_->slot, PageName(), RegionName()});
    return object;
}
