// The application: start-up in its described order, one project at a time, and the recent
// file rules for project files.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/Application.h"

class ProjectRecovery;

// What the windowing layer supplies at start: the main window. The command-line tool has
// none.
class MainFrameHost {
public:
    virtual ~MainFrameHost() = default;
    // Creates the main window; false ends the start.
    virtual bool CreateMainFrame() = 0;
    // Shows it; answers its status line.
    virtual framework::StatusPane* ShowMainFrame() = 0;
};

class CQuilletApp : public framework::Application {
public:
    static constexpr const char* kRegistryKey = "Tallowmere";
    static constexpr const char* kProjectDocString =
        "\nQlT\nQlT\nQlT Files (*.qlt)\n.qlt\nQlT\nQlT Document";

    CQuilletApp(framework::UserInterface& ui, framework::ProfileStore& profile);
    ~CQuilletApp() override;

    // Keeps a recovery copy of unsaved work in `folder`, and offers at the start the copies
    // that editors which stopped without closing left there. Before InitInstance.
    void EnableRecovery(const std::string& folder);
    // Null unless recovery is enabled.
    ProjectRecovery* Recovery() const { return recovery_.get(); }

    // Runs the start. `arguments` are the command line's words after the program's name;
    // `host` is null without windows. False when the program must end.
    bool InitInstance(const std::vector<std::string>& arguments, MainFrameHost* host);
    // Runs the stop: the settings are stored and the core services shut down.
    void ExitInstance();

    // Asks once, for the project alone, which counts as changed when any page window is.
    bool SaveAllModified() override;
    // Only non-empty names that end in ".qlt" (case-sensitive) enter the list, which is
    // stored at once: a crash must not forget what was opened.
    void AddToRecentFileList(const std::string& path) override;

    // The project to reopen: the first recent entry that ends in ".qlt", looking no further
    // than the first empty entry.
    std::string FindFileToReopen() const;

    void OnEditUndo();
    void OnEditRedo();

private:
    void AddTemplates();

    std::unique_ptr<ProjectRecovery> recovery_;
};

// True when the last 4 characters of `path` are exactly ".qlt".
bool HasProjectExtension(const std::string& path);
