#include "LayoutPageView.h"

#include <algorithm>
#include <limits>

#include "core_assert.h"
#include "framework/VirtualKeys.h"
#include "model/QuilletDoc.h"
#include "model/page_rect.h"
#include "model/piece_geometry.h"
#include "model/report.h"
#include "model/ui_objects.h"
#include "shell/CommandIds.h"

namespace {

// How far inside a piece's edge a press still takes the edge.
constexpr int64_t kGrabBand = 2;

// Right and bottom count as inside a piece.
bool Holds(const PageRect& r, Point p) {
    return r.left <= p.x && p.x <= r.right && r.top <= p.y && p.y <= r.bottom;
}

Point Difference(Point to, Point from) {
    return {WrappedDifference(to.x, from.x), WrappedDifference(to.y, from.y)};
}

int32_t WrappedSum(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

// A shift worked out in 64 bits, held to what a rectangle can take: a file may place a
// piece anywhere, and keeping it on the page must not overflow.
int32_t Narrow(int64_t shift) {
    return static_cast<int32_t>(std::clamp<int64_t>(shift, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

bool IsMoveTool(UserSelectType tool) {
    return tool == UserSelectType::SELECT_AND_MOVE || tool == UserSelectType::MOVE_HORIZONTAL ||
           tool == UserSelectType::MOVE_VERTICAL;
}

bool OnLeft(ResizeHandle h) {
    return h == ResizeHandle::TOP_LEFT || h == ResizeHandle::LEFT || h == ResizeHandle::BOTTOM_LEFT;
}
bool OnRight(ResizeHandle h) {
    return h == ResizeHandle::TOP_RIGHT || h == ResizeHandle::RIGHT ||
           h == ResizeHandle::BOTTOM_RIGHT;
}
bool OnTop(ResizeHandle h) {
    return h == ResizeHandle::TOP_LEFT || h == ResizeHandle::TOP || h == ResizeHandle::TOP_RIGHT;
}
bool OnBottom(ResizeHandle h) {
    return h == ResizeHandle::BOTTOM_LEFT || h == ResizeHandle::BOTTOM ||
           h == ResizeHandle::BOTTOM_RIGHT;
}

struct Grab {
    ResizeHandle handle = ResizeHandle::NONE;
    LayoutCursor cursor = LayoutCursor::Move;
};

// Which handle a point takes: the band is the outer three pixels just inside the rectangle.
// Sides beat top and bottom, and corners beat both when both axes may stretch.
Grab PickHandle(Point p, const PageRect& r, bool horizontal_ok, bool vertical_ok) {
    const int64_t dl = int64_t{p.x} - r.left;
    const int64_t dt = int64_t{p.y} - r.top;
    const int64_t dr = int64_t{r.right} - p.x;
    const int64_t db = int64_t{r.bottom} - p.y;
    const auto in_band = [](int64_t d) { return d >= 0 && d <= kGrabBand; };
    const bool left = in_band(dl) && dt >= 0 && db >= 0;
    const bool right = in_band(dr) && dt >= 0 && db >= 0;
    const bool top = in_band(dt) && dl >= 0 && dr >= 0;
    const bool bottom = in_band(db) && dl >= 0 && dr >= 0;
    Grab grab;
    if (vertical_ok && (top || bottom))
        grab = {top ? ResizeHandle::TOP : ResizeHandle::BOTTOM, LayoutCursor::SizeNS};
    if (horizontal_ok && (left || right))
        grab = {left ? ResizeHandle::LEFT : ResizeHandle::RIGHT, LayoutCursor::SizeWE};
    if (!horizontal_ok || !vertical_ok) return grab;
    if (top && left) return {ResizeHandle::TOP_LEFT, LayoutCursor::SizeNWSE};
    if (top && right) return {ResizeHandle::TOP_RIGHT, LayoutCursor::SizeNESW};
    if (bottom && right) return {ResizeHandle::BOTTOM_RIGHT, LayoutCursor::SizeNWSE};
    if (bottom && left) return {ResizeHandle::BOTTOM_LEFT, LayoutCursor::SizeNESW};
    return grab;
}

void AppendOnce(std::vector<std::string>& list, const std::string& value) {
    if (!value.empty() && std::find(list.begin(), list.end(), value) == list.end())
        list.push_back(value);
}

}  // namespace

CLayoutPageView::CLayoutPageView(LayoutPageCanvas& canvas) : CZoomView(canvas), canvas_(canvas) {}

CLayoutPageView::~CLayoutPageView() {
    if (z_sort_ != nullptr) canvas_.CloseZSortDialog();
}

CLayoutPageDoc* CLayoutPageView::GetDocument() const {
    return dynamic_cast<CLayoutPageDoc*>(framework::View::GetDocument());
}

LPAGE* CLayoutPageView::Page() const {
    const CLayoutPageDoc* document = GetDocument();
    return document != nullptr ? document->Page() : nullptr;
}

PageSize CLayoutPageView::PageSizeNow() const {
    const CLayoutPageDoc* document = GetDocument();
    return document != nullptr ? document->GetPageSize() : PageSize{};
}

const UI_OBJECT* CLayoutPageView::ObjectOf(const UI_PIECE& piece) {
    const CQuilletDoc* project = GetProjectDoc();
    return project != nullptr && project->ObjectExists(piece.object_id)
               ? project->ObjectNamed(piece.object_id)
               : nullptr;
}

PageRect CLayoutPageView::RectOf(const UI_PIECE& piece) {
    if (ObjectOf(piece) == nullptr) return {piece.x, piece.y, piece.x, piece.y};
    return PieceRect(piece);
}

float CLayoutPageView::ScaleFactor(int32_t length, int32_t original) {
    return original == 0 ? 1.0f : static_cast<float>(length) / static_cast<float>(original);
}

bool CLayoutPageView::ResizeUnderWay() const {
    return resizing_ && selection_.Size() == 1;
}

PageRect CLayoutPageView::ShownRect(const UI_PIECE& piece) const {
    if (!dragging_) return RectOf(piece);
    if (ResizeUnderWay()) return selection_.live_rect;
    return OffsetRect(RectOf(piece), selection_.live_rect.left, selection_.live_rect.top);
}

Point CLayoutPageView::ToPage(Point device) const {
    return DeviceToPage(device, canvas_.ScrollPosition());
}

std::vector<UI_PIECE> CLayoutPageView::SelectedPieces() const {
    std::vector<UI_PIECE> pieces;
    const LPAGE* page = Page();
    if (page == nullptr) return pieces;
    for (const std::string& name : selection_.pieces) {
        const int index = page->PieceIndex(name);
        if (index >= 0) pieces.push_back(page->pieces[static_cast<size_t>(index)]);
    }
    return pieces;
}

std::optional<UI_PIECE> CLayoutPageView::SelectedPieceAt(Point p) const {
    for (const UI_PIECE& piece : SelectedPieces()) {
        if (Holds(RectOf(piece), p)) return piece;
    }
    return std::nullopt;
}

std::optional<UI_PIECE> CLayoutPageView::UnlockedPieceAt(Point p) const {
    const LPAGE* page = Page();
    if (page == nullptr) return std::nullopt;
    // The last piece is drawn last and lies on top; a locked one is not there for the mouse.
    const auto found = std::find_if(
        page->pieces.rbegin(), page->pieces.rend(),
        [p](const UI_PIECE& piece) { return !piece.locked && Holds(RectOf(piece), p); });
    if (found == page->pieces.rend()) return std::nullopt;
    return *found;
}

void CLayoutPageView::OnInitialUpdate() {
    const CLayoutPageDoc* document = GetDocument();
    if (document == nullptr) return;
    const PageSize size = document->GetPageSize();
    canvas_.PlaceFrame(size.width, size.height);
    SetZoomedSize(size.width, size.height);
    if (!document->PageName().empty()) RebuildGroupLists();
}

void CLayoutPageView::OnUpdate(framework::View* /*sender*/, long /*hint*/, void* /*object*/) {
    // A command over n pieces updates n times: the page is drawn once, before it is painted.
    needs_rebuild_ = true;
    canvas_.PostRebuild();
}

void CLayoutPageView::RebuildIfNeeded() {
    if (rebuilding_) return;
    rebuilding_ = true;
    while (needs_rebuild_) {
        needs_rebuild_ = false;
        const CLayoutPageDoc* document = GetDocument();
        const LPAGE* page = Page();
        if (page == nullptr) continue;
        const PageSize size = document->GetPageSize();
        const size_t boxes = renderer_.BoxesShown();
        back_buffer_ = renderer_.Render(*page, size, std::move(back_buffer_));
        // A box took the button's release: a drag under way when it opened has ended.
        if (renderer_.BoxesShown() != boxes) {
            canvas_.ReleaseCapture();
            CancelDrag();
        }
        SetZoomedSize(size.width, size.height);
    }
    rebuilding_ = false;
    canvas_.InvalidateAll();
}

void CLayoutPageView::RebuildPieceData() {
    const LPAGE* page = Page();
    const auto gone = [page](const std::string& name) {
        return page == nullptr || !page->PieceExists(name);
    };
    std::erase_if(selection_.pieces, gone);
    has_selection_ = has_selection_ && !selection_.Empty();
    if (gone(context_piece_)) context_piece_.clear();
    CancelDrag();
    RebuildGroupLists();
    needs_rebuild_ = true;
    canvas_.PostRebuild();
}

void CLayoutPageView::RebuildGroupLists() {
    group_ids_.clear();
    edit_group_ids_.clear();
    const LPAGE* page = Page();
    if (page == nullptr) return;
    for (const UI_PIECE& piece : page->pieces) {
        AppendOnce(group_ids_, piece.attributes.group_id);
        AppendOnce(edit_group_ids_, piece.edit_group_id);
    }
}

void CLayoutPageView::CancelDrag() {
    const bool under_way = dragging_ || rubber_band_;
    dragging_ = resizing_ = rubber_band_ = false;
    selection_.live_rect = {};
    if (under_way) canvas_.InvalidateAll();
}

void CLayoutPageView::ReportFromView(bool condition, const std::string& text) {
    if (condition) return;
    canvas_.ReleaseCapture();
    CancelDrag();
    ReportUnless(false, text);
}

// --- Selecting --------------------------------------------------------------------------

void CLayoutPageView::BeginSelection(bool clear_first) {
    has_selection_ = true;
    InvalidateSelectionOutline();
    if (clear_first) selection_.Clear();
}

void CLayoutPageView::SelectPiece(const std::string& name, bool clear_first) {
    BeginSelection(clear_first);
    const LPAGE* page = Page();
    const bool found = page != nullptr && page->PieceExists(name);
    ReportFromView(found, "Piece not found");
    if (found) selection_.Add(name);
    UpdateStatusText(1);
}

void CLayoutPageView::SelectEditGroup(const std::string& group, bool clear_first) {
    BeginSelection(clear_first);
    if (const LPAGE* page = Page()) {
        for (auto piece = page->pieces.rbegin(); piece != page->pieces.rend(); ++piece) {
            if (piece->edit_group_id == group) selection_.Add(piece->name);
        }
    }
    UpdateStatusText(1);
}

bool CLayoutPageView::HitTestEdges(Point p, const PageRect& r, const PageRect& minimum,
                                   bool horizontal_ok, bool vertical_ok) {
    const Grab grab = PickHandle(p, r, horizontal_ok, vertical_ok);
    resize_handle_ = grab.handle;
    resize_cursor_ = grab.cursor;
    const bool hit = grab.handle != ResizeHandle::NONE;
    selection_.live_rect = hit ? r : PageRect{};
    min_rect_ = hit ? minimum : PageRect{};
    ShowCursor(grab.cursor);
    return hit;
}

bool CLayoutPageView::HitTestPiece(Point p, const UI_PIECE& piece) {
    const UI_OBJECT* object = ObjectOf(piece);
    const std::string type = object != nullptr ? object->TypeTag() : std::string();
    // A slider is never stretched across its thin axis.
    return HitTestEdges(p, RectOf(piece), object != nullptr ? object->MinimumSize() : PageRect{},
                        type != "UI_V_Slider", type != "UI_H_Slider");
}

// --- The mouse --------------------------------------------------------------------------

void CLayoutPageView::OnLButtonDown(Point device, bool control) {
    ctrl_down_ = control;
    canvas_.SetCapture();
    if (tool_ == UserSelectType::MAGNIFY_AREA) {
        StepZoom(true, &device);
        ShowCursor(LayoutCursor::Magnify);
        return;
    }
    const Point p = ToPage(device);
    const std::optional<UI_PIECE> held = SelectedPieceAt(p);
    if (!held) {
        PressOnPage(p);
    } else if (ctrl_down_) {
        selection_.Remove(held->name);
    }
    if (selection_.Empty()) {
        resizing_ = dragging_ = has_selection_ = false;
        UpdateStatusText(0, "Ready");
        rubber_band_ = true;
        band_start_ = band_end_ = p;
    } else {
        // Control on empty page keeps the selection, and so drags it from there.
        dragging_ = true;
        selection_.anchor = p;
        selection_.live_rect = {};
        if (resizing_)
            UpdateStatusText(1);
        else
            UpdateStatusText(0, "Dragging piece(s)");
    }
    if (!held || ctrl_down_) canvas_.InvalidateAll();
}

// A press off the selection: the piece under it, if any, joins or replaces the selection.
void CLayoutPageView::PressOnPage(Point p) {
    if (!ctrl_down_) selection_.Clear();
    const std::optional<UI_PIECE> piece = UnlockedPieceAt(p);
    if (!piece) return;
    if (tool_ == UserSelectType::SELECT_BY_GROUP && !piece->edit_group_id.empty()) {
        SelectEditGroup(piece->edit_group_id, !ctrl_down_);
        return;
    }
    SelectPiece(piece->name, !ctrl_down_);
    if (tool_ != UserSelectType::SELECT_BY_GROUP) resizing_ = HitTestPiece(p, *piece);
}

void CLayoutPageView::OnMouseMove(Point device) {
    const Point p = ToPage(device);
    if (dragging_) {
        const Point delta = Difference(p, selection_.anchor);
        if (ResizeUnderWay())
            ResizeDrag(delta, false);
        else
            MoveDrag(delta, false);
        UpdateStatusText(1);
    } else if (has_selection_) {
        // Whatever the tool, a single selected piece shows its handles.
        resizing_ = false;
        const std::vector<UI_PIECE> pieces = SelectedPieces();
        if (selection_.Size() == 1 && pieces.size() == 1) resizing_ = HitTestPiece(p, pieces[0]);
        ShowCursor(resizing_ ? resize_cursor_ : LayoutCursor::Move);
    } else if (rubber_band_) {
        band_end_ = p;
        canvas_.InvalidateAll();
    } else if (tool_ == UserSelectType::MAGNIFY_AREA) {
        ShowCursor(LayoutCursor::Magnify);
    }
}

void CLayoutPageView::OnLButtonUp(Point device) {
    canvas_.ReleaseCapture();
    const Point p = ToPage(device);
    if (dragging_) {
        const Point delta = Difference(p, selection_.anchor);
        if (ResizeUnderWay()) {
            ResizeDrag(delta, true);
        } else if (delta != Point{}) {
            MoveDrag(delta, true);
        } else if (const std::optional<UI_PIECE> piece = SelectedPieceAt(p); piece && !ctrl_down_) {
            // A plain click on one piece of several narrows the selection to it; a Control
            // click keeps the piece it just added.
            SelectPiece(piece->name, true);
        }
        resizing_ = dragging_ = false;
        has_selection_ = true;
        // The outlines turn from the drag's blue back to black.
        InvalidateSelectionOutline();
        UpdateStatusText(1);
    }
    if (rubber_band_) AddBandToSelection();
}

// A band takes every unlocked piece it touches; it need not enclose them.
void CLayoutPageView::AddBandToSelection() {
    const LPAGE* page = Page();
    if (band_start_ != band_end_ && page != nullptr) {
        const PageRect band{
            std::min(band_start_.x, band_end_.x), std::min(band_start_.y, band_end_.y),
            std::max(band_start_.x, band_end_.x), std::max(band_start_.y, band_end_.y)};
        for (auto piece = page->pieces.rbegin(); piece != page->pieces.rend(); ++piece) {
            if (!piece->locked && !IsRectEmpty(IntersectRect(band, RectOf(*piece))))
                selection_.Add(piece->name);
        }
    }
    has_selection_ = !selection_.Empty();
    rubber_band_ = false;
    canvas_.InvalidateAll();
}

void CLayoutPageView::OnLButtonDblClk(Point device) {
    if (tool_ == UserSelectType::MAGNIFY_AREA)
        StepZoom(true, &device);
    else if (IsMoveTool(tool_))
        OnCommand(commands::kEditSelectedPiece);  // the same as the toolbar's Edit
}

void CLayoutPageView::OnRButtonDown(Point device) {
    canvas_.SetCapture();
    if (tool_ == UserSelectType::MAGNIFY_AREA) StepZoom(false, &device);
    if (!IsMoveTool(tool_)) return;
    const Point p = ToPage(device);
    InvalidateSelectionOutline();
    selection_.Clear();
    has_selection_ = false;
    if (const std::optional<UI_PIECE> piece = UnlockedPieceAt(p)) {
        selection_.Add(piece->name);
        RefreshRect(RectOf(*piece));
        UpdateStatusText(1);
    }
    if (selection_.Empty()) return;
    // No drag starts with the right button.
    resizing_ = dragging_ = false;
    has_selection_ = true;
    selection_.anchor = p;
    selection_.live_rect = {};
}

void CLayoutPageView::OnRButtonDblClk(Point device) {
    if (tool_ == UserSelectType::MAGNIFY_AREA) StepZoom(false, &device);
}

void CLayoutPageView::OnRButtonUp(Point device) {
    canvas_.ActivateFrame();
    context_piece_.clear();
    // The menu acts on the topmost piece under the pointer, locked or not: this is how a
    // locked piece is reached at all.
    const Point p = ToPage(device);
    const CLayoutPageDoc* document = GetDocument();
    const LPAGE* page = Page();
    if (page != nullptr) {
        int topmost = -1;
        for (auto piece = page->pieces.rbegin(); piece != page->pieces.rend(); ++piece) {
            if (!Holds(RectOf(*piece), p)) continue;
            const int z = document->PieceZIndex(piece->name);
            if (z <= topmost) continue;
            topmost = z;
            context_piece_ = piece->name;
        }
    }
    int chosen = 0;
    if (IsMoveTool(tool_) && !context_piece_.empty()) chosen = canvas_.TrackPieceMenu(device);
    canvas_.ReleaseCapture();
    // The chosen entry runs once the menu and the mouse are let go, as a posted command does.
    if (chosen != 0) OnCommand(chosen);
}

// --- Moving and resizing ----------------------------------------------------------------

void CLayoutPageView::MoveDrag(Point delta, bool commit) {
    if (!has_selection_) return;
    const PageRect bounds = SelectionBounds();
    const PageRect old = selection_.live_rect;
    const PageSize size = PageSizeNow();
    PageRect r = OffsetRect(bounds, tool_ == UserSelectType::MOVE_VERTICAL ? 0 : delta.x,
                            tool_ == UserSelectType::MOVE_HORIZONTAL ? 0 : delta.y);
    // The selection moves as one block; the top-left clamp comes second, so it wins when the
    // selection is larger than the page.
    r = OffsetRect(r, Narrow(std::min<int64_t>(int64_t{size.width} - r.right - 1, 0)),
                   Narrow(std::min<int64_t>(int64_t{size.height} - r.bottom - 1, 0)));
    r = OffsetRect(r, Narrow(std::max<int64_t>(-int64_t{r.left}, 0)),
                   Narrow(std::max<int64_t>(-int64_t{r.top}, 0)));
    selection_.live_rect =
        OffsetRect(r, WrappedDifference(0, bounds.left), WrappedDifference(0, bounds.top));
    const Point offset{selection_.live_rect.left, selection_.live_rect.top};
    CLayoutPageDoc* document = GetDocument();
    for (const UI_PIECE& piece : SelectedPieces()) {
        const PageRect rect = RectOf(piece);
        const PageRect before = OffsetRect(rect, old.left, old.top);
        const PageRect after = OffsetRect(rect, offset.x, offset.y);
        if (!commit) {
            RefreshOutline(before);
            RefreshOutline(after);
            continue;
        }
        document->MovePiece(piece.name, {after.left, after.top}, false);
        RefreshRect(rect);
        RefreshOutline(before);
        RefreshRect(after);
    }
    if (!commit) return;
    selection_.live_rect = {};
    if (!selection_.Empty()) TakeSnapshot();
}

// The motion applies to the starting rectangle each time, so a drag gathers no error; the
// edge being dragged gives way to the minimum size.
void CLayoutPageView::ResizeDrag(Point delta, bool commit) {
    if (!has_selection_) return;
    const PageRect old = selection_.live_rect;
    const PageRect orig = SelectionBounds();
    const PageSize size = PageSizeNow();
    const ResizeHandle h = resize_handle_;
    PageRect r = orig;
    if (OnTop(h)) r.top = WrappedSum(r.top, delta.y);
    if (OnRight(h)) r.right = WrappedSum(r.right, delta.x);
    if (OnBottom(h)) r.bottom = WrappedSum(r.bottom, delta.y);
    if (OnLeft(h)) r.left = WrappedSum(r.left, delta.x);
    r.left = std::max(r.left, 0);
    r.top = std::max(r.top, 0);
    r.right = std::min(r.right, WrappedSum(size.width, -1));
    r.bottom = std::min(r.bottom, WrappedSum(size.height, -1));
    const int32_t min_width = RectWidth(min_rect_);
    const int32_t min_height = RectHeight(min_rect_);
    if (RectWidth(r) < min_width) {
        if (OnLeft(h))
            r.left = WrappedDifference(r.right, min_width);
        else
            r.right = WrappedSum(r.left, min_width);
    }
    if (RectHeight(r) < min_height) {
        if (OnTop(h))
            r.top = WrappedDifference(r.bottom, min_height);
        else
            r.bottom = WrappedSum(r.top, min_height);
    }
    selection_.live_rect = r;
    const float fx = ScaleFactor(RectWidth(r), RectWidth(orig));
    const float fy = ScaleFactor(RectHeight(r), RectHeight(orig));
    if (commit) {
        CLayoutPageDoc* document = GetDocument();
        for (const UI_PIECE& piece : SelectedPieces()) {
            document->MovePiece(piece.name, {r.left, r.top}, true);
            document->RescalePiece(piece.name, fx, fy, true);
        }
        selection_.live_rect = {};
        RefreshRect(r);
        RefreshOutline(old);
        RefreshRect(orig);
    } else {
        RefreshOutline(old);
        RefreshOutline(r);
    }
    ShowCursor(resize_cursor_);
}

PageRect CLayoutPageView::SelectionBounds() const {
    PageRect bounds;
    for (const UI_PIECE& piece : SelectedPieces())
        bounds = UnionRect(bounds, RectOf(piece));
    return bounds;
}

void CLayoutPageView::InvalidateSelection() {
    for (const UI_PIECE& piece : SelectedPieces())
        RefreshRect(RectOf(piece));
}

void CLayoutPageView::InvalidateSelectionOutline() {
    for (const UI_PIECE& piece : SelectedPieces())
        RefreshOutline(RectOf(piece));
}

// --- Keys -------------------------------------------------------------------------------

void CLayoutPageView::OnKeyDown(int virtual_key) {
    switch (virtual_key) {
        case framework::kKeyControl:
            ctrl_down_ = true;
            break;
        case framework::kKeyLeft:
            Nudge({-1, 0});
            break;
        case framework::kKeyRight:
            Nudge({1, 0});
            break;
        case framework::kKeyUp:
            Nudge({0, -1});
            break;
        case framework::kKeyDown:
            Nudge({0, 1});
            break;
        case framework::kKeyDelete:
            if (!has_selection_) break;
            DeleteSelection();
            if (CLayoutPageDoc* document = GetDocument()) {
                document->SetModifiedFlag(true);
                document->UpdateAllViews(nullptr);
            }
            UpdateStatusText(0, "Ready");
            break;
        default:
            break;
    }
}

void CLayoutPageView::OnKeyUp(int virtual_key) {
    if (virtual_key == framework::kKeyControl) ctrl_down_ = false;
}

// One page pixel whatever the zoom, held to the tool's axis and to the page like a drag.
void CLayoutPageView::Nudge(Point delta) {
    if (!has_selection_) return;
    MoveDrag(delta, true);
    UpdateStatusText(1);
}

void CLayoutPageView::DeleteSelection() {
    if (!has_selection_) return;
    resizing_ = dragging_ = has_selection_ = false;
    RefreshRect(SelectionBounds());
    const std::vector<UI_PIECE> pieces = SelectedPieces();
    for (const UI_PIECE& piece : pieces)
        GetDocument()->DeletePiece(piece.name, false);
    selection_.Clear();
    if (!pieces.empty()) TakeSnapshot();
}

// --- Cursor, status, tools --------------------------------------------------------------

void CLayoutPageView::ShowCursor(LayoutCursor cursor) {
    cursor_ = cursor;
    canvas_.SetCursor(cursor);
}

void CLayoutPageView::OnSetCursor() {
    switch (tool_) {
        case UserSelectType::SELECT_BY_GROUP:
            ShowCursor(LayoutCursor::Move);
            break;
        case UserSelectType::MAGNIFY_AREA:
            ShowCursor(LayoutCursor::Magnify);
            break;
        default:
            ShowCursor(resizing_ ? resize_cursor_ : LayoutCursor::Move);
            break;
    }
}

void CLayoutPageView::UpdateStatusText(int mode, const char* text) {
    CQuilletDoc* project = GetProjectDoc();
    if (mode == 0) {
        if (text != nullptr && project != nullptr) project->SetStatusText(text);
        return;
    }
    CORE_ASSERT_MSG(mode == 1, "Unknown status text requested");
    if (mode != 1 || project == nullptr) return;
    const std::vector<UI_PIECE> pieces = SelectedPieces();
    if (selection_.Size() != 1 || pieces.size() != 1) {
        project->SetStatusText("Multiple pieces selected");
        return;
    }
    const PageRect r = ShownRect(pieces[0]);
    project->SetStatusText("\"" + pieces[0].name + "\": (" + std::to_string(r.left) + ", " +
                           std::to_string(r.top) + ") -> (" + std::to_string(r.right) + ", " +
                           std::to_string(r.bottom) + ") = (" + std::to_string(RectWidth(r)) +
                           " x " + std::to_string(RectHeight(r)) + ")");
}

void CLayoutPageView::ChooseTool(UserSelectType tool) {
    tool_ = tool;
    if (tool == UserSelectType::SELECT_BY_GROUP) {
        ShowCursor(LayoutCursor::Move);
        const LPAGE* page = Page();
        if (selection_.Empty() || page == nullptr) return;
        const int first = page->PieceIndex(selection_.At(0));
        if (first < 0) return;
        const std::string group = page->pieces[static_cast<size_t>(first)].edit_group_id;
        if (group.empty()) return;
        SelectEditGroup(group, true);
        canvas_.InvalidateAll();
    } else if (tool == UserSelectType::MAGNIFY_AREA) {
        resizing_ = dragging_ = has_selection_ = false;
        selection_.Clear();
        canvas_.InvalidateAll();
        ShowCursor(LayoutCursor::Magnify);
    }
}

void CLayoutPageView::StepZoom(bool in, const Point* focus) {
    if (in ? ZoomIn(focus) : ZoomOut(focus)) canvas_.InvalidateAll();
}

bool CLayoutPageView::OnCommand(int command) {
    using namespace commands;
    static constexpr std::pair<int, UserSelectType> kTools[] = {
        {kSelectAndMove, UserSelectType::SELECT_AND_MOVE},
        {kMoveHorizontal, UserSelectType::MOVE_HORIZONTAL},
        {kMoveVertical, UserSelectType::MOVE_VERTICAL},
        {kSelectByGroup, UserSelectType::SELECT_BY_GROUP},
        {kMagnifyArea, UserSelectType::MAGNIFY_AREA}};
    for (const auto& [id, tool] : kTools) {
        if (command != id) continue;
        ChooseTool(tool);
        return true;
    }
    switch (command) {
        case kMagnify:
        case kReduce:
            StepZoom(command == kMagnify, nullptr);
            return true;
        case kZSort:
            OnZSort();
            return true;
        default:
            return OnPieceCommand(command) || OnSelectionCommand(command);
    }
}

// --- Z sort -----------------------------------------------------------------------------

void CLayoutPageView::OnZSort() {
    const LPAGE* page = Page();
    if (z_sort_ != nullptr || page == nullptr) return;
    std::vector<std::string> names;
    for (const UI_PIECE& piece : page->pieces)
        names.push_back(piece.name);
    z_sort_ = std::make_unique<ZSortList>(page->name, std::move(names));
    if (!canvas_.OpenZSortDialog(*z_sort_)) {
        z_sort_.reset();
        return;
    }
    // The selection list stays as it was; only the flags go.
    resizing_ = dragging_ = has_selection_ = false;
    UpdateStatusText(0, "Ready");
}

void CLayoutPageView::OnZSortClosed() {
    z_sort_.reset();
}

// --- Painting ---------------------------------------------------------------------------

std::vector<LayoutOutline> CLayoutPageView::Outlines() const {
    std::vector<LayoutOutline> outlines;
    const Point scroll = canvas_.ScrollPosition();
    const auto add = [&](const PageRect& rect, bool blue) {
        std::array<Point, 5> path = OutlinePath(rect);
        for (Point& point : path)
            point = Difference(point, scroll);
        outlines.push_back({path, blue});
    };
    if (has_selection_ || dragging_) {
        for (const UI_PIECE& piece : SelectedPieces())
            add(ShownRect(piece), dragging_);
    }
    if (rubber_band_) add({band_start_.x, band_start_.y, band_end_.x, band_end_.y}, false);
    return outlines;
}

void CLayoutPageView::TakeSnapshot() {
    if (CQuilletDoc* project = GetProjectDoc()) project->TakeSnapshot();
}
