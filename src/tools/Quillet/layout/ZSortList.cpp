#include "ZSortList.h"

#include <algorithm>

#include "model/LayoutPageLink.h"
#include "model/QuilletDoc.h"
#include "model/open_documents.h"
#include "model/report.h"

void ZSortList::MoveRow(size_t source, size_t target) {
    if (source >= names_.size() || target >= names_.size()) return;
    const auto at = [this](size_t row) {
        return names_.begin() + static_cast<std::ptrdiff_t>(row);
    };
    if (target < source)
        std::rotate(at(target), at(source), at(source + 1));
    else
        std::rotate(at(source), at(source + 1), at(target + 1));
}

void ZSortList::Apply() const {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return;
    const size_t missing = project->ReorderPieces(page_name_, names_).size();
    for (size_t name = 0; name < missing; ++name)
        ReportUnless(false, "Piece not found");
    // The project tells only its own views; the page's windows draw in list order and must
    // draw anew.
    for (framework::Document* document : OpenDocumentsOf(kLayoutPageTemplate)) {
        auto* page = dynamic_cast<LayoutPageLink*>(document);
        if (page != nullptr && page->PageName() == page_name_) page->RebuildPieceData();
    }
}
