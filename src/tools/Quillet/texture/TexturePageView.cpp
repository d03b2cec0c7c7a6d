#include "TexturePageView.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "core_assert.h"
#include "core_compositor.h"
#include "forms/ImportRegionForm.h"
#include "forms/PageChooserForm.h"
#include "forms/TextureForm.h"
#include "framework/Application.h"
#include "framework/VirtualKeys.h"
#include "model/QuilletDoc.h"
#include "model/SaveGuard.h"
#include "model/page_rect.h"
#include "model/report.h"
#include "shell/CommandIds.h"
#include "texture/OverflowPages.h"

namespace {

// Beyond the page the window shows its own background.
constexpr Core::Colour kWindowColour{0xFF, 0xFF, 0xFF, 0xFF};
// How far beside and below the page the composed page reaches at most: room for anything
// parked there, but not for a region that a file put a billion pixels away.
constexpr int32_t kParkingRoom = 4096;

// Draws `picture` unstretched at the rectangle's corner, no larger than the rectangle.
void DrawPicture(const Core::Pixels<Core::Colour>& destination, const PageRect& rect,
                 Core::Image& picture) {
    const Core::Pixels<const Core::Colour> source = Core::lock_colours_for_reading(picture);
    const Core::DrawRect area{rect.left, rect.top,
                              std::clamp(RectWidth(rect), 0, static_cast<int32_t>(source.width)),
                              std::clamp(RectHeight(rect), 0, static_cast<int32_t>(source.height))};
    const Core::Pixels<const Core::Colour> part(source.pixels, static_cast<uint32_t>(area.width),
                                                static_cast<uint32_t>(area.height),
                                                source.stride_in_bytes);
    Core::stretch_copy(destination, area, part);
    picture.unlock();
}

PageSize DrawingExtent(const CTexturePageDoc& document) {
    const PageSize page = document.GetPageSize();
    const PageSize extent = document.GetExtent();
    return {std::min(extent.width, page.width + kParkingRoom),
            std::min(extent.height, page.height + kParkingRoom)};
}

// The steps of the 18 at which the solid line under the dashes is black.
bool SolidIsBlack(int step) {
    static constexpr int kBlackSteps[] = {0, 1, 5, 6, 11, 12, 13, 16, 17};
    return std::find(std::begin(kBlackSteps), std::end(kBlackSteps), step) != std::end(kBlackSteps);
}

bool IsNear(int64_t distance) {
    return distance == 0 || distance == 1;
}

// The resize cursor for a point near the edges of `rect`, which holds it; none when the point
// is near no edge.
std::optional<CursorShape> EdgeCursor(const PageRect& rect, Point p) {
    const bool left = IsNear(int64_t{p.x} - rect.left);
    const bool top = IsNear(int64_t{p.y} - rect.top);
    const bool right = IsNear(int64_t{rect.right} - p.x);
    const bool bottom = IsNear(int64_t{rect.bottom} - p.y);
    if (top && left) return CursorShape::SizeNWSE;
    if (top && right) return CursorShape::SizeNESW;
    if (bottom && right) return CursorShape::SizeNWSE;
    if (bottom && left) return CursorShape::SizeNESW;
    if (top || bottom) return CursorShape::SizeNS;
    if (right || left) return CursorShape::SizeWE;
    return std::nullopt;
}

std::string OverflowQuestion(size_t count) {
    return Counted(count, " region does not fit. Move it to a new page?",
                   " regions do not fit. Move them to a new page?");
}

// The paths of `count` new pages after the first one the person names, a free one beside
// `page` proposed; nothing when they cancel or a name is taken (told in a box).
std::optional<std::vector<std::string>> AskOverflowPaths(const CQuilletDoc& project,
                                                         const std::string& page, size_t count) {
    framework::UserInterface& ui = framework::AppUI();
    const std::optional<std::string> chosen = ui.AskSaveFileName(
        {"Save As", "TGA Files (*.tga)", ".tga", ProposedOverflowPath(project, page, count)});
    if (!chosen) return std::nullopt;
    std::vector<std::string> paths =
        OverflowPagePaths(std::filesystem::absolute(*chosen).string(), count);
    if (const std::string refusal = OverflowRefusal(project, paths); !refusal.empty()) {
        ui.MessageBox(refusal, "Error", framework::MessageIcon::Stop,
                      framework::MessageButtons::Ok);
        return std::nullopt;
    }
    return paths;
}

}  // namespace

const std::array<AntPen, 18>& AntPens() {
    static const std::array<AntPen, 18> pens = [] {
        std::array<AntPen, 18> made{};
        AntPen pen{{3, 2, 3, 2}, true};
        for (AntPen& each : made) {
            each = pen;
            if (pen.dashes[3] != 1) {
                ++pen.dashes[0];
                --pen.dashes[3];
            } else {
                pen.dashes = {1, pen.dashes[0], pen.dashes[1], pen.dashes[2]};
                pen.white = !pen.white;
            }
        }
        return made;
    }();
    return pens;
}

CTexturePageView::CTexturePageView(TexturePageCanvas& canvas)
    : CZoomView(canvas), canvas_(canvas) {}

CTexturePageDoc* CTexturePageView::GetDocument() const {
    return dynamic_cast<CTexturePageDoc*>(framework::View::GetDocument());
}

void CTexturePageView::OnInitialUpdate() {
    canvas_.StartTimer(kAntsTimer, 0);
    if (const CTexturePageDoc* document = GetDocument()) {
        const PageSize extent = DrawingExtent(*document);
        SetZoomedSize(extent.width, extent.height);
    }
}

void CTexturePageView::OnUpdate(framework::View* /*sender*/, long /*hint*/, void* /*object*/) {
    const CTexturePageDoc* document = GetDocument();
    if (document == nullptr) return;
    const PageSize page = document->GetPageSize();
    page_rect_ = {0, 0, page.width, page.height};
    // The window opens at twice the page's size; later it keeps the size the person gave it.
    if (!placed_) {
        placed_ = true;
        canvas_.PlaceFrame(2 * page.width, 2 * page.height);
    }
    const PageSize extent = DrawingExtent(*document);
    SetZoomedSize(extent.width, extent.height);
    // A tiling moves hundreds of regions, each with an update: the page is composed once,
    // before it is next painted.
    needs_rebuild_ = true;
    canvas_.PostRebuild();
    canvas_.InvalidateAll();
}

void CTexturePageView::CloseFrame() {}

void CTexturePageView::RebuildIfNeeded() {
    if (rebuilding_) return;
    rebuilding_ = true;
    while (needs_rebuild_) {
        needs_rebuild_ = false;
        RebuildBitmap();
    }
    rebuilding_ = false;
    canvas_.InvalidateAll();
}

void CTexturePageView::RebuildBitmap() {
    CTexturePageDoc* document = GetDocument();
    if (document == nullptr || document->GetPathName().empty() || document->GetImage() == nullptr)
        return;
    // A page opened from its file is cut into its regions' pictures here, at its first
    // composition.
    document->CutRegions();
    const PageSize extent = DrawingExtent(*document);
    back_buffer_.reset(Core::create_image(static_cast<uint32_t>(std::max(extent.width, 0)),
                                          static_cast<uint32_t>(std::max(extent.height, 0)),
                                          Core::PIXEL_FORMAT_8888));
    ReportUnless(back_buffer_ != nullptr, "Unable to find tpage bitmap");
    if (back_buffer_ == nullptr) return;
    Core::Pixels<Core::Colour> destination = Core::lock_colours_for_writing(*back_buffer_);
    destination.fill(0, 0, destination.width, destination.height, kWindowColour);
    if (Core::Image* page = document->GetDisplayImage())
        DrawPicture(destination, page_rect_, *page);
    for (const TREGION& region : document->Page().regions) {
        if (region.display_image != nullptr)
            DrawPicture(destination, region.rect, *region.display_image);
    }
    back_buffer_->unlock();
}

std::vector<Outline> CTexturePageView::Outlines() const {
    std::vector<Outline> outlines;
    const Point scroll = canvas_.ScrollPosition();
    const auto add = [&](const PageRect& rect, OutlinePen pen) {
        std::array<Point, 5> path = OutlinePath(rect);
        for (Point& point : path)
            point = {point.x - scroll.x, point.y - scroll.y};
        outlines.push_back({path, pen});
    };
    const CTexturePageDoc* document = GetDocument();
    if (const TPAGE* page = document != nullptr ? document->PageIfAny() : nullptr) {
        const std::vector<TREGION>& regions = page->regions;
        for (size_t index = 0; index < regions.size(); ++index) {
            const bool is_selection =
                selected_ && index == selected_index_ && regions[index].name == selected_name_;
            if (!is_selection) add(regions[index].rect, OutlinePen::BlueDash);
        }
    }
    if (selected_) {
        add(selection_rect_, solid_white_ ? OutlinePen::White : OutlinePen::Black);
        add(selection_rect_, OutlinePen::Ants);
    }
    return outlines;
}

const TREGION* CTexturePageView::SelectedRegion() {
    CTexturePageDoc* document = GetDocument();
    if (!selected_ || document == nullptr) return nullptr;
    const std::vector<TREGION>& regions = document->Page().regions;
    if (selected_index_ < regions.size() && regions[selected_index_].name == selected_name_)
        return &regions[selected_index_];
    // A replaced region moves to the list's end; one that is gone ends the selection.
    const auto found = std::find_if(regions.begin(), regions.end(),
                                    [this](const TREGION& r) { return r.name == selected_name_; });
    if (found == regions.end()) {
        selected_ = moving_ = false;
        return nullptr;
    }
    selected_index_ = static_cast<size_t>(found - regions.begin());
    return &*found;
}

void CTexturePageView::SetStatus(int mode, const char* text) {
    CQuilletDoc* project = GetProjectDoc();
    if (mode == 0) {
        if (text != nullptr && project != nullptr) project->SetStatusText(text);
        return;
    }
    CORE_ASSERT_MSG(mode == 1, "Unknown status text requested");
    if (mode != 1 || project == nullptr) return;
    const PageRect& r = selection_rect_;
    project->SetStatusText("\"" + selected_name_ + "\": (" + std::to_string(r.left) + ", " +
                           std::to_string(r.top) + ") -> (" + std::to_string(r.right) + ", " +
                           std::to_string(r.bottom) + ") = (" + std::to_string(RectWidth(r)) +
                           " x " + std::to_string(RectHeight(r)) + ")");
}

void CTexturePageView::OnLButtonDown(Point device) {
    canvas_.SetCapture();
    const Point p = DeviceToPage(device, canvas_.ScrollPosition());
    const CTexturePageDoc* document = GetDocument();
    if (document == nullptr) return;
    const std::vector<TREGION>& regions = document->Page().regions;
    // The region painted last lies on top.
    const auto hit = std::find_if(regions.rbegin(), regions.rend(), [p](const TREGION& region) {
        return PtInRect(region.rect, p.x, p.y);
    });
    selected_ = false;
    if (hit != regions.rend()) {
        selected_name_ = hit->name;
        selected_index_ = static_cast<size_t>(regions.rend() - hit) - 1;
        // On an edge the click selects without starting a drag.
        selected_ = true;
        if (!hot_edge_) moving_ = true;
    }
    const PageRect old = selection_rect_;
    if (!selected_) {
        RefreshOutline(old);
        SetStatus(0, "Ready");
        return;
    }
    grab_ = {WrappedDifference(p.x, hit->rect.left), WrappedDifference(p.y, hit->rect.top)};
    selection_rect_ = hit->rect;
    RefreshOutline(selection_rect_);
    RefreshOutline(old);
    SetStatus(1);
}

void CTexturePageView::OnMouseMove(Point device) {
    const Point p = DeviceToPage(device, canvas_.ScrollPosition());
    if (!moving_) {
        UpdateHover(p);
        return;
    }
    const TREGION* region = SelectedRegion();
    if (region == nullptr) return;
    MoveSelection({WrappedDifference(WrappedDifference(p.x, grab_.x), region->rect.left),
                   WrappedDifference(WrappedDifference(p.y, grab_.y), region->rect.top)});
    SetStatus(1);
}

void CTexturePageView::UpdateHover(Point p) {
    hot_edge_ = false;
    cursor_ = CursorShape::Arrow;
    if (const CTexturePageDoc* document = GetDocument()) {
        for (const TREGION& region : document->Page().regions) {
            if (!PtInRect(region.rect, p.x, p.y)) continue;
            if (const std::optional<CursorShape> shape = EdgeCursor(region.rect, p)) {
                cursor_ = *shape;
                hot_edge_ = true;
                hot_region_ = region.name;
                break;
            }
        }
    }
    canvas_.SetCursor(cursor_);
}

void CTexturePageView::MoveSelection(Point delta) {
    const TREGION* region = SelectedRegion();
    if (region == nullptr) return;
    const PageRect old = selection_rect_;
    PageRect moved = OffsetRect(region->rect, delta.x, delta.y);
    // The left and top edges stop at the page; the right and lower ones do not.
    if (moved.left < 0) moved = OffsetRect(moved, WrappedDifference(0, moved.left), 0);
    if (moved.top < 0) moved = OffsetRect(moved, 0, WrappedDifference(0, moved.top));
    selection_rect_ = moved;
    RefreshOutline(selection_rect_);
    RefreshOutline(old);
}

void CTexturePageView::OnLButtonUp(Point device) {
    canvas_.ReleaseCapture();
    const Point p = DeviceToPage(device, canvas_.ScrollPosition());
    if (!moving_) return;
    moving_ = false;
    const TREGION* region = SelectedRegion();
    if (region == nullptr) return;
    const PageRect old = region->rect;
    const std::string name = region->name;
    GetDocument()->SetRegionPosition(name, std::max(WrappedDifference(p.x, grab_.x), 0),
                                     std::max(WrappedDifference(p.y, grab_.y), 0));
    SetStatus(1);
    RefreshRect(old);
    if (const TREGION* moved = SelectedRegion()) RefreshRect(moved->rect);
}

void CTexturePageView::OnKeyDown(int virtual_key) {
    switch (virtual_key) {
        case framework::kKeyDelete:
            DeleteSelection();
            SetStatus(0, "");
            break;
        case framework::kKeyLeft:
            NudgeSelection({-1, 0});
            break;
        case framework::kKeyUp:
            NudgeSelection({0, -1});
            break;
        case framework::kKeyRight:
            NudgeSelection({1, 0});
            break;
        case framework::kKeyDown:
            NudgeSelection({0, 1});
            break;
        default:
            break;
    }
}

void CTexturePageView::NudgeSelection(Point delta) {
    const TREGION* region = SelectedRegion();
    if (region == nullptr) return;
    const PageRect old = region->rect;
    const std::string name = region->name;
    MoveSelection(delta);
    GetDocument()->SetRegionPosition(name, selection_rect_.left, selection_rect_.top);
    RefreshRect(old);
    if (const TREGION* moved = SelectedRegion()) RefreshRect(moved->rect);
    SetStatus(1);
}

void CTexturePageView::DeleteSelection() {
    const TREGION* region = SelectedRegion();
    if (region == nullptr) return;
    const std::string name = region->name;
    selected_ = moving_ = false;
    GetDocument()->DeleteRegion(name, true);
    needs_rebuild_ = true;
    canvas_.PostRebuild();
    RefreshRect(selection_rect_);
}

void CTexturePageView::OnTimer(int id) {
    canvas_.KillTimer(id);
    if (!selected_) {
        canvas_.StartTimer(kAntsTimer, 200);
        return;
    }
    ant_step_ = id;
    solid_white_ = !SolidIsBlack(id);
    canvas_.StartTimer((id + 1) % static_cast<int>(AntPens().size()), 250);
    RefreshOutline(selection_rect_);
}

bool CTexturePageView::OnCommand(int command) {
    using namespace commands;
    static constexpr std::pair<int, int> kTilings[] = {
        {kTileByArea, TILE_BY_AREA},
        {kTileByHeightThenWidth, TILE_BY_HEIGHT_THEN_WIDTH},
        {kTileByWidthThenHeight, TILE_BY_WIDTH_THEN_HEIGHT},
        {kTileByCircumference, TILE_BY_CIRCUMFERENCE},
        {kTileBestFit, TILE_BEST_FIT},
        {kTileTightest, TILE_TIGHTEST}};
    static constexpr std::pair<int, unsigned> kSpacings[] = {
        {kSpacing0, 0}, {kSpacing1, 1}, {kSpacing2, 2}, {kSpacing3, 3}};
    for (const auto& [id, order] : kTilings) {
        if (command != id) continue;
        OnTile(order);
        return true;
    }
    for (const auto& [id, spacing] : kSpacings) {
        if (command != id) continue;
        spacing_ = spacing;
        return true;
    }
    CTexturePageDoc* document = GetDocument();
    switch (command) {
        case kZoomIn:
        case kZoomOut:
            if (command == kZoomIn ? ZoomIn(nullptr) : ZoomOut(nullptr)) canvas_.InvalidateAll();
            return true;
        case kImportRegions:
            OnImport();
            return true;
        case kCopyOutsideToNew:
            OnCopyOutsideToNew();
            return true;
        case kCopyOutsideToExisting:
            OnCopyOutsideToExisting();
            return true;
        case kResizePage:
            OnResizePage();
            return true;
        case kClearSpace:
            if (document != nullptr) document->ClearSpace();
            return true;
        case kSelectUnusedColour:
            if (document != nullptr) document->SelectUnusedColour();
            return true;
        default:
            return false;
    }
}

TilingReport CTexturePageView::Tile(int order) {
    CTexturePageDoc* document = GetDocument();
    if (document == nullptr) return {};
    SetStatus(0, "Calculating...");
    TilingReport report;
    {
        framework::WaitCursor wait(framework::AppUI());
        report = document->Tile(order, spacing_);
    }
    SetStatus(0, (FitRatioLine(report.fit_ratio) + "   " + PlacementLine(report)).c_str());
    selected_ = false;
    canvas_.InvalidateAll();
    return report;
}

void CTexturePageView::OnTile(int order) {
    if (!Tile(order).parked.empty()) OfferOverflow(order);
}

void CTexturePageView::OfferOverflow(int order) {
    CTexturePageDoc* document = GetDocument();
    const CQuilletDoc* project = GetProjectDoc();
    if (document == nullptr || project == nullptr) return;
    const OverflowPlan plan =
        PlanOverflow(document->Page().regions, document->GetPageSize(), order, spacing_);
    if (plan.pages.empty()) return;
    const std::string page = document->GetPathName();
    if (framework::AppUI().MessageBox(OverflowQuestion(plan.pages.front().size()),
                                      std::filesystem::path(page).filename().string(),
                                      framework::MessageIcon::Question,
                                      framework::MessageButtons::YesNo) != framework::Answer::Yes)
        return;
    const std::optional<std::vector<std::string>> paths =
        AskOverflowPaths(*project, page, plan.pages.size());
    if (!paths) return;
    std::string moved;
    for (const OverflowPage& made : MoveToOverflowPages(*document, plan, *paths, order, spacing_))
        moved += (moved.empty() ? "" : "   ") + MovedLine(made);
    SetStatus(0, moved.c_str());
    RegionsMoved();
}

void CTexturePageView::RegionsMoved() {
    moving_ = selected_ = false;
    needs_rebuild_ = true;
    canvas_.PostRebuild();
    canvas_.InvalidateAll();
}

void CTexturePageView::OnImport() {
    CTexturePageDoc* document = GetDocument();
    if (document == nullptr) return;
    ImportRegionForm form;
    // Names are free or taken in the whole project; a taken one brings the dialog back.
    for (bool taken = true; taken;) {
        if (!framework::AppUI().RunForm(form)) return;
        taken = false;
        for (size_t index = 0; index < form.Count(); ++index) {
            const std::string identifier = form.Identifier(index, framework::AppUI()).value_or("");
            if (document->IsNameFree(identifier)) continue;
            framework::AppUI().MessageBox("Identifier is already in use", identifier,
                                          framework::MessageIcon::Stop,
                                          framework::MessageButtons::Ok);
            taken = true;
        }
    }
    for (size_t index = 0; index < form.Count(); ++index) {
        try {
            document->ImportRegion(form.Path(index, framework::AppUI()).value_or(""),
                                   form.Identifier(index, framework::AppUI()).value_or(""));
        } catch (const NOT_A_TGA_HEADER& refused) {
            framework::AppUI().MessageBox(CTexturePageDoc::kNotATga, refused.path,
                                          framework::MessageIcon::Stop,
                                          framework::MessageButtons::Ok);
        }
    }
    document->TileRegions(TILE_BEST_FIT, spacing_);
    // The tiling moved every region: the old selection's outline means nothing now.
    RegionsMoved();
}

void CTexturePageView::MoveRegionsOutside(CTexturePageDoc* source, CTexturePageDoc* destination) {
    if (source == nullptr || destination == nullptr || source == destination) return;
    // A page just opened has not been cut into its regions yet: cut it before anything moves
    // on it, or its regions would be cut at their new places.
    destination->CutRegions();
    std::vector<TREGION> outside;
    for (const TREGION& region : source->Page().regions) {
        if (IsRectEmpty(IntersectRect(region.rect, page_rect_))) outside.push_back(region);
    }
    for (const TREGION& region : outside) {
        destination->SetRegion(region.rect, region.name, region.image.get());
        // A region kept for its UI objects stays where it was.
        if (!source->DeleteRegion(region.name, true)) destination->DeleteRegion(region.name, false);
    }
    // Through the destination's window when it has one: its status line and selection follow.
    if (auto* destination_view = dynamic_cast<CTexturePageView*>(destination->GetFirstView()))
        destination_view->Tile(TILE_BEST_FIT);
    else
        destination->TileRegions(TILE_BEST_FIT, 0);
    RegionsMoved();
}

void CTexturePageView::OnCopyOutsideToNew() {
    CQuilletDoc* project = GetProjectDoc();
    TextureForm form;
    if (project == nullptr || !framework::AppUI().RunForm(form)) return;
    const std::optional<std::string> path =
        framework::AppUI().AskSaveFileName({"Save As", "TGA Files (*.tga)", ".tga", ""});
    if (!path) return;
    CTexturePageDoc* destination =
        project->CreateNewTexture(std::filesystem::absolute(*path).string(), form.data);
    if (destination == nullptr) {
        framework::AppUI().MessageBox("This file is already part of the project", "Error",
                                      framework::MessageIcon::Warning,
                                      framework::MessageButtons::Ok);
        return;
    }
    MoveRegionsOutside(GetDocument(), destination);
}

void CTexturePageView::OnCopyOutsideToExisting() {
    CQuilletDoc* project = GetProjectDoc();
    if (project == nullptr) return;
    std::vector<std::string> pages;
    for (const TPAGE& page : project->records().texture_pages)
        pages.push_back(page.path);
    PageChooserForm form(pages);
    if (!framework::AppUI().RunForm(form) || form.Chosen().empty()) return;
    MoveRegionsOutside(GetDocument(), project->OpenTexture(form.Chosen()));
}

void CTexturePageView::OnResizePage() {
    CTexturePageDoc* document = GetDocument();
    if (document == nullptr) return;
    TextureForm form;
    const PageSize page = document->GetPageSize();
    form.SetCurrentSize(static_cast<uint16_t>(page.width), static_cast<uint16_t>(page.height));
    if (framework::AppUI().RunForm(form)) document->Resize(form.data.width, form.data.height);
}

void CTexturePageView::OnCloseWindow() {
    CTexturePageDoc* document = GetDocument();
    if (document == nullptr) return;
    std::vector<TREGION> outside;
    for (const TREGION& region : document->Page().regions) {
        if (!document->IsRegionInside(region.rect)) outside.push_back(region);
    }
    if (outside.empty()) return;
    framework::AppUI().MessageBox("All regions outside of image will be lost", "Warning",
                                  framework::MessageIcon::Warning, framework::MessageButtons::Ok);
    for (const TREGION& region : outside)
        document->ClipRegionToPage(region);
}
