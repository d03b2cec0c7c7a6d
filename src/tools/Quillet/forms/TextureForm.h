// The Create Texture dialog, also shown as Edit Texture when a page is resized: a size from
// five squares or the person's own, a bit depth and an alpha flag. The settings of the
// last OK are the next defaults.
#pragma once

#include <cstdint>

#include "framework/Form.h"
#include "texture/TextureDialogData.h"

class TextureForm : public framework::Form {
public:
    enum Id : int {
        kSize16 = 1004,
        kSize32 = 1005,
        kSize64 = 1006,
        kSize128 = 1007,
        kSize256 = static_cast<int>(TextureDialogData::kSquare256),
        kUserSize = static_cast<int>(TextureDialogData::kUserSize),
        kWidth = 1044,
        kHeight = 1045,
        kDepth16 = 1009,
        kDepth32 = 1010,
        kAlpha = 1011,
    };

    // Starts from the settings of the last OK, titled "Create Texture".
    TextureForm();

    // Shows the page's present size: the matching square, else "User"; titled "Edit
    // Texture".
    void SetCurrentSize(uint16_t width, uint16_t height);

    // What the last OK chose.
    TextureDialogData data;

private:
    static TextureDialogData& Remembered();
    void ShowSize(uint32_t choice, uint16_t width, uint16_t height);
    void OnChanged(int id, framework::UserInterface& ui) override;
    // Takes the controls into `data` and keeps them for the next use.
    bool OnOk(framework::UserInterface& ui) override;
};
