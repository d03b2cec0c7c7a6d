// The editor without windows, as the commands that work on a project run it: boxes go to
// standard error, settings stay in memory, and a project opens exactly as File Open opens it.
#pragma once

#include <iostream>
#include <string>

#include "CliUserInterface.h"
#include "core_file_lock.h"
#include "framework/ProfileStore.h"
#include "model/QuilletDoc.h"
#include "model/SaveGuard.h"
#include "shell/QuilletApp.h"

class HeadlessEditor {
public:
    // The project at `path`; null when the editor cannot start or the file does not read
    // (the reason is on standard error).
    CQuilletDoc* Open(const std::string& path) {
        if (!app_.InitInstance({}, nullptr)) return nullptr;
        return dynamic_cast<CQuilletDoc*>(app_.OpenDocumentFile(path));
    }

    // For a command that changes the project: holds it against other writers from before
    // the load until the editor goes, after the save. False (told on standard error) when
    // another process holds it all through the wait. Where no lock file can be made, the
    // command goes on without one and its save says why it cannot write there.
    bool HoldForChange(const std::string& path) {
        lock_ = Core::FileLock::acquire(path, kOtherWriterWait);
        if (lock_.state() != Core::FileLock::State::busy) return true;
        std::cerr << BusyMessage(path) << '\n';
        return false;
    }

private:
    Core::FileLock lock_;  // first, so that it is let go last, after the project has closed
    CliUserInterface ui_;
    framework::MemoryProfileStore profile_;
    CQuilletApp app_{ui_, profile_};
};
