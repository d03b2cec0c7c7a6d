// The recovery copy of the open project. While the project has changes nobody saved, a copy
// of them (the project's text and the pictures of its changed pages) is kept in a file of
// this editor's own, written a short while after each change on a thread of its own; when
// nothing is left unsaved the file goes. An editor that stops without closing (a crash, a
// kill) leaves its copy behind, and the next editor to start offers it: Recover opens it as
// a project with changes, Discard removes it, Later keeps it for another start.
//
// Each editor holds the lock of its own copy for as long as it runs, so a copy whose lock
// is free belongs to an editor that is gone.
//
// Failure style: a copy that cannot be written is told on the status line and written
// again at the next change; a copy that cannot be read is noted in "system.log" and left.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "core_file_lock.h"
#include "model/RecoveryWriter.h"

namespace framework {
class Application;
}
class CQuilletDoc;

class ProjectRecovery {
public:
    using Clock = std::chrono::steady_clock;
    // Writes come at most this often, so a killed editor loses at most this much work.
    static constexpr std::chrono::milliseconds kInterval{2000};
    // The wait after a change when the last write is long past: a burst of changes (a drag,
    // a cascade) makes one write.
    static constexpr std::chrono::milliseconds kSettle{250};
    static constexpr const char* kCaption = "Recover Unsaved Changes";
    static constexpr const char* kExtension = ".qrc";

    // Keeps this editor's copy in `folder`, made (readable by the user alone) when missing.
    ProjectRecovery(framework::Application& app, const std::string& folder);
    // Waits for the copy under way.
    ~ProjectRecovery();
    ProjectRecovery(const ProjectRecovery&) = delete;
    ProjectRecovery& operator=(const ProjectRecovery&) = delete;

    // "$XDG_STATE_HOME/quillet/recovery", else "$HOME/.local/state/quillet/recovery".
    static std::string DefaultFolder();

    // The start: asks about each copy left by an editor that is gone, newest first, until one
    // is recovered. True when one was: the project is open with its changes, and the copy is
    // this editor's own from now on.
    bool OfferRecovery();

    // How long to wait after a change before Update.
    std::chrono::milliseconds DelayBeforeUpdate(Clock::time_point now) const;
    // Writes the copy when anything changed since the last write, or removes it when nothing
    // is left unsaved.
    void Update();
    // A clean close: the last Update, then the wait for the disk.
    void Finish();

    const std::string& OwnFile() const { return own_file_; }
    // Returns once the copy is on disk as the last Update left it.
    void WaitForDisk() { writer_.Wait(); }

private:
    enum class Choice : size_t { Recover, Discard, Later };

    Choice Ask(const std::string& file, const std::string& project) const;
    // Opens the copy's project with its changes; false when its text does not read.
    bool Restore(RecoveryCopy&& copy);
    // The copies in the folder other than this editor's, newest first.
    std::vector<std::string> LeftCopies() const;
    // Asks about the copy in `file` and carries out the answer; true when it was recovered.
    bool Recover(const std::string& file);

    framework::Application& app_;
    std::string folder_;
    std::string own_file_;
    Core::FileLock own_lock_;
    uint64_t written_change_ = 0;
    bool copy_on_disk_ = false;
    Clock::time_point last_update_{};
    RecoveryWriter writer_;
};

// What a copy of the project holds now: its text, and the pictures of every page with changes.
RecoveryCopy CaptureProject(CQuilletDoc& project);
// Whether the project or any of its windows has changes nobody saved.
bool HasUnsavedWork(const CQuilletDoc& project);
