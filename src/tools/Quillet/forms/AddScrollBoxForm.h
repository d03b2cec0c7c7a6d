// The Add Scroll Box dialog, titled Edit Scroll Box when started on an existing scroll box:
// one region of a texture page.
#pragma once

#include "SingleRegionForm.h"

class AddScrollBoxForm : public SingleRegionForm {
public:
    enum Id : int { kTree = 1067, kName = 1068, kPick = 1070, kRegion = 1069, kPage = 1071 };

    // The tree holds the texture pages in folders under "Textures".
    explicit AddScrollBoxForm(const CQuilletDoc& project, const ObjectFormStart& start = {});
};
