#include "InsertObjectForm.h"

#include <algorithm>

#include "NameCheck.h"
#include "framework/Application.h"
#include "framework/UserInterface.h"
#include "model/QuilletDoc.h"
#include "model/identifier.h"
#include "model/piece_files.h"
#include "model/report.h"
#include "model/ui_objects.h"

namespace {

using framework::TreeItem;

std::string AppCaption() {
    const framework::Application* app = framework::Application::Instance();
    return app != nullptr ? app->Name() : std::string("quillet");
}

// Where the objects of a type tag are listed, from the top of the tree down.
std::vector<std::string> BranchOf(const std::string& tag) {
    if (tag == "art") return {"Art"};
    if (tag == "push_button") return {"Button", "Push"};
    if (tag == "toggle_button") return {"Button", "Toggle"};
    if (tag == "UI_H_Slider" || tag == "UI_V_Slider") return {"Slider"};
    if (tag == "scroll_box") return {"Scroll Box"};
    return {};
}

// The item `path` names, from the top level down; null when there is none.
template <typename Items>
auto ItemAt(Items& items, const std::vector<std::string>& path) -> decltype(&items.front()) {
    Items* level = &items;
    decltype(&items.front()) item = nullptr;
    for (const std::string& text : path) {
        const auto found =
            std::find_if(level->begin(), level->end(),
                         [&text](const TreeItem& each) { return each.text == text; });
        if (found == level->end()) return nullptr;
        item = &*found;
        level = &item->children;
    }
    return item;
}

bool Holds(const std::vector<std::string>& list, const std::string& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

template <typename Record>
const Record* WithPath(const std::vector<Record>& records, const std::string& path) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&path](const Record& record) { return record.path == path; });
    return found != records.end() ? &*found : nullptr;
}

}  // namespace

InsertObjectForm::InsertObjectForm(CQuilletDoc& project, const LPAGE& page)
    : Form("Insert Object"), project_(project) {
    framework::Control& tree = Add({.id = kObjects,
                                    .kind = framework::ControlKind::Tree,
                                    .label = "Available Objects:",
                                    .cell = {0, 0, 3, 1}});
    framework::AddTreeItem(tree.items, "Art");
    TreeItem& buttons = framework::AddTreeItem(tree.items, "Button");
    framework::AddTreeItem(buttons.children, "Push");
    framework::AddTreeItem(buttons.children, "Toggle");
    framework::AddTreeItem(tree.items, "Slider");
    framework::AddTreeItem(tree.items, "Scroll Box");
    Add({.id = kTakePick, .kind = framework::ControlKind::Button, .label = "->", .cell = {1, 1}});
    Add({.id = kObjectName,
         .kind = framework::ControlKind::ReadOnly,
         .label = "Object name",
         .cell = {0, 2}});
    Add({.id = kPieceName,
         .kind = framework::ControlKind::Edit,
         .label = "Piece name",
         .cell = {2, 2},
         .max_length = kMaxNameLength});

    // The empty art and buttons need no region and so stand on every page, first.
    for (const UI_OBJECT* empty : EmptyObjects()) {
        const std::string& tag = empty->TypeTag();
        if (tag == "art" || tag == "push_button" || tag == "toggle_button") List(*empty);
    }
    for (const auto& object : project_.records().ui_objects) {
        if (object != nullptr && OpenToPage(*object, page)) List(*object);
    }
}

void InsertObjectForm::List(const UI_OBJECT& object) {
    std::vector<TreeItem>& items = Mutable(kObjects).items;
    const std::vector<std::string> branch = BranchOf(object.TypeTag());
    TreeItem* item = branch.empty() ? nullptr : ItemAt(items, branch);
    ReportUnless(item != nullptr, "Object item root not found");
    if (item != nullptr) framework::AddTreeItem(item->children, object.Name());
}

bool InsertObjectForm::OpenToPage(const UI_OBJECT& object, const LPAGE& page) const {
    const ProjectRecords& records = project_.records();
    if (const std::vector<UI_REGION>* regions = object.Regions()) {
        for (const UI_REGION& region : *regions) {
            // A slot left empty (a button state nobody gave a region) has nothing to place.
            if (region.IsUnset()) continue;
            if (const TPAGE* texture = WithPath(records.texture_pages, region.page)) {
                if (!Holds(records.qlt_file.common_texture_paths, texture->folder) &&
                    !Holds(page.texture_paths, texture->folder))
                    return false;
            } else if (const FMV_PAGE* movie = WithPath(records.fmv_pages, region.page)) {
                if (!Holds(records.qlt_file.common_fmv_paths, movie->folder) &&
                    !Holds(page.fmv_paths, movie->folder))
                    return false;
            } else {
                ReportUnless(false, "Unknown region type");
                return false;
            }
        }
    }
    if (const auto* parts = object.SubObjects()) {
        for (const auto& part : *parts) {
            if (part != nullptr && !OpenToPage(*part, page)) return false;
        }
    }
    return true;
}

void InsertObjectForm::OnChanged(int id, framework::UserInterface& /*ui*/) {
    if (id != kObjects) return;
    // Only a leaf below a root is an object: roots and the button kinds are headings.
    const std::vector<std::string>& path = At(kObjects).pick;
    const TreeItem* item = ItemAt(At(kObjects).items, path);
    const bool object = item != nullptr && path.size() > 1 && item->children.empty();
    pick_ = object ? path.back() : std::string();
}

void InsertObjectForm::TakePick() {
    if (pick_.empty()) return;
    Mutable(kObjectName).text = pick_;
    framework::Control& name = Mutable(kPieceName);
    if (name.text.empty()) name.text = pick_.substr(0, name.max_length);
}

bool InsertObjectForm::OnPressed(int id, framework::UserInterface& /*ui*/) {
    if (id == kTakePick || id == kObjects) TakePick();
    return false;
}

bool InsertObjectForm::OnOk(framework::UserInterface& ui) {
    const std::string& name = Text(kPieceName);
    if (!CheckIdentifier(name, "Bad Object Name", ui)) return false;
    if (pick_.empty()) {
        ui.MessageBox(kNoPickText, AppCaption(), framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
        return false;
    }
    piece_ = UI_PIECE();
    piece_.name = name;
    piece_.object_id = pick_;
    const std::string tag = project_.FindObject(pick_).TypeTag();
    // Reports "Unknown object type" for an object of no known kind.
    if (const std::vector<PIECE_TYPE>* types = PieceTypeList(project_.qlt_file(), tag)) {
        ReportUnless(!types->empty(), "Piece type not found");
        if (!types->empty()) piece_.piece_identifier = types->front().name;
    }
    return true;
}
