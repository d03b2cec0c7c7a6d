// The document of a layout page window: names an LPAGE of the project by its title.
#pragma once

#include "framework/Document.h"

class CLayoutPageDoc : public framework::Document {
public:
    // Takes the page it shows: its title is the page's name.
    void Initialise(const std::string& page_name) { SetTitle(page_name); }
    // The page's records live in the project; the window's document has nothing to store.
    void Serialize(framework::Archive& /*archive*/) override {}
};
