// The Create group dialog: one name, checked by whoever asked for it (an edit group of the
// layout page view, or a group id of the Edit Piece dialog).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "framework/Form.h"
#include "framework/UserInterface.h"

class CreateGroupForm : public framework::Form {
public:
    enum Id : int { kName = 1049 };

    static constexpr const char* kExistsText = "This group already exists";

    CreateGroupForm();

    const std::string& Name() const { return Text(kName); }
};

// Runs the dialog until the name given is not one of `taken`, telling the person of each
// that is ("This group already exists", captioned "Error") and showing the dialog again
// with the name as typed. An empty name is never taken. Nothing when the person cancelled.
std::optional<std::string> AskNewGroupName(framework::UserInterface& ui,
                                           const std::vector<std::string>& taken);
