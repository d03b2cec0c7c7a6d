#include "NameCheck.h"

#include "model/identifier.h"

bool CheckIdentifier(const std::string& name, const std::string& caption,
                     framework::UserInterface& ui) {
    if (IsValidIdentifier(name)) return true;
    ui.MessageBox(kInvalidIdentifierText, caption, framework::MessageIcon::Warning,
                  framework::MessageButtons::Ok);
    return false;
}
