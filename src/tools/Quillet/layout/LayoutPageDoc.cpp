#include "LayoutPageDoc.h"

#include <algorithm>

#include "LayoutPageView.h"
#include "model/QuilletDoc.h"

void CLayoutPageDoc::Initialise(const LPAGE& page) {
    name_ = page.name;
    size_ = {page.width, page.height};
    SetTitle(name_);
    if (auto* view = dynamic_cast<CLayoutPageView*>(GetFirstView())) view->OnInitialUpdate();
    UpdateAllViews(nullptr);
}

LPAGE* CLayoutPageDoc::Page() const {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return nullptr;
    auto& layouts = project->qlt_file().layouts;
    const auto found = std::find_if(layouts.begin(), layouts.end(),
                                    [this](const LPAGE& page) { return page.name == name_; });
    return found == layouts.end() ? nullptr : &*found;
}

bool CLayoutPageDoc::IsIdentifierFree(const std::string& piece_name) const {
    const CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return true;
    const auto& layouts = project->qlt_file().layouts;
    return std::none_of(layouts.begin(), layouts.end(),
                        [&piece_name](const LPAGE& page) { return page.PieceExists(piece_name); });
}

void CLayoutPageDoc::Changed() {
    SetModifiedFlag(true);
    UpdateAllViews(nullptr);
}

void CLayoutPageDoc::AddPiece(const UI_PIECE& piece) {
    if (CQuilletDoc* project = GetProjectDoc()) project->AddPiece(name_, piece, true);
    Changed();
}

void CLayoutPageDoc::MovePiece(const std::string& piece, Point point, bool save_undo) {
    if (CQuilletDoc* project = GetProjectDoc())
        project->MovePiece(name_, piece, point.x, point.y, save_undo);
    Changed();
}

void CLayoutPageDoc::RescalePiece(const std::string& piece, float fx, float fy, bool save_undo) {
    if (CQuilletDoc* project = GetProjectDoc())
        project->RescalePiece(name_, piece, fx, fy, save_undo);
    Changed();
}

void CLayoutPageDoc::ReplacePiece(const std::string& piece, const UI_PIECE& replacement) {
    if (CQuilletDoc* project = GetProjectDoc()) project->ReplacePiece(name_, piece, replacement);
    Changed();
}

void CLayoutPageDoc::DeletePiece(const std::string& piece, bool save_undo) {
    if (CQuilletDoc* project = GetProjectDoc()) project->DeletePiece(name_, piece, save_undo);
    Changed();
}

int CLayoutPageDoc::PieceZIndex(const std::string& piece) const {
    const LPAGE* page = Page();
    return page == nullptr ? -1 : page->PieceIndex(piece);
}

void CLayoutPageDoc::RemovePieceThroughWindow(const std::string& piece) {
    DeletePiece(piece, true);
    RebuildPieceData();
}

void CLayoutPageDoc::RebuildPieceData() {
    for (framework::View* view : GetViews()) {
        if (auto* layout_view = dynamic_cast<CLayoutPageView*>(view))
            layout_view->RebuildPieceData();
    }
    UpdateAllViews(nullptr);
}

bool CLayoutPageDoc::OnSaveDocument(const std::string& /*path*/) {
    CQuilletDoc* project = GetProjectDoc();
    return project != nullptr && project->DoFileSave();
}
