#include "QuilletDoc.h"

#include <algorithm>

#include "LayoutPageLink.h"
#include "ProjectFile.h"
#include "RecordIndex.h"
#include "SaveGuard.h"
#include "core_file_transaction.h"
#include "framework/Application.h"
#include "open_documents.h"
#include "qlt_errors.h"
#include "qlt_paths.h"
#include "texture/TexturePageDoc.h"

CQuilletDoc* GetProjectDoc() {
    const std::vector<framework::Document*> projects = OpenDocumentsOf(kProjectTemplate);
    return projects.empty() ? nullptr : dynamic_cast<CQuilletDoc*>(projects.front());
}

bool CloseCurrentProject() {
    if (GetProjectDoc() == nullptr) return true;
    framework::Application& application = *framework::Application::Instance();
    if (!application.SaveAllModified()) return false;
    application.CloseAllDocuments();
    return true;
}

CQuilletDoc::CQuilletDoc() = default;
CQuilletDoc::~CQuilletDoc() = default;

void CQuilletDoc::Serialize(framework::Archive& archive) {
    framework::WaitCursor wait(App().UI());
    SetProjectBaseDir(archive.GetFilePath());
    if (archive.IsStoring()) {
        // Pieces are measured against this project, registered or not yet.
        const RecordIndex index{&records_};
        ScopedRecordLookup scope(index);
        WriteProject(archive, records_);
        return;
    }
    // Read into records of our own first: a file that fails to read changes nothing.
    ProjectRecords loaded;
    ReadApart(archive, loaded);
    AdoptRecords(std::move(loaded));
}

namespace {

// Appends what a load read, sorts stably by `key` and keeps the first of equal records: a
// record that exists now wins over the one read.
template <typename Record, typename Key>
void MergeSorted(std::vector<Record>& present, std::vector<Record>&& loaded, Key key) {
    for (Record& record : loaded)
        present.push_back(std::move(record));
    std::stable_sort(present.begin(), present.end(),
                     [&key](const Record& a, const Record& b) { return key(a) < key(b); });
    present.erase(
        std::unique(present.begin(), present.end(),
                    [&key](const Record& a, const Record& b) { return key(a) == key(b); }),
        present.end());
}

// Pages sort by path in the file's form, so a project lists them alike on every platform.
std::string PathKey(const std::string& path) {
    return ToFileForm(path);
}

}  // namespace

void CQuilletDoc::ReadApart(framework::Archive& archive, ProjectRecords& loaded) {
    // Pages held now stand first, as they do in the lists a load appends to. Objects are
    // those read alone: a load or a snapshot replaces every object of the project.
    const RecordIndex source{{&records_, &loaded}, {&loaded}};
    ScopedRecordLookup scope(source);
    ReadProject(archive, loaded);
}

PageRect CQuilletDoc::RegionRect(const UI_REGION& region) const {
    return LookUpRegionRect(region, {&records_});
}

void CQuilletDoc::AdoptRecords(ProjectRecords&& loaded) {
    records_.qlt_file = std::move(loaded.qlt_file);
    for (auto& object : loaded.ui_objects)
        records_.ui_objects.push_back(std::move(object));
    MergeSorted(records_.texture_pages, std::move(loaded.texture_pages),
                [](const TPAGE& page) { return PathKey(page.path); });
    MergeSorted(records_.font_pages, std::move(loaded.font_pages),
                [](const FONT_PAGE& font) { return font.identifier; });
    MergeSorted(records_.fmv_pages, std::move(loaded.fmv_pages),
                [](const FMV_PAGE& movie) { return PathKey(movie.path); });
}

void CQuilletDoc::ChangeMade() {
    SetModifiedFlag(true);
    TakeSnapshot();
    UpdateAllViews(nullptr);
}

void CQuilletDoc::ChangeMadeWithoutSnapshot() {
    SetModifiedFlag(true);
    UpdateAllViews(nullptr);
}

bool CQuilletDoc::OnOpenDocument(const std::string& path) {
    const bool loaded = Document::OnOpenDocument(path);
    // A save asks before it overwrites a file that changed on disk after this read.
    if (loaded) SaveGuard::RememberOnDisk(path);
    TakeSnapshot();
    return loaded;
}

bool CQuilletDoc::OnSaveDocument(const std::string& path) {
    const std::unique_ptr<SaveGuard> guard = BeginSave(path);
    if (!guard) return false;
    // Pages first and the project file last, put in place together or not at all: pages that
    // held a new layout while the project kept the old rectangles would scramble every region.
    Core::FileTransaction transaction;
    if (!StageChangedPages(transaction) || !StageDocument(transaction, path) ||
        !CommitFiles(transaction))
        return false;
    kept_pages_.clear();
    ClearAllModified();
    return true;
}

void CQuilletDoc::ReportLoadFailure(std::exception_ptr failure, const framework::Archive& archive) {
    const char* name = ReadErrorName(failure);
    App().UI().MessageBox(std::string("Cannot read project file: ") +
                              (name != nullptr ? name : "unknown error") + " at line " +
                              std::to_string(archive.LineNumber()),
                          "Error", framework::MessageIcon::Stop, framework::MessageButtons::Ok);
}

void CQuilletDoc::TakeSnapshot() {
    if (checkpoint_lock >= 1) return;
    framework::Archive archive = framework::Archive::ForStoring({});
    archive.Reserve(static_cast<size_t>(grow_size));
    Serialize(archive);
    PushSnapshot(archive.TakeBytes());
    redo_list.clear();
}

void CQuilletDoc::DeleteContents() {
    records_.ui_objects.clear();
}

void CQuilletDoc::RestoreSnapshot(const std::string& snapshot) {
    ReadText(snapshot);
}

// Read apart first: a text that does not read changes nothing.
bool CQuilletDoc::ReadText(const std::string& text) {
    framework::Archive archive = framework::Archive::ForLoading(text, {});
    ProjectRecords loaded;
    try {
        SetProjectBaseDir({});
        ReadApart(archive, loaded);
    } catch (...) {
        ReportLoadFailure(std::current_exception(), archive);
        return false;
    }
    DeleteContents();
    AdoptRecords(std::move(loaded));
    return true;
}

void CQuilletDoc::OnEditUndo() {
    StepAndRefresh(&SnapshotUndo::UndoStep);
}

void CQuilletDoc::OnEditRedo() {
    StepAndRefresh(&SnapshotUndo::RedoStep);
}

bool CQuilletDoc::UndoActsNow() const {
    return dynamic_cast<LayoutPageLink*>(App().GetActiveDocument()) != nullptr &&
           GetFirstView() != nullptr;
}

bool CQuilletDoc::CanUndo() const {
    return UndoActsNow() && undo_list.size() >= 2;
}

bool CQuilletDoc::CanRedo() const {
    return UndoActsNow() && !redo_list.empty();
}

void CQuilletDoc::StepAndRefresh(bool (SnapshotUndo::*step)()) {
    if (!UndoActsNow()) return;
    if (!(this->*step)()) return;
    // The project differs from its file now, whatever the file was.
    SetModifiedFlag(true);
    // Every open page shows the restored pieces; a page the snapshot does not have closes.
    for (framework::Document* window : OpenDocumentsOf(kLayoutPageTemplate)) {
        auto* page = dynamic_cast<LayoutPageLink*>(window);
        if (page == nullptr) continue;
        if (LayoutExists(page->PageName()))
            page->RebuildPieceData();
        else
            window->OnCloseDocument();
    }
    UpdateAllViews(nullptr);
}

void CQuilletDoc::OnCloseDocument() {
    for (const TemplateIndex pages : {kTexturePageTemplate, kLayoutPageTemplate}) {
        for (framework::Document* page : OpenDocumentsOf(pages))
            page->OnCloseDocument();
    }
    SetStatusText("");
    framework::Document::OnCloseDocument();  // `this` is gone
}

void CQuilletDoc::ClearAllModified() {
    for (framework::Document* page : OpenDocumentsOf(kTexturePageTemplate))
        page->SetModifiedFlag(false);
    for (framework::Document* page : OpenDocumentsOf(kLayoutPageTemplate))
        page->SetModifiedFlag(false);
    SetModifiedFlag(false);
}

void CQuilletDoc::SetStatusText(const std::string& text) {
    if (framework::StatusPane* pane = App().GetStatusPane()) pane->SetText(text);
}
