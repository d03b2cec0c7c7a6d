#include "ObjectForm.h"

#include "NameCheck.h"
#include "framework/UserInterface.h"
#include "model/QuilletDoc.h"
#include "model/identifier.h"

ObjectForm::ObjectForm(const CQuilletDoc& project, const ObjectFormStart& start, NameField name,
                       const char* add_caption, const char* edit_caption)
    : Form(start.existing != nullptr ? edit_caption : add_caption),
      project_(&project),
      name_(name),
      start_name_(!start.fixed_name.empty()   ? start.fixed_name
                  : start.existing != nullptr ? start.existing->Name()
                                              : std::string()),
      editing_(start.existing != nullptr),
      name_fixed_(start.existing != nullptr || !start.fixed_name.empty()) {}

void ObjectForm::AddNameField(framework::Cell cell) {
    Add({.id = name_.id,
         .kind = name_fixed_ ? framework::ControlKind::ReadOnly : framework::ControlKind::Edit,
         .label = name_.label,
         .cell = cell,
         .text = start_name_,
         .max_length = name_fixed_ ? 0 : kMaxNameLength});
}

void ObjectForm::ProposeName(const std::string& text) {
    if (name_fixed_ || !Name().empty()) return;
    Mutable(name_.id).text = text.substr(0, kMaxNameLength);
}

bool ObjectForm::CheckName(framework::UserInterface& ui) const {
    if (!CheckIdentifier(Name(), name_.bad_caption, ui)) return false;
    // The parts of a slider live inside it, and an edited object keeps its name.
    if (!name_fixed_ && project_->ObjectExists(Name())) {
        ui.MessageBox(kNameTakenText, "quillet", framework::MessageIcon::Warning,
                      framework::MessageButtons::Ok);
        return false;
    }
    return true;
}
