#include "LayoutPageView.h"

CLayoutPageView::CLayoutPageView(LayoutPageCanvas& canvas) : CZoomView(canvas), canvas_(canvas) {}

CLayoutPageView::~CLayoutPageView() = default;

CLayoutPageDoc* CLayoutPageView::GetDocument() const {
    return dynamic_cast<CLayoutPageDoc*>(framework::View::GetDocument());
}

void CLayoutPageView::OnInitialUpdate() {}

void CLayoutPageView::OnUpdate(framework::View* /*sender*/, long /*hint*/, void* /*object*/) {
    needs_rebuild_ = true;
    canvas_.PostRebuild();
}

void CLayoutPageView::RebuildIfNeeded() {
    if (rebuilding_ || !needs_rebuild_) return;
    rebuilding_ = true;
    needs_rebuild_ = false;
    const CLayoutPageDoc* document = GetDocument();
    if (const LPAGE* page = document != nullptr ? document->Page() : nullptr)
        back_buffer_ = renderer_.Render(*page, document->GetPageSize());
    rebuilding_ = false;
    canvas_.InvalidateAll();
}

void CLayoutPageView::RebuildPieceData() {}

void CLayoutPageView::OnLButtonDown(Point /*device*/, bool /*control*/) {}
void CLayoutPageView::OnMouseMove(Point /*device*/) {}
void CLayoutPageView::OnLButtonUp(Point /*device*/) {}
void CLayoutPageView::OnLButtonDblClk(Point /*device*/) {}
void CLayoutPageView::OnRButtonDown(Point /*device*/) {}
void CLayoutPageView::OnRButtonUp(Point /*device*/) {}
void CLayoutPageView::OnRButtonDblClk(Point /*device*/) {}
void CLayoutPageView::OnKeyDown(int /*virtual_key*/) {}
void CLayoutPageView::OnKeyUp(int /*virtual_key*/) {}

bool CLayoutPageView::OnCommand(int /*command*/) {
    return false;
}

void CLayoutPageView::OnZSortClosed() {}

std::vector<LayoutOutline> CLayoutPageView::Outlines() const {
    return {};
}
