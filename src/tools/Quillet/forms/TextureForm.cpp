#include "TextureForm.h"

#include <string>

namespace {

constexpr int kSizeGroup = 1;
constexpr int kDepthGroup = 2;
// Pages are written as TGA files, whose sides are 16-bit numbers.
constexpr int kLargestSide = 65535;

struct SizeButton {
    int id;
    const char* text;
    uint16_t side;  // 0 for "User"
};

constexpr SizeButton kSizeButtons[] = {
    {TextureForm::kSize16, "16x16", 16},     {TextureForm::kSize32, "32x32", 32},
    {TextureForm::kSize64, "64x64", 64},     {TextureForm::kSize128, "128x128", 128},
    {TextureForm::kSize256, "256x256", 256}, {TextureForm::kUserSize, "User", 0},
};

uint16_t SideOf(int id) {
    for (const SizeButton& button : kSizeButtons) {
        if (button.id == id) return button.side;
    }
    return 0;
}

}  // namespace

TextureDialogData& TextureForm::Remembered() {
    static TextureDialogData remembered;
    return remembered;
}

TextureForm::TextureForm() : Form("Create Texture"), data(Remembered()) {
    int row = 0;
    for (const SizeButton& button : kSizeButtons) {
        Add({.id = button.id,
             .kind = framework::ControlKind::Radio,
             .label = button.text,
             .cell = {row++, 0, 1, 2},
             .group = kSizeGroup});
    }
    const auto number = [&](int id, const char* label) {
        Add({.id = id,
             .kind = framework::ControlKind::Number,
             .label = label,
             .cell = {row++, 0},
             .minimum = 1,
             .maximum = kLargestSide});
    };
    number(kWidth, "Width:");
    number(kHeight, "Height:");
    Add({.id = kDepth16,
         .kind = framework::ControlKind::Radio,
         .label = "16",
         .cell = {0, 2},
         .checked = data.bit_depth == 16,
         .group = kDepthGroup});
    Add({.id = kDepth32,
         .kind = framework::ControlKind::Radio,
         .label = "32",
         .cell = {1, 2},
         .checked = data.bit_depth != 16,
         .group = kDepthGroup});
    Add({.id = kAlpha,
         .kind = framework::ControlKind::Check,
         .label = "Alpha",
         .cell = {2, 2},
         .checked = data.alpha});
    ShowSize(data.size_choice, data.width, data.height);
}

void TextureForm::ShowSize(uint32_t choice, uint16_t width, uint16_t height) {
    CheckRadio(static_cast<int>(choice));
    Mutable(kWidth).text = std::to_string(width);
    Mutable(kHeight).text = std::to_string(height);
    const bool user = choice == TextureDialogData::kUserSize;
    Mutable(kWidth).enabled = Mutable(kHeight).enabled = user;
}

void TextureForm::SetCurrentSize(uint16_t width, uint16_t height) {
    uint32_t choice = TextureDialogData::kUserSize;
    for (const SizeButton& button : kSizeButtons) {
        if (button.side != 0 && button.side == width && button.side == height)
            choice = static_cast<uint32_t>(button.id);
    }
    ShowSize(choice, width, height);
    SetCaption("Edit Texture");
}

void TextureForm::OnChanged(int id, framework::UserInterface& /*ui*/) {
    if (At(id).kind != framework::ControlKind::Radio || At(id).group != kSizeGroup) return;
    // A square shows its size; "User" starts from the size shown, for the person to change.
    const uint16_t side = SideOf(id);
    Mutable(kWidth).enabled = Mutable(kHeight).enabled = side == 0;
    if (side != 0) Mutable(kWidth).text = Mutable(kHeight).text = std::to_string(side);
}

bool TextureForm::OnOk(framework::UserInterface& /*ui*/) {
    int width = 0;
    int height = 0;
    framework::ParseDialogInt(Text(kWidth), width);
    framework::ParseDialogInt(Text(kHeight), height);
    data.size_choice = static_cast<uint32_t>(CheckedRadio(kSizeGroup));
    data.width = static_cast<uint16_t>(width);
    data.height = static_cast<uint16_t>(height);
    data.bit_depth = CheckedRadio(kDepthGroup) == kDepth16 ? 16 : 32;
    data.alpha = At(kAlpha).checked;
    Remembered() = data;
    return true;
}
