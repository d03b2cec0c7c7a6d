#include "PageChooserForm.h"

PageChooserForm::PageChooserForm(const std::vector<std::string>& pages)
    : Form("All texture pages") {
    framework::Control& tree =
        Add({.id = kPages, .kind = framework::ControlKind::Tree, .cell = {0, 0}});
    for (const std::string& page : pages)
        framework::AddTreeItem(tree.items, page);
}

std::string PageChooserForm::Chosen() const {
    const std::vector<std::string>& pick = At(kPages).pick;
    return pick.size() == 1 ? pick.front() : std::string();
}

bool PageChooserForm::OnPressed(int id, framework::UserInterface& /*ui*/) {
    return id == kPages && !Chosen().empty();
}
