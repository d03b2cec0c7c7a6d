#include "LayoutPageDoc.h"

#include "model/QuilletDoc.h"

void CLayoutPageDoc::DeletePiece(const std::string& piece) {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return;
    project->DeletePiece(GetTitle(), piece, true);
    SetModifiedFlag(true);
    UpdateAllViews(nullptr);
}
