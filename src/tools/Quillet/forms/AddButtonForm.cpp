#include "AddButtonForm.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "RegionTrees.h"
#include "framework/UserInterface.h"
#include "model/QuilletDoc.h"
#include "model/report.h"

namespace {

constexpr int kStyleGroup = 1;

struct StateRow {
    const char* state;
    const char* label;
    int button;
    int region;
    int page;
};

// In the order the button holds its regions; only a toggle button has the last.
constexpr StateRow kRows[] = {
    {"enabled", "Enabled ->", AddButtonForm::kEnabled, AddButtonForm::kEnabledRegion,
     AddButtonForm::kEnabledPage},
    {"highlighted", "Highlighted ->", AddButtonForm::kHighlighted,
     AddButtonForm::kHighlightedRegion, AddButtonForm::kHighlightedPage},
    {"selected", "Selected ->", AddButtonForm::kSelected, AddButtonForm::kSelectedRegion,
     AddButtonForm::kSelectedPage},
    {"checked", "Checked ->", AddButtonForm::kChecked, AddButtonForm::kCheckedRegion,
     AddButtonForm::kCheckedPage},
};
constexpr size_t kPushStates = 3;
constexpr const StateRow& kCheckedRow = kRows[3];

}  // namespace

AddButtonForm::AddButtonForm(const CQuilletDoc& project, const ObjectFormStart& start)
    : ObjectForm(project, start, {kName, "Button name:", "Bad Button Name"}, "Add Button",
                 "Edit Button") {
    using framework::ControlKind;
    const int rows = static_cast<int>(std::size(kRows));
    framework::Control& tree = Add({.id = kRegions,
                                    .kind = ControlKind::Tree,
                                    .label = "Available Regions:",
                                    .cell = {0, 0, rows + 2, 1}});
    AddTextureFolders(tree.items, Project().records().texture_pages);
    AddNameField({0, 1, 1, 3});
    int row = 1;
    for (const StateRow& each : kRows) {
        Add({.id = each.button,
             .kind = ControlKind::Button,
             .label = each.label,
             .cell = {row, 1}});
        Add({.id = each.region, .kind = ControlKind::ReadOnly, .cell = {row, 2}});
        Add({.id = each.page, .kind = ControlKind::ReadOnly, .cell = {row, 3}});
        ++row;
    }
    const bool toggle = dynamic_cast<const UI_TOGGLE_BUTTON*>(start.existing) != nullptr;
    for (const int id : {kPush, kToggle}) {
        Add({.id = id,
             .kind = ControlKind::Radio,
             .label = id == kPush ? "Push Button" : "Toggle Button",
             .cell = {row, id == kPush ? 1 : 2},
             .enabled = !Editing(),
             .checked = (id == kToggle) == toggle,
             .group = kStyleGroup});
    }
    ShowStyle();

    if (start.existing == nullptr) return;
    static const std::vector<UI_REGION> kNone;
    const std::vector<UI_REGION>* regions = start.existing->Regions();
    if (regions == nullptr) regions = &kNone;
    const size_t states = toggle ? std::size(kRows) : kPushStates;
    for (size_t index = 0; index < states; ++index) {
        const StateRow& each = kRows[index];
        const auto found = std::find_if(regions->begin(), regions->end(),
                                        [&](const UI_REGION& r) { return r.name == each.state; });
        ReportUnless(found != regions->end(),
                     "The button has no region for the state \"" + std::string(each.state) + "\"");
        if (found == regions->end()) continue;
        Mutable(each.region).text = found->region;
        Mutable(each.page).text = found->page;
    }
}

void AddButtonForm::ShowStyle() {
    const bool toggle = CheckedRadio(kStyleGroup) == kToggle;
    for (const int id : {kCheckedRow.button, kCheckedRow.region, kCheckedRow.page})
        Mutable(id).enabled = toggle;
}

void AddButtonForm::OnChanged(int id, framework::UserInterface& /*ui*/) {
    if (id == kPush || id == kToggle) ShowStyle();
}

bool AddButtonForm::OnPressed(int id, framework::UserInterface& /*ui*/) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [id](const StateRow& each) { return each.button == id; });
    if (row == std::end(kRows)) return false;
    const std::optional<LeafPick> pick = PickedLeaf(At(kRegions));
    if (!pick) return false;
    Mutable(row->region).text = pick->leaf;
    Mutable(row->page).text = pick->parent;
    ProposeName(pick->leaf);
    return false;
}

bool AddButtonForm::OnOk(framework::UserInterface& ui) {
    if (!CheckName(ui)) return false;
    if (CheckedRadio(kStyleGroup) == 0) {
        ui.MessageBox(kUnknownTypeText, "Error", framework::MessageIcon::Stop,
                      framework::MessageButtons::Ok);
        return false;
    }
    return true;
}

std::unique_ptr<UI_OBJECT> AddButtonForm::Build() const {
    const int style = CheckedRadio(kStyleGroup);
    if (style == 0) return nullptr;
    std::unique_ptr<UI_BUTTON> button;
    if (style == kToggle)
        button = std::make_unique<UI_TOGGLE_BUTTON>(Name());
    else
        button = std::make_unique<UI_PUSH_BUTTON>(Name());
    const size_t states = style == kToggle ? std::size(kRows) : kPushStates;
    for (size_t index = 0; index < states; ++index) {
        const StateRow& each = kRows[index];
        button->regions.push_back({each.state, Text(each.page), Text(each.region)});
    }
    return button;
}
