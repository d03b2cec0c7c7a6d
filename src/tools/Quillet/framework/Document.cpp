#include "Document.h"

#include <algorithm>
#include <filesystem>

#include "Application.h"
#include "DocTemplate.h"
#include "View.h"
#include "core_assert.h"
#include "core_atomic_file.h"
#include "core_file_transaction.h"

namespace framework {

Document::Document() = default;

Document::~Document() {
    for (View* view : views_)
        view->document_ = nullptr;
}

Application& Document::App() const {
    Application* application = Application::Instance();
    CORE_ASSERT_MSG(application != nullptr, "a document exists only inside an application");
    return *application;
}

void Document::SetTitle(std::string title) {
    title_ = std::move(title);
    NotifyStatusChanged();
}

void Document::SetPathName(const std::string& path, bool add_to_recent) {
    path_ = path;
    title_ = std::filesystem::path(path).filename().string();
    if (add_to_recent) App().AddToRecentFileList(path);
    NotifyStatusChanged();
}

void Document::SetModifiedFlag(bool modified) {
    // Every change sets the flag, set or not: each one counts.
    NoteChange();
    if (modified_ == modified) return;
    modified_ = modified;
    NotifyStatusChanged();
}

void Document::NoteChange() {
    if (Application* application = Application::Instance()) application->NoteChange();
}

void Document::NotifyStatusChanged() {
    for (View* view : views_)
        view->OnDocumentStatusChanged();
}

void Document::AddView(View& view) {
    CORE_ASSERT(view.document_ == nullptr);
    view.document_ = this;
    views_.push_back(&view);
}

void Document::RemoveView(View& view) {
    std::erase(views_, &view);
    view.document_ = nullptr;
}

void Document::UpdateAllViews(View* sender, long hint, void* object) {
    // A view may open a window of its own while it rebuilds: walk a copy.
    const std::vector<View*> views = views_;
    for (View* view : views) {
        if (view != sender) view->OnUpdate(sender, hint, object);
    }
    NoteChange();
}

bool Document::OnNewDocument() {
    DeleteContents();
    SetModifiedFlag(false);
    return true;
}

bool Document::OnOpenDocument(const std::string& path) {
    std::string bytes;
    std::string reason;
    if (!Core::read_whole_file(path, bytes, reason)) {
        ReportFileError("Cannot open", path, reason);
        return false;
    }
    DeleteContents();
    Archive archive = Archive::ForLoading(bytes, path);
    const bool loaded = LoadFrom(archive);
    SetModifiedFlag(false);
    return loaded;
}

bool Document::LoadFrom(Archive& archive) {
    try {
        Serialize(archive);
        return true;
    } catch (...) {
        ReportLoadFailure(std::current_exception(), archive);
        return false;
    }
}

void Document::ReportLoadFailure(std::exception_ptr /*failure*/, const Archive& archive) {
    App().UI().MessageBox(
        "Cannot read " + archive.GetFilePath() + " at line " + std::to_string(archive.LineNumber()),
        "Error", MessageIcon::Stop, MessageButtons::Ok);
}

void Document::ReportFileError(const std::string& what, const std::string& path,
                               const std::string& reason) {
    App().UI().MessageBox(what + " " + path + ": " + reason, "Error", MessageIcon::Stop,
                          MessageButtons::Ok);
}

bool Document::OnSaveDocument(const std::string& path) {
    Core::FileTransaction transaction;
    if (!StageDocument(transaction, path) || !CommitFiles(transaction)) return false;
    SetModifiedFlag(false);
    return true;
}

bool Document::StageDocument(Core::FileTransaction& transaction, const std::string& path) {
    Archive archive = Archive::ForStoring(path);
    Serialize(archive);
    if (transaction.stage(path, archive.Bytes())) return true;
    ReportSaveFailure(transaction.failure());
    return false;
}

bool Document::CommitFiles(Core::FileTransaction& transaction) {
    if (transaction.commit()) return true;
    ReportSaveFailure(transaction.failure());
    return false;
}

void Document::ReportSaveFailure(const Core::FileFailure& failure) {
    const std::string text = failure.read_only ? failure.path + " is read-only"
                             : failure.path.empty()
                                 ? "Cannot save: " + failure.reason
                                 : "Cannot save " + failure.path + ": " + failure.reason;
    App().UI().MessageBox(text, "Error", MessageIcon::Stop, MessageButtons::Ok);
}

void Document::OnCloseDocument() {
    const std::vector<View*> views = views_;
    for (View* view : views) {
        RemoveView(*view);
        view->CloseFrame();
    }
    Application& application = App();
    application.ForgetDocument(*this);
    if (template_ != nullptr) template_->RemoveDocument(*this);  // `this` is gone
    application.NoteChange();
}

bool Document::SaveModified() {
    if (!IsModified()) return true;
    const Answer answer = App().UI().MessageBox("Save changes to " + title_ + "?", App().Name(),
                                                MessageIcon::Warning, MessageButtons::YesNoCancel);
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::No) return true;
    return DoFileSave();
}

bool Document::CanCloseFrame(View& view) {
    const bool last_view = std::all_of(views_.begin(), views_.end(),
                                       [&view](const View* other) { return other == &view; });
    return !last_view || SaveModified();
}

bool Document::DoSave(const std::string& path) {
    std::string target = path;
    if (target.empty()) {
        FileDialogRequest request;
        if (template_ != nullptr) request = template_->MakeFileRequest("Save As");
        request.initial_path = path_.empty() ? title_ : path_;
        const std::optional<std::string> chosen = App().UI().AskSaveFileName(request);
        if (!chosen) return false;
        target = *chosen;
    }
    target = std::filesystem::absolute(target).string();
    if (!OnSaveDocument(target)) return false;
    SetPathName(target);
    return true;
}

bool Document::DoFileSave() {
    return DoSave(path_);
}

}  // namespace framework
