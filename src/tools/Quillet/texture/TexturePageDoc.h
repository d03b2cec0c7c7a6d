// The document of a texture page window: names a TPAGE of the project by its path.
#pragma once

#include "framework/Document.h"

class CTexturePageDoc : public framework::Document {
public:
    // The page's records live in the project; the window's document has nothing to store.
    void Serialize(framework::Archive& /*archive*/) override {}
};
