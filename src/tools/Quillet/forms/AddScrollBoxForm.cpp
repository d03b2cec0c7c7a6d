#include "AddScrollBoxForm.h"

namespace {

const SingleRegionForm::Kind& ScrollBoxKind() {
    static const SingleRegionForm::Kind kind{
        AddScrollBoxForm::kTree,
        AddScrollBoxForm::kPick,
        AddScrollBoxForm::kRegion,
        AddScrollBoxForm::kPage,
        {AddScrollBoxForm::kName, "Scroll box name", "Bad scroll box Name"},
        "Add Scroll Box",
        "Edit Scroll Box",
        "scroll_box",
        false,
        [](std::string name) -> std::unique_ptr<UI_REGION_OBJECT> {
            return std::make_unique<UI_SCROLL_BOX>(std::move(name));
        }};
    return kind;
}

}  // namespace

AddScrollBoxForm::AddScrollBoxForm(const CQuilletDoc& project, const ObjectFormStart& start)
    : SingleRegionForm(project, start, ScrollBoxKind()) {}
