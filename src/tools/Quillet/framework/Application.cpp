#include "Application.h"

#include <algorithm>
#include <filesystem>

#include "View.h"
#include "core_assert.h"

namespace framework {
namespace {
Application* the_application = nullptr;
}

Application::Application(std::string name, UserInterface& ui, ProfileStore& profile)
    : name_(std::move(name)), ui_(ui), profile_(profile) {
    CORE_ASSERT_MSG(the_application == nullptr, "only one application may exist");
    the_application = this;
}

Application::~Application() {
    templates_.clear();
    the_application = nullptr;
}

Application* Application::Instance() {
    return the_application;
}

UserInterface& AppUI() {
    return Application::Instance()->UI();
}

DocTemplate& Application::AddDocTemplate(std::unique_ptr<DocTemplate> doc_template) {
    templates_.push_back(std::move(doc_template));
    return *templates_.back();
}

Document* Application::OpenDocumentFile(const std::string& path) {
    const std::string absolute = std::filesystem::absolute(path).string();
    for (const auto& doc_template : templates_) {
        if (Document* open = doc_template->FindDocumentByPath(absolute)) {
            if (View* view = open->GetFirstView()) view->ActivateFrame();
            SetActiveDocument(open);
            return open;
        }
    }
    if (templates_.empty()) return nullptr;
    DocTemplate* chosen = templates_.front().get();
    for (const auto& doc_template : templates_) {
        if (doc_template->MatchesExtension(absolute)) {
            chosen = doc_template.get();
            break;
        }
    }
    return chosen->OpenDocumentFile(absolute);
}

Document* Application::OnFileNew() {
    return templates_.empty() ? nullptr : templates_.front()->OpenDocumentFile("");
}

Document* Application::OnFileOpen() {
    if (templates_.empty()) return nullptr;
    const std::optional<std::string> path =
        ui_.AskOpenFileName(templates_.front()->MakeFileRequest("Open"));
    return path ? OpenDocumentFile(*path) : nullptr;
}

Document* Application::OpenRecentFile(size_t index) {
    if (index >= recent_files_.Entries().size()) return nullptr;
    Document* document = OpenDocumentFile(recent_files_.Entries()[index]);
    if (document == nullptr) recent_files_.Remove(index);
    return document;
}

bool Application::SaveAllModified() {
    for (const auto& doc_template : templates_) {
        for (Document* document : doc_template->GetDocuments()) {
            if (!document->SaveModified()) return false;
        }
    }
    return true;
}

void Application::CloseAllDocuments() {
    for (const auto& doc_template : templates_) {
        for (Document* document : doc_template->GetDocuments()) {
            // Closing one document may close others (a project closes its pages).
            const std::vector<Document*> still_open = doc_template->GetDocuments();
            if (std::find(still_open.begin(), still_open.end(), document) != still_open.end())
                document->OnCloseDocument();
        }
    }
}

void Application::AddToRecentFileList(const std::string& path) {
    recent_files_.Add(path);
}

void Application::LoadStdProfileSettings() {
    recent_files_.Load(profile_);
}

void Application::SaveStdProfileSettings() {
    recent_files_.Save(profile_);
    profile_.Flush();
}

void Application::NoteChange() {
    ++change_count_;
    // A listener may remove itself while it is told.
    const std::vector<ChangeListener*> listeners = change_listeners_;
    for (ChangeListener* listener : listeners)
        listener->OnDocumentsChanged();
}

void Application::ForgetDocument(Document& document) {
    if (active_document_ == &document) active_document_ = nullptr;
}

void Application::AddChangeListener(ChangeListener& listener) {
    change_listeners_.push_back(&listener);
}

void Application::RemoveChangeListener(ChangeListener& listener) {
    std::erase(change_listeners_, &listener);
}

}  // namespace framework
