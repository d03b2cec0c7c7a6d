// The window on a texture page, as logic: the composed page, the selection and its moving
// outline, dragging and nudging regions, import, tiling, moving parked regions to another
// page, resizing, and the rule that runs when the window closes.
//
// The window itself is a canvas: it forwards mouse, key and timer events here, paints the
// back buffer and the outlines this class lists, and does what the canvas calls ask.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "TexturePageDoc.h"
#include "ZoomView.h"
#include "framework/View.h"

enum class CursorShape { Arrow, SizeNWSE, SizeNESW, SizeNS, SizeWE };

// What the view needs of its window beyond scrolling.
class TexturePageCanvas : public ZoomCanvas {
public:
    virtual void InvalidateAll() = 0;
    // Asks for RebuildIfNeeded once control is back in the event loop, outside painting.
    virtual void PostRebuild() = 0;
    virtual void SetCapture() = 0;
    virtual void ReleaseCapture() = 0;
    virtual void SetCursor(CursorShape shape) = 0;
    // One timer runs at a time; starting one replaces the last.
    virtual void StartTimer(int id, int milliseconds) = 0;
    virtual void KillTimer(int id) = 0;
    // Puts the window at (30, 30) with room for `width` by `height` device pixels of page, as
    // far as the main window allows.
    virtual void PlaceFrame(int32_t width, int32_t height) = 0;
};

// A dashed pen of the crawling outline: four dash lengths and white or black.
struct AntPen {
    std::array<int, 4> dashes;
    bool white;
    friend bool operator==(const AntPen&, const AntPen&) = default;
};
const std::array<AntPen, 18>& AntPens();

enum class OutlinePen { BlueDash, Black, White, Ants };

struct Outline {
    std::array<Point, 5> path;  // drawing coordinates
    OutlinePen pen;
};

class CTexturePageView : public framework::View, public CZoomView {
public:
    static constexpr int kAntsTimer = 0;

    explicit CTexturePageView(TexturePageCanvas& canvas);

    CTexturePageDoc* GetDocument() const;

    // The window stands: the crawling outline starts, the scrolling area takes the page.
    void OnInitialUpdate();
    // The page changed: the composed page is rebuilt before the view next paints.
    void OnUpdate(framework::View* sender, long hint, void* object) override;
    // The window closes the frame; the logic alone has none.
    void CloseFrame() override;
    // Composes the page if it changed since it was last composed. Never call it while
    // painting: it may tell the person something.
    void RebuildIfNeeded();

    // Runs a command by its number; false for one the view does not know.
    bool OnCommand(int command);
    void OnLButtonDown(Point device);
    void OnMouseMove(Point device);
    void OnLButtonUp(Point device);
    // Windows virtual-key numbers: 46 Delete, 37 to 40 left, up, right, down.
    void OnKeyDown(int virtual_key);
    void OnTimer(int id);
    // The person closes the window: regions outside the page are trimmed or deleted, after a
    // warning.
    void OnCloseWindow() override;

    void OnImport();
    // Tiles by `order` with the view's spacing; shows the fit ratio and how many regions
    // found room.
    TilingReport Tile(int order);
    // A tiling command: Tile, then an offer to move the regions that did not fit to new pages.
    void OnTile(int order);
    void OnCopyOutsideToNew();
    void OnCopyOutsideToExisting();
    void OnResizePage();

    // Mode 0: `text` (when not null) becomes the status text; mode 1: the selection line.
    void SetStatus(int mode, const char* text = nullptr);

    // What painting shows: the composed page (page pixels, null before the first rebuild)
    // and the outlines over it, in drawing order.
    Core::Image* BackBuffer() const { return back_buffer_.get(); }
    std::vector<Outline> Outlines() const;
    int AntStep() const { return ant_step_; }

    bool IsSelected() const { return selected_; }
    bool IsMoving() const { return moving_; }
    const PageRect& SelectionRect() const { return selection_rect_; }
    unsigned Spacing() const { return spacing_; }
    CursorShape Cursor() const { return cursor_; }

private:
    TexturePageCanvas& Canvas() const { return canvas_; }
    void RebuildBitmap();
    // The selected region, checked to be on the page still; the selection clears if not.
    const TREGION* SelectedRegion();
    void MoveSelection(Point delta);
    void DeleteSelection();
    void NudgeSelection(Point delta);
    void UpdateHover(Point page);
    void MoveRegionsOutside(CTexturePageDoc* source, CTexturePageDoc* destination);
    // Asks whether the regions that tiling by `order` parked go to new pages, and where.
    void OfferOverflow(int order);
    // The selection ends and the page is composed anew: its regions moved.
    void RegionsMoved();

    TexturePageCanvas& canvas_;
    ImagePtr back_buffer_;
    bool needs_rebuild_ = true;
    bool rebuilding_ = false;
    bool moving_ = false;
    bool selected_ = false;
    unsigned spacing_ = 0;
    Point grab_;
    PageRect selection_rect_;
    int ant_step_ = 0;
    bool solid_white_ = false;
    CursorShape cursor_ = CursorShape::Arrow;
    bool hot_edge_ = false;
    std::string hot_region_;
    PageRect page_rect_;
    bool placed_ = false;  // the window was placed for its page
    std::string selected_name_;
    size_t selected_index_ = 0;
};
