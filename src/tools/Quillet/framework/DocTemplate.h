// A kind of document: its resource strings, how to make one, how to give it a window, and
// the list of those that are open.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Document.h"
#include "UserInterface.h"

namespace framework {

class Application;

class DocTemplate {
public:
    // The fields of a document string, separated by '\n'.
    enum class DocString {
        WindowTitle,
        DocName,
        FileNewName,
        FilterName,
        FilterExtension,
        RegistryTypeId,
        RegistryTypeName
    };
    using Factory = std::function<std::unique_ptr<Document>()>;
    using FrameFactory = std::function<void(Document&)>;
    // Asked before a new or opened document joins the list; false stops it.
    using Admission = std::function<bool()>;

    DocTemplate(Application& application, int resource_id, std::string doc_string, Factory factory);

    int ResourceId() const { return resource_id_; }
    std::string GetDocString(DocString field) const;
    FileDialogRequest MakeFileRequest(const std::string& title) const;
    bool MatchesExtension(const std::string& path) const;

    void SetFrameFactory(FrameFactory frame_factory) { frame_factory_ = std::move(frame_factory); }
    void SetAdmission(Admission admission) { admission_ = std::move(admission); }

    // Opens the file at `path` as a new document of this kind, or makes a new empty one when
    // `path` is empty. The file is read before the admission is asked, so a file that does
    // not load never disturbs what is open. Null when anything failed or was refused.
    Document* OpenDocumentFile(const std::string& path);

    std::vector<Document*> GetDocuments() const;
    Document* FindDocumentByPath(const std::string& path) const;
    Application& App() const { return application_; }

private:
    friend class Document;
    Document* Adopt(std::unique_ptr<Document> document);
    void RemoveDocument(Document& document);

    Application& application_;
    int resource_id_;
    std::string doc_string_;
    Factory factory_;
    FrameFactory frame_factory_;
    Admission admission_;
    int untitled_count_ = 0;
    std::vector<std::unique_ptr<Document>> documents_;
};

}  // namespace framework
