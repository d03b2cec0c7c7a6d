#include "AddArtForm.h"

namespace {

const SingleRegionForm::Kind& ArtKind() {
    static const SingleRegionForm::Kind kind{
        AddArtForm::kTree,
        AddArtForm::kPick,
        AddArtForm::kRegion,
        AddArtForm::kPage,
        {AddArtForm::kName, "Art name", "Bad Art Name"},
        "Add Art",
        "Edit Art",
        "art",
        true,
        [](std::string name) -> std::unique_ptr<UI_REGION_OBJECT> {
            return std::make_unique<UI_ART>(std::move(name));
        }};
    return kind;
}

}  // namespace

AddArtForm::AddArtForm(const CQuilletDoc& project, const ObjectFormStart& start)
    : SingleRegionForm(project, start, ArtKind()) {}
