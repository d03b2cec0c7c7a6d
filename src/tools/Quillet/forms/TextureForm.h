// The Create Texture dialog, also shown as Edit Texture when a page is resized: a size from
// five squares or the person's own, a bit depth and an alpha flag. The settings of the
// last OK are the next defaults.
#pragma once

#include <array>
#include <string>

#include "framework/Form.h"
#include "texture/TextureDialogData.h"

class TextureForm : public framework::Form {
public:
    struct SizeButton {
        uint32_t control_id;
        const char* text;
        uint16_t side;  // 0 for "User"
    };
    static const std::array<SizeButton, 6>& SizeButtons();

    // Starts from the settings of the last OK, titled "Create Texture".
    TextureForm();

    const std::string& Title() const { return title_; }
    // Shows the page's present size: the matching square, else "User"; titled "Edit
    // Texture".
    void SetCurrentSize(uint16_t width, uint16_t height);
    // Picks a size button; a square sets the size, "User" keeps the size as typed.
    void SelectSize(uint32_t control_id);

    TextureDialogData data;

    static constexpr const char* kEmptySizeText =
        "Please give the texture a width and a height of at least 1 pixel.";

    // Refuses a width or height of 0; keeps the settings for the next use.
    bool OnOk(framework::UserInterface& ui) override;

private:
    static TextureDialogData& Remembered();
    std::string title_ = "Create Texture";
};
