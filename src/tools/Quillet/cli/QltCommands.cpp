#include "QltCommands.h"

#include <iostream>

#include "CliUserInterface.h"
#include "framework/ProfileStore.h"
#include "model/QuilletDoc.h"
#include "shell/QuilletApp.h"

int RunQltRoundtrip(const std::vector<std::string>& arguments) {
    if (arguments.size() != 2) {
        std::cerr << "usage: quillet-cli qlt roundtrip IN OUT\n";
        return kExitUsage;
    }
    CliUserInterface ui;
    framework::MemoryProfileStore profile;
    CQuilletApp app(ui, profile);
    if (!app.InitInstance({}, nullptr)) return kExitFailure;
    framework::Document* project = app.OpenDocumentFile(arguments[0]);
    if (project == nullptr) return kExitUnreadable;
    return project->DoSave(arguments[1]) ? kExitOk : kExitWrite;
}
