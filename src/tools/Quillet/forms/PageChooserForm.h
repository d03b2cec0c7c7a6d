// The "All texture pages" dialog: one item for each texture page of the project; the item
// the person selected is the answer.
#pragma once

#include <string>
#include <vector>

#include "framework/Form.h"

class PageChooserForm : public framework::Form {
public:
    enum Id : int { kPages = 1000 };

    explicit PageChooserForm(const std::vector<std::string>& pages);

    // The page selected; empty when the person selected none.
    std::string Chosen() const;

private:
    // A double click on a page is OK.
    bool OnPressed(int id, framework::UserInterface& ui) override;
};
