// The window on a layout page, as logic: the page drawn at zoom 1 into a back buffer, the
// five tools, a selection of pieces, moving and resizing them, the rubber band, the keys,
// the cursor and the status line, the commands over a selection, the z sort dialog, and the
// commands on single pieces (edit, clone, copy and paste attributes, reset size, edit
// groups, insert an object).
//
// The window itself is a canvas: it forwards mouse and key events here, paints the back
// buffer at the zoom and the outlines this class lists, and does what the canvas calls ask.
// Coordinates of events are device pixels of the window; the view converts them to page
// pixels, adding the scroll position.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "LayoutPageDoc.h"
#include "LayoutRenderer.h"
#include "PieceSelection.h"
#include "ZSortList.h"
#include "framework/View.h"
#include "texture/ZoomView.h"

class UI_OBJECT;

// The tool; the values are those the format's tools always had.
enum class UserSelectType : int32_t {
    SELECT_AND_MOVE = 0,
    MOVE_HORIZONTAL = 1,
    MOVE_VERTICAL = 2,
    SELECT_BY_GROUP = 3,
    MAGNIFY_AREA = 4,
};

enum class ResizeHandle : int32_t {
    TOP_LEFT = 0,
    TOP = 1,
    TOP_RIGHT = 2,
    RIGHT = 3,
    BOTTOM_RIGHT = 4,
    BOTTOM = 5,
    BOTTOM_LEFT = 6,
    LEFT = 7,
    NONE = 8,
};

enum class LayoutCursor { Move, SizeNWSE, SizeNESW, SizeNS, SizeWE, Magnify };

// What the view needs of its window beyond scrolling.
class LayoutPageCanvas : public ZoomCanvas {
public:
    virtual void InvalidateAll() = 0;
    // Asks for RebuildIfNeeded once control is back in the event loop, outside painting.
    virtual void PostRebuild() = 0;
    virtual void SetCapture() = 0;
    virtual void ReleaseCapture() = 0;
    virtual void SetCursor(LayoutCursor cursor) = 0;
    // Puts the window at (30, 30) with room for `width` by `height` page pixels at zoom 1.
    virtual void PlaceFrame(int32_t width, int32_t height) = 0;
    // Brings the window to the front.
    virtual void ActivateFrame() = 0;
    // Shows the piece menu (Edit..., Reset scaling, Copy Attributes, Paste Attributes) at the
    // pointer and answers the command chosen, 0 when none was.
    virtual int TrackPieceMenu(Point device) = 0;
    // Shows the modeless z sort dialog over `list`. False when it could not be made.
    virtual bool OpenZSortDialog(ZSortList& list) = 0;
    // Takes the dialog down, if it is up; the view deletes the list afterwards.
    virtual void CloseZSortDialog() = 0;
};

// A dashed outline over the page: PS_DASHDOTDOT, 1 device pixel wide, blue while dragging.
struct LayoutOutline {
    std::array<Point, 5> path;  // window coordinates
    bool blue = false;
    friend bool operator==(const LayoutOutline&, const LayoutOutline&) = default;
};

class CLayoutPageView : public framework::View, public CZoomView {
public:
    explicit CLayoutPageView(LayoutPageCanvas& canvas);
    // Takes the z sort dialog with it.
    ~CLayoutPageView() override;

    CLayoutPageDoc* GetDocument() const;

    // The window stands on its page: placed, sized, group lists made.
    void OnInitialUpdate();
    // The project changed: the back buffer is rebuilt whole before the view next paints.
    void OnUpdate(framework::View* sender, long hint, void* object) override;
    // The window closes the frame; the logic alone has none.
    void CloseFrame() override {}
    // Draws the page if it changed since it was last drawn. Never call it while painting: it
    // may tell the person something.
    void RebuildIfNeeded();
    // The page's pieces changed behind the view's back: drops selected names no longer on
    // the page, clears a vanished context piece, ends any drag or band and rebuilds the
    // group lists. The document then updates its views, which draws the page anew.
    void RebuildPieceData();

    void OnLButtonDown(Point device, bool control);
    void OnMouseMove(Point device);
    void OnLButtonUp(Point device);
    void OnLButtonDblClk(Point device);
    void OnRButtonDown(Point device);
    void OnRButtonUp(Point device);
    void OnRButtonDblClk(Point device);
    // Windows virtual-key numbers: 17 Control, 46 Delete, 37 to 40 left, up, right, down.
    void OnKeyDown(int virtual_key);
    void OnKeyUp(int virtual_key);
    // Runs a command by its number; false for one the view does not know.
    bool OnCommand(int command);
    // Sets the cursor for the tool through the canvas: what the window does whenever the
    // mouse moves over the page with no button held, and when it enters the page.
    void OnSetCursor();
    // Ends any drag or band without committing it, as before a box is shown: the button's
    // release would go to the box.
    void CancelDrag();
    // The distinct non-empty group ids and edit group ids of the page, in page order.
    void RebuildGroupLists();

    // The z sort dialog went (OK, Cancel or its window closed): the list is deleted later,
    // never inside the dialog's own close handling.
    void OnZSortClosed();

    // What painting shows: the page at zoom 1 (null before the first rebuild) and the
    // outlines over it, in drawing order.
    Core::Image* BackBuffer() const { return back_buffer_.get(); }
    std::vector<LayoutOutline> Outlines() const;
    LayoutCursor Cursor() const { return cursor_; }
    UserSelectType Tool() const { return tool_; }
    const PieceSelection& Selection() const { return selection_; }
    bool HasSelection() const { return has_selection_; }
    bool IsDragging() const { return dragging_; }
    bool IsResizing() const { return resizing_; }
    bool IsRubberBanding() const { return rubber_band_; }
    // The piece the last right click was on, which the piece commands act on; empty for none.
    const std::string& ContextPiece() const { return context_piece_; }
    // The copy Copy Attributes took, null before the first.
    const UI_PIECE* AttributeClipboard() const {
        return attribute_clipboard_ ? &*attribute_clipboard_ : nullptr;
    }
    const std::vector<std::string>& GroupIds() const { return group_ids_; }
    const std::vector<std::string>& EditGroupIds() const { return edit_group_ids_; }
    const LayoutRenderer& Renderer() const { return renderer_; }
    bool IsZSortOpen() const { return z_sort_ != nullptr; }

private:
    enum class Axis { Horizontal, Vertical };
    enum class AlignKind { Left, HorizontalCentre, Right, Top, VerticalCentre, Bottom };
    enum class SizeKind { Width, Height, Both };

    LPAGE* Page() const;
    PageSize PageSizeNow() const;
    // The piece's object, or null without a box: the view measures while painting.
    static const UI_OBJECT* ObjectOf(const UI_PIECE& piece);
    // PieceRect, or the corner alone for a piece whose object is missing.
    static PageRect RectOf(const UI_PIECE& piece);
    // A change of scale as a 32-bit float; a side that had no length keeps its scale.
    static float ScaleFactor(int32_t length, int32_t original);
    // Where the piece is shown: moved or resized as far as a drag has gone.
    PageRect ShownRect(const UI_PIECE& piece) const;
    Point ToPage(Point device) const;
    std::vector<UI_PIECE> SelectedPieces() const;
    // The first selected piece that holds `p`, in selection order.
    std::optional<UI_PIECE> SelectedPieceAt(Point p) const;
    // The topmost piece under `p` that is not locked.
    std::optional<UI_PIECE> UnlockedPieceAt(Point p) const;
    bool ResizeUnderWay() const;

    void SelectPiece(const std::string& name, bool clear_first);
    void SelectEditGroup(const std::string& group, bool clear_first);
    void BeginSelection(bool clear_first);
    bool HitTestEdges(Point p, const PageRect& r, const PageRect& minimum, bool horizontal_ok,
                      bool vertical_ok);
    // The edge test of a piece, with its object's minimum size and slider axes.
    bool HitTestPiece(Point p, const UI_PIECE& piece);
    void PressOnPage(Point p);
    void AddBandToSelection();
    void MoveDrag(Point delta, bool commit);
    void ResizeDrag(Point delta, bool commit);
    void DeleteSelection();
    void Nudge(Point delta);
    PageRect SelectionBounds() const;
    void InvalidateSelection();
    void InvalidateSelectionOutline();
    // Mode 0: `text` (when not null) becomes the status text; mode 1: the selection line.
    void UpdateStatusText(int mode, const char* text = nullptr);
    void ShowCursor(LayoutCursor cursor);
    void ChooseTool(UserSelectType tool);
    void StepZoom(bool in, const Point* focus);
    void OnZSort();
    // A soft check of the view: the mouse is let go and any drag ends before the box.
    void ReportFromView(bool condition, const std::string& text);

    // The commands over the selection.
    bool OnSelectionCommand(int command);
    // Runs `change` as one undo step, with the selection refreshed before and after.
    void ChangeAsOneStep(const std::function<void()>& change);
    PageRect AverageRect() const;
    void CentreOnPage(Axis axis);
    void Align(AlignKind kind);
    void MakeSameSize(SizeKind kind);
    void SpaceEvenly(Axis axis);
    void SnapCentres();
    void TakeSnapshot();

    // The commands on single pieces, each with its dialogs.
    bool OnPieceCommand(int command);
    // Lets go of the mouse and ends any drag: the button's release would go to the dialog.
    void BeforeDialog();
    void EditContextPiece();
    void CloneSelection();
    void CopyAttributes();
    void PasteAttributes();
    void ResetSize();
    void CreateEditGroup();
    void InsertObject();

    LayoutPageCanvas& canvas_;
    LayoutRenderer renderer_;
    ImagePtr back_buffer_;
    bool needs_rebuild_ = true;
    bool rebuilding_ = false;
    std::unique_ptr<ZSortList> z_sort_;
    bool has_selection_ = false;
    bool dragging_ = false;
    bool ctrl_down_ = false;
    bool rubber_band_ = false;
    UserSelectType tool_ = UserSelectType::SELECT_AND_MOVE;
    Point band_start_;
    Point band_end_;
    std::string context_piece_;
    std::optional<UI_PIECE> attribute_clipboard_;
    bool resizing_ = false;
    ResizeHandle resize_handle_ = ResizeHandle::NONE;
    LayoutCursor cursor_ = LayoutCursor::Move;
    LayoutCursor resize_cursor_ = LayoutCursor::Move;
    PageRect min_rect_;
    PieceSelection selection_;
    std::vector<std::string> group_ids_;
    std::vector<std::string> edit_group_ids_;
};
