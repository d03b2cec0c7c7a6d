// The person of the command-line tool: every box goes to standard error as
// "CAPTION: TEXT" and gets its default answer; file pickers are cancelled.
#pragma once

#include "framework/ScriptedUserInterface.h"

class CliUserInterface : public framework::ScriptedUserInterface {
public:
    framework::Answer MessageBox(const std::string& text, const std::string& caption,
                                 framework::MessageIcon icon,
                                 framework::MessageButtons buttons) override;
    size_t Choose(const framework::ChoiceRequest& request) override;
};
