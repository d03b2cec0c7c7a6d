#include "CliUserInterface.h"

#include <iostream>

framework::Answer CliUserInterface::MessageBox(const std::string& text, const std::string& caption,
                                               framework::MessageIcon icon,
                                               framework::MessageButtons buttons) {
    std::cerr << caption << ": " << text << '\n';
    return ScriptedUserInterface::MessageBox(text, caption, icon, buttons);
}
