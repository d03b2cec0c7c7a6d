// The application object: the document templates with their open documents, the active
// document, the recent file list and the status line. One exists at a time; documents reach
// it through Application::Instance().
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "DocTemplate.h"
#include "ProfileStore.h"
#include "RecentFileList.h"
#include "UserInterface.h"

namespace framework {

// Where the status line's message goes.
class StatusPane {
public:
    virtual ~StatusPane() = default;
    virtual void SetText(const std::string& text) = 0;
};

// Told whenever a document changed, its modified flag was set or cleared, or it closed: what
// the recovery copy follows.
class ChangeListener {
public:
    virtual ~ChangeListener() = default;
    virtual void OnDocumentsChanged() = 0;
};

class Application {
public:
    static constexpr size_t kRecentFileCount = 4;

    Application(std::string name, UserInterface& ui, ProfileStore& profile);
    virtual ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // The one application, or null when there is none.
    static Application* Instance();

    const std::string& Name() const { return name_; }
    UserInterface& UI() const { return ui_; }
    ProfileStore& Profile() const { return profile_; }

    DocTemplate& AddDocTemplate(std::unique_ptr<DocTemplate> doc_template);
    const std::vector<std::unique_ptr<DocTemplate>>& Templates() const { return templates_; }

    // Opens `path` (made absolute first). A document already open on that path is brought
    // to the front and returned instead. Null when nothing opened.
    Document* OpenDocumentFile(const std::string& path);
    Document* OnFileNew();
    // Asks for a file, then opens it.
    Document* OnFileOpen();
    // Opens entry `index` of the recent file list; an entry that fails to open leaves it.
    Document* OpenRecentFile(size_t index);

    // Asks every modified document to save; false when the person cancelled.
    virtual bool SaveAllModified();
    // Closes every document without asking.
    void CloseAllDocuments();

    virtual void AddToRecentFileList(const std::string& path);
    const RecentFileList& RecentFiles() const { return recent_files_; }
    void LoadStdProfileSettings();
    void SaveStdProfileSettings();

    Document* GetActiveDocument() const { return active_document_; }
    void SetActiveDocument(Document* document) { active_document_ = document; }
    // A document is closing: it stops being active.
    void ForgetDocument(Document& document);

    // Documents call this after every change; the count only grows.
    void NoteChange();
    uint64_t ChangeCount() const { return change_count_; }
    // Listeners are told in the order they were added; each removes itself before it goes.
    void AddChangeListener(ChangeListener& listener);
    void RemoveChangeListener(ChangeListener& listener);

    // The status line; null until the main window has one.
    StatusPane* GetStatusPane() const { return status_pane_; }
    void SetStatusPane(StatusPane* pane) { status_pane_ = pane; }

private:
    std::string name_;
    UserInterface& ui_;
    ProfileStore& profile_;
    std::vector<std::unique_ptr<DocTemplate>> templates_;
    RecentFileList recent_files_{kRecentFileCount};
    Document* active_document_ = nullptr;
    StatusPane* status_pane_ = nullptr;
    uint64_t change_count_ = 0;
    std::vector<ChangeListener*> change_listeners_;
};

// The person at the desk, through the one application's interface. There must be an
// application.
UserInterface& AppUI();

}  // namespace framework
