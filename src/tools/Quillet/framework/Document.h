// A document of the framework: title, path, modified flag, views, and the load, save and
// close paths that the document templates drive.
//
// Failure style: load and save answer false after telling the person in a box; nothing
// throws out of them.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "Archive.h"

namespace Core {
class FileTransaction;
struct FileFailure;
}  // namespace Core

namespace framework {

class Application;
class DocTemplate;
class View;

class Document {
public:
    Document();
    virtual ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    const std::string& GetTitle() const { return title_; }
    void SetTitle(std::string title);
    // The absolute path of the file behind the document; empty while it has none.
    const std::string& GetPathName() const { return path_; }
    // Sets the path and takes its file name as the title; with `add_to_recent` the path is
    // offered to the application's recent file list.
    void SetPathName(const std::string& path, bool add_to_recent = true);

    bool IsModified() const { return modified_; }
    void SetModifiedFlag(bool modified = true);

    DocTemplate* GetDocTemplate() const { return template_; }
    Application& App() const;

    void AddView(View& view);
    void RemoveView(View& view);
    const std::vector<View*>& GetViews() const { return views_; }
    View* GetFirstView() const { return views_.empty() ? nullptr : views_.front(); }
    void UpdateAllViews(View* sender, long hint = 0, void* object = nullptr);

    // Reads or writes the whole document through `archive`. May throw on bad input.
    virtual void Serialize(Archive& archive) = 0;
    // Empties the document before a load.
    virtual void DeleteContents() {}

    virtual bool OnNewDocument();
    // Reads the file at `path` and loads it through Serialize.
    virtual bool OnOpenDocument(const std::string& path);
    // Writes the document through Serialize into the file at `path`, atomically; false
    // (after a box) with the old file kept.
    virtual bool OnSaveDocument(const std::string& path);
    // Closes every view and destroys the document: `this` is gone after the call.
    virtual void OnCloseDocument();

    // Asks "Save changes to ...?" if modified; false when the person cancelled or the save
    // failed.
    virtual bool SaveModified();
    // The view's window is closing: only the last view asks to save.
    virtual bool CanCloseFrame(View& view);

    // Save As when `path` is empty (asks for a name), else saves to `path` and takes it.
    bool DoSave(const std::string& path);
    // Save: to the document's own path, or Save As when it has none.
    bool DoFileSave();

protected:
    // Tells the person that a load failed. `failure` is what Serialize threw; `archive` is
    // positioned where reading stopped.
    virtual void ReportLoadFailure(std::exception_ptr failure, const Archive& archive);
    // Runs Serialize over `archive`; false (after a box) when it threw.
    bool LoadFrom(Archive& archive);
    void ReportFileError(const std::string& what, const std::string& path,
                         const std::string& reason);
    // Serializes the document as the file at `path` into `transaction`; false after a box.
    bool StageDocument(Core::FileTransaction& transaction, const std::string& path);
    // Puts every file staged in `transaction` in place; false after a box naming the file
    // that failed, with every file as it was.
    bool CommitFiles(Core::FileTransaction& transaction);
    // "PATH is read-only", or "Cannot save PATH: REASON".
    void ReportSaveFailure(const Core::FileFailure& failure);

private:
    friend class DocTemplate;
    void NotifyStatusChanged();
    static void NoteChange();

    std::string title_;
    std::string path_;
    bool modified_ = false;
    std::vector<View*> views_;
    DocTemplate* template_ = nullptr;
};

}  // namespace framework
