#include "TextureForm.h"

#include "framework/UserInterface.h"

const std::array<TextureForm::SizeButton, 6>& TextureForm::SizeButtons() {
    static const std::array<SizeButton, 6> buttons{{{1004, "16x16", 16},
                                                    {1005, "32x32", 32},
                                                    {1006, "64x64", 64},
                                                    {1007, "128x128", 128},
                                                    {TextureDialogData::kSquare256, "256x256", 256},
                                                    {TextureDialogData::kUserSize, "User", 0}}};
    return buttons;
}

TextureDialogData& TextureForm::Remembered() {
    static TextureDialogData remembered;
    return remembered;
}

TextureForm::TextureForm() : data(Remembered()) {}

void TextureForm::SetCurrentSize(uint16_t width, uint16_t height) {
    data.width = width;
    data.height = height;
    data.size_choice = TextureDialogData::kUserSize;
    for (const SizeButton& button : SizeButtons()) {
        if (button.side != 0 && button.side == width && button.side == height)
            data.size_choice = button.control_id;
    }
    Remembered().width = width;
    Remembered().height = height;
    Remembered().size_choice = data.size_choice;
    title_ = "Edit Texture";
}

void TextureForm::SelectSize(uint32_t control_id) {
    data.size_choice = control_id;
    for (const SizeButton& button : SizeButtons()) {
        if (button.control_id == control_id && button.side != 0)
            data.width = data.height = button.side;
    }
}

bool TextureForm::OnOk(framework::UserInterface& ui) {
    // A page without pixels would be written as a file that no picture reader takes back,
    // and the regions moved onto it would be lost with it.
    if (data.width == 0 || data.height == 0) {
        ui.MessageBox(kEmptySizeText, "Bad Texture Size", framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
        return false;
    }
    Remembered() = data;
    return true;
}
