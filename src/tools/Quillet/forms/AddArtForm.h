// The Add Art dialog, titled Edit Art when started on an existing art object: one region of
// a texture page, or a movie, that the art shows.
#pragma once

#include "SingleRegionForm.h"

class AddArtForm : public SingleRegionForm {
public:
    enum Id : int { kTree = 1037, kName = 1034, kPick = 1036, kRegion = 1035, kPage = 1038 };

    // The tree holds the texture pages in folders under "Textures" and the movies in folders
    // under "FMVs"; a movie picked shows its file as the page.
    explicit AddArtForm(const CQuilletDoc& project, const ObjectFormStart& start = {});
};
