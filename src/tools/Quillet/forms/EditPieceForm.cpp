#include "EditPieceForm.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "CreateGroupForm.h"
#include "core_assert.h"
#include "framework/Application.h"
#include "model/QuilletDoc.h"
#include "model/piece_files.h"
#include "model/report.h"
#include "model/ui_objects.h"

// What the dialog offers a piece by the type tag of its object.
struct EditPieceForm::Kind {
    const char* tag;
    const char* description;
    bool text;       // text id, alignment and font
    bool next_menu;  // the next menu and the variable delta
    bool group;      // group id and hot spot
    bool sliders;    // slider ids and the scroll box's menu
};

namespace {

using framework::ControlKind;

constexpr int kAlignGroup = 1;

std::string AppCaption() {
    const framework::Application* app = framework::Application::Instance();
    return app != nullptr ? app->Name() : std::string("quillet");
}

std::vector<std::string> NamesOf(const std::vector<PIECE_TYPE>* category) {
    std::vector<std::string> names;
    if (category == nullptr) return names;
    for (const PIECE_TYPE& type : *category)
        names.push_back(type.name);
    return names;
}

std::vector<std::string> Prefixed(const char* first, const std::vector<std::string>& rest) {
    std::vector<std::string> rows{first};
    rows.insert(rows.end(), rest.begin(), rest.end());
    return rows;
}

bool Holds(const std::vector<std::string>& rows, const std::string& value) {
    return std::find(rows.begin(), rows.end(), value) != rows.end();
}

}  // namespace

framework::FileDialogRequest EditPieceForm::HotSpotRequest() {
    return {"Hot spot file", "Hot spot files (*.tga)", ".tga", ""};
}

EditPieceForm::EditPieceForm(CQuilletDoc& project, const std::string& page_name,
                             const UI_PIECE& piece, const std::vector<std::string>& edit_group_ids,
                             const std::vector<std::string>& group_ids,
                             framework::UserInterface& ui)
    : Form("Edit Piece"), project_(project), piece_(piece) {
    static const Kind kKinds[] = {
        {"art", "Art piece", true, false, false, false},
        {"push_button", "Push button piece", true, true, true, false},
        {"toggle_button", "Toggle button piece", true, false, true, false},
        {"UI_H_Slider", "Horizontal slider piece", false, false, true, false},
        {"UI_V_Slider", "Vertical slider piece", false, false, true, false},
        {"scroll_box", "Scroll box piece", false, false, true, true},
    };
    const std::string tag = project_.FindObject(piece_.object_id).TypeTag();
    for (const Kind& kind : kKinds) {
        if (tag == kind.tag) kind_ = &kind;
    }

    const auto edit = [this](int id, ControlKind kind, const char* label, framework::Cell cell,
                             bool enabled) {
        Add({.id = id, .kind = kind, .label = label, .cell = cell, .enabled = enabled});
    };
    edit(kName, ControlKind::Edit, "Name:", {0, 0, 1, 3}, true);
    edit(kDescription, ControlKind::ReadOnly, "Description:", {0, 3, 1, 3}, true);
    edit(kObjectId, ControlKind::ReadOnly, "Object id:", {1, 0, 1, 3}, true);
    edit(kPieceId, ControlKind::DropList, "Piece id:", {1, 3, 1, 3}, true);
    edit(kPieceData, ControlKind::Edit, "Piece data:", {2, 0, 1, 3}, true);
    edit(kLocked, ControlKind::Check, "Locked:", {2, 3, 1, 3}, true);
    edit(kTextId, ControlKind::DropList, "Text id:", {3, 0, 1, 3}, false);
    edit(kFont, ControlKind::DropList, "Font:", {3, 3, 1, 3}, false);
    const auto radio = [this](int id, const char* label, int column) {
        Add({.id = id,
             .kind = ControlKind::Radio,
             .label = label,
             .cell = {4, column},
             .enabled = false,
             .group = kAlignGroup});
    };
    radio(kAlignLeft, "Left", 0);
    radio(kAlignCentre, "Centre", 1);
    radio(kAlignRight, "Right", 2);
    edit(kToolTip, ControlKind::DropList, "Tool tip id:", {4, 3, 1, 3}, true);
    edit(kNextMenu, ControlKind::DropList, "Next Menu:", {5, 0, 1, 3}, false);
    edit(kDelta, ControlKind::Spin, "Variable delta:", {5, 3, 1, 3}, false);
    edit(kHzSlider, ControlKind::DropList, "Hz slider id:", {6, 0, 1, 2}, false);
    edit(kVtSlider, ControlKind::DropList, "Vt slider id:", {6, 2, 1, 2}, false);
    edit(kMenuId, ControlKind::DropList, "Menu id:", {6, 4, 1, 2}, false);
    edit(kGroupId, ControlKind::DropList, "Group ID:", {7, 0, 1, 2}, false);
    edit(kAddGroup, ControlKind::Button, "Add...", {7, 2}, false);
    edit(kEditGroup, ControlKind::DropList, "Edit Group:", {7, 3, 1, 3}, true);
    edit(kHotSpot, ControlKind::ReadOnly, "Hot spot file:", {8, 0, 1, 4}, false);
    edit(kBrowse, ControlKind::Button, "Browse...", {8, 4}, false);
    edit(kClear, ControlKind::Button, "Clear...", {8, 5}, false);

    // The type counts as unused while the dialog is open; OK flags the type then chosen.
    FlagPieceType(project_.qlt_file(), piece_.piece_identifier, false);
    Mutable(kName).text = piece_.name;
    Mutable(kPieceData).text = piece_.object_data;
    Mutable(kLocked).checked = piece_.locked;
    FillPieceIds(tag, ui);
    Mutable(kDescription).text = kind_ != nullptr ? kind_->description : "";
    Mutable(kObjectId).text = piece_.object_id;
    if (kind_ != nullptr && kind_->text) FillTextSection();
    if (kind_ != nullptr && kind_->next_menu) FillNextMenuSection();
    if (kind_ != nullptr && kind_->group) FillGroupSection(group_ids);
    if (kind_ != nullptr && kind_->sliders) FillSliderSection(page_name);
    const std::vector<std::string>& texts = project_.qlt_file().piece_texts;
    Fill(kToolTip, Prefixed(kNoText, texts), piece_.attributes.tool_tip_id);
    Fill(kEditGroup, Prefixed(kNoGroup, edit_group_ids), piece_.edit_group_id);
    TextRule();
    NextMenuRule(ui);
    DeltaRule();
}

// A value the list does not offer (a text gone from the texts file, a page deleted since)
// stands as a row of its own: OK must not change what the person did not touch.
void EditPieceForm::Fill(int id, std::vector<std::string> rows, const std::string& value) {
    if (!value.empty() && !Holds(rows, value)) rows.push_back(value);
    Mutable(id).rows = std::move(rows);
    ShowRow(id, value);
}

void EditPieceForm::FillTypes(const std::vector<PIECE_TYPE>* category, const std::string& id) {
    Mutable(kPieceId).rows = NamesOf(category);
    ShowRow(kPieceId, id);
}

void EditPieceForm::Enable(int id, bool enabled) {
    Mutable(id).enabled = enabled;
}

void EditPieceForm::FillPieceIds(const std::string& tag, framework::UserInterface& ui) {
    QLT_FILE& qlt = project_.qlt_file();
    const std::string& id = piece_.piece_identifier;
    // Reports "Unknown object type" for an object of no known kind.
    const std::vector<PIECE_TYPE>* category = PieceTypeList(qlt, tag);
    FillTypes(category, id);
    if (Holds(At(kPieceId).rows, id)) return;
    if (category != nullptr && !id.empty() && AppendPieceType(qlt, tag, id)) {
        FillTypes(category, id);
        ui.MessageBox("Unrecognised piece type " + id +
                          " has been added to the piece type file with default arguments.  You "
                          "should update the piece type file if this piece needs special "
                          "parameters.",
                      AppCaption(), framework::MessageIcon::Warning, framework::MessageButtons::Ok);
    }
    if (Holds(At(kPieceId).rows, id)) return;
    if (!id.empty())
        CORE_ASSERT_MSG(false, "type id for this piece isn't in the list and couldn't be added.");
    // The piece keeps its type through OK even so: it stands in this dialog's list alone.
    Mutable(kPieceId).rows.push_back(id);
    ShowRow(kPieceId, id);
}

void EditPieceForm::FillTextSection() {
    for (int id : {kTextId, kAlignLeft, kAlignCentre, kAlignRight, kFont})
        Enable(id, true);
    Fill(kTextId, Prefixed(kNoText, project_.qlt_file().piece_texts), piece_.attributes.text_id);
    const int32_t align = piece_.attributes.align;
    CheckRadio(align <= 0 ? kAlignLeft : align == 1 ? kAlignCentre : kAlignRight);
    std::vector<std::string> fonts;
    for (const FONT_PAGE& font : project_.records().font_pages)
        fonts.push_back(font.identifier);
    Fill(kFont, std::move(fonts), piece_.attributes.font_id);
}

void EditPieceForm::FillNextMenuSection() {
    Enable(kNextMenu, true);
    std::vector<std::string> pages;
    for (const LPAGE& page : project_.qlt_file().layouts)
        pages.push_back(page.name);
    Fill(kNextMenu, std::move(pages), piece_.attributes.menu_id);
    Mutable(kDelta).text = std::to_string(piece_.attributes.delta);
}

void EditPieceForm::FillGroupSection(const std::vector<std::string>& group_ids) {
    for (int id : {kGroupId, kAddGroup, kHotSpot, kBrowse, kClear})
        Enable(id, true);
    Fill(kGroupId, Prefixed(kNoGroup, group_ids), piece_.attributes.group_id);
    Mutable(kHotSpot).text = piece_.attributes.hot_spot;
}

void EditPieceForm::FillSliderSection(const std::string& page_name) {
    for (int id : {kHzSlider, kVtSlider, kMenuId})
        Enable(id, true);
    std::vector<std::string> horizontal{kNone};
    std::vector<std::string> vertical{kNone};
    if (const LPAGE* page = project_.qlt_file().PageNamed(page_name)) {
        for (const UI_PIECE& each : page->pieces) {
            const UI_OBJECT* object = project_.ObjectIfAny(each.object_id);
            if (object == nullptr) continue;
            if (object->TypeTag() == "UI_H_Slider") horizontal.push_back(each.name);
            if (object->TypeTag() == "UI_V_Slider") vertical.push_back(each.name);
        }
    }
    std::vector<std::string> menus{kNone};
    for (const LPAGE& page : project_.qlt_file().layouts)
        menus.push_back(page.name);
    Fill(kHzSlider, std::move(horizontal), piece_.attributes.hz_slider);
    Fill(kVtSlider, std::move(vertical), piece_.attributes.vt_slider);
    Fill(kMenuId, std::move(menus), piece_.attributes.scroll_menu_id);
}

bool EditPieceForm::ChosenTypeIn(const std::vector<PIECE_TYPE>& category) const {
    const std::string chosen = SelectedText(kPieceId);
    return std::any_of(category.begin(), category.end(),
                       [&chosen](const PIECE_TYPE& type) { return type.name == chosen; });
}

bool EditPieceForm::ChosenTypeIs(const std::vector<PIECE_TYPE>& category, const char* name) const {
    return SelectedText(kPieceId) == name && ChosenTypeIn(category);
}

bool EditPieceForm::IsVariableText() const {
    return kind_ != nullptr && kind_->text &&
           ChosenTypeIs(project_.qlt_file().art_types, kVariableText);
}

// Variable text takes its text from the game, so only its look is chosen here; any other
// piece has a look only once it has a text.
void EditPieceForm::TextRule() {
    if (kind_ == nullptr || !kind_->text) return;
    const bool variable = IsVariableText();
    Enable(kTextId, !variable);
    const bool styled = variable || At(kTextId).selected > 0;
    for (int id : {kAlignLeft, kAlignCentre, kAlignRight, kFont})
        Enable(id, styled);
}

// Only ever enables: a list once live stays live whatever type is chosen after.
void EditPieceForm::NextMenuRule(framework::UserInterface& ui) {
    if (At(kNextMenu).rows.empty()) return;
    if (!ChosenTypeIn(project_.qlt_file().push_button_types)) {
        ui.MessageBox("Invalid piece type", AppCaption(), framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
        return;
    }
    Enable(kNextMenu, true);
}

void EditPieceForm::DeltaRule() {
    Enable(kDelta, ChosenTypeIs(project_.qlt_file().push_button_types, kVariableButton));
}

void EditPieceForm::OnChanged(int id, framework::UserInterface& ui) {
    if (id == kTextId) TextRule();
    if (id != kPieceId) return;
    TextRule();
    NextMenuRule(ui);
    DeltaRule();
}

bool EditPieceForm::OnPressed(int id, framework::UserInterface& ui) {
    if (id == kAddGroup) {
        const std::optional<std::string> name = AskNewGroupName(ui, At(kGroupId).rows);
        if (name && !name->empty()) {
            framework::Control& list = Mutable(kGroupId);
            list.rows.push_back(*name);
            list.selected = static_cast<int>(list.rows.size()) - 1;
        }
    } else if (id == kBrowse) {
        if (const std::optional<std::string> path = ui.AskOpenFileName(HotSpotRequest()))
            Mutable(kHotSpot).text = std::filesystem::absolute(*path).string();
    } else if (id == kClear) {
        Mutable(kHotSpot).text.clear();
    }
    return false;
}

void EditPieceForm::OnSpin(int id, int steps, framework::UserInterface& /*ui*/) {
    if (id != kDelta) return;
    int value = 0;
    if (!framework::ParseDialogInt(Text(kDelta), value)) value = 0;
    const int64_t next =
        std::clamp<int64_t>(int64_t{value} - steps, std::numeric_limits<int32_t>::min(),
                            std::numeric_limits<int32_t>::max());
    Mutable(kDelta).text = std::to_string(next);
}

bool EditPieceForm::OnOk(framework::UserInterface& /*ui*/) {
    PIECE_ATTRIBUTES attributes;
    piece_.name = Text(kName);
    piece_.piece_identifier = SelectedText(kPieceId);
    piece_.object_data = Text(kPieceData);
    FlagPieceType(project_.qlt_file(), piece_.piece_identifier, true);
    const bool variable = IsVariableText();
    if (variable || At(kTextId).selected > 0) {
        attributes.text_id = variable ? kEmptyText : SelectedText(kTextId);
        const int checked = CheckedRadio(kAlignGroup);
        attributes.align = checked == kAlignRight ? 2 : checked == kAlignCentre ? 1 : 0;
        attributes.font_id = SelectedText(kFont);
    }
    if (At(kToolTip).selected > 0) attributes.tool_tip_id = SelectedText(kToolTip);
    if (Enabled(kNextMenu)) attributes.menu_id = SelectedText(kNextMenu);
    if (Enabled(kDelta)) {
        const bool parsed = framework::ParseDialogInt(Text(kDelta), attributes.delta);
        if (!parsed) attributes.delta = 0;
        ReportUnless(parsed, "Failed to get dialogue var delta");
    }
    if (Enabled(kHzSlider) && Enabled(kVtSlider) && Enabled(kMenuId)) {
        const auto taken = [this](int id) {
            const std::string value = SelectedText(id);
            return value == kNone ? std::string() : value;
        };
        attributes.hz_slider = taken(kHzSlider);
        attributes.vt_slider = taken(kVtSlider);
        attributes.scroll_menu_id = taken(kMenuId);
    }
    if (Enabled(kGroupId) && At(kGroupId).selected > 0)
        attributes.group_id = SelectedText(kGroupId);
    if (Enabled(kHotSpot)) attributes.hot_spot = Text(kHotSpot);
    piece_.attributes = std::move(attributes);
    piece_.edit_group_id = At(kEditGroup).selected > 0 ? SelectedText(kEditGroup) : std::string();
    piece_.locked = At(kLocked).checked;
    return true;
}
