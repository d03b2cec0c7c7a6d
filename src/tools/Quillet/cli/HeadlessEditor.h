// The editor without windows, as the commands that work on a project run it: boxes go to
// standard error, settings stay in memory, and a project opens exactly as File Open opens it.
#pragma once

#include <string>

#include "CliUserInterface.h"
#include "framework/ProfileStore.h"
#include "model/QuilletDoc.h"
#include "shell/QuilletApp.h"

class HeadlessEditor {
public:
    // The project at `path`; null when the editor cannot start or the file does not read
    // (the reason is on standard error).
    CQuilletDoc* Open(const std::string& path) {
        if (!app_.InitInstance({}, nullptr)) return nullptr;
        return dynamic_cast<CQuilletDoc*>(app_.OpenDocumentFile(path));
    }

private:
    CliUserInterface ui_;
    framework::MemoryProfileStore profile_;
    CQuilletApp app_{ui_, profile_};
};
