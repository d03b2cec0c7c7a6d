#include "QuilletView.h"

#include <algorithm>

#include "CommandIds.h"
#include "framework/Application.h"
#include "model/QuilletDoc.h"

namespace {

using namespace commands;

const std::vector<std::string> kTextures{"Textures"};
const std::vector<std::string> kFonts{"Fonts"};
const std::vector<std::string> kFmvs{"FMVs"};
const std::vector<std::string> kObjects{"UI Objects"};
const std::vector<std::string> kLayouts{"Layouts"};
const std::vector<std::string> kMenus{"Layouts", "Menus"};
const std::vector<std::string> kCommonPaths{"Layouts", "Common Paths"};
const std::vector<std::string> kPiecesFile{"Layouts", "Pieces file"};

}  // namespace

CQuilletView::CQuilletView(WorkspaceCanvas& canvas) : canvas_(canvas) {
    model_.SetRemovalHook([this](const WorkspaceNode& node) { Forget(node); });
}

CQuilletDoc* CQuilletView::GetDocument() const {
    return dynamic_cast<CQuilletDoc*>(framework::View::GetDocument());
}

void CQuilletView::OnInitialUpdate() {
    needs_sync_ = true;
    SyncIfNeeded();
}

void CQuilletView::OnUpdate(framework::View* /*sender*/, long /*hint*/, void* /*object*/) {
    if (needs_sync_) return;
    needs_sync_ = true;
    canvas_.PostSync();
}

void CQuilletView::SyncIfNeeded() {
    const CQuilletDoc* project = GetDocument();
    if (!needs_sync_ || project == nullptr) return;
    needs_sync_ = false;
    model_.Sync(model_.Root(), BuildWorkspaceTree(*project), false);
}

void CQuilletView::Forget(const WorkspaceNode& node) {
    for (const WorkspaceNode* at = selected_; at != nullptr; at = at->parent) {
        if (at == &node) selected_ = nullptr;
    }
}

WorkspaceNode& CQuilletView::Fixed(const std::vector<std::string>& path) const {
    return *model_.NodeAt(path);
}

bool CQuilletView::IsFixed(const WorkspaceNode* node, const std::vector<std::string>& path) const {
    return node != nullptr && node == model_.NodeAt(path);
}

const WorkspaceNode& CQuilletView::RootOf(const WorkspaceNode& node) const {
    const WorkspaceNode* at = &node;
    while (at->parent != &model_.Root())
        at = at->parent;
    return *at;
}

bool CQuilletView::IsTexturePage(const WorkspaceNode& node) const {
    return GetDocument()->TextureIfAny(node.text) != nullptr;
}

bool CQuilletView::IsMovie(const WorkspaceNode& node) const {
    const auto& movies = GetDocument()->records().fmv_pages;
    return std::any_of(movies.begin(), movies.end(),
                       [&node](const FMV_PAGE& movie) { return movie.path == node.text; });
}

bool CQuilletView::IsObjectKind(const WorkspaceNode* node) const {
    return IsFixed(node, {"UI Objects", "Art"}) ||
           IsFixed(node, {"UI Objects", "Button", "Push"}) ||
           IsFixed(node, {"UI Objects", "Button", "Toggle"}) ||
           IsFixed(node, {"UI Objects", "Slider"}) || IsFixed(node, {"UI Objects", "Scroll Box"});
}

const WorkspaceNode* CQuilletView::MenuAbove(const WorkspaceNode& node) const {
    for (const WorkspaceNode* at = &node; at->parent != nullptr; at = at->parent) {
        if (IsFixed(at->parent, kMenus)) return at;
    }
    return nullptr;
}

// --- Opening ----------------------------------------------------------------------------

void CQuilletView::OpenSelected() {
    CQuilletDoc* project = GetDocument();
    if (selected_ == nullptr || project == nullptr) return;
    const WorkspaceNode& item = *selected_;
    if (IsTexturePage(item)) {
        project->OpenTexture(item.text);
    } else if (IsFixed(item.parent, kMenus)) {
        project->OpenLayout(item.text);
    } else if (IsObjectKind(item.parent)) {
        EditObject(item);
    }
}

// --- Context menus ----------------------------------------------------------------------

std::vector<MenuEntry> CQuilletView::ContextMenu(const WorkspaceNode& node) const {
    const WorkspaceNode* parent = node.parent;
    const WorkspaceNode* grandparent = parent != nullptr ? parent->parent : nullptr;
    const auto is = [&](const WorkspaceNode* at, const std::vector<std::string>& path) {
        return IsFixed(at, path);
    };
    const bool page = IsTexturePage(node);
    if (is(&node, kTextures))
        // "Add Texture..." is ours: a new project needs a visible way to its first page.
        return {{kNewTextureFolder, "New Folder..."},
                {kCreateTextureFromRoot, "Create Texture..."},
                {kAddExistingTexture, "Add Texture..."}};
    if (is(parent, kTextures) && !page) return {{kCreateTextureInFolder, "Create Texture..."}};
    if ((is(parent, kTextures) || is(grandparent, kTextures)) && page)
        return {{kViewTexturePage, "View..."}};
    if (is(&node, kFonts)) return {{kAddFont, "Add Font"}};
    if (is(&node, kFmvs)) return {{kAddFmv, "Add FMV..."}, {kNewFmvFolder, "New Folder..."}};
    if (is(parent, kFmvs) && !IsMovie(node)) return {{kAddFmvToFolder, "Add FMV..."}};
    if (is(&node, kObjects))
        return {{kAddArt, "Add Art..."},
                {kAddButton, "Add Button..."},
                {kAddSlider, "Add Slider..."},
                {kAddScrollBox, "Add Scroll Box..."}};
    if (is(&node, {"UI Objects", "Art"})) return {{kAddArtOfKind, "Add Art..."}};
    if (is(&node, {"UI Objects", "Button"})) return {{kAddButtonOfKind, "Add Button..."}};
    if (is(&node, {"UI Objects", "Slider"})) return {{kAddSliderOfKind, "Add Slider..."}};
    if (is(&node, {"UI Objects", "Scroll Box"}))
        return {{kAddScrollBoxOfKind, "Add scroll box..."}};
    if (IsObjectKind(parent)) return {{kEditObject, "Edit..."}};
    if (is(&node, kLayouts))
        return {{kEditDimensions, "Edit Dimensions..."},
                {kAddCommonPath, "Add common path..."},
                {kCreateLayoutFromLayouts, "Create Layout..."}};
    if (parent != nullptr && is(parent, kLayouts) && node.Index() == 0)
        return {{kEditDimensionsOfItem, "Edit Dimensions..."}};
    if (is(&node, kPiecesFile))
        return {{kBrowsePieceTypes, "Browse for piece types file..."},
                {kBrowsePieceTexts, "Browse for piece texts file..."},
                {kReloadPieceFiles, "Reload files"}};
    if (is(&node, kCommonPaths)) return {{kAddCommonPathOfItem, "Add path..."}};
    if (is(&node, kMenus)) return {{kCreateLayoutFromMenus, "Create Layout..."}};
    if (is(parent, kMenus)) return {{kViewMenu, "View..."}, {kCopyMenu, "Copy..."}};
    if (is(grandparent, kMenus) && node.text == "Paths") return {{kAddPagePath, "Add path..."}};
    return {};
}

// --- Deleting ---------------------------------------------------------------------------

void CQuilletView::DeleteSelected() {
    if (selected_ == nullptr || GetDocument() == nullptr) return;
    WorkspaceNode& item = *selected_;
    const std::string& root = RootOf(item).text;
    if (root == "Textures") {
        DeleteUnderTextures(item);
    } else if (root == "Fonts") {
        if (item.parent != &model_.Root()) GetDocument()->DeleteFont(item.text);
    } else if (root == "FMVs") {
        DeleteUnderFmvs(item);
    } else if (root == "UI Objects") {
        if (IsObjectKind(item.parent)) GetDocument()->DeleteObject(item.text);
    } else if (root == "Layouts") {
        DeleteUnderLayouts(item);
    }
    needs_sync_ = true;
    SyncIfNeeded();
}

template <typename DeleteRecord>
void CQuilletView::DeleteFolder(WorkspaceNode& folder, DeleteRecord delete_record) {
    std::vector<std::string> records;
    std::vector<const WorkspaceNode*> pending{&folder};
    while (!pending.empty()) {
        const WorkspaceNode* at = pending.back();
        pending.pop_back();
        for (const auto& child : at->children) {
            if (child->is_record)
                records.push_back(child->text);
            else
                pending.push_back(child.get());
        }
    }
    bool all_went = true;
    for (const std::string& record : records)
        all_went = delete_record(record) && all_went;
    if (all_went && folder.parent != &model_.Root()) model_.Remove(folder);
}

void CQuilletView::DeleteUnderTextures(WorkspaceNode& item) {
    CQuilletDoc& project = *GetDocument();
    if (IsTexturePage(item)) {
        project.DeleteTexturePage(item.text);
    } else if (item.parent != &model_.Root() && IsTexturePage(*item.parent)) {
        project.DeleteRegion(item.parent->text, item.text, true);
    } else {
        // The whole list of pages goes only after one question.
        if (item.parent == &model_.Root() &&
            framework::AppUI().MessageBox(
                "Remove every texture page from the project?",
                framework::Application::Instance()->Name(), framework::MessageIcon::Question,
                framework::MessageButtons::OkCancel) != framework::Answer::Ok)
            return;
        DeleteFolder(
            item, [&project](const std::string& path) { return project.DeleteTexturePage(path); });
    }
}

void CQuilletView::DeleteUnderFmvs(WorkspaceNode& item) {
    CQuilletDoc& project = *GetDocument();
    if (IsMovie(item))
        project.DeleteFmv(item.text);
    else if (item.parent != &model_.Root())
        DeleteFolder(item, [&project](const std::string& path) { return project.DeleteFmv(path); });
}

void CQuilletView::DeleteUnderLayouts(WorkspaceNode& item) {
    CQuilletDoc& project = *GetDocument();
    if (!item.is_record) return;
    const WorkspaceNode* list = item.parent;
    if (IsFixed(list, kMenus)) {
        project.DeleteLayout(item.text);
        return;
    }
    const bool textures = list->text == "Textures";
    if (list->parent != nullptr && IsFixed(list->parent, kCommonPaths)) {
        if (textures)
            project.DeleteCommonTexturePath(item.text);
        else
            project.DeleteCommonFmvPath(item.text);
        return;
    }
    const WorkspaceNode* menu = MenuAbove(item);
    if (menu == nullptr) return;
    if (list->text == "Pieces")
        project.RemovePieceFromPage(menu->text, item.text);
    else if (textures)
        project.DeletePageTexturePath(menu->text, item.text);
    else if (list->text == "FMVs")
        project.DeletePageFmvPath(menu->text, item.text);
}

// --- Drag and drop ----------------------------------------------------------------------

bool CQuilletView::CanDrag(const WorkspaceNode& node) const {
    if (GetDocument() == nullptr) return false;
    const std::string& root = RootOf(node).text;
    return (root == "Textures" && IsTexturePage(node)) || (root == "FMVs" && IsMovie(node));
}

bool CQuilletView::DropLegal(const WorkspaceNode& source, const WorkspaceNode& target) const {
    if (&source == &target || !CanDrag(source)) return false;
    const std::string& root = RootOf(source).text;
    if (&RootOf(target) != &RootOf(source)) return false;
    if (root == "Textures")
        return !IsTexturePage(target) && !GetDocument()->RegionExists(target.text);
    return !IsMovie(target);
}

void CQuilletView::Drop(const WorkspaceNode& source, const WorkspaceNode& target) {
    if (!DropLegal(source, target)) {
        canvas_.Beep();
        return;
    }
    CQuilletDoc& project = *GetDocument();
    const std::string folder = target.parent == &model_.Root() ? std::string() : target.text;
    if (RootOf(source).text == "Textures") {
        project.SetTextureFolder(source.text, folder);
    } else {
        for (const FMV_PAGE& movie : project.records().fmv_pages) {
            if (movie.path == source.text) {
                project.SetFmvFolder(movie.identifier, folder);
                break;
            }
        }
    }
    needs_sync_ = true;
    SyncIfNeeded();
}

// --- Commands ---------------------------------------------------------------------------

bool CQuilletView::OnCommand(int command) {
    if (GetDocument() == nullptr) return false;
    switch (command) {
        case kViewMenu:
        case kViewTexturePage:
            OpenSelected();
            return true;
        case kEditObject:
            if (selected_ != nullptr && IsObjectKind(selected_->parent)) EditObject(*selected_);
            return true;
        default:
            break;
    }
    const bool known = OnAddCommand(command);
    needs_sync_ = true;
    SyncIfNeeded();
    return known;
}

std::string CQuilletView::SelectedFolder() const {
    return selected_ != nullptr ? selected_->text : std::string();
}
