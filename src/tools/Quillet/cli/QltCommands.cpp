#include "QltCommands.h"

#include <iostream>

#include "HeadlessEditor.h"

int RunQltRoundtrip(const std::vector<std::string>& arguments) {
    if (arguments.size() != 2) {
        std::cerr << "usage: quillet-cli qlt roundtrip IN OUT\n";
        return kExitUsage;
    }
    // An empty name would ask for one, and there is nobody to ask.
    if (arguments[1].empty()) {
        std::cerr << "Error: Cannot save: the file has no name\n";
        return kExitWrite;
    }
    HeadlessEditor editor;
    CQuilletDoc* project = editor.Open(arguments[0]);
    if (project == nullptr) return kExitUnreadable;
    return project->DoSave(arguments[1]) ? kExitOk : kExitWrite;
}
