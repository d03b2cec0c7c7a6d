#include "CreateGroupForm.h"

#include <algorithm>

#include "model/identifier.h"

CreateGroupForm::CreateGroupForm() : Form("Create group") {
    Add({.id = kName,
         .kind = framework::ControlKind::Edit,
         .label = "Name of the new group:",
         .cell = {0, 0},
         .max_length = kMaxNameLength});
}

std::optional<std::string> AskNewGroupName(framework::UserInterface& ui,
                                           const std::vector<std::string>& taken) {
    CreateGroupForm form;
    while (ui.RunForm(form)) {
        const std::string& name = form.Name();
        if (name.empty() || std::find(taken.begin(), taken.end(), name) == taken.end()) return name;
        ui.MessageBox(CreateGroupForm::kExistsText, "Error", framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
    }
    return std::nullopt;
}
