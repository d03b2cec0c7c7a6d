// The document of a layout page window: names an LPAGE of the project by its title.
#pragma once

#include "framework/Document.h"

class CLayoutPageDoc : public framework::Document {
public:
    // The page's records live in the project; the window's document has nothing to store.
    void Serialize(framework::Archive& /*archive*/) override {}
};
