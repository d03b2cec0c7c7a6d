#include "CliUserInterface.h"

#include <iostream>

framework::Answer CliUserInterface::MessageBox(const std::string& text, const std::string& caption,
                                               framework::MessageIcon icon,
                                               framework::MessageButtons buttons) {
    std::cerr << caption << ": " << text << '\n';
    return ScriptedUserInterface::MessageBox(text, caption, icon, buttons);
}

size_t CliUserInterface::Choose(const framework::ChoiceRequest& request) {
    std::cerr << request.caption << ": " << request.text << '\n';
    return ScriptedUserInterface::Choose(request);
}
