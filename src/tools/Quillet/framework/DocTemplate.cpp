#include "DocTemplate.h"

#include <algorithm>

#include "Application.h"

namespace framework {

DocTemplate::DocTemplate(Application& application, int resource_id, std::string doc_string,
                         Factory factory)
    : application_(application),
      resource_id_(resource_id),
      doc_string_(std::move(doc_string)),
      factory_(std::move(factory)) {}

std::string DocTemplate::GetDocString(DocString field) const {
    size_t start = 0;
    for (int index = 0; index < static_cast<int>(field); ++index) {
        start = doc_string_.find('\n', start);
        if (start == std::string::npos) return {};
        ++start;
    }
    return doc_string_.substr(start, doc_string_.find('\n', start) - start);
}

FileDialogRequest DocTemplate::MakeFileRequest(const std::string& title) const {
    FileDialogRequest request;
    request.title = title;
    request.filter = GetDocString(DocString::FilterName);
    request.default_extension = GetDocString(DocString::FilterExtension);
    return request;
}

bool DocTemplate::MatchesExtension(const std::string& path) const {
    const std::string extension = GetDocString(DocString::FilterExtension);
    return !extension.empty() && path.size() >= extension.size() &&
           path.compare(path.size() - extension.size(), extension.size(), extension) == 0;
}

Document* DocTemplate::OpenDocumentFile(const std::string& path) {
    if (path.empty()) {
        if (admission_ && !admission_()) return nullptr;
        std::unique_ptr<Document> document = factory_();
        if (!document->OnNewDocument()) return nullptr;
        document->SetTitle(GetDocString(DocString::DocName) + std::to_string(++untitled_count_));
        return Adopt(std::move(document));
    }
    std::unique_ptr<Document> document = factory_();
    if (!document->OnOpenDocument(path)) return nullptr;
    if (admission_ && !admission_()) return nullptr;
    document->SetPathName(path);
    return Adopt(std::move(document));
}

Document* DocTemplate::Adopt(std::unique_ptr<Document> document) {
    Document* adopted = document.get();
    adopted->template_ = this;
    documents_.push_back(std::move(document));
    if (frame_factory_) frame_factory_(*adopted);
    application_.SetActiveDocument(adopted);
    return adopted;
}

void DocTemplate::RemoveDocument(Document& document) {
    std::erase_if(documents_, [&document](const std::unique_ptr<Document>& held) {
        return held.get() == &document;
    });
}

std::vector<Document*> DocTemplate::GetDocuments() const {
    std::vector<Document*> documents;
    for (const auto& document : documents_)
        documents.push_back(document.get());
    return documents;
}

Document* DocTemplate::FindDocumentByPath(const std::string& path) const {
    for (const auto& document : documents_) {
        if (!document->GetPathName().empty() && document->GetPathName() == path)
            return document.get();
    }
    return nullptr;
}

}  // namespace framework
