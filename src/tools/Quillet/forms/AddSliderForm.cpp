#include "AddSliderForm.h"

#include "framework/UserInterface.h"

namespace {

constexpr int kOrientationGroup = 1;

// How the dialog of the slider's part `index` starts: on that part when the slider has it.
ObjectFormStart PartStart(const ObjectFormStart& slider, size_t index, const char* name) {
    const UI_OBJECT* part = nullptr;
    if (slider.existing != nullptr) {
        const std::vector<std::unique_ptr<UI_OBJECT>>* parts = slider.existing->SubObjects();
        if (parts != nullptr && index < parts->size()) part = (*parts)[index].get();
    }
    return {part, name};
}

bool IsVertical(const UI_OBJECT* slider) {
    return dynamic_cast<const UI_V_SLIDER*>(slider) != nullptr;
}

template <typename PartForm>
void RunPart(PartForm& form, framework::UserInterface& ui) {
    const PartForm before = form;
    if (!ui.RunForm(form)) form = before;
}

}  // namespace

AddSliderForm::AddSliderForm(const CQuilletDoc& project, const ObjectFormStart& start)
    : ObjectForm(project, start, {kName, "Slider name:", "Bad Button Name"}, "Add Slider",
                 "Edit Slider"),
      art_(project, PartStart(start, 0, "Art")),
      thumb_(project, PartStart(start, 1, "Thumb")),
      decrease_(project, PartStart(start, 2, "Decrease")),
      increase_(project, PartStart(start, 3, "Increase")) {
    using framework::ControlKind;
    AddNameField({0, 0, 1, 2});
    int row = 1;
    for (const auto& [id, label] : {std::pair{kCreateArt, "Create art..."},
                                    {kCreateThumb, "Create thumb..."},
                                    {kCreateDecrease, "Create decrease button..."},
                                    {kCreateIncrease, "Create increase button..."}})
        Add({.id = id, .kind = ControlKind::Button, .label = label, .cell = {row++, 0}});
    const bool vertical = IsVertical(start.existing);
    row = 1;
    for (const auto& [id, label] : {std::pair{kHorizontal, "Horizontal"}, {kVertical, "Vertical"}})
        Add({.id = id,
             .kind = ControlKind::Radio,
             .label = label,
             .cell = {row++, 1},
             .enabled = !Editing(),
             .checked = (id == kVertical) == vertical,
             .group = kOrientationGroup});
}

bool AddSliderForm::OnPressed(int id, framework::UserInterface& ui) {
    switch (id) {
        case kCreateArt:
            RunPart(art_, ui);
            break;
        case kCreateThumb:
            RunPart(thumb_, ui);
            break;
        case kCreateDecrease:
            RunPart(decrease_, ui);
            break;
        case kCreateIncrease:
            RunPart(increase_, ui);
            break;
        default:
            break;
    }
    return false;
}

std::unique_ptr<UI_OBJECT> AddSliderForm::Build() const {
    std::unique_ptr<UI_OBJECT> art = art_.Build();
    if (art == nullptr) return nullptr;
    std::unique_ptr<UI_SLIDER> slider;
    if (CheckedRadio(kOrientationGroup) == kVertical)
        slider = std::make_unique<UI_V_SLIDER>(Name());
    else
        slider = std::make_unique<UI_H_SLIDER>(Name());
    slider->parts.push_back(std::move(art));
    for (const AddButtonForm* button : {&thumb_, &decrease_, &increase_}) {
        std::unique_ptr<UI_OBJECT> part = button->Build();
        if (part == nullptr) return nullptr;
        slider->parts.push_back(std::move(part));
    }
    slider->Arrange();
    return slider;
}
