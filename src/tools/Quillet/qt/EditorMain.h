// The editor from its start to its stop: the application, its main window and the keeping
// of unsaved work. The program's main() and the tests that kill an editor both run it.
#pragma once

#include <string>
#include <vector>

// Runs the editor in the QApplication that exists; `arguments` are the command line's
// words after the program's name. Answers the exit code.
int RunEditor(const std::vector<std::string>& arguments);
