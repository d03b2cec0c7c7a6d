#include "QuilletApp.h"

#include <cstdlib>
#include <filesystem>

#include "ProjectRecovery.h"
#include "core.h"
#include "core_log_options.h"
#include "core_settings.h"
#include "layout/LayoutPageDoc.h"
#include "model/QuilletDoc.h"
#include "texture/TexturePageDoc.h"

namespace {

constexpr int kProjectResource = 129;
constexpr int kTexturePageResource = 130;
constexpr int kLayoutPageResource = 131;

template <typename DocumentType>
std::unique_ptr<framework::Document> MakeDocument() {
    return std::make_unique<DocumentType>();
}

// The start directory may be named by the environment; whether the change works is not
// looked at.
void EnterBrenmoorRoot() {
    const char* root = std::getenv("BrenmoorRoot");
    if (root == nullptr) return;
    std::error_code ignored;
    std::filesystem::current_path(root, ignored);
}

// The options are declared but never parsed: each keeps its starting value.
void StartCoreServices() {
    Core::declare_debug_window_option();
    Core::Detail::log_options();
    Core::init();
}

// The file named on the command line: the first word that is not an option.
std::string FileOnCommandLine(const std::vector<std::string>& arguments) {
    for (const std::string& word : arguments) {
        if (!word.empty() && word.front() != '-') return word;
    }
    return {};
}

}  // namespace

bool HasProjectExtension(const std::string& path) {
    return path.size() >= 4 && path.compare(path.size() - 4, 4, ".qlt") == 0;
}

CQuilletApp::CQuilletApp(framework::UserInterface& ui, framework::ProfileStore& profile)
    : Application("quillet", ui, profile) {}

CQuilletApp::~CQuilletApp() = default;

void CQuilletApp::EnableRecovery(const std::string& folder) {
    recovery_ = std::make_unique<ProjectRecovery>(*this, folder);
}

void CQuilletApp::AddTemplates() {
    auto& project = AddDocTemplate(std::make_unique<framework::DocTemplate>(
        *this, kProjectResource, kProjectDocString, MakeDocument<CQuilletDoc>));
    project.SetAdmission(CloseCurrentProject);
    AddDocTemplate(std::make_unique<framework::DocTemplate>(
        *this, kTexturePageResource, "Texture page", MakeDocument<CTexturePageDoc>));
    AddDocTemplate(std::make_unique<framework::DocTemplate>(
        *this, kLayoutPageResource, "Layout page", MakeDocument<CLayoutPageDoc>));
}

bool CQuilletApp::InitInstance(const std::vector<std::string>& arguments, MainFrameHost* host) {
    EnterBrenmoorRoot();
    StartCoreServices();
    LoadStdProfileSettings();
    AddTemplates();
    if (host != nullptr && !host->CreateMainFrame()) return false;

    // Recovered changes stand over the recent project, which stands over a path on the
    // command line.
    if (recovery_ == nullptr || !recovery_->OfferRecovery()) {
        std::string file = FindFileToReopen();
        if (file.empty()) file = FileOnCommandLine(arguments);
        if (file.empty())
            OnFileNew();
        else
            OpenDocumentFile(file);
    }

    if (host != nullptr) SetStatusPane(host->ShowMainFrame());
    return true;
}

void CQuilletApp::ExitInstance() {
    if (recovery_ != nullptr) recovery_->Finish();
    SaveStdProfileSettings();
    // The core services go last, in the reverse order of their start.
    Core::shutdown();
}

std::string CQuilletApp::FindFileToReopen() const {
    for (int number = 1;; ++number) {
        std::string entry = Profile().GetString(framework::RecentFileList::kSection,
                                                framework::RecentFileList::EntryName(number), "");
        if (entry.empty()) return {};
        if (HasProjectExtension(entry)) return entry;
    }
}

bool CQuilletApp::SaveAllModified() {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return Application::SaveAllModified();
    // Page windows show the project: the person is asked once, for the project, and saving
    // it writes the changed pages with it.
    for (size_t index = 1; index < Templates().size(); ++index) {
        for (const framework::Document* page : Templates()[index]->GetDocuments()) {
            if (page->IsModified()) project->SetModifiedFlag(true);
        }
    }
    return project->SaveModified();
}

void CQuilletApp::AddToRecentFileList(const std::string& path) {
    if (path.empty() || !HasProjectExtension(path)) return;
    Application::AddToRecentFileList(path);
    SaveStdProfileSettings();
}

void CQuilletApp::OnEditUndo() {
    if (CQuilletDoc* project = GetProjectDoc()) project->OnEditUndo();
}

void CQuilletApp::OnEditRedo() {
    if (CQuilletDoc* project = GetProjectDoc()) project->OnEditRedo();
}
