// The checks that every dialog makes of a typed name, with the box that tells the person
// why a name was refused.
#pragma once

#include <string>

#include "framework/UserInterface.h"

// True when `name` is a valid identifier (model/identifier.h). Otherwise shows the
// identifier message with a warning icon, captioned `caption`, and answers false.
bool CheckIdentifier(const std::string& name, const std::string& caption,
                     framework::UserInterface& ui);
