#include "SmallForms.h"

#include "NameCheck.h"
#include "model/identifier.h"

namespace {

int32_t NumberOf(const std::string& text) {
    int value = 0;
    framework::ParseDialogInt(text, value);
    return value;
}

}  // namespace

int32_t DimensionsForm::Width() const {
    return NumberOf(Text(kWidth));
}

int32_t DimensionsForm::Height() const {
    return NumberOf(Text(kHeight));
}

void DimensionsForm::AddDimensions(int row, int32_t width, int32_t height) {
    Add({.id = kWidth,
         .kind = framework::ControlKind::Number,
         .label = "Width:",
         .cell = {row, 0},
         .text = std::to_string(width),
         .minimum = kMinimumWidth,
         .maximum = kMaximumWidth});
    Add({.id = kHeight,
         .kind = framework::ControlKind::Number,
         .label = "Height:",
         .cell = {row + 1, 0},
         .text = std::to_string(height),
         .minimum = kMinimumHeight,
         .maximum = kMaximumHeight});
}

CreateLayoutForm::CreateLayoutForm(int32_t width, int32_t height)
    : DimensionsForm("Create Layout") {
    Add({.id = kName,
         .kind = framework::ControlKind::Edit,
         .label = "Layout name:",
         .cell = {0, 0},
         .max_length = kMaxNameLength});
    AddDimensions(1, width, height);
}

bool CreateLayoutForm::OnOk(framework::UserInterface& ui) {
    return CheckIdentifier(Name(), "Bad Layout Name", ui);
}

EditDimensionsForm::EditDimensionsForm(int32_t width, int32_t height)
    : DimensionsForm("Edit Dimensions") {
    AddDimensions(0, width, height);
}

NewFolderForm::NewFolderForm() : Form("New Folder") {
    Add({.id = kName,
         .kind = framework::ControlKind::Edit,
         .label = "Name of the new folder:",
         .cell = {0, 0}});
}

IdentifyRegionForm::IdentifyRegionForm(const std::string& name) : Form("Identify the region") {
    Add({.id = kName,
         .kind = framework::ControlKind::Edit,
         .label = "Region identifier:",
         .cell = {0, 0},
         .text = name.substr(0, kMaxNameLength),
         .max_length = kMaxNameLength});
}

bool IdentifyRegionForm::OnOk(framework::UserInterface& ui) {
    return CheckIdentifier(Name(), "Bad Region Name", ui);
}
