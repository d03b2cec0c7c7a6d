// The document of a layout page window: names an LPAGE of the project by its title.
#pragma once

#include <string>

#include "framework/Document.h"

class CLayoutPageDoc : public framework::Document {
public:
    // Takes the page it shows: its title is the page's name.
    void Initialise(const std::string& page_name) { SetTitle(page_name); }
    // Deletes a piece of its page with a snapshot, as the window's own Delete does.
    void DeletePiece(const std::string& piece);
    // The page's records live in the project; the window's document has nothing to store.
    void Serialize(framework::Archive& /*archive*/) override {}
};
