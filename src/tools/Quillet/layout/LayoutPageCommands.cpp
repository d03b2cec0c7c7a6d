// The commands over the whole selection: centring, aligning, sizing, spacing and snapping.
// None singles out a piece: aligning and sizing work to the average rectangle.
#include <algorithm>

#include "LayoutPageView.h"
#include "model/QuilletDoc.h"
#include "model/float_int.h"
#include "model/page_rect.h"
#include "model/ui_objects.h"
#include "shell/CommandIds.h"

namespace {

// How close two centres must be for Snap to join them: up to 4 pixels apart.
constexpr int64_t kSnapTolerance = 5;

// Geometry worked out in 64 bits and stored as the platform's 32-bit integers store it.
int32_t Wrapped(int64_t value) {
    return static_cast<int32_t>(value);
}

int32_t Average(int64_t sum, size_t count) {
    return FloatToInt(static_cast<float>(sum) / static_cast<float>(count));
}

Point CentreOf(const PageRect& r) {
    return {Wrapped(int64_t{r.left} + (RectWidth(r) >> 1)),
            Wrapped(int64_t{r.top} + (RectHeight(r) >> 1))};
}

// The corner that puts the centre of `r` at `centre`.
Point CornerFor(Point centre, const PageRect& r) {
    return {Wrapped(int64_t{centre.x} - (RectWidth(r) >> 1)),
            Wrapped(int64_t{centre.y} - (RectHeight(r) >> 1))};
}

// The first known value within the tolerance of `value`, which is learnt when there is none.
int32_t Snapped(std::vector<int32_t>& known, int32_t value) {
    const auto near = std::find_if(known.begin(), known.end(), [value](int32_t v) {
        const int64_t distance = int64_t{v} - value;
        return -kSnapTolerance < distance && distance < kSnapTolerance;
    });
    if (near != known.end()) return *near;
    known.push_back(value);
    return value;
}

bool IsOfType(const UI_OBJECT* object, const char* type) {
    return object != nullptr && object->TypeTag() == type;
}

}  // namespace

bool CLayoutPageView::OnSelectionCommand(int command) {
    using namespace commands;
    using LayoutView = CLayoutPageView;
    struct SelectionCommand {
        int id;
        bool needs_selection;
        void (*run)(LayoutView&);
    };
    static const SelectionCommand kCommands[] = {
        {kCentreHorizontally, false, [](LayoutView& v) { v.CentreOnPage(Axis::Horizontal); }},
        {kCentreVertically, false, [](LayoutView& v) { v.CentreOnPage(Axis::Vertical); }},
        {kAlignLeft, true, [](LayoutView& v) { v.Align(AlignKind::Left); }},
        {kAlignHorizontalCentre, true, [](LayoutView& v) { v.Align(AlignKind::HorizontalCentre); }},
        {kAlignRight, true, [](LayoutView& v) { v.Align(AlignKind::Right); }},
        {kAlignTop, true, [](LayoutView& v) { v.Align(AlignKind::Top); }},
        {kAlignVerticalCentre, true, [](LayoutView& v) { v.Align(AlignKind::VerticalCentre); }},
        {kAlignBottom, true, [](LayoutView& v) { v.Align(AlignKind::Bottom); }},
        {kSpaceEvenlyAcross, true, [](LayoutView& v) { v.SpaceEvenly(Axis::Horizontal); }},
        {kSpaceEvenlyDown, true, [](LayoutView& v) { v.SpaceEvenly(Axis::Vertical); }},
        {kSameWidth, true, [](LayoutView& v) { v.MakeSameSize(SizeKind::Width); }},
        {kSameHeight, true, [](LayoutView& v) { v.MakeSameSize(SizeKind::Height); }},
        {kSameSize, true, [](LayoutView& v) { v.MakeSameSize(SizeKind::Both); }},
        {kSnapCentres, false, [](LayoutView& v) { v.SnapCentres(); }}};
    const auto found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                    [command](const auto& each) { return each.id == command; });
    if (found == std::end(kCommands)) return false;
    if (!found->needs_selection || !selection_.Empty()) found->run(*this);
    return true;
}

void CLayoutPageView::ChangeAsOneStep(const std::function<void()>& change) {
    InvalidateSelection();
    change();
    InvalidateSelection();
    if (!selection_.Empty()) TakeSnapshot();
}

// An average of left edges and of sizes: not the bounding box, and it need not hold any of
// the pieces.
PageRect CLayoutPageView::AverageRect() const {
    const std::vector<UI_PIECE> pieces = SelectedPieces();
    if (pieces.empty()) return {};
    int64_t x = 0, y = 0, width = 0, height = 0;
    for (const UI_PIECE& piece : pieces) {
        const PageRect r = RectOf(piece);
        x += piece.x;
        y += piece.y;
        width += RectWidth(r);
        height += RectHeight(r);
    }
    const int32_t left = Average(x, pieces.size());
    const int32_t top = Average(y, pieces.size());
    return {left, top, Wrapped(int64_t{left} + Average(width, pieces.size())),
            Wrapped(int64_t{top} + Average(height, pieces.size()))};
}

// Each piece is centred by itself, without a clamp: a group collapses onto the centre line.
void CLayoutPageView::CentreOnPage(Axis axis) {
    const PageSize size = PageSizeNow();
    ChangeAsOneStep([&] {
        for (const UI_PIECE& piece : SelectedPieces()) {
            const PageRect r = RectOf(piece);
            Point corner{piece.x, piece.y};
            if (axis == Axis::Horizontal)
                corner.x = Wrapped((int64_t{size.width} + r.left - r.right) / 2);
            else
                corner.y = Wrapped((int64_t{size.height} - RectHeight(r)) / 2);
            GetDocument()->MovePiece(piece.name, corner, false);
        }
    });
}

// Aligned pieces stop one pixel further in from the right and lower edges than a drag does.
void CLayoutPageView::Align(AlignKind kind) {
    const PageRect average = AverageRect();
    const PageSize size = PageSizeNow();
    ChangeAsOneStep([&] {
        for (const UI_PIECE& piece : SelectedPieces()) {
            const PageRect r = RectOf(piece);
            const int64_t w = RectWidth(r);
            const int64_t h = RectHeight(r);
            int64_t x = r.left;
            int64_t y = r.top;
            switch (kind) {
                case AlignKind::Left:
                    x = average.left;
                    break;
                case AlignKind::HorizontalCentre:
                    x = (RectWidth(average) - w) / 2 + average.left;
                    break;
                case AlignKind::Right:
                    x = average.right - w;
                    break;
                case AlignKind::Top:
                    y = average.top;
                    break;
                case AlignKind::VerticalCentre:
                    y = (RectHeight(average) - h) / 2 + average.top;
                    break;
                case AlignKind::Bottom:
                    y = average.bottom - h;
                    break;
            }
            x = std::max<int64_t>(x, 0);
            y = std::max<int64_t>(y, 0);
            if (w + x >= size.width) x = size.width - 1 - (w + 1);
            if (h + y >= size.height) y = size.height - 1 - (h + 1);
            GetDocument()->MovePiece(piece.name, {Wrapped(x), Wrapped(y)}, false);
        }
    });
}

// The pieces keep their corners; only their scales change, and a slider is never sized
// across its thin axis. The minimum size may overrule the average.
void CLayoutPageView::MakeSameSize(SizeKind kind) {
    const PageRect average = AverageRect();
    ChangeAsOneStep([&] {
        for (const UI_PIECE& piece : SelectedPieces()) {
            const PageRect r = RectOf(piece);
            PageRect target = r;
            if (kind != SizeKind::Height) {
                target.left = average.left;
                target.right = average.right;
            }
            if (kind != SizeKind::Width) {
                target.top = average.top;
                target.bottom = average.bottom;
            }
            const UI_OBJECT* object = ObjectOf(piece);
            const float fx = IsOfType(object, "UI_V_Slider")
                                 ? 1.0f
                                 : ScaleFactor(RectWidth(target), RectWidth(r));
            const float fy = IsOfType(object, "UI_H_Slider")
                                 ? 1.0f
                                 : ScaleFactor(RectHeight(target), RectHeight(r));
            GetDocument()->RescalePiece(piece.name, fx, fy, false);
        }
    });
}

// Even spacing of centres, not of gaps, from the first piece's centre along the axis; the
// pieces line up on the first one's other axis as well. The order is by corner.
void CLayoutPageView::SpaceEvenly(Axis axis) {
    std::vector<UI_PIECE> pieces = SelectedPieces();
    if (pieces.size() < 2) return;
    std::stable_sort(pieces.begin(), pieces.end(), [axis](const UI_PIECE& a, const UI_PIECE& b) {
        return axis == Axis::Horizontal ? a.x < b.x : a.y < b.y;
    });
    const Point first = CentreOf(RectOf(pieces.front()));
    const Point last = CentreOf(RectOf(pieces.back()));
    const auto gaps = static_cast<int64_t>(pieces.size() - 1);
    const Point step{Wrapped((int64_t{last.x} - first.x) / gaps),
                     Wrapped((int64_t{last.y} - first.y) / gaps)};
    ChangeAsOneStep([&] {
        Point centre = first;
        for (size_t index = 0; index < pieces.size(); ++index) {
            if (index > 0 && axis == Axis::Horizontal)
                centre.x = Wrapped(int64_t{centre.x} + step.x);
            if (index > 0 && axis == Axis::Vertical) centre.y = Wrapped(int64_t{centre.y} + step.y);
            GetDocument()->MovePiece(pieces[index].name, CornerFor(centre, RectOf(pieces[index])),
                                     false);
        }
    });
}

// The first piece of a cluster sets the line the others join; each axis on its own, and
// each piece is a step of undo of its own.
void CLayoutPageView::SnapCentres() {
    std::vector<int32_t> known_x;
    std::vector<int32_t> known_y;
    for (const UI_PIECE& piece : SelectedPieces()) {
        const PageRect r = RectOf(piece);
        const Point centre = CentreOf(r);
        const Point snapped{Snapped(known_x, centre.x), Snapped(known_y, centre.y)};
        GetDocument()->MovePiece(piece.name, CornerFor(snapped, r), true);
    }
}
