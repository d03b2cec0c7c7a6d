// The logic of a modal dialog: its fields and what OK checks. A form knows nothing of
// windows; the Qt layer binds each kind of form to a dialog, and tests fill the fields
// themselves.
#pragma once

namespace framework {

class UserInterface;

class Form {
public:
    virtual ~Form() = default;
    // OK was pressed: true closes the dialog; false keeps it open after the person was told
    // why in a box.
    virtual bool OnOk(UserInterface& /*ui*/) { return true; }
};

}  // namespace framework
