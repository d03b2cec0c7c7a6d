// The "All texture pages" dialog: one item for each texture page of the project; the item
// last selected is the answer.
#pragma once

#include <string>
#include <vector>

#include "framework/Form.h"

class PageChooserForm : public framework::Form {
public:
    static constexpr const char* kTitle = "All texture pages";

    std::vector<std::string> pages;  // the items, in the project's order
    std::string chosen;              // the text of the item selected; empty when none was
};
